// What is drawn of a file of spectra: which curves, their names, their axes.
#include "support/spectrum_plot.h"

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <map>
#include <memory>
#include <numeric>
#include <set>
#include <utility>

#include "support/input.h"
#include "support/output.h"
#include "support/text.h"

namespace uxtool {
namespace {

using Spectra = std::vector<const uxkit::Spectrum*>;

Spectra chosen_spectra(const std::vector<uxkit::Spectrum>& content, const PlotChoice& options) {
    Spectra out;
    if (options.chosen.empty()) {
        for (const uxkit::Spectrum& spectrum : content) out.push_back(&spectrum);
    }
    for (const std::string& choice : options.chosen) {
        const std::size_t before = out.size();
        for (const uxkit::Spectrum& spectrum : content) {
            if (is_chosen(spectrum, choice)) out.push_back(&spectrum);
        }
        if (out.size() == before) throw_no_spectrum(input_name(options.file), choice);
    }
    return out;
}

// A curve to draw, made of one spectrum or of the sum of several.
struct Curve {
    uxkit::Spectrum spectrum;
    std::size_t summed = 1;
    std::string detail;  // times, counts, rate
};

std::vector<Curve> single_curves(const Spectra& spectra) {
    std::vector<Curve> out;
    for (const uxkit::Spectrum* spectrum : spectra) out.push_back({*spectrum, 1, ""});
    return out;
}

// The sums of the spectra of each kind and detector that have the same channels.
std::vector<Curve> summed_curves(const Spectra& spectra) {
    std::vector<Curve> out;
    std::map<std::pair<std::string, const void*>, std::size_t> places;
    for (const uxkit::Spectrum* spectrum : spectra) {
        const std::string words =
            fmt::format("{}\n{}\n{}", spectrum->kind, spectrum->detector, spectrum->counts.size());
        const auto [place, isNew] =
            places.emplace(std::pair(words, spectrum->calibration.get()), out.size());
        if (isNew) {
            out.push_back({*spectrum, 1, ""});
            continue;
        }
        Curve& sum = out[place->second];
        uxkit::Rebinning rebinning;  // not needed: the channels are the same
        uxkit::add_spectrum(sum.spectrum, *spectrum, rebinning);
        ++sum.summed;
    }
    return out;
}

double seconds_of_curve(const Curve& curve) {
    const uxkit::Spectrum& spectrum = curve.spectrum;
    return spectrum.liveSeconds < 0 ? spectrum.realSeconds : spectrum.liveSeconds;
}

std::string detail_of(const Curve& curve) {
    std::string detail;
    if (curve.summed > 1) detail = fmt::format("{} spectra, ", curve.summed);
    const double seconds = seconds_of_curve(curve);
    if (seconds >= 0) detail += fmt::format("{:.5g} s, ", seconds);
    const auto shortened = [](double value) {
        return short_number(std::stod(fmt::format("{:.3e}", value)));
    };
    detail += shortened(uxkit::total(curve.spectrum.counts)) + " counts";
    const double rate = uxkit::rate_of(curve.spectrum);
    return rate < 0 ? detail : detail + ", " + shortened(rate) + "/s";
}

void keep_largest(std::vector<Curve>& curves, std::size_t count, const std::string& file) {
    if (curves.size() <= count) return;
    note(fmt::format("{}: {} curves; the {} with most counts are drawn. -s chooses others",
                     input_name(file), curves.size(), count));
    std::vector<double> totals;
    totals.reserve(curves.size());
    for (const Curve& curve : curves) totals.push_back(uxkit::total(curve.spectrum.counts));
    std::vector<double> sorted = totals;
    std::sort(sorted.begin(), sorted.end(), std::greater<>());
    const double least = sorted[count - 1];
    std::vector<Curve> kept;
    for (std::size_t i = 0; i < curves.size() && kept.size() < count; ++i) {
        if (totals[i] >= least) kept.push_back(std::move(curves[i]));
    }
    curves = std::move(kept);
}

std::string name_of(const Curve& curve) {
    if (curve.summed == 1) return curve.spectrum.name;
    std::string name = curve.spectrum.kind;
    const std::string& detector = curve.spectrum.detector;
    if (!detector.empty()) name += (name.empty() ? "" : " ") + detector;
    return name.empty() ? "Sum" : name;
}

// The page divides by itself, and can go back to counts.
void make_rates(std::vector<Curve>& curves, const std::string& file, bool page) {
    for (Curve& curve : curves) {
        uxkit::SpectrumProblem problem = uxkit::SpectrumProblem::kNone;
        if (!page) {
            problem = uxkit::make_rates(curve.spectrum);
        } else if (uxkit::rate_of(curve.spectrum) < 0) {
            problem = uxkit::SpectrumProblem::kNoLiveTime;
        }
        if (problem == uxkit::SpectrumProblem::kNone) continue;
        throw Failure(kRefused, input_name(file),
                      name_of(curve) + " as rates: " + uxkit::text_of(problem));
    }
}

// Sums of one detector with different channels would have one name.
std::vector<std::string> names_of(const std::vector<Curve>& curves) {
    std::vector<std::string> out;
    std::set<std::string> used;
    for (const Curve& curve : curves) {
        const std::string name = name_of(curve);
        std::string unique = name;
        for (int i = 2; !used.insert(unique).second; ++i) unique = fmt::format("{} ({})", name, i);
        out.push_back(std::move(unique));
    }
    return out;
}

// The energies of the curves, shared by those that have the same; null where any curve has none
// that ascend, since channel numbers stand in then.
std::vector<PlotAxis> energies_of(const std::vector<Curve>& curves) {
    std::map<std::pair<const void*, std::size_t>, PlotAxis> known;
    std::vector<PlotAxis> out;
    for (const Curve& curve : curves) {
        const auto& calibration = curve.spectrum.calibration;
        if (!calibration) return {};
        const std::size_t channels = curve.spectrum.counts.size();
        PlotAxis& axis = known[{calibration.get(), channels}];
        if (!axis) {
            std::vector<double> energies = uxkit::import_energies(*calibration, channels);
            const bool ascends = std::is_sorted(energies.begin(), energies.end()) &&
                                 std::all_of(energies.begin(), energies.end(),
                                             [](double value) { return std::isfinite(value); });
            if (energies.size() < channels || !ascends) return {};
            axis = std::make_shared<const std::vector<double>>(std::move(energies));
        }
        out.push_back(axis);
    }
    return out;
}

PlotAxis channel_numbers(std::size_t count) {
    std::vector<double> numbers(count);
    std::iota(numbers.begin(), numbers.end(), 1.0);
    return std::make_shared<const std::vector<double>>(std::move(numbers));
}

// The lengths of the curves need not agree, so channel numbers go as far as the longest.
void add_curves(Plot& plot, std::vector<Curve> curves, const std::vector<PlotAxis>& energies) {
    std::size_t longest = 0;
    for (const Curve& curve : curves) longest = std::max(longest, curve.spectrum.counts.size());
    const PlotAxis channels = energies.empty() ? channel_numbers(longest) : nullptr;
    std::vector<std::string> names = names_of(curves);
    for (std::size_t i = 0; i < curves.size(); ++i) {
        plot.curves.push_back({std::move(names[i]), std::move(curves[i].detail),
                               energies.empty() ? channels : energies[i],
                               std::move(curves[i].spectrum.counts),
                               curves[i].spectrum.liveSeconds});
    }
}

}  // namespace

Plot plot_of(const PlotChoice& options, const std::vector<uxkit::Spectrum>& content, bool page) {
    const Spectra spectra = chosen_spectra(content, options);
    const bool single = options.each || !options.chosen.empty() || spectra.size() <= kPlotColours;
    std::vector<Curve> curves = single ? single_curves(spectra) : summed_curves(spectra);
    for (Curve& curve : curves) curve.detail = detail_of(curve);
    if (!page) keep_largest(curves, kPlotColours, options.file);
    if (options.rates) make_rates(curves, options.file, page);
    const std::vector<PlotAxis> energies = energies_of(curves);
    const uxkit::Spectrum& first = *spectra.front();
    Plot plot;
    plot.title = options.title.empty()
                     ? std::filesystem::path(input_name(options.file)).filename().string()
                     : options.title;
    plot.subtitle = first.start;
    plot.logarithmic = !options.linear;
    plot.energies = !energies.empty();
    plot.rates = options.rates;
    plot.yTitle = options.rates && !page ? "Counts per second and channel" : "Counts per channel";
    plot.xTitle = "Channel";
    if (!energies.empty()) {
        const std::string& unit = first.calibration->unit;
        plot.xTitle = unit.empty() ? "Energy (keV)" : "Energy (" + unit + ")";
    }
    add_curves(plot, std::move(curves), energies);
    return plot;
}

}  // namespace uxtool
