// Properties over random trees: what must read back.
#include <algorithm>
#include <array>
#include <set>
#include <string>

#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include "uxtree/data/key_values.h"
#include "uxtree/data/saved.h"

#include "data/values_support.h"
#include "support/model_tree.h"

namespace {

using uxmodel::Node;
using uxtest::Entries;
using uxtest::TestTree;

int below(int limit) {
    return *rc::gen::inRange(0, limit);
}
template <std::size_t N>
std::string one_of(const std::array<const char*, N>& choices) {
    return choices[static_cast<std::size_t>(below(static_cast<int>(N)))];
}

constexpr std::array kTexts{"",
                            "x",
                            "-1",
                            "0",
                            "::{Auto=1}y",
                            "::{a=}b",
                            "a::{b=c}d::{e=f}",
                            "::{DynaFx=f}v",
                            "::{x={y}}z",
                            "long text <&>"};
constexpr std::array kPlainTexts{"", "x", "-1", "1", "some text", "{a=b}", "::"};
constexpr std::array kIds{"0", "1", "2", "3", "4", "65535", "65536", "-1", "-2", "x", "16777217"};
constexpr std::array kRepeats{"0", "1", "2", "4", "32", "32767", "40000", "-1"};
constexpr std::array kNodeRepeats{"0", "1", "3", "128", "256", "32767"};
constexpr std::array kFlagWords{"0",       "65536",   "131072",  "262144",
                                "1048576", "1114112", "2097152", "x"};
constexpr std::array kSmall{"0", "1", "2", "x"};

void maybe(Node& node, const char* name, int oneIn, const std::string& value) {
    if (below(oneIn) == 0) node.set(name, value);
}

Node random_tree(int depth, int repeatOneIn) {
    Node node;
    node.tag = one_of(std::array{"a", "b", "c"});
    maybe(node, "DataID", 2, one_of(kIds));
    maybe(node, "RepeatID", repeatOneIn, one_of(kRepeats));
    maybe(node, "RepeatNodeID", 12, one_of(kNodeRepeats));
    maybe(node, "Use", 2, one_of(kTexts));
    maybe(node, "Data", 4, one_of(kTexts));
    maybe(node, "ThemeApplicability", 6, one_of(kFlagWords));
    maybe(node, "ThemeApplicabilityEx", 6, one_of(kSmall));
    maybe(node, "TreeGetByIdIgnore", 12, one_of(kSmall));
    maybe(node, "OldValue", 4, one_of(kTexts));
    maybe(node, "DynaUseChck", 6, one_of(kPlainTexts));
    maybe(node, "DynaFx", 6, one_of(kPlainTexts));
    node.text = one_of(kTexts);
    const int children = depth > 0 ? below(5) : 0;
    for (int i = 0; i < children; ++i) {
        node.children.push_back(random_tree(depth - 1, repeatOneIn));
    }
    return node;
}

// --- what reads back ---------------------------------------------------------------------------

// A tree whose identifiers differ and whose texts hold no settings.
void make_plain(Node& node, int& nextId) {
    node.set("DataID", std::to_string(nextId++));
    node.remove("RepeatNodeID");
    if (node.find("RepeatID") != nullptr && below(2) == 0) node.set("RepeatID", "0");
    for (const char* name : {"Use", "Data"}) {
        if (node.find(name) != nullptr) node.set(name, one_of(kPlainTexts));
    }
    for (const char* name : {"DynaUseChck", "DynaFx"}) {
        const std::string* value = node.find(name);
        if (value != nullptr && value->empty()) node.set(name, "f");
    }
    node.text = one_of(kPlainTexts);
    for (Node& child : node.children) make_plain(child, nextId);
}

RC_GTEST_PROP(vctree_set_values_by_ids, LeavesATreeThatIsSetToItsOwnValues, ()) {
    Node model = random_tree(4, 30);
    int nextId = 0;
    make_plain(model, nextId);
    TestTree tree(uxmodel::to_xml(model).c_str());
    ux::CollectOptions options;
    options.themeFlag = below(2) == 0;
    const Entries before = uxtest::collected(tree, options);
    int duplicate = 0;
    ux::SetOptions set;
    set.duplicate = &duplicate;

    const int written = uxtest::set_values(tree, before, set);

    RC_CLASSIFY(written < 0, "refused");
    RC_ASSERT(uxtest::collected(tree, options) == before);
}

RC_GTEST_PROP(vctree_read_values_with_ids, ReadsWhatWasSaved, ()) {
    static const uxtest::TemporaryFolder folder;
    const std::string path = folder.path("theme.xml");
    const auto idList = *rc::gen::nonEmpty<std::vector<int>>();
    CArray<int, int> ids = uxtest::number_list(idList);
    CWBOStringArray values;
    std::vector<std::string> expected;
    for (std::size_t i = 0; i < idList.size(); ++i) {
        const auto text = *rc::gen::container<std::string>(rc::gen::element<char>(
            'a', ' ', '<', '>', '&', '"', '\'', '\n', '\r', '\t', ']', '}', ':', '0'));
        expected.push_back(text + "\xC3\xA9");
        values.Add(CStringUTF8(expected.back().c_str()));
    }
    CArray<int, int> idsRead;
    CWBOStringArray valuesRead;

    RC_ASSERT(vctree_save_values_with_ids(path.c_str(), &ids, &values, "c", nullptr) == 1);
    RC_ASSERT(vctree_read_values_with_ids(path.c_str(), &idsRead, &valuesRead, nullptr));
    RC_ASSERT(uxtest::numbers(idsRead) == idList);
    RC_ASSERT(uxtest::texts(valuesRead) == expected);
}

std::string word(const char* extra) {
    const std::string letters = std::string("abcXYZ019._-") + extra;
    std::string text;
    const int length = below(8);
    for (int i = 0; i < length; ++i) {
        text += letters[static_cast<std::size_t>(below(static_cast<int>(letters.size())))];
    }
    return text;
}

RC_GTEST_PROP(uxtree_key_value_pairs_str_to_branch, ReadsBackWhatHasNoSeparators, ()) {
    UXXmlWrapperBase branch;
    branch.CreateNew(0, "r");
    const int count = 1 + below(6);
    for (int i = 0; i < count; ++i) {
        branch.AddTextNode(nullptr, ("k" + word("")).c_str(), word("=(){}\\").c_str(), -1, 0,
                           nullptr);
    }
    const std::string before = uxtest::to_text(branch);
    CStringUTF8 text;

    RC_ASSERT(uxtree_branch_to_key_value_pairs_str(&branch, &text, '=', ';') == 1);
    RC_ASSERT(uxtree_key_value_pairs_str_to_branch(&branch, text, '=', ';') == 1);
    RC_ASSERT(uxtest::to_text(branch) == before);
}

RC_GTEST_PROP(vctree_convert_escape_character, RejoinsTokensWithEscapedSeparators, ()) {
    std::vector<std::string> tokens;
    const int count = 1 + below(6);
    for (int i = 0; i < count; ++i) tokens.push_back(word(",,,"));
    std::string joined;
    for (const std::string& token : tokens) {
        if (&token != &tokens.front()) joined += ',';
        for (const char c : token) joined += c == ',' ? "\\," : std::string(1, c);
    }
    CWBOStringArray split;
    UXSeparateByString(split, (joined + "|").c_str(), ",");  // the mark keeps a last empty token
    split[split.GetUpperBound()].TrimRight('|');

    vctree_convert_escape_character(split, ',', false);

    RC_ASSERT(uxtest::texts(split) == tokens);
}

}  // namespace
