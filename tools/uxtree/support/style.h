// Colour, when the output is a terminal or colour was asked for.
#pragma once

#include <string>
#include <string_view>

namespace uxtool {

enum class Role { kTag, kId, kLabel, kValue, kAttribute, kDim, kHeading, kError, kHint };

// Wraps text in the colour of a role, or yields it unchanged.
class Palette {
public:
    explicit Palette(bool coloured) : coloured_(coloured) {}
    std::string paint(Role role, std::string_view text) const;

private:
    bool coloured_;
};

// The choice of --color: "auto", "always" or "never".
void set_colour_choice(const std::string& choice);
// Should what goes to this descriptor be coloured? "auto" asks whether it is a terminal, and obeys
// NO_COLOR and TERM=dumb.
Palette palette_for_descriptor(int descriptor);
Palette palette_for_errors();

}  // namespace uxtool
