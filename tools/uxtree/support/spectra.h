// The content of a spectrum file as the commands work on it.
#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <vector>

#include "uxtree/host/host.h"

#include "support/input.h"

namespace uxtool {

// A file that may be read several times, also when it comes from standard input.
struct SpectrumInput {
    explicit SpectrumInput(const std::string& file) : input(file), name(input_name(file)) {}
    NamedInput input;
    std::string name;  // in messages and results
};

// The energies of a spectrum's channels. Spectra with the same calibration share one.
struct EnergyAxis {
    std::vector<double> values;  // one per channel, or one more when they are boundaries
    std::string id;              // of the calibration, "" when it has none
    std::string comment;         // coefficients as written in the file, or "EnergyBoundaryValues"
    std::string unit;            // "" when the file tells none
};

// One column of counts.
struct SpectrumData {
    std::string name;     // "1.0 Foreground Aa1", unique in the file
    int measurement = 0;  // from 1
    int place = 0;        // in the measurement, from 0
    std::string id;       // the texts are "" when the file does not tell them
    std::string detector;
    std::string kind;  // class code, or source type
    std::string start;
    std::string realTime;
    std::string liveTime;
    std::shared_ptr<const EnergyAxis> axis;  // null without a known calibration
    std::vector<double> counts;              // one per channel
};

struct GrossCount {
    std::string id;
    std::string kind;
    std::string start;
    std::string liveTime;
    double count = 0;
};

struct SpectrumFile {
    int measurements = 0;
    std::vector<SpectrumData> spectra;
    std::vector<GrossCount> grossCounts;
};

// Imports a spectrum file below a new root "Import". detectors limits the import when it is not
// empty. Throws Failure when the file is no readable N42 file; tree stays empty when it holds
// nothing to import.
UXXmlWrapperBase import_spectrum_file(const SpectrumInput& file,
                                      const std::vector<std::string>& detectors);
// The detectors of a spectrum file; throws Failure as above.
std::vector<std::string> detectors_of_file(const SpectrumInput& file);
// "2011" or "2006".
std::string form_of_file(const SpectrumInput& file);

// What an import wrote.
SpectrumFile read_spectra(const UXXmlWrapperBase& import);

// An ISO 8601 duration such as PT1M2.5S in seconds; negative when the text is none.
double seconds_of(const std::string& duration);

}  // namespace uxtool
