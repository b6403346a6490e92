// The input-data table of a report: rows of data sets, parameters and their columns.
#include <algorithm>
#include <array>
#include <limits>
#include <vector>

#include "uxtree/analysis/fitter.h"
#include "uxtree/data/ids.h"
#include "uxtree/report/report.h"
#include "uxtree/tree/lookup.h"

#include "data/ids_detail.h"
#include "data/labels_detail.h"
#include "frame/guards.h"
#include "frame/node_values.h"
#include "frame/results.h"
#include "frame/text.h"
#include "frame/walk.h"
#include "frame/wrapping.h"
#include "marks/ids.h"
#include "marks/names.h"

using namespace ux;

namespace {

// A row's ID is a one-set identifier: the data set, and an index of 1900 plus the variable.
constexpr int kVariableBase = 1900;
constexpr unsigned kIndexMask = 0xFFFF;
constexpr unsigned kSetShift = 16;

struct Column {
    int number;
    int id;
    const char* label;
};
constexpr std::size_t kParameterCount = 3;
constexpr std::array<Column, 5 + kParameterCount> kColumns{{{1, 0x1C000, "Dep/Indep"},
                                                            {2, 0x1B000, "Data"},
                                                            {3, 0x1E000, "Range"},
                                                            {4, 0x1D000, "Weight Type"},
                                                            {5, 0x1F000, "Weight Data"},
                                                            {6, 0x20000, "a"},
                                                            {7, 0x20001, "b"},
                                                            {8, 0x20002, "c"}}};
constexpr const Column& kRole = kColumns[0];
constexpr const Column& kDataColumn = kColumns[1];
constexpr const Column& kRange = kColumns[2];
constexpr const Column& kWeightType = kColumns[3];
constexpr const Column& kWeightData = kColumns[4];
// Intended: a parameter keeps its column when the ones before it are absent.
constexpr const Column& parameter_column(std::size_t parameter) {
    return kColumns[5 + parameter];
}

// perSet * set + variable; the product wraps, as the sum does.
int place_of(int perSet, int set, int variable) {
    const unsigned first = static_cast<unsigned>(perSet) * static_cast<unsigned>(set);
    return wrapping_sum(static_cast<int>(first), variable);
}

// The host keeps the localized text in one shared string, hence the copy.
CStringUTF8 localized(const char* english) {
    return given(english) ? CStringUTF8(_tree_localize(english)) : CStringUTF8();
}

// Finds or creates a labelled child; a found one keeps its ID.
UXXmlWrapperBase labelled_child(UXXmlWrapperBase& parent, const char* tag, int id,
                                const char* english) {
    UXXmlWrapperBase child;
    uxtree_tree_check_get_node(&child, &parent, tag, id, kLabel, localized(english));
    return child;
}

UXXmlWrapperBase cell_of(UXXmlWrapperBase& row, const Column& column) {
    return labelled_child(row, numbered("C", column.number), column.id, column.label);
}

// --- parameters ----------------------------------------------------------------------------------

// The nodes of a tree by depth-first number, branches counted as well as leaves: those from first
// to below end. They are numbered once, because every row of a table asks for three of them.
class NumberedNodes {
public:
    explicit NumberedNodes(const UXXmlWrapperBase* tree, int first = 0,
                           int end = std::numeric_limits<int>::max())
        : first_(std::max(first, 0)) {
        if (!usable(tree) || end < 1) return;
        int number = 0;
        visit_below(*tree, [&](UXXmlWrapperBase& node) {
            if (number >= first_) nodes_.push_back(node);
            return ++number < end ? Step::kGoOn : Step::kStop;
        });
    }
    UXXmlWrapperBase* at(int number) {
        if (number < first_) return nullptr;
        const auto place = static_cast<std::size_t>(number - first_);
        return place < nodes_.size() ? &nodes_[place] : nullptr;
    }

private:
    int first_;
    std::vector<UXXmlWrapperBase> nodes_;
};

// The number of a variable's first parameter.
int first_parameter(int variablePlace) {
    return place_of(static_cast<int>(kParameterCount), variablePlace, 0);
}

// A missing node leaves the cell's value.
void copy_into_cell(UXXmlWrapperBase* from, UXXmlWrapperBase& cell) {
    if (from == nullptr) return;
    CStringUTF8 text = text_of(*from);
    cell.NodeValue(text, 0, 1, nullptr);
}

// --- one row -------------------------------------------------------------------------------------

struct Weighting {
    explicit Weighting(int method) {
        uxtree_fitter_get_weight_mth_info(method, &name, &usesData, &uses[0], &uses[1], &uses[2]);
    }
    CStringUTF8 name;  // "" for an unknown method, which uses nothing
    int usesData = 0;
    std::array<int, kParameterCount> uses{};
};

void write_reference(UXXmlWrapperBase& row, const Column& column, int dataIndex, char type,
                     int suffix, int tailNumber) {
    CStringUTF8 text;
    report_get_escaped_data_string(&text, dataIndex, 0, type, static_cast<char>(suffix), 0, 0,
                                   tailNumber);
    cell_of(row, column).SetString(text);
}

void write_parameters(UXXmlWrapperBase& row, const Weighting& weighting,
                      const UXXmlWrapperBase* paramTree, int variablePlace) {
    const int first = first_parameter(variablePlace);
    NumberedNodes nodes(paramTree, first, wrapping_sum(first, static_cast<int>(kParameterCount)));
    for (std::size_t k = 0; k < kParameterCount; ++k) {
        if (!weighting.uses[k]) continue;
        UXXmlWrapperBase cell = cell_of(row, parameter_column(k));
        copy_into_cell(nodes.at(wrapping_sum(first, static_cast<int>(k))), cell);
    }
}

// --- refreshing ----------------------------------------------------------------------------------

// False when the node is no row of a variable.
bool read_row_id(const UXXmlWrapperBase& node, int& set, int& variable) {
    int id = 0;
    if (!node.GetID(id)) return false;
    const unsigned high = static_cast<unsigned>(id) >> kSetShift;
    const unsigned index = static_cast<unsigned>(id) & kIndexMask;
    if ((high & kOneSetBit) == 0 || index < static_cast<unsigned>(kVariableBase)) return false;
    set = static_cast<int>(high & ~kOneSetBit);
    variable = static_cast<int>(index) - kVariableBase;
    return true;
}

void refresh_row(UXXmlWrapperBase& row, NumberedNodes& nodes, int variablePlace) {
    for (const Column& column : kColumns) {
        UXXmlWrapperBase cell;
        if (!row.FindChild(numbered("C", column.number), &cell, 1)) continue;
        cell.SetLabel(localized(column.label));
        const int k = column.number - parameter_column(0).number;
        if (k >= 0) copy_into_cell(nodes.at(wrapping_sum(first_parameter(variablePlace), k)), cell);
    }
}

}  // namespace

