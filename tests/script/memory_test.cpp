// Engines and scripts with one after another of their allocations failing. What the language
// allocates for itself, by malloc, does not fail: it does not check for that everywhere.
#include <cstdlib>
#include <optional>

#include <gmock/gmock.h>

#include "frame/memory/failing_new.h"
#include "script_support.h"
#include "support/test_tree.h"

namespace uxtest {
namespace {

constexpr long kEach = 40;  // so many fail one by one, of those behind every seventeenth

// Calls act() until none of its allocations fails any more; after each, check() is called.
template <typename Act, typename Check>
void fail_each_allocation(Act act, Check check) {
    long index = 0;
    do {
        SCOPED_TRACE("allocation " + std::to_string(index));
        failed = false;
        untilFailure = index;
        act();
        untilFailure = -1;
        check();
        index += index < kEach ? 1 : 17;
    } while (failed && !testing::Test::HasFailure());
    EXPECT_GT(index, 1) << "nothing was allocated";
}

const char* const kScripts[] = {
    // paths and texts
    R"(Tree t("a-root-of-a-name-that-is-no-short-text"); t.create("first/second").value = "one value, long enough";
    print(t.xml, t["first"].path, t.has("first/second"), t.find("first/second").value);
    t["first"].set_attribute("attribute", "of a length that takes memory");
    print(t["first"].attribute("attribute"), join(t["first"].attributes(), ", "), t["first"].label);)",
    // structure
    R"(Tree t("r"); t.add("child-of-the-first-kind", "1"); t.add_copy(t.child(0)); t.copy().remove_children();
    print(t.children().length(), t.walk("child-of-the-first-kind").length(), t.first.next.xml);
    t.first.remove(); t.first.tag = "another-name-that-takes-memory"; print(t.xml);)",
    // what a script catches
    R"(Tree t("r"); try { t["no/such/path/in/this/tree"].value = "1"; } catch { print(getExceptionInfo()); }
    try { t.parse("<r>a document that is broken</q>"); } catch { print(getExceptionInfo()); }
    print(t.xml);)",
    // texts
    R"(string s = "some text that is long enough"; s += " and more"; s.insert(4, " inserted text");
    print(s.substr(3, 30), formatFloat(1.5, "", 40, 3), formatInt(7, "0", 40), s + 1.5 + true);
    array<string>@ parts = s.split(" "); print(join(parts, "----------"), parts);
    text given = s; text same = given; print(given.otherwise("nothing at all that is short"), same == given);)",
    // entry points
    R"(Tree t; t.parse("<r><a DataID='3'>a value of some length</a><b DataID='4'>another such value</b></r>");
    array<int> ids; array<string> values; string err;
    print(uxtree_get_values_with_ids(t, ids, values, 1, 0, 0, none, 0, err), ids, values);
    tagDescStatResults statistics; print(statistics.N); dictionary d; d["key"] = 1;)",
    // the kit, and files
    R"(Tree t; t.parse("<r><a k='some text that is long'>t</a><a>another text, longer</a></r>");
    print(t.select("//a").length(), t.select_texts("//a/@k"));
    try { t.select("//a["); } catch { print(getExceptionInfo()); }
    try { read_file("a-file-of-which-there-is-none"); } catch { print("no file"); }
    print(files("a-pattern-of-which-there-is-none*").length());)",
};

std::string whole(const char* body) {
    return std::string("int main(array<string>@ args) {\n") + body + "\nreturn args.length(); }";
}

// An engine that keeps what its scripts print.
class Engine {
public:
    bool make() {
        UXScriptOptions options;
        options.print = [this](std::string_view text) { printed += text; };
        options.extend = UXRegisterScriptKit;
        engine.emplace(options);
        return engine->ready();
    }
    UXScriptOutcome run() {
        printed.clear();
        return engine->run_main(arguments, result);
    }

    std::string printed;
    std::optional<UXScriptEngine> engine;
    std::vector<std::string> arguments{"an argument that takes memory"};
    int result = 0;
};

class ScriptMemory : public testing::TestWithParam<const char*> {
protected:
    Engine engine_;
};

}  // namespace

