// uxtree n42: what spectrum files contain, and their import.
#include <algorithm>
#include <limits>
#include <memory>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "support/command.h"
#include "support/output.h"
#include "support/spectra.h"
#include "support/spectrum_files.h"
#include "support/table.h"
#include "support/text.h"

namespace uxtool {
namespace {

Cell number(std::size_t value) {
    return static_cast<long long>(value);
}

// ---- info -------------------------------------------------------------------------------------

struct FilesOptions {
    std::vector<std::string> files;
    std::string output;
    std::string format = "text";
    unsigned jobs = 1;
};

struct Info {
    std::string file;
    std::vector<Cell> cells;
    std::vector<std::string> notes;
    bool empty = true;
};

std::string range_text(std::size_t least, std::size_t most) {
    if (most == 0) return "";
    return least == most ? fmt::format("{}", most) : fmt::format("{}-{}", least, most);
}

Info info_of(const std::string& path) {
    const SpectrumInput file(path);
    uxkit::SpectrumReader reader = open_spectra(file);
    std::size_t count = 0;
    std::size_t least = std::numeric_limits<std::size_t>::max();
    std::size_t most = 0;
    double counts = 0;
    std::set<std::string> calibrations;
    for (uxkit::Spectrum spectrum; next_spectrum(reader, file, spectrum); ++count) {
        least = std::min(least, spectrum.counts.size());
        most = std::max(most, spectrum.counts.size());
        counts += uxkit::total(spectrum.counts);
        if (spectrum.calibration) {
            calibrations.insert(spectrum.calibration->id + "\n" + spectrum.calibration->text);
        }
    }
    double gross = 0;
    for (const uxkit::GrossCount& one : reader.gross_counts()) gross += one.count;
    const std::size_t grossCount = reader.gross_counts().size();
    return {file.name,
            {file.name, reader.form(), number(reader.detectors().size()),
             number(reader.measurement_count()), number(count), range_text(least, most),
             number(calibrations.size()), counts, number(grossCount), gross},
            notes_of(reader, file),
            count == 0 && grossCount == 0};
}

int run_info(const FilesOptions& options) {
    Table table({"file", "form", "detectors", "measurements", "spectra", "channels", "calibrations",
                 "counts", "gross", "gross counts"});
    Output out(options.output);
    const int code = for_each_spectrum_file(
        spectrum_files(options.files), options.jobs, info_of, [&](Info&& info) {
            table.add(std::move(info.cells));
            if (info.empty) {
                tell_nothing(info.file, "spectra and no gross counts", info.notes);
            } else {
                tell(info.notes);
            }
            return info.empty ? kNothingFound : kSuccess;
        });
    if (!table.rows.empty() || options.format != "text") write_table(out, table, options.format);
    return out.finish(code);
}

const Command kInfo{"n42 info", "Tell what radiation spectrum files contain",
                    "uxtree n42 info spectrum.n42\n"
                    "uxtree n42 info -f json *.n42   # one object per file\n"
                    "# what is left out, cut or guessed is said on standard error; the exit code\n"
                    "# is 1 when no file has spectra or gross counts",
                    runs<run_info>([](CLI::App& app, FilesOptions& options) {
                        add_spectrum_files(app, options.files);
                        add_format(app, options.format, table_formats());
                        add_jobs(app, options.jobs);
                        add_output(app, options.output);
                    })};

// ---- detectors --------------------------------------------------------------------------------

struct FileOptions {
    std::string file;
    std::string output;
    std::vector<std::string> detectors;
    bool sure = false;
    bool withoutEnergies = false;
};

int run_detectors(const FileOptions& options) {
    const SpectrumInput file(options.file);
    const uxkit::SpectrumReader reader = open_spectra(file);
    Output out(options.output);
    for (const std::string& name : reader.detectors()) out.print("{}\n", visible(name));
    if (!reader.detectors().empty()) return out.finish();
    note(file.name + " lists no detectors: " +
         (reader.form() == "2011" ? "it has no RadDetectorInformation with an id"
                                  : "no spectrum names its detector"));
    return out.finish(kNothingFound);
}

const Command kDetectors{"n42 detectors",
                         "List the detectors of a radiation spectrum file, one a line",
                         "uxtree n42 detectors spectrum.n42",
                         runs<run_detectors>([](CLI::App& app, FileOptions& options) {
                             add_file(app, options.file);
                             add_output(app, options.output);
                         })};

// ---- import -----------------------------------------------------------------------------------

constexpr double kAskAbove = 100e6;  // bytes

std::string size_text(double bytes) {
    if (bytes >= 1e9) return fmt::format("{:.1f} GB", bytes / 1e9);
    return fmt::format("{:.0f} MB", bytes / 1e6);
}

// Energies of every spectrum make a tree many times as large as its file.
void check_size(const SpectrumInput& file, const uxkit::ImportSize& size,
                const FileOptions& options) {
    const double without = size.bytes - size.energyBytes;
    const double bytes = options.withoutEnergies ? without : size.bytes;
    if (bytes <= kAskAbove) return;
    const std::string text = fmt::format("the tree takes about {}", size_text(bytes));
    if (options.sure) return note(file.name + ": " + text);
    std::string hint = "--yes writes it";
    if (!options.withoutEnergies && size.energyBytes > 0) {
        hint += fmt::format("; without calculated energies (--no-energy) it takes about {}",
                            size_text(without));
    }
    throw Failure(kRefused, file.name, text, std::move(hint));
}

int run_import(const FileOptions& options) {
    const SpectrumInput file(options.file);
    uxkit::SpectrumReader reader = open_spectra(file, options.detectors);
    check_detectors(reader.detectors(), file.name, options.detectors);
    bool empty = reader.gross_counts().empty();
    for (uxkit::Spectrum spectrum; next_spectrum(reader, file, spectrum);) empty = false;
    if (empty) {
        tell_nothing(file.name, "spectra and no gross counts", notes_of(reader, file));
        return kNothingFound;
    }
    check_size(file, reader.import_size(), options);
    // What the user asked for is no news.
    for (const uxkit::SpectrumNote& told : reader.notes()) {
        if (told.id != "other-detectors") note(file.name + ": " + told.text);
    }
    UXXmlWrapperBase tree;
    tree.CreateNew(0, "Import");
    const int result = reader.import_into(tree, !options.withoutEnergies);
    if (result != 0) {
        throw Failure(kRefused, file.name, fmt::format("cannot be imported ({})", result));
    }
    save_tree(tree, options.output);
    return kSuccess;
}

const Command kImport{
    "n42 import", "Import a radiation spectrum file as a tree",
    "uxtree n42 import spectrum.n42 -o tree.xml\n"
    "uxtree n42 import -d Neutron1 spectrum.n42   # gross counts of one detector, all spectra\n"
    "uxtree n42 import --no-energy portal.n42 -o tree.xml   # coefficients stay in the file",
    runs<run_import>([](CLI::App& app, FileOptions& options) {
        add_file(app, options.file);
        add_detectors(app, options.detectors, "Take gross counts of this detector only");
        app.add_flag("--no-energy", options.withoutEnergies,
                     "Leave calculated energies out; those that the file lists stay");
        app.add_flag("--yes", options.sure, "Write a tree of more than 100 MB");
        add_output(app, options.output);
    })};

}  // namespace
}  // namespace uxtool
