// Every entry point with every bad argument, and with texts inside its outputs; the rows stand in calls/, one file per topic.
#include <fstream>
#include <set>

#include "frame/calls/calls.h"

namespace uxtest {
namespace {

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
    for (const Call& call : all_calls().calls().at(GetParam())) call.try_bad_arguments();
}
INSTANTIATE_TEST_SUITE_P(Sweep, BadArguments, testing::ValuesIn(all_calls().names()),
                         [](const auto& row) { return row.param; });

// A text argument may stand in a string or an array that the call writes.
class Aliases : public testing::TestWithParam<std::string> {};

TEST_P(Aliases, OfTextsAndOutputsGiveWhatTextsElsewhereGive) {
    for (const Call& call : all_calls().calls().at(GetParam())) call.try_aliases();
}
INSTANTIATE_TEST_SUITE_P(Sweep, Aliases, testing::ValuesIn(all_calls().names()),
                         [](const auto& row) { return row.param; });

TEST(BadArgumentsSweep, CoversEveryListedEntryPoint) {
    EXPECT_THAT(all_calls().names(), testing::ElementsAreArray(listed_names()));
}

}  // namespace uxtest
