// How a document is formatted, and white space that is written so.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "host/kept_document.h"
#include "host/layout_source.h"

namespace uxhost {

// Shifts are numbers: of a branch that comes to another place, lines that begin with one white space
// begin with another one there. Number 0 changes nothing.
class Indentation {
public:
    struct Formatting {
        bool hasLines = false;  // elements have lines of their own
        std::string lineEnd = "\n";
        std::string step = "  ";
    };

    Indentation(const SourceScan& scan, KeptText& out) : scan_(scan), out_(out), shifts_(1) {}

    // The source's, found when it is first asked for, or what was set.
    const Formatting& formatting();
    void set_formatting(Formatting formatting) { formatting_ = std::move(formatting); }

    // The white space before a place at the start of its line; nothing elsewhere.
    std::optional<std::string_view> own_indent(std::size_t at) const;
    // The indentation of the line on which the start tag of an element of the source is written.
    std::string line_indent(std::uint32_t source, std::uint32_t shift) const;

    std::uint32_t add_shift(std::string_view from, std::string_view to);
    std::string shifted(std::string_view indent, std::uint32_t shift) const;
    // Writes white space in a tag, in which lines are indented.
    void put_space(std::size_t begin, std::size_t end, std::uint32_t shift);
    // Writes the white space at the start of a line.
    void put_indent(std::size_t begin, std::size_t end, std::uint32_t shift);

private:
    struct Shift {
        std::string from;
        std::string to;
    };

    const SourceScan& scan_;
    KeptText& out_;
    std::optional<Formatting> formatting_;
    std::vector<Shift> shifts_;
};

}  // namespace uxhost
