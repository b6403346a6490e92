// What the generated functions of uxtree.raw are made of: arguments taken, results handed back.
#pragma once

#include <array>
#include <climits>
#include <cstdarg>
#include <functional>
#include <optional>
#include <type_traits>

#include "uxtree/analysis/stats.h"

#include "arrays.h"
#include "node.h"

namespace uxpy {

struct Signature {
    const char* function;
    const char* const* names;
    int count;
    int required;       // the ones behind have defaults
    int positionalMax;  // the ones behind are given by name only
};

// Spreads what Python passed over the places of a signature; those not given stay null.
void spread(const Signature& signature, PyObject* const* given, Py_ssize_t positional,
            PyObject* keywords, PyObject** places);

// An array as entry points take it, or none.
template <typename Array>
struct Given {
    UXScriptArray<Array> object;
    bool is_given = true;

    Array* native() { return is_given ? &object.array() : nullptr; }
    UXScriptObject* script() { return is_given ? &object : nullptr; }
};

// Tags of a path, with nulls behind them.
struct Path {
    static constexpr int kMost = 23;
    std::array<const char*, kMost + 1> tags{};
    py::object keep;
};

template <int count>
class Arguments {
public:
    Arguments(const Signature& signature, PyObject* const* given, Py_ssize_t positional,
              PyObject* keywords)
        : signature_(signature) {
        spread(signature, given, positional, keywords, places_.data());
    }

    bool is_none(int i) const { return places_[at(i)] == Py_None; }
    // Not given at all, or None.
    bool is_missing(int i) const { return places_[at(i)] == nullptr || is_none(i); }

    UXXmlWrapperBase* node(int i) const {
        PyObject* const object = places_[at(i)];
        // The common case does not pay for the text of a message.
        if (PyObject_TypeCheck(object, node_type())) {
            UXXmlWrapperBase& handle = reinterpret_cast<Node*>(object)->handle;
            if (handle.IsNodeValid() != 0) return &handle;
        }
        return &handle_of(object, place(i));
    }
    UXXmlWrapperBase* node_or_null(int i) const { return is_none(i) ? nullptr : node(i); }
    UXXmlWrapperBase* any_node(int i) const { return &any_handle_of(places_[at(i)], place(i)); }
    UXXmlWrapperBase* any_node_or_null(int i) const { return is_none(i) ? nullptr : any_node(i); }

    template <typename T>
    T integer(int i, T fallback = T()) const {
        PyObject* const object = places_[at(i)];
        if (object == nullptr) return fallback;
        if (PyLong_Check(object)) {
            int overflow = 0;
            const long long value = PyLong_AsLongLongAndOverflow(object, &overflow);
            const bool fits = value >= std::numeric_limits<T>::min() &&
                              value <= static_cast<long long>(std::numeric_limits<T>::max());
            if (overflow == 0 && fits) return static_cast<T>(value);
        }
        return static_cast<T>(integer_of(object, place(i), std::numeric_limits<T>::min(),
                                         static_cast<long long>(std::numeric_limits<T>::max())));
    }
    bool truth(int i, bool fallback = false) const {
        PyObject* const object = places_[at(i)];
        if (object == nullptr) return fallback;
        if (PyBool_Check(object)) return object == Py_True;
        return integer_of(object, place(i), 0, 1) != 0;
    }
    double number(int i) const { return number_of(places_[at(i)], place(i)); }
    char character(int i, char fallback = '\0') const {
        PyObject* const object = places_[at(i)];
        if (object == nullptr) return fallback;
        const char* const text = text_of(object, place(i));
        if (text[0] != '\0' && text[1] != '\0') {
            raise(PyExc_ValueError, "%s must be one ASCII character", place(i).text().c_str());
        }
        return *text;
    }
    const char* text(int i) const { return text_of(places_[at(i)], place(i)); }
    const char* text_or_null(int i) const { return is_missing(i) ? nullptr : text(i); }
    // The name of a file as the system takes it.
    const char* file(int i) {
        PyObject* bytes = nullptr;
        if (is_none(i))
            raise(PyExc_TypeError, "%s must be a path, not None", place(i).text().c_str());
        if (PyUnicode_FSConverter(places_[at(i)], &bytes) == 0) throw Raised();
        file_ = py::reinterpret_steal<py::object>(bytes);
        return PyBytes_AS_STRING(bytes);
    }
    const char* file_or_null(int i) { return is_missing(i) ? nullptr : file(i); }
    CStringUTF8 string(int i) const { return CStringUTF8(text(i)); }
    CStringUTF8 string_or_empty(int i) const { return CStringUTF8(text_or_null(i)); }

    // What is read or written as another argument says: None begins with nothing.
    template <typename T>
    T integer_or_start(int i) const {
        return is_missing(i) ? T() : integer<T>(i);
    }
    double number_or_start(int i) const { return is_missing(i) ? UXMissingValue() : number(i); }
    std::optional<double> number_or_null(int i) const {
        return is_missing(i) ? std::nullopt : std::optional<double>(number(i));
    }

