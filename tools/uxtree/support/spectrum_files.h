// Many spectrum files at once: folders, and several files at the same time.
#pragma once

#include <algorithm>
#include <condition_variable>
#include <exception>
#include <functional>
#include <future>
#include <mutex>
#include <optional>
#include <string>
#include <thread>
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

// Results of work(path) for each file, made ahead by threads of their own, in the order of the files.
template <typename Result>
class WorkAhead {
public:
    using Work = std::function<Result(const std::string& path)>;

    WorkAhead(const std::vector<SpectrumFileName>& files, unsigned jobs, Work work)
        : files_(files), work_(std::move(work)), results_(files.size()) {
        const std::size_t threads = std::min<std::size_t>(jobs, files.size());
        for (std::size_t i = 0; i < threads; ++i) threads_.emplace_back([this] { run(); });
    }
    ~WorkAhead() {
        {
            const std::lock_guard lock(mutex_);
            started_ = files_.size();
        }
        changed_.notify_all();
        for (std::thread& thread : threads_) thread.join();
    }
    WorkAhead(const WorkAhead&) = delete;
    WorkAhead& operator=(const WorkAhead&) = delete;

    // The next result, or what its work threw.
    Result take() {
        std::unique_lock lock(mutex_);
        changed_.wait(lock, [this] { return results_[taken_].valid(); });
        std::future<Result> result = std::move(results_[taken_++]);
        lock.unlock();
        changed_.notify_all();
        return result.get();
    }

private:
    static constexpr std::size_t kMostAhead = 64;  // results that nobody has taken

    void run() {
        std::unique_lock lock(mutex_);
        for (;;) {
            changed_.wait(lock, [this] {
                return started_ == files_.size() || started_ < taken_ + kMostAhead;
            });
            if (started_ == files_.size()) return;
            const std::size_t place = started_++;
            lock.unlock();
            std::promise<Result> promise;
            try {
                promise.set_value(work_(files_[place].path));
            } catch (...) {
                promise.set_exception(std::current_exception());
            }
            lock.lock();
            results_[place] = promise.get_future();
            changed_.notify_all();
        }
    }

    const std::vector<SpectrumFileName>& files_;
    Work work_;
    std::vector<std::future<Result>> results_;
    std::mutex mutex_;
    std::condition_variable changed_;
    std::size_t started_ = 0;
    std::size_t taken_ = 0;
    std::vector<std::thread> threads_;  // the last member: they use the others
};

// Calls work(path) for each file, up to jobs at the same time, and take(result) in the order of the
// files. The exit code is that of for_each_file: take yields kSuccess or kNothingFound.
template <typename Work, typename Take>
int for_each_spectrum_file(const std::vector<SpectrumFileName>& files, unsigned jobs, Work&& work,
                           Take&& take) {
    using Result = decltype(work(files.front().path));
    // One at a time is worked on here, when its turn comes.
    std::optional<WorkAhead<Result>> ahead;
    if (jobs > 1) ahead.emplace(files, jobs, work);
    int gravest = kSuccess;
    bool found = false;
    for (const SpectrumFileName& file : files) {
        try {
            found = take(ahead ? ahead->take() : work(file.path)) == kSuccess || found;
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
