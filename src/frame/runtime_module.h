// Modules of the host that are loaded when first needed, and may be missing.
#pragma once

#include <string>

namespace ux {

// How a module is named: the services' name, else the environment's, else the default.
struct RuntimeModuleName {
    const std::string& fromServices;
    const char* environment;
    const char* standard;
};

// Opens the module, looking beside this library first; null when it is missing.
void* open_runtime_module(const RuntimeModuleName& name);
void close_runtime_module(void* module);

void* find_runtime_symbol(void* module, const char* name);
template <typename Function>
Function* find_runtime_function(void* module, const char* name) {
    return reinterpret_cast<Function*>(find_runtime_symbol(module, name));
}

}  // namespace ux
