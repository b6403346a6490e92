// What an application or a test may supply in place of the embedded host's own behaviour.
#pragma once

#include <cstdint>
#include <functional>
#include <string>

#include "uxtree/host/array.h"
#include "uxtree/host/export.h"
#include "uxtree/host/string.h"

class UXXmlWrapperBase;

// The sub-range slots of a range type: tag, label (the tag when absent) and DataID of each, and
// the action id of the range itself.
struct UXRangeSlots {
    CWBOStringArray tags;
    CWBOStringArray labels;
    CArray<int, int> dataIds;
    int actionId = 0;
};

// Services that an application or a test may replace; every member has a working default.
struct UXHostServices {
    // Message text by number. False, with an empty text, for an unknown number.
    std::function<bool(int number, int option, CStringUTF8& out)> messageText;
    // Help category to use in place of one outside 256 to 1024. Default: the given one.
    std::function<int(UXXmlWrapperBase& out, UXXmlWrapperBase& tree, int id, int category)>
        helpCategory;
    // Does text match a pattern of `*` (any run) and `?` (one character)? A nonzero flag compares
    // case-sensitively.
    std::function<bool(const CStringUTF8& text, const CStringUTF8& pattern, int matchFlag)>
        wildcardMatch;
    // May the value be written into the node? Default: always.
    std::function<bool(UXXmlWrapperBase& node, const CStringUTF8& value)> validateValue;
    // Fills in the slots of a range type.
    std::function<void(int rangeType, int stored, UXRangeSlots& slots)> rangeSlots;
    // Called after a range was added. Default: nothing.
    std::function<void(UXXmlWrapperBase& rangeTree, int rangeType)> finishRange;
    // Makes a valid element name of any text; true when the name differs from the text.
    std::function<bool(CStringUTF8& out, const CStringUTF8& name)> cleanName;
    // Names of the run-time modules; empty: the environment's, else the default names.
    std::string utilityModule;
    std::string messageModule;
    // Deepest nesting that load accepts.
    int maxNesting = 10000;
    // What load and LoadFromMemory accept at most: bytes of input, elements, and bytes of memory
    // for the tree. Beyond, they refuse with the reason. 0: no limit.
    std::uint64_t maxLoadBytes = 0;
    std::uint64_t maxLoadElements = 0;
    std::uint64_t maxLoadMemory = 0;
    // Called while a document is loaded, at least once per megabyte, with the bytes read so far and
    // those of the whole input; some inputs are read twice, and it starts again then. False ends
    // the loading, which then fails as cancelled. May be empty.
    std::function<bool(std::uint64_t done, std::uint64_t total)> loadProgress{};
};

// The process's services. A service that was set to nothing is the default one again. Set services
// while no other thread uses the libraries, and call this once more after setting one to nothing;
// from then on any number of threads may use them at the same time.
UXHOST_API UXHostServices& UXGetHostServices();
