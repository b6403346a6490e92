// A slow, plain scanner that the fast one is compared with.
#include "outline/reference_scanner.h"

#include <cstddef>
#include <cstdint>
#include <vector>

#include "base/xml_names.h"
#include "outline/scan_support.h"

namespace uxtest {
namespace {

using Characters = std::vector<std::uint32_t>;

Characters decode(std::string_view text) {
    Characters out;
    const auto byte = [&](std::size_t i) { return static_cast<unsigned char>(text[i]); };
    for (std::size_t i = 0; i < text.size();) {
        std::size_t length = 0;
        std::uint32_t character = 0;
        if (byte(i) < 0x80) {
            length = 1, character = byte(i) & 0x7Fu;
        } else if (byte(i) >> 5 == 6) {
            length = 2, character = byte(i) & 0x1Fu;
        } else if (byte(i) >> 4 == 14) {
            length = 3, character = byte(i) & 0x0Fu;
        } else if (byte(i) >> 3 == 31) {
            length = 4, character = byte(i) & 0x07u;
        }
        if (length == 0 || i + length > text.size()) return out;
        for (std::size_t k = 1; k < length; ++k) {
            if (byte(i + k) >> 6 != 2) return out;
            character = character * 64 + (byte(i + k) & 0x3Fu);
        }
        if (character == 0) return out;
        out.push_back(character);
        i += length;
    }
    return out;
}

std::string encoded(std::uint32_t c) {
    std::string out;
    if (c < 0x80) return {static_cast<char>(c)};
    if (c < 0x800) return {static_cast<char>(0xC0 + c / 64), static_cast<char>(0x80 + c % 64)};
    if (c >= 0x10000) {
        out += static_cast<char>(0xF0 + c / 262144);
        out += static_cast<char>(0x80 + c / 4096 % 64);
    } else {
        out += static_cast<char>(0xE0 + c / 4096);
    }
    out += static_cast<char>(0x80 + c / 64 % 64);
    out += static_cast<char>(0x80 + c % 64);
    return out;
}

class Reference {
public:
    Reference(Characters characters, bool bytes) : input_(std::move(characters)), bytes_(bytes) {}

    std::string run() {
        while (peek() >= 0 && construct()) {
        }
        return recorder_.events();
    }

private:
    std::int64_t peek() const { return at_ < input_.size() ? std::int64_t{input_[at_]} : -1; }
    std::int64_t next() {
        const std::int64_t c = peek();
        if (c >= 0) ++at_;
        return c;
    }
    void skip_white() {
        while (peek() == 9 || peek() == 10 || peek() == 13 || peek() == 32) next();
    }
    bool read_name(std::string& out) {
        const auto fits = [this](bool first) {
            if (peek() < 0) return false;
            const auto c = static_cast<std::uint32_t>(peek());
            if (bytes_ && c >= 0x80) return true;
            return first ? ux::starts_name(c) : ux::continues_name(c);
        };
        out.clear();
        if (!fits(true)) return false;
        while (fits(out.empty())) {
            const auto c = static_cast<std::uint32_t>(next());
            out += bytes_ ? std::string(1, static_cast<char>(c)) : encoded(c);
        }
        return true;
    }
    bool skip_past(std::string_view closing) {
        for (std::string seen; peek() >= 0;) {
            const std::int64_t c = next();
            seen += c < 0x80 ? static_cast<char>(c) : '\x7F';
            if (seen.size() > closing.size()) seen.erase(0, 1);
            if (seen == closing) return true;
        }
        return false;
    }

    bool construct() {
        if (next() != '<') return true;
        if (peek() == '/') return next(), end_tag();
        if (peek() == '?') return next(), instruction();
        if (peek() == '!') return next(), declaration();
        return peek() >= 0 && start_tag();
    }
    bool end_tag() {
        std::string name;
        if (!read_name(name) || !skip_past(">")) return false;
        if (!recorder_.nameStack().empty() && recorder_.nameStack().back() == name) {
            recorder_.endElement(name);
        }
        return true;
    }
    bool instruction() {
        std::string target;
        if (!read_name(target)) return false;
        skip_white();
        return skip_past("?>");
    }
    bool declaration() {
        if (peek() == '-') return next(), next() == '-' && skip_past("-->");
        if (peek() == '[') {
            next();
            for (const char c : {'C', 'D', 'A', 'T', 'A', '['}) {
                if (next() != c) return false;
            }
            return skip_past("]]>");
        }
        for (int depth = 1; depth > 0;) {
            const std::int64_t c = next();
            if (c < 0) return false;
            depth += c == '<' ? 1 : c == '>' ? -1 : 0;
        }
        return true;
    }
    bool start_tag() {
        std::string name;
        read_name(name);
        std::vector<std::string> attributes;
        for (;;) {
            skip_white();
            std::string attribute;
            const bool hasAttribute = read_name(attribute);
            if (hasAttribute && !attribute_value()) return false;
            if (hasAttribute) attributes.push_back(attribute);
            if (peek() == '>') {
                next();
                recorder_.startElement(name, attributes);
                return true;
            }
            if (peek() == '/') {
                next();
                if (next() != '>') return false;
                recorder_.startElement(name, attributes);
                recorder_.endElement(name);
                return true;
            }
            if (!hasAttribute) return false;
        }
    }
    bool attribute_value() {
        skip_white();
        if (next() != '=') return false;
        skip_white();
        const std::int64_t quote = next();
        if (quote != '"' && quote != '\'') return false;
        for (std::int64_t c = next(); c != quote; c = next()) {
            if (c < 0) return false;
        }
        return true;
    }

    Characters input_;
    bool bytes_;
    std::size_t at_ = 0;
    EventRecorder recorder_;
};

}  // namespace

std::string reference_streamed_events(std::string_view text) {
    return Reference(decode(text), false).run();
}

std::string reference_mapped_events(std::string_view text) {
    Characters bytes;
    for (const char byte : text) bytes.push_back(static_cast<unsigned char>(byte));
    return Reference(std::move(bytes), true).run();
}

std::string reference_decoded(std::string_view text) {
    std::string out;
    for (const std::uint32_t c : decode(text)) out += encoded(c);
    return out;
}

}  // namespace uxtest
