// Plots of spectra as SVG.
#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <utility>

#include "support/plot.h"
#include "support/text.h"

namespace uxtool {
namespace {

constexpr double kWidth = 800;
constexpr double kLeft = 84;
constexpr double kRight = 762;
constexpr double kPlotHeight = 334;
constexpr double kTitleLine = 26;
constexpr double kLegendLine = 25;
constexpr double kMostDecades = 8;
// Characters of a line, which fit also when texts grow in a small picture.
constexpr std::size_t kTitleWidth = 48;
constexpr std::size_t kNameWidth = 50;

// Colours that keep apart for most eyes, on white and on black.
constexpr std::array<std::pair<const char*, const char*>, kPlotColours> kColours{
    {{"#1f6feb", "#6cb2ff"},
     {"#d9480f", "#ff9f5a"},
     {"#2b8a3e", "#69db7c"},
     {"#9c36b5", "#e599f7"},
     {"#0b7285", "#3bc9db"},
     {"#a61e4d", "#faa2c1"},
     {"#846200", "#ffd43b"},
     {"#495057", "#ced4da"}}};

struct Range {
    double low = 0;
    double high = 1;
};

// Lines of at most width characters; nothing of the text is lost.
std::vector<std::string> wrapped(const std::string& text, std::size_t width) {
    std::vector<std::string> lines;
    std::string line;
    std::size_t used = 0;
    std::size_t blank = std::string::npos;  // where the line may break
    const std::string shown = visible(text);
    for (std::size_t i = 0; i < shown.size();) {
        std::size_t end = i + 1;  // of the character
        while (end < shown.size() && (static_cast<unsigned char>(shown[end]) & 0xC0U) == 0x80U)
            ++end;
        if (shown[i] == ' ') blank = line.size();
        line.append(shown, i, end - i);
        i = end;
        if (++used < width || i == shown.size()) continue;
        std::string rest;
        if (blank != std::string::npos && blank > 0) {
            rest = line.substr(blank + 1);
            line.resize(blank);
        }
        lines.push_back(std::move(line));
        line = std::move(rest);
        used = display_width(line);
        blank = std::string::npos;
    }
    if (!line.empty() || lines.empty()) lines.push_back(std::move(line));
    return lines;
}

// From data to the picture.
class Scale {
public:
    Scale(Range x, Range y, bool logarithmic, double top)
        : x_(x), y_(y), logarithmic_(logarithmic), top_(top) {}
    double x(double value) const {
        return kLeft + (value - x_.low) / (x_.high - x_.low) * (kRight - kLeft);
    }
    double y(double value) const {
        const double part =
            logarithmic_
                ? value <= y_.low ? 0 : std::log(value / y_.low) / std::log(y_.high / y_.low)
                : (value - y_.low) / (y_.high - y_.low);
        return top_ + (1 - part) * kPlotHeight;
    }

private:
    Range x_;
    Range y_;
    bool logarithmic_;
    double top_;
};

Range range_of_x(const Plot& plot) {
    Range range{std::numeric_limits<double>::max(), std::numeric_limits<double>::lowest()};
    for (const PlotCurve& curve : plot.curves) {
        if (curve.y.empty()) continue;
        range.low = std::min(range.low, curve.x->front());
        range.high = std::max(range.high, (*curve.x)[curve.y.size() - 1]);
    }
    if (!(range.low < range.high)) return {range.low - 1, range.low + 1};
    return range;
}

Range range_of_y(const Plot& plot) {
    double highest = 0;
    double lowest = 0;
    double leastPositive = std::numeric_limits<double>::max();
    for (const PlotCurve& curve : plot.curves) {
        for (const double value : curve.y) {
            highest = std::max(highest, value);
            lowest = std::min(lowest, value);
            if (value > 0) leastPositive = std::min(leastPositive, value);
        }
    }
    if (!plot.logarithmic) return {lowest * 1.05, highest > 0 ? highest * 1.06 : 1};
    if (highest <= 0) return {0.5, 10};
    // A single count stands above the bottom.
    const double low =
        leastPositive >= 1 ? 0.5 : std::pow(10, std::floor(std::log10(leastPositive)));
    return {std::max(low, highest / std::pow(10, kMostDecades)), highest * 1.6};
}

class SvgWriter {
public:
    SvgWriter(Output& out, const Plot& plot)
        : out_(out),
          plot_(plot),
          xRange_(range_of_x(plot)),
          yRange_(range_of_y(plot)),
          title_(wrapped(plot.title, kTitleWidth)),
          subtitle_(wrapped(plot.subtitle, 2 * kTitleWidth)),
          top_(14 + kTitleLine * static_cast<double>(title_.size()) +
               18 * static_cast<double>(subtitle_.size())),
          bottom_(top_ + kPlotHeight),
          scale_(xRange_, yRange_, plot.logarithmic, top_) {
        for (const PlotCurve& curve : plot.curves) {
            names_.push_back(wrapped(curve.name, kNameWidth));
            legendLines_ += names_.back().size();
        }
    }

