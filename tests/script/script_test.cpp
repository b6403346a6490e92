// Scripts: what they can call, how variables come back, what is said of faults, what ends them.
#include <filesystem>
#include <fstream>
#include <map>
#include <set>

#define AS_USE_NAMESPACE
#include <angelscript.h>

#include "gmock/gmock.h"
#include "script/script_support.h"
#include "support/test_tree.h"

namespace uxtest {
namespace {

using testing::HasSubstr;
using testing::StartsWith;

std::set<std::string> registered_functions() {
    UXScriptEngine engine;
    std::set<std::string> names;
    for (unsigned i = 0; i < engine.engine()->GetGlobalFunctionCount(); ++i) {
        names.insert(engine.engine()->GetGlobalFunctionByIndex(i)->GetName());
    }
    return names;
}

std::vector<std::string> listed_script_functions() {
    std::ifstream list(source_path("docs/entry_points.txt"));
    std::vector<std::string> names;
    std::string kind, name, rest;
    while (list >> kind >> name && std::getline(list, rest)) {
        if (kind == "script") names.push_back(name);
    }
    return names;
}

}  // namespace

TEST(ScriptFunctions, AreAll157ScriptEntryPoints) {
    const std::set<std::string> registered = registered_functions();
    const std::vector<std::string> listed = listed_script_functions();
    EXPECT_EQ(listed.size(), 157u);
    for (const std::string& name : listed) EXPECT_TRUE(registered.contains(name)) << name;
}

TEST(ScriptFunctions, AreAlsoTheNativeOperationsThatScriptsLack) {
    const std::set<std::string> registered = registered_functions();
    for (const char* name :
         {"VCTreeGetRepeatId", "VCTreeSetRepeatId", "VCTreeGetRepeatNodeId", "VCTreeSetTagName",
          "VCTreeGetPathStr", "vctree_extract_weight_info", "vctree_get_plot_uid_from_tree"}) {
        EXPECT_TRUE(registered.contains(name)) << name;
    }
}

TEST(ScriptFunctions, WalkRangesWithTheIterators) {
    EXPECT_EQ(Script().body(R"(
        Tree t; t.parse("<r><Range1><X>1</X><Y>2</Y></Range1><Range2><X>3</X></Range2></r>");
        VCRangeTreeIterator ranges(t);
        Tree first;
        while (ranges.Get(first) == 1) {
            VCSubRangeTreeIterator parts(first);
            Tree part;
            while (parts.Get(part) == 1) print(part.path, part.value);
        }
        print(ranges.IsHierarchical(), ranges.Get(null));)"),
              "Range1/X 1\nRange1/Y 2\nRange2/X 3\n1 0\n");
}

// --- how arguments go in and come back

TEST(ScriptArguments, AreReadAndWrittenAsTheHeadersSay) {
    EXPECT_EQ(Script().body(R"(
        Tree t; t.parse("<r><a DataID='5'>x</a><b DataID='6'>y</b></r>");
        array<int> ids = {9}; array<string> values; string err = "kept";
        print(uxtree_get_values_with_ids(t, ids, values, 1, 0, 0, none, 0, err), ids, values, err);
        array<string> tags = {"before"};
        uxtree_get_node_names(t, tags, 1);
        print(tags);
        values = {"1", "2"}; ids = {5, 6};
        int duplicate = 7;
        print(uxtree_set_values_by_ids(t, ids, values, 0, duplicate, 0, none, err), duplicate, err);
        print(t);)"),
              "2 [5, 6] [x, y] kept\n[before, a, b]\n2 7 kept\n"
              "<r><a DataID=\"5\">1</a><b DataID=\"6\">2</b></r>\n");
}

TEST(ScriptArguments, StayAsTheyAreWhenACallFails) {
    EXPECT_EQ(Script().body(R"(
        Tree t; t.parse("<r><a/></r>"); Tree found = t["a"]; int counter = 3; string label = "kept";
        print(uxtree_get_node(t, found, 100, counter, -1, none, true, false, 0), found.tag);
        print(uxtree_get_next_enum_tag_name(null, label, 1), label);)"),
              "0 a\n-1 kept\n");
}

TEST(ScriptArguments, MayBeElementsOfArraysThatTheCallChanges) {
    EXPECT_EQ(Script().body(R"(
        Tree t; t.parse("<r><a Label='A'/><b Label='B'/></r>");
        array<string> names = {"Label"};
        uxtree_get_attributes(t, names, names[0], 1);
        print(names);
        array<string> path = {"x"};
        print(uxtree_XDE_treenode_path_array_to_string(path[0], path, false), path);)"),
              "[Label, A, B]\n1 [x]\n");
}

TEST(ScriptArguments, NoneIsNotTheEmptyText) {
    EXPECT_EQ(Script().body(R"(
        Tree t; t.parse("<r><a n='1'/><b/></r>");
        print(uxtree_count_items_by_attribute(t, "n", none, 0, 1),
              uxtree_count_items_by_attribute(t, "n", "", 0, 1));
        text word; print(word.is_none, word.otherwise("else"), word == none);
        word = ""; print(word.is_none, word.otherwise("else"), word == none);)"),
              "1 0\ntrue else true\nfalse  false\n");
}

TEST(ScriptArguments, OptionalOutputsMayBeNone) {
    EXPECT_EQ(Script().body(R"(
        Tree t; t.parse("<r><a DataID='5'>x</a></r>"); array<int> ids = {5, 5};
        array<string> values = {"1", "2"}; string err;
        print(uxtree_set_values_by_ids(t, ids, values, 0, none, 0, none, none));
        int duplicate = -1;
        print(uxtree_set_values_by_ids(t, ids, values, 0, duplicate, 0, none, err), duplicate);)"),
              "1\n-4 5\n");
}

TEST(ScriptArguments, NullStandsForWhatCIsGivenANullPointer) {
    EXPECT_EQ(Script().body(R"(
        Tree t; t.parse("<r/>"); Tree nowhere; array<int>@ noInts; array<string> texts;
        print(uxtree_get_node_by_id(null, t, 1, true), uxtree_get_node_by_id(nowhere, t, 1, true),
              uxtree_get_values_with_ids(t, noInts, texts, 1, 0, 0, none, 0, none));)"),
              "0 0 -1\n");
}

TEST(ScriptArguments, CharactersAreNumbersAsInC) {
    EXPECT_EQ(Script().body(R"(
        string name;
        report_get_escaped_data_string(name, 1, 0, 'D', 'X', 1, 'R', 3);
        print(name.length() > 0, 'E');)"),
              "true 69\n");
}

TEST(ScriptArguments, RecordsAreFilled) {
    EXPECT_EQ(Script().body(R"(
        Tree t; t.parse("<r/>"); tagDescStatResults results; results.N = 12; results.Mean = 1.5;
        double min = -1, max = 2;
        uxtree_stats_get_set_stats_results(t, results, min, max, 0);
        tagDescStatResults read; double low = 0, high = 0;
        uxtree_stats_get_set_stats_results(t, read, low, high, 1);
        print(read.N, read.Mean, low, high);)"),
              "12 1.5 -1 2\n");
}

TEST(ScriptArguments, TextWithACharacterZeroIsRefused) {
    EXPECT_THAT(
        Script().body(
            R"(Tree t("r"); uxtree_get_node_by_tagname(t, null, "a\0b", true, true, false);)"),
        HasSubstr("uxtree_get_node_by_tagname: 'tag' holds a character 0"));
}

TEST(ScriptArguments, OfNativeOperationsMustNotBeNull) {
    EXPECT_THAT(Script().body("int id; VCTreeGetRepeatId(null, id);"),
                StartsWith("test.as:2:9: error: VCTreeGetRepeatId: 'node' must not be null\n"));
}

// --- faults

TEST(ScriptFaults, NameTheNearestNames) {
    EXPECT_EQ(Script().run("void main() {\n  Tree t;\n  uxtree_get_nod_by_id(t, t, 1, true);\n  "
                           "t.valu = \"\";\n}"),
              "test.as:3:3: error: No matching symbol 'uxtree_get_nod_by_id'; did you mean "
              "'uxtree_get_node_by_id'?\n"
              "test.as:4:4: error: 'valu' is not a member of 'Tree'; did you mean 'value'?\n");
}

TEST(ScriptFaults, ListTheFormsOfAFunction) {
    EXPECT_EQ(Script().body("uxtree_get_row_number(1);"),
              "test.as:2:1: error: No matching signatures to 'uxtree_get_row_number(const int)'\n"
              "test.as:2:1: Candidates are:\n"
              "test.as:2:1: int uxtree_get_row_number(const Tree@ tree, const text&in path)\n");
}

TEST(ScriptFaults, OfRunningTellThePlaceAndTheCalls) {
    EXPECT_EQ(
        Script().run("void f(Tree@ t) {\n  t[\"a/b\"].value = \"1\";\n}\n"
                     "void main() {\n  Tree t; t.parse(\"<r><a><c/><d/></a></r>\");\n  f(t);\n}"),
        "test.as:2:3: error: no node 'a/b': 'a' has no child 'b'; its children: c, d\n"
        "  in void f(Tree@) at test.as:2:3\n"
        "  in void main() at test.as:6:3\n");
}

TEST(ScriptFaults, CanBeCaught) {
    EXPECT_EQ(
        Script().body("Tree t; try { t.value = \"1\"; } catch { print(getExceptionInfo()); }"),
        "the Tree refers to no node\n");
}

TEST(ScriptFaults, OfABrokenFileTellItsPlace) {
    EXPECT_THAT(Script().body("Tree t; t.parse(\"<r><a></r>\");"), HasSubstr("error: (memory):1:"));
}

TEST(ScriptFaults, WithoutMainAreSaid) {
    Script script;
    EXPECT_THAT(script.run("void other() {}"), HasSubstr("there is no function 'void main()'"));
    EXPECT_EQ(script.outcome(), UXScriptOutcome::kNoFunction);
}

// --- limits

TEST(ScriptLimits, EndALoopThatWouldNotEnd) {
    Script script;
    EXPECT_THAT(script.body("while (true) try {} catch {}", {.seconds = 0.05}),
                HasSubstr(": error: stopped after 0.05 seconds\n  in void main() at test.as:2:"));
    EXPECT_EQ(script.outcome(), UXScriptOutcome::kTimeOut);
    EXPECT_EQ(script.body("print(1);"), "1\n");  // and the engine goes on
}

TEST(ScriptLimits, EndCallsThatBranchWithoutALoop) {
    Script script;
    const std::string code = "int f(int n) { return n == 0 ? 0 : f(n - 1) + f(n - 1); }\n";
    EXPECT_THAT(script.run(code + "void main() { f(100); }", {.seconds = 0.05}),
                HasSubstr(": error: stopped after 0.05 seconds\n  in int f(int) at test.as:1:"));
    EXPECT_EQ(script.outcome(), UXScriptOutcome::kTimeOut);
}

TEST(ScriptLimits, EndRecursion) {
    Script script;
    EXPECT_THAT(script.run("void f() { f(); }\nvoid main() { f(); }", {.depth = 50}),
                StartsWith("test.as:1:18: error: more than 50 calls inside each other\n"
                           "  in void f() at test.as:1:18\n  in void f() at test.as:1:12\n"));
    EXPECT_EQ(script.outcome(), UXScriptOutcome::kException);
}

TEST(ScriptLimits, HoldForTheValuesOfGlobalVariables) {
    Script script;
    EXPECT_THAT(script.run("int f() { while (true) {} return 1; }\nint x = f();\nvoid main() {}",
                           {.seconds = 0.05}),
                HasSubstr("stopped after 0.05 seconds"));
    EXPECT_EQ(script.outcome(), UXScriptOutcome::kTimeOut);
}

TEST(ScriptLimits, EndAnArrayThatWouldNotFit) {
    Script script;
    EXPECT_THAT(script.body("array<array<double>> a(4000000000); print(a.length());"),
                HasSubstr("error: "));
    EXPECT_NE(script.outcome(), UXScriptOutcome::kDone);
}

// --- files

TEST(ScriptFiles, AreReadAndListed) {
    TemporaryFolder folder;
    folder.write("b.txt", "two");
    const std::string path = folder.write("a.txt", "one\n");
    EXPECT_EQ(Script().body("print(read_file(\"" + path + "\").length(), files(\"" +
                            folder.path("*.txt") + "\").length(), files(\"" + folder.path("*.no") +
                            "\"));"),
              "4 2 []\n");
    EXPECT_THAT(Script().body("read_file(\"" + folder.path("no.txt") + "\");"),
                HasSubstr("no.txt: No such file or directory"));
    EXPECT_THAT(Script().body("read_file(\"" + folder.path("") + "\");"),
                HasSubstr("Is a directory"));
}

TEST(ScriptFiles, AreReplacedAsAWhole) {
    TemporaryFolder folder;
    const std::string path = folder.write("a.txt", "old");
    const std::string link = folder.path("link.txt");
    std::filesystem::permissions(path, std::filesystem::perms(0640));
    std::filesystem::create_symlink("a.txt", link);
    EXPECT_EQ(Script().body("write_file(\"" + link + "\", \"new\\n\");"), "");
    EXPECT_EQ(read_file(path), "new\n");
    EXPECT_TRUE(std::filesystem::is_symlink(link));
    EXPECT_EQ(std::filesystem::status(path).permissions(), std::filesystem::perms(0640));
    EXPECT_THAT(Script().body("write_file(\"" + folder.path("no/a.txt") + "\", \"\");"),
                HasSubstr("no/a.txt: No such file or directory"));
    EXPECT_THAT(Script().body("write_file(\"" + folder.path("") + "\", \"\");"),
                HasSubstr(": Is a directory"));
    EXPECT_THAT(Script().body("write_file(\"a\\0b\", \"\");"), HasSubstr("a character 0"));
    const std::filesystem::directory_iterator left(folder.path(""));
    EXPECT_EQ(std::distance(begin(left), end(left)), 2);
}

// --- engines

TEST(ScriptEngine, TakesAndGivesWhatMainDoes) {
    UXScriptEngine engine;
    int result = 0;
    ASSERT_TRUE(engine.compile("a.as", "int main(array<string>@ a) { return a.length() + 40; }"));
    EXPECT_EQ(engine.run_main({"x", "y"}, result), UXScriptOutcome::kDone);
    EXPECT_EQ(result, 42);
}

TEST(ScriptEngine, IncludesFilesBesideTheScript) {
    TemporaryFolder folder;
    folder.write("part.as", "int twice(int x) { return 2 * x; }");
    const std::string path =
        folder.write("main.as", "#include \"part.as\"\nint main() { return twice(21); }");
    UXScriptEngine engine;
    int result = 0;
    ASSERT_TRUE(engine.compile_file(path)) << engine.problem();
    EXPECT_EQ(engine.run_main({}, result), UXScriptOutcome::kDone);
    EXPECT_EQ(result, 42);
    EXPECT_FALSE(engine.compile_file(folder.path("none.as")));
    EXPECT_THAT(engine.problem(), HasSubstr("none.as"));
}

TEST(ScriptEngine, RunsAFunctionOnANodeOfTheHost) {
    TestTree tree("<r><a/></r>");
    UXScriptEngine engine;
    ASSERT_TRUE(
        engine.compile("a.as", "void mark(Tree@ t) { t[\"a\"].value = \"1\"; }\nvoid g() {}"));
    EXPECT_EQ(engine.run_on("mark", tree), UXScriptOutcome::kDone);
    EXPECT_EQ(tree.text(), uxtest::tree_text("<r><a>1</a></r>"));
    EXPECT_EQ(engine.run_on("nothing", tree), UXScriptOutcome::kNoFunction);
    EXPECT_THAT(engine.functions(), testing::ElementsAre("g"));
}

TEST(ScriptEngine, RegistersIntoAnEngineThatIsThere) {
    AngelScript::asIScriptEngine* engine = AngelScript::asCreateScriptEngine();
    EXPECT_EQ(UXRegisterScript(engine), 0);
    EXPECT_NE(engine->GetTypeInfoByName("Tree"), nullptr);
    engine->ShutDownAndRelease();
    EXPECT_LT(UXRegisterScript(nullptr), 0);
}

TEST(ScriptEngine, RefusesAnEngineWithOtherStrings) {
    AngelScript::asIScriptEngine* engine = AngelScript::asCreateScriptEngine();
    engine->RegisterObjectType("string", 4, AngelScript::asOBJ_VALUE | AngelScript::asOBJ_POD);
    EXPECT_LT(UXRegisterScript(engine), 0);
    engine->ShutDownAndRelease();
}

// --- dialogues

TEST(ScriptDialogue, PrintsExpressionsAndKeepsDeclarations) {
    Script script;
    EXPECT_EQ(script.line("1 + 2"), "3\n");
    EXPECT_EQ(script.line("int q = 4;"), "");
    EXPECT_EQ(script.line("q"), "4\n");
    EXPECT_EQ(script.line("Tree t"), "");
    EXPECT_EQ(script.line("t.parse(\"<r><a>1</a></r>\")"), "");
    EXPECT_EQ(script.line("t"), "<r><a>1</a></r>\n");
    EXPECT_EQ(script.line("Tree@ a = t[\"a\"]"), "");
    EXPECT_EQ(script.line("a.value"), "1\n");
    EXPECT_EQ(script.line("array<int> b = {1, 2}"), "");
    EXPECT_EQ(script.line("b"), "[1, 2]\n");
    EXPECT_EQ(script.line("int f(int x) { return x + 1; }"), "");
    EXPECT_EQ(script.line("f(q)"), "5\n");
    EXPECT_EQ(script.line("for (int i = 0; i < 2; ++i) print(i);"), "0\n1\n");
    EXPECT_EQ(script.line("prnt(q)"),
              "line:1:1: error: No matching symbol 'prnt'; did you mean 'print'?\n");
    EXPECT_EQ(script.line("f(q)"), "5\n");
}

TEST(ScriptDialogue, StandsUnderTheLimits) {
    Script script;
    script.line("int f() { while (true) {} return 1; }");
    EXPECT_THAT(script.line("int x = f()", {.seconds = 0.05}), HasSubstr("stopped after"));
    EXPECT_THAT(script.line("f()", {.seconds = 0.05}), HasSubstr("stopped after"));
}

TEST(ScriptDialogue, CompletesNames) {
    Script script;
    script.line("Tree t");
    EXPECT_THAT(script.engine().names("uxtree_get_node_by_i"),
                testing::ElementsAre("uxtree_get_node_by_id"));
    EXPECT_THAT(script.engine().names("t.val"), testing::ElementsAre("t.valid", "t.value"));
}

}  // namespace uxtest
