// Long runs of random edits of two documents, with texts of every size, beside plain copies.
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "uxtree/host/node.h"

#include "support/model_tree.h"
#include "support/test_tree.h"

namespace {

using uxmodel::Node;
using uxmodel::Random;

// A node of the model and a handle to the same node.
struct Place {
    Node* node;
    UXXmlWrapperBase handle;
};

std::string random_text(Random& random) {
    int size = random.pick({0, 1, 3, 4, 8, 15, 40, 100, 255});
    if (random.one_in(8)) size = random.pick({1000, 4000, 9000});
    if (random.one_in(200)) size = random.pick({60000, 300000});
    return std::string(static_cast<std::size_t>(size), random.pick({'a', 'b', 'c'}));
}

class Edits {
public:
    explicit Edits(unsigned seed) : random_(seed) {
        for (int i = 0; i < 2; ++i) {
            models_[i] = Node{"r"};
            roots_[i].CreateNew(0, "r");
        }
    }

    void one() {
        const int which = random_.below(2);
        Place place = any(which);
        switch (random_.below(14)) {
            case 0:
            case 1:
            case 2:
                add(place);
                break;
            case 3:
            case 4:
                set_text(place);
                break;
            case 5:
            case 6:
                set_attribute(place);
                break;
            case 7:
                place.node->remove("b");
                EXPECT_EQ(place.handle.RemoveProperty("b"), 1);
                break;
            case 8:
                remove_child(place);
                break;
            case 9:
                clear(place);
                break;
            case 10:
            case 11:
                add_copy(place, any(random_.below(2)));
                break;
            case 12:
                replace(place, any(random_.below(2)));
                break;
            default:
                if (random_.one_in(4)) clone(which);
        }
    }

    void expect_same() const {
        for (int i = 0; i < 2; ++i) {
            const bool same = uxtest::to_text(roots_[i]) == uxmodel::to_xml(models_[i]);
            EXPECT_TRUE(same) << "document " << i;  // too long to be printed
        }
    }

private:
    Place any(int which) {
        Place place{&models_[which], roots_[which]};
        while (!place.node->leaf() && !random_.one_in(3)) {
            const int at = random_.below(static_cast<int>(place.node->children.size()));
            place.node = &place.node->children[static_cast<std::size_t>(at)];
            EXPECT_EQ(place.handle.GetChild(&place.handle, at), 1);
        }
        return place;
    }

    void add(Place& place) {
        std::vector<Node>& children = place.node->children;
        if (children.size() > 12) return;
        Node child{random_.pick<std::string>({"a", "b", "c"})};
        child.text = random_text(random_);
        const int id = random_.pick({-1, 0, 7});
        if (id > 0) child.id = id;
        if (children.empty() || random_.one_in(2)) {
            EXPECT_EQ(place.handle.AddTextNode(nullptr, child.tag.c_str(), child.text.c_str(), id,
                                               0, nullptr),
                      1);
            children.push_back(std::move(child));
            return;
        }
        const int at = random_.below(static_cast<int>(children.size()));
        UXXmlWrapperBase before, added;
        place.handle.GetChild(&before, at);
        EXPECT_EQ(place.handle.InsertNodeBefore(before, child.tag.c_str(), id, &added), 1);
        EXPECT_EQ(added.SetString(child.text.c_str()), 1);
        children.insert(children.begin() + at, std::move(child));
    }

    void set_text(Place& place) {
        if (random_.one_in(4)) {
            place.node->text = "1.5 -2 3000000";
            CArray<double, double> numbers = uxtest::number_list<double>({1.5, -2, 3e6});
            EXPECT_EQ(place.handle.NodeValue(numbers, 0), 1);
            return;
        }
        place.node->text = random_text(random_);
        EXPECT_EQ(place.handle.SetString(place.node->text.c_str()), 1);
    }

    void set_attribute(Place& place) {
        const std::string name = random_.pick<std::string>({"a", "b", "c"});
        const std::string text = random_text(random_);
        place.node->set(name, text);
        EXPECT_EQ(place.handle.SetPropertyValue(name.c_str(), CStringUTF8(text.c_str())), 1);
    }

    void remove_child(Place& place) {
        if (place.node->leaf()) return;
        const int at = random_.below(static_cast<int>(place.node->children.size()));
        place.node->children.erase(place.node->children.begin() + at);
        UXXmlWrapperBase child;
        place.handle.GetChild(&child, at);
        const UXXmlWrapperBase other = child;
        EXPECT_EQ(child.RemoveNode(), 1);
        EXPECT_FALSE(child.IsNodeValid());
        EXPECT_FALSE(other.IsNodeValid());
    }

    void clear(Place& place) {
        if (!random_.one_in(4)) return;
        place.node->children.clear();
        if (random_.one_in(2)) {
            EXPECT_EQ(place.handle.RemoveAllChildren(), 1);
        } else {
            place.node->text.clear();
            EXPECT_EQ(place.handle.ResetNode(1), 1);
        }
    }

    // The source may be the place itself, or stand above or below it.
    void add_copy(Place& place, Place source) {
        if (place.node->children.size() > 12 || count(*source.node) > 20) return;
        const bool deep = !random_.one_in(3);
        Node copy = *source.node;
        if (!deep) {
            copy.children.clear();
            copy.text.clear();
        }
        UXXmlWrapperBase added;
        EXPECT_EQ(place.handle.AddNodeCopy(&source.handle, deep ? 1 : 0, &added), 1);
        EXPECT_TRUE(added.IsNodeValid());
        place.node->children.push_back(std::move(copy));
    }

    void replace(Place& place, Place source) {
        if (count(*source.node) > 20) return;
        Node copy = *source.node;
        if (random_.one_in(3)) {
            for (const auto& [name, value] : copy.attributes) place.node->set(name, value);
            EXPECT_EQ(place.handle.CopyAllAttributes(source.handle, 1), 1);
            return;
        }
        if (random_.one_in(2)) {
            EXPECT_EQ(place.handle.ReplaceByNodeCopy(&source.handle, 0, 0), 1);
        } else {
            copy.tag = place.node->tag;
            EXPECT_EQ(place.handle.Replace(&source.handle, 0, 0, 0), 1);
        }
        *place.node = std::move(copy);
    }

    void clone(int which) {
        UXXmlWrapperBase copy;
        EXPECT_EQ(roots_[which].Clone(&copy, 1), 1);
        roots_[1 - which] = copy;
        models_[1 - which] = models_[which];
    }

    static int count(const Node& node) {
        int nodes = 1;
        for (const Node& child : node.children) nodes += count(child);
        return nodes;
    }

    Random random_;
    Node models_[2];
    UXXmlWrapperBase roots_[2];
};

}  // namespace

TEST(UXXmlWrapperBase, KeepsWhatPlainTreesKeepOverManyEdits) {
    for (unsigned seed = 0; seed < 80; ++seed) {
        Edits edits(seed);
        for (int i = 0; i < 200; ++i) {
            edits.one();
            if (i % 40 == 39) edits.expect_same();
        }
        ASSERT_FALSE(HasFailure()) << "seed " << seed;
    }
}
