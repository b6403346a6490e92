// Calls of the sweep with one after another of their allocations failing.
#include "frame/memory/failing_calls.h"

#include <cstddef>
#include <set>

#include "frame/memory/failing_new.h"

namespace uxtest {
namespace {

// Parents, siblings and counts of a branch agree with one another.
void expect_sound_links(const UXXmlWrapperBase& top) {
    std::vector<UXXmlWrapperBase> waiting{top};
    while (!waiting.empty()) {
        const UXXmlWrapperBase node = waiting.back();
        waiting.pop_back();
        int count = 0;
        UXXmlWrapperBase previous, child;
        for (node.FirstChild(&child); child.IsNodeValid(); child.NextSibling(&child)) {
            UXXmlWrapperBase parent, before;
            child.GetParent(&parent);
            child.PrevSibling(&before);
            ASSERT_TRUE(parent == node);
            ASSERT_TRUE(before == previous);
            previous = child;
            waiting.push_back(child);
            ++count;
        }
        ASSERT_EQ(node.GetNodeCount(), count);
    }
}

}  // namespace

void expect_sound(UXXmlWrapperBase root) {
    if (!root.IsNodeValid()) return;
    expect_sound_links(root);
    const std::string text = to_text(root);
    EXPECT_EQ(TestTree(text.c_str()).text(), text);
    UXXmlWrapperBase added;
    EXPECT_EQ(root.AddNode(&added, "added", 0), 1);
    EXPECT_EQ(added.RemoveNode(), 1);
    EXPECT_EQ(to_text(root), text);
}

namespace {

// What a call gave and left.
struct Aftermath {
    std::string result, trees, outputs;
    bool operator==(const Aftermath& other) const {
        return result == other.result && trees == other.trees && outputs == other.outputs;
    }
};

// The texts in a tree: values of elements and of attributes.
std::set<std::string> contents(const UXXmlWrapperBase& top) {
    std::set<std::string> all;
    if (!top.IsNodeValid()) return all;
    std::vector<UXXmlWrapperBase> waiting{top};
    while (!waiting.empty()) {
        UXXmlWrapperBase node = waiting.back();
        waiting.pop_back();
        CStringUTF8 text;
        if (node.NodeValue(text, 1, 1, nullptr)) all.insert(std::string(text));
        CWBOStringArray attributes, values;
        node.GetPropertyNamesAndValues(attributes, &values, nullptr);
        for (int i = 0; i < values.GetSize(); ++i) all.insert(std::string(values[i]));
        UXXmlWrapperBase child;
        for (node.FirstChild(&child); child.IsNodeValid(); child.NextSibling(&child)) {
            waiting.push_back(child);
        }
    }
    return all;
}
std::set<std::string> contents(const Scene& scene) {
    std::set<std::string> all = contents(scene.root(0));
    all.merge(contents(scene.root(1)));
    return all;
}

// One call, complete.
class Complete : public Probe {
public:
    void prepare(const Scene& scene) override { before = contents(scene); }
    void before_call() override {}
    void after_call() override {}
    void done(const Scene& scene, const std::string& result, const Row& /*row*/) override {
        left = {result, scene.trees(), scene.outputs()};
        after = contents(scene);
    }

    Aftermath left;
    std::set<std::string> before, after;
};

class FailingAllocation : public Probe {
public:
    FailingAllocation(long index, const Complete& complete, const char* thrown)
        : index_(index), complete_(complete), thrown_(thrown) {}
    void prepare(const Scene& /*scene*/) override {}
    void before_call() override {
        failed = false;
        untilFailure = index_;
    }
    void after_call() override { untilFailure = -1; }
    void done(const Scene& scene, const std::string& result, const Row& row) override {
        for (const std::size_t tree : {0U, 1U}) expect_sound(scene.root(tree));
        expect_failure_or_all(scene, result, row);
        expect_content(scene);
    }

private:
    // A call that lacked memory either fails or has done everything.
    void expect_failure_or_all(const Scene& scene, const std::string& result, const Row& row) {
        const Aftermath left{result, scene.trees(), scene.outputs()};
        if (left == complete_.left) return;
        EXPECT_TRUE(failed) << "no allocation failed, and another outcome";
        std::vector<std::string> allowed{thrown_, row.bad.text()};
        for (const Outcome& shortage : row.shortage) allowed.push_back(shortage.text());
        EXPECT_THAT(allowed, testing::Contains(result))
            << "left:\n"
            << left.trees << left.outputs << "complete:\n"
            << complete_.left.trees << complete_.left.outputs;
    }
    // What the whole call keeps is nowhere lost when it fails.
    void expect_content(const Scene& scene) {
        const std::set<std::string> now = contents(scene);
        for (const std::string& text : complete_.before) {
            if (complete_.after.count(text) == 0) continue;
            EXPECT_EQ(now.count(text), 1u) << "lost: " << text << "\n" << scene.trees();
        }
    }

    long index_;
    const Complete& complete_;
    const char* thrown_;
};

}  // namespace

void fail_each_allocation(const Call& call, const char* thrown) {
    Complete complete;
    call.probe(complete);
    long index = 0;
    do {
        SCOPED_TRACE("allocation " + std::to_string(index));
        FailingAllocation probe(index++, complete, thrown);
        try {
            call.probe(probe);
        } catch (...) {
            probe.after_call();
            ADD_FAILURE() << "an exception left the library";
        }
    } while (failed && !testing::Test::HasFailure());
}

}  // namespace uxtest
