// Reading without a tree: what a reader tells, for listeners outside.
#include "host/event_reader.h"

#include <deque>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "base/seeded_hash.h"
#include "host/watched_input.h"

namespace uxhost {
namespace {

// Hands on what a reader tells; see there.
class EventSink {
public:
    explicit EventSink(UXXmlEvents& events) : events_(events) {}

    ux::xml::SinkName resolve(const ux::xml::ReadName& name) {
        const auto known = numbers_.find(name.text);
        if (known != numbers_.end()) return told(known->second);
        const auto number = static_cast<std::uint32_t>(names_.size());
        numbers_.emplace(names_.emplace_back(name.text), number);
        return told(number);
    }
    bool start(const ux::xml::StartTag& tag) {
        attributes_.clear();
        for (std::size_t i = 0; i < tag.count; ++i) {
            attributes_.push_back({tag.attributes[i].name->view(), tag.value(i)});
        }
        events_.Start(tag.name.view(), attributes_.data(), attributes_.size());
        return true;
    }
    void end() { events_.End(); }
    void text(const char* begin, const char* end) {
        events_.Text({begin, static_cast<std::size_t>(end - begin)});
    }
    void keep() {}
    void flush() {}
    void restart() {
        events_.Restart();
        numbers_.clear();
        names_.clear();
    }
    const std::string& refusal() const { return refusal_; }

private:
    ux::xml::SinkName told(std::uint32_t number) const {
        return {number, number, names_[number].c_str()};
    }

    UXXmlEvents& events_;
    std::deque<std::string> names_;  // views of them stay valid
    std::unordered_map<std::string_view, std::uint32_t, ux::SeededHash> numbers_;
    std::vector<UXXmlAttribute> attributes_;
    std::string refusal_;
};

}  // namespace

bool read_events(const ux::xml::ByteSource& source, std::uint64_t totalBytes,
                 const LoadOptions& options, UXXmlEvents& events, UXFileError& error) {
    EventSink sink(events);
    const auto noMemory = [] { return std::size_t{0}; };
    return read_watched(source, totalBytes, options, noMemory, sink, error);
}

}  // namespace uxhost
