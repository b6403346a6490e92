// What the door for C does that its sweep does not look at: results, errors and their places.
#include "uxtree/kit/c.h"

#include <cstdint>
#include <memory>
#include <stdexcept>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "uxtree/data/values.h"

#include "kit/c_last_error.h"
#include "support/test_tree.h"

namespace {

using uxtest::TemporaryFolder;

using NodePtr = std::unique_ptr<UXXmlWrapperBase, decltype(&ux_node_free)>;
using ArrayPtr = std::unique_ptr<UXScriptObject, decltype(&ux_array_free)>;
using StringPtr = std::unique_ptr<CStringUTF8, decltype(&ux_string_free)>;

NodePtr own(UXXmlWrapperBase* node) {
    return {node, &ux_node_free};
}
NodePtr parse(const std::string& xml) {
    return own(ux_load_memory(xml.data(), xml.size(), 0));
}
StringPtr text(const char* initial = "kept") {
    return {ux_string_new(initial), &ux_string_free};
}
ArrayPtr array(int kind) {
    return {ux_array_new(kind), &ux_array_free};
}
std::string xml_of(const NodePtr& node) {
    const StringPtr out = text();
    EXPECT_EQ(ux_node_xml(node.get(), out.get()), 1);
    return ux_string_text(out.get());
}

}  // namespace

TEST(ux_node_new, MakesTreesAndEmptyHandles) {
    EXPECT_EQ(xml_of(own(ux_node_new("a"))), "<a></a>");
    const NodePtr empty = own(ux_node_new(nullptr));
    ASSERT_NE(empty, nullptr);
    EXPECT_EQ(ux_node_valid(empty.get()), 0);
}

TEST(ux_load_memory, RefusesASizeThatNothingHas) {
    EXPECT_EQ(ux_load_memory("<r/>", SIZE_MAX, 0), nullptr);
    EXPECT_STREQ(ux_last_error(), "the size is larger than any memory");
}

TEST(ux_node_new, RefusesWhatIsNoElementName) {
    for (const char* tag : {"", "1", "a b", "<", "a\xFF"}) {
        EXPECT_EQ(ux_node_new(tag), nullptr) << tag;
        EXPECT_STRNE(ux_last_error(), "") << tag;
    }
}

TEST(ux_node_copy, MakesATreeOfItsOwn) {
    const NodePtr tree = parse("<r><a x='1'>t<b/></a></r>");
    const NodePtr inner = own(ux_node_new(nullptr));
    ASSERT_EQ(ux_node_child(tree.get(), "a", inner.get()), 1);
    const NodePtr copy = own(ux_node_copy(inner.get()));

    EXPECT_EQ(ux_node_set_value(copy.get(), "new"), 1);
    EXPECT_EQ(xml_of(copy), "<a x=\"1\">new<b></b></a>");
    EXPECT_EQ(xml_of(tree), "<r><a x=\"1\">t<b></b></a></r>");
    EXPECT_EQ(ux_node_parent(copy.get(), inner.get()), 0);
    EXPECT_EQ(ux_node_same(copy.get(), inner.get()), 0);
}

TEST(ux_load, SaysWhereAFileIsNotWellFormed) {
    const TemporaryFolder folder;
    const std::string path = folder.write("bad.xml", "<r>\n  <a></b>\n</r>");

    EXPECT_EQ(ux_load(path.c_str(), 0), nullptr);
    EXPECT_EQ(ux_last_error_line(), 2);
    EXPECT_GT(ux_last_error_column(), 0);
    EXPECT_THAT(ux_last_error(), testing::StartsWith(path + ":2:"));
    EXPECT_EQ(ux_node_valid(nullptr), 0);  // and any other call begins anew
    EXPECT_EQ(ux_last_error_line(), 0);
    EXPECT_STREQ(ux_last_error(), "");
}

TEST(ux_load, RefusesUnknownFlags) {
    const TemporaryFolder folder;
    const std::string path = folder.write("good.xml", "<r/>");
    const NodePtr tree = own(ux_load(path.c_str(), 0));

    ASSERT_NE(tree, nullptr);
    EXPECT_EQ(ux_load(path.c_str(), 0x80000000U), nullptr);
    EXPECT_STREQ(ux_last_error(), "unknown flags 2147483648");
    EXPECT_EQ(ux_save(tree.get(), path.c_str(), 0x80000000U), 0);
    EXPECT_EQ(ux_load_memory("<r/>", 4, 0x80000000U), nullptr);
}

