// Nodes matched by an attribute: by an index, or by walks where a transfer changes the key.
#include "marks/attribute_match.h"

#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "frame/results.h"
#include "frame/walk.h"

namespace ux {
namespace {

using Options = MatchOptions;

// What one source leaf writes into the nodes that match it.
struct Transfer {
    CStringUTF8 match;
    CStringUTF8 value;
    CStringUTF8 extra;
};

void write(UXXmlWrapperBase& target, const Transfer& transfer, const Options& options) {
    target.SetPropertyValue(options.targetAttribute, transfer.value);
    if (options.extraAttribute == nullptr) return;
    target.SetPropertyValue(options.extraAttribute, transfer.extra);
}

Step into_branches(const UXXmlWrapperBase& node, const Options& options) {
    return options.recursive && !is_leaf(node) ? Step::kGoOn : Step::kOverBranch;
}

bool same(const CStringUTF8& a, const CStringUTF8& b, bool caseSensitive) {
    return (caseSensitive ? a.Compare(b) : a.CompareNoCase(b)) == 0;
}

// Intended: with `all`, the search of a target branch replaces a match found before it, so the
// result tells only about the nodes behind the last branch.
int search_by_walk(const UXXmlWrapperBase& target, const Transfer& transfer,
                   const Options& options) {
    int matched = kFail;
    CStringUTF8 text;
    visit_below(target, [&](UXXmlWrapperBase& node) {
        if (node.GetPropertyValue(options.matchAttribute, text, 0) &&
            same(text, transfer.match, options.caseSensitive)) {
            write(node, transfer, options);
            matched = kOk;
            if (!options.all) return Step::kStop;
        }
        const Step step = into_branches(node, options);
        if (step == Step::kGoOn) matched = kFail;
        return step;
    });
    return matched;
}

// The target's nodes by the text of their match attribute, so that each source leaf finds its
// nodes without another walk. Usable as long as no transfer changes a match attribute.
class TargetIndex {
public:
    TargetIndex(const UXXmlWrapperBase& target, const Options& options) : options_(options) {
        std::size_t position = 0;
        CStringUTF8 text;
        visit_below(target, [&](UXXmlWrapperBase& node) {
            ++position;
            if (node.GetPropertyValue(options.matchAttribute, text, 0)) {
                nodes_[key(text)].push_back({node, position});
            }
            const Step step = into_branches(node, options);
            if (step == Step::kGoOn) lastBranch_ = position;
            return step;
        });
    }

    // The same outcome as search_by_walk.
    int search(const Transfer& transfer) {
        const auto found = nodes_.find(key(transfer.match));
        if (found == nodes_.end()) return kFail;
        std::vector<Match>& matches = found->second;
        if (!options_.all) {
            write(matches.front().node, transfer, options_);
            return kOk;
        }
        for (Match& match : matches) write(match.node, transfer, options_);
        return matches.back().position > lastBranch_ ? kOk : kFail;
    }

private:
    struct Match {
        UXXmlWrapperBase node;
        std::size_t position;
    };

    std::string key(const CStringUTF8& text) const {
        if (options_.caseSensitive) return static_cast<const char*>(text);
        CStringUTF8 folded = text;
        folded.MakeLower();
        return static_cast<const char*>(folded);
    }

    const Options& options_;
    std::size_t lastBranch_ = 0;
    std::unordered_map<std::string, std::vector<Match>> nodes_;
};

// Offers every leaf of the source that carries the match attribute; the last result counts.
template <typename Search>
int transfer_leaves(const UXXmlWrapperBase& source, const Options& options, Search&& search) {
    int result = kFail;
    Transfer transfer;
    visit_below(source, [&](UXXmlWrapperBase& node) {
        if (!is_leaf(node)) {
            // Intended: a source branch that finds nothing takes an earlier match back.
            if (options.recursive) result = kFail;
            return into_branches(node, options);
        }
        if (!node.GetPropertyValue(options.matchAttribute, transfer.match, 0)) {
            return Step::kOverBranch;
        }
        node.NodeValue(transfer.value, 1, 1, nullptr);
        transfer.extra.Empty();
        if (options.extraAttribute != nullptr) {
            node.GetPropertyValue(options.extraAttribute, transfer.extra, 0);
        }
        result = search(transfer);
        return Step::kOverBranch;
    });
    return result;
}

bool writes_match_attribute(const Options& options) {
    const std::string_view match = options.matchAttribute;
    return match == options.targetAttribute ||
           (options.extraAttribute != nullptr && match == options.extraAttribute);
}

}  // namespace

int copy_matching_values(const UXXmlWrapperBase& source, const UXXmlWrapperBase& target,
                         const MatchOptions& options) {
    if (writes_match_attribute(options)) {
        return transfer_leaves(source, options, [&](const Transfer& transfer) {
            return search_by_walk(target, transfer, options);
        });
    }
    TargetIndex index(target, options);
    return transfer_leaves(source, options,
                           [&](const Transfer& transfer) { return index.search(transfer); });
}

}  // namespace ux
