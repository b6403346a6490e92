// Calculating with spectra: sums, rates, other channels, energies, regions.
//
// Functions that change a spectrum change it completely or, when they yield a problem, not at all.
// No function throws; one that yields a list yields an empty one when memory runs out.
#pragma once

#include <cstddef>
#include <vector>

#include "uxtree/kit/export.h"
#include "uxtree/kit/spectra.h"

namespace uxkit {

enum class SpectrumProblem {
    kNone,
    kNoLiveTime,           // a live time above 0 is needed
    kNoCalibration,        // one spectrum has energies, the other none
    kDifferentChannels,    // no energies, and not the same number of channels
    kEnergiesDoNotAscend,  // channels cannot be compared by such energies
    kDifferentUnits,       // energies in keV and MeV, say
    kBadFactor,            // below 1
    kNoMemory,
};
// One line without a full stop: "it has no live time". "" for kNone.
UXKIT_API const char* text_of(SpectrumProblem problem);

// ---- numbers of a spectrum --------------------------------------------------------------------

UXKIT_API double total(const std::vector<double>& counts);
// Counts per second of live time; below 0 without a live time above 0.
UXKIT_API double rate_of(const Spectrum& spectrum);
// The part of the real time in which the detector was dead, in percent; below 0 when the times are
// not known, or when the live time is longer than the real time.
UXKIT_API double dead_percent(const Spectrum& spectrum);

// ---- energies ---------------------------------------------------------------------------------

// The energies that an import writes, one per channel: it takes channel 1 first, so the first
// channel has the energy c0 + c1 + c2 ... Boundaries are yielded as they are.
UXKIT_API std::vector<double> import_energies(const EnergyCalibration& calibration,
                                              std::size_t channels);
// The lower edges of the channels and the upper edge of the last: channels + 1 values. Polynomials
// are taken at 0, 1, 2 ..., as the standard defines them. When boundaries lack the last edge, the
// last channel is as wide as the one before it. Empty when the file lists fewer boundaries.
UXKIT_API std::vector<double> channel_edges(const EnergyCalibration& calibration,
                                            std::size_t channels);
// Are the values finite, and each above the one before?
UXKIT_API bool ascends(const std::vector<double>& edges);

// ---- other channels ---------------------------------------------------------------------------

// Joins channels factor by factor; the last ones may be fewer, so that no count is lost. Energies
// go with them.
UXKIT_API SpectrumProblem join_channels(Spectrum& spectrum, std::size_t factor);

// What another division into channels did.
struct Rebinning {
    bool needed = false;  // the channels were different
    double outside = 0;   // counts beyond the new channels, which are lost
};
// Divides counts among other channels by overlap of energies, as if the counts of a channel were
// spread evenly. Both lists of edges have one value more than channels and ascend.
UXKIT_API SpectrumProblem rebin(const std::vector<double>& counts, const std::vector<double>& edges,
                                const std::vector<double>& newEdges, std::vector<double>& out,
                                double& outside);

// ---- several spectra --------------------------------------------------------------------------

// Adds more to sum, in the channels of sum. Live and real times are added up, and are unknown when
// one is; so the rate of a sum over detectors is their mean rate. Detector, kind and start stay where
// all agree. The name stays as it is.
UXKIT_API SpectrumProblem add_spectrum(Spectrum& sum, const Spectrum& more, Rebinning& rebinning);
// Takes the background off, scaled by the live times, in the channels of spectrum. Counts may become
// negative.
UXKIT_API SpectrumProblem subtract_background(Spectrum& spectrum, const Spectrum& background,
                                              Rebinning& rebinning);
// Divides the counts by the live time.
UXKIT_API SpectrumProblem make_rates(Spectrum& spectrum);

// ---- regions ----------------------------------------------------------------------------------

// The counts of some neighbouring channels. The background below a peak is a straight line between
// the means of up to three channels on either side.
struct Region {
    double gross = 0;
    double background = 0;
    double net = 0;       // gross - background
    double centroid = 0;  // by net counts, as a place in the list of channels from 0; the middle
                          // of the region when net counts are not above 0
};
// Channels first to last, from 0 and both included; zeros when there are none.
UXKIT_API Region region_of(const std::vector<double>& counts, std::size_t first, std::size_t last);

}  // namespace uxkit
