// One walk through the library, printed. On the embedded host and on any other one it prints the
// same: what the library does depends on what a host promises alone.
//
// Usage: smoke FOLDER   (an existing folder for the files that it writes)
#include <cstdio>
#include <string>
#include <string_view>

#include "uxtree/uxtree_Utils.h"

namespace {

constexpr const char kTree[] =
    "<Options Label='Fit options'>\n"
    "  <Range DataID='10' Use='1' Label='Range'>\n"
    "    <Start DataID='11'>1.5</Start><End DataID='12'>20</End>\n"
    "  </Range>\n"
    "  <Curve RepeatID='1'><Width DataID='21' Order='2'>1 &lt; 2</Width></Curve>\n"
    "  <Curve RepeatID='2'><Width DataID='21' Order='1' Note='a&#10;b'/></Curve>\n"
    "  <Weights DataID='30' _ux_id='7'>0.5 1 2.25</Weights>\n"
    "</Options>";

void print(const char* title, const char* text) {
    std::printf("%s: %s\n", title, text);
}
void print(const char* title, int number) {
    std::printf("%s: %d\n", title, number);
}
void print(const char* title, const CWBOStringArray& texts) {
    CStringUTF8 all;
    UXJoinTokens(all, texts, " | ");
    print(title, all);
}
void print(const char* title, const UXXmlWrapperBase& tree) {
    CStringUTF8 text;
    print(title, tree.GetString(text) != 0 ? static_cast<const char*>(text) : "(no node)");
}

struct Values {
    CArray<int, int> ids;
    CWBOStringArray texts;

