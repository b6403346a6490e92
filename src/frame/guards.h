// Tests of arguments, and the guard at the library's boundary.
#pragma once

#include <utility>

#include "uxtree/host/contract.h"
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

// Was the host compiled with the contract that this library knows?
inline bool host_fits() {
    static const bool fits = UXGetHostContract() == UXTREE_HOST_CONTRACT;
    return fits;
}

namespace detail {

// How many entry points of this thread are at work, one called by the other.
[[gnu::tls_model("initial-exec")]] inline constinit thread_local int entriesAtWork = 0;

class Entry {
public:
    Entry() { ++entriesAtWork; }
    ~Entry() { --entriesAtWork; }
    Entry(const Entry&) = delete;
    Entry& operator=(const Entry&) = delete;
    // Called by another entry point, whose own guard turns a failure into its failure value.
    static bool is_nested() { return entriesAtWork > 1; }
};

class CallOut {
public:
    CallOut() : entries_(entriesAtWork) { entriesAtWork = 0; }
    ~CallOut() { entriesAtWork = entries_; }
    CallOut(const CallOut&) = delete;
    CallOut& operator=(const CallOut&) = delete;

private:
    int entries_;
};

}  // namespace detail

// Runs an entry point's body, unless the host does not fit; an exception becomes the entry point's own failure value. One that
// another entry point calls lets it pass instead: the caller has to know that less was done, and
// its own guard is the one at the library's boundary.
template <typename Result, typename Body>
Result at_boundary(Result failure, Body&& body) {
    if (!host_fits()) return failure;
    const detail::Entry entry;
    try {
        return body();
    } catch (...) {
        if (detail::Entry::is_nested()) throw;
        return failure;
    }
}
template <typename Body>
void at_boundary(Body&& body) {
    if (!host_fits()) return;
    const detail::Entry entry;
    try {
        body();
    } catch (...) {
        if (detail::Entry::is_nested()) throw;
    }
}

// Calls what a caller supplied: a service, a callback, a script object. Entry points that it calls
// stand at the boundary again.
template <typename Function, typename... Arguments>
decltype(auto) call_out(Function&& function, Arguments&&... arguments) {
    const detail::CallOut out;
    return std::forward<Function>(function)(std::forward<Arguments>(arguments)...);
}

}  // namespace ux
