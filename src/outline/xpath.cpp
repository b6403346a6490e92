// Path queries over a tree: reading a path, and following it step by step.
#include "uxtree/outline/xpath.h"

#include <algorithm>
#include <climits>
#include <cstddef>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "frame/guards.h"
#include "frame/node_values.h"
#include "frame/script_args.h"
#include "frame/walk.h"

using namespace ux;
namespace {

constexpr int kNothingGiven = 1;
constexpr int kNoPath = 4;
constexpr int kOtherRoot = 5;
constexpr int kEvaluated = 0;

bool names_attribute(const std::string& step) {
    return !step.empty() && step[0] == '@';
}

// The steps of a path that starts with "/".
std::vector<std::string> split_path(const char* path) {
    std::vector<std::string> steps(1);
    for (const char* next = path + 1; *next != '\0'; ++next) {
        if (*next != '|') {
            steps.back() += *next;
            continue;
        }
        ++next;
        // A separator at the very end adds nothing.
        if (*next == '\0') break;
        // Intended: whatever stands behind a separator begins the next step, even another "|".
        steps.emplace_back(1, *next);
    }
    return steps;
}

// Receives the matched nodes in order and collects their values.
class Collector {
public:
    // attribute is null where the texts of leaves are wanted.
    Collector(const char* attribute, bool table)
        : attribute_(attribute), readsAttribute_(attribute != nullptr), table_(table) {}

    void collect(UXXmlWrapperBase& node) {
        if (table_) starts_.push_back(values_.GetSize());
        if (readsAttribute_) {
            collect_attribute(node);
        } else if (is_leaf(node)) {
            collect_text(node);
        } else {
            visit_below(node, [this](UXXmlWrapperBase& below) {
                if (is_leaf(below)) collect_text(below);
            });
        }
        if (table_) keep_labels_of_longest();
    }

    void give_list(CWBOStringArray& values, CArray<unsigned int>& offsets) {
        offsets.RemoveAll();
        offsets.Add(static_cast<unsigned int>(values.GetSize()));
        if (values.IsEmpty()) std::swap(values, values_);
        for (int i = 0; i < values_.GetSize(); ++i) values.Add(std::move(values_[i]));
        offsets.Add(static_cast<unsigned int>(values.GetSize()));
    }

    // Columns are the values at the same place of every node; the labels name them.
    void give_table(CWBOStringArray& values, CArray<unsigned int>& offsets,
                    CWBOStringArray& names) {
        const std::size_t rows = starts_.size();
        const std::size_t columns = longestLabels_.size();
        if (columns > 0 && rows > INT_MAX / columns) throw std::length_error("table too large");
        names.SetSize(static_cast<int>(columns));
        for (std::size_t k = 0; k < columns; ++k) names[static_cast<int>(k)] = longestLabels_[k];
        values.RemoveAll();
        values.SetSize(static_cast<int>(rows * columns));
        for (std::size_t row = 0; row < rows; ++row) {
            const int start = starts_[row];
            const int end = row + 1 < rows ? starts_[row + 1] : values_.GetSize();
            for (int i = start; i < end; ++i) {
                values[(i - start) * static_cast<int>(rows) + static_cast<int>(row)] =
                    std::move(values_[i]);
            }
        }
        offsets.SetSize(static_cast<int>(columns + 1));
        for (std::size_t k = 0; k <= columns; ++k) {
            offsets[static_cast<int>(k)] = static_cast<unsigned int>(k * rows);
        }
    }

private:
    void collect_attribute(const UXXmlWrapperBase& node) {
        std::string_view value;
        if (node.GetPropertyView(attribute_, value) == 0) return;
        values_.AddText(value);
        if (table_) labels_.push_back(CStringUTF8("@") + attribute_.c_str());
    }

    // Intended: a leaf without text contributes nothing.
    void collect_text(const UXXmlWrapperBase& leaf) {
        std::string_view text;
        if (leaf.NodeValueView(text, scratch_) == 0) return;
        values_.AddText(text);
        if (table_) labels_.push_back(tag_of(leaf));
    }

