// Opening spectrum files for the commands; numbers about spectra come from uxtree/kit.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "uxtree/kit/spectra.h"
#include "uxtree/kit/spectrum_math.h"

#include "support/command.h"
#include "support/input.h"

namespace uxtool {

// A file that may be read several times, also when it comes from standard input.
struct SpectrumInput {
    explicit SpectrumInput(const std::string& file) : input(file), name(input_name(file)) {}
    NamedInput input;
    std::string name;  // in messages and results
};

// Opens a spectrum file; throws Failure when it is no readable N42 file. detectors limits the gross
// counts when it is not empty.
uxkit::SpectrumReader open_spectra(const SpectrumInput& file,
                                   const std::vector<std::string>& detectors = {});
// Reads the next spectrum; throws Failure when memory runs out.
bool next_spectrum(uxkit::SpectrumReader& reader, const SpectrumInput& file,
                   uxkit::Spectrum& spectrum);
std::vector<uxkit::Spectrum> all_spectra(uxkit::SpectrumReader& reader, const SpectrumInput& file);

// What was left out, cut or guessed: one line each, for note().
std::vector<std::string> notes_of(const uxkit::SpectrumReader& reader, const SpectrumInput& file);
// "FILE has no spectra", then the reasons.
void tell_nothing(const std::string& file, const std::string& what,
                  const std::vector<std::string>& reasons);
void tell(const std::vector<std::string>& notes);

// -d NAME, as often as wanted; what says what it chooses.
CLI::Option* add_detectors(CLI::App& app, std::vector<std::string>& detectors,
                           const std::string& what);
// Without names of detectors, all are wanted.
bool is_wanted_detector(const std::string& name, const std::vector<std::string>& detectors);
// A name that no detector has selects nothing, which is hardly meant: throws Failure.
void check_detectors(const std::vector<std::string>& known, const std::string& file,
                     const std::vector<std::string>& wanted);

// -s WHICH: "2.1" chooses a spectrum by measurement and place, "2" all of a measurement.
CLI::Option* add_selection(CLI::App& app, std::vector<std::string>& chosen,
                           const std::string& what);
bool is_chosen(const uxkit::Spectrum& spectrum, const std::string& choice);
// Throws Failure for a choice that chose nothing.
[[noreturn]] void throw_no_spectrum(const std::string& file, const std::string& choice);

}  // namespace uxtool
