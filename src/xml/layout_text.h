// Values as they are written in a document, and writing a changed one with as much of its old bytes
// as still hold.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "xml/file_encoding.h"

namespace ux::xml {

// Something that cannot be written as it would have to be; what() tells why.
struct Unkept : std::runtime_error {
    using std::runtime_error::runtime_error;
};

// The text that a declared entity stands for, by its name; nothing when it stands for elements or is
// unknown.
using EntityText = std::function<std::optional<std::string>(std::string_view name)>;

// A value in the form in which a document holds it: runs of character data and CDATA sections, or
// the one run between the quotes of an attribute.
class WrittenValue {
public:
    WrittenValue(std::string_view source, const EntityText& entityText)
        : source_(source), entityText_(entityText) {}

    // Each adds one run, as positions in the source; those of a section stand within its marks.
    void add_text(std::size_t begin, std::size_t end);
    void add_section(std::size_t begin, std::size_t end);
    void add_attribute(std::size_t begin, std::size_t end);

    // What the runs stand for, one behind the other.
    const std::string& text() const { return text_; }
    std::size_t runs() const { return runs_.size(); }
    std::string_view run_text(std::size_t run) const {
        return std::string_view(text_).substr(runs_[run].from, runs_[run].to - runs_[run].from);
    }

    // The run as it has to be written so that all runs together stand for `wanted`: nothing when it
    // stays as it is. Runs before and behind the difference stay, the difference itself goes into
    // the first run that it concerns. The result of a section is with its marks, "" when nothing is
    // left of it. An attribute's run takes the quote that it stands in. Throws Unkept when an
    // entity's text would have to change.
    std::vector<std::optional<std::string>> rewritten(std::string_view wanted,
                                                      FileEncoding encoding) const;

private:
    enum class Form : std::uint8_t { kText, kSection, kAttribute };
    enum class AtomKind : std::uint8_t { kLiteral, kReplaced, kEntity };
    // Source bytes and what they stand for. Only literal ones can be cut.
    struct Atom {
        AtomKind kind;
        std::size_t begin;
        std::size_t end;
        std::size_t from;  // in text_
        std::size_t to;
    };
    struct Run {
        Form form;
        std::size_t begin;
        std::size_t end;
        std::size_t firstAtom;
        std::size_t lastAtom;  // behind
        std::size_t from;
        std::size_t to;
    };
    struct Kept {
        std::string before;
        std::string behind;
    };

    void add_run(Form form, std::size_t begin, std::size_t end);
    std::size_t add_replaced(Form form, std::size_t at, std::size_t end);
    void add_reference(std::size_t at, std::size_t end);
    void add_atom(AtomKind kind, std::size_t begin, std::size_t end, std::string_view text);
    std::size_t run_for(std::size_t from, std::size_t to) const;
    Kept kept_of(const Run& run, std::size_t from, std::size_t to) const;
    std::string joined(const Run& run, const Kept& kept, std::string_view middle,
                       FileEncoding encoding) const;

    std::string_view source_;
    const EntityText& entityText_;
    std::string text_;
    std::vector<Atom> atoms_;
    std::vector<Run> runs_;
};

// Appends character data, with references for what cannot stand there as it is.
void append_text(std::string& out, std::string_view text, FileEncoding encoding);
// The same with references for all white space, which is dropped where it stands alone.
void append_blank_text(std::string& out, std::string_view text);
void append_attribute_value(std::string& out, std::string_view text, char quote,
                            FileEncoding encoding);
// Two pieces of written character data as one. What only the joint would make, the end mark of a
// section or one line end of two, is written with a reference.
std::string joined_text(std::string before, std::string_view behind);

// Does every byte of character data, or between an attribute's quotes, stand for itself?
bool is_literal_text(std::string_view raw);
bool is_literal_value(std::string_view raw);

// Common bytes of two texts, whole characters only; together not longer than either.
struct Common {
    std::size_t start;
    std::size_t end;
};
Common common_parts(std::string_view a, std::string_view b);

}  // namespace ux::xml
