// Spectrum files (ANSI N42.42) spectrum by spectrum: what each file holds, and why when something is
// missing.
//
// A file is read in the order in which it was written. One spectrum is in memory at a time, the first
// 8 MB of the document, and what says where the other spectra are, a kilobyte each; their channels wait
// in a temporary file (see UXLoadLean). Numbers are those of VCTree_n42_ (uxtree/import/n42.h).
//
// No function throws. An object belongs to one thread at a time; different objects may be used by
// different threads at once.
#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "uxtree/host/node.h"
#include "uxtree/kit/export.h"

namespace uxkit {

// How channels become energies. With coefficients c0, c1, c2 ... channel x has the energy
// c0 + c1 x + c2 x² ...; see uxtree/kit/spectrum_math.h for what x is. A calibration has
// coefficients or boundaries, never both.
struct EnergyCalibration {
    std::string id;                    // in the file; "" when it has none
    std::string text;                  // the coefficients as written, or "EnergyBoundaryValues"
    std::string unit;                  // "keV" in 2011 files by the standard; "" where none is told
    std::vector<double> coefficients;  // ascending powers
    std::vector<double> boundaries;    // of the channels, as many as the file lists
};

struct Position {
    double latitude = 0;   // degrees, as the file gives them
    double longitude = 0;  // degrees
};

struct DoseRate {
    double value = 0;
    std::string unit;  // µSv/h in 2011 files by the standard, else as the file has it
};

// One list of channel counts with everything that the file tells about it. Texts are "" where the
// file tells nothing, times are then below 0.
struct Spectrum {
    std::string name;             // "1.0 Foreground Aa1", unique in the file
    std::size_t measurement = 0;  // from 1, counting those that an import writes
    std::size_t place = 0;        // of the spectrum in its measurement, from 0
    std::size_t column = 0;       // of the list in its spectrum, from 0
    std::string id;
    std::string detector;
    std::string kind;      // class code (2011) or source type (2006)
    std::string start;     // as the file writes it, mostly ISO 8601
    std::string realTime;  // as the file writes it, mostly PT12.5S
    std::string liveTime;
    double realSeconds = -1;
    double liveSeconds = -1;
    std::shared_ptr<const EnergyCalibration> calibration;  // null without a known one
    std::optional<Position> position;
    // Of the spectrum's detector; where the file names none, the one that it gives for the whole
    // measurement.
    std::optional<DoseRate> dose;
    std::optional<double> grossCounts;  // of its detector in the same measurement
    std::vector<double> counts;         // one per channel
};

// Counts without a spectrum.
struct GrossCount {
    std::size_t measurement = 0;  // as in Spectrum; 0 when an import leaves its spectra out
    bool hasSpectrum = false;     // its measurement has a spectrum of the same detector
    std::string id;
    std::string detector;
    std::string kind;
    std::string start;
    std::string liveTime;
    double liveSeconds = -1;
    double count = 0;
};

// Something that was left out, cut or guessed.
struct SpectrumNote {
    std::string id;         // for programs: "no-class-code"
    std::size_t count = 0;  // how many things it is about
    std::string text;       // for people: one line without a full stop
};
// The identifiers of notes:
//   no-class-code           spectra in measurements without class code, which are left out
//   calibration-without-id  one ended the reading; counts the spectra behind it
//   derived-data            spectra in "DerivedData", which is not read
//   no-channels             spectra without a channel value
//   dose-rates-alone        measurements with a dose rate and neither spectra nor gross counts
//   empty-measurements      other measurements with neither
//   elsewhere               elements "Spectrum" where none is read; only when nothing was read
//   nothing                 no measurement at all
//   other-model             energy calibrations that are no polynomials and are not used
//   unknown-calibration     spectra that name a calibration which the file lacks
//   unreadable-numbers      values that are no numbers and became 0
//   cut-lists               channel lists that a bound cut
//   other-detectors         gross counts that the chosen detectors leave out
//   gross-several-values    gross counts of several values, of which the first is taken
//   gross-no-number         gross counts that are no number and became 0
//   gross-2006              gross counts of the 2006 form, which are not read

enum class SpectrumOpening {
    kOpened,
    kUnreadable,  // no file, or it cannot be read
    kNoXml,       // UXGetLastLoadFailure tells where it is broken, or that memory ran out
    kOtherRoot,   // XML, but no spectrum file; root_name() tells what it is
    kNoMemory,
};

// How large the tree of an import is, when it is saved as XML.
struct ImportSize {
    double bytes = 0;        // about; the texts of numbers are counted, markup is estimated
    double energyBytes = 0;  // the part of it that calculated energies take
};

class UXKIT_API SpectrumReader {
public:
    SpectrumReader();
    ~SpectrumReader();
    SpectrumReader(SpectrumReader&& other) noexcept;
    SpectrumReader& operator=(SpectrumReader&& other) noexcept;

    // Loads a file and reads everything but the channels. What was open before is closed.
    // detectors: gross counts of these only; empty for all. Spectra are never left out.
    SpectrumOpening open(const char* path, const std::vector<std::string>& detectors = {});

    // The rest says something about an open file; else texts and lists are empty.

    const std::string& root_name() const;  // the tag of the root element
    const std::string& form() const;       // "2011" or "2006"
    const std::vector<std::string>& detectors() const;
    std::size_t measurement_count() const;  // of those with spectra that an import writes
    const std::vector<GrossCount>& gross_counts() const;

    // Reads the next spectrum. False behind the last, or when memory runs out.
    bool next(Spectrum& out);
    // Did memory run out?
    bool failed() const;
    // What was left out, cut or guessed, the gravest first. Complete once next() yielded false.
    std::vector<SpectrumNote> notes() const;

    // Once next() yielded false: how large the import of the file would be.
    ImportSize import_size() const;
    // Does what VCTree_n42_ does with the open file: the same tree, the same results. May be called
    // once, and nothing can be read afterwards. withEnergies false leaves calculated energies out;
    // energies that the file lists stay.
    int import_into(UXXmlWrapperBase& tree, bool withEnergies = true);

private:
    struct State;
    std::unique_ptr<State> state_;
};

// The seconds of an ISO 8601 duration of days, hours, minutes and seconds, such as PT1M2.5S; below 0
// when the text is none.
UXKIT_API double seconds_of(const std::string& duration);

}  // namespace uxkit
