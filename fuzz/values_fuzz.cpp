// Random trees with random identifiers and theme attributes, driven through collecting, saving,
// reading, setting, copying and collecting again.
#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <vector>

#include "uxtree/uxtree_Utils.h"

namespace {

void require(bool good) {
    if (!good) std::abort();
}

class Bytes {
public:
    Bytes(const std::uint8_t* data, std::size_t size) : data_(data), size_(size) {}
    bool more() const { return at_ < size_; }
    std::uint8_t next() { return more() ? data_[at_++] : std::uint8_t{0}; }
    int number() {
        constexpr std::array<int, 12> kSpecial{
            -1, -2, 0, 1, 65535, 65536, 32766, 32767, 32768, 16777216, 2147483647, -2147483647};
        const std::uint8_t byte = next();
        return byte < kSpecial.size() ? kSpecial[byte] : byte % 32;
    }
    std::string text() {
        constexpr std::array<const char*, 8> kPieces{"x", "::{",    "Auto", "=",
                                                     "}", "DynaFx", "-1",   " "};
        std::string out;
        for (int left = next() % 6; left > 0; --left) out += kPieces[next() % kPieces.size()];
        return out;
    }

private:
    const std::uint8_t* data_;
    std::size_t size_;
    std::size_t at_ = 0;
};

UXXmlWrapperBase random_tree(Bytes& bytes) {
    constexpr std::array<const char*, 6> kNumbers{"DataID",       "RepeatID",
                                                  "RepeatNodeID", "TreeGetByIdIgnore",
                                                  "DataID",       "ThemeApplicabilityEx"};
    constexpr std::array<const char*, 6> kTexts{"Use",    "Data",        "Auto",
                                                "DynaFx", "DynaUseChck", "OldValue"};
    UXXmlWrapperBase root;
    root.CreateNew(0, "r");
    UXXmlWrapperBase node = root;
    for (int steps = 0; bytes.more() && steps < 2000; ++steps) {
        switch (bytes.next() % 6) {
            case 0:
                node.AddNode(&node, "b", -1);
                break;
            case 1:
                if (!(node == root)) node.GetParent(&node);
                break;
            case 2: {
                const char* const name = kNumbers[bytes.next() % kNumbers.size()];
                node.SetPropertyValue(name, bytes.number());
                break;
            }
            case 3: {
                const char* const name = kTexts[bytes.next() % kTexts.size()];
                node.SetPropertyValue(name, CStringUTF8(bytes.text().c_str()));
                break;
            }
            case 4:
                node.SetPropertyValue("ThemeApplicability", (bytes.next() & 63) << 16);
                break;
            default: {
                const std::string text = bytes.text();
                node.AddTextNode(&node, "a", text.c_str(), bytes.next() % 80, 0, nullptr);
                node.SetDataID(bytes.number());
                if (!(node == root)) node.GetParent(&node);
            }
        }
    }
    return root;
}

struct Collected {
    int count = 0;
    CArray<int, int> ids;
    CWBOStringArray values;
};
Collected collect(UXXmlWrapperBase tree, int themeFlag) {
    Collected out;
    CStringUTF8 error;
    out.count = vctree_get_values_with_ids(&tree, &out.ids, &out.values, 1, 0, 0, nullptr,
                                           themeFlag, &error);
    require(out.count == out.ids.GetSize() && out.count == out.values.GetSize());
    return out;
}
bool same(Collected& a, Collected& b) {
    return VCTreeIsSame(&a.ids, &b.ids) == 1 && VCTreeGetChanged(&a.values, &b.values, true) == -1;
}

std::string xml_of(UXXmlWrapperBase& tree) {
    CStringUTF8 text;
    tree.GetString(text);
    return static_cast<const char*>(text);
}
std::string sorted(std::string text) {
    std::sort(text.begin(), text.end());
    return text;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    Bytes bytes(data, size);
    const int themeFlag = bytes.next() & 1;
    UXXmlWrapperBase tree = random_tree(bytes);
    Collected first = collect(tree, themeFlag);

    // Saving and reading keep every entry.
    UXXmlWrapperBase document;
    require(vctree_set_theme(&document, &first.ids, &first.values, nullptr) == (first.count > 0));
    Collected read;
    vctree_get_theme(&document, &read.ids, &read.values, nullptr, nullptr);
    require(same(first, read));

    // Setting settles: a second pass with the same values changes no more than the order in which
    // attributes stand, since some are removed and written anew, and a third one nothing.
    UXXmlWrapperBase copy;
    tree.Clone(&copy, 1);
    int duplicate = 0;
    CStringUTF8 error;
    const int code =
        vctree_set_values_by_ids(&copy, &read.ids, &read.values, 0, &duplicate, 0, nullptr, &error);
    require(code >= 0 || code == -2 || code == -4 || code == -5);
    require(code != -4 || !error.IsEmpty());
    std::array<std::string, 3> passes{xml_of(copy), "", ""};
    for (std::size_t pass = 1; pass < passes.size(); ++pass) {
        vctree_set_values_by_ids(&copy, &read.ids, &read.values, 0, &duplicate, 0, nullptr,
                                 nullptr);
        passes[pass] = xml_of(copy);
    }
    require(sorted(passes[0]) == sorted(passes[1]));
    require(passes[1] == passes[2]);
    collect(copy, themeFlag);

    vctree_copy_values_by_id(&tree, &copy, 0, nullptr, nullptr, themeFlag, nullptr, 0, 1, 1, 0);
    uxtree_copy_atts_by_id(&tree, &copy, "Use", nullptr, nullptr, "Data", 0);
    vctree_copy_values_between_homologous_trees(copy, tree, 1, nullptr, 1);
    uxtree_remove_unchange_nodes_by_id(&tree, &copy, nullptr, nullptr);
    vctree_empty_values_with_ids(&copy);
    return 0;
}
