// Pictures of spectra.
#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "support/output.h"

namespace uxtool {

// Ascending positions on the x axis. Curves may share one.
using PlotAxis = std::shared_ptr<const std::vector<double>>;

struct PlotCurve {
    std::string name;
    std::string detail;  // a few more words, "" for none
    PlotAxis x;          // one position per value, or more
    std::vector<double> y;
    double liveSeconds = -1;  // below 0 when it is not known
};

struct Plot {
    std::string title;
    std::string subtitle;
    std::string xTitle;
    std::string yTitle;
    bool logarithmic = true;  // of the y axis; in the page, at first
    bool rates = false;       // the page shows rates at first; its values are counts all the same
    bool energies = false;    // positions are energies; else channels from 1
    std::vector<PlotCurve> curves;
};

inline constexpr std::size_t kPlotColours = 8;  // curves beyond repeat them

// A picture that follows the viewer's light or dark scheme and grows its texts when it is small.
void write_plot_svg(Output& out, const Plot& plot);
// A page that needs nothing but itself: zoom, values under the pointer, both scales, counts or
// rates, energies or channels, sums of curves and of regions.
void write_plot_html(Output& out, const Plot& plot);
// The same in parts: the page, with {{title}} and {{data}} in it, and what stands for {{data}}.
extern const std::string_view kPlotPage;  // pages/plot.html
void write_plot_data(Output& out, const Plot& plot);

// Round positions of at most about count ticks between low and high.
std::vector<double> round_ticks(double low, double high, int count);
// A short number: 1200 as "1.2k", 1e-3 as "0.001".
std::string short_number(double value);
// Text for the content of an XML or HTML element or of a quoted attribute; control
// characters become blanks.
std::string markup(const std::string& text);

}  // namespace uxtool
