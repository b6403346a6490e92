// Spectra as columns, objects or files of their own.
#include <algorithm>
#include <cmath>
#include <filesystem>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "uxtree/kit/spectrum_math.h"

#include "n42_export.h"
#include "support/columns.h"
#include "support/failure.h"
#include "support/json.h"
#include "support/output.h"
#include "support/spe.h"
#include "support/table.h"
#include "support/text.h"

namespace uxtool {
namespace {

std::string number_text(double value) {
    return fmt::format("{}", value);
}
std::string value_at(const std::vector<double>& values, std::size_t index) {
    return index < values.size() ? number_text(values[index]) : "";
}
std::string time_text(double seconds) {
    return seconds < 0 ? "unknown" : fmt::format("{} s", seconds);
}

// A row needs all spectra at once; those of a calibration stand behind its energies, those without
// come first.
class CsvWriter : public ExportWriter {
public:
    CsvWriter(const ExportOptions& options, bool severalFiles)
        : options_(options), severalFiles_(severalFiles), out_(options.output) {
        groups_.emplace_back();
    }

    void add(Exported&& what) override {
        const uxkit::Spectrum& spectrum = what.spectrum;
        Group& group = group_of(spectrum.calibration);
        group.channels = std::max(group.channels, spectrum.counts.size());
        group.columns.push_back({title_of(what), options_.comments ? comment_of(spectrum) : "",
                                 columnCount_++, spectrum.counts.size()});
        counts_.add(spectrum.counts);
    }

    int finish() override {
        if (options_.comments) write_comments();
        Fields line{"channel"};
        for (Group& group : groups_) {
            group.energies = energies_of(group);
            if (has_energies(group)) line.push_back(title_of(*group.calibration));
            for (const Column& column : group.columns) line.push_back(column.title);
        }
        write_csv_line(out_, line);
        std::vector<double> values;
        for (std::size_t from = 0; from < counts_.longest(); from += counts_.rows_at_once()) {
            const std::size_t rows = std::min(counts_.rows_at_once(), counts_.longest() - from);
            counts_.read(from, rows, values);
            for (std::size_t i = 0; i < rows; ++i) write_row(from + i, values.data() + i, rows);
        }
        return out_.finish();
    }

private:
    struct Column {
        std::string title;
        std::string comment;
        std::size_t place = 0;  // in counts_
        std::size_t channels = 0;
    };
    struct Group {
        std::shared_ptr<const uxkit::EnergyCalibration> calibration;
        std::vector<Column> columns;
        std::size_t channels = 0;
        std::vector<double> energies;
    };

    // The value of column c is values[c * stride].
    void write_row(std::size_t channel, const double* values, std::size_t stride) {
        Fields line{fmt::format("{}", channel + 1)};
        for (const Group& group : groups_) {
            if (has_energies(group)) {
                line.push_back(channel < group.channels ? value_at(group.energies, channel) : "");
            }
            for (const Column& column : group.columns) {
                line.push_back(
                    channel < column.channels ? number_text(values[column.place * stride]) : "");
            }
        }
        write_csv_numbers(out_, line);
    }

    // Files of one instrument repeat its calibration.
    Group& group_of(const std::shared_ptr<const uxkit::EnergyCalibration>& calibration) {
        if (!calibration) return groups_.front();
        const auto [known, isNew] = byRecord_.try_emplace(calibration.get(), 0);
        if (!isNew) return groups_[known->second];
        std::vector<std::size_t>& alike =
            byText_[calibration->id + "\n" + calibration->text + "\n" + calibration->unit];
        for (const std::size_t place : alike) {
            const uxkit::EnergyCalibration& other = *groups_[place].calibration;
            if (other.coefficients == calibration->coefficients &&
                other.boundaries == calibration->boundaries) {
                known->second = place;
                kept_.push_back(calibration);
                return groups_[place];
            }
        }
        alike.push_back(groups_.size());
        known->second = groups_.size();
        groups_.push_back({calibration, {}, 0, {}});
        return groups_.back();
    }

    bool has_energies(const Group& group) const {
        return group.calibration != nullptr && options_.energies != "none";
    }
    std::vector<double> energies_of(const Group& group) const {
        if (!has_energies(group)) return {};
        return options_.energies == "lower"
                   ? uxkit::channel_edges(*group.calibration, group.channels)
                   : uxkit::import_energies(*group.calibration, group.channels);
    }
    std::string title_of(const uxkit::EnergyCalibration& calibration) const {
        std::string title = options_.energies == "lower" ? "lower edge" : "energy";
        if (!calibration.unit.empty()) title += " (" + calibration.unit + ")";
        return calibration.id.empty() ? title : title + " " + calibration.id;
    }
    std::string title_of(const Exported& what) const {
        std::string title = what.spectrum.name;
        if (severalFiles_) title = what.file + ": " + title;
        return options_.rates ? title + " (1/s)" : title;
    }

    void write_comments() {
        const char* kind = options_.energies == "lower"
                               ? "lower edges of the channels by the standard: channel 1 has c0"
                               : "as in an import, which takes channel 1 first: channel 1 has "
                                 "c0 + c1 + c2 ...; listed boundaries are lower edges";
        if (options_.energies != "none") out_.print("# energies: {}\n", kind);
        out_.print("# values: {}\n",
                   options_.rates ? "counts per second of live time" : "counts per channel");
        for (const Group& group : groups_) {
            for (const Column& column : group.columns) {
                out_.print("# {}: {}", visible(column.title), column.comment);
                if (group.calibration)
                    out_.print(", energies {}", visible(group.calibration->text));
                out_.write("\n");
            }
        }
    }
    static std::string comment_of(const uxkit::Spectrum& spectrum) {
        return fmt::format("start {}, live time {}, real time {}",
                           spectrum.start.empty() ? "unknown" : visible(spectrum.start),
                           time_text(spectrum.liveSeconds), time_text(spectrum.realSeconds));
    }

