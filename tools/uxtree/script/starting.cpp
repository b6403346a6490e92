// Starting the program that runs scripts.
#include <filesystem>

#include "script/script.h"
#include "support/command.h"
#include "support/platform.h"

namespace uxtool {
namespace {

// Beside the tool where it is built, else where it is installed.
[[noreturn]] void start_script_program() {
    const std::filesystem::path folder = std::filesystem::path(own_program()).parent_path();
    std::filesystem::path program = folder / "uxtree-script";
    std::error_code unknown;
    if (!std::filesystem::exists(program, unknown)) {
        program = (folder / UXTREE_SCRIPT_FOLDER / "uxtree-script").lexically_normal();
    }
    become(program.string(), command_line());
    throw Failure(kRefused, program.string(), system_error(),
                  "the program that runs scripts is installed with uxtree");
}

}  // namespace

int run_script(const RunOptions& /*options*/) {
    start_script_program();
}

int run_dialogue(const LimitOptions& /*options*/) {
    start_script_program();
}

}  // namespace uxtool
