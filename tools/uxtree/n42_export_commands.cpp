// uxtree n42 export: which spectra, added up, less a background, in wider channels, as rates.
#include <filesystem>
#include <memory>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "n42_export.h"
#include "support/command.h"
#include "support/output.h"
#include "support/spectra.h"
#include "support/spectrum_files.h"
#include "support/table.h"

namespace uxtool {
namespace {

[[noreturn]] void throw_problem(const Exported& what, const std::string& operation,
                                uxkit::SpectrumProblem problem) {
    throw Failure(kRefused, what.file,
                  what.spectrum.name + " " + operation + ": " + uxkit::text_of(problem));
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
        if (!any) note(file.name + " has no spectra");
        tell(notes_of(reader, file));
        if (any && !chosen && severalFiles_) note(file.name + " has no spectrum that was chosen");
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
        if (!is_wanted_detector(what.spectrum.detector, options_.detectors)) return false;
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
        if (!writer_) writer_ = export_writer(options_, severalFiles_ && !options_.sum);
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
    std::unique_ptr<ExportWriter> writer_;
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
    runs<run_export>([](CLI::App& app, ExportOptions& options) {
        add_spectrum_files(app, options.files);
        add_selection(app, options.chosen, "Take this spectrum");
        add_detectors(app, options.detectors, "Take spectra of this detector");
        app.add_flag("--sum", options.sum, "Add the spectra up");
        app.add_option("--background", options.background,
                       "Take this spectrum off, scaled by live time, as [FILE:]WHICH like -s; of "
                       "several, that of the same detector")
            ->type_name("WHICH");
        app.add_option("--rebin", options.joined, "Join so many channels to one")
            ->type_name("COUNT")
            ->check(CLI::Range(std::size_t{1}, std::size_t{1} << 20));
        app.add_flag("--rate", options.rates, "Write counts per second of live time");
        app.add_option("--energy", options.energies,
                       "Energies: import, lower (edges of the channels) or none")
            ->type_name("WHICH")
            ->check(CLI::IsMember({"import", "lower", "none"}));
        app.add_flag("--comments", options.comments,
                     "CSV: begin with lines of #: start, live and real time of each spectrum");
        add_format(app, options.format, {"csv", "json", "spe"});
        add_output(app, options.output);
    })};

}  // namespace
}  // namespace uxtool
