// What every source of the module includes, and how C++ failures become Python exceptions.
#pragma once

#define PY_SSIZE_T_CLEAN
#include <exception>
#include <new>
#include <utility>

#include <pybind11/pybind11.h>

namespace uxpy {

namespace py = pybind11;

// Thrown when a Python exception is set already.
struct Raised {};

[[noreturn]] inline void raise(PyObject* type, const char* format, ...) {
    va_list arguments;
    va_start(arguments, format);
    PyErr_FormatV(type, format, arguments);
    va_end(arguments);
    throw Raised();
}

// A function as tables of methods hold it.
template <typename Function>
PyCFunction method(Function* function) {
    return reinterpret_cast<PyCFunction>(reinterpret_cast<void (*)()>(function));
}

// An owned reference; null becomes the exception that is set.
inline PyObject* checked(PyObject* object) {
    if (object == nullptr) throw Raised();
    return object;
}
inline py::object owned(PyObject* object) {
    return py::reinterpret_steal<py::object>(checked(object));
}

// Runs a body that Python called: what it throws is set as an exception, and the failure returned.
template <typename Result, typename Body>
Result guarded(Result failure, Body&& body) noexcept {
    try {
        return body();
    } catch (const Raised&) {
    } catch (py::error_already_set& error) {
        error.restore();
    } catch (const std::bad_alloc&) {
        PyErr_NoMemory();
    } catch (const std::exception& error) {
        PyErr_SetString(PyExc_RuntimeError, error.what());
    }
    return failure;
}
template <typename Body>
PyObject* guarded(Body&& body) noexcept {
    return guarded(static_cast<PyObject*>(nullptr), std::forward<Body>(body));
}

}  // namespace uxpy
