// Scripts against the same work in C++: single calls, the start of an engine, values set.
// Argument: the number of calls (default 1000000).
#include "uxtree/script.h"

#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <filesystem>
#include <string>

#define AS_USE_NAMESPACE
#include <angelscript.h>

#include "uxtree/uxtree_Utils.h"

#include "bench.h"
#include "script/small_memory.h"

namespace {

constexpr int kRuns = 7;
bool allHold = true;

// Seconds of the processor in the fastest of several runs: the machine may not be alone, and for the
// disk scripts and C++ wait alike.
template <typename Body>
double best_of(int runs, Body&& body) {
    double best = 1e300;
    for (int i = 0; i < runs; ++i) {
        uxbench::touch_memory(std::size_t{64} << 20);
        const std::clock_t start = std::clock();
        body();
        best = std::min(best, static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC);
    }
    return best;
}

void check(bool ok, const std::string& what) {
    if (ok) return;
    std::fprintf(stderr, "failed: %s\n", what.c_str());
    std::exit(1);
}

void print_row(const char* what, double script, double cpp, double bound, const char* unit) {
    const bool holds = script <= bound;
    allHold = allHold && holds;
    std::printf("| %-28s | %10.2f | %10.2f | %10.2f | %-2s | %-3s |\n", what, script, cpp, bound,
                unit, holds ? "yes" : "NO");
    std::fflush(stdout);
}

UXXmlWrapperBase dialog() {
    UXXmlWrapperBase root;
    const std::string xml =
        "<d ThemeType='4' Label='Dialog'><Input DataID='1' _ux_id='1'><Range1 DataID='10' "
        "_ux_id='2'><X DataID='51' _ux_id='3'>a</X><Y DataID='52' Label='Y values' _ux_id='4'>b</Y>"
        "</Range1></Input><Output DataID='40' _ux_id='5'/></d>";
    check(root.LoadFromMemory(xml.data(), xml.size()) != 0, "load");
    return root;
}

// Nanoseconds of one call, without the turn of the loop.
double script_call(const char* call, const UXXmlWrapperBase& root, int calls) {
    const std::string count = std::to_string(calls);
    UXScriptEngine engine;
    const std::string loop = "for (int i = 0; i < " + count + "; ++i) ";
    const std::string code = "void call(Tree@ t) { Tree found; " + loop + call +
                             " }\nvoid empty(Tree@ t) { Tree found; " + loop + "{} }";
    check(engine.compile("bench", code), engine.problem());
    const auto run = [&](const char* name) {
        return best_of(kRuns, [&] {
            check(engine.run_on(name, root, {.depth = 100}) == UXScriptOutcome::kDone,
                  engine.problem());
        });
    };
    return (run("call") - run("empty")) / calls * 1e9;
}

template <typename Call>
void compare_call(const char* what, const char* script, int calls, Call&& call) {
    UXXmlWrapperBase root = dialog();
    volatile int sink = 0;
    const double cpp = best_of(kRuns,
                               [&] {
                                   for (int i = 0; i < calls; ++i) sink = sink + call(root);
                               }) /
                       calls * 1e9;
    print_row(what, script_call(script, root, calls), cpp, 4 * cpp + 60, "ns");
}

void compare_calls(int calls) {
    compare_call("uxtree_tree_get_theme_type", "uxtree_tree_get_theme_type(t);", calls,
                 [](UXXmlWrapperBase& root) { return uxtree_tree_get_theme_type(&root); });
    UXXmlWrapperBase out;
    compare_call(
        "uxtree_get_node_by_id", "uxtree_get_node_by_id(t, found, 52, true);", calls,
        [&](UXXmlWrapperBase& root) { return uxtree_get_node_by_id(&root, &out, 52, true); });
    compare_call("uxtree_get_node_by_tagname",
                 "uxtree_get_node_by_tagname(t, found, \"Range1\", true, true, false);", calls,
                 [&](UXXmlWrapperBase& root) {
                     return uxtree_get_node_by_tagname(&root, &out, "Range1", true, true, false);
                 });
    compare_call(
        "uxtree_get_node_label", "uxtree_get_node_label(t, 1);", calls,
        [](UXXmlWrapperBase& root) { return uxtree_get_node_label(&root, 1).GetLength(); });
}

void compare_start() {
    const double start = best_of(kRuns, [] {
        UXScriptOptions options;
        options.extend = UXRegisterScriptKit;
        const UXScriptEngine engine(options);
        check(engine.ready(), engine.problem());
    });
    print_row("start of an engine", start * 1e3, 0, 5, "ms");
}

// A program that makes texts of numbers and sets them by their identifiers.
void set_values(UXXmlWrapperBase& root, int count) {
    UXScriptArray<CArray<int, int>> ids;
    UXScriptArray<CWBOStringArray> values;
    for (int i = 0; i < count; ++i) {
        ids.array().Add(i % 60000 + 1);
        values.array().Add(CStringUTF8(std::to_string(i).c_str()));
    }
    check(uxtree_set_values_by_ids(&root, &ids, &values, 0, nullptr, 0, nullptr, nullptr) == count,
          "values set in C++");
}
constexpr const char* kSetValues = R"(
void set_values(Tree@ t) {
    int count = t.count;
    array<int> ids(count);
    array<string> values(count);
    for (int i = 0; i < count; ++i) {
        ids[i] = i % 60000 + 1;
        values[i] = i;
    }
    if (uxtree_set_values_by_ids(t, ids, values, 0, none, 0, none, none) != count) throw("not all");
}
void main(array<string>@ files) {
    Tree t;
    t.load(files[0]);
    set_values(t);
    t.save(files[1]);
}
)";

