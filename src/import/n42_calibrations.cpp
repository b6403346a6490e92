// Energy calibrations by their id, and the energies that they give channels.
#include "import/n42_calibrations.h"

#include <utility>

namespace ux {

int N42Calibrations::Add(N42Calibration&& calibration) {
    const int place = static_cast<int>(all_.size());
    if (!calibration.id.IsEmpty()) {
        byId_.emplace(static_cast<const char*>(calibration.id), place);
    }
    all_.push_back(std::move(calibration));
    return place;
}

N42Calibration* N42Calibrations::Find(const CStringUTF8& id) {
    const auto known = byId_.find(static_cast<const char*>(id));
    return known == byId_.end() ? nullptr : &At(known->second);
}

void fill_energies(const N42Calibration& calibration, int channels, NumberList& out) {
    out.clear();
    if (calibration.coefficients.empty()) {
        // Boundaries are written as given: files hold one more of them than there are channels.
        for (const double boundary : calibration.boundaries) out.push(boundary);
        return;
    }
    // Intended: channel numbers count from 1.
    for (int i = 1; i <= channels; ++i) out.push(polynomial_at(calibration.coefficients, i));
}

}  // namespace ux
