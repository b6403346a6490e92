// Sets one value, with whatever settings it embeds, into a leaf and a branch under any flag word.
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string>

#include "uxtree/uxtree_Utils.h"

#include "data/values_detail.h"

namespace {

void require(bool good) {
    if (!good) std::abort();
}

bool ends_with(const std::string& text, const std::string& end) {
    return text.size() >= end.size() &&
           text.compare(text.size() - end.size(), end.size(), end) == 0;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size < 1) return 0;
    const DWORD flags = static_cast<DWORD>(data[0]) << 16;
    const std::string value(reinterpret_cast<const char*>(data + 1),
                            strnlen(reinterpret_cast<const char*>(data + 1), size - 1));

    UXXmlWrapperBase root;
    root.CreateNew(0, "r");
    UXXmlWrapperBase leaf;
    root.AddTextNode(&leaf, "leaf", "old", -1, 0, nullptr);
    leaf.SetDataID(1);
    leaf.SetPropertyValue("DynaFx", "old");
    UXXmlWrapperBase branch;
    root.AddNode(&branch, "branch", -1);
    branch.SetDataID(1);
    branch.AddNode(nullptr, "child", -1);

    CArray<int, int> ids;
    CWBOStringArray values;
    ids.Add(1);
    values.Add(CStringUTF8(value.c_str()));
    ux::ValueRecord record;
    record.values = &values;
    ux::SetOptions options;
    options.defaultFlags = flags;
    options.callFlags = ux::kResetAutomatic | ux::kCheckDynaUse;
    const int written = ux::_tree_set_values_by_ids(root, ids, record, options);
    require(written >= 0 && written <= 2);

    CStringUTF8 text;
    leaf.NodeValue(text, 1, 1, nullptr);
    const std::string stored = static_cast<const char*>(text);
    require((flags & ux::kThemeNoValue) != 0 ? stored == "old" : ends_with(value, stored));
    // What is stored holds nothing more to take out: setting it again changes nothing.
    if ((flags & ux::kThemeNoValue) == 0) {
        values[0] = text;
        ux::_tree_set_values_by_ids(root, ids, record, options);
        leaf.NodeValue(text, 1, 1, nullptr);
        require(stored == static_cast<const char*>(text));
    }
    // Collecting what was stored must work whatever the attributes are now.
    CArray<int, int> collected;
    CWBOStringArray texts;
    require(vctree_get_values_with_ids(&root, &collected, &texts, 1, 0, 0, nullptr, 1, nullptr) >=
            1);
    return 0;
}
