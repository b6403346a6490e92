// Weights of the fitter: which inputs a method takes, and the options that show them.
#include "uxtree/analysis/fitter.h"

#include <array>
#include <utility>

#include "uxtree/analysis/ranges.h"
#include "uxtree/tree/lookup.h"

#include "frame/guards.h"
#include "frame/messages.h"
#include "frame/node_values.h"
#include "frame/results.h"
#include "marks/names.h"

using namespace ux;

namespace {

constexpr char kWeightMethod[] = "WeightMethod";
constexpr char kWeightDataTag[] = "WeightData";
constexpr char kCombo[] = "Combo";
constexpr char kDisableMethod[] = "DisableWeightMethod";
constexpr char kDisableCombo[] = "BranchComboDisable";

constexpr int kBadMethod = -1;
constexpr int kMethodKind = 11;
constexpr int kDataKind = 13;
constexpr int kParameterKind = 14;
constexpr char kMethodSeparator[] = "|";

// The three parameters of a weight, with their names in both forms.
struct Parameter {
    const char* attribute;  // of the compact form
    const char* tag;        // of the expanded form
    int labelMessage;
};
constexpr std::array<Parameter, 3> kParameters{{{"Weight_A", "WeightA", kMessageWeightA},
                                                {"Weight_B", "WeightB", kMessageWeightB},
                                                {"Weight_C", "WeightC", kMessageWeightC}}};

// What a weight method asks for, by method number. A and B always go together.
struct Inputs {
    bool data;
    bool ab;
    bool c;
    constexpr bool parameter(std::size_t index) const { return index < 2 ? ab : c; }
};
constexpr Inputs kNothing{false, false, false};
constexpr Inputs kDataOnly{true, false, false};
constexpr Inputs kTwoParameters{false, true, false};
constexpr Inputs kThreeParameters{false, true, true};
constexpr Inputs kEverything{true, true, true};
constexpr std::array<Inputs, 15> kMethods{{
    kNothing, kDataOnly, kNothing, kDataOnly, kDataOnly,                     // 0 to 4
    kNothing, kTwoParameters, kThreeParameters, kEverything, kNothing,       // 5 to 9
    kNothing, kTwoParameters, kThreeParameters, kEverything, kTwoParameters  // 10 to 14
}};

const Inputs* inputs_of(int method) {
    if (method < 0 || method >= static_cast<int>(kMethods.size())) return nullptr;
    return &kMethods[static_cast<std::size_t>(method)];
}

void assign_if_given(int* out, bool value) {
    if (out != nullptr) *out = value ? 1 : 0;
}

// --- the expanded form ---------------------------------------------------------------------------

struct Weight {
    int method = 0;
    CStringUTF8 data;
    std::array<double, kParameters.size()> parameters{};
    int disable = 0;
};

Weight read_compact(UXXmlWrapperBase& compact) {
    Weight weight;
    compact.NodeValue(weight.data, 1, 1, nullptr);
    weight.method = int_attribute_of(compact, kWeightMethod);
    weight.disable = int_attribute_of(compact, kDisableMethod);
    for (std::size_t i = 0; i < kParameters.size(); ++i) {
        compact.GetPropertyValue(kParameters[i].attribute, weight.parameters[i], 0);
    }
    return weight;
}

// The four inputs that are shown or hidden, counted before and after.
class ShownInputs {
public:
    explicit ShownInputs(UXXmlWrapperBase& weight) : weight_(weight) {}

