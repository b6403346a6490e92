// Finding, opening and closing modules at run time.
#include "frame/runtime_module.h"

#include <cstdlib>

#include <dlfcn.h>
#include <unistd.h>

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

// The value of an environment variable, "" in a program that has more rights than its caller: there
// a caller must not choose what is loaded. A relative path would mean another module in each folder,
// so only an absolute one and a plain name count.
std::string environment_module(const char* variable) {
#if defined(__GLIBC__)
    const char* const value = secure_getenv(variable);
#else
    const bool trusted = getuid() == geteuid() && getgid() == getegid();
    const char* const value = trusted ? std::getenv(variable) : nullptr;
#endif
    const std::string name = value == nullptr ? "" : value;
    return name.empty() || name[0] == '/' || name.find('/') == std::string::npos ? name : "";
}

void* open_file(const std::string& path) {
    return dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
}

}  // namespace

void* open_runtime_module(const RuntimeModuleName& name) {
    std::string file = name.fromServices;
    if (file.empty()) file = environment_module(name.environment);
    if (file.empty()) file = name.standard;
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