    void print_as(const char* title) const {
        CWBOStringArray entries;
        for (int i = 0; i < ids.GetSize(); ++i) {
            CStringUTF8 entry;
            entry.Format("%d = %s", ids[i], static_cast<const char*>(texts[i]));
            entries.Add(entry);
        }
        print(title, entries);
    }
};

void look_up(UXXmlWrapperBase& tree) {
    UXXmlWrapperBase node;
    print("find", uxtree_find_node(&tree, &node, "DataID", 12, true, 0, 0));
    print("found", node);
    print("by tag", uxtree_get_node_by_tagname(&tree, &node, "weights", true, false, true));
    CArray<double, double> numbers;
    print("numbers", node.NodeValue(numbers, 1));
    print("count", numbers.GetSize());
    print("created", wbxfu_tree_check_get_node(node, tree, "Range", "Step", nullptr));
    double step = 0.1;
    node.NodeValue(step, 0);
    print("tree", tree);
}

void print(const char* title, std::string_view text) {
    std::printf("%s: %.*s\n", title, static_cast<int>(text.size()), text.data());
}

// What the library does in its loops: names by key, texts as views.
void read_views(UXXmlWrapperBase tree) {
    const UXNameKeys all = {"Use", "none", "DataID"};
    const UXNameKey keys[] = {UXNameKey("Use"), UXNameKey("none"), UXNameKey("DataID")};
    UXXmlWrapperBase node;
    print("by key", tree.FindChild(UXNameKey("Range"), &node));
    UXNodeLook look;
    print("looked", node.Look(all, look));
    print("present", static_cast<int>(look.present));
    print("first", look.attributes[0]);
    print("third", look.attributes[2]);
    print("children", look.childCount);
    std::string_view view;
    node.GetTagView(view);
    print("tag", view);
    node.FirstChild(&node);
    CStringUTF8 scratch;
    print("has value", node.NodeValueView(view, scratch));
    print("value", view);
    node.Look(all, look);
    print("value again", look.value);
    int id = 0;
    print("number", node.GetPropertyValue(keys[2], id) * id);
    print("renumbered", node.SetPropertyView(keys[2], "011"));
    print("rewritten", node.SetValueView(std::string_view("2.50").substr(0, 3)));
    print("new", node.SetPropertyView(keys[1], "x"));
    print("node", node);
    print("gone", node.RemoveProperty(keys[1]) - node.HasProperty(keys[1]));
    node.SetPropertyView(keys[2], "11");
    node.SetValueView("1.5");
}

void transfer_values(UXXmlWrapperBase& tree, const std::string& folder) {
    Values values;
    CStringUTF8 error;
    print("collected", vctree_get_values_with_ids(&tree, &values.ids, &values.texts, 1, 0, 0,
                                                  nullptr, 0, &error));
    values.print_as("values");
    const std::string file = folder + "/theme.xml";
    print("saved", vctree_save_values_with_ids(file.c_str(), &values.ids, &values.texts, "a theme",
                                               nullptr));
    print("emptied", vctree_empty_values_with_ids(&tree));
    print("tree", tree);
    Values read;
    CStringUTF8 comment;
    print("read", vctree_read_values_with_ids(file.c_str(), &read.ids, &read.texts, &comment));
    print("comment", comment);
    print("set",
          vctree_set_values_by_ids(&tree, &read.ids, &read.texts, 0, nullptr, 0, nullptr, &error));
    print("tree", tree);
}

void sort_children(UXXmlWrapperBase tree) {
    UXXmlWrapperBase first;
    UXXmlWrapperBase inner;
    tree.FirstChild(&first);
    first.FirstChild(&inner);
    CArray<int, int> order;
    for (const int number : {2, 0, 1, 3}) order.Add(number);
    print("arranged", tree.ArrangeChildContents(order));
    print("first", first);
    print("still valid", inner.IsNodeValid());
    order[3] = 1;
    print("refused", tree.ArrangeChildContents(order));
    print("sorted", uxtree_sort_children_by_int_attribute(&tree, "RepeatID", 0));
    print("tree", tree);
}

void edit(UXXmlWrapperBase tree) {
    UXXmlWrapperBase curve;
    tree.GetChild(&curve, 1);
    UXXmlWrapperBase width;
    curve.FirstChild(&width);
    print("renamed", VCTreeSetTagName(&curve, "First"));
    print("moved", uxtree_move_node(&tree, 1, 3, 0, nullptr));
    print("deleted", uxtree_delete_nodes_by_attribute(&tree, "Order", 1, 1, nullptr, 0));
    print("filtered", uxtree_filter_by_attrib_match(&tree, 10, "Label", "F*t ?ptions", 0));
    print("hidden", uxtree_hide_empty_nodes(&tree, true, true));
    print("tree", tree);
    print("removed", tree.RemoveChild(&curve, nullptr));
    print("still valid", width.IsNodeValid());
    UXXmlWrapperBase copy;
    tree.Clone(&copy, 0);
    copy.AddNodeCopy(&copy, 1, nullptr);
    print("copy", copy);
    print("branch", tree.ReplaceByNodeCopy(&copy, 1, 0));
    print("tree", tree);
}

void outline_and_query(UXXmlWrapperBase& tree, const std::string& folder) {
    const std::string file = folder + "/tree.xml";
    print("written", tree.Save(file.c_str(), 0));
    UXXmlWrapperBase outline;
    outline.CreateNew(0, "Outline");
    print("outlined", SAXTreeLayout(&outline, nullptr, file.c_str(), 0));
    print("outline", outline);
    UXXmlWrapperBase again;
    print("loaded", again.load(file.c_str(), 0, false));
    print("tree", again);
    CWBOStringArray values;
    CWBOStringArray names;
    CArray<unsigned int> offsets;
    print("queried",
          TreeEvalXPath(&values, &offsets, &names, &again, nullptr, "/Options|Range", true));
    print("columns", names);
    print("cells", values);
    print("refused", again.LoadFromMemory("<a><b></a>", 10));
    print("as it was", again);
}

}  // namespace

int main(int argc, char** argv) {
    const std::string folder = argc > 1 ? argv[1] : ".";
    UXXmlWrapperBase tree;
    if (tree.LoadFromMemory(kTree, sizeof kTree - 1) == 0) return 1;
    print("loaded", tree);
    look_up(tree);
    read_views(tree);
    transfer_values(tree, folder);
    outline_and_query(tree, folder);
    UXXmlWrapperBase copy;
    tree.Clone(&copy, 1);
    sort_children(copy);
    edit(tree);
    return 0;
}
