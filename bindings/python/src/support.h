// What the hand-made functions share: names of files, texts, nodes, and errors with their place.
#pragma once

#include <memory>
#include <new>
#include <string>
#include <string_view>

#include "uxtree/host/embedded.h"

#include "node.h"
#include "texts.h"

namespace uxpy {

inline py::object node_object(UXXmlWrapperBase&& node) {
    return owned(from_node(std::move(node)));
}
inline UXXmlWrapperBase& node_of(const py::object& object) {
    return handle_of(object.ptr(), "node");
}
inline py::object text_object(std::string_view text) {
    return owned(from_text(text));
}

// The name of a file as the system takes it.
inline std::string file_name(const py::object& path) {
    PyObject* bytes = nullptr;
    if (PyUnicode_FSConverter(path.ptr(), &bytes) == 0) throw Raised();
    const auto keep = py::reinterpret_steal<py::object>(bytes);
    return {PyBytes_AS_STRING(bytes), static_cast<std::size_t>(PyBytes_GET_SIZE(bytes))};
}

// The function __init__ of a class. py::init would free the object twice, or let the exception pass into
// Python, when there is no memory to register it.
template <typename Made, typename Given>
void define_init(py::class_<Made>& type, std::unique_ptr<Made> (*make)(const Given&),
                 const char* argument) {
    const auto init = [make](py::detail::value_and_holder& place, const Given& given) {
        std::unique_ptr<Made> made = make(given);
        place.value_ptr() = made.get();
        try {
            place.type->init_instance(place.inst, nullptr);
        } catch (...) {
            place.value_ptr() = nullptr;
            throw;
        }
        made.release();
    };
    type.def("__init__", init, py::detail::is_new_style_constructor(), py::arg(argument));
}

// Raises an exception of uxtree.errors.
template <typename... Arguments>
[[noreturn]] void raise_ours(const char* name, Arguments&&... arguments) {
    const py::object type = py::module_::import("uxtree.errors").attr(name);
    const py::object error = type(std::forward<Arguments>(arguments)...);
    PyErr_SetObject(type.ptr(), error.ptr());
    throw Raised();
}

// The libraries tell of missing memory by this reason; Python has an exception of its own for it.
inline void raise_if_no_memory(std::string_view reason) {
    if (reason == "out of memory") throw std::bad_alloc();
}

// The reason of this thread's last load, kept until the interpreter can be asked again.
struct LoadFailure {
    std::string message;
    long long line = 0;
    long long column = 0;

    static LoadFailure last() {
        const UXFileError& failure = UXGetLastLoadFailure();
        return {std::string(view_of(failure.message)), failure.line, failure.column};
    }
    [[noreturn]] void raise(const py::object& path) const {
        raise_if_no_memory(message);
        raise_ours("LoadError", text_object(message), path, line, column);
    }
};

}  // namespace uxpy
