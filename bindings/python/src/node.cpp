// The Python type of nodes: its life. What callers do for every node is done in C++; the rest is Python.
#include "node.h"

#include <string>

#include "node_parts.h"
#include "texts.h"

namespace uxpy {
namespace {

PyTypeObject* nodeType = nullptr;   // a reference that is kept to the end
PyTypeObject* nodeClass = nullptr;  // likewise

PyObject* allocate(PyTypeObject* type) {
    PyObject* const self = checked(type->tp_alloc(type, 0));
    new (&own(self)) UXXmlWrapperBase();
    return self;
}

PyObject* node_new(PyTypeObject* type, PyObject* args, PyObject* kwargs) {
    return guarded([&]() -> PyObject* {
        static const char* const names[] = {"tag", nullptr};
        PyObject* tag = nullptr;
        if (!PyArg_ParseTupleAndKeywords(args, kwargs, "|O", const_cast<char**>(names), &tag)) {
            throw Raised();
        }
        const char* const text = tag == nullptr || tag == Py_None ? nullptr : text_of(tag, "tag");
        py::object self = py::reinterpret_steal<py::object>(allocate(type));
        if (text != nullptr && own(self.ptr()).CreateNew(0, text) == 0) {
            raise(PyExc_ValueError, "%R is no element name", tag);
        }
        return self.release().ptr();
    });
}

void node_dealloc(PyObject* self) {
    PyTypeObject* const type = Py_TYPE(self);
    own(self).~UXXmlWrapperBase();
    type->tp_free(self);
    Py_DECREF(type);
}

PyObject* node_compare(PyObject* a, PyObject* b, int operation) {
    if ((operation != Py_EQ && operation != Py_NE) || !PyObject_TypeCheck(b, nodeType)) {
        Py_RETURN_NOTIMPLEMENTED;
    }
    const bool same = own(a) == own(b);
    return PyBool_FromLong(same == (operation == Py_EQ));
}

int node_bool(PyObject* self) {
    return own(self).IsNodeValid() != 0 ? 1 : 0;
}

PyObject* node_repr(PyObject* self) {
    return guarded([&]() -> PyObject* {
        if (own(self).IsNodeValid() == 0) return checked(PyUnicode_FromString("<removed node>"));
        CStringUTF8 tag;
        CStringUTF8 text;
        own(self).GetTagName(tag);
        own(self).NodeValue(text, 1, 0, nullptr);
        const int children = own(self).GetNodeCount();
        const py::object name = owned(from_text(tag));
        if (children > 0) {
            return checked(PyUnicode_FromFormat("<%U with %d %s>", name.ptr(), children,
                                                children == 1 ? "child" : "children"));
        }
        const py::object value =
            owned(from_text(text.GetLength() > 60 ? text.Left(57) + "..." : text));
        return checked(PyUnicode_FromFormat("<%U %R>", name.ptr(), value.ptr()));
    });
}

constexpr char kNodeDoc[] =
    "Node(tag=None)\n--\n\n"
    "A node of a tree, and the tree below it. Node('tag') makes a new tree; Node() refers to "
    "nothing "
    "yet, for functions that make one.\n\n"
    "node['a/b[2]'] is the node at the end of a path of tags, node[0] a child, len(node) the "
    "number "
    "of children, and a loop goes over them. Nodes are equal when they are the same node. A node "
    "keeps its whole tree alive; once it was removed, using it raises ReferenceError.";

}  // namespace

UXXmlWrapperBase& usable(PyObject* self) {
    UXXmlWrapperBase& handle = own(self);
    if (handle.IsNodeValid() == 0) {
        raise(PyExc_ReferenceError, "the node was removed from its tree, or never was in one");
    }
    return handle;
}

PyTypeObject* make_type(PyType_Spec spec) {
    return reinterpret_cast<PyTypeObject*>(checked(PyType_FromSpec(&spec)));
}

PyTypeObject* make_node_type() {
    static NodeParts parts;  // the type refers to it
    add_values_of_node(parts);
    add_steps_of_node(parts);
    add_changes_of_node(parts);
    parts.methods.emplace_back();
    parts.fields.emplace_back();
    parts.slots.insert(parts.slots.end(), {
                                              {Py_tp_new, slot(node_new)},
                                              {Py_tp_dealloc, slot(node_dealloc)},
                                              {Py_tp_richcompare, slot(node_compare)},
                                              {Py_tp_hash, slot(PyObject_HashNotImplemented)},
                                              {Py_tp_repr, slot(node_repr)},
                                              {Py_nb_bool, slot(node_bool)},
                                              {Py_tp_methods, parts.methods.data()},
                                              {Py_tp_getset, parts.fields.data()},
                                              {Py_tp_doc, const_cast<char*>(kNodeDoc)},
                                              {0, nullptr},
                                          });
    nodeType = make_type({"uxtree.raw.Node", sizeof(Node), 0,
                          Py_TPFLAGS_DEFAULT | Py_TPFLAGS_BASETYPE, parts.slots.data()});
    set_node_class(nodeType);
    return nodeType;
}

PyTypeObject* node_type() {
    return nodeType;
}

void set_node_class(PyTypeObject* type) {
    Py_INCREF(type);
    Py_XSETREF(nodeClass, type);
}

PyObject* from_node(UXXmlWrapperBase&& handle) {
    if (handle.IsNodeValid() == 0) Py_RETURN_NONE;
    PyObject* const self = allocate(nodeClass);
    own(self) = std::move(handle);
    return self;
}

UXXmlWrapperBase& any_handle_of(PyObject* object, const What& what) {
    if (!PyObject_TypeCheck(object, nodeType)) {
        raise_type(what, "a node", object);
    }
    return own(object);
}

UXXmlWrapperBase& handle_of(PyObject* object, const What& what) {
    UXXmlWrapperBase& handle = any_handle_of(object, what);
    if (handle.IsNodeValid() == 0) {
        raise(PyExc_ReferenceError, "%s: the node was removed from its tree, or never was in one",
              what.text().c_str());
    }
    return handle;
}

}  // namespace uxpy
