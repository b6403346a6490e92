// The arrays behind script objects; null when the object is missing or of another type.
#pragma once

#include "uxtree/host/script_object.h"

#include "frame/guards.h"

namespace ux {

template <typename Array>
Array* script_array(UXScriptObject* object, unsigned int typeCode) {
    if (object == nullptr) return nullptr;
    const detail::CallOut out;
    return static_cast<Array*>(object->GetInternalData(typeCode));
}

inline CArray<bool, bool>* bool_vector(UXScriptObject* object) {
    return script_array<CArray<bool, bool>>(object, kUXTypeBoolVector);
}
inline CArray<int, int>* int_vector(UXScriptObject* object) {
    return script_array<CArray<int, int>>(object, kUXTypeIntVector);
}
inline CArray<double, double>* double_vector(UXScriptObject* object) {
    return script_array<CArray<double, double>>(object, kUXTypeDoubleVector);
}
inline CWBOStringArray* string_array(UXScriptObject* object) {
    return script_array<CWBOStringArray>(object, kUXTypeStringArray);
}

// An optional argument: a missing object is "not given", an object without the array is refused.
inline bool refused(const UXScriptObject* object, const void* array) {
    return object != nullptr && array == nullptr;
}

}  // namespace ux