    // The input's node, found or created with its label.
    UXXmlWrapperBase node(const char* tag, int kind, int labelMessage) {
        UXXmlWrapperBase input;
        uxtree_tree_check_get_node(&input, &weight_, tag, kind, kLabel, message_text(labelMessage));
        return input;
    }
    void show(UXXmlWrapperBase& input, bool shown) {
        int before = 1;
        // Intended: a result of 0 means that no "Show" hides the input, so it was shown.
        if (!input.GetShow(before)) ++shownBefore_;
        if (shown) ++shownNow_;
        input.SetShow(shown ? 1 : 0);
    }
    // 0 when equally many inputs are shown, 1 when fewer, 2 when more.
    DWORD change() const {
        if (shownNow_ == shownBefore_) return 0;
        return shownNow_ > shownBefore_ ? 2 : 1;
    }

private:
    UXXmlWrapperBase& weight_;
    int shownBefore_ = 0;
    int shownNow_ = 0;
};

void move_combo(UXXmlWrapperBase& weight, UXXmlWrapperBase& input) {
    CStringUTF8 combo;
    if (!weight.GetPropertyValue(kCombo, combo, 0)) return;
    input.SetPropertyValue(kCombo, combo);
    weight.RemoveProperty(kCombo);
}

void copy_action_id(UXXmlWrapperBase& weight, UXXmlWrapperBase& input) {
    int id = 0;
    if (vctree_get_set_node_action_id(weight, id, 1)) vctree_get_set_node_action_id(input, id, 0);
}

void update_data(ShownInputs& inputs, UXXmlWrapperBase& weight, bool used, const char* data) {
    UXXmlWrapperBase input = inputs.node(kWeightDataTag, kDataKind, kMessageWeightData);
    move_combo(weight, input);
    copy_action_id(weight, input);
    inputs.show(input, used);
    if (data != nullptr) input.SetString(data);
}

void update_parameter(ShownInputs& inputs, const Parameter& parameter, bool used, double* value) {
    UXXmlWrapperBase input = inputs.node(parameter.tag, kParameterKind, parameter.labelMessage);
    inputs.show(input, used);
    if (value != nullptr) input.NodeValue(*value, 0);
}

bool has_method(UXXmlWrapperBase& node, int method) {
    int current = 0;
    return node.NodeValue(current, 1) && current == method;
}

int update_weight(UXXmlWrapperBase& weight, int method, DWORD& change, const char* data,
                  const std::array<double*, kParameters.size()>& values, bool onlyIfChanged,
                  int disable) {
    UXXmlWrapperBase methodNode;
    if (!uxtree_tree_check_get_node(&methodNode, &weight, kWeightMethod, kMethodKind)) return kFail;
    // Intended: the branch is locked or unlocked even when nothing else follows.
    weight.SetPropertyValue(kDisableMethod, disable);
    weight.SetPropertyValue(kDisableCombo, disable);
    if (onlyIfChanged && has_method(methodNode, method)) return kFail;
    const Inputs* used = inputs_of(method);
    if (used == nullptr) return kFail;
    methodNode.NodeValue(method, 0);
    ShownInputs inputs(weight);
    update_data(inputs, weight, used->data, data);
    for (std::size_t i = 0; i < kParameters.size(); ++i) {
        update_parameter(inputs, kParameters[i], used->parameter(i), values[i]);
    }
    change = inputs.change();
    return kOk;
}

// --- the compact form ----------------------------------------------------------------------------

struct Expanded {
    UXXmlWrapperBase method;
    UXXmlWrapperBase data;
    std::array<UXXmlWrapperBase, kParameters.size()> parameters;
};

bool find_expanded(UXXmlWrapperBase& weight, Expanded& found) {
    if (!weight.FindChild(kWeightMethod, &found.method, 1)) return false;
    if (!weight.FindChild(kWeightDataTag, &found.data, 1)) return false;
    for (std::size_t i = 0; i < kParameters.size(); ++i) {
        if (!weight.FindChild(kParameters[i].tag, &found.parameters[i], 1)) return false;
    }
    return true;
}

void write_compact(UXXmlWrapperBase& compact, Expanded& from) {
    int method = 0;
    if (from.method.NodeValue(method, 1)) compact.SetPropertyValue(kWeightMethod, method);
    CStringUTF8 data;
    if (from.data.NodeValue(data, 1, 1, nullptr)) compact.NodeValue(data, 0, 1, nullptr);
    for (std::size_t i = 0; i < kParameters.size(); ++i) {
        double value = 0;
        if (!from.parameters[i].NodeValue(value, 1)) continue;
        compact.SetPropertyValue(kParameters[i].attribute, value);
    }
}

}  // namespace

