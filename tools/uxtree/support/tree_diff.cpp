// Comparing two trees, and printing the difference for people.
#include "support/tree_diff.h"

#include <algorithm>
#include <unordered_map>

#include "support/text.h"
#include "support/tree.h"

namespace uxtool {
namespace {

using Ids = std::vector<std::size_t>;  // equal lines have equal numbers
constexpr std::size_t kNone = static_cast<std::size_t>(-1);

struct LineRange {
    std::size_t begin;
    std::size_t end;
    std::size_t size() const { return end - begin; }
};
struct Block {  // what is still to be compared
    LineRange a;
    LineRange b;
};

// Finds which lines of the one text stay in the other. Small differences are found exactly; where
// they are large, lines that occur once in both texts divide the rest.
class Comparison {
public:
    Comparison(Ids a, Ids b)
        : a_(std::move(a)), b_(std::move(b)), keptA_(a_.size(), false), keptB_(b_.size(), false) {
        todo_.push_back({{0, a_.size()}, {0, b_.size()}});
        while (!todo_.empty()) {
            const Block block = todo_.back();
            todo_.pop_back();
            compare(block);
        }
    }
    const std::vector<bool>& kept_a() const { return keptA_; }
    const std::vector<bool>& kept_b() const { return keptB_; }

private:
    static constexpr long kMostChanges = 400;  // that are searched for exactly

    void keep(std::size_t i, std::size_t j) {
        keptA_[i] = true;
        keptB_[j] = true;
    }

    void compare(Block block) {
        LineRange& a = block.a;
        LineRange& b = block.b;
        while (a.size() > 0 && b.size() > 0 && a_[a.begin] == b_[b.begin]) {
            keep(a.begin++, b.begin++);
        }
        while (a.size() > 0 && b.size() > 0 && a_[a.end - 1] == b_[b.end - 1]) {
            keep(--a.end, --b.end);
        }
        if (a.size() == 0 || b.size() == 0) return;
        if (!keep_shortest_edit(block)) divide(block);
    }

    // The shortest edit script, found by how far each diagonal reaches with d changes. False when
    // it has too many changes.
    bool keep_shortest_edit(const Block& block) {
        const auto sizeA = static_cast<long>(block.a.size());
        const auto sizeB = static_cast<long>(block.b.size());
        std::vector<std::vector<long>> reached;  // per number of changes, by diagonal
        for (long d = 0; d <= kMostChanges; ++d) {
            reached.emplace_back(static_cast<std::size_t>(2 * d + 1));
            for (long k = -d; k <= d; k += 2) {
                long x = d == 0 ? 0 : start_of(reached[static_cast<std::size_t>(d - 1)], d - 1, k);
                long y = x - k;
                while (x < sizeA && y < sizeB && same(block, x, y)) {
                    ++x;
                    ++y;
                }
                reached.back()[static_cast<std::size_t>(k + d)] = x;
                if (x >= sizeA && y >= sizeB) {
                    keep_backwards(block, reached);
                    return true;
                }
            }
        }
        return false;
    }

    bool same(const Block& block, long x, long y) const {
        return a_[block.a.begin + static_cast<std::size_t>(x)] ==
               b_[block.b.begin + static_cast<std::size_t>(y)];
    }
    static long at(const std::vector<long>& reach, long d, long k) {
        return k < -d || k > d ? -1 : reach[static_cast<std::size_t>(k + d)];
    }
    // Did diagonal k come from the one above, by an added line?
    static bool comes_from_above(const std::vector<long>& reach, long d, long k) {
        return at(reach, d, k + 1) > at(reach, d, k - 1);
    }
    static long start_of(const std::vector<long>& reach, long d, long k) {
        return comes_from_above(reach, d, k) ? at(reach, d, k + 1) : at(reach, d, k - 1) + 1;
    }

