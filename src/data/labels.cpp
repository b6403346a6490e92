// Display labels of nodes, combined labels, and their parts replaced.
#include "uxtree/data/labels.h"

#include <algorithm>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "uxtree/tree/lookup.h"

#include "data/labels_detail.h"
#include "frame/guards.h"
#include "frame/node_values.h"
#include "frame/results.h"
#include "frame/script_args.h"
#include "frame/text.h"
#include "frame/walk.h"
#include "marks/names.h"

using namespace ux;

namespace {

constexpr char kPartSeparator[] = " (\" - \") ";
constexpr char kPlainSeparator[] = " - ";

// Occurrences may overlap, so that each repeats most of the label.
constexpr std::size_t kMostGrowth = std::size_t{1} << 24;

enum : int { kModeTag = 0, kModeLabel = 1, kModeFull = 2 };

CStringUTF8 enclosed(const CStringUTF8& text) {
    return "(" + text + ")";
}

// --- node labels -------------------------------------------------------------------------------

CStringUTF8 tag_with_headers(const UXXmlWrapperBase& node, const CStringUTF8& tag,
                             const CStringUTF8& label) {
    CStringUTF8 text = tag + enclosed(label);
    CStringUTF8 name;
    CStringUTF8 header;
    for (int k = 0;; ++k) {
        name.Format("SubHeader%d", k);
        if (!node.GetPropertyValue(name, header, 0)) return text;
        text += enclosed(header);
    }
}

CStringUTF8 node_label(const UXXmlWrapperBase& node, int mode) {
    if (mode < kModeTag || mode > kModeFull) return {};
    CStringUTF8 tag = tag_of(node);
    if (mode == kModeTag) return tag;
    const CStringUTF8 label = attribute_of(node, kLabel);
    if (label.IsEmpty()) return tag;
    return mode == kModeLabel ? label : tag_with_headers(node, tag, label);
}

// --- replacing a part of a combined label ------------------------------------------------------

// The texts that locate a part, and where each one next occurs.
class Locator {
public:
    Locator(std::string_view label, const CWBOStringArray& find) : label_(label) {
        for (int i = 0; i < find.GetSize(); ++i) finds_.push_back({view_of(find[i]), kUnknown});
    }

    struct Place {
        std::size_t head;    // where the first text begins
        std::size_t middle;  // behind the last text
        std::size_t tail;    // at the next ")", or the end of the label
    };
    // False when a text is missing from `start` on. A position found for an earlier start is still
    // the first one as long as it is not behind the new start.
    bool locate(std::size_t start, Place& place) {
        for (Find& find : finds_) {
            if (find.position == kUnknown || find.position < start) {
                find.position = label_.find(find.text, start);
            }
            if (find.position == std::string_view::npos) return false;
        }
        const Find& last = finds_.back();
        place.head = finds_.front().position;
        place.tail = std::min(label_.find(')', last.position + 1), label_.size());
        // A ")" inside the text itself leaves no middle.
        place.middle = std::min(last.position + last.text.size(), place.tail);
        return true;
    }

private:
    static constexpr std::size_t kUnknown = std::string_view::npos - 1;
    struct Find {
        std::string_view text;
        std::size_t position;
    };
    std::string_view label_;
    std::vector<Find> finds_;
};

CStringUTF8 combined_replacements(const CWBOStringArray& replacements, std::string_view middle) {
    CStringUTF8 kept;
    kept.Assign(middle.data(), middle.size());
    CWBOStringArray parts;
    for (int i = 0; i < replacements.GetSize(); ++i) parts.Add(replacements[i] + kept);
    CStringUTF8 combined;
    _tree_combine_data_label(&combined, &parts, false, false, false);
    return combined;
}

// One rewritten occurrence: the text in front of it, and what stands in its place.
struct Rewritten {
    std::string_view head;
    CStringUTF8 combined;
};

// Joins from the end, because an occurrence loses its outer parentheses when the text behind it,
// as rewritten, begins with the ")" that closed the replaced part.
std::string join(std::vector<Rewritten>& occurrences, std::string_view rest) {
    char behind = rest.empty() ? '\0' : rest.front();
    for (auto one = occurrences.rbegin(); one != occurrences.rend(); ++one) {
        if (behind == ')') one->combined.TrimLeft('(').TrimRight(')');
        if (!one->combined.IsEmpty()) behind = one->combined[0];
        if (!one->head.empty()) behind = one->head.front();
    }
    std::string text;
    for (const Rewritten& one : occurrences) {
        text += one.head;
        text += view_of(one.combined);
    }
    text += rest;
    return text;
}

// True when the label was rewritten into out; otherwise out is the label.
bool replace_part(CStringUTF8& out, const CStringUTF8& label, const CWBOStringArray& find,
                  const CWBOStringArray& replacements, const char* prefix) {
    if (find.IsEmpty()) {
        out = combined_replacements(replacements, {});
        return true;
    }
    const std::string text(view_of(label));
    const std::string_view whole = text;
    std::vector<Rewritten> occurrences;
    std::size_t start = 0;
    std::size_t length = 0;  // of what is rewritten so far
    if (!given(prefix) || whole.rfind(prefix, 0) == 0) {
        Locator locator(whole, find);
        Locator::Place place{};
        while (start < whole.size() || occurrences.empty()) {
            if (!locator.locate(start, place)) break;
            occurrences.push_back(
                {whole.substr(start, place.head - start),
                 combined_replacements(replacements,
                                       whole.substr(place.middle, place.tail - place.middle))});
            const Rewritten& last = occurrences.back();
            length += last.head.size() + view_of(last.combined).size();
            if (length > whole.size() + kMostGrowth) {
                out = label;
                return false;
            }
            start = place.tail;
        }
    }
    const std::string joined = join(occurrences, whole.substr(start));
    out.Assign(joined.data(), joined.size());
    return !occurrences.empty();
}

// Rewrites the label of node and of everything below it; the number of labels that changed.
template <typename Rewrite>
int rewrite_labels(UXXmlWrapperBase& top, Rewrite&& rewrite) {
    int changed = 0;
    CStringUTF8 label;
    const auto visit = [&](UXXmlWrapperBase& node) {
        if (node.GetPropertyValue(kLabel, label, 0) && rewrite(label)) {
            node.SetPropertyValue(kLabel, label);
            ++changed;
        }
    };
    visit(top);
    visit_below(top, visit);
    return changed;
}

bool shows_nothing(UXXmlWrapperBase& node) {
    return text_of(node).Trim(' ').IsEmpty();
}

}  // namespace

