// Values as they are written.
#include "xml/layout_text.h"

#include <algorithm>
#include <array>
#include <charconv>

#include "base/utf8.h"
#include "xml/escaping.h"
#include "xml/layout_scan.h"

namespace ux::xml {
namespace {

constexpr std::string_view kSectionStart = "<![CDATA[";
constexpr std::string_view kSectionEnd = "]]>";

// Bytes that mean something else than themselves, in character data and in a quoted value.
enum : std::uint8_t { kInCharacters = 1, kInValue = 2 };

constexpr std::array<std::uint8_t, 256> make_stops() {
    std::array<std::uint8_t, 256> stops{};
    stops['&'] = stops['\r'] = kInCharacters | kInValue;
    stops['<'] = kInCharacters;
    stops['\t'] = stops['\n'] = kInValue;
    return stops;
}
constexpr std::array<std::uint8_t, 256> kStops = make_stops();

// Does everything stand for itself?
bool is_literal(std::string_view raw, std::uint8_t stop) {
    std::uint8_t found = 0;
    for (const char c : raw) found |= kStops[static_cast<unsigned char>(c)];
    return (found & stop) == 0;
}

void append_reference(std::string& out, char32_t code) {
    out += "&#";
    out += std::to_string(static_cast<std::uint32_t>(code));
    out += ';';
}

// Calls take(piece) for pieces that the encoding holds, and refer(code) for characters between them
// that it lacks.
template <typename Take, typename Refer>
void split_by_encoding(std::string_view text, FileEncoding encoding, Take&& take, Refer&& refer) {
    std::size_t plain = 0;
    for (std::size_t at = 0; at < text.size();) {
        const Utf8Char character = decode_utf8(text, at);
        const std::size_t length = std::max<std::size_t>(character.length, 1);
        if (character.code >= 0x80 && !holds_character(encoding, character.code)) {
            take(text.substr(plain, at - plain));
            refer(character.code);
            plain = at + length;
        }
        at += length;
    }
    take(text.substr(plain));
}

// The references are "" for what stands for itself.
std::string_view escape_in_text(char c) {
    const bool isEscaped = c == '&' || c == '<' || c == '>' || c == '\r';
    return isEscaped ? reference_for(c) : std::string_view();
}

std::string_view escape_in_attribute(char c, char quote) {
    if (c == '\'') return quote == c ? "&apos;" : std::string_view();
    return c == '\t' || c == '\n' || c == quote ? reference_for(c) : escape_in_text(c);
}

template <typename Escape>
void append_escaped(std::string& out, std::string_view text, FileEncoding encoding,
                    Escape&& escape) {
    split_by_encoding(
        text, encoding,
        [&](std::string_view piece) {
            for (const char c : piece) {
                const std::string_view reference = escape(c);
                if (reference.empty()) {
                    out += c;
                } else {
                    out += reference;
                }
            }
        },
        [&](char32_t code) { append_reference(out, code); });
}

// Collects the content of a section, which is closed and opened again around what it cannot hold.
class SectionText {
public:
    void put(std::string_view text) {
        for (const char c : text) {
            if (c == '>' && ends_with_brackets()) out_ += "]]><![CDATA[";
            if (c == '\r') {
                refer(U'\r');
            } else {
                out_ += c;
            }
        }
    }
    void put_new(std::string_view text, FileEncoding encoding) {
        split_by_encoding(
            text, encoding, [&](std::string_view piece) { put(piece); },
            [&](char32_t code) { refer(code); });
    }
    // As it stood in the source, where a carriage return is a line end.
    void put_kept(std::string_view raw) {
        for (const char c : raw) {
            if (c == '\r') {
                out_ += c;
            } else {
                put({&c, 1});
            }
        }
    }
    void put_behind(std::string_view raw) {
        if (!raw.empty() && raw.front() == '\n' && !out_.empty() && out_.back() == '\r') {
            refer(U'\n');
            raw.remove_prefix(1);
        }
        put_kept(raw);
    }
    std::string whole() const { return std::string(kSectionStart) + out_ + "]]>"; }
    const std::string& content() const { return out_; }

private:
    void refer(char32_t code) {
        out_ += kSectionEnd;
        append_reference(out_, code);
        out_ += kSectionStart;
    }
    bool ends_with_brackets() const {
        return out_.size() >= 2 && out_.compare(out_.size() - 2, 2, "]]") == 0;
    }

