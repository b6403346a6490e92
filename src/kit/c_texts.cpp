// Tests of the texts that come through the C door.
#include "kit/c_texts.h"

#include <string>
#include <string_view>

#include "base/utf8.h"
#include "base/xml_names.h"
#include "kit/c_last_error.h"

namespace ux::kit {
namespace {

// Steps over the characters of a text as long as they are accepted.
template <typename Accept>
std::size_t accepted_bytes(std::string_view text, Accept accept) {
    std::size_t at = 0;
    while (at < text.size()) {
        const Utf8Char next = decode_utf8(text, at);
        if (next.length == 0 || !accept(next.code)) break;
        at += next.length;
    }
    return at;
}

bool refuse_at(std::string_view text, std::size_t at, const char* why) {
    if (at == text.size()) return true;
    refuse(why + (" at byte " + std::to_string(at)));
    return false;
}

}  // namespace

bool accept_text(const char* text) {
    if (text == nullptr) return refused(false, "the text is null");
    const std::string_view view(text);
    return refuse_at(view, accepted_bytes(view, [](char32_t) { return true; }),
                     "the text is not UTF-8");
}

bool accept_value(const char* text) {
    if (text == nullptr) return true;
    if (!accept_text(text)) return false;
    const std::string_view view(text);
    return refuse_at(view, accepted_bytes(view, is_xml_character), "XML cannot hold the character");
}

}  // namespace ux::kit
