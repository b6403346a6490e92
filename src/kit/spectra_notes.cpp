// The words for what a reader of spectrum files left out.
#include "kit/spectra_notes.h"

#include <algorithm>
#include <string>
#include <utility>

namespace uxkit {
namespace {

std::string counted(std::size_t count, const std::string& noun, const std::string& plural = "") {
    const std::string many = plural.empty() ? noun + "s" : plural;
    return std::to_string(count) + " " + (count == 1 ? noun : many);
}
std::string spectra(std::size_t count) {
    return counted(count, "spectrum", "spectra");
}
// "is" or "are", "has" or "have".
std::string verb(std::size_t count, const char* one, const char* many) {
    return count == 1 ? one : many;
}

class Notes {
public:
    void add(const char* id, std::size_t count, std::string text) {
        if (count > 0) list_.push_back({id, count, std::move(text)});
    }
    std::vector<SpectrumNote> take() { return std::move(list_); }
    bool empty() const { return list_.empty(); }

private:
    std::vector<SpectrumNote> list_;
};

void add_missing_spectra(Notes& notes, const ux::N42Losses& lost) {
    std::size_t n = lost.spectraWithoutClass;
    notes.add("no-class-code", n,
              spectra(n) + " left out: " + verb(n, "its", "their") +
                  " measurement has no class code (MeasurementClassCode)");
    if (lost.endedAtCalibration) {
        notes.add("calibration-without-id", std::max<std::size_t>(lost.spectraBehind, 1),
                  "an energy calibration without id ended the reading: " +
                      counted(lost.measurementsBehind, "measurement") + " with " +
                      spectra(lost.spectraBehind) + " behind it not read");
    }
    n = lost.derivedSpectra;
    notes.add("derived-data", n, spectra(n) + " in DerivedData, which is not read");
    n = lost.spectraWithoutChannels;
    notes.add("no-channels", n, spectra(n) + " without channel values left out");
    n = lost.emptyWithDose;
    notes.add("dose-rates-alone", n,
              counted(n, "measurement") + " with dose rates, but neither spectra nor gross counts");
    n = lost.emptyMeasurements - lost.emptyWithDose;
    notes.add("empty-measurements", n,
              counted(n, "measurement") + " with neither spectra nor gross counts");
}

void add_changed_values(Notes& notes, const NoteSource& source) {
    const ux::N42Losses& lost = source.losses;
    std::size_t n = lost.otherModels;
    notes.add("other-model", n,
              counted(n, "energy calibration") + " not used: " + verb(n, "it is", "they are") +
                  " no " + verb(n, "polynomial", "polynomials"));
    n = source.unknownCalibrations;
    notes.add("unknown-calibration", n,
              spectra(n) + " without energies: " + verb(n, "it names", "they name") +
                  " a calibration that the file lacks");
    n = static_cast<std::size_t>(lost.unreadableNumbers);
    notes.add("unreadable-numbers", n,
              counted(n, "value") + " in " + counted(lost.listsWithUnreadable, "list") +
                  " became 0: no " + verb(n, "number", "numbers"));
    n = lost.cutLists;
    notes.add("cut-lists", n,
              counted(n, "channel list") + " cut: " + verb(n, "it asks", "they ask") +
                  " for more zeros than a file of this size may have (" +
                  counted(static_cast<std::size_t>(lost.cutZeros), "channel") +
                  " missing at least)");
}

void add_gross_counts(Notes& notes, const ux::N42Losses& lost) {
    std::size_t n = lost.grossOfOtherDetectors;
    notes.add("other-detectors", n, counted(n, "gross count") + " of other detectors left out");
    n = lost.grossWithMore;
    notes.add("gross-several-values", n,
              counted(n, "gross count") + " with several values, of which the first is taken");
    n = lost.grossWithoutNumber;
    notes.add("gross-no-number", n, counted(n, "gross count") + " became 0: no number");
    n = lost.grossOfOtherForm;
    notes.add("gross-2006", n, counted(n, "gross count") + " not read: the 2006 form's are not");
}

}  // namespace

std::vector<SpectrumNote> notes_of(const NoteSource& source) {
    Notes notes;
    add_missing_spectra(notes, source.losses);
    if (source.nothingRead && notes.empty()) {
        const std::size_t n = source.spectraAnywhere;
        notes.add("elsewhere", n,
                  counted(n, "element") + " Spectrum in places where no spectra are looked for");
        if (notes.empty()) notes.add("nothing", 1, "no measurement in the file");
    }
    add_changed_values(notes, source);
    add_gross_counts(notes, source.losses);
    return notes.take();
}

}  // namespace uxkit
