// The base class of objects of the script language.
#include "uxtree/host/script_object.h"

UXScriptObject::~UXScriptObject() = default;

int UXScriptObject::IsValid() {
    return 1;
}

void* UXScriptObject::GetInternalData(unsigned int /*typeCode*/) {
    return nullptr;
}
