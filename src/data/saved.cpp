// Values with identifiers kept as a small document, in a file or in a tree.
#include "uxtree/data/saved.h"

#include <array>
#include <charconv>
#include <string_view>
#include <utility>

#include "frame/guards.h"
#include "frame/node_values.h"
#include "frame/results.h"
#include "frame/script_args.h"
#include "frame/text.h"
#include "frame/walk.h"
#include "marks/names.h"

using namespace ux;

namespace {

constexpr char kSettings[] = "Settings";
constexpr char kComment[] = "Comment";
constexpr std::string_view kEntryPrefix = "node";

// "node" and the identifier, e.g. node12 or node-3.
class EntryTag {
public:
    EntryTag() { kEntryPrefix.copy(text_.data(), kEntryPrefix.size()); }
    const char* with(int id) {
        char* const number = text_.data() + kEntryPrefix.size();
        *std::to_chars(number, text_.data() + text_.size() - 1, id).ptr = '\0';
        return text_.data();
    }

private:
    std::array<char, 20> text_{};
};

int id_of_tag(const CStringUTF8& tag) {
    const std::size_t prefix = view_of(tag).starts_with(kEntryPrefix) ? kEntryPrefix.size() : 0;
    return UXLeadingInt(static_cast<const char*>(tag) + prefix);
}

// Turns target into the document's root.
bool make_root(UXXmlWrapperBase& target) {
    UXXmlWrapperBase document;
    UXXmlWrapperBase settings;
    if (!document.CreateNew(0, nullptr) ||
        !document.AddTextNode(&settings, kSettings, kSettings, 0, 0, nullptr)) {
        return false;
    }
    if (!target.IsNodeValid() && !target.CreateNew(0, nullptr)) return false;
    return target.ReplaceByNodeCopy(&settings, 0, 0) != 0;
}

bool build(UXXmlWrapperBase& target, const CArray<int, int>& ids, const CWBOStringArray& values,
           const char* comment, const CWBOStringArray* labels) {
    if (ids.IsEmpty() || ids.GetSize() != values.GetSize()) return false;
    if (!make_root(target)) return false;
    EntryTag tag;
    for (int i = 0; i < ids.GetSize(); ++i) {
        UXXmlWrapperBase entry;
        if (!target.AddTextNode(&entry, tag.with(ids[i]), values[i], -1, 0, nullptr)) return false;
        if (labels != nullptr && i < labels->GetSize()) entry.SetLabel((*labels)[i]);
    }
    if (comment != nullptr) target.SetPropertyValue(kComment, CStringUTF8(comment));
    return true;
}

void read(UXXmlWrapperBase& document, CArray<int, int>& ids, CWBOStringArray& values,
          CStringUTF8* comment, CWBOStringArray* labels) {
    // First, since the comment may be a text of an array that grows.
    if (comment != nullptr) document.GetPropertyValue(kComment, *comment, 0);
    CStringUTF8 tag;
    CStringUTF8 scratch;
    const UXNameKey labelName(kLabel);
    for (const UXXmlWrapperBase& entry : children(document)) {
        std::string_view text;
        entry.GetTagName(tag);
        ids.Add(id_of_tag(tag));
        entry.NodeValueView(text, scratch);
        values.AddText(text);
        if (labels != nullptr) labels->AddText(view_of(entry, labelName));
    }
}

int as_result(bool done) {
    return done ? kOk : kFail;
}

}  // namespace

bool vctree_save_values_with_ids(UXXmlWrapperBase* target, CArray<int, int>* ids,
                                 CWBOStringArray* values, const char* comment,
                                 CWBOStringArray* labels) {
    return at_boundary(false, [&] {
        if (!usable(target) || any_null(ids, values)) return false;
        return build(*target, *ids, *values, comment, labels);
    });
}

int vctree_save_values_with_ids(const char* path, CArray<int, int>* ids, CWBOStringArray* values,
                                const char* comment, CWBOStringArray* labels) {
    return at_boundary(kFail, [&] {
        if (!given(path) || any_null(ids, values)) return kFail;
        UXXmlWrapperBase document;
        return as_result(build(document, *ids, *values, comment, labels) &&
                         document.Save(path, 0) != 0);
    });
}

bool vctree_read_values_with_ids(const char* path, CArray<int, int>* ids, CWBOStringArray* values,
                                 CStringUTF8* comment) {
    return at_boundary(false, [&] {
        if (ids != nullptr) ids->RemoveAll();
        CWBOStringArray before;  // path and comment may stand in it
        if (values != nullptr) before = std::exchange(*values, {});
        if (!given(path) || any_null(ids, values)) return false;
        UXXmlWrapperBase document;
        if (!document.load(path, 0, false)) return false;
        read(document, *ids, *values, comment, nullptr);
        return true;
    });
}

bool vctree_set_theme(UXXmlWrapperBase* target, CArray<int, int>* ids, CWBOStringArray* values,
                      const char* comment) {
    return at_boundary(false, [&] {
        if (any_null(target) || any_null(ids, values)) return false;
        return build(*target, *ids, *values, comment, nullptr);
    });
}

void vctree_get_theme(UXXmlWrapperBase* document, CArray<int, int>* ids, CWBOStringArray* values,
                      CStringUTF8* comment, CWBOStringArray* labels) {
    at_boundary([&] {
        if (!usable(document) || any_null(ids, values)) return;
        read(*document, *ids, *values, comment, labels);
    });
}

extern "C" int uxtree_save_values_with_ids(UXXmlWrapperBase* target, UXScriptObject* ids,
                                           UXScriptObject* values, const char* comment,
                                           UXScriptObject* labels) {
    return at_boundary(kFail, [&] {
        CWBOStringArray* const labelArray = string_array(labels);
        if (refused(labels, labelArray)) return kFail;
        return as_result(vctree_save_values_with_ids(target, int_vector(ids), string_array(values),
                                                     comment, labelArray));
    });
}

extern "C" int uxtree_tree_save_values_with_ids(const char* path, UXScriptObject* ids,
                                                UXScriptObject* values, const char* comment,
                                                UXScriptObject* labels) {
    return at_boundary(kFail, [&] {
        CWBOStringArray* const labelArray = string_array(labels);
        if (refused(labels, labelArray)) return kFail;
        return vctree_save_values_with_ids(path, int_vector(ids), string_array(values), comment,
                                           labelArray);
    });
}

extern "C" int uxtree_tree_read_values_with_ids(const char* path, UXScriptObject* ids,
                                                UXScriptObject* values, CStringUTF8* comment) {
    return at_boundary(kFail, [&] {
        return as_result(
            vctree_read_values_with_ids(path, int_vector(ids), string_array(values), comment));
    });
}