int VCTreeGetFitterWeightStrings(int method, CStringUTF8* name, CWBOStringArray* all,
                                 int messageOption) {
    return at_boundary(kBadMethod, [&] {
        CWBOStringArray own;
        CWBOStringArray& names = all != nullptr ? *all : own;
        const CWBOStringArray before = std::exchange(names, {});  // name may stand in it
        const CStringUTF8 text = message_text(kMessageWeightMethods, messageOption);
        const int count = UXSeparateByString(names, text, kMethodSeparator);
        if (name == nullptr) return count;
        if (method < 0 || method >= count) {
            name->Empty();
            names.RemoveAll();
            return kBadMethod;
        }
        *name = names[method];
        return count;
    });
}

int vctree_extract_weight_info(UXXmlWrapperBase& node, const char* tag, int* method, double* a,
                               double* b, double* c) {
    return at_boundary(kFail, [&] {
        if (!usable(node)) return kFail;
        CStringUTF8 name = text_or(tag, "");
        if (name.IsEmpty()) node.GetTagName(name);
        // Intended: any tag that begins with "W" marks a weight.
        if (name.IsEmpty() || name[0] != 'W') return kFail;
        const Weight weight = read_compact(node);
        if (method != nullptr) *method = weight.method;
        const std::array<double*, kParameters.size()> outputs{a, b, c};
        for (std::size_t i = 0; i < outputs.size(); ++i) {
            if (outputs[i] != nullptr) *outputs[i] = weight.parameters[i];
        }
        return kOk;
    });
}

int vctree_fitter_data_weight_node_compact_to_expanded(UXXmlWrapperBase& expanded,
                                                       UXXmlWrapperBase& compact) {
    return at_boundary(kFail, [&] {
        if (!usable(expanded) || !usable(compact)) return kFail;
        Weight weight = read_compact(compact);
        CStringUTF8 combo;
        const int hasCombo = compact.GetPropertyValue(kCombo, combo, 0);
        expanded.SetLabel(message_text(kMessageWeight));
        if (hasCombo) expanded.SetPropertyValue(kCombo, combo);
        auto& [a, b, c] = weight.parameters;
        DWORD change = 0;
        update_weight(expanded, weight.method, change, weight.data, {&a, &b, &c}, false,
                      weight.disable);
        return kOk;  // Intended: also when the method is unknown and no input was made
    });
}

int vctree_fitter_data_weight_node_expanded_to_compact(UXXmlWrapperBase& compact,
                                                       UXXmlWrapperBase& expanded) {
    return at_boundary(kFail, [&] {
        Expanded found;
        if (!usable(compact) || !find_expanded(expanded, found)) return kFail;
        write_compact(compact, found);
        return kOk;
    });
}

int vctree_update_fitter_data_weight_node(UXXmlWrapperBase& weight, int method, DWORD& change,
                                          const char* data, double* a, double* b, double* c,
                                          int onlyIfChanged, int disable) {
    return at_boundary(kFail, [&] {
        return update_weight(weight, method, change, data, {a, b, c}, onlyIfChanged != 0, disable);
    });
}

extern "C" int uxtree_fitter_get_weight_mth_info(int method, CStringUTF8* name, int* usesData,
                                                 int* usesA, int* usesB, int* usesC) {
    return at_boundary(kFail, [&] {
        const Inputs* found = inputs_of(method);
        const Inputs& uses = found != nullptr ? *found : kNothing;
        assign_if_given(usesData, uses.data);
        assign_if_given(usesA, uses.ab);
        assign_if_given(usesB, uses.ab);
        assign_if_given(usesC, uses.c);
        if (found == nullptr) {
            if (name != nullptr) name->Empty();
            return kFail;
        }
        constexpr int kNameOption = 1;
        if (name != nullptr) VCTreeGetFitterWeightStrings(method, name, nullptr, kNameOption);
        return kOk;
    });
}
