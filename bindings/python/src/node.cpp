// The Python type of nodes. What callers do for every node is done here; the rest is Python.
#include "node.h"

#include <climits>
#include <string>

#include "uxtree/host/name_key.h"

#include "arrays.h"
#include "texts.h"

namespace uxpy {
namespace {

PyTypeObject* nodeType = nullptr;   // a reference that is kept to the end
PyTypeObject* nodeClass = nullptr;  // likewise
PyTypeObject* childrenType = nullptr;
PyTypeObject* walkType = nullptr;

[[noreturn]] void raise_removed() {
    raise(PyExc_ReferenceError, "the node was removed from its tree, or never was in one");
}

// What stands in a node that Python calls a method of.
UXXmlWrapperBase& own(PyObject* self) {
    return reinterpret_cast<Node*>(self)->handle;
}
UXXmlWrapperBase& usable(PyObject* self) {
    UXXmlWrapperBase& handle = own(self);
    if (handle.IsNodeValid() == 0) raise_removed();
    return handle;
}

// The host's calls fail on a valid node for one reason, which each call names.
void require(int result, PyObject* type, const char* reason, PyObject* about) {
    if (result == 0) raise(type, reason, about);
}

template <typename Body>
int guarded_int(Body&& body) noexcept {
    return guarded(-1, [&] {
        body();
        return 0;
    });
}

// --- the life of a node

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

// --- tags, values, attributes

PyObject* get_valid(PyObject* self, void*) {
    return PyBool_FromLong(own(self).IsNodeValid());
}

PyObject* get_tag(PyObject* self, void*) {
    return guarded([&] {
        std::string_view tag;
        usable(self).GetTagView(tag);
        return from_text(tag);
    });
}
int set_tag(PyObject* self, PyObject* value, void*) {
    return guarded_int([&] {
        if (value == nullptr) raise(PyExc_AttributeError, "a node always has a tag");
        require(usable(self).SetTagName(text_of(value, "tag")), PyExc_ValueError,
                "%R is no element name", value);
    });
}

PyObject* get_value(PyObject* self, void*) {
    return guarded([&] {
        std::string_view text;
        CStringUTF8 scratch;
        usable(self).NodeValueView(text, scratch);
        return from_text(text);
    });
}

void write_sequence(UXXmlWrapperBase& node, PyObject* value) {
    int done = 0;
    const auto [kind, itemSize] = numpy_kind(value);
    const bool isArray = kind != '\0';
    const bool isText = !isArray && PySequence_Check(value) != 0 && PySequence_Size(value) > 0 &&
                        PyUnicode_Check(owned(PySequence_GetItem(value, 0)).ptr());
    if (isText) {
        Texts texts;
        fill(texts, value, "value");
        done = node.NodeValue(texts, 0, nullptr);
    } else if (kind == 'i' && itemSize <= 4) {
        Ints numbers;
        fill(numbers, value, "value");
        done = node.NodeValue(numbers, 0);
    } else {
        Doubles numbers;
        fill(numbers, value, "value");
        done = node.NodeValue(numbers, 0);
    }
    require(done, PyExc_ValueError, "%.100R cannot be a value", value);
}

int set_value(PyObject* self, PyObject* value, void*) {
    return guarded_int([&] {
        if (value == nullptr || value == Py_None) {
            usable(self).ResetValue();
        } else if (PyUnicode_Check(value)) {
            const char* const text = text_of(value, "value");
            require(usable(self).SetString(text), PyExc_ValueError,
                    "%.100R holds what XML cannot hold", value);
        } else if (PyBool_Check(value)) {
            bool truth = value == Py_True;
            usable(self).NodeValue(truth, 0);
        } else if (PyFloat_Check(value)) {
            double number = number_of(value, "value");
            usable(self).NodeValue(number, 0);
        } else if (PyIndex_Check(value) && numpy_kind(value).kind == '\0') {
            int number = static_cast<int>(integer_of(value, "value", INT_MIN, INT_MAX));
            usable(self).NodeValue(number, 0);
        } else if (PyList_Check(value) || PyTuple_Check(value) || numpy_kind(value).kind != '\0') {
            write_sequence(usable(self), value);
        } else if (PyNumber_Check(value)) {
            double number = number_of(value, "value");
            usable(self).NodeValue(number, 0);
        } else {
            raise(PyExc_TypeError, "value must be str, a number, a sequence or None, not %.100s",
                  Py_TYPE(value)->tp_name);
        }
    });
}

template <typename T>
PyObject* typed_value(PyObject* self, PyObject* fallback, PyObject* (*make)(T)) {
    return guarded([&]() -> PyObject* {
        T value{};
        if (usable(self).NodeValue(value, 1) != 0) return checked(make(value));
        Py_INCREF(fallback);
        return fallback;
    });
}
PyObject* fallback_of(PyObject* const* args, Py_ssize_t count) {
    return count > 0 ? args[0] : Py_None;
}
PyObject* as_int(PyObject* self, PyObject* const* args, Py_ssize_t count) {
    return typed_value<int>(self, fallback_of(args, count),
                            [](int v) { return PyLong_FromLong(v); });
}
PyObject* as_float(PyObject* self, PyObject* const* args, Py_ssize_t count) {
    return typed_value<double>(self, fallback_of(args, count),
                               [](double v) { return from_number(v); });
}
PyObject* as_bool(PyObject* self, PyObject* const* args, Py_ssize_t count) {
    return typed_value<bool>(self, fallback_of(args, count),
                             [](bool v) { return PyBool_FromLong(v); });
}

// The value as numbers; None when it is none, or holds something else.
template <typename Array>
PyObject* numbers_of(PyObject* self) {
    return guarded([&]() -> PyObject* {
        Array numbers;
        if (usable(self).NodeValue(numbers, 1) == 0) Py_RETURN_NONE;
        return numpy_of(numbers).release().ptr();
    });
}
PyObject* get_vector(PyObject* self, void*) {
    return numbers_of<Doubles>(self);
}
PyObject* get_int_vector(PyObject* self, void*) {
    return numbers_of<Ints>(self);
}
PyObject* get_texts(PyObject* self, void*) {
    return guarded([&] {
        Texts texts;
        usable(self).NodeValue(texts, 1, nullptr);
        return from_array(texts);
    });
}

PyObject* attribute(PyObject* self, PyObject* name) {
    return guarded([&]() -> PyObject* {
        std::string_view text;
        const UXNameKey key(text_of(name, "the name of an attribute"));
        if (usable(self).GetPropertyView(key, text) == 0) Py_RETURN_NONE;
        return from_text(text);
    });
}

PyObject* set_attribute(PyObject* self, PyObject* const* args, Py_ssize_t count) {
    return guarded([&]() -> PyObject* {
        if (count != 2) raise(PyExc_TypeError, "name and value are needed");
        const char* const name = text_of(args[0], "the name of an attribute");
        UXXmlWrapperBase& node = usable(self);
        int done = 0;
        if (args[1] == Py_None) {
            done = node.RemoveProperty(name);
        } else if (PyUnicode_Check(args[1])) {
            done = node.SetPropertyValue(name, CStringUTF8(text_of(args[1], "an attribute")));
        } else if (PyFloat_Check(args[1])) {
            done = node.SetPropertyValue(name, number_of(args[1], "an attribute"));
        } else {
            done = node.SetPropertyValue(
                name, static_cast<int>(integer_of(args[1], "an attribute", INT_MIN, INT_MAX)));
        }
        require(done, PyExc_ValueError, "attribute %R: the name or the value is none for XML",
                args[0]);
        Py_RETURN_NONE;
    });
}

PyObject* attribute_items(PyObject* self, PyObject*) {
    return guarded([&]() -> PyObject* {
        Texts names;
        Texts values;
        usable(self).GetPropertyNamesAndValues(names, &values, nullptr);
        py::object list = owned(PyList_New(names.GetSize()));
        for (int i = 0; i < names.GetSize(); ++i) {
            py::object pair = owned(PyTuple_New(2));
            PyTuple_SET_ITEM(pair.ptr(), 0, from_text(names[i]));
            PyTuple_SET_ITEM(pair.ptr(), 1, from_text(values[i]));
            PyList_SET_ITEM(list.ptr(), i, pair.release().ptr());
        }
        return list.release().ptr();
    });
}

PyObject* get_label(PyObject* self, void*) {
    return guarded([&] {
        static thread_local const UXNameKey kLabel("Label");
        std::string_view text;
        const UXXmlWrapperBase& node = usable(self);
        if (node.GetPropertyView(kLabel, text) == 0 || text.empty()) node.GetTagView(text);
        return from_text(text);
    });
}
int set_label(PyObject* self, PyObject* value, void*) {
    return guarded_int([&] {
        const bool none = value == nullptr || value == Py_None;
        require(usable(self).SetLabel(none ? nullptr : text_of(value, "label")), PyExc_ValueError,
                "%R holds what XML cannot hold", value == nullptr ? Py_None : value);
    });
}

using Identifier = int (UXXmlWrapperBase::*)(int&) const;
PyObject* identifier(PyObject* self, Identifier get) {
    return guarded([&]() -> PyObject* {
        int id = 0;
        if ((usable(self).*get)(id) == 0) Py_RETURN_NONE;
        return checked(PyLong_FromLong(id));
    });
}
PyObject* get_data_id(PyObject* self, void*) {
    return identifier(self, &UXXmlWrapperBase::GetDataID);
}
PyObject* get_node_id(PyObject* self, void*) {
    return identifier(self, &UXXmlWrapperBase::GetID);
}
int set_data_id(PyObject* self, PyObject* value, void*) {
    return guarded_int([&] {
        if (value == nullptr || value == Py_None) {
            usable(self).RemoveProperty("DataID");
        } else {
            usable(self).SetDataID(
                static_cast<int>(integer_of(value, "data_id", INT_MIN, INT_MAX)));
        }
    });
}
int set_node_id(PyObject* self, PyObject* value, void*) {
    return guarded_int([&] {
        const bool none = value == nullptr || value == Py_None;
        usable(self).SetID(
            none ? -1 : static_cast<int>(integer_of(value, "node_id", INT_MIN, INT_MAX)), false);
    });
}

// --- steps through the tree

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
        PyObject* const fallback = count > 1 ? args[1] : Py_None;
        Py_INCREF(fallback);
        return fallback;
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
        PyObject* const fallback = count > 1 ? args[1] : Py_None;
        Py_INCREF(fallback);
        return fallback;
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

// --- changes

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

// --- the types

template <typename Function>
PyCFunction method(Function* function) {
    return reinterpret_cast<PyCFunction>(reinterpret_cast<void (*)()>(function));
}
template <typename Function>
void* slot(Function* function) {
    return reinterpret_cast<void*>(function);
}

PyMethodDef nodeMethods[] = {
    {"get", method(node_get), METH_FASTCALL,
     "get(path, default=None)\n--\n\nThe node at the end of a path, or the default."},
    {"find", method(node_find), METH_FASTCALL,
     "find(data_id, default=None)\n--\n\n"
     "The first node below this one whose attribute DataID has the number, or the default."},
    {"walk", method(node_walk), METH_FASTCALL,
     "walk(tag=None)\n--\n\nThe node and everything below it in the order of the document; with a "
     "tag those of the tag. The node at hand must not be removed."},
    {"as_int", method(as_int), METH_FASTCALL,
     "as_int(default=None)\n--\n\nThe value as int; the default when there is none or it is no "
     "number."},
    {"as_float", method(as_float), METH_FASTCALL,
     "as_float(default=None)\n--\n\nThe value as float, nan for the missing value; the default "
     "when "
     "there is none or it is no number."},
    {"as_bool", method(as_bool), METH_FASTCALL,
     "as_bool(default=None)\n--\n\nThe value as bool; the default when there is none."},
    {"attribute", attribute, METH_O,
     "attribute(name)\n--\n\nThe text of an attribute; None when the node lacks it."},
    {"set_attribute", method(set_attribute), METH_FASTCALL,
     "set_attribute(name, value)\n--\n\nWrites an attribute; None removes it."},
    {"attribute_items", attribute_items, METH_NOARGS,
     "attribute_items()\n--\n\nNames and texts of the attributes, in their order."},
    {"add", node_add, METH_O, "add(tag)\n--\n\nAppends a child and yields it."},
    {"insert_before", node_insert_before, METH_O,
     "insert_before(tag)\n--\n\nMakes a node in front of this one and yields it."},
    {"append_copy", node_append_copy, METH_O,
     "append_copy(node)\n--\n\nAppends a copy of a node, of any tree, and yields the copy."},
    {"replace_with", node_replace_with, METH_O,
     "replace_with(node)\n--\n\nTakes over tag, attributes, value and children of a node."},
    {"remove", node_remove, METH_NOARGS,
     "remove()\n--\n\nRemoves the node with its branch; nodes in it raise ReferenceError then."},
    {"clear", node_clear, METH_NOARGS, "clear()\n--\n\nRemoves the children and the value."},
    {"copy", node_copy, METH_NOARGS,
     "copy()\n--\n\nA deep copy, as the root of a tree of its own."},
    {"arrange", node_arrange, METH_O,
     "arrange(order)\n--\n\nChild i takes the content of child order[i]. Nodes in branches whose "
     "content moved raise ReferenceError then."},
    {"xml", node_xml, METH_NOARGS,
     "xml()\n--\n\nThe node as XML, in one line without declaration."},
    {nullptr, nullptr, 0, nullptr},
};

PyGetSetDef nodeFields[] = {
    {"valid", get_valid, nullptr, "False once the node was removed.", nullptr},
    {"tag", get_tag, set_tag, "The tag.", nullptr},
    {"value", get_value, set_value,
     "The value as text, '' when there is none. Numbers, bools, sequences of numbers (also "
     "numpy's) "
     "or of texts may be assigned; None or '' removes the value. nan is the missing value.",
     nullptr},
    {"vector", get_vector, nullptr,
     "The value as a numpy array of floats, a copy; None when it holds anything but numbers.",
     nullptr},
    {"int_vector", get_int_vector, nullptr,
     "The value as a numpy array of ints, a copy; None when it holds anything but whole numbers.",
     nullptr},
    {"texts", get_texts, nullptr, "The value as a list of texts.", nullptr},
    {"label", get_label, set_label, "The attribute Label, or the tag without one; None removes it.",
     nullptr},
    {"data_id", get_data_id, set_data_id, "The attribute DataID as int; None without one.",
     nullptr},
    {"node_id", get_node_id, set_node_id, "The ID, which is no attribute; None without one.",
     nullptr},
    {"parent", get_parent, nullptr, "The parent; None for a root.", nullptr},
    {"next", get_next, nullptr, "The next sibling, or None.", nullptr},
    {"previous", get_previous, nullptr, "The sibling before, or None.", nullptr},
    {"root", get_root, nullptr, "The root of the tree.", nullptr},
    {"path", get_path, nullptr,
     "The path from the root, such as 'Input/Range[2]/X', which root[path] takes; '' for the root.",
     nullptr},
    {nullptr, nullptr, nullptr, nullptr, nullptr},
};

constexpr char kNodeDoc[] =
    "Node(tag=None)\n--\n\n"
    "A node of a tree, and the tree below it. Node('tag') makes a new tree; Node() refers to "
    "nothing "
    "yet, for functions that make one.\n\n"
    "node['a/b[2]'] is the node at the end of a path of tags, node[0] a child, len(node) the "
    "number "
    "of children, and a loop goes over them. Nodes are equal when they are the same node. A node "
    "keeps its whole tree alive; once it was removed, using it raises ReferenceError.";

PyTypeObject* make_type(PyType_Spec spec) {
    return reinterpret_cast<PyTypeObject*>(checked(PyType_FromSpec(&spec)));
}

}  // namespace

PyTypeObject* make_node_type() {
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
    PyType_Slot slots[] = {{Py_tp_new, slot(node_new)},
                           {Py_tp_dealloc, slot(node_dealloc)},
                           {Py_tp_richcompare, slot(node_compare)},
                           {Py_tp_hash, slot(PyObject_HashNotImplemented)},
                           {Py_tp_repr, slot(node_repr)},
                           {Py_nb_bool, slot(node_bool)},
                           {Py_tp_iter, slot(node_iter)},
                           {Py_mp_subscript, slot(node_subscript)},
                           {Py_mp_length, slot(node_length)},
                           {Py_tp_methods, nodeMethods},
                           {Py_tp_getset, nodeFields},
                           {Py_tp_doc, const_cast<char*>(kNodeDoc)},
                           {0, nullptr}};
    nodeType = make_type(
        {"uxtree.raw.Node", sizeof(Node), 0, Py_TPFLAGS_DEFAULT | Py_TPFLAGS_BASETYPE, slots});
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
