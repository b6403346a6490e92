// Turning the description of an imported file into a tree with recognisable arrays.
#include "uxtree/import/xde_prepare.h"

#include <cstddef>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

#include "frame/guards.h"
#include "frame/node_values.h"
#include "frame/walk.h"
#include "marks/names.h"

using namespace ux;

namespace {

constexpr int kDone = 0;
constexpr int kCannotAdd = -2016;
constexpr int kNoTree = -2017;
constexpr int kCannotLoad = -2018;
constexpr int kCannotRead = -2019;

constexpr DWORD kPreview = 0x10000;
constexpr int kNoLimit = 0;
constexpr int kPreviewElements = 5;    // of an array
constexpr int kPreviewChildren = 200;  // of any other element
constexpr int kReadPermission = 4;

// Copies a description below a node of the caller's tree. It keeps the elements that are being
// copied on a list of its own, so that the nesting of a file costs no machine stack.
class CQXDEXMLPreparer {
public:
    CQXDEXMLPreparer(const UXXmlWrapperBase& description, const UXXmlWrapperBase& destination,
                     DWORD flags)
        : description_(description), destination_(destination), flags_(flags) {}

    int Run();

private:
    struct Source;
    struct STRECURSE;
    struct QSTELEMINFO;
    class CQXMLChildrenAnalyzerAndChanger;

    bool CopyElement(const Source& source, STRECURSE* parent);
    void Open(const Source& source, const UXXmlWrapperBase& copy, STRECURSE* parent);
    static void AfterChild(STRECURSE& record, UXXmlWrapperBase& copy);
    static void Close(STRECURSE& record);
    int Limit(bool isArray) const;

    UXXmlWrapperBase description_;
    UXXmlWrapperBase destination_;
    DWORD flags_;
    std::vector<std::unique_ptr<STRECURSE>> open_;  // outermost first
};

// What is copied: an element of the description, or the wrapper of children with a repeated tag.
struct CQXDEXMLPreparer::Source {
    UXXmlWrapperBase element;  // invalid for a wrapper
    CStringUTF8 wrapperTag;
    std::vector<UXXmlWrapperBase> members;  // of a wrapper
};

// An element that is being copied.
struct CQXDEXMLPreparer::STRECURSE {
    // One child position of an array's elements.
    struct QETDENTRY {
        CStringUTF8 tag;
        bool isArray = false;
        int switchedAt = 0;  // elements before this one have a child there that is no array
    };
    // What stands at each child position of an array's elements, so that they can be made to
    // agree: where one element has an array, all have one.
    class CQElementTypeDetectHelper {
    public:
        bool Note(int position, const CStringUTF8& tag, bool isArray, int element);
        void MarkEarlierElements(const UXXmlWrapperBase& array) const;

    private:
        std::vector<QETDENTRY> entries_;
        int marksBefore_ = 0;  // elements from this one on need no mark
    };

    bool NextSource(Source& source);

