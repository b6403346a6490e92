// What the two languages of uxtree query share.
#pragma once

#include <string>
#include <vector>

#include "support/json.h"
#include "support/output.h"

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

    bool names_files() const { return withName || (files.size() > 1 && !withoutName); }
};

// One value as the format wants it, which for JSON is an entry of the list.
void write_value(Output& out, JsonList& list, const QueryOptions& options, const std::string& value,
                 const std::string& file);

int run_selection_query(const QueryOptions& options);

}  // namespace uxtool
