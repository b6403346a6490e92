// uxtree n42 plot: a spectrum is looked at, not read.
#include <algorithm>
#include <cmath>
#include <filesystem>
#include <functional>
#include <map>
#include <memory>
#include <numeric>
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
};

using Spectra = std::vector<const SpectrumData*>;

// "2.1" chooses a spectrum by measurement and place, "2" all of a measurement.
bool is_chosen(const SpectrumData& spectrum, const std::string& choice) {
    return choice == fmt::format("{}", spectrum.measurement) ||
           choice == fmt::format("{}.{}", spectrum.measurement, spectrum.place);
}

Spectra chosen_spectra(const SpectrumFile& content, const PlotOptions& options) {
    Spectra out;
    if (options.chosen.empty()) {
        for (const SpectrumData& spectrum : content.spectra) out.push_back(&spectrum);
    }
    for (const std::string& choice : options.chosen) {
        const std::size_t before = out.size();
        for (const SpectrumData& spectrum : content.spectra) {
            if (is_chosen(spectrum, choice)) out.push_back(&spectrum);
        }
        if (out.size() > before) continue;
        throw Failure(
            kUsage, input_name(options.file), "no spectrum \"" + choice + "\"",
            fmt::format("name one as MEASUREMENT.PLACE, such as {}.{}, or all of a "
                        "measurement by its number",
                        content.spectra.front().measurement, content.spectra.front().place));
    }
    return out;
}

// A curve to draw, made of one spectrum or of the sum of several.
struct Curve {
    const SpectrumData* first;
    std::vector<double> counts;
    std::size_t summed = 1;
    double seconds = 0;  // of live time; negative when it is not known of all
    double total() const { return std::accumulate(counts.begin(), counts.end(), 0.0); }
};

double live_seconds(const SpectrumData& spectrum) {
    return seconds_of(spectrum.liveTime.empty() ? spectrum.realTime : spectrum.liveTime);
}

std::vector<Curve> single_curves(const Spectra& spectra) {
    std::vector<Curve> out;
    for (const SpectrumData* spectrum : spectra) {
        out.push_back({spectrum, spectrum->counts, 1, live_seconds(*spectrum)});
    }
    return out;
}

// The sums of the spectra of each kind and detector that have the same channels.
std::vector<Curve> summed_curves(const Spectra& spectra) {
    std::vector<Curve> out;
    std::map<std::pair<std::string, const EnergyAxis*>, std::size_t> places;
    for (const SpectrumData* spectrum : spectra) {
        const std::string words =
            fmt::format("{}\n{}\n{}", spectrum->kind, spectrum->detector, spectrum->counts.size());
        const auto [place, isNew] =
            places.emplace(std::pair(words, spectrum->axis.get()), out.size());
        const double seconds = live_seconds(*spectrum);
        if (isNew) {
            out.push_back({spectrum, spectrum->counts, 1, seconds});
            continue;
        }
        Curve& sum = out[place->second];
        std::transform(sum.counts.begin(), sum.counts.end(), spectrum->counts.begin(),
                       sum.counts.begin(), std::plus<>());
        sum.seconds = sum.seconds < 0 || seconds < 0 ? -1 : sum.seconds + seconds;
        ++sum.summed;
    }
    return out;
}

void keep_largest(std::vector<Curve>& curves, std::size_t count, const std::string& file) {
    if (curves.size() <= count) return;
    note(fmt::format("{}: {} curves; the {} with most counts are drawn. -s chooses others",
                     input_name(file), curves.size(), count));
    std::vector<double> totals;
    for (const Curve& curve : curves) totals.push_back(curve.total());
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
    if (curve.summed == 1) return curve.first->name;
    std::string name = curve.first->kind;
    if (!curve.first->detector.empty()) name += (name.empty() ? "" : " ") + curve.first->detector;
    return name.empty() ? "Sum" : name;
}

std::string detail_of(const Curve& curve) {
    std::string detail;
    if (curve.summed > 1) detail = fmt::format("{} spectra, ", curve.summed);
    if (curve.seconds >= 0) detail += fmt::format("{:.5g} s, ", curve.seconds);
    const double rounded = std::stod(fmt::format("{:.3e}", curve.total()));
    return detail + short_number(rounded) + " counts";
}