TEST_P(ScriptMemory, EndsARunByAnException) {
    ASSERT_TRUE(engine_.make());
    ASSERT_TRUE(engine_.engine->compile("script", whole(GetParam()))) << engine_.engine->problem();
    ASSERT_EQ(engine_.run(), UXScriptOutcome::kDone) << engine_.engine->problem();
    const std::string printed = engine_.printed;
    int told = 0;
    UXScriptOutcome outcome{};
    fail_each_allocation(
        [&] { outcome = engine_.run(); },
        [&] {
            const std::string said = engine_.printed + engine_.engine->problem();
            const bool isWhole = outcome == UXScriptOutcome::kDone && said == printed;
            if (failed && !isWhole) {
                ++told;
                EXPECT_THAT(said, testing::HasSubstr("ut of memory"));
            } else {
                EXPECT_TRUE(isWhole) << said;
            }
            EXPECT_EQ(engine_.run(), UXScriptOutcome::kDone) << engine_.engine->problem();
            EXPECT_EQ(engine_.printed, printed);
            EXPECT_EQ(engine_.result, 1);
        });
    EXPECT_GT(told, 5);
}

TEST_P(ScriptMemory, CompilesAfterACompilationThatFailed) {
    ASSERT_TRUE(engine_.make());
    const std::string name = "a script of a name that takes memory";
    const std::string code = whole(GetParam());
    ASSERT_TRUE(engine_.engine->compile(name, code)) << engine_.engine->problem();
    ASSERT_EQ(engine_.run(), UXScriptOutcome::kDone) << engine_.engine->problem();
    const std::string printed = engine_.printed;
    bool compiled = false;
    fail_each_allocation(
        [&] { compiled = engine_.engine->compile(name, code); },
        [&] {
            EXPECT_TRUE(compiled || failed) << engine_.engine->problem();
            EXPECT_EQ(engine_.engine->problem().empty(), compiled) << engine_.engine->problem();
            EXPECT_TRUE(engine_.engine->compile(name, code)) << engine_.engine->problem();
            EXPECT_EQ(engine_.run(), UXScriptOutcome::kDone) << engine_.engine->problem();
            EXPECT_EQ(engine_.printed, printed);
        });
}
INSTANTIATE_TEST_SUITE_P(Each, ScriptMemory, testing::ValuesIn(kScripts));

TEST(UXScriptEngine, IsReadyWholeOrNotAtAllWhenMemoryRunsShort) {
    bool ready = false;
    Engine engine;
    fail_each_allocation([&] { ready = engine.make(); },
                         [&] {
                             EXPECT_TRUE(ready || failed);
                             EXPECT_EQ(engine.engine->problem().empty(), ready);
                             if (!ready) return;
                             EXPECT_TRUE(engine.engine->compile("s", whole(kScripts[5])))
                                 << engine.engine->problem();
                             EXPECT_EQ(engine.run(), UXScriptOutcome::kDone);
                         });
}

TEST(UXScriptEngine, GoesOnWithADialogueWhenMemoryRunsShort) {
    Engine engine;
    ASSERT_TRUE(engine.make());
    const TestTree tree("<r><a>a value that takes memory</a></r>");
    const std::string code =
        "void on(Tree@ t) { print(t.xml); } void a_function_of_a_long_name() {}";
    ASSERT_TRUE(engine.engine->compile("s", code));
    ASSERT_EQ(engine.engine->run_line("string text_of_mine = \"a text that takes memory\";"),
              UXScriptOutcome::kDone);
    const auto act = [&] {
        engine.printed.clear();
        const UXScriptOutcome ran = engine.engine->run_on("on", tree);
        const UXScriptOutcome said = engine.engine->run_line("text_of_mine + text_of_mine");
        const UXScriptOutcome wrong = engine.engine->run_line("text_of_min + text_of_mine");
        return std::vector<UXScriptOutcome>{ran, said, wrong};
    };
    std::vector<UXScriptOutcome> outcomes;
    const std::vector<UXScriptOutcome> expected = act();
    const std::string printed = engine.printed;
    EXPECT_THAT(expected, testing::ElementsAre(UXScriptOutcome::kDone, UXScriptOutcome::kDone,
                                               UXScriptOutcome::kNotCompiled));
    fail_each_allocation(
        [&] {
            try {
                outcomes = act();
            } catch (const std::bad_alloc&) {
                outcomes.clear();  // the list of them
            }
        },
        [&] {
            EXPECT_EQ(act(), expected);
            EXPECT_EQ(engine.printed, printed);
        });
    fail_each_allocation(
        [&] {
            engine.engine->functions();
            engine.engine->names("text_of_mine.");
            engine.engine->names("uxtree_get");
        },
        [&] {
            EXPECT_THAT(engine.engine->functions(),
                        testing::ElementsAre("a_function_of_a_long_name"));
            EXPECT_THAT(engine.engine->names("text_of_mine.is"),
                        testing::ElementsAre("text_of_mine.isEmpty"));
        });
}

}  // namespace uxtest
