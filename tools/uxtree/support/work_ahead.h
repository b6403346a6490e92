// Several files at the same time, with results in the order in which the files were named.
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
#include "support/failure.h"

namespace uxtool {

// -j COUNT, --jobs COUNT: how many files are worked on at the same time; jobs becomes the number of
// processors when it is not said.
CLI::Option* add_jobs(CLI::App& app, unsigned& jobs);

// Results of work(file) for each file, made ahead by threads of their own, in the order of the files.
// What the work says on standard error is said when its result is taken.
template <typename File, typename Result>
class WorkAhead {
public:
    using Work = std::function<Result(const File& file)>;

    WorkAhead(const std::vector<File>& files, unsigned jobs, Work work)
        : files_(files),
          work_(std::move(work)),
          mostAhead_(std::size_t{4} * jobs),
          results_(files.size()) {
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
        changed_.wait(lock, [this] { return results_[taken_].made.valid(); });
        Made result = std::move(results_[taken_++]);
        lock.unlock();
        changed_.notify_all();
        print_messages(result.messages);
        return result.made.get();
    }

private:
    struct Made {
        std::future<Result> made;
        std::string messages;
    };

    Made make(const File& file) {
        std::promise<Result> promise;
        const HeldMessages held;
        try {
            promise.set_value(work_(file));
        } catch (...) {
            promise.set_exception(std::current_exception());
        }
        return {promise.get_future(), held.text()};
    }

    void run() {
        std::unique_lock lock(mutex_);
        for (;;) {
            changed_.wait(lock, [this] {
                return started_ == files_.size() || started_ < taken_ + mostAhead_;
            });
            if (started_ == files_.size()) return;
            const std::size_t place = started_++;
            lock.unlock();
            Made result = make(files_[place]);
            lock.lock();
            results_[place] = std::move(result);
            changed_.notify_all();
        }
    }

    const std::vector<File>& files_;
    Work work_;
    std::size_t mostAhead_;  // results that nobody has taken
    std::vector<Made> results_;
    std::mutex mutex_;
    std::condition_variable changed_;
    std::size_t started_ = 0;
    std::size_t taken_ = 0;
    std::vector<std::thread> threads_;  // the last member: they use the others
};

// Calls work(file) for each file, up to jobs at the same time, and take(result) here in the order of
// the files. A file whose work or take throws a Failure is reported, unless passesOver(file,
// failure) yields true, and does not keep the others from being worked on. take yields kSuccess or
// kNothingFound. The result is the gravest failure, else kSuccess when take yielded it for any file,
// else kNothingFound.
template <typename File, typename Work, typename Take, typename PassesOver>
int for_each_in_order(const std::vector<File>& files, unsigned jobs, Work&& work, Take&& take,
                      PassesOver&& passesOver) {
    using Result = decltype(work(files.front()));
    // One at a time is worked on here, when its turn comes.
    std::optional<WorkAhead<File, Result>> ahead;
    if (jobs > 1 && files.size() > 1) ahead.emplace(files, jobs, work);
    int gravest = kSuccess;
    bool found = false;
    for (const File& file : files) {
        try {
            found = take(ahead ? ahead->take() : work(file)) == kSuccess || found;
        } catch (const Failure& failure) {
            if (passesOver(file, failure)) continue;
            report(failure);
            gravest = std::max(gravest, static_cast<int>(failure.code()));
        }
    }
    if (gravest != kSuccess) return gravest;
    return found ? kSuccess : kNothingFound;
}

template <typename Work, typename Take>
int for_each_in_order(const std::vector<std::string>& files, unsigned jobs, Work&& work,
                      Take&& take) {
    return for_each_in_order(files, jobs, std::forward<Work>(work), std::forward<Take>(take),
                             [](const std::string&, const Failure&) { return false; });
}

}  // namespace uxtool