    const ExportOptions& options_;
    bool severalFiles_;
    Output out_;
    std::vector<Group> groups_;
    std::map<const void*, std::size_t> byRecord_;
    std::map<std::string, std::vector<std::size_t>> byText_;
    std::vector<std::shared_ptr<const uxkit::EnergyCalibration>> kept_;  // so that addresses stay
    Columns counts_;
    std::size_t columnCount_ = 0;
};

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

class JsonWriter : public ExportWriter {
public:
    explicit JsonWriter(const ExportOptions& options)
        : options_(options), out_(options.output), list_(out_) {}

    void add(Exported&& what) override {
        const auto textOrNull = [](const std::string& text) {
            return text.empty() ? Json(nullptr) : Json(text);
        };
        const auto seconds = [](double value) { return value < 0 ? Json(nullptr) : Json(value); };
        const uxkit::Spectrum& spectrum = what.spectrum;
        const uxkit::EnergyCalibration* calibration = spectrum.calibration.get();
        Json entry;
        entry["file"] = what.file;
        entry["name"] = spectrum.name;
        entry["measurement"] = spectrum.measurement;
        entry["spectrum"] = spectrum.place;
        entry["id"] = textOrNull(spectrum.id);
        entry["detector"] = textOrNull(spectrum.detector);
        entry["kind"] = textOrNull(spectrum.kind);
        entry["start"] = textOrNull(spectrum.start);
        entry["realTime"] = textOrNull(spectrum.realTime);
        entry["liveTime"] = textOrNull(spectrum.liveTime);
        entry["realSeconds"] = seconds(spectrum.realSeconds);
        entry["liveSeconds"] = seconds(spectrum.liveSeconds);
        entry["unit"] = calibration != nullptr ? textOrNull(calibration->unit) : Json(nullptr);
        entry["calibration"] =
            calibration != nullptr ? textOrNull(calibration->text) : Json(nullptr);
        add_energies(entry, calibration, spectrum.counts.size());
        if (options_.rates) {
            entry["rates"] = spectrum.counts;
        } else {
            entry["counts"] = counts_list(spectrum.counts);
        }
        list_.add(entry);
    }

    int finish() override {
        list_.finish();
        return out_.finish();
    }

private:
    void add_energies(Json& entry, const uxkit::EnergyCalibration* calibration,
                      std::size_t channels) const {
        if (options_.energies == "import") {
            entry["energies"] = calibration != nullptr
                                    ? Json(uxkit::import_energies(*calibration, channels))
                                    : Json(nullptr);
        } else if (options_.energies == "lower") {
            std::vector<double> edges;
            if (calibration != nullptr) edges = uxkit::channel_edges(*calibration, channels);
            entry["edges"] = edges.empty() ? Json(nullptr) : Json(edges);
        }
    }

    const ExportOptions& options_;
    Output out_;
    JsonList list_;
};

// The form holds one spectrum, so several become files in a folder.
class SpeWriter : public ExportWriter {
public:
    explicit SpeWriter(const ExportOptions& options) : options_(options) {
        std::error_code unknown;
        toFolder_ =
            !options.output.empty() && (options.output.back() == '/' ||
                                        std::filesystem::is_directory(options.output, unknown));
    }

    void add(Exported&& what) override {
        if (!toFolder_ && ++written_ > 1) {
            throw Failure(kUsage, what.file, "SPE holds one spectrum, and there are several",
                          "choose one with -s, add them up with --sum, or write into a folder: "
                          "-o FOLDER/");
        }
        if (!toFolder_) {
            only_ = std::move(what);
            return;
        }
        std::error_code error;
        std::filesystem::create_directories(options_.output, error);
        if (error) throw Failure(kRefused, options_.output, error.message());
        write(what, path_for(what));
    }

    int finish() override {
        if (!toFolder_) write(only_, options_.output);
        for (const auto& [text, count] : lost_) note(counted_spectra(count) + ": " + text);
        return kSuccess;
    }

private:
    void write(const Exported& what, const std::string& path) {
        Output out(path);
        for (const std::string& lost : write_spe(out, what.spectrum, what.file)) ++lost_[lost];
        out.finish();
    }

    // "portal_2.1.spe"; files of the same name in several folders get a number.
    std::string path_for(const Exported& what) {
        const uxkit::Spectrum& spectrum = what.spectrum;
        std::string stem = std::filesystem::path(what.file).stem().string();
        stem += options_.sum ? std::string("_sum")
                             : fmt::format("_{}.{}", spectrum.measurement, spectrum.place);
        if (spectrum.column > 0) stem += fmt::format("_{}", spectrum.column + 1);
        std::string name = stem;
        for (int i = 2; !used_.insert(name).second; ++i) name = fmt::format("{}-{}", stem, i);
        return (std::filesystem::path(options_.output) / (name + ".spe")).string();
    }

    const ExportOptions& options_;
    bool toFolder_ = false;
    int written_ = 0;
    Exported only_;
    std::set<std::string> used_;
    std::map<std::string, std::size_t> lost_;  // what the form could not hold, and of how many
};

}  // namespace

std::unique_ptr<ExportWriter> export_writer(const ExportOptions& options, bool severalFiles) {
    if (options.format == "json") return std::make_unique<JsonWriter>(options);
    if (options.format == "spe") return std::make_unique<SpeWriter>(options);
    return std::make_unique<CsvWriter>(options, severalFiles);
}

std::string counted_spectra(std::size_t count) {
    return count == 1 ? "1 spectrum" : fmt::format("{} spectra", count);
}

}  // namespace uxtool
