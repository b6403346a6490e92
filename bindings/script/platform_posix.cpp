// What the functions of scripts ask of a POSIX system.
#include <cstddef>

#include <glob.h>

#include "call.h"
#include "platform.h"

namespace uxscript {

std::vector<std::string> files_matching(const std::string& pattern) {
    glob_t found{};
    const int result = ::glob(pattern.c_str(), GLOB_MARK | GLOB_ERR, nullptr, &found);
    struct Free {
        ~Free() { ::globfree(&found); }
        glob_t& found;
    } const free{found};
    if (result == GLOB_NOMATCH) return {};
    if (result != 0) throw ScriptError{"cannot read the folder of '" + pattern + "'"};
    return {found.gl_pathv, found.gl_pathv + found.gl_pathc};
}

}  // namespace uxscript
