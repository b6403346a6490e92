// The last error of each thread, and the functions that tell it.
#include "kit/c_last_error.h"

#include "uxtree/kit/c.h"

namespace ux::kit {

LastError& last_error() {
    thread_local LastError error;
    return error;
}

}  // namespace ux::kit

const char* ux_last_error(void) {
    const ux::kit::LastError& error = ux::kit::last_error();
    return error.fixed != nullptr ? error.fixed : error.text.c_str();
}
int ux_last_error_line(void) {
    return ux::kit::last_error().line;
}
int ux_last_error_column(void) {
    return ux::kit::last_error().column;
}
