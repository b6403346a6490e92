// Two threads that do everything at the same time, each with documents of its own.
#include <barrier>
#include <functional>
#include <thread>

#include "data/labels_detail.h"
#include "frame/calls/calls.h"

namespace uxtest {
namespace {

// What a call gave and left.
class Noted : public Probe {
public:
    void before_call() override {}
    void after_call() override {}
    void done(const Scene& scene, const std::string& result, const Row& /*row*/) override {
        text_ += result + "\n" + scene.trees() + "\n" + scene.outputs() + "\n";
    }
    const std::string& text() const { return text_; }

private:
    std::string text_;
};

// Runs one action after another on two threads, which start each of them together.
using Action = std::function<std::string(int thread)>;
std::vector<std::string> run_on_two_threads(const std::vector<Action>& actions) {
    std::barrier together(2);
    std::vector<std::string> seen(2);
    const auto run = [&](int thread) {
        for (const Action& action : actions) {
            together.arrive_and_wait();
            seen[static_cast<std::size_t>(thread)] += action(thread);
        }
    };
    std::thread other(run, 1);
    run(0);
    other.join();
    return seen;
}

}  // namespace

// In one test, so that what is made on first use is made by two threads at once.
TEST(Threads, MakeEveryCallOnDocumentsOfTheirOwn) {
    std::vector<Action> actions;
    for (const auto& [name, calls] : all_calls().calls()) {
        for (const Call& call : calls) {
            actions.push_back([&call, name = name](int) {
                Noted noted;
                call.probe(noted);
                return name + ": " + noted.text();
            });
        }
    }
    ASSERT_GT(actions.size(), 200u);

    const std::vector<std::string> seen = run_on_two_threads(actions);

    EXPECT_EQ(seen[0], seen[1]);
}

TEST(Threads, LoadEditAndSaveDocumentsOfTheirOwn) {
    const TemporaryFolder folder;
    const auto file = [&](int thread) {
        return folder.path("t" + std::to_string(thread) + ".xml");
    };
    const std::vector<Action> actions = {
        [&](int thread) {
            folder.write("t" + std::to_string(thread) + ".xml", "<r><a n='1'>1,5</a></r>");
            UXXmlWrapperBase root;
            EXPECT_EQ(root.load(file(thread).c_str(), 0, 0), 1);
            UXXmlWrapperBase added;
            for (int i = 0; i < 1000; ++i) {
                const std::string tag = "n" + std::to_string(i * (thread + 1));
                root.AddTextNode(&added, tag.c_str(), tag.c_str(), i, 0, nullptr);
                added.SetPropertyValue(("p" + tag).c_str(), i);
            }
            EXPECT_EQ(root.Save(file(thread).c_str(), 0), 1);
            UXXmlWrapperBase again;
            EXPECT_EQ(again.load(file(thread).c_str(), 0, 0), 1);
            return std::string(to_text(again) == to_text(root) ? "same" : "other");
        },
        [&](int thread) {
            folder.write("t" + std::to_string(thread) + ".xml", "<r><a></r>");
            UXXmlWrapperBase root;
            EXPECT_EQ(root.load(file(thread).c_str(), 0, 0), 0);
            EXPECT_EQ(root.Save("/no/such/folder/t.xml", 0), 0);
            const std::string reason(UXGetLastLoadError());
            EXPECT_EQ(reason.find(file(thread)), 0u) << reason;
            return reason.substr(file(thread).size());
        },
        [](int thread) {
            TestTree tree("<r><a Label='localized'/></r>");
            UXXmlWrapperBase a = tree.at("a");
            std::string labels;
            for (int i = 0; i < 100; ++i) {
                const std::string text = std::to_string(i * (thread + 1));
                const CStringUTF8 localized = ux::_tree_localize(text.c_str(), 0);
                EXPECT_EQ(std::string(localized), text);
                labels += uxtree_get_node_label(&a, 0);
            }
            return labels;
        },
    };

    const std::vector<std::string> seen = run_on_two_threads(actions);

    EXPECT_EQ(seen[0].substr(0, 4), "same");
    EXPECT_EQ(seen[0], seen[1]);
}

}  // namespace uxtest
