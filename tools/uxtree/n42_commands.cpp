// uxtree n42: spectrum files.
#include <algorithm>
#include <cmath>
#include <limits>
#include <map>
#include <memory>
#include <numeric>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "support/command.h"
#include "support/input.h"
#include "support/json.h"
#include "support/output.h"
#include "support/spectra.h"
#include "support/table.h"
#include "support/text.h"
#include "support/tree.h"

namespace uxtool {
namespace {

CLI::Option* add_detectors(CLI::App& app, std::vector<std::string>& detectors) {
    return app
        .add_option("-d,--detector", detectors,
                    "Take gross counts of this detector only; may be repeated")
        ->type_name("NAME")
        ->allow_extra_args(false);
}

// A name that no detector has selects nothing, which is hardly meant.
void check_detectors(const SpectrumInput& file, const std::vector<std::string>& wanted) {
    if (wanted.empty()) return;
    const std::vector<std::string> known = detectors_of_file(file);
    for (const std::string& name : wanted) {
        if (std::find(known.begin(), known.end(), name) != known.end()) continue;
        const std::string near = nearest(name, known);
        std::string hint = known.empty()  ? "the file lists no detectors"
                           : near.empty() ? "it has " + short_list(known)
                                          : "did you mean \"" + near + "\"?";
        throw Failure(kUsage, file.name, "no detector \"" + name + "\"", std::move(hint));
    }
}

double total(const SpectrumData& spectrum) {
    return std::accumulate(spectrum.counts.begin(), spectrum.counts.end(), 0.0);
}

Cell number(std::size_t value) {
    return static_cast<long long>(value);
}

// ---- info -------------------------------------------------------------------------------------

struct FilesOptions {
    std::vector<std::string> files;
    std::string output;
    std::string format = "text";
};

std::string range_of_channels(const SpectrumFile& content) {
    std::size_t least = std::numeric_limits<std::size_t>::max();
    std::size_t most = 0;
    for (const SpectrumData& spectrum : content.spectra) {
        least = std::min(least, spectrum.counts.size());
        most = std::max(most, spectrum.counts.size());
    }
    if (most == 0) return "";
    return least == most ? fmt::format("{}", most) : fmt::format("{}-{}", least, most);
}

std::size_t used_calibrations(const SpectrumFile& content) {
    std::set<std::string> words;
    for (const SpectrumData& spectrum : content.spectra) {
        if (spectrum.axis) words.insert(spectrum.axis->id + "\n" + spectrum.axis->comment);
    }
    return words.size();
}

ExitCode add_info(const SpectrumInput& file, Table& table) {
    const std::vector<std::string> detectors = detectors_of_file(file);
    const SpectrumFile content = read_spectra(import_spectrum_file(file, {}));
    double counts = 0;
    for (const SpectrumData& spectrum : content.spectra) counts += total(spectrum);
    double gross = 0;
    for (const GrossCount& count : content.grossCounts) gross += count.count;
    table.add({file.name, form_of_file(file), number(detectors.size()),
               static_cast<long long>(content.measurements), number(content.spectra.size()),
               range_of_channels(content), number(used_calibrations(content)), counts,
               number(content.grossCounts.size()), gross});
    return kSuccess;
}

int run_info(const FilesOptions& options) {
    Table table({"file", "form", "detectors", "measurements", "spectra", "channels", "calibrations",
                 "counts", "gross", "gross counts"});
    Output out(options.output);
    const int code = for_each_file(options.files, [&](const std::string& file) {
        return add_info(SpectrumInput(file), table);
    });
    write_table(out, table, options.format);
    return out.finish(code);
}

const Command kInfo{"n42 info", "Tell what radiation spectrum files contain",
                    "uxtree n42 info spectrum.n42\n"
                    "uxtree n42 info -f json *.n42   # one object per file",
                    [](CLI::App& app) {
                        auto options = std::make_shared<FilesOptions>();
                        add_files(app, options->files);
                        add_format(app, options->format, table_formats());
                        add_output(app, options->output);
                        return [options] { return run_info(*options); };
                    }};

// ---- detectors --------------------------------------------------------------------------------

struct FileOptions {
    std::string file;
    std::string output;
    std::string format = "csv";
    std::vector<std::string> detectors;
};

int run_detectors(const FileOptions& options) {
    const std::vector<std::string> detectors = detectors_of_file(SpectrumInput(options.file));
    Output out(options.output);
    for (const std::string& name : detectors) out.print("{}\n", visible(name));
    return out.finish(detectors.empty() ? kNothingFound : kSuccess);
}

const Command kDetectors{"n42 detectors",
                         "List the detectors of a radiation spectrum file, one a line",
                         "uxtree n42 detectors spectrum.n42", [](CLI::App& app) {
                             auto options = std::make_shared<FileOptions>();
                             add_file(app, options->file);
                             add_output(app, options->output);
                             return [options] { return run_detectors(*options); };
                         }};

// ---- import -----------------------------------------------------------------------------------

int run_import(const FileOptions& options) {
    const SpectrumInput file(options.file);
    check_detectors(file, options.detectors);
    const UXXmlWrapperBase tree = import_spectrum_file(file, options.detectors);
    if (tree.GetNodeCount() == 0) {
        note(file.name + " has no spectra and no gross counts");
        return kNothingFound;
    }
    save_tree(tree, options.output);
    return kSuccess;
}

const Command kImport{
    "n42 import", "Import a radiation spectrum file as a tree",
    "uxtree n42 import spectrum.n42 -o tree.xml\n"
    "uxtree n42 import -d Neutron1 spectrum.n42   # gross counts of one detector, all spectra",
    [](CLI::App& app) {
        auto options = std::make_shared<FileOptions>();
        add_file(app, options->file);
        add_detectors(app, options->detectors);
        add_output(app, options->output);
        return [options] { return run_import(*options); };
    }};

// ---- export -----------------------------------------------------------------------------------

// The spectra of one axis stand behind it; those without energies come first.
struct AxisGroup {
    std::shared_ptr<const EnergyAxis> axis;
    std::vector<const SpectrumData*> spectra;
};

std::vector<AxisGroup> grouped_by_axis(const SpectrumFile& content) {
    std::vector<AxisGroup> groups{AxisGroup{}};
    std::map<const EnergyAxis*, std::size_t> places{{nullptr, 0}};
    for (const SpectrumData& spectrum : content.spectra) {
        const auto [place, isNew] = places.emplace(spectrum.axis.get(), groups.size());
        if (isNew) groups.push_back({spectrum.axis, {}});
        groups[place->second].spectra.push_back(&spectrum);
    }
    return groups;
}

std::string number_text(double value) {
    return fmt::format("{}", value);
}

std::string value_at(const std::vector<double>& values, std::size_t index) {
    return index < values.size() ? number_text(values[index]) : "";
}

std::string axis_title(const EnergyAxis& axis) {
    std::string title = "energy";
    if (!axis.unit.empty()) title += " (" + axis.unit + ")";
    return axis.id.empty() ? title : title + " " + axis.id;
}

void export_csv(Output& out, const SpectrumFile& content) {
    const std::vector<AxisGroup> groups = grouped_by_axis(content);
    Fields line{"channel"};
    std::size_t channels = 0;
    for (const AxisGroup& group : groups) {
        if (group.axis) line.push_back(axis_title(*group.axis));
        for (const SpectrumData* spectrum : group.spectra) {
            line.push_back(spectrum->name);
            channels = std::max(channels, spectrum->counts.size());
        }
    }
    write_csv_line(out, line);
    for (std::size_t i = 0; i < channels; ++i) {
        line = {fmt::format("{}", i + 1)};
        for (const AxisGroup& group : groups) {
            if (group.axis) line.push_back(value_at(group.axis->values, i));
            for (const SpectrumData* spectrum : group.spectra) {
                line.push_back(value_at(spectrum->counts, i));
            }
        }
        write_csv_line(out, line);
    }
}

// Counts are whole as a rule, and look so.
Json counts_list(const std::vector<double>& counts) {
    constexpr double kExact = 1LL << 53;
    Json list = Json::array();
    for (const double count : counts) {
        const bool whole = std::abs(count) <= kExact && count == std::floor(count);
        list.push_back(whole ? Json(static_cast<long long>(count)) : Json(count));
    }
    return list;
}

void export_json(Output& out, const SpectrumFile& content) {
    JsonList list(out);
    const auto text_or_null = [](const std::string& text) {
        return text.empty() ? Json(nullptr) : Json(text);
    };
    for (const SpectrumData& spectrum : content.spectra) {
        Json entry;
        entry["name"] = spectrum.name;
        entry["measurement"] = spectrum.measurement;
        entry["spectrum"] = spectrum.place;
        entry["id"] = text_or_null(spectrum.id);
        entry["detector"] = text_or_null(spectrum.detector);
        entry["kind"] = text_or_null(spectrum.kind);
        entry["start"] = text_or_null(spectrum.start);
        entry["realTime"] = text_or_null(spectrum.realTime);
        entry["liveTime"] = text_or_null(spectrum.liveTime);
        entry["unit"] = spectrum.axis ? text_or_null(spectrum.axis->unit) : Json(nullptr);
        entry["calibration"] = spectrum.axis ? text_or_null(spectrum.axis->comment) : Json(nullptr);
        entry["energies"] = spectrum.axis ? Json(spectrum.axis->values) : Json(nullptr);
        entry["counts"] = counts_list(spectrum.counts);
        list.add(entry);
    }
    list.finish();
}

int run_export(const FileOptions& options) {
    const SpectrumFile content =
        read_spectra(import_spectrum_file(SpectrumInput(options.file), {}));
    if (content.spectra.empty()) {
        note(input_name(options.file) + " has no spectra");
        return kNothingFound;
    }
    Output out(options.output);
    options.format == "csv" ? export_csv(out, content) : export_json(out, content);
    return out.finish();
}

const Command kExport{
    "n42 export", "Write the spectra of a radiation spectrum file as columns",
    "uxtree n42 export spectrum.n42 -o spectrum.csv\n"
    "# CSV: the channel number from 1, then the spectra without energies, then each energy\n"
    "# column with the spectra that have it behind it; the heading names spectra by measurement\n"
    "# (from 1), place in it (from 0), kind and detector\n"
    "uxtree n42 export -f json spectrum.n42   # one object per spectrum",
    [](CLI::App& app) {
        auto options = std::make_shared<FileOptions>();
        add_file(app, options->file);
        add_format(app, options->format, {"csv", "json"});
        add_output(app, options->output);
        return [options] { return run_export(*options); };
    }};

}  // namespace
}  // namespace uxtool
