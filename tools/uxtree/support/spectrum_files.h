// Many spectrum files at once: folders, and several files at the same time.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "support/command.h"
#include "support/spectra.h"
#include "support/work_ahead.h"

namespace uxtool {

struct SpectrumFileName {
    std::string path;
    bool fromFolder = false;  // found there, not named by the user
};

// Positional FILE...: files, folders and "-".
CLI::Option* add_spectrum_files(CLI::App& app, std::vector<std::string>& files);

// The files, with folders replaced by the files ending in .n42 or .xml in them and in the folders
// below, by name. Says how many others a folder holds; throws Failure with kNothingFound for a
// folder without any, kUnreadable for one that cannot be read.
std::vector<SpectrumFileName> spectrum_files(const std::vector<std::string>& files);

// True, with a note, when a file that nobody named turns out to be no spectrum file.
bool passes_over(const SpectrumFileName& file, const Failure& failure);

// Calls work(path) for each file, up to jobs at the same time, and take(result) in the order of the
// files. The exit code is that of for_each_file: take yields kSuccess or kNothingFound.
template <typename Work, typename Take>
int for_each_spectrum_file(const std::vector<SpectrumFileName>& files, unsigned jobs, Work&& work,
                           Take&& take) {
    return for_each_in_order(
        files, jobs, [&](const SpectrumFileName& file) { return work(file.path); },
        std::forward<Take>(take), passes_over);
}

}  // namespace uxtool