    void write() {
        const double height = legend_top() + kLegendLine * static_cast<double>(legendLines_) + 4;
        out_.print(
            "<svg xmlns=\"http://www.w3.org/2000/svg\" viewBox=\"0 0 {0} {1}\" width=\"{0}\" "
            "height=\"{1}\" role=\"img\">\n<title>{2}</title>\n",
            kWidth, height, markup(plot_.title));
        write_style();
        out_.print("<rect class=\"paper\" width=\"{}\" height=\"{}\"/>\n", kWidth, height);
        write_titles();
        write_x_axis();
        plot_.logarithmic ? write_decades() : write_y_ticks();
        out_.print(
            "<clipPath id=\"area\"><rect x=\"{}\" y=\"{}\" width=\"{}\" height=\"{}\"/>"
            "</clipPath>\n<g clip-path=\"url(#area)\">\n",
            kLeft, top_, kRight - kLeft, bottom_ - top_ + 1);
        for (std::size_t i = 0; i < plot_.curves.size(); ++i) write_curve(i);
        out_.write("</g>\n");
        out_.print("<path class=\"frame\" d=\"M{0} {1}V{2}H{3}\"/>\n", kLeft, top_, bottom_,
                   kRight);
        write_legend();
        out_.write("</svg>\n");
    }

private:
    void write_style() {
        out_.write(
            "<style>\n"
            "text{font:13px system-ui,-apple-system,\"Segoe UI\",\"DejaVu Sans\",sans-serif;"
            "fill:#24292f}\n"
            ".title{font-size:17px;font-weight:600}.sub,.tick{fill:#57606a}\n"
            ".x{text-anchor:middle}.y{text-anchor:end}\n"
            ".paper{fill:#fff}.grid{stroke:#d0d7de;stroke-width:.7}.fine{stroke-opacity:.45}\n"
            ".frame{fill:none;stroke:#57606a}\n"
            ".c{fill:none;stroke-width:1.3;stroke-linejoin:round}.a{stroke:none;opacity:.14}\n");
        write_colours(&std::pair<const char*, const char*>::first);
        out_.write(
            "@media (prefers-color-scheme:dark){\n"
            "text{fill:#e6edf3}.sub,.tick{fill:#9da7b3}.paper{fill:#0d1117}\n"
            ".grid{stroke:#30363d}.frame{stroke:#9da7b3}.a{opacity:.22}\n");
        write_colours(&std::pair<const char*, const char*>::second);
        // Drawn small, texts take more of the picture, and every second label goes.
        out_.write(
            "}\n@media (max-width:560px){\n"
            "text{font-size:22px}.title{font-size:25px}.sub,.odd,.wide{display:none}"
            ".c{stroke-width:1.9}\n}\n</style>\n");
    }

    void write_colours(const char* const std::pair<const char*, const char*>::*scheme) {
        const std::size_t used = std::min(plot_.curves.size(), kPlotColours);
        for (std::size_t i = 0; i < used; ++i) {
            out_.print(".s{0}{{stroke:{1}}}.a.s{0}{{fill:{1};stroke:none}}", i,
                       kColours[i].*scheme);
        }
        out_.write("\n");
    }

    // The legend stands below the axis, where it covers nothing.
    double legend_top() const { return bottom_ + 58; }

