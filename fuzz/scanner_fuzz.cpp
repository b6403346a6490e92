// Scans any bytes: the events must not depend on where blocks end, foreseeing tags must not change
// an outline, and what needs no decoding must read alike in blocks and mapped.
#include "outline/scanner.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>
#include <vector>

#include "outline/markup.h"
#include "outline/outline_builder.h"
#include "outline/scanner_detail.h"

namespace {

class Recorder : public ux::SaxHandler {
public:
    bool startElement(const std::string& name,
                      const std::vector<std::string>& attributeNames) override {
        events += "+" + name;
        for (const std::string& attribute : attributeNames) events += " " + attribute;
        names_.push_back(name);
        return layout.startElement(name, attributeNames);
    }
    bool endElement(const std::string& name) override {
        events += "-" + name;
        names_.pop_back();
        return layout.endElement(name);
    }
    const std::vector<std::string>& nameStack() const override { return names_; }

    std::string events;
    ux::LayoutHandler layout;

private:
    std::vector<std::string> names_;
};

std::string outline_text(const ux::LayoutNode& root) {
    struct Place {
        const ux::LayoutNode* entry;
        std::size_t nextChild;
    };
    std::string out;
    const auto enter = [&out](const ux::LayoutNode& entry) {
        out += "[" + entry.name;
        for (const auto& [name, known] : entry.attributes) out += " " + name;
        return Place{&entry, 0};
    };
    std::vector<Place> path{enter(root)};
    while (!path.empty()) {
        Place& place = path.back();
        if (place.nextChild == place.entry->children.size()) {
            out += "]";
            path.pop_back();
        } else {
            path.push_back(enter(*place.entry->children[place.nextChild++]));
        }
    }
    return out;
}

void require(bool holds) {
    if (!holds) std::abort();
}

template <typename Input>
std::string scan(Input recorded, Input outlined) {
    Recorder recorder;
    ux::HandlerSink sink(recorder);
    ux::scan_markup(recorded, sink);
    ux::OutlineBuilder outline;
    ux::scan_markup(outlined, outline);
    require(outline_text(outline.root()) == outline_text(recorder.layout.root()));
    return recorder.events;
}

std::string streamed(std::string_view text, std::size_t blockSize) {
    const auto reader = [&] { return ux::SaxFileReader::of_bytes(text, blockSize); };
    return scan(reader(), reader());
}

std::string mapped(std::string_view text) {
    std::vector<char> bytes(text.begin(), text.end());
    bytes.resize(text.size() + ux::kReadAhead);
    const ux::BytesInput input(bytes.data(), bytes.data() + text.size());
    return scan(input, input);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    const std::string events = streamed(text, 65536);
    for (const std::size_t blockSize : {1u, 2u, 3u, 5u, 7u, 64u}) {
        require(streamed(text, blockSize) == events);
    }
    const std::string mappedEvents = mapped(text);
    const bool plain = std::all_of(text.begin(), text.end(), [](char c) { return c > 0; });
    require(!plain || mappedEvents == events);
    return 0;
}
