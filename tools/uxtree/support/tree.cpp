// Nodes as standard strings, and walks over them.
#include "support/tree.h"

namespace uxtool {

std::string to_string(const CStringUTF8& text) {
    return std::string(static_cast<const char*>(text), static_cast<std::size_t>(text.GetLength()));
}

std::vector<std::string> to_strings(const CWBOStringArray& texts) {
    std::vector<std::string> out;
    out.reserve(static_cast<std::size_t>(texts.GetSize()));
    for (int i = 0; i < texts.GetSize(); ++i) out.push_back(to_string(texts[i]));
    return out;
}

UXScriptArray<CWBOStringArray> script_texts(const std::vector<std::string>& texts) {
    UXScriptArray<CWBOStringArray> out;
    for (const std::string& text : texts) out.array().Add(CStringUTF8(text.c_str()));
    return out;
}

std::string tag_of(const UXXmlWrapperBase& node) {
    CStringUTF8 tag;
    node.GetTagName(tag);
    return to_string(tag);
}

std::optional<std::string> attribute_of(const UXXmlWrapperBase& node, const char* name) {
    CStringUTF8 text;
    if (node.GetPropertyValue(name, text, 0) == 0) return std::nullopt;
    return to_string(text);
}

std::vector<std::string> attribute_names(const UXXmlWrapperBase& node) {
    CWBOStringArray names;
    node.GetPropertyNames(names);
    return to_strings(names);
}

std::vector<std::pair<std::string, std::string>> all_attributes(const UXXmlWrapperBase& node) {
    CWBOStringArray names;
    CWBOStringArray values;
    node.GetPropertyNamesAndValues(names, &values, nullptr);
    std::vector<std::pair<std::string, std::string>> out;
    out.reserve(static_cast<std::size_t>(names.GetSize()));
    for (int i = 0; i < names.GetSize(); ++i) {
        out.emplace_back(to_string(names[i]), to_string(values[i]));
    }
    return out;
}

std::string value_of(const UXXmlWrapperBase& node) {
    CStringUTF8 text;
    node.GetNodeStringWithBlobInfo(text, 0);
    return to_string(text);
}

}  // namespace uxtool
