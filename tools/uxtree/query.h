// What the two languages of uxtree query share.
#pragma once

#include <string>
#include <vector>

namespace uxtool {

struct QueryOptions {
    std::string path;
    std::vector<std::string> files;
    std::string format = "text";
    std::string output;
    bool table = false;
    bool schema = false;
    bool xml = false;
    bool withName = false;
    bool withoutName = false;
    unsigned jobs = 1;
};

int run_selection_query(const QueryOptions& options);

}  // namespace uxtool
