// uxtree n42 export: spectra as columns, objects or files of their own.
#include <algorithm>
#include <cmath>
#include <filesystem>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "support/columns.h"
#include "support/command.h"
#include "support/json.h"
#include "support/output.h"
#include "support/spe.h"
#include "support/spectra.h"
#include "support/spectrum_files.h"
#include "support/table.h"
#include "support/text.h"

namespace uxtool {
namespace {

struct ExportOptions {
    std::vector<std::string> files;
    std::string output;
    std::string format = "csv";
    std::string energies = "import";
    std::vector<std::string> detectors;
    std::vector<std::string> chosen;
    std::string background;
    std::size_t joined = 1;
    bool sum = false;
    bool rates = false;
    bool comments = false;
};

// A spectrum on its way to the output.
struct Exported {
    uxkit::Spectrum spectrum;
    std::string file;
};

bool is_one_of(const std::string& name, const std::vector<std::string>& names) {
    return std::find(names.begin(), names.end(), name) != names.end();
}

[[noreturn]] void throw_problem(const Exported& what, const std::string& operation,
                                uxkit::SpectrumProblem problem) {
    throw Failure(kRefused, what.file,
                  what.spectrum.name + " " + operation + ": " + uxkit::text_of(problem));
}

std::string counted_spectra(std::size_t count) {
    return count == 1 ? "1 spectrum" : fmt::format("{} spectra", count);
}

// Spectra whose counts were divided among the channels of another one: one line for all.
class Rebinned {
public:
    void add(const uxkit::Rebinning& rebinning) {
        if (!rebinning.needed) return;
        ++count_;
        outside_ += rebinning.outside;
    }
    void tell(const std::string& other) const {
        if (count_ == 0) return;
        note(
            fmt::format("{} {} other channels than {}: counts are divided by overlap, and {:.6g} "
                        "lie outside",
                        counted_spectra(count_), count_ == 1 ? "has" : "have", other, outside_));
    }

private:
    std::size_t count_ = 0;
    double outside_ = 0;
};

// ---- the background ---------------------------------------------------------------------------

// What --background names: spectra of one file, one for all or one for each detector.
class Background {
public:
    // FILE:WHICH, or WHICH in the only file.
    Background(const std::string& option, const std::vector<SpectrumFileName>& files) {
        const std::size_t colon = option.rfind(':');
        which_ = option.substr(colon + 1);
        if (colon != std::string::npos) {
            path_ = option.substr(0, colon);
        } else if (files.size() == 1) {
            path_ = files.front().path;
        } else {
            throw Failure(kUsage, "--background", "which file is it in?",
                          "with several files name it as FILE:WHICH");
        }
        const SpectrumInput file(path_);
        uxkit::SpectrumReader reader = open_spectra(file);
        for (uxkit::Spectrum spectrum; next_spectrum(reader, file, spectrum);) {
            if (is_chosen(spectrum, which_)) spectra_.push_back(std::move(spectrum));
        }
        if (spectra_.empty()) throw_no_spectrum(file.name, which_);
    }

    // However the file is called.
    bool is_in(const std::string& path) const {
        std::error_code unknown;
        return path == path_ || std::filesystem::equivalent(path, path_, unknown);
    }
    const std::string& which() const { return which_; }
    void subtract_from(Exported& what) {
        const uxkit::Spectrum& background = spectrum_for(what);
        uxkit::Rebinning rebinning;
        const uxkit::SpectrumProblem problem =
            uxkit::subtract_background(what.spectrum, background, rebinning);
        if (problem != uxkit::SpectrumProblem::kNone) {
            throw_problem(what, "less the background " + background.name, problem);
        }
        rebinned_.add(rebinning);
    }

    void tell() const { rebinned_.tell("the background"); }

private:
    const uxkit::Spectrum& spectrum_for(const Exported& what) const {
        if (spectra_.size() == 1) return spectra_.front();
        const uxkit::Spectrum* found = nullptr;
        std::size_t count = 0;
        for (const uxkit::Spectrum& spectrum : spectra_) {
            if (spectrum.detector != what.spectrum.detector) continue;
            found = &spectrum;
            ++count;
        }
        if (count == 1) return *found;
        throw Failure(kRefused, what.file,
                      fmt::format("{}: {} of the backgrounds {} are of its detector",
                                  what.spectrum.name, count, which_),
                      "name one as MEASUREMENT.PLACE");
    }

