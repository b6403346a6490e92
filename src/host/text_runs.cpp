#include "host/text_runs.h"

#include <algorithm>
#include <cstdint>
#include <cstring>

namespace uxhost {
namespace {

constexpr std::size_t kLongRun = 512;

// Eight bytes that are looked at in one step. The high bit of each byte takes the answer; all of
// this is right as long as none is set before, and a byte with one is no plain text anyway.
using Word = std::uint64_t;
constexpr Word kHighBits = 0x8080808080808080U;

constexpr Word repeated(char c) {
    return 0x0101010101010101U * static_cast<unsigned char>(c);
}
constexpr Word differs_from(Word word, char c) {
    return (word ^ repeated(c)) + ~kHighBits;
}
Word other_than_plain(const char* bytes, std::size_t count) {
    Word word = repeated(' ');
    std::memcpy(&word, bytes, count);
    const Word control = ~(word + repeated(0x80 - ' '));
    const Word space = ~differs_from(word, '\n') | ~differs_from(word, '\t');
    const Word markup =
        ~(differs_from(word, '&') & differs_from(word, '<') & differs_from(word, ']'));
    return word | (control & ~space) | markup;
}

}  // namespace

// Looking at windows side by side, each up to its first "<", costs next to nothing where markup is
// dense. The window before the first one without any has the tag that the run stands behind.
std::size_t long_run_start(std::string_view input) {
    for (std::size_t at = 0; input.size() - at >= kLongRun; at += kLongRun) {
        if (std::memchr(input.data() + at, '<', kLongRun) != nullptr) continue;
        if (at == 0) return 0;
        const std::size_t tagEnd = input.find('>', input.rfind('<', at));
        return std::min(tagEnd, input.size() - 1) + 1;
    }
    return input.size();
}

bool is_plain_text(std::string_view text) {
    std::uint64_t other = 0;
    while (text.size() >= sizeof(Word)) {
        other |= other_than_plain(text.data(), sizeof(Word));
        text.remove_prefix(sizeof(Word));
    }
    other |= other_than_plain(text.data(), text.size());
    return (other & kHighBits) == 0;
}

bool is_padding(std::string_view text) {
    return std::all_of(text.begin(), text.end(), [](char c) {
        return c == '\0' || c == ' ' || c == '\t' || c == '\n' || c == '\r';
    });
}

}  // namespace uxhost
