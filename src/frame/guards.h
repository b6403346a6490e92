// Tests of arguments, and the guard at the library's boundary.
#pragma once

#include "uxtree/host/node.h"

namespace ux {

template <typename... Pointers>
bool any_null(const Pointers*... pointers) {
    return ((pointers == nullptr) || ...);
}

inline bool usable(const UXXmlWrapperBase* node) {
    return node != nullptr && node->IsNodeValid() != 0;
}
inline bool usable(const UXXmlWrapperBase& node) {
    return node.IsNodeValid() != 0;
}

// A text argument that is null or empty is not given.
inline bool given(const char* text) {
    return text != nullptr && *text != '\0';
}
inline const char* text_or(const char* text, const char* fallback) {
    return given(text) ? text : fallback;
}

// Runs an entry point's body; an exception becomes the entry point's own failure value.
template <typename Result, typename Body>
Result at_boundary(Result failure, Body&& body) noexcept {
    try {
        return body();
    } catch (...) {
        return failure;
    }
}
template <typename Body>
void at_boundary(Body&& body) noexcept {
    try {
        body();
    } catch (...) {
        return;
    }
}

}  // namespace ux
