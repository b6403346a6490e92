// Which elements of two documents correspond.
#include "support/alignment.h"

#include <string_view>

namespace uxtool {

int ChildKeys::add(const std::string& tag, const std::string& condition) {
    std::string key = tag + "[" + condition + "]";
    const int count = ++counts_[key];
    if (count > 1) key += std::to_string(count);
    keys_.push_back(std::move(key));
    return count;
}

std::vector<ChildPair> corresponding(const ChildKeys& before, const ChildKeys& after) {
    std::unordered_map<std::string_view, std::size_t> places;
    for (const std::string& key : before.all()) places.emplace(key, places.size());
    std::vector<std::size_t> matches;
    std::vector<bool> stays(before.all().size());
    for (const std::string& key : after.all()) {
        const auto place = places.find(key);
        matches.push_back(place == places.end() ? ChildPair::kNone : place->second);
        if (place != places.end()) stays[place->second] = true;
    }
    std::vector<ChildPair> pairs;
    std::size_t told = 0;  // of those that were removed, up to here
    const auto tellRemoved = [&](std::size_t end) {
        for (; told < end; ++told) {
            if (!stays[told]) pairs.push_back({told, ChildPair::kNone});
        }
    };
    for (std::size_t i = 0; i < matches.size(); ++i) {
        if (matches[i] != ChildPair::kNone) tellRemoved(matches[i]);
        pairs.push_back({matches[i], i});
    }
    tellRemoved(stays.size());
    return pairs;
}

}  // namespace uxtool
