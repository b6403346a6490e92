// The host's services as they are when nobody supplies others.
#include "uxtree/host/services.h"

#include <string>
#include <string_view>
#include <utility>

#include "uxtree/host/node.h"

#include "base/ascii.h"
#include "base/utf8.h"
#include "base/xml_names.h"

namespace {
using ux::to_lower;

struct Message {
    int number;
    const char* text;
};
constexpr Message kMessages[] = {
    {1624, "Auto"},
    {1627, "Weight Data"},
    {1628, "a"},
    {1629, "b"},
    {1630, "c"},
    {1631, "Weight"},
    {1935,
     "None|Data Squared|Statistical|Data Inverse|Data Direct|Squared Y|Linear Variance|"
     "Power Variance|Data Power Variance|Fitted Statistical|Fitted Squared|"
     "Fitted Linear Variance|Fitted Power Variance|Fitted Data Power Variance|Two Parameter"},
    {1996, "Range"},
};

bool message_text(int number, int /*option*/, CStringUTF8& out) {
    out.Empty();
    for (const Message& message : kMessages) {
        if (message.number != number) continue;
        out = message.text;
        return true;
    }
    return false;
}

int keep_category(UXXmlWrapperBase& /*out*/, UXXmlWrapperBase& /*tree*/, int /*id*/, int category) {
    return category;
}

bool matches(std::string_view text, std::string_view pattern, bool caseSensitive) {
    const auto same = [&](char a, char b) {
        return a == b || (!caseSensitive && to_lower(a) == to_lower(b));
    };
    // Only the last star is ever tried again: whatever an earlier one could take in addition, the
    // last one can take as well. So the work is at most text times pattern.
    std::size_t t = 0;
    std::size_t p = 0;
    std::size_t afterStar = std::string_view::npos;
    std::size_t retry = 0;
    while (t < text.size()) {
        if (p < pattern.size() && pattern[p] == '*') {
            afterStar = ++p;
            retry = t;
        } else if (p < pattern.size() && pattern[p] == '?') {
            t += ux::utf8_step(text, t);
            ++p;
        } else if (p < pattern.size() && same(pattern[p], text[t])) {
            ++t;
            ++p;
        } else if (afterStar != std::string_view::npos) {
            retry += ux::utf8_step(text, retry);
            t = retry;
            p = afterStar;
        } else {
            return false;
        }
    }
    return pattern.find_first_not_of('*', p) == std::string_view::npos;
}

bool wildcard_match(const CStringUTF8& text, const CStringUTF8& pattern, int matchFlag) {
    return matches(static_cast<const char*>(text), static_cast<const char*>(pattern),
                   matchFlag != 0);
}

bool accept_value(UXXmlWrapperBase& /*node*/, const CStringUTF8& /*value*/) {
    return true;
}

void default_slots(int rangeType, int /*stored*/, UXRangeSlots& slots) {
    const bool withErrors = rangeType == 2 || rangeType == 4;
    UXRangeSlots filled;
    filled.tags.Add("X");
    filled.tags.Add("Y");
    filled.tags.Add(withErrors ? "ED" : "Z");
    for (const int id : {51, 52, 53}) filled.dataIds.Add(id);
    slots = std::move(filled);
}

void finish_nothing(UXXmlWrapperBase& /*rangeTree*/, int /*rangeType*/) {}

std::string cleaned(std::string_view text) {
    std::string name;
    name.reserve(text.size() + 1);
    for (std::size_t at = 0; at < text.size();) {
        const ux::Utf8Char c = ux::decode_utf8(text, at);
        const bool kept = c.length != 0 && c.code != ':' && ux::continues_name(c.code);
        if (at == 0 && kept && !ux::starts_name(c.code)) name += '_';
        if (kept) {
            name.append(text, at, c.length);
        } else {
            name += '_';
        }
        at += c.length == 0 ? 1 : c.length;
    }
    return name.empty() ? "_" : name;
}

bool clean_name(CStringUTF8& out, const CStringUTF8& name) {
    const std::string result = cleaned(static_cast<const char*>(name));
    const bool differs = name != result.c_str();
    out = result.c_str();
    return differs;
}

template <typename Function>
void default_to(std::function<Function>& service, Function* fallback) {
    if (!service) service = fallback;
}

void fill_in(UXHostServices& services) {
    default_to(services.messageText, message_text);
    default_to(services.helpCategory, keep_category);
    default_to(services.wildcardMatch, wildcard_match);
    default_to(services.validateValue, accept_value);
    default_to(services.rangeSlots, default_slots);
    default_to(services.finishRange, finish_nothing);
    default_to(services.cleanName, clean_name);
}

UXHostServices default_services() {
    UXHostServices services;
    fill_in(services);
    return services;
}
}  // namespace

UXHostServices& UXGetHostServices() {
    static UXHostServices services = default_services();
    // At every call, so that a service that was taken away is the default one again. It writes only
    // then, so calls of several threads go together.
    fill_in(services);
    return services;
}
