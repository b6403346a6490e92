// The import of a spectrum file, its preview included, and the reader without a tree. The first byte chooses flags, a selection
// and whether there is an information tree; the rest is the file.
#include "uxtree/import/n42.h"

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

#include <sys/mman.h>
#include <unistd.h>

#include "uxtree/kit/spectra.h"
#include "uxtree/kit/spectrum_math.h"

namespace {

// A file in memory that has a path.
class MemoryFile {
public:
    MemoryFile() : descriptor_(memfd_create("n42_fuzz", 0)) {
        if (descriptor_ < 0) std::abort();
        path_ = "/proc/self/fd/" + std::to_string(descriptor_);
    }
    ~MemoryFile() { close(descriptor_); }
    MemoryFile(const MemoryFile&) = delete;
    MemoryFile& operator=(const MemoryFile&) = delete;

    const char* fill(const std::uint8_t* data, std::size_t size) {
        if (ftruncate(descriptor_, 0) != 0) std::abort();
        for (std::size_t done = 0; done < size;) {
            const ssize_t wrote =
                pwrite(descriptor_, data + done, size - done, static_cast<off_t>(done));
            if (wrote <= 0) std::abort();
            done += static_cast<std::size_t>(wrote);
        }
        return path_.c_str();
    }

private:
    int descriptor_;
    std::string path_;
};

void require(bool holds) {
    if (!holds) std::abort();
}

std::string text_of(const UXXmlWrapperBase& node) {
    CStringUTF8 text;
    node.GetString(text);
    return static_cast<const char*>(text);
}

// The reader that builds no tree must read what the import reads, and build the same tree.
void compare_with_reader(const char* path, const std::string& detector, int imported,
                         const UXXmlWrapperBase& tree) {
    uxkit::SpectrumReader reader;
    std::vector<std::string> wanted;
    if (!detector.empty()) wanted.push_back(detector);
    const bool opened = reader.open(path, wanted) == uxkit::SpectrumOpening::kOpened;
    require(opened == (imported != -9093));
    if (!opened) return;
    std::size_t count = 0;
    uxkit::Spectrum sum;
    for (uxkit::Spectrum spectrum; reader.next(spectrum); ++count) {
        require(!spectrum.name.empty());
        uxkit::dead_percent(spectrum);
        if (spectrum.calibration) uxkit::channel_edges(*spectrum.calibration, 100);
        uxkit::join_channels(spectrum, 3);
        uxkit::Rebinning rebinning;
        if (count == 0) sum = spectrum;
        uxkit::add_spectrum(sum, spectrum, rebinning);
        uxkit::subtract_background(sum, spectrum, rebinning);
    }
    require(!reader.failed());
    require(count > 0 || !reader.gross_counts().empty() || !reader.notes().empty());
    UXXmlWrapperBase other;
    other.CreateNew(0, "t");
    other.AddNode(nullptr, "old", -1);
    require(reader.import_into(other) == imported);
    require(text_of(other) == text_of(tree));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static MemoryFile file;
    const std::uint8_t choice = size > 0 ? data[0] : 0;
    const char* path = file.fill(data + (size > 0), size - (size > 0));

    CWBOStringArray found;
    const int previewed = VCTree_n42_(nullptr, path, &found, nullptr, 0x10000);
    require(previewed == 0 || previewed == -9093);

    UXXmlWrapperBase tree;
    UXXmlWrapperBase info;
    tree.CreateNew(0, "t");
    tree.AddNode(nullptr, "old", -1);
    info.CreateNew(0, "info");
    CWBOStringArray selection;
    if ((choice & 1) != 0 && found.GetSize() > 0) selection.Add(found[0]);
    const int imported =
        VCTree_n42_(&tree, path, &selection, (choice & 2) != 0 ? &info : nullptr, 0);
    require(imported == previewed || imported == -9096);

    UXXmlWrapperBase old;
    UXXmlWrapperBase n42;
    tree.FindChild("old", &old, 1);
    tree.FindChild("n42", &n42, 1);
    if (imported != 0) require(old.IsNodeValid() != 0);
    require((old.IsNodeValid() != 0) != (n42.IsNodeValid() != 0));
    compare_with_reader(path, selection.GetSize() > 0 ? static_cast<const char*>(selection[0]) : "",
                        imported, tree);
    return 0;
}