TEST(ux_save, WritesAFileThatLoadsAgain) {
    const TemporaryFolder folder;
    const std::string path = folder.path("saved.xml");
    const NodePtr tree = parse("<r a='&lt;'> <b>\xC3\xA4</b></r>");

    EXPECT_EQ(ux_save(tree.get(), path.c_str(), 0), 1);
    EXPECT_EQ(xml_of(own(ux_load(path.c_str(), 0))), xml_of(tree));
    EXPECT_EQ(ux_save(tree.get(), (path + "/x").c_str(), 0), 0);
    EXPECT_STRNE(ux_last_error(), "");
}

namespace {

std::string bytes_of(const NodePtr& node, unsigned int flags) {
    const StringPtr out = text();
    EXPECT_EQ(ux_save_memory(node.get(), flags, out.get()), 1) << ux_last_error();
    return ux_string_text(out.get());
}
constexpr const char* kWritten = "<!-- c -->\n<r a='1' b=\"2\">\n <x/>\n</r>\n";

}  // namespace

TEST(ux_save, KeepsTheLayoutThatWasLoaded) {
    const TemporaryFolder folder;
    const std::string path = folder.write("people.xml", kWritten);
    const NodePtr tree = own(ux_load(path.c_str(), UX_LOAD_LAYOUT));
    ASSERT_NE(tree, nullptr);
    ASSERT_EQ(ux_node_set_attr(tree.get(), "a", "9"), 1);

    EXPECT_EQ(ux_save(tree.get(), path.c_str(), 0), 1);

    const NodePtr again = own(ux_load(path.c_str(), UX_LOAD_LAYOUT));
    EXPECT_EQ(bytes_of(again, 0), "<!-- c -->\n<r a='9' b=\"2\">\n <x/>\n</r>\n");
    EXPECT_EQ(ux_save(tree.get(), (path + "/x").c_str(), 0), 0);
    EXPECT_STRNE(ux_last_error(), "");
}

TEST(ux_save_memory, GivesTheFormThatIsAskedFor) {
    const std::string written = kWritten;
    const NodePtr tree = own(ux_load_memory(written.data(), written.size(), UX_LOAD_LAYOUT));
    const std::string plain =
        "<?xml version=\"1.0\" encoding=\"UTF-8\"?><r a=\"1\" b=\"2\"><x/></r>";

    EXPECT_EQ(bytes_of(tree, 0), written);
    EXPECT_EQ(bytes_of(own(ux_node_copy(tree.get())), 0), written);
    EXPECT_EQ(bytes_of(tree, UX_SAVE_PLAIN), plain);
    EXPECT_EQ(bytes_of(tree, UX_SAVE_INDENTED),
              "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<r a=\"1\" b=\"2\">\n  <x/>\n</r>\n");
    EXPECT_EQ(bytes_of(parse(written), 0), plain);
}

TEST(ux_save_memory, WritesNewIdsWhenItIsTold) {
    const std::string written = "<r>\n <x/>\n</r>\n";
    const NodePtr tree = own(ux_load_memory(written.data(), written.size(), UX_LOAD_LAYOUT));
    tree->SetID(7, false);

    EXPECT_EQ(bytes_of(tree, 0), written);
    EXPECT_EQ(bytes_of(tree, UX_SAVE_NO_IDS), written);
    EXPECT_EQ(bytes_of(tree, UX_SAVE_IDS), "<r _ux_id=\"7\">\n <x/>\n</r>\n");
    EXPECT_EQ(bytes_of(tree, UX_SAVE_INDENTED | UX_SAVE_NO_IDS),
              "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<r>\n  <x/>\n</r>\n");
}

TEST(ux_save_memory, RefusesFlagsThatExcludeEachOther) {
    const NodePtr tree = parse("<r/>");
    const StringPtr out = text();
    for (const unsigned int flags :
         {UX_SAVE_PLAIN | UX_SAVE_INDENTED | 0U, UX_SAVE_IDS | UX_SAVE_NO_IDS | 0U,
          UX_SAVE_PLAIN | UX_SAVE_NO_IDS | 0U, UX_SAVE_NO_IDS | 0U, 16U}) {
        EXPECT_EQ(ux_save_memory(tree.get(), flags, out.get()), 0) << flags;
        EXPECT_STRNE(ux_last_error(), "") << flags;
    }
    EXPECT_STREQ(ux_string_text(out.get()), "kept");
}

