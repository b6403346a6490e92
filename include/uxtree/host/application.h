// What a module's application object derives from.
#pragma once

#include "uxtree/host/export.h"

class UXHOST_API UXHostApplication {
public:
    UXHostApplication() = default;
    UXHostApplication(const UXHostApplication&) = delete;
    UXHostApplication& operator=(const UXHostApplication&) = delete;
    virtual ~UXHostApplication();
};
