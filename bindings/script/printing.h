// script/printing: values of any type as text, for print and for dialogues.
#pragma once

#include <charconv>
#include <limits>
#include <string>
#include <type_traits>

#include "values.h"

namespace uxscript {

// A number as a node has it as its value: a real one with the least digits that read back, from 15
// on (float: 6 on). true and false for what is one of them.
template <class T>
std::string number_text(T number) {
    if constexpr (std::is_same_v<T, bool>) {
        return number ? "true" : "false";
    } else if constexpr (std::is_integral_v<T>) {
        return std::to_string(number);
    } else {
        char text[64];
        char* const stop = text + sizeof text;
        char* end = nullptr;
        T read{};
        int digits = std::numeric_limits<T>::digits10;
        do {
            end = std::to_chars(text, stop, number, std::chars_format::general, digits).ptr;
            std::from_chars(text, end, read);
        } while (read != number && ++digits <= std::numeric_limits<T>::max_digits10);
        return {text, end};
    }
}

// The value at a place: texts as they are, numbers by number_text, arrays in brackets, a Tree as XML.
std::string text_of_value(as::asIScriptEngine& engine, const void* value, int typeId);
// The node when the value is a Tree; null otherwise.
const UXXmlWrapperBase* node_of_value(as::asIScriptEngine& engine, const void* value, int typeId);

// What a word was meant to be among the names; "" when none is near.
std::string nearest_name(const std::string& word, const std::vector<std::string>& names);

}  // namespace uxscript