bool can_be_drawn(const EnergyAxis& axis) {
    return std::all_of(axis.values.begin(), axis.values.end(),
                       [](double value) { return std::isfinite(value); }) &&
           std::is_sorted(axis.values.begin(), axis.values.end());
}

// Channel numbers stand in for energies where any curve has none that ascend.
bool have_energies(const std::vector<Curve>& curves) {
    return std::all_of(curves.begin(), curves.end(), [](const Curve& curve) {
        return curve.first->axis != nullptr && can_be_drawn(*curve.first->axis);
    });
}

PlotAxis channel_numbers(std::size_t count) {
    std::vector<double> numbers(count);
    std::iota(numbers.begin(), numbers.end(), 1.0);
    return std::make_shared<const std::vector<double>>(std::move(numbers));
}

// The lengths of the curves need not agree, so channel numbers go as far as the longest.
void add_curves(Plot& plot, std::vector<Curve> curves, bool byEnergy) {
    std::size_t longest = 0;
    for (const Curve& curve : curves) longest = std::max(longest, curve.counts.size());
    const PlotAxis channels = byEnergy ? nullptr : channel_numbers(longest);
    for (Curve& curve : curves) {
        PlotAxis axis = channels;
        // Shares the ownership of the energies with the spectrum.
        if (byEnergy) axis = PlotAxis(curve.first->axis, &curve.first->axis->values);
        std::string name = name_of(curve);
        std::string detail = detail_of(curve);
        plot.curves.push_back(
            {std::move(name), std::move(detail), std::move(axis), std::move(curve.counts)});
    }
}

std::string format_of(const PlotOptions& options) {
    if (options.format != "auto") return options.format;
    const std::string extension = std::filesystem::path(options.output).extension().string();
    return extension == ".html" || extension == ".htm" ? "html" : "svg";
}

Plot plot_of(const PlotOptions& options, const SpectrumFile& content, bool page) {
    const Spectra spectra = chosen_spectra(content, options);
    const bool single = options.each || !options.chosen.empty() || spectra.size() <= kPlotColours;
    std::vector<Curve> curves = single ? single_curves(spectra) : summed_curves(spectra);
    if (!page) keep_largest(curves, kPlotColours, options.file);
    const bool byEnergy = have_energies(curves);
    const SpectrumData& first = *spectra.front();
    Plot plot;
    plot.title = options.title.empty()
                     ? std::filesystem::path(input_name(options.file)).filename().string()
                     : options.title;
    plot.subtitle = first.start;
    plot.logarithmic = !options.linear;
    plot.yTitle = "Counts per channel";
    plot.xTitle = "Channel";
    if (byEnergy) {
        const std::string& unit = first.axis->unit;
        plot.xTitle = unit.empty() ? "Energy (keV)" : "Energy (" + unit + ")";
    }
    add_curves(plot, std::move(curves), byEnergy);
    return plot;
}

int run_plot(const PlotOptions& options) {
    const SpectrumFile content =
        read_spectra(import_spectrum_file(SpectrumInput(options.file), {}));
    if (content.spectra.empty()) {
        note(input_name(options.file) + " has no spectra");
        return kNothingFound;
    }
    const bool page = format_of(options) == "html";
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
        app.add_option("-s,--spectrum", options->chosen,
                       "Draw this spectrum, as MEASUREMENT.PLACE or MEASUREMENT; may be repeated")
            ->type_name("WHICH")
            ->allow_extra_args(false);
        app.add_flag("--each", options->each, "Draw every spectrum by itself");
        app.add_flag("--linear", options->linear, "Draw counts on a linear axis");
        app.add_option("--title", options->title, "Title; the name of the file by default")
            ->type_name("TEXT");
        add_format(app, options->format, {"auto", "svg", "html"});
        add_output(app, options->output);
        return [options] { return run_plot(*options); };
    }};

}  // namespace
}  // namespace uxtool
