// File descriptors and temporary files.
#include "support/file.h"

#include <cerrno>
#include <cstdlib>
#include <system_error>

#include <unistd.h>

#include "support/failure.h"

namespace uxtool {

Descriptor::~Descriptor() {
    if (is_open()) ::close(number_);
}

bool Descriptor::close() {
    if (!is_open()) return true;
    return ::close(std::exchange(number_, -1)) == 0;
}

std::string system_error() {
    return std::generic_category().message(errno);
}

bool write_fully(int descriptor, std::string_view bytes) {
    while (!bytes.empty()) {
        const ssize_t written = ::write(descriptor, bytes.data(), bytes.size());
        if (written < 0 && errno == EINTR) continue;
        if (written < 0) return false;
        bytes.remove_prefix(static_cast<std::size_t>(written));
    }
    return true;
}

std::pair<std::string, Descriptor> create_temporary() {
    const char* folder = std::getenv("TMPDIR");
    const bool given = folder != nullptr && *folder != '\0';
    std::string path = std::string(given ? folder : "/tmp") + "/uxtree-XXXXXX";
    Descriptor descriptor(::mkstemp(path.data()));
    if (!descriptor.is_open()) {
        throw Failure(kRefused, path, system_error(), "set TMPDIR to a folder with room");
    }
    return {path, std::move(descriptor)};
}

}  // namespace uxtool
