#include "host/writer.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <stdexcept>
#include <string_view>

#include "host/file_output.h"
#include "host/numbers.h"

namespace uxhost {
namespace {

// What a byte asks for when it stands in a text or in an attribute value.
enum : unsigned char { kInText = 1, kInAttribute = 2, kForbidden = 4, kHigh = 8, kNotBlank = 16 };

constexpr std::array<unsigned char, 256> byte_classes() {
    std::array<unsigned char, 256> classes{};
    for (int c = 0; c < 256; ++c) {
        unsigned char bits = c == ' ' ? 0 : kNotBlank;
        if (c < 0x20) bits = kForbidden | kNotBlank;
        if (c >= 0x80) bits |= kHigh;
        classes[static_cast<std::size_t>(c)] = bits;
    }
    classes['\t'] = classes['\n'] = kInAttribute;
    classes['\r'] = kInText | kInAttribute;
    classes['&'] = classes['<'] = classes['>'] = kInText | kInAttribute | kNotBlank;
    classes['"'] = kInAttribute | kNotBlank;
    return classes;
}
constexpr std::array<unsigned char, 256> kClasses = byte_classes();

unsigned char class_of(char c) {
    return kClasses[static_cast<unsigned char>(c)];
}

unsigned classes_in(std::string_view text) {
    unsigned found = 0;
    for (const char c : text) found |= class_of(c);
    return found;
}

std::string_view reference_for(char c) {
    switch (c) {
        case '&':
            return "&amp;";
        case '<':
            return "&lt;";
        case '>':
            return "&gt;";
        case '"':
            return "&quot;";
        case '\t':
            return "&#9;";
        case '\n':
            return "&#10;";
        case '\r':
            return "&#13;";
        default:
            return "&#32;";
    }
}

// The length of a valid sequence of characters that XML allows, of two bytes or more, at text[0];
// 0 when there is none.
std::size_t sequence_length(std::string_view text) {
    const auto byte = [&](std::size_t i) {
        return i < text.size() ? static_cast<unsigned char>(text[i]) : 0u;
    };
    const auto follows = [&](std::size_t i) { return (byte(i) & 0xC0) == 0x80; };
    const unsigned lead = byte(0);
    if (lead >= 0xC2 && lead <= 0xDF) return follows(1) ? 2 : 0;
    if (lead >= 0xE0 && lead <= 0xEF) {
        if (!follows(1) || !follows(2)) return 0;
        const unsigned code = (lead & 0x0F) << 12 | (byte(1) & 0x3F) << 6 | (byte(2) & 0x3F);
        return code < 0x800 || (code >= 0xD800 && code <= 0xDFFF) || code >= 0xFFFE ? 0 : 3;
    }
    if (lead >= 0xF0 && lead <= 0xF4) {
        if (!follows(1) || !follows(2) || !follows(3)) return 0;
        const unsigned code = (lead & 0x07) << 18 | (byte(1) & 0x3F) << 12;
        return code < 0x10000 || code > 0x10FFFF ? 0 : 4;
    }
    return 0;
}

bool holds_only_characters(std::string_view text) {
    while (!text.empty()) {
        const unsigned char bits = class_of(text[0]);
        if ((bits & kForbidden) != 0) return false;
        const std::size_t length = (bits & kHigh) != 0 ? sequence_length(text) : 1;
        if (length == 0) return false;
        text.remove_prefix(length);
    }
    return true;
}

// Something that XML cannot hold; what() tells where.
struct Unwritable : std::runtime_error {
    using std::runtime_error::runtime_error;
};

std::string path_of(const Document& document, const Element& element) {
    std::string path;
    for (const Element* at = &element; at != nullptr; at = document.element(at->parent)) {
        int position = 1;
        for (Ref ref = at->previous; ref != 0; ref = document.element(ref)->previous) {
            position += document.element(ref)->tag == at->tag ? 1 : 0;
        }
        std::string step = "/" + std::string(document.name_view(at->tag));
        if (at->parent != 0) step += "[" + std::to_string(position) + "]";
        path.insert(0, step);
    }
    return path;
}

// Writes into a buffer, which goes to the file, if there is one, whenever it is full.
class Writer {
public:
    Writer(const Document& document, std::string& buffer, FileOutput* file)
        : document_(document), buffer_(buffer), file_(file) {}