    void keep_backwards(const Block& block, const std::vector<std::vector<long>>& reached) {
        auto x = static_cast<long>(block.a.size());
        auto y = static_cast<long>(block.b.size());
        for (long d = static_cast<long>(reached.size()) - 1; d >= 0; --d) {
            const long k = x - y;
            long start = 0;
            long nextK = k;
            if (d > 0) {
                const std::vector<long>& reach = reached[static_cast<std::size_t>(d - 1)];
                start = start_of(reach, d - 1, k);
                nextK = comes_from_above(reach, d - 1, k) ? k + 1 : k - 1;
            }
            for (; x > start; --x, --y) {
                keep(block.a.begin + static_cast<std::size_t>(x - 1),
                     block.b.begin + static_cast<std::size_t>(y - 1));
            }
            if (d > 0) {
                x = nextK > k ? start : start - 1;
                y = x - nextK;
            }
        }
    }

    // Keeps the longest rising run of the lines that occur once on both sides, and leaves the gaps
    // between them to be compared.
    void divide(const Block& block) {
        const std::vector<LineRange> anchors = rising(common_lines(block));
        if (anchors.empty()) return;
        Block gap = block;
        for (const LineRange& anchor : anchors) {  // begin: place in a, end: place in b
            keep(anchor.begin, anchor.end);
            gap.a.end = anchor.begin;
            gap.b.end = anchor.end;
            todo_.push_back(gap);
            gap = {{anchor.begin + 1, block.a.end}, {anchor.end + 1, block.b.end}};
        }
        todo_.push_back(gap);
    }

    std::vector<LineRange> common_lines(const Block& block) const {
        struct Places {
            std::size_t inA = kNone;
            std::size_t inB = kNone;
            bool once = true;
        };
        std::unordered_map<std::size_t, Places> places;
        const auto note = [](std::size_t& place, bool& once, std::size_t at) {
            once = once && place == kNone;
            place = at;
        };
        for (std::size_t i = block.a.begin; i < block.a.end; ++i) {
            Places& line = places[a_[i]];
            note(line.inA, line.once, i);
        }
        for (std::size_t j = block.b.begin; j < block.b.end; ++j) {
            Places& line = places[b_[j]];
            note(line.inB, line.once, j);
        }
        std::vector<LineRange> common;
        for (std::size_t i = block.a.begin; i < block.a.end; ++i) {
            const Places& line = places[a_[i]];
            if (line.once && line.inB != kNone) common.push_back({i, line.inB});
        }
        return common;
    }

    // The longest run of pairs that rises in b as it does in a.
    static std::vector<LineRange> rising(const std::vector<LineRange>& pairs) {
        std::vector<std::size_t> ends;  // of the best runs of each length
        std::vector<std::size_t> before(pairs.size(), kNone);
        for (std::size_t i = 0; i < pairs.size(); ++i) {
            const auto place = std::lower_bound(
                ends.begin(), ends.end(), pairs[i].end,
                [&](std::size_t run, std::size_t value) { return pairs[run].end < value; });
            if (place != ends.begin()) before[i] = *(place - 1);
            if (place == ends.end()) {
                ends.push_back(i);
            } else {
                *place = i;
            }
        }
        std::vector<LineRange> run;
        for (std::size_t i = ends.empty() ? kNone : ends.back(); i != kNone; i = before[i]) {
            run.push_back(pairs[i]);
        }
        std::reverse(run.begin(), run.end());
        return run;
    }

    Ids a_;
    Ids b_;
    std::vector<bool> keptA_;
    std::vector<bool> keptB_;
    std::vector<Block> todo_;
};

Comparison compared(const std::vector<TreeLine>& before, const std::vector<TreeLine>& after) {
    std::unordered_map<std::string, std::size_t> numbers;
    const auto ids_of = [&](const std::vector<TreeLine>& lines) {
        Ids ids;
        for (const TreeLine& line : lines) {
            const std::string key = std::to_string(line.level) + " " + line.text;
            ids.push_back(numbers.try_emplace(key, numbers.size()).first->second);
        }
        return ids;
    };
    Ids a = ids_of(before);
    return {std::move(a), ids_of(after)};
}

std::string path_to(const std::vector<TreeLine>& lines, std::size_t at) {
    std::vector<std::string> tags;
    while (at != lines[at].parent) {
        at = lines[at].parent;
        tags.push_back(lines[at].tag);
    }
    std::reverse(tags.begin(), tags.end());
    return tags.empty() ? "/" : join(tags, "/");
}

// Writes the two texts as one, leaving out what is far from any change.
class DiffWriter {
public:
    DiffWriter(Output& out, const std::vector<TreeLine>& before, const std::vector<TreeLine>& after)
        : out_(out), before_(before), after_(after), comparison_(compared(before, after)) {}

