// Functions of an older host, product or kit, to be loaded in front of the real ones.
#include "uxtree/host/contract.h"
#include "uxtree/kit/version.h"

#if defined(FAKE_HOST)
int UXGetHostContract() {
    return UXTREE_HOST_CONTRACT - 1;
}
#elif defined(FAKE_KIT)
int ux_version_fits(const char*) {
    return 0;
}
const char* ux_version(void) {
    return "0.1.0";
}
#else
const char* UXVersion(void) {
    return "0.1.0";
}
#endif
