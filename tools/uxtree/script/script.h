// What runs scripts: a program of its own beside the tool, so that no other command carries the
// language along.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace uxtool {

struct LimitOptions {
    double seconds = 60;
    int depth = 1000;
    std::uint64_t megabytes = 2048;
};

struct RunOptions {
    std::vector<std::string> words;  // the file and the arguments
    std::string code;
    LimitOptions limits;
};

// These yield the exit code. The tool's own start that program with the tool's arguments and come
// back only when that fails, as Failure.
int run_script(const RunOptions& options);
int run_dialogue(const LimitOptions& options);

}  // namespace uxtool