    bool write() {
        while (i_ < before_.size() || j_ < after_.size()) {
            if (changed()) {
                write_change();
            } else {
                write_same();
            }
        }
        return any_;
    }

private:
    static constexpr std::size_t kAround = 2;

    bool goes() const { return i_ < before_.size() && !comparison_.kept_a()[i_]; }
    bool comes() const { return j_ < after_.size() && !comparison_.kept_b()[j_]; }
    bool changed() const { return goes() || comes(); }

    void write_change() {
        if (shown_ < i_ || !any_) begin_place();
        any_ = true;
        // A line that goes and one that comes in its place stand together.
        while (changed()) {
            if (goes()) write_line("- ", before_[i_++], Role::kError);
            if (comes()) write_line("+ ", after_[j_++], Role::kValue);
        }
        shown_ = i_;
        afterChange_ = kAround;
    }

    void begin_place() {
        const std::size_t first = std::max(shown_, i_ > kAround ? i_ - kAround : 0);
        if (first > shown_ || !any_) {
            const std::string path = i_ < before_.size() && goes() ? path_to(before_, i_)
                                     : j_ < after_.size()          ? path_to(after_, j_)
                                                                   : "/";
            out_.write(out_.palette().paint(Role::kHeading, "@ " + visible(path)) + "\n");
        }
        for (std::size_t k = first; k < i_; ++k) write_line("  ", before_[k], Role::kDim);
    }

    void write_same() {
        if (afterChange_ > 0) {
            write_line("  ", before_[i_], Role::kDim);
            --afterChange_;
            shown_ = i_ + 1;
        }
        ++i_;
        ++j_;
    }

    void write_line(const char* mark, const TreeLine& line, Role role) {
        constexpr std::size_t kDeepest = 40;  // indented; a deeper level is written as a number
        std::string text = mark + std::string(2 * std::min(line.level, kDeepest), ' ');
        if (line.level > kDeepest) text += "[" + std::to_string(line.level) + "] ";
        out_.write(out_.palette().paint(role, text + line.text) + "\n");
    }

    Output& out_;
    const std::vector<TreeLine>& before_;
    const std::vector<TreeLine>& after_;
    Comparison comparison_;
    std::size_t i_ = 0;
    std::size_t j_ = 0;
    std::size_t shown_ = 0;  // lines of before that are written, or were left out
    std::size_t afterChange_ = 0;
    bool any_ = false;
};

}  // namespace

std::vector<TreeLine> lines_of(const UXXmlWrapperBase& root) {
    std::vector<TreeLine> lines;
    std::vector<std::size_t> open;  // the line of each level
    walk(root, [&](const UXXmlWrapperBase& node, std::size_t level) {
        TreeLine line{visible(tag_of(node)), tag_of(node), level, lines.size()};
        if (level > 0) line.parent = open[level - 1];
        int id = 0;
        if (node.GetID(id) != 0) line.text += fmt::format("  #{}", id);
        for (const auto& [name, value] : all_attributes(node)) {
            line.text += fmt::format("  @{}=\"{}\"", visible(name), visible(value));
        }
        const std::string value = value_of(node);
        if (!value.empty()) line.text += "  = " + visible(value);
        open.resize(level + 1);
        open[level] = lines.size();
        lines.push_back(std::move(line));
    });
    return lines;
}

bool write_tree_diff(Output& out, const std::vector<TreeLine>& before,
                     const std::vector<TreeLine>& after) {
    return DiffWriter(out, before, after).write();
}

}  // namespace uxtool
