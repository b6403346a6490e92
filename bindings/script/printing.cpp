// script/printing: values of any type as text, for print and for dialogues.
#include "printing.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <numeric>
#include <vector>

namespace uxscript {
namespace {

template <class T>
std::string number_at(const void* value) {
    T number;
    std::memcpy(&number, value, sizeof number);
    return number_text(number);
}

std::string primitive_text(const void* value, int typeId) {
    switch (typeId) {
        case as::asTYPEID_BOOL:
            return number_at<bool>(value);
        case as::asTYPEID_INT8:
            return number_at<std::int8_t>(value);
        case as::asTYPEID_INT16:
            return number_at<std::int16_t>(value);
        case as::asTYPEID_INT64:
            return number_at<std::int64_t>(value);
        case as::asTYPEID_UINT8:
            return number_at<std::uint8_t>(value);
        case as::asTYPEID_UINT16:
            return number_at<std::uint16_t>(value);
        case as::asTYPEID_UINT32:
            return number_at<std::uint32_t>(value);
        case as::asTYPEID_UINT64:
            return number_at<std::uint64_t>(value);
        case as::asTYPEID_FLOAT:
            return number_at<float>(value);
        case as::asTYPEID_DOUBLE:
            return number_at<double>(value);
        default:
            return number_at<std::int32_t>(value);  // and enumerations
    }
}

const void* behind_handle(const void* value, int typeId) {
    const bool handle = (typeId & as::asTYPEID_OBJHANDLE) != 0;
    return handle ? *static_cast<const void* const*>(value) : value;
}

std::string tree_text(const UXXmlWrapperBase& node) {
    CStringUTF8 text;
    if (node.IsNodeValid() == 0) return "(no node)";
    return node.GetString(text) == 0 ? "(text that XML cannot hold)" : standard(text);
}

std::string array_text(as::asIScriptEngine& engine, as::CScriptArray& array, int depth);

std::string value_text(as::asIScriptEngine& engine, const void* value, int typeId, int depth) {
    if ((typeId & as::asTYPEID_MASK_OBJECT) == 0) return primitive_text(value, typeId);
    value = behind_handle(value, typeId);
    if (value == nullptr) return "null";
    const as::asITypeInfo* type = engine.GetTypeInfoById(typeId);
    const std::string name = type == nullptr ? "" : type->GetName();
    if (name == "string") return *static_cast<const std::string*>(value);
    if (name == "text") {
        const auto& text = *static_cast<const TextValue*>(value);
        return text.given ? text.text : "none";
    }
    if (name == "Tree") return tree_text(static_cast<const ScriptTree*>(value)->value);
    if (name == "array") {
        // Only read, but the add-on has no reading access for constants.
        return array_text(engine, *static_cast<as::CScriptArray*>(const_cast<void*>(value)), depth);
    }
    return "(" + name + ")";
}

std::string array_text(as::asIScriptEngine& engine, as::CScriptArray& array, int depth) {
    if (depth > 8) return "[...]";  // it may hold itself
    std::string text = "[";
    for (as::asUINT i = 0; i < array.GetSize(); ++i) {
        if (i != 0) text += ", ";
        text += value_text(engine, array.At(i), array.GetElementTypeId(), depth + 1);
    }
    return text + "]";
}

// How many letters are to be inserted, taken away or changed.
std::size_t distance(const std::string& a, const std::string& b) {
    std::vector<std::size_t> row(b.size() + 1);
    std::iota(row.begin(), row.end(), std::size_t{0});
    for (std::size_t i = 0; i < a.size(); ++i) {
        std::size_t corner = row[0];
        row[0] = i + 1;
        for (std::size_t j = 0; j < b.size(); ++j) {
            const std::size_t changed = corner + (a[i] == b[j] ? 0 : 1);
            corner = row[j + 1];
            row[j + 1] = std::min({changed, row[j] + 1, corner + 1});
        }
    }
    return row.back();
}

}  // namespace

std::string text_of_value(as::asIScriptEngine& engine, const void* value, int typeId) {
    return value_text(engine, value, typeId, 0);
}

const UXXmlWrapperBase* node_of_value(as::asIScriptEngine& engine, const void* value, int typeId) {
    const as::asITypeInfo* type = engine.GetTypeInfoById(typeId);
    if (type == nullptr || std::strcmp(type->GetName(), "Tree") != 0) return nullptr;
    value = behind_handle(value, typeId);
    return value == nullptr ? nullptr : &static_cast<const ScriptTree*>(value)->value;
}

std::string nearest_name(const std::string& word, const std::vector<std::string>& names) {
    if (word.size() < 2) return "";
    std::size_t least = std::max<std::size_t>(1, word.size() / 3) + 1;
    std::string found;
    for (const std::string& name : names) {
        if (name.size() + least < word.size() || word.size() + least < name.size()) continue;
        const std::size_t needed = distance(word, name);
        if (needed < least && needed != 0) {
            least = needed;
            found = name;
        }
    }
    return found;
}

}  // namespace uxscript
