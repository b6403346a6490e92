// The parts of the module.
#pragma once

#include "python.h"

namespace uxpy {

void add_iterators(py::module_& raw);   // to uxtree.raw
void add_files(py::module_& core);      // loading, saving, outlines
void add_selection(py::module_& core);  // paths in XPath's short form
void add_spectra(py::module_& core);    // spectrum files

}  // namespace uxpy
