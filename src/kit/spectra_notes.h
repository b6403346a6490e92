// The words for what a reader of spectrum files left out.
#pragma once

#include <cstddef>
#include <vector>

#include "uxtree/kit/spectra.h"

#include "import/n42_records.h"

namespace uxkit {

struct NoteSource {
    const ux::N42Losses& losses;
    std::size_t unknownCalibrations = 0;
    bool nothingRead = false;
    std::size_t spectraAnywhere = 0;  // elements of the document; needed when nothing was read
};
std::vector<SpectrumNote> notes_of(const NoteSource& source);

}  // namespace uxkit
