// The extension module: uxtree._core, and uxtree.raw with every entry point.
#include <optional>

#include <pybind11/stl.h>

#include "uxtree/kit/c.h"
#include "uxtree/kit/version.h"

#include "node.h"
#include "parts.h"
#include "raw_tables.h"
#include "texts.h"

namespace uxpy {
namespace {

// A module of its own, so that its functions know where they are found.
py::module_ make_raw() {
    static PyModuleDef definition{PyModuleDef_HEAD_INIT,
                                  "uxtree.raw",
                                  "Every entry point of the library as the headers declare it.",
                                  -1,
                                  nullptr,
                                  nullptr,
                                  nullptr,
                                  nullptr,
                                  nullptr};
    auto raw = py::reinterpret_steal<py::module_>(checked(PyModule_Create(&definition)));
    for (const PyMethodDef* table : kRawTables) {
        if (PyModule_AddFunctions(raw.ptr(), const_cast<PyMethodDef*>(table)) != 0) throw Raised();
    }
    raw.attr("Node") =
        py::reinterpret_borrow<py::object>(reinterpret_cast<PyObject*>(make_node_type()));
    add_iterators(raw);
    return raw;
}

// A value as trees hold it.
py::object value_text(const py::object& value) {
    PyObject* const object = value.ptr();
    if (object == Py_None) return py::str();
    if (PyUnicode_Check(object)) return value;
    if (PyBool_Check(object)) return py::str(object == Py_True ? "1" : "0");
    if (PyIndex_Check(object) && !PyFloat_Check(object)) return py::str(py::int_(value));
    CStringUTF8 text;
    UXFormatDouble(number_of(object, "a value"), text);
    return owned(from_text(text));
}

py::tuple values_problem(const py::object& tree, int setting,
                         const std::optional<std::string>& name, int repeat) {
    UXXmlWrapperBase node;
    int identifier = -1;
    const int code =
        ux_values_problem(&handle_of(tree.ptr(), "tree"), setting, name ? name->c_str() : nullptr,
                          repeat, &node, &identifier, nullptr);
    const py::object id = identifier < 0 ? py::object(py::none()) : py::int_(identifier);
    return py::make_tuple(code, owned(from_node(std::move(node))), id);
}

py::object text_or_none(const char* text) {
    if (text == nullptr) return py::none();
    return py::str(text);
}

}  // namespace
}  // namespace uxpy

PYBIND11_MODULE(_core, core) {
    using namespace uxpy;
    py::register_exception_translator([](std::exception_ptr thrown) {
        try {
            if (thrown) std::rethrow_exception(thrown);
        } catch (const Raised&) {
            // The exception is set already.
        }
    });
    if (ux_version_fits(UX_VERSION) == 0) {
        throw py::import_error(std::string("uxtree was built for version " UX_VERSION
                                           " of its libraries, and finds version ")
                                   .append(ux_version()));
    }
    if (const char* const problem = ux_version_problem(); *problem != '\0') {
        throw py::import_error(problem);
    }
    core.doc() = "The compiled part of uxtree; use the package.";
    try {
        const py::module_ raw = make_raw();
        core.attr("raw") = raw;
        py::module_::import("sys").attr("modules")["uxtree.raw"] = raw;
    } catch (const Raised&) {
        throw py::error_already_set();
    }
    core.def("set_node_class", [](const py::type& type) {
        set_node_class(reinterpret_cast<PyTypeObject*>(type.ptr()));
    });
    core.attr("version") = ux_version();
    core.def("value_text", &value_text);
    core.def("values_problem", &values_problem);
    core.def("code_name", [](const char* function, int code) {
        return text_or_none(ux_code_name(function, code));
    });
    core.def("describe", [](const char* function, int code) {
        return text_or_none(ux_describe(function, code));
    });
    add_files(core);
    add_selection(core);
    add_spectra(core);
}
