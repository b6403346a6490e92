// The lines in which two texts differ.
#pragma once

#include <string>
#include <string_view>

namespace uxtool {

// The difference as "diff -u" prints it, with three lines around each change; "" for equal texts.
// Of texts with very many differences it may be a little longer than it had to be.
std::string unified_diff(std::string_view before, std::string_view after,
                         const std::string& beforeName, const std::string& afterName);

}  // namespace uxtool
