// uxtree n42 plot: a spectrum is looked at, not read.
#include <algorithm>
#include <array>
#include <filesystem>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "support/command.h"
#include "support/input.h"
#include "support/output.h"
#include "support/spectrum_plot.h"

namespace uxtool {
namespace {

struct PlotOptions : PlotChoice {
    std::string output;
    std::string format = "auto";
};

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

int run_plot(const PlotOptions& options) {
    const bool page = format_of(options) == "html";
    const SpectrumInput file(options.file);
    uxkit::SpectrumReader reader = open_spectra(file);
    const std::vector<uxkit::Spectrum> content = all_spectra(reader, file);
    if (content.empty()) note(file.name + " has no spectra");
    tell(notes_of(reader, file));
    if (content.empty()) return kNothingFound;
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
    runs<run_plot>([](CLI::App& app, PlotOptions& options) {
        add_file(app, options.file);
        add_selection(app, options.chosen, "Draw this spectrum");
        app.add_flag("--each", options.each, "Draw every spectrum by itself");
        app.add_flag("--linear", options.linear, "Draw counts on a linear axis");
        app.add_flag("--rate", options.rates, "Draw counts per second of live time");
        app.add_option("--title", options.title, "Title; the name of the file by default")
            ->type_name("TEXT");
        add_format(app, options.format, {"auto", "svg", "html"});
        add_output(app, options.output);
    })};

}  // namespace
}  // namespace uxtool
