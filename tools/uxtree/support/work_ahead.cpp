// The option for several files at the same time.
#include "support/work_ahead.h"

namespace uxtool {

CLI::Option* add_jobs(CLI::App& app, unsigned& jobs) {
    constexpr unsigned kMostJobs = 64;
    jobs = std::clamp(std::thread::hardware_concurrency(), 1U, kMostJobs);
    return app
        .add_option("-j,--jobs", jobs,
                    "So many files at the same time (as there are processors); the results come in "
                    "the order of the files")
        ->type_name("COUNT")
        ->check(CLI::Range(1U, kMostJobs));
}

}  // namespace uxtool
