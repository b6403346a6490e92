// Many spectrum files at once: folders, and several files at the same time.
#pragma once

#include <algorithm>
#include <deque>
#include <future>
#include <string>
#include <utility>
#include <vector>

#include "support/command.h"
#include "support/spectra.h"

namespace uxtool {

struct SpectrumFileName {
    std::string path;
    bool fromFolder = false;  // found there, not named by the user
};

// Positional FILE...: files, folders and "-".
CLI::Option* add_spectrum_files(CLI::App& app, std::vector<std::string>& files);
// -j COUNT: how many files are read at the same time.
CLI::Option* add_jobs(CLI::App& app, unsigned& jobs);

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
    using Result = decltype(work(files.front().path));
    std::deque<std::future<Result>> running;
    std::size_t started = 0;
    int gravest = kSuccess;
    bool found = false;
    for (const SpectrumFileName& file : files) {
        // One at a time is worked on here, when its turn comes.
        const auto policy = jobs > 1 ? std::launch::async : std::launch::deferred;
        while (started < files.size() && running.size() < jobs) {
            running.push_back(std::async(policy, work, files[started++].path));
        }
        std::future<Result> next = std::move(running.front());
        running.pop_front();
        try {
            found = take(next.get()) == kSuccess || found;
        } catch (const Failure& failure) {
            if (passes_over(file, failure)) continue;
            report(failure);
            gravest = std::max(gravest, static_cast<int>(failure.code()));
        }
    }
    if (gravest != kSuccess) return gravest;
    return found ? kSuccess : kNothingFound;
}

}  // namespace uxtool
