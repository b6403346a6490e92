// What is said of content that the host refused.
#include "support/refused_content.h"

#include <algorithm>
#include <array>

#include <fmt/format.h>

#include "support/text.h"

namespace uxtool {
namespace {

constexpr std::size_t kStart = 4096;      // bytes that tell what a file is
constexpr std::size_t kLineBytes = 4096;  // more than an excerpt shows
constexpr long long kShownBefore = 60;    // characters, of those in front of the place
constexpr std::size_t kLongestCharacter = 4;

std::size_t character_length(std::string_view text) {
    return std::max<std::size_t>(utf8_length(text), 1);
}

struct Advice {
    std::string_view message;  // part of the parser's message
    std::string_view hint;
};

constexpr std::array<Advice, 13> kAdvice{{
    {"mismatched tag", "an end tag closes the element that was opened last, by the same name"},
    {"input ends before", "the file was cut off, or an end tag is missing"},
    {"no element found", "the file is empty"},
    {"unclosed", "the file ends in the middle of a tag, comment, section or reference"},
    {"invalid token", "text and attributes write &lt; for < and &amp; for &; values need quotes"},
    {"syntax error", "an XML file begins with < and the name of its root element"},
    {"junk after", "a document has one root element, and nothing but comments behind it"},
    {"not at start", "nothing comes before <?xml, not even a blank line"},
    {"duplicate attribute", "an element has each attribute once"},
    {"undefined entity", "write the character itself, or &#...; with its number"},
    {"reference to the entity", "write the character itself, or &#...; with its number"},
    {"encoding", "UTF-8, UTF-16, ISO-8859-1, windows-1252 and ASCII are read"},
    {"nested deeper", "uxtree outline reads any depth"},
}};

// Does the start of a file say an encoding that is not UTF-8?
bool declares_encoding(std::string_view start) {
    const std::string_view declaration = start.substr(0, start.find('>'));
    if (!start.starts_with("<?xml")) return false;
    return declaration.find("encoding") != std::string_view::npos &&
           declaration.find("UTF-8") == std::string_view::npos &&
           declaration.find("utf-8") == std::string_view::npos;
}

std::string advice_for(std::string_view message) {
    const auto fits = [message](const Advice& advice) {
        return message.find(advice.message) != std::string_view::npos;
    };
    const auto found = std::find_if(kAdvice.begin(), kAdvice.end(), fits);
    return found == kAdvice.end() ? std::string() : std::string(found->hint);
}

struct Magic {
    std::string_view bytes;
    const char* kind;
    const char* unpacker;  // null: nothing to unpack
};

constexpr std::array<Magic, 12> kMagic{{
    {{"\x1f\x8b", 2}, "gzip", "gunzip or zcat"},
    {{"\x1f\x9d", 2}, "compress", "zcat"},
    {{"BZh", 3}, "bzip2", "bzcat"},
    {{"\xfd"
      "7zXZ",
      5},
     "xz",
     "xzcat"},
    {{"\x28\xb5\x2f\xfd", 4}, "zstd", "zstdcat"},
    {{"\x04\x22\x4d\x18", 4}, "lz4", "lz4cat"},
    {{"PK\x03\x04", 4}, "zip", "unzip"},
    {{"7z\xbc\xaf", 4}, "7z", "7z"},
    {{"%PDF-", 5}, "PDF", nullptr},
    {{"\x89PNG", 4}, "PNG", nullptr},
    {{"\xff\xd8\xff", 3}, "JPEG", nullptr},
    {{"\x7f"
      "ELF",
      4},
     "ELF",
     nullptr},
}};

// Not so for text that is something else altogether, such as JSON or a table.
bool begins_as_xml(std::string_view start) {
    constexpr std::string_view kMark = "\xEF\xBB\xBF";
    if (start.starts_with(kMark)) start.remove_prefix(kMark.size());
    const std::size_t first = start.find_first_not_of(" \t\r\n");
    return first == std::string_view::npos || start[first] == '<';
}

// A message for what is no text at all; nothing is thrown for what may be broken XML.
void throw_unless_text(const std::string& name, std::string_view start) {
    for (const Magic& magic : kMagic) {
        if (!start.starts_with(magic.bytes)) continue;
        if (magic.unpacker == nullptr) {
            throw Failure(kUnreadable, name, fmt::format("this is no XML: a {} file", magic.kind));
        }
        throw Failure(kUnreadable, name,
                      fmt::format("compressed ({}): unpack it first", magic.kind),
                      fmt::format("such as with {}, and - for FILE", magic.unpacker));
    }
    const bool isUtf16 = start.starts_with("\xff\xfe") || start.starts_with("\xfe\xff") ||
                         start.starts_with(std::string_view("<\0", 2)) ||
                         start.starts_with(std::string_view("\0<", 2));
    const auto controls = std::count_if(start.begin(), start.end(), [](char c) {
        const auto byte = static_cast<unsigned char>(c);
        return byte < 0x20 && c != '\n' && c != '\r' && c != '\t';
    });
    // A few stray control characters are a fault in a text.
    if (isUtf16 || controls * 50 <= static_cast<std::ptrdiff_t>(start.size())) return;
    throw Failure(kUnreadable, name, "this is no XML: a binary file");
}

}  // namespace

// windows-1252 has letters and signs where ISO-8859-1 has control characters.
void EncodingGuess::take(std::string_view bytes) {
    cut_ += bytes;
    std::size_t at = 0;
    for (std::size_t length = 0; at + kLongestCharacter <= cut_.size(); at += length) {
        length = look_at(std::string_view(cut_).substr(at));
    }
    cut_.erase(0, at);
}

std::size_t EncodingGuess::look_at(std::string_view bytes) {
    const std::size_t length = utf8_length(bytes);
    if (length > 0) return length;
    isUtf8_ = false;
    const auto byte = static_cast<unsigned char>(bytes[0]);
    isWindows_ = isWindows_ || (byte >= 0x80 && byte < 0xA0);
    return 1;
}

std::string EncodingGuess::hint() {
    for (std::size_t at = 0; at < cut_.size();) at += look_at(std::string_view(cut_).substr(at));
    if (isUtf8_) return "";
    const std::string name = isWindows_ ? "windows-1252" : "ISO-8859-1";
    return fmt::format(
        "the bytes are no UTF-8, probably {0}: begin the file with <?xml version=\"1.0\" "
        "encoding=\"{0}\"?>, or convert it with iconv -f {0} -t UTF-8",
        name);
}

bool RefusedContent::take(std::string_view block) {
    start_ += block.substr(0, kStart - start_.size());
    if (asksForEncoding_) encoding_.take(block);
    take_line(block);
    return asksForEncoding_ || start_.size() < kStart || !hasLine_;
}

void RefusedContent::take_line(std::string_view block) {
    while (toSkip_ > 0) {
        const std::size_t end = block.find('\n');
        if (end == std::string_view::npos) return;
        block.remove_prefix(end + 1);
        --toSkip_;
    }
    if (hasLine_) return;
    const std::size_t end = block.find_first_of("\r\n");
    line_ += block.substr(0, end);
    std::size_t at = 0;
    for (; column_ > kShownBefore + 1 && at + kLongestCharacter <= line_.size(); --column_) {
        at += character_length(std::string_view(line_).substr(at));
    }
    line_.erase(0, at);
    hasLine_ = end != std::string_view::npos || line_.size() > kLineBytes;
}

Failure RefusedContent::failure(const std::string& name) {
    const std::string message =
        error_.message.IsEmpty() ? "cannot be loaded" : static_cast<const char*>(error_.message);
    if (error_.line <= 0) return {kUnreadable, name, message, advice_for(message)};
    throw_unless_text(name, start_);
    const bool isText = start_.find('\0') == std::string::npos;
    std::string hint;
    if (isText && !begins_as_xml(start_)) {
        hint = "this is no XML file: those begin with <";
    } else if (asksForEncoding_ && !declares_encoding(start_)) {
        hint = encoding_.hint();
    }
    Failure failure(kUnreadable, fmt::format("{}:{}:{}", name, error_.line, error_.column), message,
                    hint.empty() ? advice_for(message) : hint);
    if (isText) failure.with_excerpt(excerpt(line_, column_));
    return failure;
}

}  // namespace uxtool
