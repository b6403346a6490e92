// Finding, opening and closing modules at run time.
#include "frame/runtime_module.h"

#include "base/platform.h"
#include "frame/guards.h"

namespace ux {
namespace {

// The value of an environment variable, "" in a program that has more rights than its caller. A
// relative path would mean another module in each folder, so only an absolute one and a plain name
// count.
std::string environment_module(const char* variable) {
    const char* const value = trusted_environment(variable);
    const std::string name = value == nullptr ? "" : value;
    return name.empty() || name[0] == '/' || name.find('/') == std::string::npos ? name : "";
}

}  // namespace

void* open_runtime_module(const RuntimeModuleName& name) {
    std::string file = name.fromServices;
    if (file.empty()) file = environment_module(name.environment);
    if (file.empty()) file = name.standard;
    if (file.find('/') == std::string::npos) {
        const std::string folder =
            folder_of_code(reinterpret_cast<const void*>(&open_runtime_module));
        void* const module = folder.empty() ? nullptr : open_module((folder + file).c_str());
        if (module != nullptr) return module;
    }
    return open_module(file.c_str());
}

void close_runtime_module(void* module) {
    if (module != nullptr) close_module(module);
}

void* find_runtime_symbol(void* module, const char* name) {
    return find_in_module(module, name);
}

}  // namespace ux
