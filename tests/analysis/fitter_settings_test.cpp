// The lists of parameter settings in a fitter's tree.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "uxtree/analysis/fitter.h"

#include "analysis/fitter_detail.h"
#include "support/test_tree.h"

namespace {

using testing::ElementsAre;
using uxtest::TestTree;
using uxtest::to_text;
using uxtest::tree_text;

struct ListRow {
    const char* tag;
    int base;
};
constexpr ListRow kLists[] = {{"Share", 5000},
                              {"Fixed", 6000},
                              {"FixedValues", 15000},
                              {"LowerBounds", 7000},
                              {"LowerBoundsExclusive", 8000},
                              {"LowerBoundsEnable", 9000},
                              {"UpperBounds", 10000},
                              {"UpperBoundsExclusive", 11000},
                              {"UpperBoundsEnable", 12000},
                              {"Values", 13000},
                              {"SignificantDigit", 14000},
                              {"Format", 16000},
                              {"CustomDisplay", 18000}};

// The whole settings branch for a number of parameters.
std::string settings_text(const std::string& tag, int count) {
    std::string text = "<" + tag +
                       " DataID=\"2900\"><AutoParamsInit DataID=\"2906\"></AutoParamsInit>"
                       "<LinearConstraints DataID=\"2907\"></LinearConstraints>"
                       "<UseInitialFormula DataID=\"2908\" DataIDAssignDelay=\"10\">"
                       "</UseInitialFormula>";
    for (const ListRow& list : kLists) {
        text += std::string("<") + list.tag + " DataID=\"" + std::to_string(list.base) + "\">";
        for (int k = 1; k <= count; ++k) {
            const std::string value = "Value" + std::to_string(k);
            text +=
                "<" + value + " DataID=\"" + std::to_string(list.base + k) + "\"></" + value + ">";
        }
        text += std::string("</") + list.tag + ">";
    }
    return text + "</" + tag + ">";
}

TEST(uxtree_nlsf_add_params_node_DataID, MakesEveryListInItsOrder) {
    TestTree params("<p/>");
    uxtree_nlsf_add_params_node_DataID(&params, 3);
    EXPECT_EQ(params.text(), settings_text("p", 3));
}

TEST(uxtree_nlsf_add_params_node_DataID, TrimsAndExtendsTheListsThatAreThere) {
    TestTree params("<p/>");
    uxtree_nlsf_add_params_node_DataID(&params, 3);
    uxtree_nlsf_add_params_node_DataID(&params, 2);
    EXPECT_EQ(params.text(), settings_text("p", 2));
    uxtree_nlsf_add_params_node_DataID(&params, 4);
    EXPECT_EQ(params.text(), settings_text("p", 4));
}

TEST(uxtree_nlsf_add_params_node_DataID, ACountBelowZeroIsZero) {
    TestTree params("<p/>");
    uxtree_nlsf_add_params_node_DataID(&params, -5);
    EXPECT_EQ(params.text(), settings_text("p", 0));
    uxtree_nlsf_add_params_node_DataID(&params, 1);
    uxtree_nlsf_add_params_node_DataID(&params, -1);
    EXPECT_EQ(params.text(), settings_text("p", 0));
}

TEST(uxtree_nlsf_add_params_node_DataID, AnInvalidNodeBecomesANewTree) {
    UXXmlWrapperBase params;
    uxtree_nlsf_add_params_node_DataID(&params, 1);
    EXPECT_EQ(to_text(params), settings_text("root", 1));
}

TEST(uxtree_nlsf_add_params_node_DataID, ListsAreFoundByDataIdWhateverTheirTag) {
    TestTree params("<p><mine DataID='5000'><other DataID='5002'>x</other></mine><Share/></p>");
    uxtree_nlsf_add_params_node_DataID(&params, 2);
    EXPECT_EQ(to_text(params.at("mine")),
              tree_text("<mine DataID='5000'><other DataID='5002'>x</other>"
                        "<Value1 DataID='5001'/></mine>"));
    EXPECT_EQ(to_text(params.at("Share")), tree_text("<Share/>"));
}

TEST(uxtree_nlsf_add_params_node_DataID, ListsAreNotFoundBelowOtherNodes) {
    TestTree params("<p><x><Share DataID='5000'/></x></p>");
    uxtree_nlsf_add_params_node_DataID(&params, 0);
    EXPECT_EQ(to_text(params.at("Share")), tree_text("<Share DataID='5000'/>"));
}

TEST(uxtree_nlsf_add_params_node_DataID, SwitchesThatAreThereGetTheirIdentifiers) {
    TestTree params("<p><UseInitialFormula DataID='1'>1</UseInitialFormula></p>");
    uxtree_nlsf_add_params_node_DataID(&params, 0);
    EXPECT_EQ(
        to_text(params.at("UseInitialFormula")),
        tree_text("<UseInitialFormula DataID='2908' DataIDAssignDelay='10'>1</UseInitialFormula>"));
}

TEST(uxtree_nlsf_add_params_node_DataID, ManyParametersTakeLinearTime) {
    TestTree params("<p/>");
    constexpr int kMany = 20000;
    uxtree_nlsf_add_params_node_DataID(&params, kMany);
    UXXmlWrapperBase last;
    UXXmlWrapperBase list = params.at("CustomDisplay");
    EXPECT_EQ(list.GetNodeCount(), kMany);
    list.GetChild(&last, kMany - 1);
    EXPECT_EQ(to_text(last), tree_text("<Value20000 DataID='38000'/>"));
}

// --- filling a list from a user's settings -------------------------------------------------------

TEST(uxtree_nlf_set_double_param_from_user_params_setting, FillsTheListWithTheDataId) {
    TestTree params("<p><Values DataID='13000'/></p>");
    auto values = uxtest::script_doubles({1.5, -2});
    EXPECT_TRUE(uxtree_nlf_set_double_param_from_user_params_setting(&params, &values, 13000));
    EXPECT_EQ(params.text(),
              tree_text("<p><Values DataID='13000'><Value1 DataID='13001'>1.5</Value1>"
                        "<Value2 DataID='13002'>-2</Value2></Values></p>"));
}

TEST(uxtree_nlf_set_int_param_from_user_params_setting, FillsTheListWithTheDataId) {
    TestTree params("<p><Share DataID='5000'><a/><b/><c/></Share></p>");
    auto values = uxtest::script_ints({7, 8});
    EXPECT_TRUE(uxtree_nlf_set_int_param_from_user_params_setting(&params, &values, 5000));
    EXPECT_EQ(params.text(), tree_text("<p><Share DataID='5000'><a>7</a><b>8</b></Share></p>"));
}

TEST(uxtree_nlf_set_bool_param_from_user_params_setting, FillsTheListWithTheDataId) {
    TestTree params("<p><Fixed DataID='6000'/></p>");
    auto values = uxtest::script_bools({true, false});
    EXPECT_TRUE(uxtree_nlf_set_bool_param_from_user_params_setting(&params, &values, 6000));
    EXPECT_EQ(params.text(), tree_text("<p><Fixed DataID='6000'><Value1 DataID='6001'>1</Value1>"
                                       "<Value2 DataID='6002'>0</Value2></Fixed></p>"));
}

// A list is a child of the settings, in every form.
template <typename Setter, typename Values>
void expect_no_other_node(Setter set, Values& values) {
    TestTree params("<p DataID='1'><x><a DataID='2'/></x></p>");
    const std::string before = params.text();
    EXPECT_FALSE(set(&params, &values, 1));  // the node itself is no list of its own
    EXPECT_FALSE(set(&params, &values, 2));  // nor is a deeper one
    EXPECT_EQ(params.text(), before);
}

TEST(uxtree_nlf_set_double_param_from_user_params_setting, FillsNoOtherNode) {
    auto values = uxtest::script_doubles({1});
    expect_no_other_node(uxtree_nlf_set_double_param_from_user_params_setting, values);
}
TEST(uxtree_nlf_set_int_param_from_user_params_setting, FillsNoOtherNode) {
    auto values = uxtest::script_ints({1});
    expect_no_other_node(uxtree_nlf_set_int_param_from_user_params_setting, values);
}
TEST(uxtree_nlf_set_bool_param_from_user_params_setting, FillsNoOtherNode) {
    auto values = uxtest::script_bools({true});
    expect_no_other_node(uxtree_nlf_set_bool_param_from_user_params_setting, values);
}

// --- the tags of the lists -----------------------------------------------------------------------

TEST(is_parameter_list_tag, KnowsBothTablesAndTheCase) {
    for (const ListRow& list : kLists) EXPECT_TRUE(ux::is_parameter_list_tag(list.tag));
    for (const char* tag : {"Functions", "FuncFileNames", "FuncCategories"}) {
        EXPECT_TRUE(ux::is_parameter_list_tag(tag));
    }
    for (const char* tag : {"share", "Shared", "AutoParamsInit", "Value1", ""}) {
        EXPECT_FALSE(ux::is_parameter_list_tag(tag)) << tag;
    }
    EXPECT_FALSE(ux::is_parameter_list_tag(nullptr));
}

}  // namespace
