// What the generated sources share beyond the arguments.
#pragma once

#include <cstdarg>

#include "uxtree/frame/path_lookup.h"

#include "arguments.h"

namespace uxpy {

// The result of the call; others may run Python meanwhile when it touches nothing of theirs.
template <typename Call>
auto unlocked(bool may, Call&& call) {
    if (!may) return call();
    const py::gil_scoped_release release;
    return call();
}

inline int with_list(UXXmlWrapperBase& out, UXXmlWrapperBase& start, int create, const char* name,
                     ...) {
    va_list rest;
    va_start(rest, name);
    const int result = wbxfu_tree_check_get_node_ex(out, start, create, name, rest);
    va_end(rest);
    return result;
}

// --- records: a dict of their fields; a place is a pair

inline void read_field(PyObject* value, const What& name, int& field) {
    field = static_cast<int>(integer_of(value, name, INT_MIN, INT_MAX));
}
inline void read_field(PyObject* value, const What& name, double& field) {
    field = number_of(value, name);
}

// Fields that the dict lacks stay 0, or missing.
template <typename Record>
void read_record(PyObject* object, const What& what, Record& record, bool mayBeNone) {
    each_field(record, [](const char*, auto& field) {
        if constexpr (std::is_same_v<decltype(field), double&>) field = UXMissingValue();
    });
    if (mayBeNone && object == Py_None) return;
    if (!PyDict_Check(object)) {
        raise_type(what, "a dict", object);
    }
    Py_ssize_t used = 0;
    each_field(record, [&](const char* name, auto& field) {
        PyObject* const value = PyDict_GetItemString(object, name);
        if (value == nullptr) return;
        ++used;
        read_field(value, name, field);
    });
    if (used != PyDict_Size(object))
        raise(PyExc_ValueError, "%s has unknown keys", what.text().c_str());
}
inline void read_record(PyObject* object, const What& what, tagPOINT& place, bool) {
    if (!PyTuple_Check(object) || PyTuple_GET_SIZE(object) != 2) {
        raise_type(what, "a pair of ints", object);
    }
    read_field(PyTuple_GET_ITEM(object, 0), what, place.x);
    read_field(PyTuple_GET_ITEM(object, 1), what, place.y);
}

template <HasFields Record>
PyObject* to_python(Record& record) {
    py::object dict = owned(PyDict_New());
    each_field(record, [&](const char* name, auto& field) {
        const py::object value = owned(to_python(field));
        if (PyDict_SetItemString(dict.ptr(), name, value.ptr()) != 0) throw Raised();
    });
    return dict.release().ptr();
}
inline PyObject* to_python(tagPOINT& place) {
    return checked(Py_BuildValue("(ii)", place.x, place.y));
}

}  // namespace uxpy