extern "C" {

int report_make_input_data_table_var_row(UXXmlWrapperBase* row, UXXmlWrapperBase* table, int set,
                                         int variable, int dependent, int dataIndex, int suffix,
                                         int tailNumber, int paramSet, int variablesPerSet,
                                         int weightMethod, UXXmlWrapperBase* paramTree,
                                         int weightColumn, const char* rowLabel, int paramIndex) {
    return at_boundary(kFail, [&] {
        if (!usable(table)) return kFail;
        const int number = wrapping_sum(place_of(variablesPerSet, set, variable), 1);
        // Intended: the number counts on through the sets, the ID names set and variable.
        const int id = uxtree_make_one_set_ID(
            static_cast<unsigned short>(wrapping_sum(variable, kVariableBase)),
            static_cast<unsigned short>(set));
        UXXmlWrapperBase place = labelled_child(*table, numbered("R", number), id, rowLabel);
        if (!usable(place)) return kFail;

        const Weighting weighting(weightMethod);
        cell_of(place, kRole).SetString(dependent ? "Dep" : "Indep");
        write_reference(place, kDataColumn, dataIndex, 'P', suffix, tailNumber);
        write_reference(place, kRange, dataIndex, 'G', suffix, tailNumber);
        cell_of(place, kWeightType).SetString(weighting.name);
        if (weighting.usesData) {
            write_reference(place, kWeightData, dataIndex, 'P', dependent ? 'W' : 'T',
                            wrapping_sum(weightColumn, 1));
        }
        const int variablePlace =
            paramIndex >= 0 ? paramIndex : place_of(variablesPerSet, paramSet, variable);
        write_parameters(place, weighting, paramTree, variablePlace);
        if (row != nullptr) *row = place;
        return kOk;
    });
}

int report_update_input_data_table(UXXmlWrapperBase* table, UXXmlWrapperBase* paramTree,
                                   int variablesPerSet) {
    return at_boundary(kBadArgument, [&] {
        if (!usable(table) || !usable(paramTree)) return kBadArgument;
        NumberedNodes nodes(paramTree);
        int count = 0;
        for (UXXmlWrapperBase& row : children(*table)) {
            int set = 0;
            int variable = 0;
            if (!read_row_id(row, set, variable)) continue;
            refresh_row(row, nodes, place_of(variablesPerSet, set, variable));
            ++count;
        }
        return count;
    });
}

}  // extern "C"
