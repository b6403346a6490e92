#include "host/writer.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <memory>
#include <stdexcept>
#include <string_view>
#include <utility>
#include <vector>

#include "base/file_output.h"
#include "base/utf8.h"

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

// Bytes of the character at text[0]; 0 when XML does not allow what stands there.
std::size_t character_length(std::string_view text) {
    const unsigned char bits = class_of(text[0]);
    if ((bits & kForbidden) != 0) return 0;
    if ((bits & kHigh) == 0) return 1;
    const ux::Utf8Char character = ux::decode_utf8(text, 0);
    return character.code == 0xFFFE || character.code == 0xFFFF ? 0 : character.length;
}

bool holds_only_characters(std::string_view text) {
    while (!text.empty()) {
        const std::size_t length = character_length(text);
        if (length == 0) return false;
        text.remove_prefix(length);
    }
    return true;
}

// Something that XML cannot hold; what() tells where.
struct Unwritable : std::runtime_error {
    using std::runtime_error::runtime_error;
};

std::string step_of(const Document& document, const Element& element) {
    int position = 1;
    for (Ref ref = element.previous; ref != 0; ref = document.element(ref)->previous) {
        position += document.element(ref)->tag == element.tag ? 1 : 0;
    }
    std::string step = "/";
    step += document.name_view(element.tag);
    if (element.parent != 0) step.append("[").append(std::to_string(position)).append("]");
    return step;
}

// "/r/a[2]/b[1]"; of a very deep path the steps next to the element.
std::string path_of(const Document& document, const Element& element) {
    constexpr std::size_t kSteps = 100;
    std::vector<const Element*> line;
    const Element* at = &element;
    for (; at != nullptr && line.size() < kSteps; at = document.element(at->parent)) {
        line.push_back(at);
    }
    std::string path = at == nullptr ? "" : "...";
    std::for_each(line.rbegin(), line.rend(),
                  [&](const Element* ancestor) { path += step_of(document, *ancestor); });
    return path;
}

// Output being collected; with a file it goes there whenever it is long enough.
class Output {
public:
    explicit Output(ux::FileOutput* file) : file_(file) {}

    void put(char c) {
        if (size_ == capacity_) grow(1);
        bytes_[size_++] = c;
    }
    void put(std::string_view text) {
        if (text.size() > capacity_ - size_) grow(text.size());
        std::memcpy(bytes_.get() + size_, text.data(), text.size());
        size_ += text.size();
    }
    template <std::size_t N>
    void put(const char (&literal)[N]) {
        if (N > capacity_ - size_) grow(N);
        std::memcpy(bytes_.get() + size_, literal, N - 1);
        size_ += N - 1;
    }
    // A text of the document. Blocks are whole words, so it can be copied word by word, which for
    // short texts is much faster than a call.
    void put_stored(std::string_view text) {
        if (text.size() > kLongText) {
            put(text);
            return;
        }
        if (kLongText + kWord > capacity_ - size_) grow(kLongText + kWord);
        char* to = bytes_.get() + size_;
        for (std::size_t i = 0; i < text.size(); i += kWord) {
            std::memcpy(to + i, text.data() + i, kWord);
        }
        size_ += text.size();
    }
    void flush_when_long() {
        if (file_ != nullptr && size_ >= kFlushBytes) flush();
    }
    void flush() {
        file_->write(text());
        size_ = 0;
    }
    // What stands here; without a file that is all.
    std::string_view text() const { return {bytes_.get(), size_}; }

private:
    static constexpr std::size_t kFlushBytes = 1 << 20;
    static constexpr std::size_t kLongText = 128;
    static constexpr std::size_t kWord = 8;

    void grow(std::size_t room) {
        const std::size_t capacity = std::max(capacity_ * 2, size_ + room + 2 * kLongText);
        std::unique_ptr<char[]> bytes(new char[capacity]);
        if (size_ != 0) std::memcpy(bytes.get(), bytes_.get(), size_);
        bytes_ = std::move(bytes);
        capacity_ = capacity;
    }

