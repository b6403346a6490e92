// Scans of texts, written down as events.
#pragma once

#include <cstddef>
#include <cstdint>
#include <random>
#include <string>
#include <string_view>
#include <vector>

#include "outline/outline_builder.h"
#include "outline/scanner.h"

namespace uxtest {

// The scanner must give the same events wherever a block ends.
inline constexpr std::size_t kBlockSizes[] = {1, 2, 3, 5, 7, 64, 65536};

// Writes events as "+name(attribute,attribute)" and "-name", separated by blanks.
class EventRecorder : public ux::SaxHandler {
public:
    bool startElement(const std::string& name,
                      const std::vector<std::string>& attributeNames) override;
    bool endElement(const std::string& name) override;
    const std::vector<std::string>& nameStack() const override { return names_; }
    const std::string& events() const { return events_; }

private:
    void add(const std::string& event);

    std::vector<std::string> names_;
    std::string events_;
};

std::string streamed_events(std::string_view text, std::size_t blockSize);
std::string mapped_events(std::string_view text);

// An outline as "name(attribute,attribute)[child child]".
std::string outline_text(const ux::LayoutNode& root);
std::string streamed_outline(std::string_view text, std::size_t blockSize);
std::string mapped_outline(std::string_view text);
// The outline that a handler builds from the scanner's events, without any foresight.
std::string handled_outline(std::string_view text);

// Texts made of pieces of XML, right and wrong, and of bytes that mean something to a decoder.
class RandomText {
public:
    explicit RandomText(std::uint32_t seed) : random_(seed) {}
    std::string fragments(std::size_t count);
    // Well-formed except for a few bytes changed at random.
    std::string document(int mutations);
    std::uint32_t below(std::uint32_t bound);

private:
    void element(std::string& out, int depth);

    std::mt19937 random_;
};

}  // namespace uxtest
