// What is drawn of a file of spectra.
#pragma once

#include <string>
#include <vector>

#include "support/plot.h"
#include "support/spectra.h"

namespace uxtool {

struct PlotChoice {
    std::string file;
    std::string title;                // "" for the name of the file
    std::vector<std::string> chosen;  // spectra; none for all
    bool linear = false;
    bool each = false;  // never sum what is of one kind and detector
    bool rates = false;
};

// The curves of the chosen spectra, of which there must be one. More than kPlotColours are summed by
// kind and detector, unless they were chosen; a page may have more curves than colours.
Plot plot_of(const PlotChoice& choice, const std::vector<uxkit::Spectrum>& content, bool page);

}  // namespace uxtool