    void write(const Element& top) {
        const Element* element = &top;
        for (;;) {
            open(*element);
            if (element->first != 0) {
                element = document_.element(element->first);
                continue;
            }
            while (element != &top && element->next == 0) {
                element = document_.element(element->parent);
                close(*element);
            }
            if (element == &top) return;
            element = document_.element(element->next);
        }
    }

private:
    void put(std::string_view text) { buffer_.append(text); }
    void put(char c) { buffer_.push_back(c); }

    void open(const Element& element) {
        put('<');
        put(document_.name_view(element.tag));
        put_attributes(element);
        const bool leaf = element.first == 0;
        const bool hasValue = document_.has_value(element);
        if (leaf && !hasValue && file_ != nullptr) {
            put("/>");
        } else {
            put('>');
            if (hasValue) put_value(element);
            if (leaf) close(element);
        }
        if (file_ != nullptr && buffer_.size() >= kFlushBytes) file_->write(buffer_);
    }

    void close(const Element& element) {
        put("</");
        put(document_.name_view(element.tag));
        put('>');
    }

    // In a file, a present ID is the one reserved attribute.
    void put_attributes(const Element& element) {
        const bool withId = file_ != nullptr && element.id != kNoId;
        const Attribute* attribute = document_.attributes_or_null(element);
        for (std::uint32_t i = 0; i < element.attributeCount; ++i, ++attribute) {
            const std::string_view name = document_.name_view(attribute->name);
            if (withId && name == kIdAttribute) continue;
            put(' ');
            put(name);
            put("=\"");
            put_escaped(element, name, document_.attribute_value(*attribute), kInAttribute);
            put('"');
        }
        if (!withId) return;
        put(" _ux_id=\"");
        put(std::to_string(element.id));
        put('"');
    }

    void put_value(const Element& element) {
        CStringUTF8 scratch;
        const std::string_view text = document_.value_text(element, scratch);
        const bool blank = element.first != 0 && (classes_in(text) & kNotBlank) == 0;
        if (!blank) {
            put_escaped(element, {}, text, kInText);
            return;
        }
        // White space alone in a branch would be dropped when it is read back, references are not.
        for (const char c : text) put(reference_for(c));
    }

    void put_escaped(const Element& element, std::string_view attribute, std::string_view text,
                     unsigned char place) {
        const unsigned found = classes_in(text);
        if (file_ != nullptr && (found & (kForbidden | kHigh)) != 0 &&
            !holds_only_characters(text)) {
            refuse(element, attribute);
        }
        if ((found & place) == 0) {
            put(text);
            return;
        }
        std::size_t plain = 0;
        for (std::size_t i = 0; i < text.size(); ++i) {
            if ((class_of(text[i]) & place) == 0) continue;
            put(text.substr(plain, i - plain));
            put(reference_for(text[i]));
            plain = i + 1;
        }
        put(text.substr(plain));
    }

    [[noreturn]] void refuse(const Element& element, std::string_view attribute) const {
        std::string where = path_of(document_, element);
        if (!attribute.empty()) where += "/@" + std::string(attribute);
        throw Unwritable(where + ": the text has bytes that XML cannot hold");
    }

    static constexpr std::size_t kFlushBytes = 1 << 16;

    const Document& document_;
    std::string& buffer_;
    FileOutput* file_;
};

}  // namespace

void serialise(const Document& document, const Element& element, std::string& text) {
    Writer(document, text, nullptr).write(element);
}

bool save_file(const Document& document, const Element& element, const char* path,
               std::string& reason) {
    FileOutput file(path);
    std::string buffer = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>";
    if (file.failed()) {
        reason = file.reason();
        return false;
    }
    try {
        Writer(document, buffer, &file).write(element);
        file.write(buffer);
    } catch (const Unwritable& unwritable) {
        reason = unwritable.what();
        return false;
    }
    if (file.commit()) return true;
    reason = file.reason();
    return false;
}

}  // namespace uxhost
