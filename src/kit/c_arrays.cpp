// Strings and arrays for C.
#include <memory>

#include "uxtree/kit/c.h"

#include "kit/c_last_error.h"
#include "kit/c_texts.h"

using namespace ux::kit;

namespace {

using Ints = CArray<int, int>;
using Doubles = CArray<double, double>;
using Bools = CArray<bool, bool>;

template <typename Array>
Array* array_of(UXScriptObject* object, unsigned int typeCode) {
    if (object == nullptr) return refused<Array*>(nullptr, "the array is null");
    void* const array = object->GetInternalData(typeCode);
    if (array == nullptr) return refused<Array*>(nullptr, "the object is no such array");
    return static_cast<Array*>(array);
}

template <typename T>
const T* elements(UXScriptObject* object, unsigned int typeCode) {
    return guarded<const T*>(nullptr, [&]() -> const T* {
        const auto* const array = array_of<CArray<T, T>>(object, typeCode);
        if (array == nullptr || array->IsEmpty()) return nullptr;
        return array->GetData();
    });
}

template <typename T>
int fill(UXScriptObject* object, unsigned int typeCode, const T* values, int count) {
    return guarded(0, [&] {
        auto* const array = array_of<CArray<T, T>>(object, typeCode);
        if (array == nullptr) return 0;
        if (count < 0) return refused(0, "the count is below 0");
        if (count > 0 && values == nullptr) return refused(0, "there are no values");
        CArray<T, T> filled;
        filled.SetSize(count);
        for (int i = 0; i < count; ++i) filled[i] = values[i];
        *array = std::move(filled);
        return 1;
    });
}

UXScriptObject* make_array(int kind) {
    switch (kind) {
        case UX_ARRAY_INTS:
            return new UXScriptArray<Ints>;
        case UX_ARRAY_DOUBLES:
            return new UXScriptArray<Doubles>;
        case UX_ARRAY_BOOLS:
            return new UXScriptArray<Bools>;
        case UX_ARRAY_STRINGS:
            return new UXScriptArray<CWBOStringArray>;
        default:
            return refused<UXScriptObject*>(nullptr, "there is no such kind of array");
    }
}

template <typename Array>
int size_of(UXScriptObject& object, unsigned int typeCode) {
    const auto* const array = static_cast<const Array*>(object.GetInternalData(typeCode));
    return array == nullptr ? -1 : array->GetSize();
}

}  // namespace

CStringUTF8* ux_string_new(const char* text) {
    return guarded<CStringUTF8*>(nullptr, [&]() -> CStringUTF8* {
        if (text != nullptr && !accept_text(text)) return nullptr;
        return std::make_unique<CStringUTF8>(text).release();
    });
}

void ux_string_free(CStringUTF8* string) {
    delete string;
}

const char* ux_string_text(const CStringUTF8* string) {
    return string == nullptr ? "" : static_cast<const char*>(*string);
}

int ux_string_length(const CStringUTF8* string) {
    return guarded(-1, [&] {
        return string != nullptr ? string->GetLength() : refused(-1, "the string is null");
    });
}

UXScriptObject* ux_array_new(int kind) {
    return guarded<UXScriptObject*>(nullptr, [&] { return make_array(kind); });
}

void ux_array_free(UXScriptObject* array) {
    delete array;
}

int ux_array_size(UXScriptObject* array) {
    return guarded(-1, [&] {
        if (array == nullptr) return refused(-1, "the array is null");
        for (const int size : {size_of<Ints>(*array, kUXTypeIntVector),
                               size_of<Doubles>(*array, kUXTypeDoubleVector),
                               size_of<Bools>(*array, kUXTypeBoolVector),
                               size_of<CWBOStringArray>(*array, kUXTypeStringArray)}) {
            if (size >= 0) return size;
        }
        return refused(-1, "the object is no array");
    });
}

const int* ux_array_ints(UXScriptObject* array) {
    return elements<int>(array, kUXTypeIntVector);
}
const double* ux_array_doubles(UXScriptObject* array) {
    return elements<double>(array, kUXTypeDoubleVector);
}
const bool* ux_array_bools(UXScriptObject* array) {
    return elements<bool>(array, kUXTypeBoolVector);
}

const char* ux_array_string(UXScriptObject* array, int index) {
    return guarded<const char*>(nullptr, [&]() -> const char* {
        const auto* const texts = array_of<CWBOStringArray>(array, kUXTypeStringArray);
        if (texts == nullptr) return nullptr;
        if (index < 0 || index >= texts->GetSize()) {
            return refused<const char*>(nullptr, "there is no text at that position");
        }
        return texts->GetAt(index);
    });
}

int ux_array_set_ints(UXScriptObject* array, const int* values, int count) {
    return fill(array, kUXTypeIntVector, values, count);
}
int ux_array_set_doubles(UXScriptObject* array, const double* values, int count) {
    return fill(array, kUXTypeDoubleVector, values, count);
}
int ux_array_set_bools(UXScriptObject* array, const bool* values, int count) {
    return fill(array, kUXTypeBoolVector, values, count);
}

int ux_array_add_string(UXScriptObject* array, const char* text) {
    return guarded(0, [&] {
        auto* const texts = array_of<CWBOStringArray>(array, kUXTypeStringArray);
        if (texts == nullptr || !accept_text(text)) return 0;
        texts->Add(CStringUTF8(text));
        return 1;
    });
}
