// The type string of scripts: what the add-on of the language makes of texts, and numbers that read
// back.
#include <random>

#define AS_USE_NAMESPACE
#include <angelscript.h>
#include <angelscript/scriptarray.h>
#include <angelscript/scriptstdstring.h>

#include "gmock/gmock.h"
#include "script/script_support.h"
#include "support/test_tree.h"

namespace uxtest {
namespace {

namespace as = AngelScript;
using testing::HasSubstr;

// What an expression gives in an engine, as a text; or why it raised an exception.
std::string value_in(as::asIScriptEngine& engine, const std::string& expression) {
    as::asIScriptModule* module = engine.GetModule("test", as::asGM_ALWAYS_CREATE);
    const std::string code = "string f() { return \"\" + (" + expression + "); }";
    module->AddScriptSection("test", code.c_str(), code.size());
    if (module->Build() < 0) return "not compiled";
    as::asIScriptContext* context = engine.CreateContext();
    context->Prepare(module->GetFunctionByDecl("string f()"));
    std::string value;
    if (context->Execute() == as::asEXECUTION_FINISHED) {
        value = *static_cast<std::string*>(context->GetReturnObject());
    } else {
        value = std::string("exception: ") + context->GetExceptionString();
    }
    context->Release();
    return value;
}

class StringType : public testing::Test {
protected:
    StringType() : ours_(as::asCreateScriptEngine()), theirs_(as::asCreateScriptEngine()) {
        EXPECT_EQ(UXRegisterScript(ours_), 0);
        as::RegisterStdString(theirs_);
    }
    ~StringType() override {
        ours_->ShutDownAndRelease();
        theirs_->ShutDownAndRelease();
    }
    std::string ours(const std::string& expression) { return value_in(*ours_, expression); }

