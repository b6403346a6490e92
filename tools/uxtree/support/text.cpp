// Text for people: widths, clipping, nearest names.
#include "support/text.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <numeric>

namespace uxtool {
namespace {

struct CodePoint {
    std::uint32_t value;
    std::size_t length;  // in bytes; an undecodable byte stands for itself
};

// The bytes of a character that begins with this one.
std::size_t length_by(unsigned char lead) {
    return lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : lead >= 0xC0 ? 2 : 1;
}

CodePoint decode(std::string_view text) {
    const auto byte = [&](std::size_t i) { return static_cast<unsigned char>(text[i]); };
    const unsigned char lead = byte(0);
    const std::size_t length = length_by(lead);
    if (length == 1 || length > text.size()) return {lead, 1};
    std::uint32_t value = lead & (0xFFU >> (length + 1));
    for (std::size_t i = 1; i < length; ++i) {
        if ((byte(i) & 0xC0U) != 0x80U) return {lead, 1};
        value = (value << 6U) | (byte(i) & 0x3FU);
    }
    return {value, length};
}

struct CharacterRange {
    std::uint32_t first;
    std::uint32_t last;
};

template <std::size_t Size>
bool in_ranges(std::uint32_t value, const std::array<CharacterRange, Size>& ranges) {
    return std::any_of(ranges.begin(), ranges.end(), [value](const CharacterRange& range) {
        return value >= range.first && value <= range.last;
    });
}

constexpr std::array<CharacterRange, 8> kZeroWidth{{{0x300, 0x36F},
                                                    {0x483, 0x489},
                                                    {0x591, 0x5BD},
                                                    {0x610, 0x61A},
                                                    {0x64B, 0x65F},
                                                    {0x200B, 0x200F},
                                                    {0xFE00, 0xFE0F},
                                                    {0xE0100, 0xE01EF}}};
constexpr std::array<CharacterRange, 8> kWide{{{0x1100, 0x115F},
                                               {0x2E80, 0x303E},
                                               {0x3041, 0xA4CF},
                                               {0xAC00, 0xD7A3},
                                               {0xF900, 0xFAFF},
                                               {0xFE30, 0xFE6F},
                                               {0xFF00, 0xFF60},
                                               {0x1F300, 0x3FFFD}}};

std::size_t width_of(std::uint32_t value) {
    if (value < 0x300) return 1;
    if (in_ranges(value, kZeroWidth)) return 0;
    return in_ranges(value, kWide) ? 2 : 1;
}

void append_visible(std::string& out, char c) {
    switch (c) {
        case '\n':
            out += "\\n";
            return;
        case '\t':
            out += "\\t";
            return;
        case '\r':
            out += "\\r";
            return;
        case '\x1b':
            out += "\\e";
            return;
        default:
            break;
    }
    const auto byte = static_cast<unsigned char>(c);
    if (byte < 0x20 || byte == 0x7F) {
        out += fmt::format("\\x{:02x}", byte);
    } else {
        out += c;
    }
}

std::size_t edit_distance(std::string_view a, std::string_view b) {
    std::vector<std::size_t> row(b.size() + 1);
    std::iota(row.begin(), row.end(), std::size_t{0});
    for (std::size_t i = 1; i <= a.size(); ++i) {
        std::size_t diagonal = row[0];
        row[0] = i;
        for (std::size_t j = 1; j <= b.size(); ++j) {
            const std::size_t replaced = diagonal + (a[i - 1] == b[j - 1] ? 0U : 1U);
            diagonal = row[j];
            row[j] = std::min({row[j] + 1, row[j - 1] + 1, replaced});
        }
    }
    return row[b.size()];
}

}  // namespace

std::size_t display_width(std::string_view text) {
    std::size_t width = 0;
    while (!text.empty()) {
        const CodePoint point = decode(text);
        width += width_of(point.value);
        text.remove_prefix(point.length);
    }
    return width;
}

std::size_t utf8_length(std::string_view text) {
    if (text.empty()) return 0;
    const CodePoint point = decode(text);
    constexpr std::array<std::uint32_t, 5> kSmallest{0, 0, 0x80, 0x800, 0x10000};
    if (point.length == 1) return point.value < 0x80 ? 1 : 0;
    const bool isSurrogate = point.value >= 0xD800 && point.value <= 0xDFFF;
    return point.value < kSmallest[point.length] || isSurrogate || point.value > 0x10FFFF
               ? 0
               : point.length;
}

std::size_t cut_character(std::string_view text) {
    for (std::size_t at = text.size() - std::min<std::size_t>(text.size(), 3); at < text.size();
         ++at) {
        if (at + length_by(static_cast<unsigned char>(text[at])) > text.size()) return at;
    }
    return text.size();
}

std::string visible(std::string_view text) {
    std::string out;
    out.reserve(text.size());
    for (const char c : text) append_visible(out, c);
    return out;
}

std::string visible_lines(std::string_view text) {
    std::string out;
    out.reserve(text.size());
    for (const char c : text) {
        if (c == '\n' || c == '\t') {
            out += c;
        } else {
            append_visible(out, c);
        }
    }
    return out;
}

namespace {

bool steers_a_terminal(std::uint32_t value) {
    constexpr std::array<CharacterRange, 5> kSteering{
        {{0x80, 0x9F}, {0x61C, 0x61C}, {0x200E, 0x200F}, {0x202A, 0x202E}, {0x2066, 0x2069}}};
    return in_ranges(value, kSteering);
}

// The length of a colour sequence at the start of the text, 0 when there is none.
std::size_t colour_length(std::string_view text) {
    if (!text.starts_with("\x1b[")) return 0;
    std::size_t end = 2;
    while (end < text.size() && ((text[end] >= '0' && text[end] <= '9') || text[end] == ';')) ++end;
    return end < text.size() && text[end] == 'm' && end < 8 ? end + 1 : 0;
}

}  // namespace

std::string terminal_safe(std::string_view text) {
    std::string out;
    out.reserve(text.size());
    while (!text.empty()) {
        CodePoint point = decode(text);
        const auto lead = static_cast<unsigned char>(text[0]);
        if (const std::size_t colour = colour_length(text); colour > 0) {
            point.length = colour;
            out += text.substr(0, colour);
        } else if (point.length == 1 && lead >= 0x80) {
            out += fmt::format("\\x{:02x}", lead);
        } else if (point.length > 1 && steers_a_terminal(point.value)) {
            out += fmt::format("\\u{{{:x}}}", point.value);
        } else if (point.length > 1 || lead == '\n' || lead == '\t') {
            out += text.substr(0, point.length);
        } else {
            append_visible(out, text[0]);
        }
        text.remove_prefix(point.length);
    }
    return out;
}

std::string clipped(std::string_view text, std::size_t width) {
    // Only as much is looked at as can be shown: a value may be very long.
    const bool cut = width != 0 && text.size() > 8 * width;
    std::string line = visible(cut ? text.substr(0, 8 * width) : text);
    if (width == 0 || (!cut && display_width(line) <= width)) return line;
    std::string_view rest = line;
    std::size_t used = 0;
    while (!rest.empty()) {
        const CodePoint point = decode(rest);
        const std::size_t next = used + width_of(point.value);
        if (next + 1 > width) break;
        used = next;
        rest.remove_prefix(point.length);
    }
    line.resize(line.size() - rest.size());
    return line + "…";
}

std::string nearest(std::string_view name, const std::vector<std::string>& candidates) {
    std::string best;
    std::size_t bestDistance = std::max<std::size_t>(2, name.size() / 3) + 1;
    if (name.size() > 100) return best;
    for (const std::string& candidate : candidates) {
        if (candidate.size() > 100) continue;
        const std::size_t distance = edit_distance(name, candidate);
        if (distance < bestDistance && distance < candidate.size()) {
            best = candidate;
            bestDistance = distance;
        }
    }
    return best;
}

std::string replaced(std::string_view text,
                     std::initializer_list<std::pair<char, std::string_view>> replacements) {
    std::string out;
    for (const char c : text) {
        const auto* const found =
            std::find_if(replacements.begin(), replacements.end(),
                         [c](const auto& replacement) { return replacement.first == c; });
        if (found == replacements.end()) {
            out += c;
        } else {
            out += found->second;
        }
    }
    return out;
}

std::string join(const std::vector<std::string>& texts, std::string_view separator) {
    std::string out;
    for (const std::string& text : texts) {
        if (&text != &texts.front()) out += separator;
        out += text;
    }
    return out;
}

std::string short_list(const std::vector<std::string>& names) {
    constexpr std::size_t kShown = 8;
    std::string out;
    for (std::size_t i = 0; i < std::min(kShown, names.size()); ++i) {
        out += (i == 0 ? "" : ", ") + visible(names[i]);
    }
    if (names.size() > kShown) out += fmt::format(" and {} more", names.size() - kShown);
    return out;
}

std::string excerpt(std::string_view text, long long column) {
    constexpr long long kBefore = 60;
    constexpr std::size_t kAfter = 40;
    std::size_t shownFrom = 0;
    std::size_t place = 0;
    for (long long i = 1; i < column && place < text.size(); ++i) {
        if (i + kBefore == column) shownFrom = place;
        place += decode(text.substr(place)).length;
    }
    std::size_t shownTo = place;
    for (std::size_t i = 0; i < kAfter && shownTo < text.size(); ++i) {
        shownTo += decode(text.substr(shownTo)).length;
    }
    const std::string before = visible(text.substr(shownFrom, place - shownFrom));
    const std::string after = visible(text.substr(place, shownTo - place));
    if (before.empty() && after.empty()) return "";
    return "  " + before + after + "\n  " + std::string(display_width(before), ' ') + "^";
}

}  // namespace uxtool
