// Attribute settings in front of a value: put there, and taken out again.
#include "data/leading_settings.h"

#include <array>
#include <string_view>
#include <utility>

#include "marks/names.h"

namespace ux {
namespace {

constexpr std::string_view kOpening = "::{";

// In the order of collection. Each goes in front, so the last one stands first in the text.
constexpr std::array<std::pair<Mark, const char*>, 3> kTravelling = {
    {{Mark::kDynaCheck, kDynaUseCheck}, {Mark::kAutoText, kAuto}, {Mark::kFormula, kDynaFx}}};

struct Setting {
    std::string_view name;
    std::string_view value;
};

// The first setting of text; behind receives what follows it. False when there is none or when it
// is malformed. Braces inside a setting are matched.
bool parse_setting(std::string_view text, Setting& setting, std::string_view& behind) {
    const std::size_t opening = text.find(kOpening);
    if (opening == std::string_view::npos) return false;
    const std::string_view body = text.substr(opening + kOpening.size());
    std::size_t depth = 1;
    std::size_t closing = 0;
    for (; closing < body.size(); ++closing) {
        if (body[closing] == '{') ++depth;
        if (body[closing] == '}' && --depth == 0) break;
    }
    if (depth != 0) return false;
    const std::size_t equals = body.substr(0, closing).find('=');
    if (equals == std::string_view::npos) return false;
    setting = {body.substr(0, equals), body.substr(equals + 1, closing - equals - 1)};
    behind = body.substr(closing + 1);
    return !setting.name.empty() && !setting.value.empty();
}

void apply_setting(UXXmlWrapperBase& node, const CStringUTF8& name, const Setting& setting) {
    CStringUTF8 value;
    value.Assign(setting.value.data(), setting.value.size());
    node.SetPropertyValue(name, value);
}

}  // namespace

bool add_leading_settings(const NodeMarks& marks, CStringUTF8& text) {
    bool found = false;
    for (const auto& [mark, name] : kTravelling) {
        if (!marks.has(mark)) continue;
        CStringUTF8 setting(kOpening.data());
        setting += name;
        setting += '=';
        setting += CStringUTF8(marks.text(mark));
        setting += '}';
        setting += text;
        text = std::move(setting);
        found = true;
    }
    return found;
}

LeadingNames take_leading_settings(UXXmlWrapperBase& node, CStringUTF8& value, bool apply) {
    const std::string_view text(value, static_cast<std::size_t>(value.GetLength()));
    LeadingNames names;
    Setting setting;
    std::string_view rest = text;
    for (std::string_view behind; parse_setting(rest, setting, behind); rest = behind) {
        CStringUTF8 name;
        name.Assign(setting.name.data(), setting.name.size());
        if (apply) apply_setting(node, name, setting);
        // Intended: "DynaFx" counts in this spelling only, the other two in any case.
        names.dynaFx |= name.Compare(kDynaFx) == 0;
        names.automatic |= name.CompareNoCase(kAuto) == 0;
        names.dynaUseCheck |= name.CompareNoCase(kDynaUseCheck) == 0;
    }
    value.Delete(0, static_cast<int>(text.size() - rest.size()));
    return names;
}

}  // namespace ux