    template <typename Array>
    void array(int i, Given<Array>& out) const {
        fill(out.object.array(), places_[at(i)], place(i));
    }
    template <typename Array>
    void array_or_null(int i, Given<Array>& out) const {
        out.is_given = !is_missing(i);
        if (out.is_given) array(i, out);
    }
    template <typename Array>
    void array_or_start(int i, Given<Array>& out) const {
        if (!is_missing(i)) array(i, out);
    }

    Path path(int i) const {
        Path path;
        if (is_none(i)) return path;
        PyObject* const object = places_[at(i)];
        if (!PyList_Check(object) && !PyTuple_Check(object)) {
            path.tags[0] = text(i);
            return path;
        }
        path.keep = owned(PySequence_Tuple(object));
        const Py_ssize_t size = PyTuple_GET_SIZE(path.keep.ptr());
        if (size > Path::kMost) raise(PyExc_ValueError, "a path of %zd tags is too long", size);
        for (Py_ssize_t k = 0; k < size; ++k) {
            path.tags[static_cast<std::size_t>(k)] =
                text_of(PyTuple_GET_ITEM(path.keep.ptr(), k), place(i));
        }
        return path;
    }

    // A function of Python's that says yes or no about a node; null for None. What it raises ends
    // the call.
    std::function<bool(UXXmlWrapperBase&)> predicate(int i) const {
        if (is_missing(i)) return nullptr;
        PyObject* const function = places_[at(i)];
        return [function](UXXmlWrapperBase& node) {
            if (PyErr_Occurred() != nullptr) throw Raised();
            const py::object argument = owned(from_node(node));
            const py::object answer = owned(PyObject_CallOneArg(function, argument.ptr()));
            const int truth = PyObject_IsTrue(answer.ptr());
            if (truth < 0) throw Raised();
            return truth != 0;
        };
    }

    bool wants(int i) const { return truth(i, true); }  // an output that may be left out

    What place(int i) const { return What(signature_, i); }
    PyObject* object(int i) const { return places_[at(i)]; }

private:
    static constexpr std::size_t at(int i) { return static_cast<std::size_t>(i); }

    const Signature& signature_;
    std::array<PyObject*, static_cast<std::size_t>(count == 0 ? 1 : count)> places_{};
    py::object file_;
};

// --- results

// Records have a function each_field(record, function) beside them; see raw.h.
template <typename Record>
concept HasFields = requires(Record& record) {
    each_field(record, [](const char*, auto&) {});
};
template <HasFields Record>
PyObject* to_python(Record& record);

PyObject* to_python(tagPOINT& place);
inline PyObject* to_python(int value) {
    return checked(PyLong_FromLong(value));
}
inline PyObject* to_python(long value) {
    return checked(PyLong_FromLong(value));
}
inline PyObject* to_python(unsigned int value) {
    return checked(PyLong_FromUnsignedLong(value));
}
inline PyObject* to_python(bool value) {
    return PyBool_FromLong(value ? 1 : 0);
}
inline PyObject* to_python(double value) {
    return from_number(value);
}
inline PyObject* to_python(const CStringUTF8& text) {
    return from_text(text);
}
inline PyObject* to_python(UXXmlWrapperBase& node) {
    return from_node(std::move(node));
}
inline PyObject* to_python(py::object& object) {
    return object.release().ptr();
}
template <typename Array>
PyObject* to_python(Given<Array>& array) {
    if (!array.is_given) Py_RETURN_NONE;
    return from_array(array.object.array());
}
// An output that may not have been asked for.
template <typename T>
struct Wanted {
    bool is;
    T& value;
};
template <typename T>
PyObject* to_python(Wanted<T>& wanted) {
    if (!wanted.is) Py_RETURN_NONE;
    return to_python(wanted.value);
}

// Takes over what the arguments of make yield, and joins it to a tuple when there are several.
template <typename... Values>
PyObject* results(Values&&... values) {
    if (PyErr_Occurred() != nullptr) throw Raised();  // out of a function that the call called
    std::array<py::object, sizeof...(values)> made{
        py::reinterpret_steal<py::object>(to_python(values))...};
    if constexpr (sizeof...(values) == 1) {
        return made[0].release().ptr();
    } else {
        py::object tuple = owned(PyTuple_New(static_cast<Py_ssize_t>(sizeof...(values))));
        for (std::size_t i = 0; i < made.size(); ++i) {
            PyTuple_SET_ITEM(tuple.ptr(), static_cast<Py_ssize_t>(i), made[i].release().ptr());
        }
        return tuple.release().ptr();
    }
}
inline PyObject* results() {
    if (PyErr_Occurred() != nullptr) throw Raised();
    Py_RETURN_NONE;
}

}  // namespace uxpy
