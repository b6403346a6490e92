// Script arrays between Python and the libraries.
#pragma once

#include <vector>

#include "texts.h"

namespace uxpy {

using Ints = CArray<int, int>;
using Doubles = CArray<double, double>;
using Bools = CArray<bool, bool>;
using Texts = CWBOStringArray;

// Adds the elements of a sequence; a text is none. Arrays of numpy with as many dimensions as one.
void fill(Ints& array, PyObject* object, const What& what);
void fill(Doubles& array, PyObject* object, const What& what);
void fill(Bools& array, PyObject* object, const What& what);
void fill(Texts& array, PyObject* object, const What& what);

// Numbers become a numpy array that owns them, whatever becomes of the tree; missing values NaN. The
// rest becomes lists.
PyObject* from_array(Doubles& array);
PyObject* from_array(const Ints& array);
PyObject* from_array(const CArray<unsigned int>& array);
PyObject* from_array(const CArray<__int64, __int64>& array);
PyObject* from_array(const Bools& array);
PyObject* from_array(const Texts& array);

// A numpy array of the values, which are moved into it.
py::object numpy_of(Doubles& array);
py::object numpy_of(Ints& array);
py::object numpy_of(std::vector<double>&& values);

// The kind of a numpy array, as in "f" and "i", and the bytes of an element; 0 for anything else.
struct NumpyKind {
    char kind = '\0';
    Py_ssize_t itemSize = 0;
};
NumpyKind numpy_kind(PyObject* object);

}  // namespace uxpy
