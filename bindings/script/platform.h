// What the functions of scripts ask of the system, as src/base/platform.h says it for the libraries.
#pragma once

#include <string>
#include <vector>

namespace uxscript {

// The files and folders that a shell would make of a pattern, in order; folders end in a slash. Throws
// ScriptError when a folder cannot be read.
std::vector<std::string> files_matching(const std::string& pattern);

}  // namespace uxscript
