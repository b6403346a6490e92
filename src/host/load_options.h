// How an input is read, and what it may be.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>

#include "xml/window.h"

namespace uxhost {

struct LoadOptions {
    int maxNesting = 10000;
    // 0: no limit.
    std::uint64_t maxBytes = 0;
    std::uint64_t maxElements = 0;
    std::uint64_t maxMemory = 0;
    // Long texts of a document that has grown to this size go into a temporary file.
    std::uint64_t mostInMemory = 0;
    // May be empty; false ends the reading.
    std::function<bool(std::uint64_t done, std::uint64_t total)> progress;
    // For tests: the parser reads everything, or the reader's window is smaller.
    bool parserAlone = false;
    std::size_t window = ux::xml::Window::kCapacity;
};

// What the host's services ask for.
LoadOptions options_of_services();

}  // namespace uxhost
