// The bulk operations on trees: how the time for one node grows with the tree, and two peers.
//
// A million nodes stand in 100 trees of 10,000, in 10 of 100,000 and in one, so that the three
// columns move the same memory and differ in the size of the tree alone. Argument: a part of the
// name of the operations to run.
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <numeric>
#include <string>
#include <utility>
#include <vector>

#include "uxtree/uxtree_Utils.h"

#include "bench.h"

namespace {

using uxbench::Random;

constexpr int kNodes = 1000000;
constexpr int kRuns = 11;
constexpr std::size_t kMemory = std::size_t{256} << 20;  // more than any run needs

using Trees = std::vector<UXXmlWrapperBase>;
using Work = std::function<void(UXXmlWrapperBase& tree)>;

void check(bool ok, const char* what) {
    if (ok) return;
    std::fprintf(stderr, "failed: %s\n", what);
    std::exit(1);
}

UXXmlWrapperBase parsed(const std::string& text) {
    UXXmlWrapperBase root;
    check(root.LoadFromMemory(text.data(), text.size()) != 0, "load");
    return root;
}

std::string attribute(const char* name, unsigned value) {
    return " " + std::string(name) + "=\"" + std::to_string(value) + "\"";
}

// Branches of 50 leaves each; every second leaf has k 1 and a value.
UXXmlWrapperBase branched(int nodes) {
    std::string text = "<r>";
    for (int i = 0; i < nodes; ++i) {
        if (i % 51 == 0) {
            text += (i == 0 ? "<b Label=\"branch\">" : "</b><b Label=\"branch\">");
            continue;
        }
        const std::string tag = "Item" + std::to_string(i % 40);
        const bool odd = i % 2 == 1;
        text += "<" + tag + attribute("DataID", static_cast<unsigned>(i)) +
                attribute("k", odd ? 1 : 2) + (odd ? " mark=\"1\">12.5</" : "></") + tag + ">";
    }
    return parsed(text + "</b></r>");
}

// Siblings with a key: all different in random order, or one of a few.
UXXmlWrapperBase siblings(int nodes, int different) {
    std::vector<unsigned> keys(static_cast<std::size_t>(nodes));
    std::iota(keys.begin(), keys.end(), 0U);
    Random random(5);
    for (std::size_t i = keys.size(); i > 1; --i) {
        std::swap(keys[i - 1], keys[random.below(static_cast<unsigned>(i))]);
    }
    std::string text = "<r DataID=\"1000\">";
    for (std::size_t i = 0; i < keys.size(); ++i) {
        const std::string tag = "Set" + std::to_string(i + 1);
        text += "<" + tag + attribute("k", keys[i] % static_cast<unsigned>(different)) + ">1</" +
                tag + ">";
    }
    return parsed(text + "</r>");
}

UXXmlWrapperBase distinct_siblings(int nodes) {
    return siblings(nodes, nodes);
}
UXXmlWrapperBase equal_siblings(int nodes) {
    return siblings(nodes, 10);
}

// The keys that cost the exchange order most: as many children with each key as keys.
UXXmlWrapperBase thousand_keys(int nodes) {
    return siblings(nodes, 1000);
}

Trees copies_of(const UXXmlWrapperBase& master, int count) {
    Trees trees(static_cast<std::size_t>(count));
    for (UXXmlWrapperBase& tree : trees) master.Clone(&tree, 1);
    return trees;
}

double seconds_for(const std::function<void()>& body) {
    const auto start = std::chrono::steady_clock::now();
    body();
    const std::chrono::duration<double> time = std::chrono::steady_clock::now() - start;
    return time.count();
}

// What is collected from all trees goes to one list, so that the lists are of one size as well.
CArray<int, int> gatheredNumbers;
CWBOStringArray gatheredTexts;

// Seconds of the fastest run over fresh copies.
double fastest(const UXXmlWrapperBase& master, int count, const Work& work) {
    double best = 1e300;
    for (int run = 0; run < kRuns; ++run) {
        Trees trees = copies_of(master, count);
        gatheredNumbers.RemoveAll();
        gatheredTexts = CWBOStringArray();
        uxbench::touch_memory(kMemory);
        best = std::min(best, seconds_for([&] {
                            for (UXXmlWrapperBase& tree : trees) work(tree);
                        }));
    }
    return best;
}

struct Operation {
    const char* name;
    UXXmlWrapperBase (*make)(int nodes);
    Work work;
};

void copy_into_new_tree(UXXmlWrapperBase& tree) {
    UXXmlWrapperBase target;
    target.CreateNew(0, nullptr);
    check(VCTreeCopyWithSkipping(&target, &tree, nullptr, 0) > 0, "copy with skipping");
}

void append_to_new_tree(UXXmlWrapperBase& tree) {
    UXXmlWrapperBase target;
    target.CreateNew(0, nullptr);
    uxtree_append_children(&target, &tree, "");
}

void add_numbered(UXXmlWrapperBase& tree) {
    UXScriptArray<CArray<double, double>> values;
    values.array().SetSize(tree.GetNodeCount());
    check(uxtree_check_add_all_enumerated_nodes(&tree, "Set", &values, 0), "add numbered");
}

void filter_by_values(UXXmlWrapperBase& tree) {
    UXScriptArray<CWBOStringArray> listA;
    UXScriptArray<CWBOStringArray> listB;
    listA.array().Add("12.5");
    check(uxtree_filter(&tree, 51, 1, 7, &listA, 1, 8, &listB) == 1, "filter");
}

std::vector<Operation> operations() {
    return {
        {"number all nodes", branched,
         [](UXXmlWrapperBase& tree) {
             UXXmlWrapperBase out;
             uxtree_get_node_ex(&tree, &out, kNodes + 1, 0, nullptr);
         }},
        {"find by identifier (absent)", branched,
         [](UXXmlWrapperBase& tree) {
             UXXmlWrapperBase out;
             check(!uxtree_find_node(&tree, &out, "DataID", -7, true, 0, -1), "absent");
         }},
        {"set an attribute everywhere", branched,
         [](UXXmlWrapperBase& tree) {
             uxtree_set_attribute_to_all_nodes(&tree, "Show", "0", false, false);
         }},
        {"remove an attribute everywhere", branched,
         [](UXXmlWrapperBase& tree) { uxtree_remove_attribute(&tree, "k", 0); }},
        {"store and restore an attribute", branched,
         [](UXXmlWrapperBase& tree) {
             uxtree_store_attribute(&tree, "k");
             uxtree_restore_attribute(&tree, "k");
         }},
        {"copy an attribute to a like tree", branched,
         [](UXXmlWrapperBase& tree) { uxtree_copy_atts(&tree, &tree, "k", 0); }},
        {"collect integers", branched,
         [](UXXmlWrapperBase& tree) {
             VCTreeAttributeValues(&tree, "k", 0, &gatheredNumbers, 0, 0);
         }},
        {"collect tag names", branched,
         [](UXXmlWrapperBase& tree) { vctree_get_node_names(&tree, &gatheredTexts, false); }},
        {"delete by attribute", branched,
         [](UXXmlWrapperBase& tree) {
             uxtree_delete_nodes_by_attribute(&tree, "k", 1, 1, nullptr, 0);
         }},
        {"delete by missing attribute", branched,
         [](UXXmlWrapperBase& tree) {
             uxtree_delete_nodes_by_missing_attribute(&tree, "mark", 1, 1, 0, 0);
         }},
        {"remove every node with a value", branched,
         [](UXXmlWrapperBase& tree) { uxtree_remove_nodes_by_attribute(&tree, "k", 1); }},
        {"remove empty leaves", branched,
         [](UXXmlWrapperBase& tree) { uxtree_remove_empty_child_nodes(&tree, true); }},
        {"hide empty leaves", branched,
         [](UXXmlWrapperBase& tree) { uxtree_hide_empty_nodes(&tree, true, false); }},
        {"strip attributes", branched,
         [](UXXmlWrapperBase& tree) { uxtree_polish_tree_keep_DataID(&tree); }},
        {"filter by value lists", branched, filter_by_values},
        {"copy what has values", branched, copy_into_new_tree},
        {"append children", branched, append_to_new_tree},
        {"sort, different keys", distinct_siblings,
         [](UXXmlWrapperBase& tree) {
             check(uxtree_sort_children_by_int_attribute(&tree, "k", 1), "sort");
         }},
        {"sort, ten different keys", equal_siblings,
         [](UXXmlWrapperBase& tree) {
             check(uxtree_sort_children_by_int_attribute(&tree, "k", 1), "sort");
         }},
        {"sort, a thousand different keys", thousand_keys,
         [](UXXmlWrapperBase& tree) {
             check(uxtree_sort_children_by_int_attribute(&tree, "k", 1), "sort");
         }},
        {"next numbered name", distinct_siblings,
         [](UXXmlWrapperBase& tree) {
             check(uxtree_get_next_enum_tag_name(&tree, nullptr, 1) == tree.GetNodeCount() + 1,
                   "next numbered name");
         }},
        {"next column name", distinct_siblings,
         [](UXXmlWrapperBase& tree) {
             CStringUTF8 name;
             uxtree_get_next_enum_tag_name(&tree, &name, 0);
         }},
        {"find or add numbered children", distinct_siblings, add_numbered},
        {"collect children's values", distinct_siblings,
         [](UXXmlWrapperBase& tree) {
             vctree_get_all_children_values_as_string_array(tree, gatheredTexts);
         }},
    };
}

void report_growth(const Operation& operation) {
    double nanoseconds[3];
    int trees = 100;
    for (double& perNode : nanoseconds) {
        const UXXmlWrapperBase master = operation.make(kNodes / trees);
        perNode = fastest(master, trees, operation.work) / kNodes * 1e9;
        trees /= 10;
    }
    std::printf("| %-34s | %7.1f | %7.1f | %7.1f | %6.2f |\n", operation.name, nanoseconds[0],
                nanoseconds[1], nanoseconds[2], nanoseconds[2] / nanoseconds[0]);
    std::fflush(stdout);
}

// ---- peers ------------------------------------------------------------------------------------

void plain_walk(UXXmlWrapperBase& tree) {
    int ones = 0;
    UXXmlWrapperBase child;
    for (tree.FirstChild(&child); child.IsNodeValid(); child.NextSibling(&child)) {
        int value = 0;
        if (child.GetPropertyValue("k", value, 0) && value == 1) ++ones;
    }
    check(ones == kNodes / 2, "walk");
}

void delete_half(UXXmlWrapperBase& tree) {
    check(uxtree_delete_nodes_by_attribute(&tree, "k", 1, 0, nullptr, 0) == kNodes / 2, "delete");
}

// std::sort of the children's keys and handles, in as many lists as ours has trees.
double sort_of_handles(const UXXmlWrapperBase& master, int count) {
    using Keyed = std::pair<int, UXXmlWrapperBase>;
    std::vector<Keyed> all;
    UXXmlWrapperBase child;
    for (master.FirstChild(&child); child.IsNodeValid(); child.NextSibling(&child)) {
        child.GetPropertyValue("k", all.emplace_back(0, child).first, 0);
    }
    const auto less = [](const Keyed& a, const Keyed& b) { return a.first < b.first; };
    double best = 1e300;
    for (int run = 0; run < kRuns; ++run) {
        std::vector<std::vector<Keyed>> lists(static_cast<std::size_t>(count), all);
        uxbench::touch_memory(kMemory);
        best = std::min(best, seconds_for([&] {
                            for (std::vector<Keyed>& list : lists) {
                                std::sort(list.begin(), list.end(), less);
                            }
                        }));
        check(std::is_sorted(lists.back().begin(), lists.back().end(), less), "std::sort");
    }
    return best;
}

void report_sorts(const std::vector<Operation>& all, const std::string& only) {
    std::printf(
        "\n| nanoseconds a node at 1e4 / 1e5 / 1e6 | ours | growth | std::sort of keys and handles "
        "| "
        "growth | ours / peer |\n|---|---|---|---|---|---|\n");
    for (const Operation& operation : all) {
        if (std::string(operation.name).rfind("sort", 0) != 0 ||
            std::string(operation.name).find(only) == std::string::npos) {
            continue;
        }
        double ours[3];
        double peers[3];
        int trees = 100;
        for (int i = 0; i < 3; ++i, trees /= 10) {
            const UXXmlWrapperBase master = operation.make(kNodes / trees);
            ours[i] = fastest(master, trees, operation.work) / kNodes * 1e9;
            peers[i] = sort_of_handles(master, trees) / kNodes * 1e9;
        }
        std::printf(
            "| %s | %.1f / %.1f / %.1f | %.2f | %.1f / %.1f / %.1f | %.2f | %.2f / %.2f / %.2f |\n",
            operation.name, ours[0], ours[1], ours[2], ours[2] / ours[0], peers[0], peers[1],
            peers[2], peers[2] / peers[0], ours[0] / peers[0], ours[1] / peers[1],
            ours[2] / peers[2]);
        std::fflush(stdout);
    }
}

void report_peers() {
    const auto row = [](const char* what, double seconds, const char* peer, double peerSeconds) {
        std::printf("| %-34s | %8.2f ms | %-34s | %8.2f ms | %6.2f |\n", what, seconds * 1e3, peer,
                    peerSeconds * 1e3, seconds / peerSeconds);
    };
    std::printf(
        "\n| operation | time | peer | its time | times the peer |\n|---|---|---|---|---|\n");
    const UXXmlWrapperBase half = siblings(kNodes, 2);
    row("delete half of 1,000,000 siblings", fastest(half, 1, delete_half),
        "walk reading that attribute", fastest(half, 1, plain_walk));
}

}  // namespace

int main(int argc, char** argv) {
    const std::string only = argc > 1 ? argv[1] : "";
    std::printf("| nanoseconds a node | 1e4 | 1e5 | 1e6 | growth |\n|---|---|---|---|---|\n");
    const std::vector<Operation> all = operations();
    for (const Operation& operation : all) {
        if (std::string(operation.name).find(only) != std::string::npos) report_growth(operation);
    }
    report_sorts(all, only);
    report_peers();
    return 0;
}
