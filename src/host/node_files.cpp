// Loading, saving and serialising through the node handle.
#include <algorithm>
#include <cstdint>
#include <string>
#include <string_view>

#include "uxtree/host/embedded.h"
#include "uxtree/host/node.h"

#include "base/input_file.h"
#include "host/document.h"
#include "host/loader.h"
#include "host/node_detail.h"
#include "host/writer.h"

using ux::xml::ByteSource;
using uxhost::document_of;
using uxhost::Element;
using uxhost::live;

namespace {

// The last failures of this thread.
thread_local UXFileError lastLoadFailure;
thread_local CStringUTF8 lastLoadPath;
thread_local std::string lastSaveError;

ByteSource file_source(const ux::RegularFile& file) {
    return {[&file](char* buffer, std::size_t size) { return file.read(buffer, size); },
            [&file](std::uint64_t offset) { file.seek(offset); }};
}

ByteSource memory_source(std::string_view bytes, std::size_t& position) {
    return {[bytes, &position](char* buffer, std::size_t size) {
                const std::size_t count = std::min(size, bytes.size() - position);
                std::copy_n(bytes.data() + position, count, buffer);
                position += count;
                return static_cast<long>(count);
            },
            [bytes, &position](std::uint64_t offset) {
                position = std::min(static_cast<std::size_t>(offset), bytes.size());
            }};
}

int load_into(UXXmlWrapperBase& node, const ByteSource& source, std::uint64_t totalBytes) {
    const auto document =
        uxhost::load_document(source, totalBytes, uxhost::options_of_services(), lastLoadFailure);
    if (document == nullptr) return 0;
    return uxhost::bind(node, document->document, (*document)->root());
}

// Runs a load; an exception is shortage of memory.
template <typename Body>
int loading(const char* path, Body&& body) noexcept {
    try {
        lastLoadFailure = UXFileError{};
        lastLoadPath = path;
        return body();
    } catch (...) {
        lastLoadFailure.message = "out of memory";
        return 0;
    }
}

}  // namespace

int UXXmlWrapperBase::load(const char* path, int /*unused*/, bool /*unusedFlag*/) {
    return loading(path, [&] {
        if (path == nullptr || *path == '\0') {
            lastLoadFailure.message = "no file name";
            return 0;
        }
        const ux::RegularFile file(path);
        if (!file.is_open()) {
            lastLoadFailure.message = file.reason().c_str();
            return 0;
        }
        return load_into(*this, file_source(file), file.size());
    });
}

int UXXmlWrapperBase::LoadFromMemory(const char* bytes, std::size_t length) {
    return loading("(memory)", [&] {
        std::size_t position = 0;
        const std::string_view input(bytes, bytes == nullptr ? 0 : length);
        return load_into(*this, memory_source(input, position), input.size());
    });
}

int UXXmlWrapperBase::Save(const char* path, int /*unused*/) const {
    try {
        lastSaveError.clear();
        const Element* element = live(*this);
        if (element == nullptr) {
            lastSaveError = "there is no node to save";
            return 0;
        }
        return uxhost::save_file(*document_of(*this), *element, path, lastSaveError) ? 1 : 0;
    } catch (...) {
        lastSaveError = "no memory";  // short enough to need none
        return 0;
    }
}

int UXXmlWrapperBase::GetString(CStringUTF8& out, int /*unused*/) const {
    const Element* element = live(*this);
    if (element == nullptr) return 0;
    return uxhost::guarded([&] {
        uxhost::serialise(*document_of(*this), *element, out);
        return 1;
    });
}

CStringUTF8 UXGetLastLoadError() {
    CStringUTF8 text;
    const UXFileError& failure = lastLoadFailure;
    if (failure.message.IsEmpty()) return text;
    text = lastLoadPath;
    if (failure.line > 0) text.AppendFormat(":%lld:%lld", failure.line, failure.column);
    return text + ": " + failure.message;
}
CStringUTF8 UXGetLastSaveError() {
    return lastSaveError.c_str();
}
const UXFileError& UXGetLastLoadFailure() {
    return lastLoadFailure;
}
