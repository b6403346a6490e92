// Utilities and services of the minimal host. Names are checked for ASCII alone: any
// character above it may stand in a name.
#include "uxtree/host/services.h"

#include <array>
#include <bit>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <limits>

#include <unistd.h>

#include "uxtree/host/application.h"
#include "uxtree/host/contract.h"
#include "uxtree/host/node.h"
#include "uxtree/host/utilities.h"

#include "node_data.h"

int UXGetHostContract() {
    return UXTREE_HOST_CONTRACT;
}
UXHostApplication::~UXHostApplication() = default;
UXScriptObject::~UXScriptObject() = default;
int UXScriptObject::IsValid() {
    return 1;
}
void* UXScriptObject::GetInternalData(unsigned int /*typeCode*/) {
    return nullptr;
}

// --- vector descriptors ------------------------------------------------------------------------

UXVectorDesc::UXVectorDesc() : element(Element::kNone), array(nullptr) {}
UXVectorDesc::UXVectorDesc(CArray<bool, bool>& a) : element(Element::kBool), array(&a) {}
UXVectorDesc::UXVectorDesc(CArray<char, char>& a) : element(Element::kChar), array(&a) {}
UXVectorDesc::UXVectorDesc(CArray<unsigned char, unsigned char>& a)
    : element(Element::kUChar), array(&a) {}
UXVectorDesc::UXVectorDesc(CArray<short, short>& a) : element(Element::kShort), array(&a) {}
UXVectorDesc::UXVectorDesc(CArray<unsigned short, unsigned short>& a)
    : element(Element::kUShort), array(&a) {}
UXVectorDesc::UXVectorDesc(CArray<int, int>& a) : element(Element::kInt), array(&a) {}
UXVectorDesc::UXVectorDesc(CArray<unsigned int, unsigned int>& a)
    : element(Element::kUInt), array(&a) {}
UXVectorDesc::UXVectorDesc(CArray<std::int64_t, std::int64_t>& a)
    : element(Element::kInt64), array(&a) {}
UXVectorDesc::UXVectorDesc(CArray<std::uint64_t, std::uint64_t>& a)
    : element(Element::kUInt64), array(&a) {}
UXVectorDesc::UXVectorDesc(CArray<float, float>& a) : element(Element::kFloat), array(&a) {}
UXVectorDesc::UXVectorDesc(CArray<double, double>& a) : element(Element::kDouble), array(&a) {}
UXVectorDesc::UXVectorDesc(CWBOStringArray& a) : element(Element::kText), array(&a) {}

// --- utilities ---------------------------------------------------------------------------------

int UXGetTokens(CWBOStringArray& tokens, const char* text, char separator, char quote) {
    const bool blanks = separator == ' ';
    CWBOStringArray found;  // text may be one of the old tokens
    CStringUTF8 token;
    bool quoted = false;
    for (const char* c = text == nullptr ? "" : text; *c != '\0'; ++c) {
        const bool separates =
            blanks ? *c == ' ' || *c == '\t' || *c == '\r' || *c == '\n' : *c == separator;
        if (quote != '\0' && *c == quote) {
            if (quoted && c[1] == quote) {
                token += *c++;
            } else {
                quoted = !quoted;
            }
        } else if (separates && !quoted) {
            if (!blanks || !token.IsEmpty()) found.Add(token);
            token.Empty();
        } else {
            token += *c;
        }
    }
    const bool hasText = text != nullptr && *text != '\0';
    if (hasText && (!blanks || !token.IsEmpty())) found.Add(token);
    tokens = std::move(found);
    return tokens.GetSize();
}

int UXSeparateByString(CWBOStringArray& pieces, const char* text, const char* separator) {
    const CStringUTF8 all(text);
    const CStringUTF8 between(separator);
    pieces.RemoveAll();
    int start = 0;
    for (int end = 0; !between.IsEmpty() && (end = all.Find(between, start)) >= 0;) {
        pieces.Add(all.Mid(start, end - start));
        start = end + between.GetLength();
    }
    if (!all.IsEmpty()) pieces.Add(all.Mid(start));
    return pieces.GetSize();
}

int UXJoinTokens(CStringUTF8& out, const CWBOStringArray& tokens, const char* separator) {
    CStringUTF8 joined;
    for (int i = 0; i < tokens.GetSize(); ++i) joined += (i == 0 ? "" : separator) + tokens[i];
    out = joined;
    return tokens.GetSize();
}

bool UXParseDouble(std::string_view text, double& value) {
    CStringUTF8 number(text);
    number.Trim();
    if (number.Find("+") == 0) number.Delete(0);
    const std::string_view rest = minimal::view(number);
    const bool decimal = rest.find_first_not_of("0123456789+-.eE") == std::string_view::npos;
    double read = 0;
    const auto [end, error] = std::from_chars(rest.data(), rest.data() + rest.size(), read);
    const bool tiny = error == std::errc::result_out_of_range && std::abs(read) < 1;
    if (!decimal || end != rest.data() + rest.size() || (error != std::errc() && !tiny))
        return false;
    value = read;
    return true;
}

