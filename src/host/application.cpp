// The base class of a module's application object.
#include "uxtree/host/application.h"

UXHostApplication::~UXHostApplication() = default;
