// Values by identifier, measured per leaf at 1e4, 1e5 and 1e6 leaves, against hand-written loops
// over a pugixml document with an unordered_map that do the same, reduced job.
//
// Usage: values_bench [RUNS]    prints nanoseconds per leaf, growth and the ratio to the peer.
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <functional>
#include <string>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include <pugixml.hpp>

#include "uxtree/uxtree_Utils.h"

#include "bench.h"

namespace {

constexpr int kSizes[] = {10000, 100000, 1000000};
constexpr int kLeavesPerGroup = 20;
constexpr int kGroupsPerSection = 100;

// Sections of groups of leaves; identifiers are distinct and not in ascending order throughout.
std::string tree_xml(int leaves) {
    std::string xml = "<Dialog>";
    const int groups = leaves / kLeavesPerGroup;
    for (int g = 0; g < groups; ++g) {
        if (g % kGroupsPerSection == 0) {
            if (g > 0) xml += "</Section>";
            xml += "<Section Label='Section'>";
        }
        xml += "<Group Label='Group' DataID='" + std::to_string(10000000 + g) + "' Use='1'>";
        for (int i = 0; i < kLeavesPerGroup; ++i) {
            const int id = g * kLeavesPerGroup + (i ^ 1);
            xml += "<Item Label='Item' DataID='" + std::to_string(id) + "'>value " +
                   std::to_string(id) + "</Item>";
        }
        xml += "</Group>";
    }
    return xml + "</Section></Dialog>";
}

UXXmlWrapperBase load(const std::string& xml) {
    UXXmlWrapperBase root;
    if (!root.LoadFromMemory(xml.data(), xml.size())) std::abort();
    return root;
}

// Nanoseconds of the fastest of several runs, each with its own preparation.
double fastest(int runs, const std::function<void()>& prepare, const std::function<void()>& work) {
    constexpr std::size_t kMemory = std::size_t{1} << 29;
    double best = 1e300;
    for (int i = 0; i < runs; ++i) {
        prepare();
        uxbench::touch_memory(kMemory);
        const auto start = std::chrono::steady_clock::now();
        work();
        const std::chrono::duration<double, std::nano> taken =
            std::chrono::steady_clock::now() - start;
        best = std::min(best, taken.count());
    }
    return best;
}

void expect(bool good, const char* what) {
    if (good) return;
    std::fprintf(stderr, "wrong outcome: %s\n", what);
    std::exit(1);
}

// --- the peer ----------------------------------------------------------------------------------

template <typename Visit>
void peer_walk(pugi::xml_node top, Visit&& visit) {
    pugi::xml_node node = top.first_child();
    while (node) {
        visit(node);
        if (const pugi::xml_node child = node.first_child();
            child && child.type() == pugi::node_element) {
            node = child;
            continue;
        }
        while (node && node != top && !node.next_sibling()) node = node.parent();
        if (node == top) break;
        node = node.next_sibling();
    }
}
bool is_peer_leaf(pugi::xml_node node) {
    return node.first_child().type() != pugi::node_element;
}

struct Values {
    std::vector<int> ids;
    std::vector<std::string> texts;
};
Values peer_collect(pugi::xml_node root) {
    Values out;
    peer_walk(root, [&](pugi::xml_node node) {
        const int id = node.attribute("DataID").as_int(-1);
        if (id < 0) return;
        out.ids.push_back(id);
        out.texts.emplace_back(is_peer_leaf(node) ? node.child_value()
                                                  : node.attribute("Use").value());
    });
    return out;
}
std::unordered_map<int, std::size_t> peer_index(const Values& values) {
    std::unordered_map<int, std::size_t> index;
    index.reserve(values.ids.size());
    for (std::size_t i = 0; i < values.ids.size(); ++i) index.emplace(values.ids[i], i);
    return index;
}
void peer_write(pugi::xml_node node, const std::string& text) {
    if (is_peer_leaf(node)) {
        node.text().set(text.c_str());
    } else {
        node.attribute("Use").set_value(text.c_str());
    }
}
int peer_set(pugi::xml_node root, const Values& values) {
    const auto index = peer_index(values);
    int written = 0;
    peer_walk(root, [&](pugi::xml_node node) {
        const int id = node.attribute("DataID").as_int(-1);
        if (id < 0) return;
        const auto found = index.find(id);
        if (found == index.end()) return;
        peer_write(node, values.texts[found->second]);
        ++written;
    });
    return written;
}
int peer_remove_unchanged(pugi::xml_node root, const Values& values) {
    const auto index = peer_index(values);
    int removed = 0;
    std::vector<pugi::xml_node> doomed;
    peer_walk(root, [&](pugi::xml_node node) {
        if (!is_peer_leaf(node)) return;
        const auto found = index.find(node.attribute("DataID").as_int(-1));
        if (found != index.end() && values.texts[found->second] == node.child_value()) {
            doomed.push_back(node);
        }
    });
    for (pugi::xml_node node : doomed) {
        pugi::xml_node parent = node.parent();
        parent.remove_child(node);
        ++removed;
        while (parent != root && !parent.first_child()) {
            pugi::xml_node above = parent.parent();
            above.remove_child(parent);
            ++removed;
            parent = above;
        }
    }
    return removed;
}
int peer_update_changes(pugi::xml_node root, const std::vector<std::string>& oldValues) {
    std::size_t at = 0;
    int marked = 0;
    peer_walk(root, [&](pugi::xml_node node) {
        const char* const text = is_peer_leaf(node) ? node.child_value() : "";
        if (at < oldValues.size() && oldValues[at] != text) {
            pugi::xml_attribute mark = node.attribute("OldValue");
            if (!mark) mark = node.append_attribute("OldValue");
            mark.set_value(oldValues[at].c_str());
            ++marked;
        } else {
            node.remove_attribute("OldValue");
            node.remove_attribute("OldName");
        }
        ++at;
    });
    return marked;
}

// --- one job at one size -----------------------------------------------------------------------

struct Times {
    double ours;
    double peer;
};

// Everything that the jobs start from, at one size.
struct Setting {
    explicit Setting(int leafCount) : leaves(leafCount), xml(tree_xml(leafCount)) {
        tree = load(xml);
        expect(peer.load_string(xml.c_str()), "the peer's document");
        count = vctree_get_values_with_ids(&tree, &ids, &values, 1, 0, 0, nullptr, 0, nullptr);
        peerValues = peer_collect(peer.document_element());
        expect(static_cast<std::size_t>(count) == peerValues.ids.size(), "collected entries");
        VCTreeGetValues(&tree, &listed, false);
        listed.RemoveAt(0);
        for (int i = 0; i < listed.GetSize(); ++i) {
            if (i % 10 == 0 && !listed[i].IsEmpty()) listed[i] += "!";  // every tenth differs
            peerListed.emplace_back(static_cast<const char*>(listed[i]));
        }
    }

