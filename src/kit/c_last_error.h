// Why the last call of this thread failed, and the guard around every function of the C door.
#pragma once

#include <exception>
#include <new>
#include <string>
#include <string_view>

namespace ux::kit {

struct LastError {
    std::string text;
    const char* fixed = nullptr;  // in place of text where making one could fail
    int line = 0;                 // from 1; 0 without a position
    int column = 0;
};

LastError& last_error();

// States why a call fails; returned by the functions that found out.
inline void refuse(std::string_view why) {
    last_error().text = why;
}
template <typename Result>
Result refused(Result failure, std::string_view why) {
    refuse(why);
    return failure;
}

// Why the libraries do not fit each other, "" when they do.
const char* libraries_problem() noexcept;

// Runs the body of a C function, unless the libraries do not fit each other. It begins without an
// error; an exception becomes the failure value.
template <typename Result, typename Body>
Result guarded(Result failure, Body&& body) noexcept {
    LastError& error = last_error();
    error.text.clear();
    error.fixed = nullptr;
    error.line = error.column = 0;
    if (const char* const problem = libraries_problem(); *problem != '\0') {
        error.fixed = problem;
        return failure;
    }
    try {
        return body();
    } catch (const std::bad_alloc&) {
        error.fixed = "out of memory";
    } catch (...) {
        error.fixed = "the host failed";
    }
    return failure;
}

}  // namespace ux::kit