    std::string path_;
    std::string which_;
    std::vector<uxkit::Spectrum> spectra_;
    Rebinned rebinned_;
};

// ---- formats ----------------------------------------------------------------------------------

class Writer {
public:
    virtual ~Writer() = default;
    virtual void add(Exported&& what) = 0;
    virtual int finish() = 0;
};

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
class CsvWriter : public Writer {
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

class JsonWriter : public Writer {
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
class SpeWriter : public Writer {
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

std::unique_ptr<Writer> writer_for(const ExportOptions& options, bool severalFiles) {
    if (options.format == "json") return std::make_unique<JsonWriter>(options);
    if (options.format == "spe") return std::make_unique<SpeWriter>(options);
    return std::make_unique<CsvWriter>(options, severalFiles);
}

// ---- the way of a spectrum --------------------------------------------------------------------

class Export {
public:
    Export(const ExportOptions& options, const std::vector<SpectrumFileName>& files)
        : options_(options), severalFiles_(files.size() > 1) {
        if (!options.background.empty()) {
            background_ = std::make_unique<Background>(options.background, files);
        }
    }

    ExitCode read(const std::string& path) {
        const SpectrumInput file(path);
        uxkit::SpectrumReader reader = open_spectra(file);
        inFileOfBackground_ = background_ && background_->is_in(path);
        if (!severalFiles_) check_detectors(reader.detectors(), file.name, options_.detectors);
        bool any = false;
        bool chosen = false;
        for (Exported what{{}, file.name}; next_spectrum(reader, file, what.spectrum);) {
            any = true;
            if (!is_wanted(what)) continue;
            chosen = true;
            take(std::move(what));
            what = Exported{{}, file.name};
        }
        const std::vector<std::string> notes = notes_of(reader, file);
        if (!any) {
            tell_nothing(file.name, "spectra", notes);
        } else {
            tell(notes);
            if (!chosen && severalFiles_) note(file.name + " has no spectrum that was chosen");
        }
        return chosen ? kSuccess : kNothingFound;
    }

    // What for_each_file yielded becomes the exit code of the command.
    int finish(int code) {
        if (code > kNothingFound) return code;
        for (const std::string& choice : options_.chosen) {
            if (found_.count(choice) == 0 && sawAny_) {
                throw_no_spectrum(input_name(options_.files.front()), choice);
            }
        }
        if (options_.sum && summed_ > 0) {
            sum_.spectrum.name = "sum of " + counted_spectra(summed_);
            hand_on(std::move(sum_));
        }
        if (!writer_) {
            if (sawAny_) note("no spectrum was chosen");
            return kNothingFound;
        }
        tell_changes();
        const int finished = writer_->finish();
        return finished == kSuccess ? code : finished;
    }

private:
    bool is_wanted(const Exported& what) {
        sawAny_ = true;
        bool wanted = options_.chosen.empty();
        for (const std::string& choice : options_.chosen) {
            if (!is_chosen(what.spectrum, choice)) continue;
            found_.insert(choice);
            wanted = true;
        }
        if (!options_.detectors.empty() && !is_one_of(what.spectrum.detector, options_.detectors)) {
            return false;
        }
        // Less itself it would be nothing.
        return wanted && !(inFileOfBackground_ && is_chosen(what.spectrum, background_->which()));
    }

    void take(Exported&& what) {
        if (!options_.sum) return hand_on(std::move(what));
        summedKinds_.insert(what.spectrum.kind.empty() ? "no class" : what.spectrum.kind);
        if (summed_++ == 0) {
            sum_ = std::move(what);
            firstOfSum_ = sum_.spectrum.name;
            return;
        }
        uxkit::Rebinning rebinning;
        const uxkit::SpectrumProblem problem =
            uxkit::add_spectrum(sum_.spectrum, what.spectrum, rebinning);
        if (problem != uxkit::SpectrumProblem::kNone) {
            throw_problem(what, "in one sum with " + firstOfSum_, problem);
        }
        rebinned_.add(rebinning);
    }

    void hand_on(Exported&& what) {
        if (background_) background_->subtract_from(what);
        if (options_.joined > 1) {
            if (what.spectrum.counts.size() % options_.joined != 0) ++unevenlyJoined_;
            check(uxkit::join_channels(what.spectrum, options_.joined), what, "in wider channels");
        }
        if (options_.rates) check(uxkit::make_rates(what.spectrum), what, "as rates");
        if (!writer_) writer_ = writer_for(options_, severalFiles_ && !options_.sum);
        writer_->add(std::move(what));
    }

