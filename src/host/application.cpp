// The base class of a module's application object, and the number of the contract.
#include "uxtree/host/application.h"

#include "uxtree/host/contract.h"

int UXGetHostContract() {
    return UXTREE_HOST_CONTRACT;
}

UXHostApplication::~UXHostApplication() = default;
