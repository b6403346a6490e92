// uxtree n42 list: the spectra of many files as one table.
#include <cmath>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "support/command.h"
#include "support/output.h"
#include "support/spectra.h"
#include "support/spectrum_files.h"
#include "support/table.h"

namespace uxtool {
namespace {

struct ListOptions {
    std::vector<std::string> files;
    std::string output;
    std::string format = "text";
    std::vector<std::string> detectors;
    unsigned jobs = 1;
};

struct FileRows {
    std::string file;
    std::vector<std::vector<Cell>> rows;
    std::vector<std::string> notes;
};

const std::vector<std::string>& list_columns() {
    static const std::vector<std::string> columns{
        "file",   "measurement", "spectrum", "detector",  "class",    "start",    "live s",
        "real s", "dead %",      "channels", "counts",    "counts/s", "gross",    "from",
        "to",     "unit",        "latitude", "longitude", "dose",     "dose unit"};
    return columns;
}

Cell known(double value) {
    return value < 0 ? Cell() : Cell(value);
}

std::vector<Cell> row_of(const std::string& file, const uxkit::Spectrum& spectrum) {
    std::vector<Cell> row{file,
                          count_cell(spectrum.measurement),
                          count_cell(spectrum.place),
                          text_cell(spectrum.detector),
                          text_cell(spectrum.kind),
                          text_cell(spectrum.start),
                          known(spectrum.liveSeconds),
                          known(spectrum.realSeconds),
                          known(uxkit::dead_percent(spectrum)),
                          count_cell(spectrum.counts.size()),
                          uxkit::total(spectrum.counts),
                          known(uxkit::rate_of(spectrum)),
                          spectrum.grossCounts ? Cell(*spectrum.grossCounts) : Cell()};
    const std::vector<double> edges =
        spectrum.calibration ? uxkit::channel_edges(*spectrum.calibration, spectrum.counts.size())
                             : std::vector<double>();
    row.push_back(edges.empty() ? Cell() : Cell(edges.front()));
    row.push_back(edges.empty() ? Cell() : Cell(edges.back()));
    row.push_back(edges.empty() ? Cell() : text_cell(spectrum.calibration->unit));
    row.push_back(spectrum.position ? Cell(spectrum.position->latitude) : Cell());
    row.push_back(spectrum.position ? Cell(spectrum.position->longitude) : Cell());
    row.push_back(spectrum.dose ? Cell(spectrum.dose->value) : Cell());
    row.push_back(spectrum.dose ? text_cell(spectrum.dose->unit) : Cell());
    return row;
}

// Gross counts of a detector that has no spectrum in the measurement.
std::vector<Cell> row_of(const std::string& file, const uxkit::GrossCount& count) {
    return {file,
            count.measurement == 0 ? Cell() : count_cell(count.measurement),
            Cell(),
            text_cell(count.detector),
            text_cell(count.kind),
            text_cell(count.start),
            known(count.liveSeconds),
            Cell(),
            Cell(),
            Cell(),
            Cell(),
            Cell(),
            count.count};
}

FileRows rows_of(const std::string& path, const std::vector<std::string>& detectors) {
    const SpectrumInput file(path);
    uxkit::SpectrumReader reader = open_spectra(file);
    FileRows out{file.name, {}, {}};
    for (uxkit::Spectrum spectrum; next_spectrum(reader, file, spectrum);) {
        if (is_wanted_detector(spectrum.detector, detectors)) {
            out.rows.push_back(row_of(file.name, spectrum));
        }
    }
    for (const uxkit::GrossCount& count : reader.gross_counts()) {
        if (!count.hasSpectrum && is_wanted_detector(count.detector, detectors)) {
            out.rows.push_back(row_of(file.name, count));
        }
    }
    out.notes = notes_of(reader, file);
    return out;
}

// People read six digits; files for programs keep all.
void shorten(std::vector<Cell>& row) {
    for (Cell& cell : row) {
        auto* value = std::get_if<double>(&cell);
        if (value == nullptr || !std::isfinite(*value) || *value == std::floor(*value)) continue;
        *value = std::stod(fmt::format("{:.6g}", *value));
    }
}

int run_list(const ListOptions& options) {
    Table table(list_columns());
    Output out(options.output);
    const int code = for_each_spectrum_file(
        spectrum_files(options.files), options.jobs,
        [&](const std::string& path) { return rows_of(path, options.detectors); },
        [&](FileRows&& file) {
            const bool empty = file.rows.empty();
            if (empty) {
                note(file.file + " has no spectra and no gross counts" +
                     (options.detectors.empty() ? "" : " of the detectors chosen"));
            }
            tell(file.notes);
            for (std::vector<Cell>& row : file.rows) {
                if (options.format == "text") shorten(row);
                table.add(std::move(row));
            }
            return empty ? kNothingFound : kSuccess;
        });
    if (!table.rows.empty() || options.format != "text") write_table(out, table, options.format);
    return out.finish(code);
}

const Command kList{
    "n42 list", "List the spectra of radiation spectrum files as one table",
    "uxtree n42 list spectrum.n42\n"
    "uxtree n42 list -f csv -j 2 campaign/ -o spectra.csv   # every file of a folder\n"
    "uxtree n42 list -d Aa1 portal.n42                      # one detector\n"
    "# live and real time in seconds; dead: part of the real time; counts: sum over the channels\n"
    "# counts/s: per second of live time; gross: gross counts of the detector in the measurement;\n"
    "# gross counts without a spectrum have a row of their own\n"
    "# from, to: lower edge of the first channel and upper edge of the last, by the standard\n"
    "# dose: dose rate of the detector, else that of the measurement (2011: in \xC2\xB5Sv/h)",
    runs<run_list>([](CLI::App& app, ListOptions& options) {
        add_spectrum_files(app, options.files);
        add_detectors(app, options.detectors, "List this detector only");
        add_format(app, options.format, table_formats());
        add_jobs(app, options.jobs);
        add_output(app, options.output);
    })};

}  // namespace
}  // namespace uxtool
