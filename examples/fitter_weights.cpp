// Fitter weights: from the compact form of storage to the expanded form of a dialog, and back.
#include <cstdio>

#include "uxtree/uxtree_Utils.h"

namespace {

constexpr const char kStored[] =
    "<Weight WeightMethod='8' Weight_A='1' Weight_B='2.5' Weight_C='-3'>Col(W)</Weight>";

CStringUTF8 text_of(const UXXmlWrapperBase& node) {
    CStringUTF8 text;
    node.GetString(text);
    return text;
}

void print_shown(UXXmlWrapperBase& weight) {
    UXXmlWrapperBase input;
    for (weight.FirstChild(&input); input.IsNodeValid() != 0; input.NextSibling(&input)) {
        CStringUTF8 tag;
        int show = 1;
        input.GetTagName(tag);
        input.GetShow(show);
        std::printf("  %-12s %s\n", static_cast<const char*>(tag), show != 0 ? "shown" : "hidden");
    }
}

// What a dialog does when its user picks a method; the values stay as they are.
bool pick_method(UXXmlWrapperBase& weight, int method) {
    constexpr int kOnlyIfChanged = 1;
    constexpr int kEnabled = 0;
    DWORD change = 0;  // 0: as many inputs shown as before, 1: fewer, 2: more
    CStringUTF8 name;
    uxtree_fitter_get_weight_mth_info(method, &name, nullptr, nullptr, nullptr, nullptr);
    const int done = vctree_update_fitter_data_weight_node(
        weight, method, change, nullptr, nullptr, nullptr, nullptr, kOnlyIfChanged, kEnabled);
    std::printf("method %d, %s: change %u\n", method, static_cast<const char*>(name), change);
    print_shown(weight);
    return done == 1;
}

}  // namespace

int main() {
    UXXmlWrapperBase stored;
    UXXmlWrapperBase dialog;
    if (stored.LoadFromMemory(kStored, sizeof kStored - 1) == 0) return 1;
    dialog.CreateNew(0, "WeightBranch");
    if (vctree_fitter_data_weight_node_compact_to_expanded(dialog, stored) == 0) return 1;
    print_shown(dialog);

    if (!pick_method(dialog, 6)) return 1;
    if (pick_method(dialog, 6)) return 1;  // not changed, so nothing was done
    if (!pick_method(dialog, 8)) return 1;

    UXXmlWrapperBase back;
    back.CreateNew(0, "Weight");
    if (vctree_fitter_data_weight_node_expanded_to_compact(back, dialog) == 0) return 1;
    std::printf("%s\n", static_cast<const char*>(text_of(back)));
    return text_of(back) == text_of(stored) ? 0 : 1;
}
