// Runs one case about a run-time module. Each case is a process of its own, because a module is
// looked for once per process.
//
// Usage: module_probe CASE. The module under test comes from the environment, unless the case
// names another one itself.
#include <array>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>

#include <dlfcn.h>

#include "uxtree/data/labels.h"
#include "uxtree/data/values.h"
#include "uxtree/host/services.h"

#include "data/labels_detail.h"
#include "support/test_tree.h"

namespace {

int failures = 0;

void expect(const std::string& actual, const std::string& wanted, const char* what) {
    if (actual == wanted) return;
    std::printf("%s: \"%s\" instead of \"%s\"\n", what, actual.c_str(), wanted.c_str());
    ++failures;
}
void expect_localized(const char* text, const std::string& wanted) {
    expect(ux::_tree_localize(text), wanted, "localized text");
}
void expect_loaded(const char* variable, bool wanted) {
    void* const module = dlopen(std::getenv(variable), RTLD_NOW | RTLD_NOLOAD);
    expect(module != nullptr ? "loaded" : "not loaded", wanted ? "loaded" : "not loaded",
           "the module");
    if (module != nullptr) dlclose(module);
}
constexpr const char* kMessages = "UXTREE_HOST_MESSAGE_MODULE";

void present() {
    expect_localized("Weight Type", "[Weight Type|0]");
    const char* const shared = ux::_tree_localize("Range", 5);
    expect(shared, "[Range|0]", "a text with a category");
    expect(ux::_tree_localize(nullptr, 7), "category 7", "the category");
    expect(ux::_tree_localize(nullptr), "category 7", "no text and no category");
    expect_localized("", "[|0]");
}

void loaded() {
    expect_localized("Weight Type", "[Weight Type|0]");
    expect_loaded(kMessages, true);
}

void absent() {
    expect_localized("Weight Type", "Weight Type");
    expect(ux::_tree_localize(nullptr, 7), "Weight Type", "the category");
    expect_localized("Range", "Range");
}

void one_attempt_only() {
    UXGetHostServices().messageModule = "libno-such-module.so";
    expect_localized("Range", "Range");
    UXGetHostServices().messageModule.clear();  // the environment names a good one
    expect_localized("Range", "Range");
    expect_loaded(kMessages, false);
}

void services_come_first() {
    UXGetHostServices().messageModule = std::getenv("UXTREE_TEST_MODULE");
    expect_localized("Range", "[Range|0]");
}

// Built without LocalizeString.
void text_function_missing() {
    expect_localized("Range", "Range");
    expect_loaded(kMessages, false);
    expect(ux::_tree_localize(nullptr, 7), "Range", "the category after a failure");
}

// Built without SetCurrentCategory.
void category_function_missing() {
    expect_localized("Range", "[Range|0]");
    expect(ux::_tree_localize(nullptr, 7), "[Range|0]", "the category");
    expect_loaded(kMessages, true);  // its other function is held
    expect_localized("Sheet", "[Sheet|0]");
}
void category_function_missing_first() {
    expect(ux::_tree_localize(nullptr, 7), "", "the category");
    expect_loaded(kMessages, false);
    expect_localized("Range", "Range");
}

void blocked() {
    bool value = true;
    VCTreeAccessBlockLocalization(&value, false);
    const char* const text = "Weight Type";
    if (ux::_tree_localize(text) != text) expect("another text", "the text itself", "blocked");
    if (ux::_tree_localize(nullptr, 7) != nullptr) expect("a text", "nothing", "blocked category");
    expect_loaded(kMessages, false);
    value = false;
    VCTreeAccessBlockLocalization(&value, false);
    expect_localized("Weight Type", "[Weight Type|0]");
}

// The collected value of a themed branch whose "Data" is "1;3", and of other values beside it.
void expect_collected(const std::string& themed) {
    uxtest::TestTree tree(
        "<r><b DataID='1' ThemeApplicability='1048576' Data='1;3' Auto='4;5'><c/></b>"
        "<b DataID='2' ThemeApplicabilityEx='1' Use='6;7' Data='1;3'><c "
        "DataID='3'>8;9</c></b></r>");
    CArray<int, int> ids;
    CWBOStringArray values;
    vctree_get_values_with_ids(&tree, &ids, &values, 1, 0, 0, nullptr, 0, nullptr);
    CStringUTF8 text;
    UXJoinTokens(text, values, " ");
    expect(static_cast<const char*>(text), "::{Auto=4;5}" + themed + " 6;7 " + themed + " 8;9",
           "collected values");
}
void range_converted() {
    expect_collected("1:3");
}
void range_unchanged() {
    expect_collected("1;3");
}

struct Case {
    const char* name;
    void (*run)();
};
constexpr std::array kCases{
    Case{"present", present},
    Case{"loaded", loaded},
    Case{"absent", absent},
    Case{"one_attempt_only", one_attempt_only},
    Case{"services_come_first", services_come_first},
    Case{"text_function_missing", text_function_missing},
    Case{"category_function_missing", category_function_missing},
    Case{"category_function_missing_first", category_function_missing_first},
    Case{"blocked", blocked},
    Case{"range_converted", range_converted},
    Case{"range_unchanged", range_unchanged}};

}  // namespace

int main(int argc, char** argv) {
    for (const Case& one : kCases) {
        if (argc != 2 || std::strcmp(argv[1], one.name) != 0) continue;
        one.run();
        return failures == 0 ? 0 : 1;
    }
    std::printf("no such case\n");
    return 2;
}
