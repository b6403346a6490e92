// The module's application object.
#pragma once

#include "uxtree/host/application.h"

// Constructed once when the module is loaded. Holds no state: all entry points are free functions.
class CUxtree_UtilsApp : public UXHostApplication {};
