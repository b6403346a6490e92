// Writing elements as XML text, into memory or into a file.
#include "host/writer.h"

#include <algorithm>
#include <stdexcept>
#include <string_view>
#include <vector>

#include "base/file_output.h"
#include "xml/escaping.h"
#include "xml/output.h"

namespace uxhost {

using namespace ux::xml;

namespace {

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
            if (withId && name == kIdAttribute) continue;
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
                     TextClass place) {
        const unsigned found = classes_in(text);
        if ((found & (kForbidden | kHigh)) != 0 && toFile_ && !holds_only_characters(text)) {
            refuse(element, attribute);
        }
        out_.put_escaped(text, found, place);
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
