// Making temporary files, and removing those that a signal leaves behind.
#include "support/file.h"

#include <array>
#include <atomic>
#include <cstdlib>
#include <cstring>

#include "support/failure.h"

namespace uxtool {
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
        if (file.ready) remove_file(file.path);
    }
}

std::pair<std::string, Descriptor> create_temporary() {
    const char* folder = std::getenv("TMPDIR");
    const bool given = folder != nullptr && *folder != '\0';
    std::string path = std::string(given ? folder : "/tmp") + "/uxtree-";
    Descriptor descriptor = create_file_that_begins(path);
    if (!descriptor.is_open()) {
        throw Failure(kRefused, path, system_error(), "set TMPDIR to a writable folder with room");
    }
    remember(path);
    return {path, std::move(descriptor)};
}

}  // namespace uxtool