    std::string out_;
};

bool makes_one_line_end(std::string_view before, std::string_view behind) {
    return !before.empty() && !behind.empty() && before.back() == '\r' && behind.front() == '\n';
}

}  // namespace

bool is_literal_text(std::string_view raw) {
    return is_literal(raw, kInCharacters);
}
bool is_literal_value(std::string_view raw) {
    return is_literal(raw, kInValue);
}

std::string joined_text(std::string before, std::string_view behind) {
    if (makes_one_line_end(before, behind)) {
        before += "&#10;";
        behind.remove_prefix(1);
    }
    const std::size_t seam = before.size();
    before += behind;
    for (std::size_t at = seam < 2 ? 0 : seam - 2; at < seam && at + 2 < before.size(); ++at) {
        if (before.compare(at, 3, kSectionEnd) == 0) before.replace(at + 2, 1, "&gt;");
    }
    return before;
}

Common common_parts(std::string_view a, std::string_view b) {
    const std::size_t most = std::min(a.size(), b.size());
    Common common{0, 0};
    while (common.start < most && a[common.start] == b[common.start]) ++common.start;
    while (common.start > 0 && ((common.start < a.size() && is_continuation(a[common.start])) ||
                                (common.start < b.size() && is_continuation(b[common.start])))) {
        --common.start;
    }
    const std::size_t rest = most - common.start;
    while (common.end < rest && a[a.size() - common.end - 1] == b[b.size() - common.end - 1]) {
        ++common.end;
    }
    while (common.end > 0 && is_continuation(a[a.size() - common.end])) --common.end;
    return common;
}

void append_text(std::string& out, std::string_view text, FileEncoding encoding) {
    append_escaped(out, text, encoding, escape_in_text);
}

void append_blank_text(std::string& out, std::string_view text) {
    for (const char c : text) append_reference(out, static_cast<unsigned char>(c));
}

void append_attribute_value(std::string& out, std::string_view text, char quote,
                            FileEncoding encoding) {
    append_escaped(out, text, encoding, [quote](char c) { return escape_in_attribute(c, quote); });
}

// --- reading -----------------------------------------------------------------------------------

void WrittenValue::add_text(std::size_t begin, std::size_t end) {
    add_run(Form::kText, begin, end);
}
void WrittenValue::add_section(std::size_t begin, std::size_t end) {
    add_run(Form::kSection, begin, end);
}
void WrittenValue::add_attribute(std::size_t begin, std::size_t end) {
    add_run(Form::kAttribute, begin, end);
}

void WrittenValue::add_atom(AtomKind kind, std::size_t begin, std::size_t end,
                            std::string_view text) {
    if (begin == end) return;
    const std::size_t from = text_.size();
    text_ += text;
    atoms_.push_back({kind, begin, end, from, text_.size()});
}

void WrittenValue::add_run(Form form, std::size_t begin, std::size_t end) {
    Run run{form, begin, end, atoms_.size(), 0, text_.size(), 0};
    const std::string_view stops = form == Form::kSection     ? std::string_view("\r")
                                   : form == Form::kAttribute ? std::string_view("\r&\n\t")
                                                              : std::string_view("\r&");
    const std::string_view text = source_.substr(0, end);
    for (std::size_t at = begin; at < end;) {
        const std::size_t stop = std::min(text.find_first_of(stops, at), end);
        add_atom(AtomKind::kLiteral, at, stop, text.substr(at, stop - at));
        at = stop == end ? end : add_replaced(form, stop, end);
    }
    run.lastAtom = atoms_.size();
    run.to = text_.size();
    runs_.push_back(run);
}

// What does not stand for itself; yields the place behind it.
std::size_t WrittenValue::add_replaced(Form form, std::size_t at, std::size_t end) {
    if (source_[at] == '&') {
        const std::size_t semicolon = source_.find(';', at);
        if (semicolon >= end) throw Unkept("a reference that does not end");
        add_reference(at, semicolon + 1);
        return semicolon + 1;
    }
    const bool pair = source_[at] == '\r' && at + 1 < end && source_[at + 1] == '\n';
    const std::size_t behind = at + (pair ? 2 : 1);
    add_atom(AtomKind::kReplaced, at, behind, form == Form::kAttribute ? " " : "\n");
    return behind;
}

void WrittenValue::add_reference(std::size_t at, std::size_t end) {
    static constexpr std::pair<std::string_view, std::string_view> kPredefined[] = {
        {"lt", "<"}, {"gt", ">"}, {"amp", "&"}, {"apos", "'"}, {"quot", "\""}};
    const std::string_view name = source_.substr(at + 1, end - at - 2);
    if (name.substr(0, 1) == "#") {
        const bool hex = name.substr(1, 1) == "x";
        std::uint32_t code = 0;
        const char* const first = name.data() + (hex ? 2 : 1);
        std::from_chars(first, name.data() + name.size(), code, hex ? 16 : 10);
        char bytes[4];
        const auto size = static_cast<std::size_t>(encode_utf8(code, bytes) - bytes);
        add_atom(AtomKind::kReplaced, at, end, {bytes, size});
        return;
    }
    for (const auto& [known, text] : kPredefined) {
        if (known == name) {
            add_atom(AtomKind::kReplaced, at, end, text);
            return;
        }
    }
    const std::optional<std::string> entity = entityText_ ? entityText_(name) : std::nullopt;
    if (!entity) throw Unkept("the reference &" + std::string(name) + "; cannot be resolved");
    add_atom(AtomKind::kEntity, at, end, *entity);
}

// --- writing -----------------------------------------------------------------------------------

// The run that takes what is new, when the text from and to is to be replaced.
std::size_t WrittenValue::run_for(std::size_t from, std::size_t to) const {
    const auto concerned = std::find_if(runs_.begin(), runs_.end(), [&](const Run& run) {
        return from == to ? run.to >= from && run.to > run.from : run.to > from && run.from < to;
    });
    return concerned == runs_.end() ? 0 : static_cast<std::size_t>(concerned - runs_.begin());
}

WrittenValue::Kept WrittenValue::kept_of(const Run& run, std::size_t from, std::size_t to) const {
    Kept kept;
    for (std::size_t i = run.firstAtom; i < run.lastAtom; ++i) {
        const Atom& atom = atoms_[i];
        const std::string_view raw = source_.substr(atom.begin, atom.end - atom.begin);
        if (atom.to <= from) {
            kept.before += raw;
        } else if (atom.from >= to) {
            kept.behind += raw;
        } else if (atom.kind == AtomKind::kLiteral) {
            if (atom.from < from) kept.before += raw.substr(0, from - atom.from);
            if (atom.to > to) kept.behind += raw.substr(to - atom.from);
        } else if (atom.kind == AtomKind::kEntity) {
            throw Unkept("the text of the entity reference " + std::string(raw) + " has changed");
        }
    }
    return kept;
}

std::string WrittenValue::joined(const Run& run, const Kept& kept, std::string_view middle,
                                 FileEncoding encoding) const {
    if (run.form == Form::kSection) {
        SectionText section;
        section.put_kept(kept.before);
        section.put_new(middle, encoding);
        section.put_behind(kept.behind);
        return section.content().empty() ? std::string() : section.whole();
    }
    std::string out = kept.before;
    if (run.form == Form::kAttribute) {
        append_attribute_value(out, middle, source_[run.begin - 1], encoding);
        const bool twoBlanks = makes_one_line_end(out, kept.behind);
        if (twoBlanks) out.back() = ' ';
        return out + kept.behind;
    }
    append_text(out, middle, encoding);
    return joined_text(std::move(out), kept.behind);
}

std::vector<std::optional<std::string>> WrittenValue::rewritten(std::string_view wanted,
                                                                FileEncoding encoding) const {
    std::vector<std::optional<std::string>> out(runs_.size());
    if (wanted == text_) return out;
    const Common common = common_parts(text_, wanted);
    const std::size_t from = common.start;
    const std::size_t to = text_.size() - common.end;
    const std::string_view middle =
        wanted.substr(common.start, wanted.size() - common.start - common.end);
    const std::size_t chosen = run_for(from, to);
    for (std::size_t i = 0; i < runs_.size(); ++i) {
        const Run& run = runs_[i];
        const bool concerned = run.from < to && run.to > from;
        if (i != chosen && !concerned) continue;
        out[i] = joined(run, kept_of(run, from, to), i == chosen ? middle : std::string_view(),
                        encoding);
    }
    return out;
}

}  // namespace ux::xml