    void write_titles() {
        double y = kTitleLine - 2;
        for (const std::string& line : title_) {
            out_.print("<text class=\"title\" x=\"{}\" y=\"{}\">{}</text>\n", kLeft, y,
                       markup(line));
            y += kTitleLine;
        }
        y -= 7;
        for (const std::string& line : subtitle_) {
            out_.print("<text class=\"sub\" x=\"{}\" y=\"{}\">{}</text>\n", kLeft, y, markup(line));
            y += 18;
        }
        out_.print("<text class=\"x\" x=\"{}\" y=\"{}\">{}</text>\n", (kLeft + kRight) / 2,
                   bottom_ + 46, markup(plot_.xTitle));
        out_.print("<text class=\"x wide\" transform=\"translate(20 {}) rotate(-90)\">{}</text>\n",
                   (top_ + bottom_) / 2, markup(plot_.yTitle));
    }

    void write_x_axis() {
        int place = 0;
        for (const double tick : round_ticks(xRange_.low, xRange_.high, 8)) {
            const double x = scale_.x(tick);
            out_.print(
                "<path class=\"grid\" d=\"M{0:.1f} {1}V{2}\"/><text class=\"tick x{3}\" "
                "x=\"{0:.1f}\" y=\"{4}\">{5}</text>\n",
                x, top_, bottom_, place++ % 2 != 0 ? " odd" : "", bottom_ + 20, short_number(tick));
        }
    }

    void write_y_label(double value, const std::string& text, bool odd) {
        out_.print(
            "<path class=\"grid\" d=\"M{0} {1:.1f}H{2}\"/><text class=\"tick y{3}\" "
            "x=\"{4}\" y=\"{5:.1f}\">{6}</text>\n",
            kLeft, scale_.y(value), kRight, odd ? " odd" : "", kLeft - 7, scale_.y(value) + 4.5,
            text);
    }

    void write_y_ticks() {
        int place = 0;
        for (const double tick : round_ticks(yRange_.low, yRange_.high, 6)) {
            write_y_label(tick, short_number(tick), place++ % 2 != 0);
        }
    }

    void write_decades() {
        const int first = static_cast<int>(std::floor(std::log10(yRange_.low)));
        const int last = static_cast<int>(std::ceil(std::log10(yRange_.high)));
        for (int decade = first; decade <= last; ++decade) {
            const double power = std::pow(10, decade);
            for (int digit = 1; digit < 10; ++digit) {
                const double value = digit * power;
                if (value < yRange_.low || value > yRange_.high) continue;
                if (digit == 1) {
                    write_y_label(value, short_number(value), false);
                } else {
                    out_.print("<path class=\"grid fine\" d=\"M{} {:.1f}H{}\"/>\n", kLeft,
                               scale_.y(value), kRight);
                }
            }
        }
    }

    void write_curve(std::size_t index) {
        const PlotCurve& curve = plot_.curves[index];
        if (curve.y.empty()) return;
        const std::string path = path_of(curve);
        const std::size_t colour = index % kPlotColours;
        if (plot_.curves.size() == 1) {
            out_.print("<path class=\"a s{0}\" d=\"M{1:.1f} {2}L{3}V{2}Z\"/>\n", colour,
                       scale_.x(curve.x->front()), bottom_, path);
        }
        out_.print("<path class=\"c s{}\" d=\"M{}\"/>\n", colour, path);
    }

    // Few channels are drawn as steps. Where many fall on one place of the picture, their highest
    // and lowest are.
    std::string path_of(const PlotCurve& curve) const {
        const std::size_t count = curve.y.size();
        return static_cast<double>(count) <= (kRight - kLeft) / 1.5 ? steps_of(curve)
                                                                    : hull_of(curve);
    }

    std::string steps_of(const PlotCurve& curve) const {
        const std::vector<double>& x = *curve.x;
        std::string path;
        for (std::size_t i = 0; i < curve.y.size(); ++i) {
            const double from = i == 0 ? x[0] : (x[i - 1] + x[i]) / 2;
            const bool last = i + 1 == curve.y.size();
            const double to = last ? x[i] : (x[i] + x[i + 1]) / 2;
            fmt::format_to(std::back_inserter(path), "{}{:.1f} {:.1f}H{:.1f}", i == 0 ? "" : "L",
                           scale_.x(from), scale_.y(curve.y[i]), scale_.x(to));
        }
        return path;
    }

