// Comparing texts line by line.
#include "support/text_diff.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <unordered_map>
#include <utility>
#include <vector>

#include <fmt/format.h>

namespace uxtool {
namespace {

constexpr std::size_t kContext = 3;
constexpr std::ptrdiff_t kMostSteps = 1500;  // of one exact search; its memory grows by the square

std::vector<std::string_view> lines_of(std::string_view text) {
    std::vector<std::string_view> lines;
    while (!text.empty()) {
        const std::size_t end = std::min(text.find('\n'), text.size() - 1) + 1;
        lines.push_back(text.substr(0, end));
        text.remove_prefix(end);
    }
    return lines;
}

// Lines [a, aEnd) of the old text and [b, bEnd) of the new one.
struct Range {
    std::size_t a;
    std::size_t aEnd;
    std::size_t b;
    std::size_t bEnd;
};

// Marks the lines that only one of the texts has.
class LineMatcher {
public:
    LineMatcher(const std::vector<std::string_view>& a, const std::vector<std::string_view>& b)
        : a_(numbers(a)), b_(numbers(b)), removed(a.size(), false), added(b.size(), false) {}

    void run() {
        std::vector<Range> ranges{{0, a_.size(), 0, b_.size()}};
        while (!ranges.empty()) {
            Range range = ranges.back();
            ranges.pop_back();
            trim(range);
            const bool isOver = range.a == range.aEnd || range.b == range.bEnd;
            if (isOver || (!search(range) && !split(range, ranges))) mark(range);
        }
    }

private:
    std::vector<std::uint32_t> numbers(const std::vector<std::string_view>& lines) {
        std::vector<std::uint32_t> out;
        out.reserve(lines.size());
        for (const std::string_view line : lines) {
            out.push_back(known_.emplace(line, known_.size()).first->second);
        }
        return out;
    }

    void trim(Range& r) const {
        while (r.a < r.aEnd && r.b < r.bEnd && a_[r.a] == b_[r.b]) ++r.a, ++r.b;
        while (r.a < r.aEnd && r.b < r.bEnd && a_[r.aEnd - 1] == b_[r.bEnd - 1]) {
            --r.aEnd;
            --r.bEnd;
        }
    }

    void mark(const Range& r) {
        for (std::size_t i = r.a; i < r.aEnd; ++i) removed[i] = true;
        for (std::size_t i = r.b; i < r.bEnd; ++i) added[i] = true;
    }

    // The shortest way of removals and additions; false when it is a long one.
    bool search(const Range& r) {
        const auto n = static_cast<std::ptrdiff_t>(r.aEnd - r.a);
        const auto m = static_cast<std::ptrdiff_t>(r.bEnd - r.b);
        std::vector<std::vector<std::ptrdiff_t>> trace;
        std::vector<std::ptrdiff_t> reach(static_cast<std::size_t>(2 * kMostSteps + 3), 0);
        const auto at = [](std::ptrdiff_t k) {
            return static_cast<std::size_t>(k + kMostSteps + 1);
        };
        for (std::ptrdiff_t d = 0; d <= std::min(n + m, kMostSteps); ++d) {
            for (std::ptrdiff_t k = -d; k <= d; k += 2) {
                const bool down = k == -d || (k != d && reach[at(k - 1)] < reach[at(k + 1)]);
                std::ptrdiff_t x = down ? reach[at(k + 1)] : reach[at(k - 1)] + 1;
                while (x < n && x - k < m && a_[r.a + to_size(x)] == b_[r.b + to_size(x - k)]) ++x;
                reach[at(k)] = x;
                if (x < n || x - k < m) continue;
                walk_back(r, trace, d, k);
                return true;
            }
            trace.emplace_back(reach.begin() + (kMostSteps + 1 - d),
                               reach.begin() + (kMostSteps + 2 + d));
        }
        return false;
    }
    static std::size_t to_size(std::ptrdiff_t value) { return static_cast<std::size_t>(value); }

    void walk_back(const Range& r, const std::vector<std::vector<std::ptrdiff_t>>& trace,
                   std::ptrdiff_t d, std::ptrdiff_t k) {
        for (; d > 0; --d) {
            const std::vector<std::ptrdiff_t>& before = trace[to_size(d - 1)];
            const auto reach = [&](std::ptrdiff_t diagonal) {
                return before[to_size(diagonal + d - 1)];
            };
            const bool down =
                k == -d ||
                (k != d && k - 1 >= 1 - d && k + 1 <= d - 1 && reach(k - 1) < reach(k + 1)) ||
                (k != d && k + 1 <= d - 1 && k - 1 < 1 - d);
            k += down ? 1 : -1;
            const std::ptrdiff_t x = reach(k);
            if (down) {
                added[r.b + to_size(x - k)] = true;
            } else {
                removed[r.a + to_size(x)] = true;
            }
        }
    }

