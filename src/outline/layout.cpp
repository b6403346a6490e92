// Outlines of files and of trees, written as nodes.
#include "uxtree/outline/layout.h"

#include <new>

#include "base/input_file.h"
#include "frame/guards.h"
#include "frame/text.h"
#include "frame/walk.h"
#include "outline/layout_detail.h"
#include "outline/markup.h"
#include "outline/outline_nodes.h"
#include "outline/path_filter.h"
#include "outline/scanner.h"

using namespace ux;
namespace {

constexpr int kNothingGiven = 1;
constexpr int kInvalidTarget = 2;
constexpr int kInvalidSource = 3;
constexpr int kNoMemory = 5;
constexpr int kWritten = 0;
constexpr DWORD kMapped = 1u;

// The host tells a failure, which on valid nodes is a shortage of memory, only by its result.
void require(int hostResult) {
    if (hostResult == 0) throw std::bad_alloc();
}

// Folds the element itself. False, with nothing folded, when it is to be skipped.
bool fold_element(UXXmlWrapperBase& element, OutlineBuilder& outline) {
    CStringUTF8 tag;
    require(element.GetTagName(tag));
    outline.begin(view_of(tag));
    // Intended: only an element that repeats an entry is asked whether it is valid.
    if (outline.has_entry() && call_out([&] { return element.IsValid(); }) == 0) return false;
    CWBOStringArray names;
    require(element.GetPropertyNames(names));
    for (int i = 0; i < names.GetSize(); ++i) outline.attribute(view_of(names[i]));
    outline.start();
    return true;
}

}  // namespace

void ux::outline_streamed_file(const char* fileName, OutlineBuilder& outline) {
    SaxFileReader reader(fileName);
    scan_markup(reader, outline);
}

void ux::outline_mapped_file(const char* fileName, OutlineBuilder& outline,
                             const char* const* paths, int count) {
    const MappedFile file(fileName);
    BytesInput input(file.begin(), file.end());
    if (paths == nullptr || count <= 0) {
        scan_markup(input, outline);
        return;
    }
    PathFilter filter(outline, paths, count);
    scan_markup(input, filter);
}

void ux::outline_tree(UXXmlWrapperBase& source, OutlineBuilder& outline) {
    bool folded = fold_element(source, outline);
    if (!folded) return;
    const auto enter = [&](UXXmlWrapperBase& node) {
        folded = fold_element(node, outline);
        return into_branch_if(folded);
    };
    const auto leave = [&](const UXXmlWrapperBase&, bool entered) {
        if (entered || folded) outline.end_expected();
        return false;
    };
    visit_around(source, enter, leave);
    outline.end_expected();
}

int SAXTreeLayout(UXXmlWrapperBase* target, UXXmlWrapperBase* source, const char* fileName,
                  DWORD flags) {
    return at_boundary(kNoMemory, [&] {
        if (target == nullptr || (source == nullptr && fileName == nullptr)) return kNothingGiven;
        if (!usable(*target)) return kInvalidTarget;
        if (source != nullptr && !usable(*source)) return kInvalidSource;
        OutlineBuilder outline;
        // Intended: a source tree wins over a file name.
        if (source != nullptr) {
            outline_tree(*source, outline);
        } else if ((flags & kMapped) != 0) {
            outline_mapped_file(fileName, outline);
        } else {
            outline_streamed_file(fileName, outline);
        }
        // Intended: written also when the file could not be read, or not to its end.
        write_outline(*target, outline.root());
        return kWritten;
    });
}

extern "C" int uxtree_layout(UXXmlWrapperBase* target, UXXmlWrapperBase* source,
                             const char* fileName, DWORD flags) {
    return SAXTreeLayout(target, source, fileName, flags);
}