TEST(ux_node_child, FollowsAPathOfTags) {
    const NodePtr tree = parse("<r><a/><a><b>1</b></a><c><b>2</b></c></r>");
    const NodePtr out = own(ux_node_new(nullptr));

    EXPECT_EQ(ux_node_child(tree.get(), "c/b", out.get()), 1);
    EXPECT_EQ(xml_of(out), "<b>2</b>");
    EXPECT_EQ(ux_node_child(tree.get(), "", out.get()), 1);
    EXPECT_EQ(ux_node_same(tree.get(), out.get()), 1);
    EXPECT_EQ(ux_node_child(out.get(), "c", out.get()), 1);
    EXPECT_EQ(xml_of(out), "<c><b>2</b></c>");
    for (const char* path : {"a/b", "c/", "/c", "c//b", "/", "d"}) {
        EXPECT_EQ(ux_node_child(tree.get(), path, out.get()), 0) << path;
        EXPECT_EQ(xml_of(out), "<c><b>2</b></c>") << path;
    }
}

TEST(ux_node_child_at, CountsFromZero) {
    const NodePtr tree = parse("<r><a/><b/></r>");
    const NodePtr out = own(ux_node_new(nullptr));

    EXPECT_EQ(ux_node_count(tree.get()), 2);
    EXPECT_EQ(ux_node_child_at(tree.get(), 1, out.get()), 1);
    EXPECT_EQ(xml_of(out), "<b></b>");
    for (const int index : {-1, 2, 2147483647, -2147483647 - 1}) {
        EXPECT_EQ(ux_node_child_at(tree.get(), index, out.get()), 0) << index;
    }
    EXPECT_EQ(ux_node_parent(out.get(), out.get()), 1);
    EXPECT_EQ(ux_node_same(out.get(), tree.get()), 1);
}

TEST(ux_node_label, IsTheTagWithoutALabel) {
    const NodePtr tree = parse("<r Label=''><a Label='L'/></r>");
    const NodePtr child = own(ux_node_new(nullptr));
    const StringPtr out = text();

    EXPECT_EQ(ux_node_label(tree.get(), out.get()), 1);
    EXPECT_STREQ(ux_string_text(out.get()), "r");
    EXPECT_EQ(ux_node_child(tree.get(), "a", child.get()), 1);
    EXPECT_EQ(ux_node_label(child.get(), out.get()), 1);
    EXPECT_STREQ(ux_string_text(out.get()), "L");
}

TEST(ux_node_set_value, RefusesWhatXmlCannotHold) {
    const NodePtr tree = parse("<r>old</r>");
    for (const char* bad : {"\x01", "\xFF", "\xC0\x80", "a\xEF\xBF\xBF", "\xED\xA0\x80"}) {
        EXPECT_EQ(ux_node_set_value(tree.get(), bad), 0);
        EXPECT_EQ(ux_node_set_attr(tree.get(), "x", bad), 0);
        EXPECT_THAT(ux_last_error(), testing::HasSubstr(" at byte "));
    }
    EXPECT_EQ(xml_of(tree), "<r>old</r>");
    EXPECT_EQ(ux_node_set_value(tree.get(), "\t\n\xF0\x9F\x98\x80"), 1);
    EXPECT_EQ(ux_node_set_value(tree.get(), nullptr), 1);
    EXPECT_EQ(xml_of(tree), "<r></r>");
}

TEST(ux_node_set_attr, WritesAndRemoves) {
    const NodePtr tree = parse("<r/>");
    const StringPtr out = text();

    EXPECT_EQ(ux_node_set_attr(tree.get(), "x", ""), 1);
    EXPECT_EQ(ux_node_attr(tree.get(), "x", out.get()), 1);
    EXPECT_STREQ(ux_string_text(out.get()), "");
    EXPECT_EQ(ux_node_set_attr(tree.get(), "x", nullptr), 1);
    EXPECT_EQ(ux_node_set_attr(tree.get(), "x", nullptr), 1);
    EXPECT_EQ(ux_node_attr(tree.get(), "x", out.get()), 0);
    EXPECT_EQ(ux_node_set_attr(tree.get(), "1", "v"), 0);
    EXPECT_EQ(xml_of(tree), "<r></r>");
}

TEST(ux_node_add, AppendsAndRemoveTakesAway) {
    const NodePtr tree = parse("<r><a/></r>");
    const NodePtr added = own(ux_node_new(nullptr));

    EXPECT_EQ(ux_node_add(tree.get(), "b", added.get()), 1);
    EXPECT_EQ(ux_node_add(tree.get(), "c", nullptr), 1);
    EXPECT_EQ(ux_node_add(tree.get(), "", nullptr), 0);
    EXPECT_EQ(xml_of(tree), "<r><a></a><b></b><c></c></r>");
    EXPECT_EQ(ux_node_remove(added.get()), 1);
    EXPECT_EQ(ux_node_valid(added.get()), 0);
    EXPECT_EQ(ux_node_remove(added.get()), 0);
    EXPECT_EQ(xml_of(tree), "<r><a></a><c></c></r>");
}

