// Whether there is colour, and which.
#include "support/style.h"

#include <cstdlib>

#include "support/platform.h"

namespace uxtool {
namespace {

std::string& colour_choice() {
    static std::string choice = "auto";
    return choice;
}

const char* code_of(Role role) {
    switch (role) {
        case Role::kTag:
            return "1;34";
        case Role::kId:
            return "36";
        case Role::kLabel:
            return "32";
        case Role::kValue:
            return "33";
        case Role::kAttribute:
            return "35";
        case Role::kDim:
            return "2";
        case Role::kHeading:
            return "1";
        case Role::kError:
            return "1;31";
        case Role::kHint:
            return "1;36";
    }
    return "0";
}

bool is_set(const char* variable) {
    const char* value = std::getenv(variable);
    return value != nullptr && *value != '\0';
}

bool is_dumb_terminal() {
    const char* terminal = std::getenv("TERM");
    return terminal != nullptr && std::string_view(terminal) == "dumb";
}

}  // namespace

std::string Palette::paint(Role role, std::string_view text) const {
    if (!coloured_ || text.empty()) return std::string(text);
    return "\x1b[" + std::string(code_of(role)) + "m" + std::string(text) + "\x1b[0m";
}

void set_colour_choice(const std::string& choice) {
    colour_choice() = choice;
}

Palette palette_for_descriptor(int descriptor) {
    if (colour_choice() != "auto") return Palette(colour_choice() == "always");
    return Palette(is_terminal(descriptor) && !is_set("NO_COLOR") && !is_dumb_terminal());
}

Palette palette_for_errors() {
    return palette_for_descriptor(kStandardError);
}

}  // namespace uxtool