    ux::FileOutput* file_;
    std::unique_ptr<char[]> bytes_;
    std::size_t capacity_ = 0;
    std::size_t size_ = 0;
};

class Writer {
public:
    Writer(const Document& document, ux::FileOutput* file)
        : document_(document), toFile_(file != nullptr), out_(file) {}

    Output& out() { return out_; }

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
    void open(const Element& element) {
        out_.put('<');
        out_.put_stored(document_.name_view(element.tag));
        put_attributes(element);
        const bool leaf = element.first == 0;
        const bool hasValue = document_.has_value(element);
        if (leaf && !hasValue && toFile_) {
            out_.put("/>");
        } else {
            out_.put('>');
            if (hasValue) put_value(element);
            if (leaf) close(element);
        }
    }

    void close(const Element& element) {
        out_.put("</");
        out_.put_stored(document_.name_view(element.tag));
        out_.put('>');
        out_.flush_when_long();
    }

    // In a file, a present ID is the one reserved attribute.
    void put_attributes(const Element& element) {
        const bool withId = toFile_ && element.id != kNoId;
        const Attribute* attribute = document_.attributes_or_null(element);
        for (std::uint32_t i = 0; i < element.attributeCount; ++i, ++attribute) {
            const std::string_view name = document_.name_view(attribute->name);
            if (withId && name == kIdAttribute) continue;
            out_.put(' ');
            out_.put_stored(name);
            out_.put("=\"");
            put_escaped(element, name, document_.attribute_value(*attribute), kInAttribute);
            out_.put('"');
        }
        if (!withId) return;
        out_.put(" _ux_id=\"");
        out_.put(std::string_view(std::to_string(element.id)));
        out_.put('"');
    }

    void put_value(const Element& element) {
        if (element.valueKind != ValueKind::kText) {
            out_.put(document_.value_text(element, scratch_));
            return;
        }
        const std::string_view text = document_.value_text(element, scratch_);
        const bool blank = element.first != 0 && (classes_in(text) & kNotBlank) == 0;
        if (!blank) {
            put_escaped(element, {}, text, kInText);
            return;
        }
        // White space alone in a branch would be dropped when it is read back, references are not.
        for (const char c : text) out_.put(reference_for(c));
    }

    void put_escaped(const Element& element, std::string_view attribute, std::string_view text,
                     unsigned char place) {
        const unsigned found = classes_in(text);
        if ((found & (kForbidden | kHigh)) != 0 && toFile_ && !holds_only_characters(text)) {
            refuse(element, attribute);
        }
        if ((found & place) == 0) {
            out_.put_stored(text);
            return;
        }
        std::size_t plain = 0;
        for (std::size_t i = 0; i < text.size(); ++i) {
            if ((class_of(text[i]) & place) == 0) continue;
            out_.put(text.substr(plain, i - plain));
            out_.put(reference_for(text[i]));
            plain = i + 1;
        }
        out_.put(text.substr(plain));
    }

    [[noreturn]] void refuse(const Element& element, std::string_view attribute) const {
        std::string where = path_of(document_, element);
        if (!attribute.empty()) where += "/@" + std::string(attribute);
        throw Unwritable(where + ": the text has bytes that XML cannot hold");
    }

    const Document& document_;
    bool toFile_;
    Output out_;
    CStringUTF8 scratch_;
};

}  // namespace

void serialise(const Document& document, const Element& element, CStringUTF8& text) {
    Writer writer(document, nullptr);
    writer.write(element);
    text.Assign(writer.out().text().data(), writer.out().text().size());
}

bool save_file(const Document& document, const Element& element, const char* path,
               std::string& reason) {
    ux::FileOutput file(path);
    if (!file.failed()) {
        try {
            Writer writer(document, &file);
            writer.out().put("<?xml version=\"1.0\" encoding=\"UTF-8\"?>");
            writer.write(element);
            writer.out().flush();
        } catch (const Unwritable& unwritable) {
            reason = unwritable.what();
            return false;
        }
        if (file.commit()) return true;
    }
    reason = file.reason();
    return false;
}

}  // namespace uxhost
