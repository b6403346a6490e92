// Steps from a node to others: paths, searches, loops.
#include <climits>
#include <string>

#include "uxtree/host/name_key.h"

#include "node_parts.h"

namespace uxpy {
namespace {

PyTypeObject* childrenType = nullptr;  // references that are kept to the end
PyTypeObject* walkType = nullptr;

using Step = int (UXXmlWrapperBase::*)(UXXmlWrapperBase*) const;
PyObject* step(PyObject* self, Step go) {
    return guarded([&] {
        UXXmlWrapperBase found;
        (usable(self).*go)(&found);
        return from_node(std::move(found));
    });
}
PyObject* get_parent(PyObject* self, void*) {
    return step(self, &UXXmlWrapperBase::GetParent);
}
PyObject* get_next(PyObject* self, void*) {
    return step(self, static_cast<Step>(&UXXmlWrapperBase::NextSibling));
}
PyObject* get_previous(PyObject* self, void*) {
    return step(self, &UXXmlWrapperBase::PrevSibling);
}
PyObject* get_root(PyObject* self, void*) {
    return guarded([&] {
        UXXmlWrapperBase root(usable(self));
        for (UXXmlWrapperBase above; root.GetParent(&above) != 0;) std::swap(root, above);
        return from_node(std::move(root));
    });
}

// The tag of a step, "x" or "x[2]", and the number in it, 1 without one.
int split_step(std::string_view& step, PyObject* path) {
    const std::size_t open = step.find('[');
    if (open == std::string_view::npos) return 1;
    long long number = 0;
    for (const char digit : step.substr(open + 1, step.size() - open - 2)) {
        if (digit < '0' || digit > '9' || number > INT_MAX) {
            number = 0;
            break;
        }
        number = 10 * number + (digit - '0');
    }
    if (number < 1 || number > INT_MAX || step.back() != ']') {
        raise(PyExc_ValueError, "%R: a step is a tag, or a tag and a number from 1 as in a[2]",
              path);
    }
    step = step.substr(0, open);
    return static_cast<int>(number);
}

bool take_step(UXXmlWrapperBase& node, std::string_view step, PyObject* path) {
    int number = split_step(step, path);
    const std::string tag(step);
    const UXNameKey key(tag.c_str());
    UXXmlWrapperBase next;
    if (node.FindChild(key, &next) == 0) return false;
    while (--number > 0) {
        if (next.NextSibling(key, &next) == 0) return false;
    }
    std::swap(node, next);
    return true;
}

// The node at the end of a path; invalid when there is none.
UXXmlWrapperBase follow(const UXXmlWrapperBase& start, PyObject* path) {
    std::string_view rest(text_of(path, "path"));
    UXXmlWrapperBase node(start);
    while (!rest.empty()) {
        const std::size_t slash = rest.find('/');
        if (!take_step(node, rest.substr(0, slash), path)) return {};
        rest = slash == std::string_view::npos ? std::string_view() : rest.substr(slash + 1);
    }
    return node;
}

PyObject* node_get(PyObject* self, PyObject* const* args, Py_ssize_t count) {
    return guarded([&]() -> PyObject* {
        if (count < 1 || count > 2) raise(PyExc_TypeError, "get() takes a path and a default");
        UXXmlWrapperBase found = follow(usable(self), args[0]);
        if (found.IsNodeValid() != 0) return from_node(std::move(found));
        return fallback_at(1, args, count);
    });
}

PyObject* node_subscript(PyObject* self, PyObject* key) {
    return guarded([&] {
        UXXmlWrapperBase found;
        if (PyUnicode_Check(key)) {
            found = follow(usable(self), key);
            if (found.IsNodeValid() == 0) {
                PyErr_SetObject(PyExc_KeyError, key);
                throw Raised();
            }
            return from_node(std::move(found));
        }
        if (!PyIndex_Check(key)) {
            raise(PyExc_TypeError, "a path or a position is needed, not %.100s",
                  Py_TYPE(key)->tp_name);
        }
        const int count = usable(self).GetNodeCount();
        long long index = integer_of(key, "position", LLONG_MIN, LLONG_MAX);
        if (index < 0) index += count;
        if (index < 0 || index >= count) raise(PyExc_IndexError, "there are %d children", count);
        usable(self).GetChild(&found, static_cast<int>(index));
        return from_node(std::move(found));
    });
}

Py_ssize_t node_length(PyObject* self) {
    return guarded(static_cast<Py_ssize_t>(-1),
                   [&] { return static_cast<Py_ssize_t>(usable(self).GetNodeCount()); });
}

// The place of a node among its siblings of the same tag, from 1.
int place_among_siblings(const UXXmlWrapperBase& node, const UXNameKey& tag) {
    UXXmlWrapperBase parent;
    UXXmlWrapperBase sibling;
    node.GetParent(&parent);
    int place = 1;
    parent.FindChild(tag, &sibling);
    while (!(sibling == node) && sibling.NextSibling(tag, &sibling) != 0) ++place;
    return place;
}

PyObject* get_path(PyObject* self, void*) {
    return guarded([&] {
        UXXmlWrapperBase node(usable(self));
        std::vector<std::string> steps;
        for (UXXmlWrapperBase parent; node.GetParent(&parent) != 0; std::swap(node, parent)) {
            CStringUTF8 tag;
            node.GetTagName(tag);
            const int place = place_among_siblings(node, UXNameKey(tag));
            std::string& step = steps.emplace_back(static_cast<const char*>(tag));
            if (place > 1) step.append("[").append(std::to_string(place)).append("]");
        }
        std::string path;
        for (auto step = steps.rbegin(); step != steps.rend(); ++step) {
            if (!path.empty()) path += '/';
            path += *step;
        }
        return from_text(path);
    });
}

PyObject* node_find(PyObject* self, PyObject* const* args, Py_ssize_t count) {
    return guarded([&]() -> PyObject* {
        if (count < 1 || count > 2) raise(PyExc_TypeError, "find() takes a DataID and a default");
        UXXmlWrapperBase found;
        const int id = static_cast<int>(integer_of(args[0], "DataID", INT_MIN, INT_MAX));
        if (usable(self).FindNodeByAttribute(&found, "DataID", id, 1) != 0) {
            return from_node(std::move(found));
        }
        return fallback_at(1, args, count);
    });
}

// --- loops

// The children, each found before the one before it is handed out, so that a loop may remove it.
struct ChildrenLoop {
    PyObject base;
    UXXmlWrapperBase next;
    bool atEnd;
};
ChildrenLoop& children_loop(PyObject* self) {
    return *reinterpret_cast<ChildrenLoop*>(self);
}

[[noreturn]] void raise_changed() {
    raise(PyExc_RuntimeError, "the node from which the loop would go on was removed");
}

PyObject* node_iter(PyObject* self) {
    return guarded([&] {
        const UXXmlWrapperBase& node = usable(self);
        PyObject* const loop = checked(childrenType->tp_alloc(childrenType, 0));
        new (&children_loop(loop).next) UXXmlWrapperBase();
        children_loop(loop).atEnd = node.FirstChild(&children_loop(loop).next) == 0;
        return loop;
    });
}
PyObject* children_next(PyObject* self) {
    return guarded([&]() -> PyObject* {
        ChildrenLoop& loop = children_loop(self);
        if (loop.atEnd) return nullptr;
        if (loop.next.IsNodeValid() == 0) raise_changed();
        UXXmlWrapperBase current(std::move(loop.next));
        loop.atEnd = current.NextSibling(&loop.next) == 0;
        return from_node(std::move(current));
    });
}
void children_dealloc(PyObject* self) {
    PyTypeObject* const type = Py_TYPE(self);
    children_loop(self).next.~UXXmlWrapperBase();
    type->tp_free(self);
    Py_DECREF(type);
}

// A node and everything below it, in the order of the document.
struct WalkLoop {
    PyObject base;
    UXXmlWrapperBase top;
    UXXmlWrapperBase current;
    PyObject* tag;  // null for any
    bool begun;
};
WalkLoop& walk_loop(PyObject* self) {
    return *reinterpret_cast<WalkLoop*>(self);
}

PyObject* node_walk(PyObject* self, PyObject* const* args, Py_ssize_t count) {
    return guarded([&] {
        const UXXmlWrapperBase& node = usable(self);
        PyObject* const tag = count > 0 && args[0] != Py_None ? args[0] : nullptr;
        if (tag != nullptr) text_of(tag, "tag");
        PyObject* const made = checked(walkType->tp_alloc(walkType, 0));
        WalkLoop& loop = walk_loop(made);
        new (&loop.top) UXXmlWrapperBase(node);
        new (&loop.current) UXXmlWrapperBase(node);
        Py_XINCREF(tag);
        loop.tag = tag;
        loop.begun = false;
        return made;
    });
}
PyObject* walk_next(PyObject* self) {
    return guarded([&]() -> PyObject* {
        WalkLoop& loop = walk_loop(self);
        const UXNameKey key(loop.tag == nullptr ? nullptr : PyUnicode_AsUTF8(loop.tag));
        if (!loop.begun) {
            loop.begun = true;
            std::string_view tag;
            loop.current.GetTagView(tag);
            if (loop.tag == nullptr || tag == key.text()) return from_node(loop.current);
        }
        if (loop.top.IsNodeValid() == 0 || loop.current.IsNodeValid() == 0) raise_changed();
        UXXmlWrapperBase next;
        if (loop.current.NextBelow(loop.top, loop.tag == nullptr ? nullptr : &key, &next) == 0) {
            return nullptr;
        }
        loop.current = next;
        return from_node(std::move(next));
    });
}
void walk_dealloc(PyObject* self) {
    PyTypeObject* const type = Py_TYPE(self);
    walk_loop(self).top.~UXXmlWrapperBase();
    walk_loop(self).current.~UXXmlWrapperBase();
    Py_XDECREF(walk_loop(self).tag);
    type->tp_free(self);
    Py_DECREF(type);
}

}  // namespace

void add_steps_of_node(NodeParts& parts) {
    PyType_Slot children[] = {{Py_tp_dealloc, slot(children_dealloc)},
                              {Py_tp_iter, slot(PyObject_SelfIter)},
                              {Py_tp_iternext, slot(children_next)},
                              {0, nullptr}};
    childrenType = make_type({"uxtree.raw.Children", sizeof(ChildrenLoop), 0,
                              Py_TPFLAGS_DEFAULT | Py_TPFLAGS_DISALLOW_INSTANTIATION, children});
    PyType_Slot walk[] = {{Py_tp_dealloc, slot(walk_dealloc)},
                          {Py_tp_iter, slot(PyObject_SelfIter)},
                          {Py_tp_iternext, slot(walk_next)},
                          {0, nullptr}};
    walkType = make_type({"uxtree.raw.Walk", sizeof(WalkLoop), 0,
                          Py_TPFLAGS_DEFAULT | Py_TPFLAGS_DISALLOW_INSTANTIATION, walk});
    parts.methods.insert(
        parts.methods.end(),
        {
            {"get", method(node_get), METH_FASTCALL,
             "get(path, default=None)\n--\n\nThe node at the end of a path, or the default."},
            {"find", method(node_find), METH_FASTCALL,
             "find(data_id, default=None)\n--\n\n"
             "The first node below this one whose attribute DataID has the number, or the "
             "default."},
            {"walk", method(node_walk), METH_FASTCALL,
             "walk(tag=None)\n--\n\nThe node and everything below it in the order of the document; "
             "with a "
             "tag those of the tag. The node at hand must not be removed."},
        });
    parts.fields.insert(
        parts.fields.end(),
        {
            {"parent", get_parent, nullptr, "The parent; None for a root.", nullptr},
            {"next", get_next, nullptr, "The next sibling, or None.", nullptr},
            {"previous", get_previous, nullptr, "The sibling before, or None.", nullptr},
            {"root", get_root, nullptr, "The root of the tree.", nullptr},
            {"path", get_path, nullptr,
             "The path from the root, such as 'Input/Range[2]/X', which root[path] takes; '' for "
             "the root.",
             nullptr},
        });
    parts.slots.insert(parts.slots.end(), {
                                              {Py_tp_iter, slot(node_iter)},
                                              {Py_mp_subscript, slot(node_subscript)},
                                              {Py_mp_length, slot(node_length)},
                                          });
}

}  // namespace uxpy
