// Numbers between Python and the libraries.
#include "texts.h"

#include <cmath>

namespace uxpy {

long long integer_of(PyObject* object, const char* what, long long lowest, long long highest) {
    int overflow = 0;
    long long value = 0;
    if (PyLong_Check(object)) {
        value = PyLong_AsLongLongAndOverflow(object, &overflow);
    } else {
        if (!PyIndex_Check(object)) {
            raise(PyExc_TypeError, "%s must be int, not %.100s", what, Py_TYPE(object)->tp_name);
        }
        const py::object number = owned(PyNumber_Index(object));
        value = PyLong_AsLongLongAndOverflow(number.ptr(), &overflow);
    }
    if (value == -1 && PyErr_Occurred() != nullptr) throw Raised();
    if (overflow != 0 || value < lowest || value > highest) {
        raise(PyExc_OverflowError, "%s must be between %lld and %lld", what, lowest, highest);
    }
    return value;
}

double number_of(PyObject* object, const char* what) {
    double value = 0;
    if (PyFloat_Check(object)) {
        value = PyFloat_AS_DOUBLE(object);
    } else {
        if (PyUnicode_Check(object) || !PyNumber_Check(object)) {
            raise(PyExc_TypeError, "%s must be a number, not %.100s", what,
                  Py_TYPE(object)->tp_name);
        }
        value = PyFloat_AsDouble(object);
        if (value == -1 && PyErr_Occurred() != nullptr) throw Raised();
    }
    return std::isnan(value) ? UXMissingValue() : value;
}

}  // namespace uxpy