    UXXmlWrapperBase node;                          // the copy
    CQElementTypeDetectHelper* siblings = nullptr;  // of the array that the element belongs to
    int place = 0;                                  // of the element in that array
    std::unique_ptr<CQElementTypeDetectHelper> detector;  // of its own elements, for an array
    CStringUTF8 elementTag;                               // of its own elements, for an array
    UXXmlWrapperBase nextChild;
    std::vector<Source> grouped;            // the children, when some were grouped
    std::vector<UXXmlWrapperBase> wrapped;  // the children, when it is a wrapper
    int total = 0;                          // number of children
    int position = 0;                       // of the next child
    int limit = kNoLimit;
};

struct CQXDEXMLPreparer::QSTELEMINFO {
    int count = 0;
    int firstIndex = 0;
    std::size_t wrapper = 0;  // its place among the grouped children
};

// Notes the type of the child at a position of an element. True when earlier elements have an
// array there and this one has not, so that it must be marked.
bool CQXDEXMLPreparer::STRECURSE::CQElementTypeDetectHelper::Note(int childIndex,
                                                                  const CStringUTF8& tag,
                                                                  bool isArray, int element) {
    const auto at = static_cast<std::size_t>(childIndex);
    if (at >= entries_.size()) {
        entries_.push_back({tag, isArray, 0});
        return false;
    }
    QETDENTRY& entry = entries_[at];
    // Intended: another tag at a position is left alone for good; only like is compared with like.
    if (entry.tag != tag) return false;
    if (isArray && !entry.isArray) {
        entry.isArray = true;
        entry.switchedAt = marksBefore_ = element;
    }
    return !isArray && entry.isArray;
}

// Marks the children of elements that came before the first array at their position. One walk at
// the end of the array does for all positions.
void CQXDEXMLPreparer::STRECURSE::CQElementTypeDetectHelper::MarkEarlierElements(
    const UXXmlWrapperBase& array) const {
    int elementIndex = 0;
    for (UXXmlWrapperBase& element : children(array)) {
        if (elementIndex == marksBefore_) return;
        std::size_t at = 0;
        for (UXXmlWrapperBase& child : children(element)) {
            const QETDENTRY& entry = entries_[at++];
            if (elementIndex < entry.switchedAt && entry.tag == tag_of(child))
                child.SaveXDEArraySize(1);
        }
        ++elementIndex;
    }
}

// The next child to copy; false when there is none or the preview has enough.
bool CQXDEXMLPreparer::STRECURSE::NextSource(Source& source) {
    if (position == total || (limit != kNoLimit && position >= limit)) return false;
    const auto index = static_cast<std::size_t>(position);
    if (!grouped.empty()) {
        source = std::move(grouped[index]);
    } else if (!wrapped.empty()) {
        source.element = wrapped[index];
    } else {
        source.element = nextChild;
        nextChild.NextSibling(&nextChild);
    }
    return true;
}

// Counts the tags of an element's children and groups those that repeat among others.
class CQXDEXMLPreparer::CQXMLChildrenAnalyzerAndChanger {
public:
    explicit CQXMLChildrenAnalyzerAndChanger(const UXXmlWrapperBase& parent) : parent_(parent) {
        for (UXXmlWrapperBase& child : children(parent)) {
            QSTELEMINFO& info = tags_[Key(child)];
            if (info.count == 0) info.firstIndex = total_;
            if (++info.count == 2) ++repeated_;
            ++total_;
        }
    }

    int Total() const { return total_; }
    bool IsArray() const { return tags_.size() == 1 && total_ > 1; }
    bool NeedsGrouping() const { return tags_.size() > 1 && repeated_ > 0; }

    // The children with each repeated tag under a wrapper of their own, at the place of the first
    // of them. The description itself stays as it is. A wrapper is never grouped with elements
    // that happen to have its name.
    std::vector<Source> Grouped() {
        std::vector<Source> out;
        out.reserve(tags_.size());
        int index = 0;
        for (UXXmlWrapperBase& child : children(parent_)) {
            QSTELEMINFO& info = tags_.find(Key(child))->second;
            if (index++ == info.firstIndex) {
                info.wrapper = out.size();
                out.push_back(info.count == 1 ? Source{child, {}, {}}
                                              : Source{{}, tag_of(child) + "s", {}});
            }
            if (info.count > 1) out[info.wrapper].members.push_back(child);
        }
        return out;
    }

private:
    static std::string Key(const UXXmlWrapperBase& node) {
        return static_cast<const char*>(tag_of(node));
    }

