// What the annotations of an entry point say, as the sweep compares it with its rows.
#pragma once

#include <array>

namespace uxtest::facts {

enum class Direction { kByValue, kIn, kEdits, kOut, kReleased, kInOut, kAppends, kGetSet };
enum class Element { kNone, kInts, kDoubles, kBools, kStrings };
enum class Kind { kNothing, kDone, kYes, kCount, kZero, kStored, kNumber, kSaysNothing, kText };

struct Parameter {
    Direction direction = Direction::kByValue;
    Element element = Element::kNone;
    bool optional = false;
    bool mayBeInvalid = false;
};

}  // namespace uxtest::facts
