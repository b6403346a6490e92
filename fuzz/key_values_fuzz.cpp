// Key and value text into a branch and back, and rejoining of escaped tokens.
#include <cstdint>
#include <cstdlib>
#include <string>

#include "uxtree/uxtree_Utils.h"

namespace {

void require(bool good) {
    if (!good) std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size < 2) return 0;
    const char keySeparator = static_cast<char>(data[0]);
    const char pairSeparator = static_cast<char>(data[1]);
    const std::string text(reinterpret_cast<const char*>(data + 2), size - 2);

    UXXmlWrapperBase branch;
    branch.CreateNew(0, "r");
    const int result =
        uxtree_key_value_pairs_str_to_branch(&branch, text.c_str(), keySeparator, pairSeparator);
    require(result == (branch.GetNodeCount() > 0 ? 1 : 0));
    CStringUTF8 out("old");
    require(uxtree_branch_to_key_value_pairs_str(&branch, &out, keySeparator, pairSeparator) ==
            result);
    require(result == 1 || out.IsEmpty());
    require(uxtree_add_path_str(&branch, "p", 1, 1) == 1);

    CWBOStringArray tokens;
    UXSeparateByString(tokens, text.c_str(), std::string(1, pairSeparator).c_str());
    const int before = tokens.GetSize();
    vctree_convert_escape_character(tokens, pairSeparator, (data[0] & 1) != 0);
    require(tokens.GetSize() <= before && (before == 0 || tokens.GetSize() > 0));
    return 0;
}
