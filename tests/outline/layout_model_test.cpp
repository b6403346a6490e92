// Outlines of thousands of random documents, compared with a plain recursive definition of them.
#include <algorithm>
#include <set>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "uxtree/outline/layout.h"

#include "support/model_tree.h"
#include "support/test_tree.h"

namespace {

using uxmodel::Node;
using uxmodel::Random;
using uxmodel::to_xml;
using uxtest::TestTree;

constexpr unsigned kDocuments = 2000;
const uxmodel::Words kWords{{"a", "b", "c", "ab", "A", "x:y", "_.-1"},
                            {{"a", 3, {"", "<>&\"'/="}},
                             {"b", 3, {"v"}},
                             {"ab", 4, {"v"}},
                             {"B", 4, {"v"}},
                             {"x:z", 6, {"v"}},
                             {"_", 6, {"v"}}},
                            {"", "text", "1 < 2 & ]]> \"=\" </a>"}};

// --- the model ----------------------------------------------------------------------------------

struct Outline {
    std::string name;
    std::set<std::string> attributes;
    std::vector<Outline> children;
};

void fold(const Node& node, Outline& into) {
    into.name = node.tag;
    for (const auto& [name, value] : node.attributes) into.attributes.insert(name);
    for (const Node& child : node.children) {
        const auto known = std::find_if(into.children.begin(), into.children.end(),
                                        [&](const Outline& one) { return one.name == child.tag; });
        if (known != into.children.end()) {
            fold(child, *known);
        } else {
            into.children.emplace_back();
            fold(child, into.children.back());
        }
    }
}

Node written(const Outline& outline) {
    Node node{"Node"};
    node.set("Label", outline.name);
    for (const std::string& name : outline.attributes) {
        Node attribute{"Attr"};
        attribute.set("Label", "@" + name);
        node.children.push_back(attribute);
    }
    for (const Outline& child : outline.children) node.children.push_back(written(child));
    return node;
}

// What a target of "<t><kept/></t>" holds after outlining the node.
std::string with_outline(const Outline& outline) {
    return "<t><kept></kept>" + to_xml(written(outline)) + "</t>";
}
std::string with_outline_of(const Node& node) {
    Outline outline;
    fold(node, outline);
    return with_outline(outline);
}

// --- documents ----------------------------------------------------------------------------------

// What a scanner reads over.
std::string noise(Random& random) {
    return random.pick<std::string>({"", "", "", "\n  ", "text > ]]> --> ?>",
                                     "<!-- <a b='c'> - -- > -->", "<!---->", "<?pi <a/> ? > ?>",
                                     "<?p?>", "<![CDATA[<a></b>]] >]]>", "<![CDATA[]]>",
                                     "<!ELEMENT a (b|<c>)>", "</wrong>", "</other junk='>"});
}
std::string gap(Random& random) {
    return random.pick<std::string>({" ", " ", "\n", "\t  ", "\r\n"});
}
std::string maybe_gap(Random& random) {
    return random.one_in(3) ? gap(random) : "";
}

// The document with its elements written in every way that the grammar has.
std::string noisy_text(Random& random, const Node& node) {
    std::string out = "<" + node.tag;
    for (const auto& [name, value] : node.attributes) {
        const char quote = value.find('"') != std::string::npos || random.one_in(2) ? '\'' : '"';
        std::string inside = value;
        std::erase(inside, quote);
        out += gap(random) + name + maybe_gap(random) + "=" + maybe_gap(random) + quote + inside +
               quote;
    }
    out += maybe_gap(random);
    if (node.leaf() && random.one_in(2)) return out + "/>" + noise(random);
    out += ">" + noise(random);
    for (const Node& child : node.children) out += noisy_text(random, child) + noise(random);
    out += "</" + node.tag + random.pick<std::string>({"", "", " ", " junk"}) + ">";
    return out + noise(random);
}

std::string outlined(UXXmlWrapperBase* source, const std::string& file, DWORD flags) {
    TestTree target("<t><kept/></t>");
    EXPECT_EQ(SAXTreeLayout(&target, source, source == nullptr ? file.c_str() : nullptr, flags), 0);
    return target.text();
}

}  // namespace

TEST(SAXTreeLayout, OutlinesDocumentsAsTheModelDoes) {
    const uxtest::TemporaryFolder folder;
    for (unsigned seed = 0; seed < kDocuments; ++seed) {
        Random random(seed);
        const Node model = uxmodel::random_tree(random, kWords, 30);
        const std::string expected = with_outline_of(model);
        const std::string text = random.pick<std::string>({"", "<?xml version='1.0'?>"}) +
                                 noise(random) + noisy_text(random, model);
        const std::string file = folder.write("f.xml", text);

        EXPECT_EQ(outlined(nullptr, file, 0), expected);
        EXPECT_EQ(outlined(nullptr, file, 1), expected);
        TestTree source(to_xml(model).c_str());
        EXPECT_EQ(outlined(&source, "", 0), expected);
        EXPECT_EQ(source.text(), to_xml(model));
        ASSERT_FALSE(HasFailure()) << "seed " << seed << ": " << text;
    }
}

TEST(SAXTreeLayout, OutlinesFilesCutAnywhereAsTheModelDoes) {
    // Where a document without noise ends early, the outline holds the elements whose start tags
    // are whole.
    const uxtest::TemporaryFolder folder;
    for (unsigned seed = 0; seed < kDocuments / 2; ++seed) {
        Random random(seed);
        Node model = uxmodel::random_tree(random, kWords, 12);
        const std::string text = to_xml(model);
        const std::size_t end =
            static_cast<std::size_t>(random.below(static_cast<int>(text.size()) + 1));
        std::size_t at = 0;
        Outline outline;
        // Visits the start tags in the order of the text; in attributes ">" is always escaped.
        const auto keep_whole = [&](Node& node, const auto& self) -> bool {
            at = text.find('>', text.find("<" + node.tag, at)) + 1;
            if (at > end) return false;
            std::vector<Node> kept;
            for (Node& child : node.children) {
                if (!self(child, self)) break;
                kept.push_back(child);
            }
            node.children = kept;
            return true;
        };
        if (keep_whole(model, keep_whole)) fold(model, outline);
        const std::string file = folder.write("f.xml", text.substr(0, end));

        for (const DWORD flags : {0U, 1U})
            EXPECT_EQ(outlined(nullptr, file, flags), with_outline(outline));
        ASSERT_FALSE(HasFailure()) << "seed " << seed << ": " << text.substr(0, end);
    }
}

TEST(SAXTreeLayout, FoldsSeveralRootsAsTheModelDoes) {
    // Each further top-level element renames the root and adds to it.
    const uxtest::TemporaryFolder folder;
    for (unsigned seed = 0; seed < kDocuments / 2; ++seed) {
        Random random(seed);
        Outline outline;
        std::string text;
        for (int i = 1 + random.below(3); i > 0; --i) {
            const Node model = uxmodel::random_tree(random, kWords, 8);
            fold(model, outline);
            text += noisy_text(random, model);
        }
        const std::string file = folder.write("f.xml", text);

        for (const DWORD flags : {0U, 1U})
            EXPECT_EQ(outlined(nullptr, file, flags), with_outline(outline));
        ASSERT_FALSE(HasFailure()) << "seed " << seed << ": " << text;
    }
}
