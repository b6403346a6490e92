// The document loader: whatever it accepts must serialise to text that reads back as the same tree,
// and whatever it refuses must leave a reason and an untouched handle.
#include <cstddef>
#include <cstdint>
#include <cstdlib>

#include "uxtree/host/embedded.h"
#include "uxtree/host/node.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    UXXmlWrapperBase tree;
    if (tree.LoadFromMemory(reinterpret_cast<const char*>(data), size) == 0) {
        if (tree.IsNodeValid() != 0 || UXGetLastLoadFailure().message.IsEmpty()) std::abort();
        return 0;
    }
    CStringUTF8 text;
    CStringUTF8 again;
    if (tree.GetString(text) == 0) std::abort();
    UXXmlWrapperBase read;
    if (read.LoadFromMemory(text, static_cast<std::size_t>(text.GetLength())) == 0) std::abort();
    read.GetString(again);
    if (text != again) std::abort();
    UXXmlWrapperBase copy;
    if (tree.Clone(&copy, 1) == 0 || copy.AddNodeCopy(&tree, 1, nullptr) == 0) std::abort();
    if (tree.RemoveNode() == 0 || tree.IsNodeValid() != 0) std::abort();
    return 0;
}
