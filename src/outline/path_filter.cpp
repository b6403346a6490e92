// Matching open elements with the listed paths, level by level.
#include "outline/path_filter.h"

#include <utility>

namespace ux {
namespace {

std::vector<std::string> split(std::string_view path) {
    std::vector<std::string> tags;
    for (;;) {
        const std::size_t bar = path.find('|');
        tags.emplace_back(path.substr(0, bar));
        if (bar == std::string_view::npos) return tags;
        path.remove_prefix(bar + 1);
    }
}

}  // namespace

PathFilter::PathFilter(OutlineBuilder& outline, const char* const* paths, int count)
    : outline_(outline) {
    for (int i = 0; i < count; ++i) {
        if (paths[i] != nullptr) paths_.push_back(split(paths[i]));
    }
    Level outside;
    for (const Path& path : paths_) outside.ahead.push_back(&path);
    open_.push_back(std::move(outside));
}

void PathFilter::begin(std::string_view name) {
    name_ = name;
    attributes_.clear();
}

void PathFilter::start() {
    Level level;
    if (!leftOut_.empty() || !enter(level)) {
        leftOut_.push_back(name_);
        return;
    }
    open_.push_back(std::move(level));
    tell_tag();
    outline_.start();
}

void PathFilter::start_and_end() {
    Level level;
    if (!leftOut_.empty() || !enter(level)) return;
    tell_tag();
    outline_.start_and_end();
}

void PathFilter::end(std::string_view name) {
    if (!leftOut_.empty()) {
        if (leftOut_.back() == name) leftOut_.pop_back();
        return;
    }
    if (!outline_.is_open(name)) return;
    outline_.end(name);
    open_.pop_back();
}

// How the element whose tag was read stands to the paths; false when it is to be left out.
bool PathFilter::enter(Level& level) const {
    const Level& parent = open_.back();
    const std::size_t depth = open_.size() - 1;
    level.kept = parent.kept;
    for (const Path* path : parent.ahead) {
        if ((*path)[depth] != name_) continue;
        if (path->size() == depth + 1) {
            level.kept = true;
        } else {
            level.ahead.push_back(path);
        }
    }
    return level.kept || !level.ahead.empty();
}

void PathFilter::tell_tag() {
    outline_.begin(name_);
    for (const std::string& attribute : attributes_) outline_.attribute(attribute);
}

}  // namespace ux