namespace ux {

int _tree_combine_data_label(CStringUTF8* out, const CWBOStringArray* labels, bool addPrefix,
                             bool parenthesizeAlways, bool strict) {
    if (out == nullptr) return kNoLabels;
    if (labels == nullptr || labels->IsEmpty()) {
        out->Empty();
        return kNoLabels;
    }
    const int count = labels->GetSize();
    int result = kLabelsCombined;
    CStringUTF8 combined;
    for (int i = 0; i < count && result == kLabelsCombined; ++i) {
        CStringUTF8 part = (*labels)[i];
        // Intended: the first five characters go wherever the marker stands; it is expected there.
        const bool marked = part.Find(kExpressionMarker) >= 0;
        if (marked) part = part.Mid(kExpressionMarkerLength);
        if (!marked && strict) {
            result = kLabelWithoutPrefix;
            break;
        }
        if (i > 0) {
            combined += kPartSeparator;
        } else if (addPrefix) {
            combined = kExpressionMarker;
        }
        const bool enclose = part.Find('(') < 0 && (parenthesizeAlways || count >= 2);
        combined += enclose ? enclosed(part) : part;
    }
    *out = std::move(combined);
    return result;
}

}  // namespace ux

extern "C" int uxtree_combine_data_label(CStringUTF8* out, UXScriptObject* labels, bool addPrefix,
                                         bool parenthesizeAlways, bool strict) {
    return at_boundary(kFail, [&] {
        if (out == nullptr) return kFail;
        const CWBOStringArray* const array = string_array(labels);
        CStringUTF8 combined;
        const int result =
            _tree_combine_data_label(&combined, array, addPrefix, parenthesizeAlways, strict);
        if (result == kLabelWithoutPrefix) UXJoinTokens(combined, *array, kPlainSeparator);
        *out = std::move(combined);  // last, since it may be one of the labels
        return result == kNoLabels ? kFail : kOk;
    });
}

extern "C" CStringUTF8 uxtree_get_node_label(UXXmlWrapperBase* node, int mode) {
    return at_boundary(CStringUTF8(),
                       [&] { return usable(node) ? node_label(*node, mode) : CStringUTF8(); });
}

extern "C" int uxtree_get_localization_node(UXXmlWrapperBase* out, UXXmlWrapperBase* tree, int id,
                                            int fallbackId, int parentId, int checkEmpty,
                                            int category) {
    return at_boundary(kFail, [&] {
        if (any_null(out) || !usable(tree)) return kFail;
        UXXmlWrapperBase top = *tree;  // out may be the handle of the tree
        if (category < 1)
            category = call_out(UXGetHostServices().helpCategory, *out, top, id, category);
        const bool found =
            uxtree_find_node_by_dataID(out, &top, id, parentId, category, 0, -1) != 0;
        if (found && (checkEmpty == 0 || !shows_nothing(*out))) return kOk;
        return uxtree_find_node(&top, out, kDataId, fallbackId, false, 0, -1);
    });
}

extern "C" bool uxtree_get_replaced_combined_label(CStringUTF8* out, CStringUTF8* label,
                                                   UXScriptObject* find,
                                                   UXScriptObject* replacements,
                                                   const char* prefix) {
    return at_boundary(false, [&] {
        const CWBOStringArray* const finds = string_array(find);
        const CWBOStringArray* const texts = string_array(replacements);
        if (any_null(out, label) || any_null(finds, texts)) return false;
        return replace_part(*out, *label, *finds, *texts, prefix);
    });
}

extern "C" int uxtree_recursively_replace_label_attributes(UXXmlWrapperBase* node,
                                                           const char* oldText,
                                                           const char* newText) {
    return at_boundary(0, [&] {
        if (!usable(node) || !given(oldText)) return 0;
        return rewrite_labels(*node, [&](CStringUTF8& label) {
            return label.Replace(oldText, text_or(newText, "")) > 0;
        });
    });
}

extern "C" int uxtree_recursively_replace_combined_label_attributes(UXXmlWrapperBase* node,
                                                                    UXScriptObject* find,
                                                                    UXScriptObject* replacements,
                                                                    const char* prefix) {
    return at_boundary(0, [&] {
        const CWBOStringArray* const finds = string_array(find);
        const CWBOStringArray* const texts = string_array(replacements);
        if (!usable(node) || any_null(finds, texts)) return 0;
        CStringUTF8 rewritten;
        return rewrite_labels(*node, [&](CStringUTF8& label) {
            if (!replace_part(rewritten, label, *finds, *texts, prefix) || rewritten == label) {
                return false;
            }
            label = rewritten;
            return true;
        });
    });
}
