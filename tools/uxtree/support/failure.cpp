// What a failed command prints.
#include "support/failure.h"

#include <cstdio>

#include <unistd.h>

#include "support/style.h"
#include "support/text.h"

namespace uxtool {
namespace {

// File names and contents may hold what steers a terminal.
void print(const std::string& text) {
    const std::string shown = isatty(STDERR_FILENO) == 1 ? terminal_safe(text) : text;
    std::fwrite(shown.data(), 1, shown.size(), stderr);
}

void print_line(Role role, const std::string& label, const std::string& text) {
    const Palette palette = palette_for_errors();
    print(palette.paint(role, visible(label) + ":") + " " + visible_lines(text) + "\n");
}

}  // namespace

void report(const Failure& failure) {
    print_line(Role::kError, failure.subject(), failure.what());
    if (!failure.excerpt().empty()) print(failure.excerpt() + "\n");
    if (!failure.hint().empty()) print_line(Role::kHint, "hint", failure.hint());
}

void note(const std::string& text) {
    print_line(Role::kHint, "note", text);
}
void warn(const std::string& text) {
    print_line(Role::kError, "warning", text);
}

}  // namespace uxtool
