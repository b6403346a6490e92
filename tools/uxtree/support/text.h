// Text for people: widths, clipping, nearest names.
#pragma once

#include <concepts>
#include <cstddef>
#include <initializer_list>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <fmt/format.h>

namespace uxtool {

// The number of terminal columns that UTF-8 text takes: wide characters count two, combining ones
// none.
std::size_t display_width(std::string_view text);

// The bytes of the character at the start of the text, 0 when no well-formed UTF-8 stands there.
std::size_t utf8_length(std::string_view text);

// Where a character begins that the end of the text cuts; its size when none is cut.
std::size_t cut_character(std::string_view text);

// One line without control characters: they are written as \n, \t, \r, \e or \xNN, so that no
// content moves the cursor or breaks a line of output.
std::string visible(std::string_view text);
// The same, keeping line breaks and TAB.
std::string visible_lines(std::string_view text);

// What is shown on a terminal: C1 controls, characters that turn the direction of text and bytes that
// are no UTF-8 are written as \u{..} and \x.., and so are control characters but for line breaks, TAB
// and the colours that this tool writes itself.
std::string terminal_safe(std::string_view text);

// visible(text), cut to width columns with a closing ellipsis; width 0 keeps all.
std::string clipped(std::string_view text, std::size_t width);

// The candidate that is nearest to name, "" when none is near enough to be meant.
std::string nearest(std::string_view name, const std::vector<std::string>& candidates);

// The text with each of some characters replaced by a text.
std::string replaced(std::string_view text,
                     std::initializer_list<std::pair<char, std::string_view>> replacements);

std::string join(const std::vector<std::string>& texts, std::string_view separator);

// The first names joined by commas, with "and N more" when there are many.
std::string short_list(const std::vector<std::string>& names);

// The surroundings of a place in a line of UTF-8 text, with a caret below it: two lines. Columns count
// characters, from 1. "" for an empty line.
std::string excerpt(std::string_view text, long long column);

// "1 file", "2 files", "2 branches".
template <std::integral Number>
std::string counted(Number count, std::string_view noun) {
    return fmt::format("{} {}{}", count, noun, count == 1 ? "" : noun.ends_with("ch") ? "es" : "s");
}

}  // namespace uxtool