// By turns, for the same reason.
template <typename Cpp, typename Script>
void compare_jobs(const char* what, Cpp&& in_cpp, Script&& in_script) {
    double script = 1e300, cpp = 1e300;
    for (int i = 0; i < 3 * kRuns; ++i) {
        cpp = std::min(cpp, best_of(1, in_cpp));
        script = std::min(script, best_of(1, in_script));
    }
    print_row(what, script * 1e3, cpp * 1e3, 1.3 * cpp * 1e3, "ms");
}

void compare_values(int count) {
    const std::filesystem::path folder = std::filesystem::temp_directory_path();
    const std::string from = folder / "script_bench_from.xml", to = folder / "script_bench_to.xml";
    UXXmlWrapperBase root;
    std::string xml = "<r>";
    for (int i = 1; i <= count; ++i)
        xml += "<v DataID='" + std::to_string(i % 60000 + 1) + "' Label='A value'>0</v>";
    xml += "</r>";
    check(root.LoadFromMemory(xml.data(), xml.size()) != 0, "load");
    check(root.Save(from.c_str(), 0) != 0, from);
    UXScriptEngine engine;
    check(engine.compile("bench", kSetValues), engine.problem());
    const auto checkRun = [&](UXScriptOutcome outcome) {
        check(outcome == UXScriptOutcome::kDone, engine.problem());
    };
    compare_jobs(
        "100000 values made and set", [&] { set_values(root, count); },
        [&] { checkRun(engine.run_on("set_values", root)); });
    int result = 0;
    compare_jobs(
        "the same, file to file",
        [&] {
            UXXmlWrapperBase tree;
            check(tree.load(from.c_str(), 0, false) != 0, from);
            set_values(tree, count);
            check(tree.Save(to.c_str(), 0) != 0, to);
        },
        [&] {
            checkRun(engine.run_main({from, to}, result));
        });
    std::filesystem::remove(from);
    std::filesystem::remove(to);
}

}  // namespace

int main(int argc, char** argv) {
    const int calls = argc > 1 ? std::atoi(argv[1]) : 1000000;
    // As in `uxtree run`.
    AngelScript::asSetGlobalMemoryFunctions(uxtool::take_memory, uxtool::give_memory);
    std::printf("\n| %-28s | %10s | %10s | %10s | %2s | %s |\n|---|---|---|---|---|---|\n", "what",
                "script", "C++", "at most", "", "kept");
    compare_calls(calls);
    compare_start();
    compare_values(100000);
    return allHold ? 0 : 1;
}