    std::string hull_of(const PlotCurve& curve) const {
        constexpr double kStep = 0.5;
        std::string path;
        for (std::size_t i = 0; i < curve.y.size();) {
            const double x = std::floor(scale_.x((*curve.x)[i]) / kStep) * kStep;
            double low = curve.y[i];
            double high = low;
            std::size_t end = i + 1;
            for (; end < curve.y.size() && scale_.x((*curve.x)[end]) < x + kStep; ++end) {
                low = std::min(low, curve.y[end]);
                high = std::max(high, curve.y[end]);
            }
            fmt::format_to(std::back_inserter(path), "{}{:.1f} {:.1f}", i == 0 ? "" : "L", x,
                           scale_.y(high));
            if (scale_.y(low) - scale_.y(high) > 0.1) {
                fmt::format_to(std::back_inserter(path), "V{:.1f}", scale_.y(low));
            }
            i = end;
        }
        return path;
    }

    void write_legend() {
        double y = legend_top() + 18;
        for (std::size_t i = 0; i < plot_.curves.size(); ++i) {
            out_.print("<path class=\"c s{}\" style=\"stroke-width:4\" d=\"M{} {}h18\"/>\n",
                       i % kPlotColours, kLeft, y - 4.5);
            for (std::size_t line = 0; line < names_[i].size(); ++line, y += kLegendLine) {
                out_.print("<text class=\"key\" x=\"{}\" y=\"{}\">{}{}</text>\n", kLeft + 28, y,
                           markup(names_[i][line]),
                           line + 1 == names_[i].size() ? detail_of(plot_.curves[i]) : "");
            }
        }
    }

    static std::string detail_of(const PlotCurve& curve) {
        if (curve.detail.empty()) return "";
        return "<tspan class=\"sub\"> \xC2\xB7 " + markup(visible(curve.detail)) + "</tspan>";
    }

    Output& out_;
    const Plot& plot_;
    Range xRange_;
    Range yRange_;
    std::vector<std::string> title_;
    std::vector<std::string> subtitle_;
    double top_;  // of the area of the curves
    double bottom_;
    Scale scale_;
    std::vector<std::vector<std::string>> names_;  // lines of each curve's
    std::size_t legendLines_ = 0;
};

}  // namespace

std::vector<double> round_ticks(double low, double high, int count) {
    const double raw = (high - low) / count;
    if (!(raw > 0) || !std::isfinite(raw)) return {low};
    const double power = std::pow(10, std::floor(std::log10(raw)));
    const double lead = raw / power;
    const double step = power * (lead <= 1 ? 1 : lead <= 2 ? 2 : lead <= 5 ? 5 : 10);
    std::vector<double> out;
    for (double at = std::ceil(low / step); at * step <= high && out.size() < 100; ++at) {
        out.push_back(at * step + 0.0);  // never -0
    }
    return out;
}

std::string short_number(double value) {
    static constexpr std::array<std::pair<double, const char*>, 4> kUnits{
        {{1e12, "T"}, {1e9, "G"}, {1e6, "M"}, {1e4, "k"}}};
    for (const auto& [from, unit] : kUnits) {
        const double size = from == 1e4 ? 1e3 : from;
        if (std::abs(value) >= from) return fmt::format("{:.6g}{}", value / size, unit);
    }
    return fmt::format("{:.6g}", value);
}

std::string markup(const std::string& text) {
    std::string out =
        replaced(text, {{'&', "&amp;"}, {'<', "&lt;"}, {'>', "&gt;"}, {'"', "&quot;"}});
    std::replace_if(
        out.begin(), out.end(), [](unsigned char c) { return c < ' '; }, ' ');
    return out;
}

void write_plot_svg(Output& out, const Plot& plot) {
    SvgWriter(out, plot).write();
}

}  // namespace uxtool