bool UXParseInt(std::string_view text, int& value) {
    double number = 0;
    if (!UXParseDouble(text, number)) return false;
    number = std::trunc(number);
    if (number < std::numeric_limits<int>::min() || number > 4294967295.0) return false;
    value = static_cast<int>(static_cast<std::uint32_t>(static_cast<std::int64_t>(number)));
    return true;
}

int UXLeadingInt(const char* text) {
    const long long number = text == nullptr ? 0 : std::strtoll(text, nullptr, 10);
    return static_cast<int>(std::clamp<long long>(number, std::numeric_limits<int>::min(),
                                                  std::numeric_limits<int>::max()));
}

void UXFormatDouble(double value, CStringUTF8& out) {
    if (!std::isfinite(value)) value = UXMissingValue();
    for (int precision = 15; precision <= 17; ++precision) {
        double back = 0;
        out.Format("%.*g", precision, value);
        if (UXParseDouble(minimal::view(out), back) && back == value) return;
    }
}

double UXMissingValue() {
    return std::bit_cast<double>(std::uint64_t{0x81AA74FE1C132C0E});
}

int UXAccess(const char* path, int /*mode*/) {
    std::error_code error;
    if (path == nullptr || !std::filesystem::is_regular_file(path, error)) return -1;
    return access(path, R_OK);
}

namespace {

bool starts_name(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_' || c == ':' || c < 0;
}
bool stands_in_name(char c) {
    return starts_name(c) || (c >= '0' && c <= '9') || c == '-' || c == '.';
}

// --- services ----------------------------------------------------------------------------------

bool message_text(int number, int /*option*/, CStringUTF8& out) {
    constexpr std::array<std::pair<int, const char*>, 2> kMessages{
        {{1624, "Auto"}, {1996, "Range"}}};  // a real host has its own table here
    out.Empty();
    for (const auto& [known, text] : kMessages) {
        if (known == number) out = text;
    }
    return !out.IsEmpty();
}

// The bytes of the UTF-8 character at the start of text.
std::size_t character(std::string_view text) {
    std::size_t length = 1;
    while (length < text.size() && (text[length] & 0xC0) == 0x80) ++length;
    return length;
}

bool matches(std::string_view text, std::string_view pattern) {
    std::string_view retryText;
    std::string_view retryPattern;
    bool canRetry = false;
    while (!text.empty()) {
        if (!pattern.empty() && pattern[0] == '*') {
            pattern.remove_prefix(1);
            retryText = text;
            retryPattern = pattern;
            canRetry = true;
        } else if (!pattern.empty() && (pattern[0] == '?' || pattern[0] == text[0])) {
            text.remove_prefix(pattern[0] == '?' ? character(text) : 1);
            pattern.remove_prefix(1);
        } else if (canRetry) {
            retryText.remove_prefix(character(retryText));
            text = retryText;
            pattern = retryPattern;
        } else {
            return false;
        }
    }
    return pattern.find_first_not_of('*') == std::string_view::npos;
}

bool wildcard_match(CStringUTF8 text, CStringUTF8 pattern, int matchFlag) {
    if (matchFlag == 0) {
        text.MakeLower();
        pattern.MakeLower();
    }
    return matches(minimal::view(text), minimal::view(pattern));
}

void range_slots(int rangeType, int /*stored*/, UXRangeSlots& slots) {
    slots = UXRangeSlots();
    for (const char* tag : {"X", "Y", rangeType == 2 || rangeType == 4 ? "ED" : "Z"}) {
        slots.tags.Add(tag);
        slots.dataIds.Add(51 + slots.dataIds.GetSize());
    }
}

bool clean_name(CStringUTF8& out, const CStringUTF8& name) {
    CStringUTF8 clean;
    for (const char c : minimal::view(name)) {
        if (clean.IsEmpty() && stands_in_name(c) && !starts_name(c)) clean += '_';
        clean += stands_in_name(c) && c != ':' ? c : '_';
    }
    if (clean.IsEmpty()) clean = "_";
    const bool differs = !(clean == name);
    out = clean;
    return differs;
}

}  // namespace

bool UXIsName(std::string_view text) {
    return !text.empty() && starts_name(text[0]) &&
           std::all_of(text.begin(), text.end(), stands_in_name);
}

UXHostServices& UXGetHostServices() {
    static UXHostServices services = [] {
        UXHostServices made;
        made.messageText = message_text;
        made.helpCategory = [](UXXmlWrapperBase&, UXXmlWrapperBase&, int, int category) {
            return category;
        };
        made.wildcardMatch = wildcard_match;
        made.validateValue = [](UXXmlWrapperBase&, const CStringUTF8&) { return true; };
        made.rangeSlots = range_slots;
        made.finishRange = [](UXXmlWrapperBase&, int) {};
        made.cleanName = clean_name;
        return made;
    }();
    return services;
}
