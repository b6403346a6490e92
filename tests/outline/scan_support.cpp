// What the tests of the scanner share: events as text, padded input.
#include "outline/scan_support.h"

#include <array>

#include "outline/markup.h"
#include "outline/scanner_detail.h"

namespace uxtest {
namespace {

std::string joined(const std::vector<std::string>& names) {
    std::string out;
    for (const std::string& name : names) out += (out.empty() ? "" : ",") + name;
    return out;
}

// A copy of exactly the bytes that the grammar may look at.
class Padded {
public:
    explicit Padded(std::string_view text) : bytes_(text.begin(), text.end()), size_(text.size()) {
        bytes_.resize(size_ + ux::kReadAhead, '<');
    }
    ux::BytesInput input() const { return {bytes_.data(), bytes_.data() + size_}; }

private:
    std::vector<char> bytes_;
    std::size_t size_;
};

void append_outline(const ux::LayoutNode& node, std::string& out) {
    out += node.name;
    std::string attributes;
    for (const auto& [name, known] : node.attributes) {
        attributes += (attributes.empty() ? "" : ",") + name;
    }
    if (!attributes.empty()) out += "(" + attributes + ")";
    if (node.children.empty()) return;
    out += '[';
    for (const auto& child : node.children) {
        if (child != node.children.front()) out += ' ';
        append_outline(*child, out);
    }
    out += ']';
}

}  // namespace

bool EventRecorder::startElement(const std::string& name,
                                 const std::vector<std::string>& attributeNames) {
    names_.push_back(name);
    add("+" + name + (attributeNames.empty() ? "" : "(" + joined(attributeNames) + ")"));
    return true;
}

bool EventRecorder::endElement(const std::string& name) {
    if (names_.empty() || names_.back() != name) return false;
    names_.pop_back();
    add("-" + name);
    return true;
}

void EventRecorder::add(const std::string& event) {
    if (!events_.empty()) events_ += ' ';
    events_ += event;
}

std::string streamed_events(std::string_view text, std::size_t blockSize) {
    ux::SaxFileReader reader = ux::SaxFileReader::of_bytes(text, blockSize);
    EventRecorder recorder;
    ux::SaxScanner(reader).scan(recorder);
    return recorder.events();
}

std::string mapped_events(std::string_view text) {
    const Padded bytes(text);
    ux::BytesInput input = bytes.input();
    EventRecorder recorder;
    ux::HandlerSink sink(recorder);
    ux::scan_markup(input, sink);
    return recorder.events();
}

std::string outline_text(const ux::LayoutNode& root) {
    std::string out;
    append_outline(root, out);
    return out;
}

std::string streamed_outline(std::string_view text, std::size_t blockSize) {
    ux::SaxFileReader reader = ux::SaxFileReader::of_bytes(text, blockSize);
    ux::OutlineBuilder outline;
    ux::scan_markup(reader, outline);
    return outline_text(outline.root());
}

std::string mapped_outline(std::string_view text) {
    const Padded bytes(text);
    ux::BytesInput input = bytes.input();
    ux::OutlineBuilder outline;
    ux::scan_markup(input, outline);
    return outline_text(outline.root());
}

std::string handled_outline(std::string_view text) {
    ux::SaxFileReader reader = ux::SaxFileReader::of_bytes(text);
    ux::LayoutHandler handler;
    ux::SaxScanner(reader).scan(handler);
    return outline_text(handler.root());
}

std::uint32_t RandomText::below(std::uint32_t bound) {
    return static_cast<std::uint32_t>(random_() % bound);
}

std::string RandomText::fragments(std::size_t count) {
    using namespace std::string_literals;
    static const std::array kFragments{"<"s,
                                       ">"s,
                                       "/"s,
                                       "="s,
                                       "\""s,
                                       "'"s,
                                       " "s,
                                       "\n"s,
                                       "\t"s,
                                       "\r"s,
                                       "!"s,
                                       "?"s,
                                       "-"s,
                                       "]"s,
                                       "["s,
                                       "a"s,
                                       "b"s,
                                       "name"s,
                                       "a1"s,
                                       "x-y.z"s,
                                       "_"s,
                                       ":"s,
                                       "1"s,
                                       "<a>"s,
                                       "</a>"s,
                                       "<b "s,
                                       "</b>"s,
                                       "<a/>"s,
                                       "<a x='1'>"s,
                                       "<b y=\"2\" x='1'/>"s,
                                       " x='>'"s,
                                       " y=\"<\""s,
                                       "<!--"s,
                                       "-->"s,
                                       "<![CDATA["s,
                                       "]]>"s,
                                       "<?pi "s,
                                       "?>"s,
                                       "<!DOCTYPE r [ <!ELEMENT r ANY> ]>"s,
                                       "a rather long name of an element"s,
                                       "<aRatherLongNameOfAnElement z=''>"s,
                                       "</aRatherLongNameOfAnElement>"s,
                                       "\xC3\xB6"s,
                                       "\xC2\xB7"s,
                                       "\xCC\x81"s,
                                       "\xE6\xB8\xA9"s,
                                       "\xE0\xB8\x81"s,
                                       "\xED\xA0\x80"s,
                                       "<\xC3\x9Cml\xC3\xA4ut>"s,
                                       "</\xC3\x9Cml\xC3\xA4ut>"s,
                                       "\xC0\xBC"s,
                                       "\xC1\xA1"s,
                                       "\xE0\x80\xBE"s,
                                       "\xF8\x80\x80\xA2"s,
                                       "\xFF\xBF\xBF\xBF"s};
    // Such that the input ends there: seldom, or nothing would come after them.
    static const std::array kEnds{"\0"s,       "\x80"s,     "\xF0\x9F\x93\x88"s, "\xC3"s,
                                  "\xE6\xB8"s, "\xC0\x80"s, "\xF8\x80\x80\x80"s, "\xFB\x80\x80"s};
    std::string out;
    for (std::size_t i = 0; i < count; ++i) {
        const bool ends = below(60) == 0;
        out += ends ? kEnds[below(kEnds.size())] : kFragments[below(kFragments.size())];
    }
    return out;
}

std::string RandomText::document(int mutations) {
    std::string out = "<?xml version='1.0'?>\n";
    element(out, 0);
    for (int i = 0; i < mutations; ++i) {
        const std::size_t place = below(static_cast<std::uint32_t>(out.size()));
        switch (below(3)) {
            case 0:
                out.erase(place, 1);
                break;
            case 1:
                out[place] = static_cast<char>(below(256));
                break;
            default:
                out.insert(place, fragments(1));
        }
    }
    return out;
}

void RandomText::element(std::string& out, int depth) {
    static const std::array kNames{"a", "b", "item", "\xE9\x87\x8F", "averyveryverylongtagname"};
    static const std::array kTexts{"",
                                   "\n  ",
                                   "text",
                                   "gr\xC3\xBC\xC3\x9F"
                                   "e",
                                   "<!-- - -->",
                                   "<![CDATA[<x>]]>",
                                   "<?p ?>"};
    const char* const name = kNames[below(kNames.size())];
    out += std::string("<") + name;
    for (std::uint32_t i = below(4); i > 0; --i) {
        const char quote = below(4) == 0 ? '\'' : '"';
        out += std::string(below(5) == 0 ? "\n   " : " ") + kNames[below(kNames.size())];
        out += std::string("=") + quote + std::string(below(40), 'v') + quote;
    }
    if (below(3) == 0) {
        out += "/>";
        return;
    }
    out += ">";
    for (std::uint32_t i = depth < 4 ? below(6) : 0; i > 0; --i) {
        out += kTexts[below(kTexts.size())];
        element(out, depth + 1);
    }
    out += std::string(kTexts[below(kTexts.size())]) + "</" + name + ">";
}

}  // namespace uxtest
