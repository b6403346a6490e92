// Texts and numbers between Python and the libraries.
#pragma once

#include <cstring>
#include <string>
#include <string_view>

#include "uxtree/host/host.h"

#include "python.h"

namespace uxpy {

struct Signature;

// What a message is about: a name, or an argument of a function, or an element of either. The text
// is made for a message only.
class What {
public:
    What(const char* name) : name_(name) {}
    What(const Signature& signature, int argument) : signature_(&signature), argument_(argument) {}
    What element(Py_ssize_t index) const {
        What what(*this);
        what.element_ = index;
        return what;
    }
    std::string text() const;

private:
    const char* name_ = nullptr;
    const Signature* signature_ = nullptr;
    int argument_ = 0;
    Py_ssize_t element_ = -1;
};
// "... must be <expected>, not <the object's type>"
[[noreturn]] void raise_type(const What& what, const char* expected, PyObject* object);

// The text's own UTF-8, which lives as long as the object. A NUL inside is refused: the libraries
// would read up to it only.
inline const char* text_of(PyObject* object, const What& what) {
    if (!PyUnicode_Check(object)) raise_type(what, "str", object);
    Py_ssize_t size = 0;
    const char* const text = PyUnicode_AsUTF8AndSize(object, &size);
    if (text == nullptr) throw Raised();
    if (std::memchr(text, '\0', static_cast<std::size_t>(size)) != nullptr) {
        raise(PyExc_ValueError, "%s holds a null character", what.text().c_str());
    }
    return text;
}

// Texts of trees are UTF-8; bytes of a forgiving scan that are not survive as surrogates.
inline PyObject* from_text(std::string_view text) {
    return checked(
        PyUnicode_DecodeUTF8(text.data(), static_cast<Py_ssize_t>(text.size()), "surrogateescape"));
}
inline std::string_view view_of(const CStringUTF8& text) {
    return {static_cast<const char*>(text), static_cast<std::size_t>(text.GetLength())};
}
inline PyObject* from_text(const CStringUTF8& text) {
    return from_text(view_of(text));
}

// A whole number within bounds; numpy's are taken, floats are not.
long long integer_of(PyObject* object, const What& what, long long lowest, long long highest);
// A number; NaN is the libraries' missing value, both ways.
double number_of(PyObject* object, const What& what);
inline PyObject* from_number(double value) {
    return checked(PyFloat_FromDouble(value == UXMissingValue() ? Py_NAN : value));
}

}  // namespace uxpy
