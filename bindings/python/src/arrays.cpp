// Script arrays between Python and the libraries.
#include "arrays.h"

#include <algorithm>
#include <climits>
#include <cmath>
#include <limits>
#include <memory>

#include <pybind11/numpy.h>

namespace uxpy {
namespace {

int size_for_array(Py_ssize_t size, const What& what) {
    if (size > INT_MAX) raise(PyExc_OverflowError, "%s has too many elements", what.text().c_str());
    return static_cast<int>(size);
}

// Calls each(element, name of the element) for a list, tuple or other sequence.
template <typename Each>
void for_elements(PyObject* object, const What& what, const char* elements, Each&& each) {
    if (PyUnicode_Check(object) || PyBytes_Check(object) || PyDict_Check(object)) {
        raise_type(what, (std::string("a sequence of ") += elements).c_str(), object);
    }
    PyObject* const fast = PySequence_Fast(object, "");
    if (fast == nullptr) {
        if (PyErr_ExceptionMatches(PyExc_TypeError) == 0) throw Raised();
        PyErr_Clear();
        raise_type(what, (std::string("a sequence of ") += elements).c_str(), object);
    }
    const auto keep = py::reinterpret_steal<py::object>(fast);
    size_for_array(PySequence_Fast_GET_SIZE(fast), what);
    // What turns an element into a number may change the list.
    for (Py_ssize_t i = 0; i < PySequence_Fast_GET_SIZE(fast); ++i) {
        const auto element = py::reinterpret_borrow<py::object>(PySequence_Fast_GET_ITEM(fast, i));
        each(element.ptr(), what.element(i));
    }
}

// An array of numpy, which holds the wanted type after a safe cast, or nothing.
template <typename T>
bool fill_from_numpy(CArray<T, T>& array, PyObject* object, const What& what) {
    if (!py::isinstance<py::array>(object)) return false;
    const auto given = py::reinterpret_borrow<py::array>(object);
    const char kind = given.dtype().kind();
    const bool fits = std::is_same_v<T, bool>  ? kind == 'b'
                      : std::is_same_v<T, int> ? kind == 'i' || kind == 'u'
                                               : kind == 'f' || kind == 'i' || kind == 'u';
    if (!fits || given.ndim() != 1) return false;  // the general way says what is wrong
    if (std::is_same_v<T, int> && (given.itemsize() > 4 || kind == 'u')) return false;
    const auto values = py::array_t<T, py::array::c_style | py::array::forcecast>::ensure(given);
    if (!values) throw py::error_already_set();
    array.SetSize(size_for_array(values.size(), what));
    std::copy_n(values.data(), values.size(), array.GetData());
    return true;
}

template <typename Array>
py::array_t<std::remove_const_t<std::remove_pointer_t<decltype(std::declval<Array>().GetData())>>>
moved_to_numpy(Array& array) {
    using T = std::remove_pointer_t<decltype(array.GetData())>;
    auto keeper = std::make_unique<Array>(std::move(array));
    T* const data = keeper->GetData();
    const Py_ssize_t size = keeper->GetSize();
    const py::capsule owner(keeper.release(), [](void* p) { delete static_cast<Array*>(p); });
    return py::array_t<T>(size, data, owner);
}

template <typename Size, typename Make>
PyObject* list_of(Size size, Make&& make) {
    py::object list = owned(PyList_New(size));
    for (Size i = 0; i < size; ++i) PyList_SET_ITEM(list.ptr(), i, checked(make(i)));
    return list.release().ptr();
}

}  // namespace

void fill(Ints& array, PyObject* object, const What& what) {
    if (fill_from_numpy(array, object, what)) return;
    for_elements(object, what, "ints", [&](PyObject* element, const What& name) {
        array.Add(static_cast<int>(integer_of(element, name, INT_MIN, INT_MAX)));
    });
}

void fill(Doubles& array, PyObject* object, const What& what) {
    if (fill_from_numpy(array, object, what)) {
        double* const values = array.GetData();
        const auto isNan = [](double value) { return std::isnan(value); };
        std::replace_if(values, values + array.GetSize(), isNan, UXMissingValue());
        return;
    }
    for_elements(object, what, "numbers",
                 [&](PyObject* element, const What& name) { array.Add(number_of(element, name)); });
}

void fill(Bools& array, PyObject* object, const What& what) {
    if (fill_from_numpy(array, object, what)) return;
    for_elements(object, what, "bools", [&](PyObject* element, const What& name) {
        if (!PyBool_Check(element)) {
            raise_type(name, "bool", element);
        }
        array.Add(element == Py_True);
    });
}

void fill(Texts& array, PyObject* object, const What& what) {
    for_elements(object, what, "str", [&](PyObject* element, const What& name) {
        array.AddText(text_of(element, name));
    });
}

py::object numpy_of(Doubles& array) {
    double* const values = array.GetData();
    std::replace(values, values + array.GetSize(), UXMissingValue(),
                 std::numeric_limits<double>::quiet_NaN());
    return moved_to_numpy(array);
}

py::object numpy_of(Ints& array) {
    return moved_to_numpy(array);
}

py::object numpy_of(std::vector<double>&& values) {
    auto keeper = std::make_unique<std::vector<double>>(std::move(values));
    double* const data = keeper->data();
    const auto size = static_cast<Py_ssize_t>(keeper->size());
    const py::capsule owner(keeper.release(),
                            [](void* p) { delete static_cast<std::vector<double>*>(p); });
    return py::array_t<double>(size, data, owner);
}

NumpyKind numpy_kind(PyObject* object) {
    if (!py::isinstance<py::array>(object)) return {};
    const auto array = py::reinterpret_borrow<py::array>(object);
    return {array.dtype().kind(), array.itemsize()};
}

PyObject* from_array(Doubles& array) {
    return numpy_of(array).release().ptr();
}
PyObject* from_array(const Ints& array) {
    return list_of(array.GetSize(), [&](int i) { return PyLong_FromLong(array.GetData()[i]); });
}
PyObject* from_array(const CArray<unsigned int>& array) {
    return list_of(array.GetSize(),
                   [&](int i) { return PyLong_FromUnsignedLong(array.GetData()[i]); });
}
PyObject* from_array(const CArray<__int64, __int64>& array) {
    return list_of(array.GetSize(), [&](int i) { return PyLong_FromLongLong(array.GetData()[i]); });
}
PyObject* from_array(const Bools& array) {
    return list_of(array.GetSize(), [&](int i) { return PyBool_FromLong(array.GetData()[i]); });
}
PyObject* from_array(const Texts& array) {
    return list_of(array.GetSize(), [&](int i) { return from_text(array[i]); });
}

}  // namespace uxpy
