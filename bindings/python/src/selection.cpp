// Selections: paths in XPath's short form, compiled once.
#include "uxtree/kit/select.h"

#include "parts.h"
#include "support.h"

namespace uxpy {
namespace {

std::unique_ptr<UXSelection> compile(const py::str& expression) {
    auto selection = std::make_unique<UXSelection>();
    UXSelectFault fault;
    const char* const text = text_of(expression.ptr(), "expression");
    if (!selection->compile(text, &fault)) {
        raise_if_no_memory(fault.message);
        const py::object before = text_object(std::string_view(text).substr(0, fault.position));
        const Py_ssize_t characters = PyUnicode_GET_LENGTH(before.ptr());
        raise_ours("SelectError", text_object(fault.message), expression, characters, py::none());
    }
    return selection;
}

[[noreturn]] void raise_mixed(UXXmlWrapperBase&& node) {
    raise_ours("SelectError",
               "the answer depends on text whose place among child elements is not kept",
               py::none(), py::none(), node_object(std::move(node)));
}

UXSelected run(const UXSelection& selection, const py::object& node) {
    UXSelected selected;
    switch (selection.run(node_of(node), selected)) {
        case UXSelectOutcome::kDone:
            return selected;
        case UXSelectOutcome::kMixedText:
            raise_mixed(selected.mixed());
        case UXSelectOutcome::kNoTree:
            throw py::value_error("there is no tree, or no expression");
        case UXSelectOutcome::kOutOfMemory:
            break;
    }
    throw std::bad_alloc();
}

py::object text_at(const UXSelected& selected, std::size_t index) {
    CStringUTF8 text;
    if (!selected.text(index, text)) raise_mixed(selected.node(index));
    return text_object(view_of(text));
}

// Elements as nodes; attributes and texts as str.
py::list items(const UXSelection& selection, const py::object& node) {
    const UXSelected selected = run(selection, node);
    py::list found(selected.size());
    for (std::size_t i = 0; i < selected.size(); ++i) {
        const UXSelectedKind kind = selected.kind(i);
        const bool isNode = kind == UXSelectedKind::kElement || kind == UXSelectedKind::kDocument;
        found[i] = isNode ? node_object(selected.node(i)) : text_at(selected, i);
    }
    return found;
}

py::list texts(const UXSelection& selection, const py::object& node) {
    const UXSelected selected = run(selection, node);
    py::list found(selected.size());
    for (std::size_t i = 0; i < selected.size(); ++i) found[i] = text_at(selected, i);
    return found;
}

}  // namespace

void add_selection(py::module_& core) {
    py::class_<UXSelection> type(core, "Selection");
    define_init(type, compile, "expression");
    type.def("items", &items, py::arg("node")).def("texts", &texts, py::arg("node"));
}

}  // namespace uxpy
