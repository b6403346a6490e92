// Keeps the elements on the way to listed paths, at them and below them.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "outline/markup.h"
#include "outline/outline_builder.h"

namespace ux {

// A sink of the grammar (see markup.h) in front of an outline. Paths are tags separated by "|",
// the first being that of the top-level element. No entry point passes paths yet, and without paths
// everything goes through.
class PathFilter : public PlainSink {
public:
    static constexpr bool kLeavesIdsOut = true;

    PathFilter(OutlineBuilder& outline, const char* const* paths, int count);

    void begin(std::string_view name);
    void attribute(std::string_view name) { attributes_.emplace_back(name); }
    void start();
    void start_and_end();
    void end(std::string_view name);

private:
    using Path = std::vector<std::string>;
    // How an open element stands to the paths.
    struct Level {
        std::vector<const Path*> ahead;  // the paths that it is on the way to
        bool kept = false;               // it is at or below one
    };
    bool enter(Level& level) const;
    void tell_tag();

    OutlineBuilder& outline_;
    std::vector<Path> paths_;
    std::vector<Level> open_;
    std::vector<std::string> leftOut_;  // open elements from the first one left out on
    std::string name_;
    std::vector<std::string> attributes_;
};

}  // namespace ux