    void tell_changes() const {
        if (summedKinds_.size() > 1) {
            note(fmt::format("the sum is of spectra of different classes: {}",
                             fmt::join(summedKinds_, ", ")));
        }
        rebinned_.tell(firstOfSum_);
        if (background_) background_->tell();
        if (unevenlyJoined_ == 0) return;
        note(fmt::format("{}: the last channel joins fewer than {}",
                         counted_spectra(unevenlyJoined_), options_.joined));
    }

    static void check(uxkit::SpectrumProblem problem, const Exported& what,
                      const std::string& operation) {
        if (problem != uxkit::SpectrumProblem::kNone) throw_problem(what, operation, problem);
    }

    const ExportOptions& options_;
    bool severalFiles_;
    std::unique_ptr<Background> background_;
    bool inFileOfBackground_ = false;
    std::unique_ptr<Writer> writer_;
    std::set<std::string> found_;  // the choices that chose something
    bool sawAny_ = false;
    Exported sum_;
    std::string firstOfSum_;
    std::size_t summed_ = 0;
    std::set<std::string> summedKinds_;
    Rebinned rebinned_;
    std::size_t unevenlyJoined_ = 0;
};

int run_export(const ExportOptions& options) {
    if (options.format == "spe" && options.rates) {
        throw Failure(kUsage, "--rate",
                      "SPE holds counts and the live time, from which programs "
                      "make rates");
    }
    const std::vector<SpectrumFileName> files = spectrum_files(options.files);
    Export work(options, files);
    // A failure ends the export: a table that lacks a file would look whole.
    bool any = false;
    for (const SpectrumFileName& file : files) {
        try {
            any = work.read(file.path) == kSuccess || any;
        } catch (const Failure& failure) {
            if (!passes_over(file, failure)) throw;
        }
    }
    return work.finish(any ? kSuccess : kNothingFound);
}

const Command kExport{
    "n42 export", "Write the spectra of radiation spectrum files as columns, objects or SPE",
    "uxtree n42 export spectrum.n42 -o spectrum.csv\n"
    "# CSV: the channel number from 1, then the spectra without energies, then each energy\n"
    "# column with the spectra that have it behind it; the heading names spectra by measurement\n"
    "# (from 1), place in it (from 0), kind and detector\n"
    "# energies are those of an import, which takes channel 1 first (channel 1: c0 + c1 + ...);\n"
    "# --energy lower gives the lower edges of the channels by the standard (channel 1: c0)\n"
    "uxtree n42 export -f json spectrum.n42       # one object per spectrum\n"
    "uxtree n42 export -f spe -o spe/ campaign/   # one file per spectrum\n"
    "uxtree n42 export --background 1 --rebin 4 --rate spectrum.n42\n"
    "uxtree n42 export --sum -d Aa1 portal.n42    # all spectra of a detector\n"
    "# first the sum, then the background, wider channels, rates",
    [](CLI::App& app) {
        auto options = std::make_shared<ExportOptions>();
        add_spectrum_files(app, options->files);
        add_selection(app, options->chosen, "Take this spectrum");
        add_detectors(app, options->detectors, "Take spectra of this detector");
        app.add_flag("--sum", options->sum, "Add the spectra up");
        app.add_option("--background", options->background,
                       "Take this spectrum off, scaled by live time, as [FILE:]WHICH like -s; of "
                       "several, that of the same detector")
            ->type_name("WHICH");
        app.add_option("--rebin", options->joined, "Join so many channels to one")
            ->type_name("COUNT")
            ->check(CLI::Range(std::size_t{1}, std::size_t{1} << 20));
        app.add_flag("--rate", options->rates, "Write counts per second of live time");
        app.add_option("--energy", options->energies,
                       "Energies: import, lower (edges of the channels) or none")
            ->type_name("WHICH")
            ->check(CLI::IsMember({"import", "lower", "none"}));
        app.add_flag("--comments", options->comments,
                     "CSV: begin with lines of #: start, live and real time of each spectrum");
        add_format(app, options->format, {"csv", "json", "spe"});
        add_output(app, options->output);
        return [options] { return run_export(*options); };
    }};

}  // namespace
}  // namespace uxtool
