// The version, and whether the host fits.
#include "uxtree/version.h"

#include <array>
#include <cstdio>

#include "frame/guards.h"

const char* UXVersion(void) {
    return UX_VERSION;
}

const char* UXVersionProblem(void) {
    if (ux::host_fits()) return "";
    static const std::array<char, 128> problem = [] {
        std::array<char, 128> text{};
        std::snprintf(text.data(), text.size(),
                      "libuxtree_Utils %s works with hosts of contract %d, not of contract %d",
                      UX_VERSION, UXTREE_HOST_CONTRACT, UXGetHostContract());
        return text;
    }();
    return problem.data();
}
