// Events of a parser as text, from our reader and from expat.
#include "xml/events.h"

#include <algorithm>
#include <deque>
#include <unordered_map>
#include <vector>

#include <expat.h>

#include "xml/decoded_source.h"
#include "xml/strict_reader.h"

namespace uxtest {
namespace {

// Writes events down. Text between two tags is one piece, however it is told.
class Recorder {
public:
    void start(std::string_view name) {
        finish_text();
        out_ += "<" + std::string(name);
    }
    void attribute(std::string_view name, std::string_view value) {
        out_ += " " + std::string(name) + "=[" + std::string(value) + "]";
    }
    void end() {
        finish_text();
        out_ += "/>\n";
    }
    void text(std::string_view piece) { text_ += piece; }
    void keep() { isKept_ = true; }
    const std::string& events() const { return out_; }

private:
    void finish_text() {
        const bool blank =
            std::all_of(text_.begin(), text_.end(), [](char c) { return ux::xml::is_blank(c); });
        if (!text_.empty()) out_ += (blank && isKept_ ? "kept{" : "{") + text_ + "}";
        text_.clear();
        isKept_ = false;
    }

    std::string out_;
    std::string text_;
    bool isKept_ = false;
};

class RecordingSink {
public:
    // With so many names met before.
    explicit RecordingSink(std::uint32_t names) : firstNumber_(names) {}

    ux::xml::SinkName resolve(const ux::xml::ReadName& name) {
        const auto number = firstNumber_ + static_cast<std::uint32_t>(numbers_.size());
        const auto [place, isNew] = numbers_.try_emplace(std::string(name.text), number);
        return {place->second, place->second, place->first.c_str()};
    }
    const void* slot_of(const ux::xml::ReadName& name) {
        expected_ += " " + std::string(name.text);
        return nullptr;
    }
    bool start(const ux::xml::StartTag& tag) {
        take_views();
        recorder_.start(tag.name.view());
        for (std::size_t i = 0; i < tag.count; ++i) {
            recorder_.attribute(tag.attributes[i].name->view(), tag.value(i));
        }
        return true;
    }
    void end() {
        take_views();
        recorder_.end();
    }
    void text(const char* begin, const char* end) { views_.push_back({begin, end}); }
    void keep() { recorder_.keep(); }
    void flush() { take_views(); }
    const std::string& events() const { return recorder_.events(); }
    const std::string& expected() const { return expected_; }

private:
    struct View {
        const char* begin;
        const char* end;
    };
    // As late as a sink may.
    void take_views() {
        for (const View& view : views_) {
            recorder_.text({view.begin, static_cast<std::size_t>(view.end - view.begin)});
        }
        views_.clear();
    }

    Recorder recorder_;
    std::vector<View> views_;
    std::unordered_map<std::string, std::uint32_t> numbers_;
    std::string expected_;
    std::uint32_t firstNumber_;
};

struct ExpatState {
    XML_Parser parser;
    Recorder recorder;
    bool isPlain = true;
};
ExpatState& state_of(void* data) {
    return *static_cast<ExpatState*>(data);
}

void XMLCALL start(void* data, const XML_Char* name, const XML_Char** atts) {
    state_of(data).recorder.start(name);
    for (; *atts != nullptr; atts += 2) state_of(data).recorder.attribute(atts[0], atts[1]);
}
void XMLCALL end(void* data, const XML_Char* /*name*/) {
    state_of(data).recorder.end();
}
void XMLCALL text(void* data, const XML_Char* bytes, int length) {
    const std::string_view piece(bytes, static_cast<std::size_t>(length));
    if (length == 1 && ux::xml::is_blank(*bytes)) {
        int offset = 0;
        int size = 0;
        const char* context = XML_GetInputContext(state_of(data).parser, &offset, &size);
        if (context[offset] == '&') state_of(data).recorder.keep();
    }
    state_of(data).recorder.text(piece);
}

}  // namespace

Reading read_strictly(std::string_view xml, std::size_t window, ux::xml::FileEncoding encoding) {
    std::size_t position = 0;
    const ux::xml::ByteSource source{
        [&](char* buffer, std::size_t size) {
            const std::size_t count = std::min({size, window, xml.size() - position});
            std::copy_n(xml.data() + position, count, buffer);
            position += count;
            return static_cast<long>(count);
        },
        [&](std::uint64_t offset) { position = offset; }};
    ux::xml::DecodedSource decoder(source, encoding);
    const ux::xml::ByteSource decoded = decoder.source();
    ux::xml::Window bytes(encoding == ux::xml::FileEncoding::kUtf8 ? source : decoded, window);
    using Reader = ux::xml::StrictReader<RecordingSink>;
    RecordingSink sink(window % 2 == 0 ? Reader::kManyNames : 0);
    Reader reader(bytes, sink, encoding);
    if (reader.run() != ux::xml::ReadResult::kDone) return {};
    return {true, sink.events(), sink.expected()};
}

Reading read_with_expat(std::string_view xml) {
    ExpatState state{XML_ParserCreate(nullptr), {}};
    XML_SetUserData(state.parser, &state);
    XML_SetElementHandler(state.parser, start, end);
    XML_SetCharacterDataHandler(state.parser, text);
    XML_SetCdataSectionHandler(
        state.parser, [](void* data) { state_of(data).recorder.keep(); }, [](void*) {});
    const XML_Status status =
        XML_Parse(state.parser, xml.data(), static_cast<int>(xml.size()), XML_TRUE);
    XML_ParserFree(state.parser);
    if (status != XML_STATUS_OK) return {};
    return {true, state.recorder.events(), {}};
}

}  // namespace uxtest
