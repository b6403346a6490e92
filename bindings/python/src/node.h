// The Python type of nodes: a handle of a tree's node.
#pragma once

#include "uxtree/host/node.h"

#include "texts.h"

namespace uxpy {

struct Node {
    PyObject base;
    UXXmlWrapperBase handle;
};

// Makes the type, and the class of the nodes that functions yield, which is the type at first.
PyTypeObject* make_node_type();
PyTypeObject* node_type();
void set_node_class(PyTypeObject* type);

// A node of that class; None for an invalid handle.
PyObject* from_node(UXXmlWrapperBase&& handle);
inline PyObject* from_node(const UXXmlWrapperBase& handle) {
    return from_node(UXXmlWrapperBase(handle));
}

// The handle of an object, which lives as long as it does. TypeError for anything else.
UXXmlWrapperBase& any_handle_of(PyObject* object, const What& what);
// The same, and ReferenceError for a node that was removed.
UXXmlWrapperBase& handle_of(PyObject* object, const What& what);

}  // namespace uxpy
