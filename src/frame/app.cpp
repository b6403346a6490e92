// The module's application object.
#include "uxtree/frame/app.h"

// The module's one application object; it lives as long as the module is loaded.
CUxtree_UtilsApp theUxtreeUtilsApp;
