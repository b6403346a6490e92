#include "uxtree/host/application.h"

UXHostApplication::~UXHostApplication() = default;
