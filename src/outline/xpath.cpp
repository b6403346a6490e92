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
    Collector(const char* attribute, bool table) : attribute_(attribute), table_(table) {}

    void collect(UXXmlWrapperBase& node) {
        starts_.push_back(values_.size());
        if (attribute_ != nullptr) {
            collect_attribute(node);
        } else if (is_leaf(node)) {
            collect_text(node);
        } else {
            visit_below(node, [this](UXXmlWrapperBase& below) {
                if (is_leaf(below)) collect_text(below);
                return Step::kIntoBranch;
            });
        }
        keep_labels_of_longest();
    }

    void give_list(CWBOStringArray& values, CArray<unsigned int>& offsets) {
        offsets.RemoveAll();
        offsets.Add(static_cast<unsigned int>(values.GetSize()));
        for (CStringUTF8& value : values_) values.Add(std::move(value));
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
            const std::size_t start = starts_[row];
            const std::size_t end = row + 1 < rows ? starts_[row + 1] : values_.size();
            for (std::size_t i = start; i < end; ++i) {
                values[static_cast<int>((i - start) * rows + row)] = std::move(values_[i]);
            }
        }
        offsets.SetSize(static_cast<int>(columns + 1));
        for (std::size_t k = 0; k <= columns; ++k) {
            offsets[static_cast<int>(k)] = static_cast<unsigned int>(k * rows);
        }
    }

private:
    void collect_attribute(const UXXmlWrapperBase& node) {
        CStringUTF8 value;
        if (node.HasProperty(attribute_, 0) == 0 ||
            node.GetPropertyValue(attribute_, value, 0) == 0) {
            return;
        }
        values_.push_back(std::move(value));
        if (!table_) return;
        CStringUTF8 label("@");
        label += attribute_;
        labels_.push_back(std::move(label));
    }

    // Intended: a leaf without text contributes nothing.
    void collect_text(UXXmlWrapperBase& leaf) {
        CStringUTF8 text;
        if (leaf.NodeValue(text, 1, 1, nullptr) == 0) return;
        values_.push_back(std::move(text));
        if (!table_) return;
        CStringUTF8 label;
        leaf.GetTagName(label);
        labels_.push_back(std::move(label));
    }

    // Intended: of several nodes with the most values, the first one names the columns.
    void keep_labels_of_longest() {
        if (labels_.size() > longestLabels_.size()) longestLabels_.swap(labels_);
        labels_.clear();
    }

    const char* attribute_;
    bool table_;
    std::vector<CStringUTF8> values_;
    std::vector<std::size_t> starts_;  // where each node's values begin
    std::vector<CStringUTF8> labels_;  // of the node at hand; tables only
    std::vector<CStringUTF8> longestLabels_;
};

// The children that a step leads to. An empty step is a tag that no node has.
CArray<UXXmlWrapperBase, UXXmlWrapperBase> matching_children(const UXXmlWrapperBase& node,
                                                             const std::string& tag) {
    CArray<UXXmlWrapperBase, UXXmlWrapperBase> matches;
    if (!tag.empty()) node.GetArrayOfChildren(matches, tag.c_str(), nullptr, 1);
    return matches;
}

// Hands the nodes that the steps lead to, in document order, to visit. Steps are child tags.
template <typename Visit>
void visit_matches(UXXmlWrapperBase& root, const std::vector<std::string>& steps, Visit&& visit) {
    if (steps.empty()) return visit(root);
    struct Level {
        CArray<UXXmlWrapperBase, UXXmlWrapperBase> nodes;
        int next;
    };
    std::vector<Level> levels;
    levels.push_back({matching_children(root, steps[0]), 0});
    while (!levels.empty()) {
        Level& level = levels.back();
        if (level.next == level.nodes.GetSize()) {
            levels.pop_back();
            continue;
        }
        UXXmlWrapperBase& node = level.nodes[level.next++];
        if (levels.size() == steps.size()) {
            visit(node);
        } else {
            levels.push_back({matching_children(node, steps[levels.size()]), 0});
        }
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
