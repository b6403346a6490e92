// Statistics: store settings and results in a tree, and read them again.
#include <cstdio>
#include <cstring>

#include "uxtree/uxtree_Utils.h"

namespace {

constexpr int kWrite = 0;
constexpr int kRead = 1;

// What is absent reads as the missing value, which is compared by its bits.
bool is_missing(double value) {
    const double missing = UXMissingValue();
    return std::memcmp(&value, &missing, sizeof value) == 0;
}

// Fields that were not computed are stored as missing, so that they read as missing, too.
tagDescStatResults nothing_computed() {
    UXXmlWrapperBase empty;
    tagDescStatResults results{};
    double min = 0;
    double max = 0;
    empty.CreateNew(0, "Result");
    vctree_stats_get_set_stats_results(empty, results, min, max, kRead);
    return results;
}

bool store(UXXmlWrapperBase& tree, int row, int column, double mean) {
    UXXmlWrapperBase result;
    if (vctree_stats_create_result_node(tree, result, {row, column}) == 0) return false;
    tagDescStatResults results = nothing_computed();
    results.N = 12;
    results.Mean = mean;
    double min = mean - 1;
    double max = mean + 1;
    vctree_stats_get_set_stats_results(result, results, min, max, kWrite);
    CArray<double, double> counts;
    for (double count : {1.0, 5.0, 6.0}) counts.Add(count);
    return vctree_stats_result_get_set_counts(result, counts, kWrite) == 1;
}

int print_results(UXXmlWrapperBase& tree) {
    int found = 0;
    UXXmlWrapperBase result;
    tagPOINT pos{};
    while (vctree_stats_enum_result_node(tree, result, &pos) != 0) {
        tagDescStatResults results{};
        double min = UXMissingValue();  // these two have no default of their own
        double max = UXMissingValue();
        vctree_stats_get_set_stats_results(result, results, min, max, kRead);
        std::printf("row %d column %d: N %d, mean %g, from %g to %g, SD %s\n", pos.x, pos.y,
                    results.N, results.Mean, min, max, is_missing(results.SD) ? "missing" : "?");
        if (is_missing(results.SD) && results.N == 12) ++found;
    }
    return found;
}

}  // namespace

int main() {
    UXXmlWrapperBase tree;
    tree.CreateNew(0, "Statistics");
    double min = 0;
    double max = 10;
    int intervals = 20;
    int space = 0;
    vctree_stats_get_set_bin_info(tree, min, max, intervals, space, kWrite);
    vctree_stats_set_by_intervals(tree, 1);
    if (!store(tree, 0, 0, 3.5) || !store(tree, 0, 1, 7.25)) return 1;

    intervals = 0;
    vctree_stats_get_set_bin_info(tree, min, max, intervals, space, kRead);
    std::printf("%d intervals from %g to %g\n", intervals, min, max);
    return print_results(tree) == 2 && intervals == 20 ? 0 : 1;
}
