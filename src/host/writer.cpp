// Writing elements as XML text, into memory or into a file.
#include "host/writer.h"

#include <stdexcept>
#include <string_view>

#include "base/file_output.h"
#include "host/element_path.h"
#include "xml/escaping.h"
#include "xml/output.h"

namespace uxhost {

using namespace ux::xml;

namespace {

constexpr std::string_view kDeclaration = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>";

// Something that XML cannot hold; what() tells where.
struct Unwritable : std::runtime_error {
    using std::runtime_error::runtime_error;
};

class Writer {
public:
    // toFile: what is written is a file's content, with IDs and only what XML can hold.
    Writer(const Document& document, bool toFile, ux::FileOutput* file)
        : document_(document), toFile_(toFile), out_(file) {}

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
        out_.put_padded(document_.name_view(element.tag));
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
        out_.put_padded(document_.name_view(element.tag));
        out_.put('>');
        out_.flush_when_long();
    }

    // In a file, a present ID is the one reserved attribute.
    void put_attributes(const Element& element) {
        const bool withId = toFile_ && element.id != kNoId;
        const Attribute* attribute = document_.attributes_or_null(element);
        for (std::uint32_t i = 0; i < element.attributeCount; ++i, ++attribute) {
            const std::string_view name = document_.name_view(attribute->name);
            if (withId && name == kIdAttribute) refuse_id(element);
            out_.put(' ');
            out_.put_padded(name);
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
        if (!is_text(element.valueKind)) {
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
                     TextClass place) {
        const unsigned found = classes_in(text);
        if ((found & (kForbidden | kHigh)) != 0 && toFile_ && !holds_only_characters(text)) {
            refuse(element, attribute);
        }
        out_.put_escaped(text, found, place);
    }

    // The attribute stands for the ID in files; one that was loaded with a text that is no number
    // would be lost.
    [[noreturn]] void refuse_id(const Element& element) const {
        throw Unwritable(path_of(document_, element) +
                         ": the ID has no place, since the element has an attribute \"" +
                         kIdAttribute + "\"");
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
    Writer writer(document, false, nullptr);
    writer.write(element);
    text.Assign(writer.out().text().data(), writer.out().text().size());
}

bool file_content(const Document& document, const Element& element, CStringUTF8& text,
                  std::string& reason) {
    try {
        Writer writer(document, true, nullptr);
        writer.out().put(kDeclaration);
        writer.write(element);
        text.Assign(writer.out().text().data(), writer.out().text().size());
        return true;
    } catch (const Unwritable& unwritable) {
        reason = unwritable.what();
        return false;
    }
}

bool save_file(const Document& document, const Element& element, const char* path,
               std::string& reason) {
    ux::FileOutput file(path);
    if (!file.failed()) {
        try {
            Writer writer(document, true, &file);
            writer.out().put(kDeclaration);
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
