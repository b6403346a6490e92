// The version, and what fits it.
#include "uxtree/kit/version.h"

#include <array>
#include <cstdio>
#include <string_view>

#include "kit/c_last_error.h"

namespace {

// The part of a version that names an interface: "0.2" of 0.2.1, "1" of 1.2.3.
std::string_view interface_of(std::string_view version) {
    const std::size_t first = version.find('.');
    const bool isEarly = version.substr(0, first) == "0" && first != std::string_view::npos;
    return version.substr(0, isEarly ? version.find('.', first + 1) : first);
}

bool fits(std::string_view version) {
    return interface_of(version) == interface_of(UX_VERSION);
}

}  // namespace

const char* ux::kit::libraries_problem() noexcept {
    static const std::array<char, 128> product = [] {
        std::array<char, 128> text{};
        if (fits(UXVersion())) return text;
        std::snprintf(text.data(), text.size(),
                      "libuxtree_Utils %.40s does not fit libuxtree_kit %s", UXVersion(),
                      UX_VERSION);
        return text;
    }();
    return product[0] != '\0' ? product.data() : UXVersionProblem();
}

const char* ux_version(void) {
    return UX_VERSION;
}

int ux_version_fits(const char* version) {
    return version != nullptr && fits(version) ? 1 : 0;
}

const char* ux_version_problem(void) {
    return ux::kit::libraries_problem();
}