    // At lines that both sides have once, in their common order; false without such lines.
    bool split(const Range& r, std::vector<Range>& ranges) const {
        struct Seen {
            std::size_t inA = 0;
            std::size_t inB = 0;
            std::size_t atB = 0;
        };
        std::unordered_map<std::uint32_t, Seen> seen;
        for (std::size_t i = r.a; i < r.aEnd; ++i) ++seen[a_[i]].inA;
        for (std::size_t i = r.b; i < r.bEnd; ++i) {
            Seen& line = seen[b_[i]];
            ++line.inB;
            line.atB = i;
        }
        std::vector<std::pair<std::size_t, std::size_t>> pairs;
        for (std::size_t i = r.a; i < r.aEnd; ++i) {
            const Seen& line = seen[a_[i]];
            if (line.inA == 1 && line.inB == 1) pairs.emplace_back(i, line.atB);
        }
        const std::vector<std::pair<std::size_t, std::size_t>> common = rising(pairs);
        if (common.empty()) return false;
        Range next = r;
        for (const auto& [a, b] : common) {
            ranges.push_back({next.a, a, next.b, b});
            next.a = a + 1;
            next.b = b + 1;
        }
        ranges.push_back(next);
        return true;
    }

    // The longest run of pairs that rise on both sides.
    static std::vector<std::pair<std::size_t, std::size_t>> rising(
        const std::vector<std::pair<std::size_t, std::size_t>>& pairs) {
        std::vector<std::size_t> tails;
        std::vector<std::size_t> before(pairs.size(), pairs.size());
        for (std::size_t i = 0; i < pairs.size(); ++i) {
            const auto at = std::lower_bound(
                tails.begin(), tails.end(), pairs[i].second,
                [&](std::size_t pair, std::size_t b) { return pairs[pair].second < b; });
            if (at != tails.begin()) before[i] = *(at - 1);
            if (at == tails.end()) {
                tails.push_back(i);
            } else {
                *at = i;
            }
        }
        std::vector<std::pair<std::size_t, std::size_t>> out;
        for (std::size_t i = tails.empty() ? pairs.size() : tails.back(); i < pairs.size();
             i = before[i]) {
            out.push_back(pairs[i]);
        }
        std::reverse(out.begin(), out.end());
        return out;
    }

    std::unordered_map<std::string_view, std::uint32_t> known_;
    std::vector<std::uint32_t> a_;
    std::vector<std::uint32_t> b_;

public:
    std::vector<bool> removed;
    std::vector<bool> added;
};

void append_line(std::string& out, char sign, std::string_view line) {
    out += sign;
    out += line;
    if (line.empty() || line.back() != '\n') out += "\n\\ No newline at end of file\n";
}

std::string hunk_range(std::size_t first, std::size_t count) {
    if (count == 1) return fmt::format("{}", first + 1);
    return fmt::format("{},{}", count == 0 ? first : first + 1, count);
}

// Lines [i, iEnd) and [j, jEnd), with what is common to both as context.
struct Hunk {
    std::size_t i;
    std::size_t iEnd;
    std::size_t j;
    std::size_t jEnd;
};

std::vector<Hunk> hunks_of(const LineMatcher& lines) {
    std::vector<Hunk> hunks;
    std::size_t i = 0;
    std::size_t j = 0;
    const std::size_t n = lines.removed.size();
    const std::size_t m = lines.added.size();
    while (i < n || j < m) {
        if ((i >= n || !lines.removed[i]) && (j >= m || !lines.added[j])) {
            ++i;
            ++j;
            continue;
        }
        const std::size_t before = std::min({kContext, i, j});
        const bool joins = !hunks.empty() && hunks.back().iEnd + kContext >= i;
        if (!joins) hunks.push_back({i - before, 0, j - before, 0});
        while (i < n && lines.removed[i]) ++i;
        while (j < m && lines.added[j]) ++j;
        const std::size_t behind = std::min({kContext, n - i, m - j});
        hunks.back().iEnd = i + behind;
        hunks.back().jEnd = j + behind;
    }
    return hunks;
}

}  // namespace

std::string unified_diff(std::string_view before, std::string_view after,
                         const std::string& beforeName, const std::string& afterName) {
    const std::vector<std::string_view> a = lines_of(before);
    const std::vector<std::string_view> b = lines_of(after);
    LineMatcher lines(a, b);
    lines.run();
    const std::vector<Hunk> hunks = hunks_of(lines);
    if (hunks.empty()) return "";
    std::string out = "--- " + beforeName + "\n+++ " + afterName + "\n";
    for (const Hunk& hunk : hunks) {
        out += fmt::format("@@ -{} +{} @@\n", hunk_range(hunk.i, hunk.iEnd - hunk.i),
                           hunk_range(hunk.j, hunk.jEnd - hunk.j));
        std::size_t j = hunk.j;
        for (std::size_t i = hunk.i; i < hunk.iEnd || j < hunk.jEnd;) {
            if (i < hunk.iEnd && lines.removed[i]) {
                append_line(out, '-', a[i++]);
            } else if (j < hunk.jEnd && lines.added[j]) {
                append_line(out, '+', b[j++]);
            } else {
                append_line(out, ' ', a[i++]);
                ++j;
            }
        }
    }
    return out;
}

}  // namespace uxtool