    as::asIScriptEngine* ours_;
    as::asIScriptEngine* theirs_;
};

}  // namespace

TEST_F(StringType, DoesWithTextsWhatTheAddOnDoes) {
    for (const char* expression : {
             "\"ab\" + \"cd\" + \"\" + \"e\\0f\"",
             "\"abc\".length() + \"\".length()",
             "\"\".isEmpty() && !\"a\".isEmpty()",
             "\"b\" == \"b\" && \"a\" != \"b\" && \"a\" < \"b\" && \"b\" >= \"ab\"",
             "\"abc\"[1]",
             "\"abc\"[3]",
             "\"abcdef\".substr(2)",
             "\"abcdef\".substr(2, 3)",
             "\"abcdef\".substr(6, 3) + \"abcdef\".substr(60) + \"abc\".substr(1, 0)",
             "\"abcabc\".findFirst(\"b\") * 100 + \"abcabc\".findFirst(\"b\", 2)",
             "\"abcabc\".findFirst(\"x\") * 100 + \"abc\".findFirst(\"a\", 9)",
             "\"abcabc\".findFirstOf(\"cb\") * 100 + \"abcabc\".findFirstNotOf(\"ab\")",
             "\"abcabc\".findLast(\"b\") * 100 + \"abcabc\".findLast(\"b\", 3)",
             "\"abcabc\".findLastOf(\"ab\", 2) * 100 + \"abcabc\".findLastNotOf(\"bc\")",
         }) {
        EXPECT_EQ(ours(expression), value_in(*theirs_, expression)) << expression;
    }
}

TEST_F(StringType, ChangesTextsAsTheAddOnDoes) {
    EXPECT_EQ(Script().body("string a = \"abc\"; a += \"d\"; a.insert(1, \"XY\"); print(a);"
                            "a.insert(6, \"!\"); a.erase(1, 2); print(a); a.erase(2); print(a);"
                            "a.resize(1); a[0] = 'z'; string b = a; b = b + b; print(a, b);"),
              "aXYbcd\nabcd!\nab\nz zz\n");
    EXPECT_THAT(Script().body("string a; a.insert(1, \"x\");"), HasSubstr("error: Out of range"));
    EXPECT_THAT(Script().body("string a; a.erase(1);"), HasSubstr("error: Out of range"));
    EXPECT_THAT(Script().body("string a; a[0] = 1;"), HasSubstr("error: Out of range"));
}

TEST_F(StringType, JoinsWithNumbersAsTheAddOnDoes) {
    for (const char* expression : {
             "1 + \"a\" + -2 + true + \"b\" + 3.5 + \"c\" + 0.25f",
             "9223372036854775807 + \"\" + int8(-5) + \"\" + uint8(200)",
             "uint64(18446744073709551615) + \"\" + false + \"\" + uint(4000000000)",
             "0.1 + \"\" + -0.0 + \"\" + 100000.0 + \"\" + 1e21 + \"\" + 1e-7",
             "0.1f + \"\" + 2.5f + \"\" + 100000.0f",
             "1.0 / 0.25 + \"\"",
         }) {
        EXPECT_EQ(ours(expression), value_in(*theirs_, expression)) << expression;
    }
    EXPECT_EQ(Script().body("string a; a = 5; a += 1.5; a += true; a += -1; print(a);"
                            "a = 2.5; a += uint64(7); print(a); a = false; print(a);"),
              "51.5true-1\n2.57\nfalse\n");
}

TEST_F(StringType, TakesNumbersOfEverySize) {
    EXPECT_EQ(Script().body("string a; a = int8(-5); print(a); a = int16(-300); print(a);"
                            "a = -2147483648; print(a); a = 2147483647; print(a); a = 0; print(a);"
                            "a = int64(-9223372036854775807); print(a); a = uint8(200); print(a);"
                            "a = uint16(65535); print(a); a = uint(4294967295); print(a);"
                            "a = uint64(18446744073709551615); print(a); a = 0.5f; print(a);"
                            "a = 'a'; print(a); a = \"a text of more than fifteen bytes\"; a = 7; "
                            "print(a); print(a = 1, a.length());"),
              "-5\n-300\n-2147483648\n2147483647\n0\n-9223372036854775807\n200\n65535\n"
              "4294967295\n18446744073709551615\n0.5\n97\n7\n1 1\n");
    EXPECT_EQ(
        Script().run("enum E { kOne = 1, kBig = 70000 }\n"
                     "void main() { string a; a = kBig; print(a); E e = kOne; a = e; print(a); }"),
        "70000\n1\n");
}

// Six digits, as the add-on has them, would change values on their way through a script.
TEST_F(StringType, WritesNumbersAsNodesDo) {
    EXPECT_EQ(ours("0.1"), "0.1");
    EXPECT_EQ(ours("1.0 / 3"), "0.3333333333333333");
    EXPECT_EQ(ours("0.1 + 0.2"), "0.30000000000000004");
    EXPECT_EQ(ours("1234567.0"), "1234567");
    EXPECT_EQ(ours("1.0f / 3"), "0.33333334");
    std::mt19937_64 random(7);
    std::string code = "Tree t(\"t\"); double x; string s;\n";
    for (int i = 0; i < 200; ++i) {
        const double value =
            std::ldexp(static_cast<double>(random() >> 11), static_cast<int>(random() % 120) - 100);
        char digits[40];
        std::snprintf(digits, sizeof digits, "%.17g", value);
        code += std::string("x = ") + digits +
                "; t.set_number(x); s = \"\" + x; if (s != t.value || str(x) != s || "
                "parseFloat(s) != x) print(s, t.value, str(x));\n";
    }
    EXPECT_EQ(Script().body(code), "");
}

TEST_F(StringType, FormatsNumbersAsTheAddOnDoes) {
    for (const char* number : {"0", "7", "-7", "123456", "-123456", "9223372036854775807"}) {
        for (const char* options : {"", "l", "0", "+", " ", "h", "H", "0h", "l+", "+0", "0 "}) {
            for (const char* width : {"", ", 4", ", 20"}) {
                const std::string arguments =
                    "(" + std::string(number) + ", \"" + options + "\"" + width + ")";
                EXPECT_EQ(ours("formatInt" + arguments),
                          value_in(*theirs_, "formatInt" + arguments));
                if (*number == '-') continue;
                EXPECT_EQ(ours("formatUInt" + arguments),
                          value_in(*theirs_, "formatUInt" + arguments));
            }
        }
    }
    for (const char* number : {"0.0", "2.5", "-3.14159265", "1e20", "-1e-9", "12345.678"}) {
        for (const char* options : {"", "l", "0", "+", " ", "e", "E", "0e", "l+"}) {
            for (const char* width : {"", ", 12", ", 12, 3", ", 0, 10"}) {
                const std::string call =
                    "formatFloat(" + std::string(number) + ", \"" + options + "\"" + width + ")";
                EXPECT_EQ(ours(call), value_in(*theirs_, call)) << call;
            }
        }
    }
    EXPECT_EQ(ours("formatFloat(1, \"\", 0, 20000)"),
              "exception: formatFloat: more than 10000 digits");
}

TEST_F(StringType, ParsesNumbersAsTheAddOnDoes) {
    for (const char* call :
         {"parseInt(\"123x\")", "parseInt(\"-45\")", "parseInt(\"+45\")", "parseInt(\"\")",
          "parseInt(\"x\")", "parseInt(\"-\")", "parseInt(\"ff\", 16)", "parseInt(\"FFg\", 16)",
          "parseUInt(\"18446744073709551615\")", "parseUInt(\"1e5\")", "parseFloat(\"1.5\")",
          "parseFloat(\" -2.5e3x\")", "parseFloat(\"+7\")", "parseFloat(\"\")",
          "parseFloat(\"abc\")", "parseFloat(\".5\")", "parseFloat(\"1e\")"}) {
        EXPECT_EQ(ours(call), value_in(*theirs_, call)) << call;
    }
    EXPECT_EQ(Script().body("uint n; int64 i = parseInt(\"12x\", 10, n); print(i, n);"
                            "i = parseInt(\"x\", 10, n); print(i, n);"
                            "double d = parseFloat(\" 1.5e2 \", n); print(d, n);"
                            "print(parseInt(\"101\", 2), parseInt(\"+-1\"), parseInt(\"+\"));"),
              "12 2\n0 0\n150 6\n5 0 0\n");
}

// A number that does not fit is none, rather than another one.
TEST_F(StringType, TakesNoNumberThatDoesNotFit) {
    EXPECT_EQ(Script().body("uint n; int64 i = parseInt(\"9223372036854775808\", 10, n);"
                            "print(i, n); i = parseUInt(\"-1\", 10, n); print(i, n);"
                            "double d = parseFloat(\"1e999\", n); print(d, n);"),
              "0 0\n0 0\n0 0\n");
    EXPECT_EQ(ours("parseInt(\"1\", 1)"), "exception: the base of a number is 2 to 36");
}

TEST_F(StringType, FitsTheAddOnsThatTakeTexts) {
    EXPECT_EQ(Script().body("array<string> a = \"b,a,c\".split(\",\"); a.sortAsc(); "
                            "print(join(a, \"-\"), a.find(\"c\"));"
                            "dictionary d = {{\"k\", \"v\"}}; print(string(d[\"k\"]));"),
              "a-b-c 2\nv\n");
}

TEST_F(StringType, SplitsAndJoins) {
    EXPECT_EQ(Script().body("print(\"a,,b,\".split(\",\"), \"\".split(\",\"), "
                            "\"a--b-c\".split(\"--\"), \"abc\".split(\"abc\"));"
                            "array<string> none; print(join(none, \",\").length(), "
                            "join({\"a\", \"\", \"b\"}, \"; \"));"
                            "string s; s.resize(1000000); print(s.split(\"x\").length(), "
                            "s.split(\"\\0\").length());"),
              "[a, , b, ] [] [a, b-c] [, ]\n0 a; ; b\n1 1000001\n");
    EXPECT_THAT(Script().body("string s; s.split(\"\");"),
                HasSubstr("error: split: the separator is empty"));
}

TEST_F(StringType, SharesConstantsBetweenEngines) {
    for (int i = 0; i < 3; ++i) {
        Script script;
        EXPECT_EQ(script.body("print(\"one\", \"one\" + \"two\", \"\");"), "one onetwo \n");
    }
}

}  // namespace uxtest
