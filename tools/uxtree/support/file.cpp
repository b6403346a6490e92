// File descriptors and temporary files.
#include "support/file.h"

#include <array>
#include <atomic>
#include <cerrno>
#include <cstdlib>
#include <cstring>
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

namespace {

// The last temporary files, where a signal handler can read them. Removing one that is gone is no
// harm: the names are not given again.
struct Remembered {
    std::atomic<bool> ready{false};
    char path[4096];
};
std::array<Remembered, 8> temporaries;

void remember(const std::string& path) {
    static std::atomic<std::size_t> next{0};
    Remembered& place = temporaries[next++ % temporaries.size()];
    if (path.size() >= sizeof(place.path)) return;
    place.ready = false;
    std::memcpy(place.path, path.c_str(), path.size() + 1);
    place.ready = true;
}

}  // namespace

void remove_temporaries() {
    for (const Remembered& file : temporaries) {
        if (file.ready) ::unlink(file.path);
    }
}

std::pair<std::string, Descriptor> create_temporary() {
    const char* folder = std::getenv("TMPDIR");
    const bool given = folder != nullptr && *folder != '\0';
    std::string path = std::string(given ? folder : "/tmp") + "/uxtree-XXXXXX";
    Descriptor descriptor(::mkstemp(path.data()));
    if (!descriptor.is_open()) {
        throw Failure(kRefused, path, system_error(), "set TMPDIR to a folder with room");
    }
    remember(path);
    return {path, std::move(descriptor)};
}

}  // namespace uxtool
