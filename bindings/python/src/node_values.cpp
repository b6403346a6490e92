// What a node holds: tag, value, attributes, identifiers, and the values below it.
#include <climits>

#include "uxtree/data/values.h"
#include "uxtree/host/name_key.h"

#include "arguments.h"
#include "node_parts.h"

namespace uxpy {
namespace {

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
PyObject* typed_value(PyObject* self, PyObject* const* args, Py_ssize_t count,
                      PyObject* (*make)(T)) {
    return guarded([&]() -> PyObject* {
        T value{};
        const bool found = usable(self).NodeValue(value, 1) != 0;
        return found ? checked(make(value)) : fallback_at(0, args, count);
    });
}
PyObject* as_int(PyObject* self, PyObject* const* args, Py_ssize_t count) {
    return typed_value<int>(self, args, count, [](int v) { return PyLong_FromLong(v); });
}
PyObject* as_float(PyObject* self, PyObject* const* args, Py_ssize_t count) {
    return typed_value<double>(self, args, count, [](double v) { return from_number(v); });
}
PyObject* as_bool(PyObject* self, PyObject* const* args, Py_ssize_t count) {
    return typed_value<bool>(self, args, count, [](bool v) { return PyBool_FromLong(v); });
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

// {identifier: text} of the nodes below; None when an identifier repeats or breaks a rule.
PyObject* values_of(PyObject* self, PyObject* const* args, Py_ssize_t count) {
    return guarded([&]() -> PyObject* {
        static const char* const kNames[] = {"recursive", "changed_only", "repeat", "id_attribute",
                                             "branches"};
        static const Signature kSignature{"values", kNames, 5, 5, 5};
        const Arguments<5> given(kSignature, args, count, nullptr);
        Given<Ints> ids;
        Given<Texts> texts;
        CStringUTF8 problem;
        const int found = uxtree_get_values_with_ids(
            &usable(self), &ids.object, &texts.object, given.truth(0), given.truth(1),
            given.integer<int>(2), given.text_or_null(3), given.truth(4), &problem);
        if (found < 0 || !problem.IsEmpty()) Py_RETURN_NONE;
        py::object values = owned(PyDict_New());
        for (int i = 0; i < found; ++i) {
            const py::object id = owned(PyLong_FromLong(ids.object.array()[i]));
            const py::object text = owned(from_text(texts.object.array()[i]));
            if (PyDict_SetItem(values.ptr(), id.ptr(), text.ptr()) != 0) throw Raised();
        }
        if (PyDict_Size(values.ptr()) != found) Py_RETURN_NONE;
        return values.release().ptr();
    });
}

}  // namespace

void add_values_of_node(NodeParts& parts) {
    parts.methods.insert(
        parts.methods.end(),
        {
            {"as_int", method(as_int), METH_FASTCALL,
             "as_int(default=None)\n--\n\nThe value as int; the default when there is none or it "
             "is no "
             "number."},
            {"as_float", method(as_float), METH_FASTCALL,
             "as_float(default=None)\n--\n\nThe value as float, nan for the missing value; the "
             "default "
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
            {"_values", method(values_of), METH_FASTCALL, "For Tree.values."},
        });
    parts.fields.insert(
        parts.fields.end(),
        {
            {"valid", get_valid, nullptr, "False once the node was removed.", nullptr},
            {"tag", get_tag, set_tag, "The tag.", nullptr},
            {"value", get_value, set_value,
             "The value as text, '' when there is none. Numbers, bools, sequences of numbers (also "
             "numpy's) "
             "or of texts may be assigned; None or '' removes the value. nan is the missing value.",
             nullptr},
            {"vector", get_vector, nullptr,
             "The value as a numpy array of floats, a copy; None when it holds anything but "
             "numbers.",
             nullptr},
            {"int_vector", get_int_vector, nullptr,
             "The value as a numpy array of ints, a copy; None when it holds anything but whole "
             "numbers.",
             nullptr},
            {"texts", get_texts, nullptr, "The value as a list of texts.", nullptr},
            {"label", get_label, set_label,
             "The attribute Label, or the tag without one; None removes it.", nullptr},
            {"data_id", get_data_id, set_data_id, "The attribute DataID as int; None without one.",
             nullptr},
            {"node_id", get_node_id, set_node_id,
             "The ID, which is no attribute; None without one.", nullptr},
        });
}

}  // namespace uxpy
