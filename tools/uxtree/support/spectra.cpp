// Opening spectrum files, and what their commands share.
#include "support/spectra.h"

#include <algorithm>
#include <utility>

#include <fmt/format.h>

#include "support/text.h"

namespace uxtool {

// Reading a broken file again tells where it is broken.
uxkit::SpectrumReader open_spectra(const SpectrumInput& file,
                                   const std::vector<std::string>& detectors) {
    const Progress progress("reading " + file.name);
    uxkit::SpectrumReader reader;
    switch (reader.open(file.input.path().c_str(), detectors)) {
        case uxkit::SpectrumOpening::kOpened:
            return reader;
        case uxkit::SpectrumOpening::kNoMemory:
            throw Failure(kRefused, file.name, "no memory is left");
        case uxkit::SpectrumOpening::kUnreadable:
        case uxkit::SpectrumOpening::kNoXml:
            open_tree(file.input.path(), file.name);
            throw Failure(kUnreadable, file.name, "cannot be read");
        case uxkit::SpectrumOpening::kOtherRoot:
            break;
    }
    throw Failure(kUnreadable, file.name,
                  fmt::format("no N42 file: the root element is \"{}\"", reader.root_name()),
                  "N42 files have the root RadInstrumentData or N42InstrumentData");
}

bool next_spectrum(uxkit::SpectrumReader& reader, const SpectrumInput& file,
                   uxkit::Spectrum& spectrum) {
    if (reader.next(spectrum)) return true;
    if (reader.failed()) throw Failure(kRefused, file.name, "no memory is left");
    return false;
}

std::vector<uxkit::Spectrum> all_spectra(uxkit::SpectrumReader& reader, const SpectrumInput& file) {
    std::vector<uxkit::Spectrum> out;
    for (uxkit::Spectrum spectrum; next_spectrum(reader, file, spectrum);) {
        out.push_back(std::move(spectrum));
    }
    return out;
}

std::vector<std::string> notes_of(const uxkit::SpectrumReader& reader, const SpectrumInput& file) {
    std::vector<std::string> out;
    for (const uxkit::SpectrumNote& note : reader.notes()) {
        out.push_back(file.name + ": " + note.text);
    }
    return out;
}

void tell_nothing(const std::string& file, const std::string& what,
                  const std::vector<std::string>& reasons) {
    note(file + " has no " + what);
    tell(reasons);
}

void tell(const std::vector<std::string>& notes) {
    for (const std::string& text : notes) note(text);
}

CLI::Option* add_detectors(CLI::App& app, std::vector<std::string>& detectors,
                           const std::string& what) {
    return app.add_option("-d,--detector", detectors, what + "; may be repeated")
        ->type_name("NAME")
        ->allow_extra_args(false);
}

bool is_wanted_detector(const std::string& name, const std::vector<std::string>& detectors) {
    return detectors.empty() ||
           std::find(detectors.begin(), detectors.end(), name) != detectors.end();
}

void check_detectors(const std::vector<std::string>& known, const std::string& file,
                     const std::vector<std::string>& wanted) {
    for (const std::string& name : wanted) {
        if (std::find(known.begin(), known.end(), name) != known.end()) continue;
        const std::string near = nearest(name, known);
        std::string hint = known.empty()  ? "the file lists no detectors"
                           : near.empty() ? "it has " + short_list(known)
                                          : "did you mean \"" + near + "\"?";
        throw Failure(kUsage, file, "no detector \"" + name + "\"", std::move(hint));
    }
}

CLI::Option* add_selection(CLI::App& app, std::vector<std::string>& chosen,
                           const std::string& what) {
    return app
        .add_option("-s,--spectrum,--select", chosen,
                    what + ", as MEASUREMENT.PLACE or MEASUREMENT; may be repeated")
        ->type_name("WHICH")
        ->allow_extra_args(false);
}

bool is_chosen(const uxkit::Spectrum& spectrum, const std::string& choice) {
    return choice == fmt::format("{}", spectrum.measurement) ||
           choice == fmt::format("{}.{}", spectrum.measurement, spectrum.place);
}

void throw_no_spectrum(const std::string& file, const std::string& choice) {
    throw Failure(kUsage, file, "no spectrum \"" + choice + "\"",
                  "name one as MEASUREMENT.PLACE, such as 1.0, or all of a measurement by its "
                  "number; uxtree n42 list shows them");
}

}  // namespace uxtool
