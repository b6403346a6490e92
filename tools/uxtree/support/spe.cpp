// Spectra in the ASCII form SPE.
#include "support/spe.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>

#include <fmt/format.h>

#include "support/text.h"

namespace uxtool {
namespace {

constexpr std::string_view kLineEnd = "\r\n";

void write_line(Output& out, std::string_view text) {
    out.write(text);
    out.write(kLineEnd);
}

// A text of the file as one line that is no keyword.
std::string line_of(const std::string& text) {
    const std::string line = visible(text);
    return line.starts_with('$') ? " " + line : line;
}

struct Moment {
    int year = 0;
    int month = 0;
    int day = 0;
    int hour = 0;
    int minute = 0;
    int second = 0;
};

// 2026-11-22T01:02:03 and whatever follows: fractions and the zone have no place in the form.
bool read_moment(const std::string& text, Moment& out) {
    const std::size_t from = std::min(text.find_first_not_of(" \t\r\n"), text.size());
    const char* at = text.c_str() + from;
    int used = 0;
    if (std::sscanf(at, "%4d-%2d-%2dT%2d:%2d:%2d%n", &out.year, &out.month, &out.day, &out.hour,
                    &out.minute, &out.second, &used) != 6 ||
        used != 19) {
        return false;
    }
    return out.year > 0 && out.month >= 1 && out.month <= 12 && out.day >= 1 && out.day <= 31 &&
           out.hour >= 0 && out.hour <= 24 && out.minute >= 0 && out.minute < 60 &&
           out.second >= 0 && out.second <= 60;
}

// "in UTC", "in the zone +02:00", "" where the text tells none.
std::string zone_of(const std::string& start) {
    const std::size_t time = start.find('T');
    if (time == std::string::npos) return "";
    const std::size_t zone = start.find_first_of("Zz+-", time);
    if (zone == std::string::npos) return "";
    if (start[zone] == 'Z' || start[zone] == 'z') return "UTC";
    return start.substr(zone);
}

void write_remarks(Output& out, const uxkit::Spectrum& spectrum, const std::string& source) {
    write_line(out, "$SPEC_REM:");
    write_line(out, line_of("File: " + source));
    for (const auto& [title, text] :
         {std::pair("Detector: ", &spectrum.detector), std::pair("Class: ", &spectrum.kind),
          std::pair("Id: ", &spectrum.id), std::pair("Start: ", &spectrum.start)}) {
        if (!text->empty()) write_line(out, line_of(title + *text));
    }
    if (const std::string zone = zone_of(spectrum.start); !zone.empty()) {
        write_line(out, line_of("Time zone of the date: " + zone));
    }
    if (spectrum.position) {
        write_line(out, fmt::format("Latitude, longitude: {}, {}", spectrum.position->latitude,
                                    spectrum.position->longitude));
    }
}

void write_calibration(Output& out, const uxkit::EnergyCalibration& calibration) {
    const std::vector<double>& given = calibration.coefficients;
    const auto at = [&](std::size_t i) { return i < given.size() ? given[i] : 0.0; };
    // The line of a polynomial of a higher degree would be a wrong one.
    if (given.size() <= 2) {
        write_line(out, "$ENER_FIT:");
        write_line(out, fmt::format("{} {}", at(0), at(1)));
    }
    const std::size_t count = std::max<std::size_t>(given.size(), 3);
    write_line(out, "$MCA_CAL:");
    write_line(out, fmt::format("{}", count));
    std::string line;
    for (std::size_t i = 0; i < count; ++i) line += fmt::format("{} ", at(i));
    write_line(out, line + (calibration.unit.empty() ? "keV" : visible(calibration.unit)));
}

// What the form has no place for.
using Lost = std::vector<std::string>;

void write_times(Output& out, const uxkit::Spectrum& spectrum, Lost& lost) {
    Moment moment;
    if (read_moment(spectrum.start, moment)) {
        write_line(out, "$DATE_MEA:");
        write_line(out, fmt::format("{:02}/{:02}/{:04} {:02}:{:02}:{:02}", moment.month, moment.day,
                                    moment.year, moment.hour, moment.minute, moment.second));
    } else {
        lost.push_back(spectrum.start.empty() ? "no start is known, so no date is written"
                                              : "\"" + spectrum.start + "\" is no date");
    }
    if (spectrum.liveSeconds >= 0 && spectrum.realSeconds >= 0) {
        write_line(out, "$MEAS_TIM:");
        write_line(out, fmt::format("{} {}", spectrum.liveSeconds, spectrum.realSeconds));
    } else {
        lost.emplace_back("live and real time are not both known, so neither is written");
    }
}

void write_counts(Output& out, const std::vector<double>& counts, Lost& lost) {
    write_line(out, "$DATA:");
    write_line(out, fmt::format("0 {}", counts.size() - 1));
    bool whole = true;
    for (const double count : counts) {
        whole = whole && count == std::floor(count);
        write_line(out, fmt::format("{}", count));
    }
    if (!whole) lost.emplace_back("counts with fractions, which many programs do not read");
}

void write_energies(Output& out, const uxkit::EnergyCalibration* calibration, Lost& lost) {
    if (calibration == nullptr) {
        lost.emplace_back("no energies");
    } else if (calibration->coefficients.empty()) {
        lost.emplace_back("energies are boundaries, for which the form has no place");
    } else {
        write_calibration(out, *calibration);
        const std::string& unit = calibration->unit;
        if (!unit.empty() && unit != "keV") {
            lost.push_back("energies are in " + unit + ", and many programs take them for keV");
        }
    }
}

}  // namespace

std::vector<std::string> write_spe(Output& out, const uxkit::Spectrum& spectrum,
                                   const std::string& source) {
    Lost lost;
    write_line(out, "$SPEC_ID:");
    write_line(out, line_of(spectrum.name));
    write_remarks(out, spectrum, source);
    write_times(out, spectrum, lost);
    write_counts(out, spectrum.counts, lost);
    write_line(out, "$ROI:");
    write_line(out, "0");
    write_energies(out, spectrum.calibration.get(), lost);
    return lost;
}

}  // namespace uxtool