TEST(ux_array_new, HoldsOneKindOfElements) {
    const ArrayPtr ints = array(UX_ARRAY_INTS);
    const ArrayPtr doubles = array(UX_ARRAY_DOUBLES);
    const ArrayPtr bools = array(UX_ARRAY_BOOLS);
    const ArrayPtr strings = array(UX_ARRAY_STRINGS);
    const int numbers[] = {3, -4};
    const double reals[] = {0.5};
    const bool flags[] = {true, false, true};

    EXPECT_EQ(ux_array_set_ints(ints.get(), numbers, 2), 1);
    EXPECT_EQ(ux_array_set_doubles(doubles.get(), reals, 1), 1);
    EXPECT_EQ(ux_array_set_bools(bools.get(), flags, 3), 1);
    EXPECT_EQ(ux_array_add_string(strings.get(), "x"), 1);
    EXPECT_EQ(ux_array_ints(ints.get())[1], -4);
    EXPECT_EQ(ux_array_doubles(doubles.get())[0], 0.5);
    EXPECT_TRUE(ux_array_bools(bools.get())[2]);
    EXPECT_STREQ(ux_array_string(strings.get(), 0), "x");
    EXPECT_EQ(ux_array_size(ints.get()), 2);
    EXPECT_EQ(ux_array_size(doubles.get()), 1);
    EXPECT_EQ(ux_array_size(bools.get()), 3);
    EXPECT_EQ(ux_array_size(strings.get()), 1);
    EXPECT_EQ(ux_array_set_ints(ints.get(), nullptr, 0), 1);
    EXPECT_EQ(ux_array_size(ints.get()), 0);
    UXScriptObject other;
    EXPECT_EQ(ux_array_size(&other), -1);
    EXPECT_STREQ(ux_last_error(), "the object is no array");
    EXPECT_EQ(ux_array_new(0), nullptr);
    EXPECT_EQ(ux_array_new(5), nullptr);
}

// The embedded host throws nothing but a shortage of memory; another one may.
TEST(ux_last_error, SaysThatTheHostFailed) {
    const int result = ux::kit::guarded(-5, []() -> int { throw std::runtime_error("inside"); });
    EXPECT_EQ(result, -5);
    EXPECT_STREQ(ux_last_error(), "the host failed");
    EXPECT_EQ(ux_node_new(""), nullptr);
    EXPECT_STRNE(ux_last_error(), "the host failed");
}

TEST(ux_describe, KnowsTheCodesOfEveryFamily) {
    EXPECT_STREQ(ux_code_name("uxtree_set_values_by_ids", -4), "duplicate_id");
    EXPECT_STREQ(ux_describe("uxtree_set_values_by_ids", -3),
                 "The arrays differ in length, or one is missing.");
    EXPECT_STREQ(ux_code_name("uxtree_set_values_by_ids", 17), "count");
    EXPECT_STREQ(ux_code_name("uxtree_find_node_ex", 0), "done");
    EXPECT_STREQ(ux_code_name("uxtree_find_node_ex", 4711), "not_found");
    EXPECT_STREQ(ux_code_name("uxtree_copy_values_by_id", -4711), "duplicate_id");
    EXPECT_STREQ(ux_code_name("uxtree_n42", -9093), "not_a_spectrum_file");
    EXPECT_STREQ(ux_code_name("uxtree_layout", 5), "no_memory");
    EXPECT_STREQ(ux_code_name("uxtree_xpath", 4), "bad_path");
    EXPECT_STREQ(ux_code_name("uxtree_XDE_prepare_XML", -2018), "not_well_formed");
    EXPECT_STREQ(ux_code_name("uxtree_combine_treenode_id_with_repeat_id", -2), "repeat_overlaps");
    EXPECT_STREQ(ux_code_name("ux_save", 0), "not_done");
}

TEST(ux_describe, YieldsNullForWhatNobodyReturns) {
    EXPECT_EQ(ux_describe("uxtree_layout", 4), nullptr);
    EXPECT_EQ(ux_describe("uxtree_no_such_function", 0), nullptr);
    EXPECT_EQ(ux_describe("", 0), nullptr);
    EXPECT_EQ(ux_describe("zzz", 0), nullptr);
    EXPECT_EQ(ux_describe("uxtree_clear_all_value", 0), nullptr);
    EXPECT_EQ(ux_code_name(nullptr, 0), nullptr);
}

