// Spectra in the ASCII form SPE; docs/spe.md describes it.
#pragma once

#include <string>
#include <vector>

#include "uxtree/kit/spectra.h"

#include "support/output.h"

namespace uxtool {

// Writes one spectrum. Yields what the form cannot hold of it, one line each.
std::vector<std::string> write_spe(Output& out, const uxkit::Spectrum& spectrum,
                                   const std::string& source);

}  // namespace uxtool
