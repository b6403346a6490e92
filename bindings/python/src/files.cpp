// Loading, saving and outlines of files.
#include "uxtree/host/embedded.h"
#include "uxtree/import/n42.h"
#include "uxtree/kit/outline.h"
#include "uxtree/outline/layout.h"

#include "arrays.h"
#include "parts.h"
#include "support.h"

namespace uxpy {
namespace {

// The tree that read makes. It belongs to nobody else yet, so others may run Python meanwhile.
template <typename Read>
py::object loaded(const py::object& path, Read&& read) {
    UXXmlWrapperBase tree;
    LoadFailure failure;
    bool done = false;
    {
        const py::gil_scoped_release release;
        done = read(tree) == 1;
        if (!done) failure = LoadFailure::last();
    }
    if (!done) failure.raise(path);
    return node_object(std::move(tree));
}

py::object load(const py::object& path, bool layout) {
    const std::string name = file_name(path);
    return loaded(path, [&](UXXmlWrapperBase& tree) {
        return layout ? UXLoadForEditing(&tree, name.c_str()) : tree.load(name.c_str(), 0, false);
    });
}

py::object load_bytes(const py::bytes& bytes, bool layout) {
    char* data = nullptr;
    Py_ssize_t length = 0;
    if (PyBytes_AsStringAndSize(bytes.ptr(), &data, &length) != 0) throw Raised();
    const auto size = static_cast<std::size_t>(length);
    return loaded(py::none(), [&](UXXmlWrapperBase& tree) {
        return layout ? UXLoadForEditingFromMemory(&tree, data, size)
                      : tree.LoadFromMemory(data, size);
    });
}

UXSaveOptions save_options(const std::string& form, const py::object& ids, int indent) {
    UXSaveOptions options;
    if (form == "plain") {
        options.form = UXSaveForm::kPlain;
    } else if (form == "indented") {
        options.form = UXSaveForm::kIndented;
    } else if (form != "layout") {
        throw py::value_error("form must be 'layout', 'plain' or 'indented', not '" + form + "'");
    }
    if (!ids.is_none()) {
        options.ids = py::cast<bool>(ids) ? UXSaveIds::kWrite : UXSaveIds::kLeaveOut;
    }
    if (indent < 0 || indent > 40) throw py::value_error("indent must be between 0 and 40");
    options.indent = indent;
    return options;
}

py::dict told(const UXSaveReport& report) {
    py::dict dict;
    dict["ids_written"] = report.idsWritten;
    dict["ids_left_out"] = report.idsLeftOut;
    dict["comments_left_out"] = report.commentsLeftOut;
    return dict;
}

[[noreturn]] void raise_save_failure(const py::object& path) {
    const CStringUTF8 reason = UXGetLastSaveError();
    raise_if_no_memory(view_of(reason));
    raise_ours("SaveError", text_object(view_of(reason)), path);
}

// The tree is one that Python knows, so the interpreter stays locked.
py::dict save(const py::object& node, const py::object& path, const std::string& form,
              const py::object& ids, int indent) {
    const UXSaveOptions options = save_options(form, ids, indent);
    const std::string name = file_name(path);
    UXSaveReport report;
    if (UXSaveAs(&node_of(node), name.c_str(), options, &report) == 0) {
        raise_save_failure(path);
    }
    return told(report);
}

py::bytes save_bytes(const py::object& node, const std::string& form, const py::object& ids,
                     int indent) {
    const UXSaveOptions options = save_options(form, ids, indent);
    CStringUTF8 bytes;
    if (UXSaveToMemory(&node_of(node), &bytes, options, nullptr) == 0) {
        raise_save_failure(py::none());
    }
    return py::bytes(static_cast<const char*>(bytes), static_cast<std::size_t>(bytes.GetLength()));
}

// --- outlines: the children of an element

UXXmlWrapperBase new_outlines() {
    UXXmlWrapperBase outlines;
    if (outlines.CreateNew(0, "Outline") == 0) throw std::bad_alloc();
    return outlines;
}

// The outline of the files together, in their order. The files are read without the interpreter.
py::object outline_files(const py::list& files) {
    std::vector<std::string> names;
    for (const py::handle file : files) {
        names.push_back(file_name(py::reinterpret_borrow<py::object>(file)));
    }
    std::vector<const char*> paths;
    for (const std::string& name : names) paths.push_back(name.c_str());
    UXXmlWrapperBase outlines = new_outlines();
    LoadFailure failure;
    std::size_t done = 0;
    bool good = false;
    {
        const py::gil_scoped_release release;
        good = UXOutlineFiles(&outlines, paths.data(), paths.size(), &done) == 1;
        if (!good) failure = LoadFailure::last();
    }
    if (!good && done == paths.size()) throw std::bad_alloc();
    if (!good) failure.raise(files[done]);
    return node_object(std::move(outlines));
}

py::object outline_tree(const py::object& node) {
    UXXmlWrapperBase outlines = new_outlines();
    if (SAXTreeLayout(&outlines, &node_of(node), nullptr, 0) != 0) throw std::bad_alloc();
    return node_object(std::move(outlines));
}

void merge_outline(const py::object& target, const py::object& source) {
    if (UXMergeOutline(&node_of(target), &node_of(source)) == 0) throw std::bad_alloc();
}

// --- the tree of a spectrum file

py::tuple import_n42(const py::object& path, const py::list& detectors, unsigned int flags) {
    const std::string name = file_name(path);
    Texts wanted;
    fill(wanted, detectors.ptr(), "detectors");
    UXXmlWrapperBase tree;
    UXXmlWrapperBase information;
    int result = 0;
    {
        const py::gil_scoped_release release;
        tree.CreateNew(0, "Spectra");
        information.CreateNew(0, "Information");
        result = VCTree_n42_(&tree, name.c_str(), &wanted, &information, flags);
    }
    return py::make_tuple(result, node_object(std::move(tree)), node_object(std::move(information)),
                          owned(from_array(wanted)));
}

}  // namespace

void add_files(py::module_& core) {
    core.def("load", &load);
    core.def("load_bytes", &load_bytes);
    core.def("save", &save);
    core.def("save_bytes", &save_bytes);
    core.def("keeps_layout",
             [](const py::object& node) { return UXKeepsLayout(&node_of(node)) != 0; });
    core.def("outline_files", &outline_files);
    core.def("outline_tree", &outline_tree);
    core.def("merge_outline", &merge_outline);
    core.def("import_n42", &import_n42);
}

}  // namespace uxpy
