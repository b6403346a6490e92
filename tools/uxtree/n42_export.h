// What uxtree n42 export writes: columns, objects, or files of their own.
#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <vector>

#include "uxtree/kit/spectra.h"

namespace uxtool {

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

class ExportWriter {
public:
    virtual ~ExportWriter() = default;
    virtual void add(Exported&& what) = 0;
    // Yields the exit code.
    virtual int finish() = 0;
};

// Spectra of several files bear the names of theirs. The options outlive the writer.
std::unique_ptr<ExportWriter> export_writer(const ExportOptions& options, bool severalFiles);

// "1 spectrum", "2 spectra".
std::string counted_spectra(std::size_t count);

}  // namespace uxtool
