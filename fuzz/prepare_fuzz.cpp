// Import descriptions: a preview must be refused exactly when the whole is, and hold no more; the
// paths of what was prepared must lead back into the tree.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

#include <sys/mman.h>
#include <unistd.h>

#include "uxtree/import/xde_paths.h"
#include "uxtree/import/xde_prepare.h"

namespace {

constexpr DWORD kPreview = 0x10000;

void require(bool holds) {
    if (!holds) std::abort();
}

// A file in memory that has a path.
class MemoryFile {
public:
    MemoryFile(const std::uint8_t* data, std::size_t size)
        : descriptor_(memfd_create("prepare_fuzz", 0)) {
        require(descriptor_ >= 0);
        require(write(descriptor_, data, size) == static_cast<ssize_t>(size));
    }
    ~MemoryFile() { close(descriptor_); }
    MemoryFile(const MemoryFile&) = delete;
    MemoryFile& operator=(const MemoryFile&) = delete;
    std::string path() const { return "/proc/self/fd/" + std::to_string(descriptor_); }

private:
    int descriptor_;
};

int prepared(UXXmlWrapperBase& tree, const std::string& path, DWORD flags) {
    tree.CreateNew(0, "t");
    return uxtree_XDE_prepare_XML(&tree, path.c_str(), flags);
}

// A path names its node as long as no name on the way occurs twice, so it leads somewhere.
void follow_paths(UXXmlWrapperBase& tree) {
    UXXmlWrapperBase top;
    if (tree.FirstChild(&top) == 0) return;
    CWBOStringArray paths;
    const int leaves = VCTreeXDEDatNavPrepareStandardSourceTree(top, &paths, 0);
    require(leaves == paths.GetSize());
    for (int i = 0; i < paths.GetSize() && i < 20; ++i) {
        CWBOStringArray names;
        CStringUTF8 again;
        UXXmlWrapperBase found;
        vctree_XDE_treenode_path_string_to_array(&names, paths[i], true);
        vctree_XDE_treenode_path_array_to_string(&again, &names, true);
        vctree_find_XDE_treenode_from_path_in_tree(&found, &top, &names, 0, 0, nullptr, 0);
        CStringUTF8 text;
        VCTreeXDEConvertTreeValToString(text, &found);
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const MemoryFile file(data, size);
    UXXmlWrapperBase whole;
    UXXmlWrapperBase preview;
    const int result = prepared(whole, file.path(), 0);
    require(result == 0 || result == -2018 || result == -2019);
    require(prepared(preview, file.path(), kPreview) == result);
    require(whole.GetNodeCount() == (result == 0 ? 1 : 0));
    require(preview.GetNodeCount() == whole.GetNodeCount());
    CStringUTF8 wholeText;
    CStringUTF8 previewText;
    whole.GetString(wholeText);
    preview.GetString(previewText);
    require(previewText.GetLength() <= wholeText.GetLength());
    follow_paths(whole);
    return 0;
}
