// JSON output: a list with one entry per line.
#pragma once

#include <string>
#include <string_view>

#include <nlohmann/json.hpp>

#include "support/output.h"

namespace uxtool {

using Json = nlohmann::ordered_json;  // keeps the order of keys

// Compact text; bytes that are not UTF-8 become U+FFFD.
std::string json_text(const Json& value);
// A quoted string.
std::string json_string(std::string_view text);
// The same for a script element: nothing in it ends the element or opens a comment.
std::string script_string(std::string_view text);

// Writes a list entry by entry, so that nothing piles up in memory.
class JsonList {
public:
    explicit JsonList(Output& out) : out_(out) {}
    void add(const Json& entry);
    // Starts an entry that the caller writes itself.
    void begin_entry();
    void finish();

private:
    Output& out_;
    bool empty_ = true;
};

}  // namespace uxtool
