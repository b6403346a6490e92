// Copies of values and attributes between trees, by place, by identifier, by tag.
#include "uxtree/data/copy.h"

#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "data/values_support.h"

namespace {

using uxtest::TestTree;
using uxtest::tree_text;

// --- homologous trees --------------------------------------------------------------------------

struct Homologous {
    int result;
    std::string tree;
    bool operator==(const Homologous& other) const {
        return result == other.result && tree == other.tree;
    }
};
std::ostream& operator<<(std::ostream& out, const Homologous& one) {
    return out << one.result << ' ' << one.tree;
}

Homologous copy_shape(const char* destination, const char* source, bool attributes = false,
                      const std::vector<std::string>& kept = {}, bool dynamic = false) {
    TestTree to(destination);
    TestTree from(source);
    UXXmlWrapperBase d = to;
    UXXmlWrapperBase s = from;
    CWBOStringArray names = uxtest::string_list(kept);
    const int result = vctree_copy_values_between_homologous_trees(
        d, s, attributes ? 1 : 0, kept.empty() ? nullptr : &names, dynamic ? 1 : 0);
    EXPECT_TRUE(d == to);
    EXPECT_TRUE(s == from);
    EXPECT_EQ(from.text(), tree_text(source));
    return {result, to.text()};
}
Homologous shape(int result, const char* xml) {
    return {result, tree_text(xml)};
}

TEST(vctree_copy_values_between_homologous_trees, CopiesValuesByPlaceWhateverTheTags) {
    EXPECT_EQ(copy_shape("<r><a>o</a><b>o<c>o</c><d>o</d></b><e>o</e></r>",
                         "<R><x>1</x><y>own<z>2</z><w/></y><v>3</v></R>"),
              shape(0, "<r><a>1</a><b>o<c>2</c><d/></b><e>3</e></r>"));
}

TEST(vctree_copy_values_between_homologous_trees, CopiesTheUseOfBranches) {
    EXPECT_EQ(copy_shape("<r><a Use='0'><c/></a><b Use='0'><c/></b></r>",
                         "<r><a Use='1'><c/></a><b><c/></b></r>"),
              shape(0, "<r><a Use='1'><c/></a><b Use='0'><c/></b></r>"));
}

TEST(vctree_copy_values_between_homologous_trees, GoesOnToTheSiblingsOfTheGivenNodes) {
    TestTree to("<r><a>o</a><b>o</b><c>o</c></r>");
    TestTree from("<r><a>1</a><b>2</b><c>3</c></r>");
    UXXmlWrapperBase d = to.at("b");
    UXXmlWrapperBase s = from.at("b");

    EXPECT_EQ(vctree_copy_values_between_homologous_trees(d, s, 0, nullptr, 0), 0);
    EXPECT_EQ(to.text(), tree_text("<r><a>o</a><b>2</b><c>3</c></r>"));
}

TEST(vctree_copy_values_between_homologous_trees, YieldsOneAtTheFirstLevelThatRunsOut) {
    EXPECT_EQ(copy_shape("<r><a>o</a></r>", "<r><a>1</a><b>2</b></r>"),
              shape(1, "<r><a>1</a></r>"));
    EXPECT_EQ(
        copy_shape("<r><a><b>o</b></a><c>o</c></r>", "<r><a><b>1</b><b>2</b></a><c>3</c></r>"),
        shape(1, "<r><a><b>1</b></a><c>o</c></r>"));
    EXPECT_EQ(copy_shape("<r><a/><c>o</c></r>", "<r><a Use='1'><b>1</b></a><c>2</c></r>"),
              shape(1, "<r><a Use='1'/><c>o</c></r>"));
}

TEST(vctree_copy_values_between_homologous_trees, LeavesASurplusOfTheDestinationAlone) {
    EXPECT_EQ(copy_shape("<r><a><b>o</b><b>o</b></a><c>o</c><d>o</d></r>",
                         "<r><a><b>1</b></a><c>2</c></r>"),
              shape(0, "<r><a><b>1</b><b>o</b></a><c>2</c><d>o</d></r>"));
    EXPECT_EQ(copy_shape("<r><a>o<b>o</b></a><c>o</c></r>", "<r><a>1</a><c>2</c></r>"),
              shape(0, "<r><a>1<b>o</b></a><c>2</c></r>"));
}

TEST(vctree_copy_values_between_homologous_trees, CopiesAttributesExceptKeptOnesThatAreNotEmpty) {
    EXPECT_EQ(copy_shape("<r><a Label='mine' Tip='' x='o'>o</a><a>o</a></r>",
                         "<r><a Label='L' Tip='T' Help='H'>1</a><a Label='M'>2</a></r>", true,
                         {"Label", "Tip", "Help", ""}),
              shape(0, "<r><a Label='mine' Tip='T' x='o' Help='H'>1</a><a Label='M'>2</a></r>"));
    EXPECT_EQ(copy_shape("<r><a Label='mine'/></r>", "<r><a Label='L'/></r>", true),
              shape(0, "<r><a Label='L'/></r>"));
}

TEST(vctree_copy_values_between_homologous_trees, CarriesLeadingSettingsWithoutAttributes) {
    EXPECT_EQ(copy_shape("<r><a DynaFx='old' x='o'>o</a><a DynaFx='old'>o</a></r>",
                         "<r><a Auto='1' DynaFx='f' y='1'>1</a><a>2</a></r>"),
              shape(0, "<r><a DynaFx='f' x='o' Auto='1'>1</a><a>2</a></r>"));
}

TEST(vctree_copy_values_between_homologous_trees, ChecksDynamicSettingsOfTheFirstPairOnly) {
    EXPECT_EQ(copy_shape("<r Auto='1|n|2' DynaUseChck='0'><a Auto='1|n|2' DynaUseChck='0'/></r>",
                         "<r><a>x</a></r>", false, {}, true),
              shape(0,
                    "<r Auto='0|n|2' DynaUseChck='1'><a Auto='1|n|2' DynaUseChck='0'>x</a>"
                    "</r>"));
}

TEST(vctree_copy_values_between_homologous_trees, ComparesTheEndsOfInvalidNodes) {
    TestTree tree("<r>o</r>");
    UXXmlWrapperBase invalid;

    EXPECT_EQ(vctree_copy_values_between_homologous_trees(invalid, tree, 1, nullptr, 0), 1);
    EXPECT_EQ(vctree_copy_values_between_homologous_trees(invalid, invalid, 1, nullptr, 0), 0);
    EXPECT_EQ(vctree_copy_values_between_homologous_trees(tree, invalid, 1, nullptr, 0), 0);
    EXPECT_EQ(tree.text(), tree_text("<r>o</r>"));
}

// --- by identifier -----------------------------------------------------------------------------

struct CopyOptions {
    int themeFlag = 0;
    int validateOff = 0;
    int skipEmpty = 0;
    int useFlag = 0;
    int themeOff = 0;
    const char* sourceAttribute = nullptr;
    const char* destinationAttribute = nullptr;
};
Homologous copy_ids(const char* source, const char* destination, const CopyOptions& how = {}) {
    TestTree from(source);
    TestTree to(destination);
    const int result = uxtree_copy_values_by_id(
        &from, &to, 0, how.sourceAttribute, how.destinationAttribute, how.themeFlag,
        how.validateOff, how.skipEmpty, how.useFlag, how.themeOff);
    EXPECT_EQ(from.text(), tree_text(source));
    return {result, to.text()};
}

TEST(uxtree_copy_values_by_id, CarriesValuesByIdentifier) {
    EXPECT_EQ(copy_ids("<r><g RepeatID='1'><a DataID='1'>x</a></g><a DataID='2'>y</a>"
                       "<b DataID='3' Use='0'><c/></b></r>",
                       "<q><c DataID='2'/><h RepeatID='1'><k><a DataID='1'/></k></h>"
                       "<b DataID='3'><c/></b><d DataID='4'>o</d></q>"),
              shape(3,
                    "<q><c DataID='2'>y</c><h RepeatID='1'><k><a DataID='1'>x</a></k></h>"
                    "<b DataID='3' Use='0'><c/></b><d DataID='4'>o</d></q>"));
}

TEST(uxtree_copy_values_by_id, UsesTheNamedIdentifierAttributes) {
    CopyOptions how;
    how.sourceAttribute = "From";
    how.destinationAttribute = "To";

    EXPECT_EQ(copy_ids("<r><a From='1' DataID='9'>x</a></r>",
                       "<r><a To='1'>o</a><a DataID='1'>o</a></r>", how),
              shape(1, "<r><a To='1'>x</a><a DataID='1'>o</a></r>"));
}

TEST(uxtree_copy_values_by_id, SkipsEmptyValuesOnRequest) {
    const char* const source = "<r><a DataID='1'/><a DataID='2'>y</a><a DataID='3'/></r>";
    const char* const target = "<r><a DataID='1'>o</a><a DataID='2'>o</a><a DataID='3'>o</a></r>";
    CopyOptions skip;
    skip.skipEmpty = 1;

    EXPECT_EQ(copy_ids(source, target),
              shape(3, "<r><a DataID='1'/><a DataID='2'>y</a><a DataID='3'/></r>"));
    EXPECT_EQ(copy_ids(source, target, skip),
              shape(1, "<r><a DataID='1'>o</a><a DataID='2'>y</a><a DataID='3'>o</a></r>"));
    EXPECT_EQ(copy_ids("<r><a DataID='1'/></r>", target, skip), shape(-2, target));
}

TEST(uxtree_copy_values_by_id, SkipsEmptyValuesBeforeLookingForDuplicates) {
    CopyOptions skip;
    skip.skipEmpty = 1;

    EXPECT_EQ(copy_ids("<r><a DataID='9'/><a DataID='9'>x</a></r>", "<r><a DataID='9'/></r>", skip),
              shape(1, "<r><a DataID='9'>x</a></r>"));
}

TEST(uxtree_copy_values_by_id, YieldsANegatedDuplicateAndWritesNothing) {
    const char* const target = "<r><a DataID='9'>o</a></r>";

    EXPECT_EQ(copy_ids("<r><a DataID='9'>x</a><a DataID='9'>y</a></r>", target), shape(-9, target));
    EXPECT_EQ(copy_ids("<r><a DataID='5'>x</a><a DataID='5'>y</a></r>", target), shape(-5, target));
    EXPECT_EQ(copy_ids("<r><a DataID='0'>x</a><a DataID='0'>y</a></r>", target), shape(-4, target));
}

TEST(uxtree_copy_values_by_id, YieldsTheCodesOfSetting) {
    EXPECT_EQ(copy_ids("<r><a>x</a></r>", "<r><a DataID='9'>o</a></r>"),
              shape(0, "<r><a DataID='9'>o</a></r>"));
    EXPECT_EQ(copy_ids("<r><a DataID='1'>x</a></r>",
                       "<r><a DataID='1'/><g RepeatID='32767'/><a DataID='1'/></r>"),
              shape(-5, "<r><a DataID='1'>x</a><g RepeatID='32767'/><a DataID='1'/></r>"));
}

TEST(uxtree_copy_values_by_id, TakesLeavesFromTheirUseOnRequest) {
    CopyOptions how;
    how.useFlag = 1;

    EXPECT_EQ(copy_ids("<r><a DataID='1' Use='0'>x</a></r>", "<r><a DataID='1'/></r>", how),
              shape(1, "<r><a DataID='1'>0</a></r>"));
}

TEST(uxtree_copy_values_by_id, CollectsBranchesWithoutUseUnderTheThemeFlag) {
    CopyOptions how;
    how.themeFlag = 1;
    const char* const source = "<r><b DataID='1'><c/></b></r>";

    EXPECT_EQ(copy_ids(source, "<r><a DataID='1'>o</a></r>", how),
              shape(1, "<r><a DataID='1'>-1</a></r>"));
    EXPECT_EQ(copy_ids(source, "<r><a DataID='1'>o</a></r>"),
              shape(0, "<r><a DataID='1'>o</a></r>"));
}

TEST(uxtree_copy_values_by_id, SwitchesValidationAndThemeHandlingOff) {
    uxtest::FakeHostServices services;
    services->validateValue = [](UXXmlWrapperBase&, const CStringUTF8&) { return false; };
    const char* const source = "<r><g RepeatID='32'><a DataID='1'>x</a></g></r>";
    const char* const target =
        "<r><g RepeatID='32' ThemeApplicability='1310720'><a DataID='1'/></g></r>";
    CopyOptions unchecked;
    unchecked.validateOff = 1;
    CopyOptions plain = unchecked;
    plain.themeOff = 1;

    EXPECT_EQ(copy_ids(source, target), shape(0, target));
    EXPECT_EQ(copy_ids(source, target, unchecked),
              shape(1,
                    "<r><g RepeatID='32' ThemeApplicability='1310720'>"
                    "<a DataID='1' Data='x'/></g></r>"));
    EXPECT_EQ(copy_ids(source, target, plain),
              shape(1,
                    "<r><g RepeatID='32' ThemeApplicability='1310720'><a DataID='1'>x</a>"
                    "</g></r>"));
}

TEST(uxtree_copy_values_by_id, CopiesATreeOntoItself) {
    TestTree tree("<r><a DataID='1' DynaFx='f'>x</a><b DataID='2' Use='0'><c/></b></r>");

    EXPECT_EQ(uxtree_copy_values_by_id(&tree, &tree, 0, nullptr, nullptr, 1, 0, 0, 0, 0), 2);
    EXPECT_EQ(tree.text(),
              tree_text("<r><a DataID='1' DynaFx='f'>x</a><b DataID='2' Use='0'><c/></b></r>"));
}

struct NestedWatch : _SETVALUESBYIDS {
    UXXmlWrapperBase source;
    UXXmlWrapperBase destination;
    int calls = 0;
};

TEST(vctree_copy_values_by_id, ArmsAWatchWhateverStateItWasLeftIn) {
    TestTree from("<r><a DataID='1'>x</a></r>");
    TestTree to("<r><a DataID='1'/></r>");
    NestedWatch watch;
    watch.callback = [](_SETVALUESBYIDS* record) {
        ++static_cast<NestedWatch*>(record)->calls;
        *record->value += "!";
    };
    watch.id = 1;
    watch.inProgress = 1;  // as a copy that was left by an exception would leave it

    EXPECT_EQ(vctree_copy_values_by_id(&from, &to, 0, nullptr, nullptr, 0, &watch, 0, 0, 0, 0), 1);
    EXPECT_EQ(watch.calls, 1);
    EXPECT_EQ(watch.inProgress, 0);
    EXPECT_EQ(to.text(), tree_text("<r><a DataID='1'>x!</a></r>"));
}

TEST(vctree_copy_values_by_id, ArmsTheSameWatchAgainInANestedCopy) {
    TestTree from("<r><a DataID='1'>x</a></r>");
    TestTree to("<r><a DataID='1'/></r>");
    TestTree inner("<r><a DataID='1'/></r>");
    NestedWatch watch;
    watch.source = from;
    watch.destination = inner;
    watch.id = 1;
    watch.inProgress = 0;
    watch.callback = [](_SETVALUESBYIDS* record) {
        NestedWatch& nested = *static_cast<NestedWatch*>(record);
        if (++nested.calls > 1) return;
        vctree_copy_values_by_id(&nested.source, &nested.destination, 0, nullptr, nullptr, 0,
                                 record, 0, 0, 0, 0);
    };

    EXPECT_EQ(vctree_copy_values_by_id(&from, &to, 0, nullptr, nullptr, 0, &watch, 0, 0, 0, 0), 1);
    EXPECT_EQ(watch.calls, 2);
    EXPECT_EQ(to.text(), tree_text("<r><a DataID='1'>x</a></r>"));
    EXPECT_EQ(inner.text(), tree_text("<r><a DataID='1'>x</a></r>"));
}

// --- whole copy --------------------------------------------------------------------------------

Homologous copy_whole(const char* source, const char* destination) {
    TestTree from(source);
    TestTree to(destination);
    const int result = uxtree_whole_copy_values_by_id(&from, &to);
    return {result, to.text()};
}

TEST(uxtree_whole_copy_values_by_id, AppendsMissingNodesFlatAtTheTopLevel) {
    EXPECT_EQ(copy_whole("<r DataID='9' Label='R'><b DataID='1' Label='L'><a DataID='2' x='1'>x</a>"
                         "<a DataID='3'>y</a></b><c>no id</c></r>",
                         "<q><k><a DataID='3'>o</a></k></q>"),
              shape(3,
                    "<q><k><a DataID='3'>y</a></k><r Label='R' DataID='9'/>"
                    "<b Label='L' DataID='1'>-1</b><a DataID='2'>x</a></q>"));
}

TEST(uxtree_whole_copy_values_by_id, CountsAnEqualIdAsPresent) {
    EXPECT_EQ(copy_whole("<r><a DataID='5'>x</a></r>", "<q><k _ux_id='5'/></q>"),
              shape(0, "<q><k _ux_id='5'/></q>"));
}

TEST(uxtree_whole_copy_values_by_id, AppendsAnIdentifierOnceOnly) {
    EXPECT_EQ(copy_whole("<r><a DataID='5'>x</a><b DataID='5'>y</b></r>", "<q/>"),
              shape(-5, "<q><a DataID='5'/></q>"));
}

TEST(uxtree_whole_copy_values_by_id, CompletesATreeFromItself) {
    TestTree tree("<r DataID='9'><a DataID='1'>x</a></r>");

    EXPECT_EQ(uxtree_whole_copy_values_by_id(&tree, &tree), 2);
    EXPECT_EQ(tree.text(), tree_text("<r DataID='9'><a DataID='1'>x</a><r DataID='9'/></r>"));
}

// --- attributes by identifier ------------------------------------------------------------------

Homologous copy_atts(const char* source, const char* destination, const char* attribute,
                     const char* second, int rename = 0) {
    TestTree from(source);
    TestTree to(destination);
    const int result =
        uxtree_copy_atts_by_id(&from, &to, attribute, nullptr, nullptr, second, rename);
    return {result, to.text()};
}

TEST(uxtree_copy_atts_by_id, CopiesOneAttributeAndYieldsZero) {
    EXPECT_EQ(
        copy_atts("<r><a DataID='1' P='p'>x</a><a DataID='2'/><b DataID='3' P='q'><c/></b>"
                  "</r>",
                  "<r><a DataID='1'>o</a><a DataID='2' P='o'/><k DataID='3'/></r>", "P", nullptr),
        shape(0,
              "<r><a DataID='1' P='p'>o</a><a DataID='2' P='o'/><k DataID='3' P='q'/>"
              "</r>"));
}

TEST(uxtree_copy_atts_by_id, RemovesAnAttributeOnlyWhereTheOtherOneIsGiven) {
    EXPECT_EQ(copy_atts("<r><a DataID='1' P='p'/><a DataID='2' Q='q'/><a DataID='3'/></r>",
                        "<r><a DataID='1' P='o' Q='o'/><a DataID='2' P='o' Q='o'/>"
                        "<a DataID='3' P='o' Q='o'/></r>",
                        "P", "Q"),
              shape(0,
                    "<r><a DataID='1' P='p'/><a DataID='2' Q='q'/>"
                    "<a DataID='3' P='o' Q='o'/></r>"));
}

TEST(uxtree_copy_atts_by_id, RenamesOnRequest) {
    EXPECT_EQ(copy_atts("<r><a DataID='1' P='p' Q='q'/></r>", "<r><a DataID='1' P='o'/></r>", "P",
                        "Q", 1),
              shape(0, "<r><a DataID='1' P='o' Q='p'/></r>"));
    EXPECT_EQ(copy_atts("<r><a DataID='1' P='p'/></r>", "<r><a DataID='1' P='o'/></r>", "P", "", 1),
              shape(0, "<r><a DataID='1' P='o'/></r>"));
}

TEST(uxtree_copy_atts_by_id, CopiesTheSecondAttributeAlone) {
    EXPECT_EQ(copy_atts("<r><a DataID='1' Q='q'/></r>", "<r><a DataID='1'/></r>", nullptr, "Q"),
              shape(0, "<r><a DataID='1' Q='q'/></r>"));
    EXPECT_EQ(copy_atts("<r><a DataID='1' Q='q'/></r>", "<r><a DataID='1'/></r>", "", nullptr),
              shape(0, "<r><a DataID='1'/></r>"));
}

TEST(uxtree_copy_atts_by_id, YieldsANegatedDuplicate) {
    const char* const target = "<r><a DataID='9'/></r>";

    EXPECT_EQ(copy_atts("<r><a DataID='9' P='1'/><a DataID='9' P='2'/></r>", target, "P", nullptr),
              shape(-9, target));
    EXPECT_EQ(copy_atts("<r><a DataID='0' P='1'/><a DataID='0' P='2'/></r>", target, "P", nullptr),
              shape(0, target));
}

// --- identifiers by tag name -------------------------------------------------------------------

Homologous copy_tags(const char* source, const char* destination, bool leavesOnly = false) {
    TestTree from(source);
    TestTree to(destination);
    const int result = uxtree_copy_ids_by_tagname(&from, &to, leavesOnly);
    return {result, to.text()};
}

TEST(uxtree_copy_ids_by_tagname, GivesIdentifiersToTheFirstNodeOfEachTag) {
    EXPECT_EQ(copy_tags("<r DataID='9'><A DataID='1'/><b DataID='2'><c DataID='3'/></b><x/></r>",
                        "<B><r/><a/><a/><c><X/></c></B>"),
              shape(4,
                    "<B DataID='2'><r/><a DataID='1'/><a/><c DataID='3'><X DataID='0'/></c>"
                    "</B>"));
}

TEST(uxtree_copy_ids_by_tagname, TakesTheFirstMatchEachTime) {
    EXPECT_EQ(copy_tags("<r><a DataID='1'/><a DataID='2'/></r>", "<q><a/><a/></q>"),
              shape(2, "<q><a DataID='2'/><a/></q>"));
}

TEST(uxtree_copy_ids_by_tagname, LooksAtLeavesOnlyOnRequest) {
    EXPECT_EQ(copy_tags("<r><a DataID='1'><b DataID='2'/></a><c DataID='3'/></r>",
                        "<a><c><x/></c><k><c/><b/><a/></k></a>", true),
              shape(2, "<a><c><x/></c><k><c DataID='3'/><b DataID='2'/><a/></k></a>"));
}

}  // namespace
