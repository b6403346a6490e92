// script/tree: the Tree of scripts, a handle to a node. A method that cannot do what it says raises
// an exception that tells why; what only looks for something yields null.
#include <charconv>
#include <system_error>
#include <vector>

#include "registrar.h"

namespace uxscript {
namespace {

using Node = UXXmlWrapperBase;

std::string tag_of(const Node& node) {
    CStringUTF8 tag;
    node.GetTagName(tag);
    return standard(tag);
}
void return_string(as::asIScriptGeneric* call, const CStringUTF8& text) {
    return_value<std::string>(call, standard(text));
}
// A new Tree for a node; null for a handle that refers to nothing.
void return_tree(as::asIScriptGeneric* call, Node node) {
    return_handle(call, node.IsNodeValid() == 0 ? nullptr : new ScriptTree(std::move(node)));
}

// --- paths

// One step of a path: a tag, and which of the children with this tag, from 1.
struct Step {
    std::string tag;
    int number = 1;
};

[[noreturn]] void refuse_path(const std::string& path) {
    throw ScriptError{"'" + path + "' is no path of tags, as in \"a/b[2]\""};
}

Step read_step(const std::string& text, const std::string& path) {
    const std::size_t bracket = text.find('[');
    Step step{text.substr(0, bracket)};
    if (bracket != std::string::npos) {
        const char* const end = text.data() + text.size() - 1;
        const auto read = std::from_chars(text.data() + bracket + 1, end, step.number);
        if (*end != ']' || read.ec != std::errc() || read.ptr != end || step.number < 1) {
            refuse_path(path);
        }
    }
    if (step.tag.empty()) refuse_path(path);
    return step;
}

std::vector<Step> read_path(const std::string& path) {
    std::vector<Step> steps;
    for (std::size_t start = 0; start < path.size();) {
        const std::size_t end = std::min(path.find('/', start), path.size());
        steps.push_back(read_step(path.substr(start, end - start), path));
        start = end + 1;
        if (start == path.size()) refuse_path(path);
    }
    return steps;
}

bool step_down(const Step& step, Node& node) {
    const UXNameKey key(step.tag.c_str());
    Node found;
    if (node.FindChild(key, &found) == 0) return false;
    for (int i = 1; i < step.number; ++i) {
        if (found.NextSibling(key, &found) == 0) return false;
    }
    node = std::move(found);
    return true;
}

// The tags of the children, for people who missed one.
std::string children_of(const Node& node) {
    std::string text;
    int shown = 0;
    Node child;
    for (node.FirstChild(&child); child.IsNodeValid() != 0; child.NextSibling(&child)) {
        if (++shown > 8) return text + " ...";
        text += (text.empty() ? "" : ", ") + tag_of(child);
    }
    return text.empty() ? "none" : text;
}

// Follows the path; where a step is missing, what is found up to there and the number of steps.
std::size_t follow(const std::vector<Step>& steps, Node& node) {
    std::size_t done = 0;
    while (done < steps.size() && step_down(steps[done], node)) ++done;
    return done;
}

void at(as::asIScriptGeneric* call) {
    guarded([&] {
        Node node = valid_node(call);
        const auto& path = argument<std::string>(call, 0);
        const std::vector<Step> steps = read_path(path);
        const std::size_t done = follow(steps, node);
        if (done < steps.size()) {
            const Step& step = steps[done];
            const std::string number =
                step.number == 1 ? "" : "[" + std::to_string(step.number) + "]";
            throw ScriptError{"no node '" + path + "': '" + tag_of(node) + "' has no child '" +
                              step.tag + number + "'; its children: " + children_of(node)};
        }
        return_tree(call, std::move(node));
    });
}
void find(as::asIScriptGeneric* call) {
    guarded([&] {
        Node node = valid_node(call);
        const std::vector<Step> steps = read_path(argument<std::string>(call, 0));
        if (follow(steps, node) < steps.size()) node.ReleaseNode();
        return_tree(call, std::move(node));
    });
}
void has(as::asIScriptGeneric* call) {
    guarded([&] {
        Node node = valid_node(call);
        const std::vector<Step> steps = read_path(argument<std::string>(call, 0));
        return_value<bool>(call, follow(steps, node) == steps.size());
    });
}
void create(as::asIScriptGeneric* call) {
    guarded([&] {
        Node node = valid_node(call);
        const auto& path = argument<std::string>(call, 0);
        const std::vector<Step> steps = read_path(path);
        for (std::size_t i = follow(steps, node); i < steps.size(); ++i) {
            if (steps[i].number != 1) throw ScriptError{"'" + path + "' skips a node"};
            Node parent = node;
            if (parent.AddNode(&node, steps[i].tag.c_str(), -1) == 0) {
                throw ScriptError{"'" + steps[i].tag + "' is no element name"};
            }
        }
        return_tree(call, std::move(node));
    });
}
// Which of the children with its tag a node is, from 1; 0 when it is the only one.
int number_among_siblings(const Node& node, const std::string& tag) {
    const UXNameKey key(tag.c_str());
    Node other;
    Node parent;
    if (node.GetParent(&parent) == 0) return 0;
    int number = 0, count = 0;
    for (parent.FindChild(key, &other); other.IsNodeValid() != 0; other.NextSibling(key, &other)) {
        ++count;
        if (other == node) number = count;
        if (number != 0 && count > 1) break;
    }
    return count > 1 ? number : 0;
}
void path(as::asIScriptGeneric* call) {
    guarded([&] {
        Node node = valid_node(call);
        std::vector<std::string> parts;
        Node parent;
        while (node.GetParent(&parent) != 0) {
            std::string tag = tag_of(node);
            const int number = number_among_siblings(node, tag);
            if (number != 0) tag += "[" + std::to_string(number) + "]";
            parts.push_back(std::move(tag));
            node = parent;
        }
        std::string text;
        for (std::size_t i = parts.size(); i-- > 0;) text += parts[i] + (i == 0 ? "" : "/");
        return_value<std::string>(call, std::move(text));
    });
}

// --- trees as a whole

void make_tree(as::asIScriptGeneric* call) {
    guarded([&] {
        Node node;
        if (node.CreateNew(0, c_text(call, 0)) == 0) {
            throw ScriptError{"'" + argument<std::string>(call, 0) + "' is no element name"};
        }
        return_tree(call, std::move(node));
    });
}
void load(as::asIScriptGeneric* call) {
    guarded([&] {
        if (node_of(call).load(c_text(call, 0), 0, false) == 0) {
            throw ScriptError{standard(UXGetLastLoadError())};
        }
    });
}
void parse(as::asIScriptGeneric* call) {
    guarded([&] {
        const auto& text = argument<std::string>(call, 0);
        if (node_of(call).LoadFromMemory(text.data(), text.size()) == 0) {
            throw ScriptError{standard(UXGetLastLoadError())};
        }
    });
}
void save(as::asIScriptGeneric* call) {
    guarded([&] {
        if (valid_node(call).Save(c_text(call, 0), 0) == 0) {
            throw ScriptError{standard(UXGetLastSaveError())};
        }
    });
}
void xml(as::asIScriptGeneric* call) {
    guarded([&] {
        CStringUTF8 text;
        if (valid_node(call).GetString(text) == 0) {
            throw ScriptError{"the node has text that XML cannot hold"};
        }
        return_string(call, text);
    });
}
void copy(as::asIScriptGeneric* call) {
    guarded([&] {
        Node made;
        valid_node(call).Clone(&made, 0);
        return_tree(call, std::move(made));
    });
}
void valid(as::asIScriptGeneric* call) {
    return_value<bool>(call, node_of(call).IsNodeValid() != 0);
}
void same(as::asIScriptGeneric* call) {
    return_value<bool>(call, node_of(call) == argument<ScriptTree>(call, 0).value);
}
void release(as::asIScriptGeneric* call) {
    node_of(call).ReleaseNode();
}

// --- the node itself

void get_tag(as::asIScriptGeneric* call) {
    guarded([&] { return_value<std::string>(call, tag_of(valid_node(call))); });
}
void set_tag(as::asIScriptGeneric* call) {
    guarded([&] {
        if (valid_node(call).SetTagName(c_text(call, 0)) == 0) {
            throw ScriptError{"'" + argument<std::string>(call, 0) + "' is no element name"};
        }
    });
}
void get_value(as::asIScriptGeneric* call) {
    guarded([&] {
        CStringUTF8 text;
        valid_node(call).NodeValue(text, 1, 0, nullptr);
        return_string(call, text);
    });
}
void set_value(as::asIScriptGeneric* call) {
    guarded([&] {
        if (valid_node(call).SetString(c_text(call, 0)) == 0) {
            throw ScriptError{"the value is no text that XML can hold"};
        }
    });
}
// A number that a value holds; the one given when it holds none.
template <class T>
void number(as::asIScriptGeneric* call) {
    guarded([&] {
        T value = number_argument<T>(call, 0);
        valid_node(call).NodeValue(value, 1);
        return_value<T>(call, value);
    });
}
template <class T>
void set_number(as::asIScriptGeneric* call) {
    guarded([&] {
        T value = number_argument<T>(call, 0);
        valid_node(call).NodeValue(value, 0);
    });
}
void get_label(as::asIScriptGeneric* call) {
    guarded([&] {
        const Node& node = valid_node(call);
        CStringUTF8 label;
        if (node.GetPropertyValue("Label", label, 0) == 0 || label.IsEmpty()) {
            return_value<std::string>(call, tag_of(node));
        } else {
            return_string(call, label);
        }
    });
}
void set_label(as::asIScriptGeneric* call) {
    guarded([&] { valid_node(call).SetLabel(c_text(call, 0)); });
}
void get_id(as::asIScriptGeneric* call) {
    guarded([&] {
        int id = 0;
        valid_node(call).GetID(id);
        return_value<int>(call, id);
    });
}
void set_id(as::asIScriptGeneric* call) {
    guarded([&] { valid_node(call).SetID(static_cast<int>(call->GetArgDWord(0)), false); });
}
void get_data_id(as::asIScriptGeneric* call) {
    guarded([&] {
        int id = -1;
        valid_node(call).GetDataID(id);
        return_value<int>(call, id);
    });
}
void set_data_id(as::asIScriptGeneric* call) {
    guarded([&] { valid_node(call).SetDataID(static_cast<int>(call->GetArgDWord(0))); });
}

// --- attributes

void attribute(as::asIScriptGeneric* call) {
    guarded([&] {
        CStringUTF8 text;
        if (valid_node(call).GetPropertyValue(c_text(call, 0), text, 0) == 0) {
            return_value<std::string>(call, argument<std::string>(call, 1));
        } else {
            return_string(call, text);
        }
    });
}
void has_attribute(as::asIScriptGeneric* call) {
    guarded(
        [&] { return_value<bool>(call, valid_node(call).HasProperty(c_text(call, 0), 0) != 0); });
}
void set_attribute(as::asIScriptGeneric* call) {
    guarded([&] {
        Node& node = valid_node(call);
        if (node.SetPropertyValue(c_text(call, 0), CStringUTF8(c_text(call, 1))) == 0) {
            throw ScriptError{"cannot set the attribute '" + argument<std::string>(call, 0) +
                              "': no attribute name, or no text that XML can hold"};
        }
    });
}
void remove_attribute(as::asIScriptGeneric* call) {
    guarded([&] {
        Node& node = valid_node(call);
        const bool there = node.HasProperty(c_text(call, 0), 0) != 0;
        if (there) node.RemoveProperty(c_text(call, 0));
        return_value<bool>(call, there);
    });
}
void attributes(as::asIScriptGeneric* call) {
    guarded([&] {
        CWBOStringArray names;
        valid_node(call).GetPropertyNames(names);
        const int size = names.GetSize();
        ResultArray array(call, "array<string>", static_cast<std::size_t>(size));
        for (int i = 0; i < size; ++i) {
            array.text(static_cast<std::size_t>(i)) = standard(names.GetAt(i));
        }
        array.give();
    });
}

// --- neighbours

void get_count(as::asIScriptGeneric* call) {
    guarded([&] { return_value<int>(call, valid_node(call).GetNodeCount()); });
}
template <int (Node::*kStep)(Node*) const>
void neighbour(as::asIScriptGeneric* call) {
    guarded([&] {
        Node found;
        (valid_node(call).*kStep)(&found);
        return_tree(call, std::move(found));
    });
}
void get_root(as::asIScriptGeneric* call) {
    guarded([&] {
        Node node = valid_node(call);
        Node parent;
        while (node.GetParent(&parent) != 0) node = parent;
        return_tree(call, std::move(node));
    });
}
void child_at(as::asIScriptGeneric* call) {
    guarded([&] {
        const int index = static_cast<int>(call->GetArgDWord(0));
        const Node& node = valid_node(call);
        Node found;
        if (node.GetChild(&found, index) == 0) {
            throw ScriptError{"no child " + std::to_string(index) + ": '" + tag_of(node) +
                              "' has " + std::to_string(node.GetNodeCount())};
        }
        return_tree(call, std::move(found));
    });
}
void return_trees(as::asIScriptGeneric* call, const std::vector<Node>& nodes) {
    ResultArray array(call, "array<Tree@>", nodes.size());
    for (std::size_t i = 0; i < nodes.size(); ++i) array.set_tree(i, nodes[i]);
    array.give();
}
void children(as::asIScriptGeneric* call) {
    guarded([&] {
        const char* tag = c_text(call, 0);
        std::vector<Node> found;
        Node child;
        valid_node(call).FirstChild(&child);
        for (; child.IsNodeValid() != 0; child.NextSibling(&child)) {
            if (*tag == '\0' || tag_of(child) == tag) found.push_back(child);
        }
        return_trees(call, found);
    });
}
void walk(as::asIScriptGeneric* call) {
    guarded([&] {
        const char* tag = c_text(call, 0);
        const Node& top = valid_node(call);
        const UXNameKey key(tag);
        const UXNameKey* wanted = *tag == '\0' ? nullptr : &key;
        std::vector<Node> found;
        Node node = top;
        while (node.NextBelow(top, wanted, &node) != 0) found.push_back(node);
        return_trees(call, found);
    });
}

// --- changes of the structure

void add_child(as::asIScriptGeneric* call) {
    guarded([&] {
        Node& parent = valid_node(call);
        const char* value = c_text(call, 1);
        Node added;
        if (parent.AddNode(&added, c_text(call, 0), -1) == 0) {
            throw ScriptError{"'" + argument<std::string>(call, 0) + "' is no element name"};
        }
        if (*value != '\0' && added.SetString(value) == 0) {
            added.RemoveNode();
            throw ScriptError{"the value is no text that XML can hold"};
        }
        return_tree(call, std::move(added));
    });
}
void add_copy(as::asIScriptGeneric* call) {
    auto& source = argument<ScriptTree>(call, 0);
    guarded([&] {
        if (source.value.IsNodeValid() == 0)
            throw ScriptError{"the Tree to copy refers to no node"};
        Node added;
        valid_node(call).AddNodeCopy(&source.value, 1, &added);
        return_tree(call, std::move(added));
    });
}
void remove(as::asIScriptGeneric* call) {
    guarded([&] { valid_node(call).RemoveNode(); });
}
void remove_children(as::asIScriptGeneric* call) {
    guarded([&] { valid_node(call).RemoveAllChildren(); });
}

struct Method {
    const char* declaration;
    Called function;
};
const Method kMethods[] = {
    // The node at the end of a path of tags, "a/b[2]"; each step takes the first child of the tag,
    // or the one of the number. "" is the node itself. An exception names what is missing.
    {"Tree@ opIndex(const string &in path)", at},
    // The same; null when there is none.
    {"Tree@ find(const string &in path)", find},
    // Is there a node at the path?
    {"bool has(const string &in path) const", has},
    // The node at the path; what is missing is added.
    {"Tree@ create(const string &in path)", create},
    // The path from the root to the node.
    {"string get_path() const property", path},

    // Loads an XML file; the Tree is its root then. An exception tells why and where it failed.
    {"void load(const string &in file)", load},
    // The same for XML text.
    {"void parse(const string &in xml)", parse},
    // Writes the node as the root of an XML file, which is replaced as a whole.
    {"void save(const string &in file) const", save},
    // The node as XML.
    {"string get_xml() const property", xml},
    // A deep copy, which is the root of a tree of its own.
    {"Tree@ copy() const", copy},
    // Does it refer to a node? Not when it is new, nor after the node was removed.
    {"bool get_valid() const property", valid},
    // The same node?
    {"bool opEquals(const Tree &in other) const", same},
    // Refers to nothing afterwards.
    {"void release()", release},

    // The tag.
    {"string get_tag() const property", get_tag},
    {"void set_tag(const string &in tag) property", set_tag},
    // The text of the element itself; "" clears it.
    {"string get_value() const property", get_value},
    {"void set_value(const string &in value) property", set_value},
    // The value as a number; missing when it is none.
    {"int integer(int missing = 0) const", number<int>},
    {"double number(double missing = 0) const", number<double>},
    // Writes a number as value.
    {"void set_integer(int value)", set_number<int>},
    {"void set_number(double value)", set_number<double>},
    // The attribute "Label", or the tag without one.
    {"string get_label() const property", get_label},
    {"void set_label(const string &in label) property", set_label},
    // The ID of the element, which is no attribute; 0 without one.
    {"int get_id() const property", get_id},
    {"void set_id(int id) property", set_id},
    // The attribute "DataID"; -1 without one.
    {"int get_data_id() const property", get_data_id},
    {"void set_data_id(int id) property", set_data_id},

    // The text of an attribute; missing without it.
    {"string attribute(const string &in name, const string &in missing = \"\") const", attribute},
    // Is the attribute there?
    {"bool has_attribute(const string &in name) const", has_attribute},
    // Writes an attribute.
    {"void set_attribute(const string &in name, const string &in value)", set_attribute},
    // Removes it; was it there?
    {"bool remove_attribute(const string &in name)", remove_attribute},
    // The names of all.
    {"array<string>@ attributes() const", attributes},

    // The number of children.
    {"int get_count() const property", get_count},
    // The child at a position from 0.
    {"Tree@ child(int index)", child_at},
    // The children, with a tag those of it.
    {"array<Tree@>@ children(const string &in tag = \"\")", children},
    // All elements below, with a tag those of it, in the order of the document.
    {"array<Tree@>@ walk(const string &in tag = \"\")", walk},
    // Neighbours; null where there is none.
    {"Tree@ get_first() property", neighbour<&Node::FirstChild>},
    {"Tree@ get_next() property", neighbour<&Node::NextSibling>},
    {"Tree@ get_previous() property", neighbour<&Node::PrevSibling>},
    {"Tree@ get_parent() property", neighbour<&Node::GetParent>},
    // The root of the tree.
    {"Tree@ get_root() property", get_root},

    // Appends a child and yields it.
    {"Tree@ add(const string &in tag, const string &in value = \"\")", add_child},
    // Appends a deep copy and yields it.
    {"Tree@ add_copy(const Tree &in source)", add_copy},
    // Removes the node with everything below it.
    {"void remove()", remove},
    // Removes everything below it.
    {"void remove_children()", remove_children},
};

}  // namespace

void register_tree(Registrar& add) {
    add.behaviour("Tree", as::asBEHAVE_FACTORY, "Tree@ f(const string &in tag)", make_tree);
    for (const Method& each : kMethods) add.method("Tree", each.declaration, each.function);
}

}  // namespace uxscript