    // Intended: of several nodes with the most values, the first one names the columns.
    void keep_labels_of_longest() {
        if (labels_.size() > longestLabels_.size()) longestLabels_.swap(labels_);
        labels_.clear();
    }

    UXNameKey attribute_;
    bool readsAttribute_;
    bool table_;
    CStringUTF8 scratch_;
    CWBOStringArray values_;
    std::vector<int> starts_;          // where each node's values begin; tables only
    std::vector<CStringUTF8> labels_;  // of the node at hand; tables only
    std::vector<CStringUTF8> longestLabels_;
};

// Hands the nodes that the steps lead to, in document order, to visit. Steps are child tags; an empty
// one is a tag that no node has.
template <typename Visit>
void visit_matches(UXXmlWrapperBase& root, const std::vector<std::string>& steps, Visit&& visit) {
    if (steps.empty()) return visit(root);
    std::vector<UXNameKey> tags;
    tags.reserve(steps.size());
    for (const std::string& step : steps) tags.emplace_back(step.c_str());
    UXXmlWrapperBase node;
    UXXmlWrapperBase next;
    if (!root.FindChild(tags[0], &node)) return;
    for (std::size_t level = 0;;) {
        if (level + 1 == tags.size()) {
            visit(node);
        } else if (node.FindChild(tags[level + 1], &next)) {
            node = std::move(next);
            ++level;
            continue;
        }
        while (!node.NextSibling(tags[level], &next)) {
            if (level-- == 0) return;
            step_to_parent(node);
        }
        node = std::move(next);
    }
}

}  // namespace

int TreeEvalXPath(CWBOStringArray* values, CArray<unsigned int>* offsets, CWBOStringArray* names,
                  UXXmlWrapperBase* tree, const char* /*reserved*/, const char* path, bool table) {
    return at_boundary(kNothingGiven, [&] {
        if (any_null(values, offsets, names, tree, path)) return kNothingGiven;
        if (*path != '/') return kNoPath;
        std::vector<std::string> steps = split_path(path);
        CStringUTF8 rootTag;
        if (tree->GetTagName(rootTag) == 0 || steps[0].empty() ||
            rootTag.Compare(steps[0].c_str()) != 0) {
            return kOtherRoot;
        }
        const std::string last = steps.back();
        // Intended: the last step decides what is read, even when stepping stopped before it.
        Collector collector(names_attribute(last) ? last.c_str() + 1 : nullptr, table);
        steps.erase(steps.begin());
        steps.erase(std::find_if(steps.begin(), steps.end(), names_attribute), steps.end());
        visit_matches(*tree, steps, [&](UXXmlWrapperBase& node) { collector.collect(node); });
        if (table) {
            collector.give_table(*values, *offsets, *names);
        } else {
            collector.give_list(*values, *offsets);
            names->Add(CStringUTF8(last.c_str()));
        }
        return kEvaluated;
    });
}

extern "C" int uxtree_xpath(UXScriptObject* values, UXScriptObject* offsets, UXScriptObject* names,
                            UXXmlWrapperBase* tree, const char* reserved, const char* path,
                            bool table) {
    return at_boundary(kNothingGiven, [&] {
        CWBOStringArray* const valueTexts = string_array(values);
        CArray<int, int>* const offsetNumbers = int_vector(offsets);
        CWBOStringArray* const nameTexts = string_array(names);
        if (any_null(valueTexts, offsetNumbers, nameTexts)) return kNothingGiven;
        CArray<unsigned int> positions;
        const int result =
            TreeEvalXPath(valueTexts, &positions, nameTexts, tree, reserved, path, table);
        if (result != kEvaluated) return result;
        offsetNumbers->SetSize(positions.GetSize());
        for (int i = 0; i < positions.GetSize(); ++i) {
            (*offsetNumbers)[i] = static_cast<int>(positions[i]);
        }
        return result;
    });
}
