// Temporary files.
#pragma once

#include <string>
#include <utility>

#include "support/platform.h"

namespace uxtool {

// A new file in the folder for temporary files; yields its path and an open descriptor. Throws
// Failure with kRefused.
std::pair<std::string, Descriptor> create_temporary();
// Removes those that a signal leaves behind; for signal handlers, too.
void remove_temporaries();

}  // namespace uxtool
