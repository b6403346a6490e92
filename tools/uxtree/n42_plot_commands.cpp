// uxtree n42 plot: a spectrum is looked at, not read.
#include <algorithm>
#include <array>
#include <cmath>
#include <filesystem>
#include <map>
#include <memory>
#include <numeric>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "support/command.h"
#include "support/input.h"
#include "support/output.h"
#include "support/plot.h"
#include "support/spectra.h"
#include "support/text.h"

namespace uxtool {
namespace {

struct PlotOptions {
    std::string file;
    std::string output;
    std::string format = "auto";
    std::string title;
    std::vector<std::string> chosen;
    bool linear = false;
    bool each = false;
    bool rates = false;
};

using Spectra = std::vector<const uxkit::Spectrum*>;

Spectra chosen_spectra(const std::vector<uxkit::Spectrum>& content, const PlotOptions& options) {
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

std::string format_of(const PlotOptions& options) {
    if (options.format != "auto") return options.format;
    const std::string extension = std::filesystem::path(options.output).extension().string();
    if (extension == ".html" || extension == ".htm") return "html";
    constexpr std::array<std::string_view, 8> kPictures{".png", ".jpg",  ".jpeg", ".gif",
                                                        ".pdf", ".webp", ".eps",  ".ps"};
    if (std::find(kPictures.begin(), kPictures.end(), extension) != kPictures.end()) {
        throw Failure(kUsage, "uxtree n42 plot", "no pictures of the kind '" + extension + "'",
                      "-o FILE.svg and -o FILE.html are written; -f svg writes SVG into any name");
    }
    return "svg";
}

Plot plot_of(const PlotOptions& options, const std::vector<uxkit::Spectrum>& content, bool page) {
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

int run_plot(const PlotOptions& options) {
    const bool page = format_of(options) == "html";
    const SpectrumInput file(options.file);
    uxkit::SpectrumReader reader = open_spectra(file);
    const std::vector<uxkit::Spectrum> content = all_spectra(reader, file);
    const std::vector<std::string> notes = notes_of(reader, file);
    if (content.empty()) {
        tell_nothing(file.name, "spectra", notes);
        return kNothingFound;
    }
    tell(notes);
    const Plot plot = plot_of(options, content, page);
    Output out(options.output);
    page ? write_plot_html(out, plot) : write_plot_svg(out, plot);
    return out.finish();
}

const Command kPlot{
    "n42 plot", "Draw the spectra of a radiation spectrum file as a picture or a page",
    "uxtree n42 plot spectrum.n42 -o spectrum.svg\n"
    "uxtree n42 plot spectrum.n42 -o spectrum.html     # zoom, values, choice of spectra\n"
    "uxtree n42 plot --linear -s 2 -s 3.1 spectrum.n42 -o part.svg\n"
    "# auto: a page for the extension html, else a picture\n"
    "# with more than 8 spectra, those of each kind and detector are summed, unless they are\n"
    "# chosen with -s or --each; 2011 files hold energies in keV",
    [](CLI::App& app) {
        auto options = std::make_shared<PlotOptions>();
        add_file(app, options->file);
        add_selection(app, options->chosen, "Draw this spectrum");
        app.add_flag("--each", options->each, "Draw every spectrum by itself");
        app.add_flag("--linear", options->linear, "Draw counts on a linear axis");
        app.add_flag("--rate", options->rates, "Draw counts per second of live time");
        app.add_option("--title", options->title, "Title; the name of the file by default")
            ->type_name("TEXT");
        add_format(app, options->format, {"auto", "svg", "html"});
        add_output(app, options->output);
        return [options] { return run_plot(*options); };
    }};

}  // namespace
}  // namespace uxtool
