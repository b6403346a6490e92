// Handles that a C program needs, made in C++.
#include "c_handles.h"

#include <string>

namespace {

using Ints = CArray<int, int>;

Ints& ints_of(UXScriptObject* object) {
    return *static_cast<Ints*>(object->GetInternalData(kUXTypeIntVector));
}
CWBOStringArray& texts_of(UXScriptObject* object) {
    return *static_cast<CWBOStringArray*>(object->GetInternalData(kUXTypeStringArray));
}

}  // namespace

UXXmlWrapperBase* handle_new(const char* xml) {
    auto* handle = new UXXmlWrapperBase;
    if (xml != nullptr) handle->LoadFromMemory(xml, std::char_traits<char>::length(xml));
    return handle;
}
int handle_is_valid(const UXXmlWrapperBase* handle) {
    return handle->IsNodeValid();
}
const char* handle_text(const UXXmlWrapperBase* handle) {
    static CStringUTF8 text;
    text.Empty();
    handle->GetString(text);
    return text;
}
void handle_free(UXXmlWrapperBase* handle) {
    delete handle;
}

CStringUTF8* string_new(const char* text) {
    return new CStringUTF8(text);
}
const char* string_text(const CStringUTF8* string) {
    return *string;
}
void string_free(CStringUTF8* string) {
    delete string;
}

UXScriptObject* ints_new(int count, const int* values) {
    auto* object = new UXScriptArray<Ints>;
    for (int i = 0; i < count; ++i) object->array().Add(values[i]);
    return object;
}
int ints_count(UXScriptObject* ints) {
    return ints_of(ints).GetSize();
}
int ints_at(UXScriptObject* ints, int index) {
    return ints_of(ints)[index];
}
UXScriptObject* texts_new(int count, const char* const* values) {
    auto* object = new UXScriptArray<CWBOStringArray>;
    for (int i = 0; i < count; ++i) object->array().Add(CStringUTF8(values[i]));
    return object;
}
int texts_count(UXScriptObject* texts) {
    return texts_of(texts).GetSize();
}
const char* texts_at(UXScriptObject* texts, int index) {
    return texts_of(texts)[index];
}
void script_object_free(UXScriptObject* object) {
    delete object;
}
