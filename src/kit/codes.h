// The codes of all functions, as a table in the order of names. It is made of the annotations when
// the library is built.
#pragma once

namespace ux::kit {

struct Code {
    const char* function;
    bool any;  // stands for every code that has no row of its own, from `least` on
    int code;  // or the least one that `any` stands for
    const char* name;
    const char* sentence;
};

extern const Code kCodes[];
extern const int kCodeCount;

}  // namespace ux::kit
