// Plots of spectra as a page of their own.
#include <map>
#include <string_view>

#include "support/json.h"
#include "support/plot.h"

namespace uxtool {
namespace {

void write_numbers(Output& out, const std::vector<double>& values, bool exact) {
    out.write("[");
    const char* separator = "";
    for (const double value : values) {
        if (exact) {
            out.print("{}{}", separator, value);
        } else {
            out.print("{}{:.7g}", separator, value);  // positions; a pixel is far coarser
        }
        separator = ",";
    }
    out.write("]");
}

}  // namespace

void write_plot_data(Output& out, const Plot& plot) {
    std::map<const std::vector<double>*, std::size_t> axes;
    std::vector<const std::vector<double>*> inOrder;
    for (const PlotCurve& curve : plot.curves) {
        if (axes.emplace(curve.x.get(), inOrder.size()).second) inOrder.push_back(curve.x.get());
    }
    out.print(
        "{{\"title\":{},\"subtitle\":{},\"xTitle\":{},\"yTitle\":{},\"log\":{},"
        "\"energies\":{},\"rates\":{},\n\"axes\":[",
        script_string(plot.title), script_string(plot.subtitle), script_string(plot.xTitle),
        script_string(plot.yTitle), plot.logarithmic, plot.energies, plot.rates);
    const char* separator = "";
    for (const std::vector<double>* axis : inOrder) {
        out.write(separator);
        write_numbers(out, *axis, false);
        separator = ",\n";
    }
    out.write("],\n\"curves\":[");
    separator = "";
    for (const PlotCurve& curve : plot.curves) {
        out.print("{}{{\"name\":{},\"detail\":{},\"axis\":{},\"live\":{},\"y\":", separator,
                  script_string(curve.name), script_string(curve.detail), axes[curve.x.get()],
                  curve.liveSeconds < 0 ? "null" : fmt::format("{}", curve.liveSeconds));
        write_numbers(out, curve.y, true);
        out.write("}");
        separator = ",\n";
    }
    out.write("]}");
}

// The page has one place for its title and one for the data.
void write_plot_html(Output& out, const Plot& plot) {
    constexpr std::string_view kTitle = "{{title}}";
    constexpr std::string_view kData = "{{data}}";
    const std::size_t title = kPlotPage.find(kTitle);
    const std::size_t data = kPlotPage.find(kData);
    out.write(kPlotPage.substr(0, title));
    out.write(markup(plot.title));
    out.write(kPlotPage.substr(title + kTitle.size(), data - title - kTitle.size()));
    write_plot_data(out, plot);
    out.write(kPlotPage.substr(data + kData.size()));
}

}  // namespace uxtool
