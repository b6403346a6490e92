// Numbers between Python and the libraries.
#include "texts.h"

#include <cmath>

#include "arguments.h"

namespace uxpy {

std::string What::text() const {
    std::string text(name_ != nullptr ? name_ : "");
    if (signature_ != nullptr) {
        text.append(signature_->function).append("() argument '");
        text.append(signature_->names[argument_]).append("'");
    }
    if (element_ >= 0) text.append("[").append(std::to_string(element_)).append("]");
    return text;
}

void raise_type(const What& what, const char* expected, PyObject* object) {
    raise(PyExc_TypeError, "%s must be %s, not %.100s", what.text().c_str(), expected,
          Py_TYPE(object)->tp_name);
}

long long integer_of(PyObject* object, const What& what, long long lowest, long long highest) {
    int overflow = 0;
    long long value = 0;
    if (PyLong_Check(object)) {
        value = PyLong_AsLongLongAndOverflow(object, &overflow);
    } else {
        if (!PyIndex_Check(object)) {
            raise_type(what, "int", object);
        }
        const py::object number = owned(PyNumber_Index(object));
        value = PyLong_AsLongLongAndOverflow(number.ptr(), &overflow);
    }
    if (value == -1 && PyErr_Occurred() != nullptr) throw Raised();
    if (overflow != 0 || value < lowest || value > highest) {
        raise(PyExc_OverflowError, "%s must be between %lld and %lld", what.text().c_str(), lowest,
              highest);
    }
    return value;
}

double number_of(PyObject* object, const What& what) {
    double value = 0;
    if (PyFloat_Check(object)) {
        value = PyFloat_AS_DOUBLE(object);
    } else {
        if (PyUnicode_Check(object) || !PyNumber_Check(object)) {
            raise_type(what, "a number", object);
        }
        value = PyFloat_AsDouble(object);
        if (value == -1 && PyErr_Occurred() != nullptr) throw Raised();
    }
    return std::isnan(value) ? UXMissingValue() : value;
}

}  // namespace uxpy
