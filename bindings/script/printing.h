// script/printing: values of any type as text, for print and for dialogues.
#pragma once

#include <functional>
#include <string>

#include "values.h"

namespace uxscript {

// The value at a place: texts as they are, numbers in their shortest form, arrays in brackets, a
// Tree as XML.
std::string text_of_value(as::asIScriptEngine& engine, const void* value, int typeId);
// The node when the value is a Tree; null otherwise.
const UXXmlWrapperBase* node_of_value(as::asIScriptEngine& engine, const void* value, int typeId);

// What a word was meant to be among the names; "" when none is near.
std::string nearest_name(const std::string& word, const std::vector<std::string>& names);

}  // namespace uxscript
