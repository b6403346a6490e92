// What the compiler of scripts would not survive is refused, and what scripts have is not.
#include "gmock/gmock.h"
#include "script/script_support.h"
#include "support/small_stack.h"
#include "support/test_tree.h"

namespace uxtest {
namespace {

using testing::HasSubstr;
using testing::StartsWith;

struct Nested {
    const char* start;
    const char* open;
    const char* middle;
    const char* close;
};
std::string code_of(const Nested& nested, int depth) {
    return std::string("int f(int x) { return x; }\nvoid main() { ") + nested.start +
           repeated(nested.open, depth) + nested.middle + repeated(nested.close, depth) + "; }";
}

constexpr Nested kNested[] = {
    {"int x = ", "(", "1", ")"},
    {"", "{", "", "}"},
    {"int x = ", "f(", "1", ")"},
    {"array<int> a; int x = ", "a[", "0", "]"},
    {"int i = 0; ", "if (i == 1) ", "print(1)", ""},
    {"int i = 0; ", "if (i == 1) {} else ", "{}", ""},
    {"", "while (false) ", "{}", ""},
    {"", "for (;false;) ", "{}", ""},
    {"", "do ", "{}", " while (false);"},
    {"", "try {", "", "} catch {}"},
    {"int a; ", "a = ", "1", ""},
    {"int a = ", "true ? 1 : ", "1", ""},
    {"", "switch (1) { case 1: ", "", "}"},
};

// How deep it may be: the place of a refusal tells, and what is in the middle is a bracket at most.
int deepest(const Nested& nested) {
    const std::string said = Script().run(code_of(nested, 10000));
    const int column = std::stoi(said.substr(std::string("test.as:2:").size()));
    const std::string before = std::string("void main() { ") + nested.start;
    const std::string open = nested.open;
    return (column - 1 - static_cast<int>(before.size())) / static_cast<int>(open.size()) - 4;
}

}  // namespace

TEST(ScriptSources, AreRefusedWhenTheyAreNestedTooDeeply) {
    for (const Nested& each : kNested) {
        Script script;
        EXPECT_THAT(script.run(code_of(each, 150000)),
                    testing::AllOf(StartsWith("test.as:2:"), HasSubstr(": error: more than 200 ")))
            << each.open;
    }
}

TEST(ScriptSources, MayBeNestedAsFarAsAStackOfAMegabyteSurvives) {
    for (const Nested& each : kNested) {
        const int depth = deepest(each);
        EXPECT_GE(depth, 60) << each.open;
        UXScriptEngine engine;
        on_small_stack([&] { engine.compile("test.as", code_of(each, depth)); }, 1 << 20);
        EXPECT_EQ(engine.problem(), "") << each.open;
    }
}

TEST(ScriptSources, MayChooseAmongHundreds) {
    std::string code = "void main() { for (int i = 0; i < 760; i += 253) ";
    for (int i = 0; i < 780; ++i) {
        code += "if (i == " + std::to_string(i) + ") { print(" + std::to_string(i) + "); } else ";
    }
    EXPECT_EQ(Script().run(code + "{} }"), "0\n253\n506\n759\n");
}

TEST(ScriptSources, MayHaveMuchSideBySide) {
    const std::string many = repeated(
        "if (i == 1) { i = 2; } else if (i == 3) i = 4; else i = 5;\n"
        "while (i < 0) i = i < 3 ? 1 : i == 4 ? 2 : 3;\n"
        "{ int a = 1, b = 2, c = 3; a = b = c; }\n"
        "for (int k = 0; k < 2; ++k) f(f(i));\n",
        100);
    EXPECT_EQ(Script().run("int f(int x) { return x; }\nvoid main() { int i = 1;\n" + many +
                           "print(i); array<int> a = {1" + repeated(",1", 5000) +
                           "}; print(a.length()); print(1" + repeated("+1", 5000) + ");}"),
              "5\n5001\n5001\n");
}

TEST(ScriptSources, AreRefusedForTypesAndFunctionsInsideEachOther) {
    EXPECT_THAT(Script().body(repeated("array<", 13) + "int" + repeated(">", 13) + " a;"),
                StartsWith("test.as:2:78: error: more than 12 types inside each other\n"));
    EXPECT_THAT(Script().body("int" + repeated("[]", 100000) + " a;"),
                HasSubstr("error: more than 12 types inside each other\n"));
    EXPECT_THAT(
        Script().run("funcdef void F();\nvoid main() { F@ f = " +
                     repeated("function() { F@ f = ", 60) + "null" + repeated(";}", 60) + "; }"),
        StartsWith("test.as:2:"));
}

TEST(ScriptSources, AreRefusedForNamesThatNoMessageCouldHold) {
    const std::string name(2000, 'a');
    EXPECT_THAT(Script().body(name + "();"),
                StartsWith("test.as:2:1: error: a name of more than 100 bytes\n"));
    EXPECT_THAT(Script().body(repeated("a::", 1000) + "b();"),
                HasSubstr("error: names joined by :: of more than 250 bytes\n"));
    EXPECT_THAT(Script().body("f(1" + repeated(", 1", 1000) + ");"),
                HasSubstr("error: too many parameters or arguments"));
    EXPECT_THAT(
        Script().run("class " + std::string(90, 'C') + " {}\nvoid f(" + std::string(90, 'C') +
                     "@ c" + repeated(", int x", 15) + ") {}\nvoid main() {}"),
        StartsWith("test.as:2:"));
}

TEST(ScriptSources, AreRefusedWhenTheyAreTooLarge) {
    EXPECT_EQ(Script().run("void main() {}" + std::string(5 << 20, ' ')),
              "test.as: error: sources of more than 4 MB in all\n");
}

TEST(ScriptSources, IncludeEachFileOnce) {
    TemporaryFolder folder;
    folder.write("a.as", "#include \"./b.as\"\n#include \"main.as\"\nint a() { return 2; }");
    folder.write("b.as", "#include \"a.as\"\nint b() { return 3; }");
    const std::string path = folder.write(
        "main.as", "#include \"a.as\"\n#include \"b.as\"\nint main() { return a() * b(); }");
    UXScriptEngine engine;
    int result = 0;
    ASSERT_TRUE(engine.compile_file(path)) << engine.problem();
    EXPECT_EQ(engine.run_main({}, result), UXScriptOutcome::kDone);
    EXPECT_EQ(result, 6);
}

TEST(ScriptSources, AreRefusedForWhatTheyInclude) {
    TemporaryFolder folder;
    for (int i = 0; i < 60; ++i) {
        folder.write("f" + std::to_string(i) + ".as",
                     "#include \"f" + std::to_string(i + 1) + ".as\"\n");
    }
    folder.write("deep.as", "\nvoid f() { " + repeated("{", 300));
    UXScriptEngine engine;
    EXPECT_FALSE(engine.compile_file(folder.path("f0.as")));
    EXPECT_EQ(engine.problem(),
              folder.path("f50.as") + ": error: more than 50 files include each other\n");
    EXPECT_FALSE(engine.compile_file(folder.path("f20.as")));
    EXPECT_EQ(engine.problem(), folder.path("f60.as") + ": error: No such file or directory\n");
    EXPECT_FALSE(engine.compile_file(folder.write("main.as", "#include \"deep.as\"\n")));
    EXPECT_THAT(engine.problem(), StartsWith(folder.path("deep.as") + ":2:211: error: more than "));
    EXPECT_FALSE(engine.compile_file(folder.path("")));
    EXPECT_THAT(engine.problem(), HasSubstr("error: Is a directory\n"));
}

TEST(ScriptSources, OfADialogueAreCheckedLineByLine) {
    Script script;
    EXPECT_THAT(script.line(repeated("(", 100000)),
                StartsWith("line:1:201: error: more than 200 brackets"));
    EXPECT_EQ(script.outcome(), UXScriptOutcome::kNotCompiled);
    EXPECT_EQ(script.line("1 + 2"), "3\n");
}

}  // namespace uxtest