    int leaves;
    int count = 0;
    std::string xml;
    UXXmlWrapperBase tree;
    pugi::xml_document peer;
    CArray<int, int> ids;
    CWBOStringArray values;
    Values peerValues;
    CWBOStringArray listed;
    std::vector<std::string> peerListed;
};

Times collect(Setting& s, int runs) {
    CArray<int, int> ids;
    CWBOStringArray values;
    Values peerValues;
    return {fastest(
                runs,
                [&] {
                    ids.RemoveAll();
                    values.RemoveAll();
                },
                [&] {
                    vctree_get_values_with_ids(&s.tree, &ids, &values, 1, 0, 0, nullptr, 0,
                                               nullptr);
                }),
            fastest(
                runs, [&] { peerValues = {}; },
                [&] { peerValues = peer_collect(s.peer.document_element()); })};
}

Times set(Setting& s, int runs) {
    int duplicate = 0;
    int written = 0;
    const Times times{
        fastest(
            runs, [] {},
            [&] {
                written = vctree_set_values_by_ids(&s.tree, &s.ids, &s.values, 0, &duplicate, 0,
                                                   nullptr, nullptr);
            }),
        fastest(
            runs, [] {},
            [&] { expect(peer_set(s.peer.document_element(), s.peerValues) == s.count, "set"); })};
    expect(written == s.count, "values set");
    return times;
}

Times copy(Setting& s, int runs) {
    UXXmlWrapperBase target;
    pugi::xml_document peerTarget;
    return {fastest(
                runs, [&] { target = load(s.xml); },
                [&] {
                    expect(vctree_copy_values_by_id(&s.tree, &target, 0, nullptr, nullptr, 0,
                                                    nullptr, 0, 0, 0, 0) == s.count,
                           "copied");
                }),
            fastest(
                runs, [&] { peerTarget.load_string(s.xml.c_str()); },
                [&] {
                    const Values values = peer_collect(s.peer.document_element());
                    expect(peer_set(peerTarget.document_element(), values) == s.count, "copy");
                })};
}

Times remove_unchanged(Setting& s, int runs) {
    UXXmlWrapperBase target;
    pugi::xml_document peerTarget;
    int removed = 0;
    int peerRemoved = 0;
    const auto change_some = [](std::string xml) {
        for (std::size_t at = xml.find("value 7"); at != std::string::npos;
             at = xml.find("value 7", at + 1)) {
            xml[at] = 'V';
            xml[at + 1] = '+';
        }
        return xml;
    };
    const std::string changed = change_some(s.xml);
    const Times times{
        fastest(
            runs, [&] { target = load(changed); },
            [&] {
                removed = uxtree_remove_unchange_nodes_by_id(&s.tree, &target, nullptr, nullptr);
            }),
        fastest(
            runs, [&] { peerTarget.load_string(changed.c_str()); },
            [&] {
                const Values values = peer_collect(s.peer.document_element());
                peerRemoved = peer_remove_unchanged(peerTarget.document_element(), values);
            })};
    expect(removed == peerRemoved && removed > 0, "removed nodes");
    return times;
}

Times update_changes(Setting& s, int runs) {
    int marked = 0;
    int peerMarked = 0;
    const Times times{
        fastest(
            runs, [] {}, [&] { marked = VCTreeUpdateChanges(&s.tree, &s.listed); }),
        fastest(
            runs, [] {},
            [&] { peerMarked = peer_update_changes(s.peer.document_element(), s.peerListed); })};
    expect(marked == peerMarked && marked > 0, "marked nodes");
    return times;
}

// --- a theme's file ----------------------------------------------------------------------------

void time_theme_file(int runs) {
    Setting s(100000);
    const std::string path =
        (std::filesystem::temp_directory_path() / "uxtree_values_bench.xml").string();
    const auto ours = fastest(
        runs, [] {},
        [&] {
            CArray<int, int> ids;
            CWBOStringArray values;
            vctree_save_values_with_ids(path.c_str(), &s.ids, &s.values, "comment", nullptr);
            expect(vctree_read_values_with_ids(path.c_str(), &ids, &values, nullptr), "theme");
            expect(ids.GetSize() == s.count, "theme's values");
        });
    const auto plain = fastest(
        runs, [] {},
        [&] {
            UXXmlWrapperBase document;
            expect(document.load(path.c_str(), 0, false) && document.Save(path.c_str(), 0), "file");
        });
    std::filesystem::remove(path);
    std::printf(
        "\ntheme of %d values: save and read %.1f ms, load and save the same file %.1f ms: "
        "ratio %.2f\n",
        s.count, ours / 1e6, plain / 1e6, ours / plain);
}

// --- lists of short texts ----------------------------------------------------------------------

void time_lists(int runs) {
    constexpr int kTexts = 1000000;
    const std::string text = "value 12345";
    CWBOStringArray list;
    std::vector<std::string> peerList;
    const auto refill = [&] {
        list = CWBOStringArray();
        for (int i = 0; i < kTexts; ++i) list.AddText(text);
        peerList.assign(kTexts, text);
    };
    const auto row = [&](const char* what, const std::function<void()>& ours,
                         const std::function<void()>& peers) {
        const double mine = fastest(runs, refill, ours) / kTexts;
        const double peer = fastest(runs, refill, peers) / kTexts;
        std::printf("| %s | %.1f | %.1f | %.2f |\n", what, mine, peer, mine / peer);
    };
    std::printf(
        "\n| a million short texts, nanoseconds each | ours | std::vector<std::string> | ours / "
        "peer |\n|---|---|---|---|\n");
    row(
        "add",
        [&] {
            list = CWBOStringArray();
            for (int i = 0; i < kTexts; ++i) list.AddText(text);
        },
        [&] {
            peerList = std::vector<std::string>();
            for (int i = 0; i < kTexts; ++i) peerList.emplace_back(text);
        });
    row(
        "copy", [&] { expect(CWBOStringArray(list).GetSize() == kTexts, "copy"); },
        [&] { expect(std::vector<std::string>(peerList).size() == kTexts, "copy"); });
    row(
        "move each",
        [&] {
            CWBOStringArray taken;
            for (int i = 0; i < kTexts; ++i) taken.Add(std::move(list[i]));
            list = std::move(taken);
        },
        [&] {
            std::vector<std::string> taken;
            for (std::string& each : peerList) taken.push_back(std::move(each));
            peerList = std::move(taken);
        });
    row(
        "append to each",
        [&] {
            for (int i = 0; i < kTexts; ++i) list[i] += "!";
        },
        [&] {
            for (std::string& each : peerList) each += "!";
        });
}

struct Job {
    const char* name;
    Times (*run)(Setting&, int);
};

}  // namespace

