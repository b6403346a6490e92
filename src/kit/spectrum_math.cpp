// Sums, rates, other channels, energies and regions of spectra.
#include "uxtree/kit/spectrum_math.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numeric>
#include <utility>

#include "frame/guards.h"
#include "import/n42_numbers.h"

namespace uxkit {
namespace {

constexpr std::size_t kSideChannels = 3;  // on either side of a region

bool has_live_time(const Spectrum& spectrum) {
    return spectrum.liveSeconds > 0;
}

// The calibration of channels joined factor by factor: channel x is the old channel factor * x.
EnergyCalibration joined(const EnergyCalibration& calibration, std::size_t factor,
                         std::size_t channels) {
    EnergyCalibration out = calibration;
    double power = 1;
    for (double& coefficient : out.coefficients) {
        coefficient *= power;
        power *= static_cast<double>(factor);
    }
    if (calibration.coefficients.empty()) {
        const std::vector<double> edges = channel_edges(calibration, channels);
        out.boundaries.clear();
        for (std::size_t i = 0; i < edges.size(); i += factor) out.boundaries.push_back(edges[i]);
        if (!edges.empty() && (edges.size() - 1) % factor != 0) {
            out.boundaries.push_back(edges.back());
        }
    }
    return out;
}

bool same_energies(const EnergyCalibration& one, const EnergyCalibration& other) {
    return &one == &other || (one.coefficients == other.coefficients &&
                              one.boundaries == other.boundaries && one.unit == other.unit);
}

// The counts of a spectrum in the channels of another one.
SpectrumProblem counts_in_channels_of(const Spectrum& target, const Spectrum& source,
                                      std::vector<double>& out, Rebinning& rebinning) {
    const EnergyCalibration* to = target.calibration.get();
    const EnergyCalibration* from = source.calibration.get();
    rebinning = {};
    if ((to == nullptr) != (from == nullptr)) return SpectrumProblem::kNoCalibration;
    const bool sameLength = target.counts.size() == source.counts.size();
    if (to == nullptr && !sameLength) return SpectrumProblem::kDifferentChannels;
    if (sameLength && (to == nullptr || same_energies(*to, *from))) {
        out = source.counts;
        return SpectrumProblem::kNone;
    }
    if (to->unit != from->unit) return SpectrumProblem::kDifferentUnits;
    rebinning.needed = true;
    return rebin(source.counts, channel_edges(*from, source.counts.size()),
                 channel_edges(*to, target.counts.size()), out, rebinning.outside);
}

double mean(const std::vector<double>& values, std::size_t from, std::size_t to) {
    return std::accumulate(values.begin() + static_cast<std::ptrdiff_t>(from),
                           values.begin() + static_cast<std::ptrdiff_t>(to), 0.0) /
           static_cast<double>(to - from);
}

double joined_time(double one, double other) {
    return one < 0 || other < 0 ? -1 : one + other;
}
void keep_if_same(std::string& text, const std::string& other) {
    if (text != other) text.clear();
}

}  // namespace

const char* text_of(SpectrumProblem problem) {
    switch (problem) {
        case SpectrumProblem::kNone:
            return "";
        case SpectrumProblem::kNoLiveTime:
            return "it has no live time";
        case SpectrumProblem::kNoCalibration:
            return "one has energies and the other none";
        case SpectrumProblem::kDifferentChannels:
            return "different numbers of channels, and no energies to compare them by";
        case SpectrumProblem::kEnergiesDoNotAscend:
            return "its energies do not ascend";
        case SpectrumProblem::kDifferentUnits:
            return "energies of different units";
        case SpectrumProblem::kBadFactor:
            return "channels are joined by 1 or more";
        case SpectrumProblem::kNoMemory:
            break;
    }
    return "no memory is left";
}

double total(const std::vector<double>& counts) {
    return std::accumulate(counts.begin(), counts.end(), 0.0);
}

double rate_of(const Spectrum& spectrum) {
    return has_live_time(spectrum) ? total(spectrum.counts) / spectrum.liveSeconds : -1;
}

double dead_percent(const Spectrum& spectrum) {
    const double real = spectrum.realSeconds;
    const double live = spectrum.liveSeconds;
    if (!(real > 0) || live < 0 || live > real) return -1;
    return 100 * (real - live) / real;
}

// ---- energies ---------------------------------------------------------------------------------

std::vector<double> import_energies(const EnergyCalibration& calibration, std::size_t channels) {
    return ux::at_boundary(std::vector<double>(), [&] {
        if (calibration.coefficients.empty()) return calibration.boundaries;
        std::vector<double> out(channels);
        for (std::size_t i = 0; i < channels; ++i) {
            out[i] = ux::polynomial_at(calibration.coefficients, static_cast<double>(i + 1));
        }
        return out;
    });
}

std::vector<double> channel_edges(const EnergyCalibration& calibration, std::size_t channels) {
    return ux::at_boundary(std::vector<double>(), [&] {
        std::vector<double> out;
        if (!calibration.coefficients.empty()) {
            out.resize(channels + 1);
            for (std::size_t i = 0; i <= channels; ++i) {
                out[i] = ux::polynomial_at(calibration.coefficients, static_cast<double>(i));
            }
            return out;
        }
        const std::vector<double>& given = calibration.boundaries;
        if (channels == 0 || given.size() < channels) return out;
        out.assign(given.begin(), given.begin() + static_cast<std::ptrdiff_t>(
                                                      std::min(given.size(), channels + 1)));
        if (out.size() > channels) return out;
        if (channels < 2) return std::vector<double>();
        out.push_back(2 * out[channels - 1] - out[channels - 2]);
        return out;
    });
}

bool ascends(const std::vector<double>& edges) {
    for (std::size_t i = 0; i < edges.size(); ++i) {
        if (!std::isfinite(edges[i]) || (i > 0 && !(edges[i - 1] < edges[i]))) return false;
    }
    return true;
}

// ---- other channels ---------------------------------------------------------------------------

SpectrumProblem join_channels(Spectrum& spectrum, std::size_t factor) {
    if (factor < 1) return SpectrumProblem::kBadFactor;
    if (factor == 1) return SpectrumProblem::kNone;
    return ux::at_boundary(SpectrumProblem::kNoMemory, [&] {
        const std::vector<double>& old = spectrum.counts;
        std::vector<double> counts((old.size() + factor - 1) / factor, 0.0);
        for (std::size_t i = 0; i < old.size(); ++i) counts[i / factor] += old[i];
        if (spectrum.calibration) {
            spectrum.calibration = std::make_shared<const EnergyCalibration>(
                joined(*spectrum.calibration, factor, old.size()));
        }
        spectrum.counts = std::move(counts);
        return SpectrumProblem::kNone;
    });
}

SpectrumProblem rebin(const std::vector<double>& counts, const std::vector<double>& edges,
                      const std::vector<double>& newEdges, std::vector<double>& out,
                      double& outside) {
    const bool usable = edges.size() == counts.size() + 1 && newEdges.size() > 1 &&
                        ascends(edges) && ascends(newEdges);
    if (!usable) return SpectrumProblem::kEnergiesDoNotAscend;
    return ux::at_boundary(SpectrumProblem::kNoMemory, [&] {
        std::vector<double> result(newEdges.size() - 1, 0.0);
        double left = 0;
        std::size_t target = 0;
        for (std::size_t i = 0; i < counts.size(); ++i) {
            const double low = edges[i];
            const double high = edges[i + 1];
            const double width = high - low;
            while (target < result.size() && newEdges[target + 1] <= low) ++target;
            double within = 0;  // of the channel's width
            for (std::size_t at = target; at < result.size() && newEdges[at] < high; ++at) {
                const double overlap =
                    std::min(high, newEdges[at + 1]) - std::max(low, newEdges[at]);
                result[at] += counts[i] * (overlap / width);
                within += overlap;
            }
            if (within < width) left += counts[i] * ((width - within) / width);
        }
        out = std::move(result);
        outside = left;
        return SpectrumProblem::kNone;
    });
}

// ---- several spectra --------------------------------------------------------------------------

SpectrumProblem add_spectrum(Spectrum& sum, const Spectrum& more, Rebinning& rebinning) {
    return ux::at_boundary(SpectrumProblem::kNoMemory, [&] {
        std::vector<double> counts;
        const SpectrumProblem problem = counts_in_channels_of(sum, more, counts, rebinning);
        if (problem != SpectrumProblem::kNone) return problem;
        std::transform(counts.begin(), counts.end(), sum.counts.begin(), sum.counts.begin(),
                       [](double one, double other) { return one + other; });
        sum.liveSeconds = joined_time(sum.liveSeconds, more.liveSeconds);
        sum.realSeconds = joined_time(sum.realSeconds, more.realSeconds);
        keep_if_same(sum.id, more.id);
        keep_if_same(sum.detector, more.detector);
        keep_if_same(sum.kind, more.kind);
        keep_if_same(sum.start, more.start);
        // Texts of times would be those of one spectrum.
        sum.liveTime.clear();
        sum.realTime.clear();
        sum.position.reset();
        sum.dose.reset();
        sum.grossCounts.reset();
        return SpectrumProblem::kNone;
    });
}

SpectrumProblem subtract_background(Spectrum& spectrum, const Spectrum& background,
                                    Rebinning& rebinning) {
    if (!has_live_time(spectrum) || !has_live_time(background)) return SpectrumProblem::kNoLiveTime;
    return ux::at_boundary(SpectrumProblem::kNoMemory, [&] {
        std::vector<double> counts;
        const SpectrumProblem problem =
            counts_in_channels_of(spectrum, background, counts, rebinning);
        if (problem != SpectrumProblem::kNone) return problem;
        const double scale = spectrum.liveSeconds / background.liveSeconds;
        rebinning.outside *= scale;
        for (std::size_t i = 0; i < counts.size(); ++i) spectrum.counts[i] -= scale * counts[i];
        return SpectrumProblem::kNone;
    });
}

SpectrumProblem make_rates(Spectrum& spectrum) {
    if (!has_live_time(spectrum)) return SpectrumProblem::kNoLiveTime;
    for (double& count : spectrum.counts) count /= spectrum.liveSeconds;
    return SpectrumProblem::kNone;
}

// ---- regions ----------------------------------------------------------------------------------

Region region_of(const std::vector<double>& counts, std::size_t first, std::size_t last) {
    Region out;
    if (counts.empty() || first >= counts.size() || last < first) return out;
    last = std::min(last, counts.size() - 1);
    const std::size_t leftFrom = first - std::min(first, kSideChannels);
    const std::size_t rightTo = std::min(counts.size(), last + 1 + kSideChannels);
    const bool hasLeft = leftFrom < first;
    const bool hasRight = last + 1 < rightTo;
    double left = hasLeft ? mean(counts, leftFrom, first) : 0;
    double right = hasRight ? mean(counts, last + 1, rightTo) : left;
    if (!hasLeft) left = right;
    const double width = static_cast<double>(last - first + 1);
    double moment = 0;
    for (std::size_t i = first; i <= last; ++i) {
        const double below = left + (right - left) * (static_cast<double>(i - first) + 0.5) / width;
        out.gross += counts[i];
        out.background += below;
        moment += static_cast<double>(i) * (counts[i] - below);
    }
    out.net = out.gross - out.background;
    const double middle = static_cast<double>(first + last) / 2;
    out.centroid = out.net > 0 ? moment / out.net : middle;
    return out;
}

}  // namespace uxkit
