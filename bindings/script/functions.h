// script/functions: what scripts need beside trees: printing and files.
#pragma once

#include <functional>
#include <string_view>

#include "registrar.h"

namespace uxscript {

// print and str; where prints go to must outlive the engine.
void register_printing(Registrar& add, std::function<void(std::string_view)>& print);
// files, read_file.
void register_files(Registrar& add);

}  // namespace uxscript
