// What a failed command prints.
#include "support/failure.h"

#include <cstdio>

#include "support/style.h"
#include "support/text.h"

namespace uxtool {
namespace {

void print_line(Role role, const std::string& label, const std::string& text) {
    const Palette palette = palette_for_errors();
    const std::string line = palette.paint(role, label + ":") + " " + visible_lines(text) + "\n";
    std::fwrite(line.data(), 1, line.size(), stderr);
}

}  // namespace

void report(const Failure& failure) {
    print_line(Role::kError, failure.subject(), failure.what());
    if (!failure.excerpt().empty()) std::fprintf(stderr, "%s\n", failure.excerpt().c_str());
    if (!failure.hint().empty()) print_line(Role::kHint, "hint", failure.hint());
}

void note(const std::string& text) {
    print_line(Role::kHint, "note", text);
}
void warn(const std::string& text) {
    print_line(Role::kError, "warning", text);
}

}  // namespace uxtool
