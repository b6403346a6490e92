// Spreading what Python passed over the places of a signature.
#include "arguments.h"

#include <cstring>

namespace uxpy {
namespace {

int place_of(const Signature& signature, PyObject* keyword) {
    for (int i = 0; i < signature.count; ++i) {
        if (PyUnicode_CompareWithASCIIString(keyword, signature.names[i]) == 0) return i;
    }
    raise(PyExc_TypeError, "%s() has no argument '%U'", signature.function, keyword);
}

}  // namespace

void spread(const Signature& signature, PyObject* const* given, Py_ssize_t positional,
            PyObject* keywords, PyObject** places) {
    if (positional > signature.positionalMax) {
        raise(PyExc_TypeError, "%s() takes %d positional arguments, not %zd", signature.function,
              signature.positionalMax, positional);
    }
    std::copy_n(given, positional, places);
    const Py_ssize_t named = keywords == nullptr ? 0 : PyTuple_GET_SIZE(keywords);
    for (Py_ssize_t i = 0; i < named; ++i) {
        const int place = place_of(signature, PyTuple_GET_ITEM(keywords, i));
        if (places[place] != nullptr) {
            raise(PyExc_TypeError, "%s() got argument '%s' twice", signature.function,
                  signature.names[place]);
        }
        places[place] = given[positional + i];
    }
    for (int i = 0; i < signature.required; ++i) {
        if (places[i] == nullptr) {
            raise(PyExc_TypeError, "%s() misses argument '%s'", signature.function,
                  signature.names[i]);
        }
    }
}

}  // namespace uxpy