int main(int argc, char** argv) {
    const int runs = argc > 1 ? std::atoi(argv[1]) : 5;
    const Job jobs[] = {{"collect", collect},
                        {"set", set},
                        {"copy by identifier", copy},
                        {"remove unchanged", remove_unchanged},
                        {"update marks", update_changes}};
    std::vector<std::vector<Times>> table(std::size(jobs));
    for (const int leaves : kSizes) {
        Setting setting(leaves);
        for (std::size_t i = 0; i < std::size(jobs); ++i) {
            const Times times = jobs[i].run(setting, leaves >= 1000000 ? std::min(runs, 3) : runs);
            table[i].push_back({times.ours / leaves, times.peer / leaves});
        }
    }
    std::printf(
        "| nanoseconds a leaf at 1e4 / 1e5 / 1e6 | ours | pugixml + unordered_map | growth | ours "
        "/ "
        "peer |\n|---|---|---|---|---|\n");
    for (std::size_t i = 0; i < std::size(jobs); ++i) {
        const auto& t = table[i];
        std::printf(
            "| %s | %.0f / %.0f / %.0f | %.0f / %.0f / %.0f | %.2f | %.2f / %.2f / %.2f |\n",
            jobs[i].name, t[0].ours, t[1].ours, t[2].ours, t[0].peer, t[1].peer, t[2].peer,
            t[2].ours / t[0].ours, t[0].ours / t[0].peer, t[1].ours / t[1].peer,
            t[2].ours / t[2].peer);
    }
    time_theme_file(runs);
    time_lists(runs);
    return 0;
}