    const UXXmlWrapperBase& parent_;
    std::unordered_map<std::string, QSTELEMINFO> tags_;
    int total_ = 0;
    int repeated_ = 0;  // tags that occur more than once
};

int CQXDEXMLPreparer::Run() {
    if (!CopyElement(Source{description_, {}, {}}, nullptr)) return kCannotAdd;
    while (!open_.empty()) {
        STRECURSE& record = *open_.back();
        Source source;
        if (record.NextSource(source)) {
            if (!CopyElement(source, &record)) return kCannotAdd;
            continue;
        }
        Close(record);
        UXXmlWrapperBase copy = record.node;
        open_.pop_back();
        if (!open_.empty()) AfterChild(*open_.back(), copy);
    }
    return kDone;
}

// Adds the copy of an element; one without children is then finished, any other is opened.
bool CQXDEXMLPreparer::CopyElement(const Source& source, STRECURSE* parent) {
    UXXmlWrapperBase& destination = parent == nullptr ? destination_ : parent->node;
    UXXmlWrapperBase element = source.element;
    UXXmlWrapperBase copy;
    if (!source.members.empty()) {
        destination.AddNode(&copy, source.wrapperTag, -1);
    } else {
        destination.AddNodeCopy(&element, 0, &copy);
    }
    if (!usable(copy)) return false;
    if (!source.members.empty() || element.HasChildren(0)) {
        Open(source, copy, parent);
        return true;
    }
    CStringUTF8 text;
    if (element.NodeValue(text, 1, 1, nullptr) && !text.IsEmpty()) {
        copy.NodeValue(text, 0, 1, nullptr);
    }
    if (parent != nullptr) AfterChild(*parent, copy);
    return true;
}

void CQXDEXMLPreparer::Open(const Source& source, const UXXmlWrapperBase& copy, STRECURSE* parent) {
    auto record = std::make_unique<STRECURSE>();
    record->node = copy;
    if (parent != nullptr) {
        record->siblings = parent->detector.get();
        record->place = parent->position;
    }
    bool isArray = true;
    if (!source.members.empty()) {
        record->wrapped = source.members;
        record->total = static_cast<int>(source.members.size());
        record->elementTag = tag_of(source.members.front());
    } else {
        CQXMLChildrenAnalyzerAndChanger analyzer(source.element);
        isArray = analyzer.IsArray();
        record->total = analyzer.Total();
        source.element.FirstChild(&record->nextChild);
        record->elementTag = tag_of(record->nextChild);
        if (analyzer.NeedsGrouping()) {
            record->grouped = analyzer.Grouped();
            record->total = static_cast<int>(record->grouped.size());
        }
    }
    if (isArray) record->detector = std::make_unique<STRECURSE::CQElementTypeDetectHelper>();
    record->limit = Limit(isArray);
    open_.push_back(std::move(record));
}

int CQXDEXMLPreparer::Limit(bool isArray) const {
    if ((flags_ & kPreview) == 0) return kNoLimit;
    return isArray ? kPreviewElements : kPreviewChildren;
}

// Makes the type of a finished child agree with the other elements of the array that its parent
// belongs to, and labels it when its parent is an array.
void CQXDEXMLPreparer::AfterChild(STRECURSE& record, UXXmlWrapperBase& copy) {
    if (record.siblings != nullptr) {
        int size = 0;
        const bool isArray = copy.LoadXDEArraySize(&size) != 0 && size >= 1;
        if (record.siblings->Note(record.position, tag_of(copy), isArray, record.place)) {
            copy.SaveXDEArraySize(1);
        }
    }
    if (record.detector != nullptr) {
        CStringUTF8 label = record.elementTag;
        label.AppendFormat("_%u", static_cast<unsigned int>(record.position));
        copy.SetPropertyValue(kLabel, label);
    }
    ++record.position;
}

// Intended: the size of an array counts all its elements, also those that a preview leaves out, so
// that the import dialog shows the true length.
void CQXDEXMLPreparer::Close(STRECURSE& record) {
    if (record.detector == nullptr) return;
    record.detector->MarkEarlierElements(record.node);
    record.node.SaveXDEArraySize(record.total);
}

}  // namespace

extern "C" int uxtree_XDE_prepare_XML(UXXmlWrapperBase* tree, const char* path, DWORD flags) {
    return at_boundary(kCannotAdd, [&] {
        if (!given(path) || UXAccess(path, kReadPermission) != 0) return kCannotRead;
        UXXmlWrapperBase description;
        if (!description.load(path, 0, false)) return kCannotLoad;
        if (!usable(tree)) return kNoTree;
        return CQXDEXMLPreparer(description, *tree, flags).Run();
    });
}
