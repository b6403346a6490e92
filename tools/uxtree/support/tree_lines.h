// The line art in front of the lines of a drawn tree.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace uxtool {

// Draws prefixes like "│   └── ". Levels count from 0, the root, which has no prefix. Lines come in
// document order. Beyond a few dozen levels the prefix stops growing and the level is written as a
// number, so that a very deep tree takes a line of bounded length for each node.
class TreeLines {
public:
    std::string prefix(std::size_t level, bool isLast) {
        if (level == 0) return "";
        if (isLast_.size() <= level) isLast_.resize(level + 1);
        isLast_[level] = isLast;
        std::string out;
        for (std::size_t i = 1; i < level && i < kDrawnLevels; ++i) {
            out += isLast_[i] ? "    " : "│   ";
        }
        if (level > kDrawnLevels) out += "[" + std::to_string(level) + "] ";
        return out + (isLast ? "└── " : "├── ");
    }

private:
    static constexpr std::size_t kDrawnLevels = 40;
    std::vector<bool> isLast_;
};

}  // namespace uxtool
