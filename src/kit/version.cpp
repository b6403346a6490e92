// The version, as the build knows it.
#include "uxtree/kit/version.h"

const char* ux_version(void) {
    return UXTREE_VERSION;
}
