// Changes of the structure at a node.
#include "arrays.h"
#include "node_parts.h"

namespace uxpy {
namespace {

PyObject* node_add(PyObject* self, PyObject* tag) {
    return guarded([&] {
        UXXmlWrapperBase added;
        require(usable(self).AddNode(&added, text_of(tag, "tag"), -1), PyExc_ValueError,
                "%R is no element name", tag);
        return from_node(std::move(added));
    });
}
PyObject* node_insert_before(PyObject* self, PyObject* tag) {
    return guarded([&] {
        UXXmlWrapperBase parent;
        UXXmlWrapperBase added;
        if (usable(self).GetParent(&parent) == 0) raise(PyExc_ValueError, "a root has no siblings");
        require(parent.InsertNodeBefore(own(self), text_of(tag, "tag"), -1, &added),
                PyExc_ValueError, "%R is no element name", tag);
        return from_node(std::move(added));
    });
}
PyObject* node_append_copy(PyObject* self, PyObject* source) {
    return guarded([&] {
        UXXmlWrapperBase added;
        if (usable(self).AddNodeCopy(&handle_of(source, "node"), 1, &added) == 0) {
            raise(PyExc_ValueError, "the node cannot be copied there");
        }
        return from_node(std::move(added));
    });
}
PyObject* node_replace_with(PyObject* self, PyObject* source) {
    return guarded([&]() -> PyObject* {
        if (usable(self).ReplaceByNodeCopy(&handle_of(source, "node"), 0, 0) == 0) {
            raise(PyExc_ValueError, "the node cannot be copied there");
        }
        Py_RETURN_NONE;
    });
}
PyObject* node_remove(PyObject* self, PyObject*) {
    return guarded([&]() -> PyObject* {
        usable(self).RemoveNode();
        Py_RETURN_NONE;
    });
}
PyObject* node_clear(PyObject* self, PyObject*) {
    return guarded([&]() -> PyObject* {
        usable(self).ResetNode(0);
        Py_RETURN_NONE;
    });
}
PyObject* node_copy(PyObject* self, PyObject*) {
    return guarded([&] {
        UXXmlWrapperBase copy;
        usable(self).Clone(&copy, 0);
        return from_node(std::move(copy));
    });
}
PyObject* node_arrange(PyObject* self, PyObject* order) {
    return guarded([&]() -> PyObject* {
        Ints places;
        fill(places, order, "order");
        if (usable(self).ArrangeChildContents(places) == 0) {
            raise(PyExc_ValueError, "order must hold each position once");
        }
        Py_RETURN_NONE;
    });
}
PyObject* node_xml(PyObject* self, PyObject*) {
    return guarded([&] {
        CStringUTF8 text;
        usable(self).GetString(text, 0);
        return from_text(text);
    });
}

}  // namespace

void add_changes_of_node(NodeParts& parts) {
    parts.methods.insert(
        parts.methods.end(),
        {
            {"add", node_add, METH_O, "add(tag)\n--\n\nAppends a child and yields it."},
            {"insert_before", node_insert_before, METH_O,
             "insert_before(tag)\n--\n\nMakes a node in front of this one and yields it."},
            {"append_copy", node_append_copy, METH_O,
             "append_copy(node)\n--\n\nAppends a copy of a node, of any tree, and yields the "
             "copy."},
            {"replace_with", node_replace_with, METH_O,
             "replace_with(node)\n--\n\nTakes over tag, attributes, value and children of a node."},
            {"remove", node_remove, METH_NOARGS,
             "remove()\n--\n\nRemoves the node with its branch; nodes in it raise ReferenceError "
             "then."},
            {"clear", node_clear, METH_NOARGS,
             "clear()\n--\n\nRemoves the children and the value."},
            {"copy", node_copy, METH_NOARGS,
             "copy()\n--\n\nA deep copy, as the root of a tree of its own."},
            {"arrange", node_arrange, METH_O,
             "arrange(order)\n--\n\nChild i takes the content of child order[i]. Nodes in branches "
             "whose "
             "content moved raise ReferenceError then."},
            {"xml", node_xml, METH_NOARGS,
             "xml()\n--\n\nThe node as XML, in one line without declaration."},
        });
}

}  // namespace uxpy
