// What the sources of the node type share. Each adds what it is about.
#pragma once

#include <vector>

#include "node.h"

namespace uxpy {

struct NodeParts {
    std::vector<PyMethodDef> methods;
    std::vector<PyGetSetDef> fields;
    std::vector<PyType_Slot> slots;
};
void add_values_of_node(NodeParts& parts);   // tag, value, attributes, values by identifier
void add_steps_of_node(NodeParts& parts);    // paths, searches, loops
void add_changes_of_node(NodeParts& parts);  // of the structure

PyTypeObject* make_type(PyType_Spec spec);
template <typename Function>
void* slot(Function* function) {
    return reinterpret_cast<void*>(function);
}

// What stands in a node that Python calls a method of.
inline UXXmlWrapperBase& own(PyObject* self) {
    return reinterpret_cast<Node*>(self)->handle;
}
// The same; ReferenceError when the node was removed.
UXXmlWrapperBase& usable(PyObject* self);

// The host's calls fail on a valid node for one reason, which each call names.
inline void require(int result, PyObject* type, const char* reason, PyObject* about) {
    if (result == 0) raise(type, reason, about);
}

template <typename Body>
int guarded_int(Body&& body) noexcept {
    return guarded(-1, [&] {
        body();
        return 0;
    });
}

// The default of a lookup, the argument behind what is looked for.
inline PyObject* fallback_at(int place, PyObject* const* args, Py_ssize_t count) {
    return Py_NewRef(count > place ? args[place] : Py_None);
}

}  // namespace uxpy
