// The energy calibrations of a spectrum file.
#pragma once

#include <cstddef>
#include <string>
#include <unordered_map>
#include <vector>

#include "import/n42_numbers.h"
#include "import/n42_records.h"

namespace ux {

class N42Calibrations {
public:
    // Yields its place.
    int Add(N42Calibration&& calibration);
    N42Calibration& At(int place) { return all_[static_cast<std::size_t>(place)]; }
    // The first with the id, null without one; an empty reference matches nothing.
    N42Calibration* Find(const CStringUTF8& id);

private:
    std::vector<N42Calibration> all_;
    std::unordered_map<std::string, int> byId_;
};

// The energies of channels as a list of its own.
void fill_energies(const N42Calibration& calibration, int channels, NumberList& out);

}  // namespace ux
