// Finding, opening and closing modules at run time.
#include "frame/runtime_module.h"

#include <cstdlib>

#include <dlfcn.h>

#include "frame/guards.h"

namespace ux {
namespace {

// The folder of the library that holds this code, with the closing slash; "" when unknown.
std::string own_folder() {
    Dl_info info{};
    if (dladdr(reinterpret_cast<const void*>(&open_runtime_module), &info) == 0) return {};
    if (info.dli_fname == nullptr) return {};
    const std::string path = info.dli_fname;
    return path.substr(0, path.rfind('/') + 1);
}

void* open_file(const std::string& path) {
    return dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
}

}  // namespace

void* open_runtime_module(const RuntimeModuleName& name) {
    std::string file = name.fromServices;
    if (file.empty()) file = text_or(std::getenv(name.environment), name.standard);
    if (file.find('/') == std::string::npos) {
        const std::string folder = own_folder();
        void* const module = folder.empty() ? nullptr : open_file(folder + file);
        if (module != nullptr) return module;
    }
    return open_file(file);
}

void close_runtime_module(void* module) {
    if (module != nullptr) dlclose(module);
}

void* find_runtime_symbol(void* module, const char* name) {
    return dlsym(module, name);
}

}  // namespace ux
