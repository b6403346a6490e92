// A tree from XML text, and its text again.
#include "support/test_tree.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <sstream>
#include <stdexcept>

#include "host/document.h"
#include "host/node_detail.h"

namespace uxtest {
namespace {

UXXmlWrapperBase child_named(const UXXmlWrapperBase& parent, const std::string& tag, int index) {
    UXXmlWrapperBase child;
    parent.FirstChild(&child);
    while (child.IsNodeValid()) {
        CStringUTF8 name;
        child.GetTagName(name);
        if (name == tag.c_str() && index-- == 0) return child;
        child.NextSibling(&child);
    }
    throw std::runtime_error("no such node: " + tag);
}

// No attribute may be called so; the store is asked past the guard.
void set_id_attribute(const UXXmlWrapperBase& node, int id) {
    uxhost::Document& document = *uxhost::document_of(node);
    document.set_attribute(*uxhost::live(node), document.intern(uxhost::kIdAttribute),
                           std::to_string(id));
}

// A copy in which IDs are attributes, so that serialising shows them.
void show_ids(UXXmlWrapperBase& copy) {
    UXXmlWrapperBase node = copy;
    for (;;) {
        int id = 0;
        if (node.GetID(id)) set_id_attribute(node, id);
        UXXmlWrapperBase next;
        if (node.FirstChild(&next)) {
            node = next;
            continue;
        }
        while (!node.NextSibling(&next)) {
            if (node == copy || !node.GetParent(&node) || node == copy) return;
        }
        node = next;
    }
}

}  // namespace

TestTree::TestTree(const char* xml) {
    if (!LoadFromMemory(xml, std::char_traits<char>::length(xml))) {
        throw std::runtime_error(static_cast<const char*>(UXGetLastLoadError()));
    }
    root_ = *this;
}

UXXmlWrapperBase TestTree::at(const char* path) const {
    UXXmlWrapperBase node = root_;
    std::istringstream steps(path);
    std::string step;
    while (std::getline(steps, step, '/')) {
        int index = 0;
        const std::size_t bracket = step.find('[');
        if (bracket != std::string::npos) {
            index = std::atoi(step.c_str() + bracket + 1);
            step.resize(bracket);
        }
        node = child_named(node, step, index);
    }
    return node;
}

std::string TestTree::text() const {
    return to_text(root_);
}

std::string to_text(const UXXmlWrapperBase& node) {
    if (!node.IsNodeValid()) return "(invalid)";
    UXXmlWrapperBase copy;
    node.Clone(&copy, 1);
    show_ids(copy);
    CStringUTF8 text;
    copy.GetString(text);
    return static_cast<const char*>(text);
}

std::string tree_text(const char* xml) {
    return TestTree(xml).text();
}

std::string tag_text(const UXXmlWrapperBase& node) {
    CStringUTF8 tag;
    return node.GetTagName(tag) ? static_cast<const char*>(tag) : "(invalid)";
}

std::string repeated(const std::string& text, int count) {
    std::string out;
    for (int i = 0; i < count; ++i) out += text;
    return out;
}

std::vector<std::string> texts(const CWBOStringArray& array) {
    std::vector<std::string> out;
    for (int i = 0; i < array.GetSize(); ++i) out.emplace_back(static_cast<const char*>(array[i]));
    return out;
}

CWBOStringArray string_list(const std::vector<std::string>& values) {
    CWBOStringArray out;
    for (const std::string& value : values) out.Add(CStringUTF8(value.c_str()));
    return out;
}

UXScriptArray<CWBOStringArray> script_texts(const std::vector<std::string>& values) {
    return UXScriptArray<CWBOStringArray>(string_list(values));
}
UXScriptArray<CArray<int, int>> script_ints(const std::vector<int>& values) {
    return UXScriptArray<CArray<int, int>>(number_list(values));
}
UXScriptArray<CArray<double, double>> script_doubles(const std::vector<double>& values) {
    return UXScriptArray<CArray<double, double>>(number_list(values));
}
UXScriptArray<CArray<bool, bool>> script_bools(const std::vector<bool>& values) {
    UXScriptArray<CArray<bool, bool>> out;
    for (const bool value : values) out.array().Add(value);
    return out;
}

TemporaryFolder::TemporaryFolder() {
    std::string pattern = (std::filesystem::temp_directory_path() / "uxtree-XXXXXX").string();
    if (mkdtemp(pattern.data()) == nullptr) throw std::runtime_error("no temporary folder");
    path_ = pattern;
}
TemporaryFolder::~TemporaryFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
}
std::string TemporaryFolder::write(const std::string& name, const std::string& content) const {
    // Over an old file, ext4 waits for the disk.
    std::filesystem::remove(path(name));
    std::ofstream file(path(name), std::ios::binary);
    file << content;
    return path(name);
}

std::string read_file(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

std::string source_path(const std::string& name) {
    return UXTREE_SOURCE_DIR "/" + name;
}
std::string binary_path(const std::string& name) {
    return UXTREE_BINARY_DIR "/" + name;
}

}  // namespace uxtest
