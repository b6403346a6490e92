// Every entry point with every bad argument; the rows stand in one file per room.
#include "bad_arguments.h"

#include <fstream>
#include <set>

namespace uxtest {

UXXmlWrapperBase Scene::removed() const {
    UXXmlWrapperBase handle = aside_.at("victim/child");
    aside_.at("victim").RemoveNode();
    return handle;
}

std::string Scene::outputs() const {
    std::string all;
    for (const auto& output : outputs_) all += output() + "\n";
    return all + to_text(aside_.root());
}

namespace {

const Sweep& sweep() {
    static const Sweep whole = [] {
        Sweep rows;
        add_frame_rows(rows);
        add_lookup_rows(rows);
        add_tree_rows(rows);
        add_data_rows(rows);
        add_label_rows(rows);
        add_import_rows(rows);
        add_analysis_rows(rows);
        add_stats_rows(rows);
        add_report_rows(rows);
        return rows;
    }();
    return whole;
}

std::vector<std::string> swept_names() {
    std::vector<std::string> names;
    for (const auto& [name, rows] : sweep().rows()) names.push_back(name);
    return names;
}

std::vector<std::string> listed_names() {
    std::ifstream list(source_path("docs/entry_points.txt"));
    std::set<std::string> names;
    std::string kind, name, topic;
    while (list >> kind >> name && std::getline(list, topic)) names.insert(name);
    return {names.begin(), names.end()};
}

class BadArguments : public testing::TestWithParam<std::string> {};

}  // namespace

TEST_P(BadArguments, GiveTheFailureValueAndChangeNothing) {
    for (const auto& run : sweep().rows().at(GetParam())) run();
}
INSTANTIATE_TEST_SUITE_P(Sweep, BadArguments, testing::ValuesIn(swept_names()),
                         [](const auto& row) { return row.param; });

TEST(BadArgumentsSweep, CoversListedEntryPoints) {
    EXPECT_THAT(swept_names(), testing::IsSubsetOf(listed_names()));
}

}  // namespace uxtest