namespace {

struct Found {
    int code = -9;
    std::string tag;
    int identifier = 7;
    int repeat = 7;
    bool operator==(const Found&) const = default;
};
void PrintTo(const Found& found, std::ostream* out) {
    *out << found.code << " " << found.tag << " " << found.identifier << " " << found.repeat;
}

Found problem_of(const std::string& xml, int setting) {
    const NodePtr tree = parse(xml);
    const NodePtr node = own(ux_node_new(nullptr));
    const StringPtr tag = text("");
    Found found;
    found.code = ux_values_problem(tree.get(), setting, nullptr, 0, node.get(), &found.identifier,
                                   &found.repeat);
    if (ux_node_valid(node.get()) == 1) ux_node_tag(node.get(), tag.get());
    found.tag = ux_string_text(tag.get());
    return found;
}

}  // namespace

TEST(ux_values_problem, NamesTheNodeAndItsIdentifier) {
    EXPECT_EQ(problem_of("<r><a RepeatID='3'><b RepeatID='2' DataID='5'/></a></r>", 1),
              (Found{1, "b", 5, 3}));
    EXPECT_EQ(problem_of("<r><a RepeatID='32767' DataID='4'/></r>", 1), (Found{2, "a", 4, 0}));
    EXPECT_EQ(problem_of("<r><a RepeatID='1'><b DataID='65536'/></a></r>", 1),
              (Found{3, "b", 65536, 1}));
    EXPECT_EQ(problem_of("<r><a DataID='16777216' RepeatNodeID='1'/></r>", 1),
              (Found{4, "a", 16777216, 0}));
    EXPECT_EQ(problem_of("<r><a DataID='1' RepeatNodeID='32767'/></r>", 1), (Found{5, "a", 1, 0}));
    EXPECT_EQ(problem_of("<r><a DataID='1'/></r>", 1), (Found{0, "", 7, 7}));
}

TEST(ux_values_problem, LooksAsCollectingOrAsSettingDoes) {
    const std::string two = "<r><a RepeatID='32767'/><b RepeatID='32767'/></r>";
    EXPECT_EQ(problem_of(two, 1).tag, "a");
    EXPECT_EQ(problem_of(two, 0).tag, "b");
    const std::string ignored = "<r><a TreeGetByIdIgnore='1' RepeatID='32767'/></r>";
    EXPECT_EQ(problem_of(ignored, 1).code, 2);
    EXPECT_EQ(problem_of(ignored, 0).code, 0);
    const std::string missing = "<r><a _ux_id='5'/></r>";
    EXPECT_EQ(problem_of(missing, 1).code, 0);
    EXPECT_EQ(problem_of(missing, 0), (Found{6, "a", -1, 0}));
}

// The text and the parts come from the same rules, whatever the tree.
TEST(ux_values_problem, AgreesWithTheTextsOfTheEntryPoints) {
    const ArrayPtr ids = array(UX_ARRAY_INTS);
    const ArrayPtr values = array(UX_ARRAY_STRINGS);
    const int id = 1;
    ux_array_set_ints(ids.get(), &id, 1);
    ux_array_add_string(values.get(), "v");
    int problems = 0;
    for (const char* outer : {"", "RepeatID='1'", "RepeatID='32767'", "TreeGetByIdIgnore='1'"}) {
        for (const char* inner :
             {"", "RepeatID='1'", "RepeatNodeID='32767'", "RepeatNodeID='1'", "_ux_id='5'"}) {
            for (const char* own : {"", "DataID='1'", "DataID='99999999'"}) {
                const std::string xml =
                    std::string("<r><a ") + outer + "><b " + inner + " " + own + ">t</b></a></r>";
                SCOPED_TRACE(xml);
                const NodePtr tree = parse(xml);
                const ArrayPtr gotIds = array(UX_ARRAY_INTS);
                const ArrayPtr got = array(UX_ARRAY_STRINGS);
                const StringPtr message = text("");
                uxtree_get_values_with_ids(tree.get(), gotIds.get(), got.get(), 1, 0, 0, nullptr, 0,
                                           message.get());
                const int collecting =
                    ux_values_problem(tree.get(), 0, nullptr, 0, nullptr, nullptr, nullptr);
                EXPECT_EQ(collecting != 0, ux_string_length(message.get()) > 0);
                const int code = uxtree_set_values_by_ids(tree.get(), ids.get(), values.get(), 0,
                                                          nullptr, 0, nullptr, nullptr);
                const int setting =
                    ux_values_problem(tree.get(), 1, nullptr, 0, nullptr, nullptr, nullptr);
                EXPECT_EQ(setting != 0, code == -5);
                problems += setting != 0 ? 1 : 0;
            }
        }
    }
    EXPECT_GT(problems, 10);
}
