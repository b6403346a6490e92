// Evaluates any path over a small tree, as a list and as a table.
#include "uxtree/outline/xpath.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string>

namespace {

constexpr const char* kTree =
    "<r id='0'><a id='1' n='x'><b>1</b><c><b>2</b><d id='3'/></c></a><a><b>4</b></a>"
    "<\xC3\xA4>5</\xC3\xA4><e>6</e></r>";

void require(bool holds) {
    if (!holds) std::abort();
}

UXXmlWrapperBase& tree() {
    static UXXmlWrapperBase root;
    if (root.IsNodeValid() == 0) require(root.LoadFromMemory(kTree, std::strlen(kTree)) != 0);
    return root;
}

// The last step, found from the front as the rules say.
std::string last_step(const std::string& path) {
    std::size_t start = 1;
    for (std::size_t i = 1; i < path.size(); ++i) {
        if (path[i] != '|') continue;
        if (i + 1 == path.size()) return path.substr(start, i - start);
        start = ++i;  // whatever stands behind the separator belongs to the step
    }
    return path.substr(start);
}

struct Arrays {
    CWBOStringArray values;
    CArray<unsigned int> offsets;
    CWBOStringArray names;
};

void check_list(const std::string& path, int result) {
    Arrays list;
    list.values.Add("before");
    require(TreeEvalXPath(&list.values, &list.offsets, &list.names, &tree(), nullptr, path.c_str(),
                          false) == result);
    if (result != 0) {
        require(list.values.GetSize() == 1 && list.offsets.IsEmpty() && list.names.IsEmpty());
        return;
    }
    require(list.offsets.GetSize() == 2 && list.offsets[0] == 1);
    require(static_cast<int>(list.offsets[1]) == list.values.GetSize());
    require(list.names.GetSize() == 1 && list.names[0] == last_step(path).c_str());
}

int check_table(const std::string& path) {
    Arrays table;
    const int result = TreeEvalXPath(&table.values, &table.offsets, &table.names, &tree(), nullptr,
                                     path.c_str(), true);
    require(result == 0 || result == 4 || result == 5);
    if (result != 0) return result;
    const int columns = table.names.GetSize();
    require(table.offsets.GetSize() == columns + 1);
    const unsigned int rows = columns > 0 ? table.offsets[1] : 0;
    for (int k = 0; k <= columns; ++k) {
        require(table.offsets[k] == static_cast<unsigned int>(k) * rows);
    }
    require(static_cast<int>(table.offsets[columns]) == table.values.GetSize());
    return 0;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    std::string path(reinterpret_cast<const char*>(data), size);
    path.resize(std::strlen(path.c_str()));
    const int result = check_table(path);
    require((result == 4) == (path.empty() || path[0] != '/'));
    check_list(path, result);
    return 0;
}
