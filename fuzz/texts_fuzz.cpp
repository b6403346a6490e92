// The entry points that take texts apart: labels, data strings, paths, lists of numbers, supports.
// The first byte gives numbers and switches; lines of the rest are the texts, in turn. Results must
// be among those published, and texts that are made must be read back.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <vector>

#include "uxtree/uxtree_Utils.h"

namespace {

void require(bool holds) {
    if (!holds) std::abort();
}

class Input {
public:
    Input(const std::uint8_t* data, std::size_t size) : switches_(size > 0 ? data[0] : 0U) {
        std::string line;
        for (std::size_t i = 1; i < size; ++i) {
            if (data[i] == '\n' && lines_.size() < 12) {
                lines_.push_back(line);
                line.clear();
            } else if (data[i] != 0) {
                line += static_cast<char>(data[i]);
            }
        }
        lines_.push_back(line);
    }
    const char* text(std::size_t i) const { return lines_[i % lines_.size()].c_str(); }
    bool flag(unsigned bit) const { return (switches_ >> bit & 1U) != 0; }
    int number() const { return static_cast<int>(switches_); }
    CWBOStringArray list(std::size_t first, std::size_t count) const {
        CWBOStringArray texts;
        for (std::size_t i = 0; i < count; ++i) texts.Add(text(first + i));
        return texts;
    }

private:
    unsigned switches_;
    std::vector<std::string> lines_;
};

using Strings = UXScriptArray<CWBOStringArray>;

void labels(const Input& in) {
    CStringUTF8 combined;
    Strings parts(in.list(0, 3));
    uxtree_combine_data_label(&combined, &parts, in.flag(0), in.flag(1), in.flag(2));
    CStringUTF8 label(in.text(3));
    CStringUTF8 replaced;
    Strings find(in.list(4, 1U + in.flag(3)));
    Strings replacements(in.list(6, 1U + in.flag(4)));
    uxtree_get_replaced_combined_label(&replaced, &label, &find, &replacements, in.text(8));
    UXXmlWrapperBase node;
    node.CreateNew(0, "r");
    node.SetLabel(in.text(3));
    uxtree_recursively_replace_combined_label_attributes(&node, &find, &replacements, in.text(8));
    uxtree_recursively_replace_label_attributes(&node, in.text(4), in.text(5));
    uxtree_recursively_replace_values(&node, in.text(4), in.text(5));
    uxtree_get_node_label(&node, in.number());
}

void data_strings(const Input& in) {
    CStringUTF8 text(in.text(0));
    const int length = text.GetLength();
    const int retyped = report_set_escaped_data_string_type(&text, in.text(1)[0]);
    require(retyped == 1 || (text == in.text(0) && text.GetLength() == length));
    CStringUTF8 made;
    report_get_escaped_label_data_string(&made, in.number(), in.number(), in.text(1)[0],
                                         in.number(), in.flag(0), in.text(2)[0], in.text(3),
                                         in.text(4)[0]);
    report_get_escaped_data_string(&made, in.number(), in.flag(0), in.text(4)[0], in.text(1)[0],
                                   in.number(), in.text(2)[0], in.number());
    Strings rows(in.list(0, 2));
    Strings out;
    report_get_set_data_string(&out, in.number(), 0, &rows, in.text(3),
                               static_cast<unsigned char>(in.number()));
    report_get_escaped_data_string_ex(&out, in.number(), nullptr, in.number());
}

void paths(const Input& in) {
    CWBOStringArray names;
    CStringUTF8 joined;
    CWBOStringArray again;
    const int split = vctree_XDE_treenode_path_string_to_array(&names, in.text(0), in.flag(0));
    require(split == (*in.text(0) != '\0' ? 1 : 0));
    CWBOStringArray list = in.list(0, 3);
    list.Add("end");  // the last name is not unescaped
    require(vctree_XDE_treenode_path_array_to_string(&joined, &list, true) == 4);
    vctree_XDE_treenode_path_string_to_array(&again, joined, true);
    // A separator inside a name lets its backslashes be undone twice.
    const bool ambiguous =
        CStringUTF8(joined).Replace("\\\\", "") > 0 && CStringUTF8(joined).Replace("\\|", "") > 0;
    require(ambiguous || VCTreeGetChanged(&list, &again, true) == -1);
    VCTreeXDETreenodeOnePathAsArrayToString(joined, &list);

    UXXmlWrapperBase tree;
    if (tree.LoadFromMemory(in.text(1), std::string(in.text(1)).size()) == 0) return;
    UXXmlWrapperBase found;
    CWBOStringArray rest;
    vctree_find_XDE_treenode_from_path_in_tree(&found, &tree, &names, 0, in.flag(1), &rest,
                                               in.flag(2));
    vctree_get_XDE_treenode_string_for_path_in_tree(&joined, &found);
    VCTreeGetPathStr(joined, &found);
    uxtree_get_row_number(&tree, in.text(0));
    wbxfu_tree_get_node(found, tree, in.text(0), in.text(2), nullptr);
    CWBOStringArray values;
    vctree_XDE_XML_get_attributes(&names, &values, &tree, static_cast<DWORD>(in.number()) << 16);
}

void numbers_and_names(const Input& in) {
    CArray<double, double> numbers;
    VCTokenizedStringToArrayOfDoubles(numbers, in.text(0), in.flag(0));
    CStringUTF8 name(in.text(1));
    uxtree_adapt_for_tagname(&name);
    require(name.IsEmpty() || UXIsName(static_cast<const char*>(name)));

    CStringUTF8 support;
    int mode = 0;
    int count = 0;
    vctree_parse_auto_support_string(in.text(2), mode, name, count);
    CStringUTF8 plain(in.text(3));
    plain.Replace("|", "");
    plain.Replace("\"", "");
    if (plain.IsEmpty()) return;
    require(vctree_create_auto_support_string(support, 1, plain, in.number()) == 1);
    require(vctree_parse_auto_support_string(support, mode, name, count) == 1);
    require(mode == 1 && count == in.number() && name == plain);
}

void themes(const Input& in) {
    UXXmlWrapperBase tree;
    if (tree.LoadFromMemory(in.text(0), std::string(in.text(0)).size()) == 0) return;
    UXXmlWrapperBase out;
    uxtree_theme_tree_get_node_by_id(&out, &tree, in.number(), in.number() & 3, in.flag(0));
    uxtree_theme_tree_get_node_by_index(&out, &tree, in.number(), 1, 2, in.flag(0));
    int sides[4] = {};
    uxtree_theme_tree_get_range_from_range_style(&tree, sides, sides + 1, sides + 2, sides + 3);
    uxtree_is_inclist_theme(&tree);
    CStringUTF8 name;
    require(uxtree_tree_set_theme_file_name(&tree, in.text(1)));
    require(uxtree_tree_get_theme_file_name(&tree, &name) && name == in.text(1));
    uxtree_tree_get_theme_type(&tree);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const Input in(data, size);
    labels(in);
    data_strings(in);
    paths(in);
    numbers_and_names(in);
    themes(in);
    return 0;
}
