// Reading N42 spectrum files into trees: which form, and the entry points.
#include "uxtree/import/n42.h"

#include <atomic>

#include "frame/guards.h"
#include "frame/script_args.h"
#include "import/n42_file_2006.h"
#include "import/n42_file_2011.h"

using namespace ux;

namespace {

// The process's setting.
std::atomic<int>& live_time_option() {
    static std::atomic<int> option{kN42CleanLiveTimes};
    return option;
}

struct Import {
    UXXmlWrapperBase* tree;
    CWBOStringArray* detectors;
    UXXmlWrapperBase* infoTree;
    DWORD flags;
};

int list_detectors(CVCn42FileBase& reader, CWBOStringArray* detectors) {
    if (detectors == nullptr) return kN42NoDetectorArray;
    detectors->RemoveAll();
    return reader.Read(detectors);
}

int import_spectra(CVCn42FileBase& reader, const Import& what) {
    if (!usable(what.tree)) return kN42CannotAdd;
    reader.SetInfoTree(what.infoTree);
    reader.SetLiveTimeOption(live_time_option());
    const int result = reader.Read(what.detectors);
    return result == kN42Ok ? reader.WriteInto(*what.tree) : result;
}

int run(CVCn42FileBase& reader, const Import& what) {
    return (what.flags & kN42Preview) != 0 ? list_detectors(reader, what.detectors)
                                           : import_spectra(reader, what);
}

// The 2011 reader is tried first. When it meets the other form, the 2006 reader goes on with the
// document that is loaded already.
int import_file(const char* path, const Import& what) {
    CVCn42File reader(path, what.flags);
    const int opened = reader.Open();
    if (opened == kN42Ok) return run(reader, what);
    if (opened != kN42IsOtherForm) return kN42NoForm;
    CVCn42File2006 reader2006(path, what.flags);
    return reader2006.OpenLoaded(reader.Root()) == kN42Ok ? run(reader2006, what) : kN42NoForm;
}

}  // namespace

int VCTree_n42_(UXXmlWrapperBase* tree, const char* path, CWBOStringArray* detectors,
                UXXmlWrapperBase* infoTree, DWORD flags) {
    return at_boundary(kN42CannotAdd, [&] {
        if (!given(path)) return kN42NoForm;
        return import_file(path, {tree, detectors, infoTree, flags});
    });
}

int VCTree_n42_parse_LiveTimeDuration(int mode) {
    std::atomic<int>& option = live_time_option();
    return mode >= 0 ? option.exchange(mode) : option.load();
}

extern "C" int uxtree_n42(UXXmlWrapperBase* tree, const char* path, UXScriptObject* detectors,
                          UXXmlWrapperBase* infoTree, DWORD flags) {
    return at_boundary(kN42CannotAdd, [&] {
        CWBOStringArray* names = string_array(detectors);
        if (refused(detectors, names)) return kN42NoDetectorArray;
        return VCTree_n42_(tree, path, names, infoTree, flags);
    });
}
