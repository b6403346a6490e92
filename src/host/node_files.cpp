// Loading, saving and serialising through the node handle.
#include <algorithm>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "uxtree/host/embedded.h"
#include "uxtree/host/node.h"

#include "base/file_output.h"
#include "base/input_file.h"
#include "host/document.h"
#include "host/event_reader.h"
#include "host/format_source.h"
#include "host/layout_writer.h"
#include "host/loader.h"
#include "host/memory_source.h"
#include "host/node_detail.h"
#include "host/writer.h"
#include "xml/encodings.h"
#include "xml/layout_text.h"

using ux::xml::ByteSource;
using namespace uxhost;

namespace {

// The last failures of this thread.
thread_local UXFileError lastLoadFailure;
thread_local CStringUTF8 lastLoadPath;
thread_local std::string lastSaveError;

ByteSource file_source(const ux::RegularFile& file) {
    return {[&file](char* buffer, std::size_t size) { return file.read(buffer, size); },
            [&file](std::uint64_t offset) { file.seek(offset); }};
}

int load_into(UXXmlWrapperBase& node, const ByteSource& source, std::uint64_t totalBytes,
              std::uint64_t mostInMemory = 0) {
    uxhost::LoadOptions options = uxhost::options_of_services();
    options.mostInMemory = mostInMemory;
    const auto document = uxhost::load_document(source, totalBytes, options, lastLoadFailure);
    if (document == nullptr) return 0;
    return uxhost::bind(node, document->document, (*document)->root());
}

int read_events(UXXmlEvents& events, const ByteSource& source, std::uint64_t totalBytes) {
    return uxhost::read_events(source, totalBytes, uxhost::options_of_services(), events,
                               lastLoadFailure)
               ? 1
               : 0;
}

// The same source, of which everything that is read is kept.
ByteSource kept_source(const ByteSource& source, std::string& bytes, std::size_t& position) {
    return {[&](char* buffer, std::size_t size) {
                const long got = source.read(buffer, size);
                if (got <= 0) return got;
                const auto count = static_cast<std::size_t>(got);
                if (position == bytes.size()) {
                    bytes.append(buffer, count);
                } else {  // read again
                    if (position + count > bytes.size()) bytes.resize(position + count);
                    std::copy_n(buffer, count, bytes.data() + position);
                }
                position += count;
                return got;
            },
            [&](std::uint64_t offset) {
                source.seek(offset);
                position = static_cast<std::size_t>(offset);
            }};
}

// What the reader had no need to look at.
bool read_rest(const ByteSource& source, const std::string& bytes) {
    std::vector<char> block(std::size_t{1} << 16);
    source.seek(bytes.size());
    long got = 0;
    do {
        got = source.read(block.data(), block.size());
    } while (got > 0);
    return got == 0;
}

ux::xml::FileEncoding default_encoding() {
    const char* const codePage = ux::xml::code_page_encoding(uxhost::default_code_page());
    return ux::xml::encoding_by_name(codePage == nullptr ? "UTF-8" : codePage)
        .value_or(ux::xml::FileEncoding::kUtf8);
}

int load_for_editing(UXXmlWrapperBase& node, const ByteSource& source, std::uint64_t totalBytes) {
    const auto kept = std::make_shared<uxhost::LayoutSource>();
    kept->bytes.reserve(static_cast<std::size_t>(totalBytes));
    std::size_t position = 0;
    const ByteSource keeping = kept_source(source, kept->bytes, position);
    const auto document =
        uxhost::load_document(keeping, totalBytes, uxhost::options_of_services(), lastLoadFailure);
    if (document == nullptr) return 0;
    if (!read_rest(keeping, kept->bytes)) {
        lastLoadFailure.message = "cannot be read";
        return 0;
    }
    kept->codePage = default_encoding();
    (*document)->keep_source(kept);
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

template <typename Body>
int loading_file(const char* path, Body&& body) noexcept {
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
        return body(file);
    });
}

class NoEvents : public UXXmlEvents {
public:
    void Restart() override {}
    void Start(std::string_view /*name*/, const UXXmlAttribute* /*attributes*/,
               std::size_t /*count*/) override {}
    void End() override {}
};

int format(const ByteSource& source, std::uint64_t totalBytes, const UXFormatOptions& options,
           const ux::xml::WriteBytes& write) {
    NoEvents nobody;
    if (read_events(nobody, source, totalBytes) == 0) return 0;
    const char* const indent = options.indent == nullptr ? "" : options.indent;
    try {
        uxhost::format_source(source, default_encoding(), {indent, options.compact}, write);
        return 1;
    } catch (const ux::xml::Unkept& unkept) {
        lastLoadFailure.message = unkept.what();
        return 0;
    }
}

// Runs a save of a node; an exception that tells no reason is shortage of memory.
template <typename Body>
int saving(const UXXmlWrapperBase* node, Body&& body) noexcept {
    try {
        lastSaveError.clear();
        const Element* element = node == nullptr ? nullptr : live(*node);
        if (element == nullptr) {
            lastSaveError = "there is no node to save";
            return 0;
        }
        return body(*document_of(*node), *element) ? 1 : 0;
    } catch (const ux::xml::Unkept& unkept) {
        try {
            lastSaveError = unkept.what();
        } catch (...) {
            lastSaveError = "out of memory";
        }
        return 0;
    } catch (...) {
        lastSaveError = "out of memory";  // short enough to need none
        return 0;
    }
}

uxhost::IdPolicy policy_of(UXSaveIds ids) {
    switch (ids) {
        case UXSaveIds::kWrite:
            return uxhost::IdPolicy::kWrite;
        case UXSaveIds::kLeaveOut:
            return uxhost::IdPolicy::kLeaveOut;
        default:
            return uxhost::IdPolicy::kAsDocument;
    }
}

bool is_plain(const uxhost::Document& document, const UXSaveOptions& options) {
    return options.form == UXSaveForm::kPlain ||
           (options.form == UXSaveForm::kKeepLayout && document.layout() == nullptr);
}

// Not for plain ones.
void make_content(const uxhost::Document& document, const Element& element,
                  const UXSaveOptions& options, UXSaveReport* report, uxhost::KeptDocument& out) {
    constexpr int kMostBlanks = 100;
    const uxhost::IdPolicy ids = policy_of(options.ids);
    if (options.form == UXSaveForm::kIndented) {
        const int blanks = std::clamp(options.indent, 0, kMostBlanks);
        write_indented(document, element, static_cast<std::size_t>(blanks), ids, out);
    } else {
        write_kept(document, element, ids, out);
    }
    if (report != nullptr) *report = {out.idsWritten, out.idsLeftOut, out.commentsLeftOut};
}

}  // namespace

int UXXmlWrapperBase::load(const char* path, int /*unused*/, bool /*unusedFlag*/) {
    return loading_file(path, [&](const ux::RegularFile& file) {
        return load_into(*this, file_source(file), file.size());
    });
}

int UXLoadLean(UXXmlWrapperBase* out, const char* path) {
    constexpr std::uint64_t kMostInMemory = std::uint64_t{8} << 20;
    if (out == nullptr) return 0;
    return loading_file(path, [&](const ux::RegularFile& file) {
        return load_into(*out, file_source(file), file.size(), kMostInMemory);
    });
}

int UXReadXml(const char* path, UXXmlEvents* events) {
    return loading_file(path, [&](const ux::RegularFile& file) {
        if (events == nullptr) return 0;
        return read_events(*events, file_source(file), file.size());
    });
}
int UXReadXmlFromMemory(const char* bytes, std::size_t length, UXXmlEvents* events) {
    return loading("(memory)", [&] {
        if (events == nullptr) return 0;
        std::size_t position = 0;
        const std::string_view input(bytes, bytes == nullptr ? 0 : length);
        return read_events(*events, memory_source(input, position), input.size());
    });
}

int UXFormatXml(const char* bytes, std::size_t length, const UXFormatOptions& options,
                CStringUTF8* out) {
    return loading("(memory)", [&] {
        if (out == nullptr) return 0;
        std::size_t position = 0;
        const std::string_view input(bytes, bytes == nullptr ? 0 : length);
        std::string formatted;
        const auto write = [&](std::string_view piece) { formatted += piece; };
        if (format(memory_source(input, position), input.size(), options, write) == 0) return 0;
        out->Assign(formatted.data(), formatted.size());
        return 1;
    });
}
int UXFormatXmlFile(const char* path, const UXFormatOptions& options, UXByteSink* out) {
    return loading_file(path, [&](const ux::RegularFile& file) {
        if (out == nullptr) return 0;
        const auto write = [&](std::string_view piece) {
            if (!out->Write(piece)) throw ux::xml::Unkept("the output cannot be written");
        };
        return format(file_source(file), file.size(), options, write);
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
    return saving(this, [&](const uxhost::Document& document, const Element& element) {
        return uxhost::save_file(document, element, path, lastSaveError);
    });
}

int UXLoadForEditing(UXXmlWrapperBase* out, const char* path) {
    if (out == nullptr) return 0;
    return loading_file(path, [&](const ux::RegularFile& file) {
        return load_for_editing(*out, file_source(file), file.size());
    });
}

int UXLoadForEditingFromMemory(UXXmlWrapperBase* out, const char* bytes, std::size_t length) {
    if (out == nullptr) return 0;
    return loading("(memory)", [&] {
        std::size_t position = 0;
        const std::string_view input(bytes, bytes == nullptr ? 0 : length);
        return load_for_editing(*out, memory_source(input, position), input.size());
    });
}

int UXKeepsLayout(const UXXmlWrapperBase* node) {
    return node != nullptr && live(*node) != nullptr && document_of(*node)->layout() != nullptr;
}

int UXGetSourceBytes(const UXXmlWrapperBase* node, CStringUTF8* out) {
    if (out == nullptr || UXKeepsLayout(node) == 0) return 0;
    return uxhost::guarded(
        [&] { return uxhost::assign(*out, document_of(*node)->layout()->source->bytes); });
}

int UXSaveAs(const UXXmlWrapperBase* node, const char* path, const UXSaveOptions& options,
             UXSaveReport* report) {
    return saving(node, [&](const uxhost::Document& document, const Element& element) {
        if (report != nullptr) *report = {};
        if (is_plain(document, options)) {
            return uxhost::save_file(document, element, path, lastSaveError);
        }
        uxhost::KeptDocument content;
        make_content(document, element, options, report, content);
        ux::FileOutput file(path);
        content.for_each_piece([&](std::string_view bytes) { file.write(bytes); });
        if (!file.failed() && file.commit()) return true;
        lastSaveError = file.reason();
        return false;
    });
}

int UXSaveToMemory(const UXXmlWrapperBase* node, CStringUTF8* out, const UXSaveOptions& options,
                   UXSaveReport* report) {
    if (out == nullptr) return 0;
    return saving(node, [&](const uxhost::Document& document, const Element& element) {
        if (report != nullptr) *report = {};
        if (is_plain(document, options)) {
            return uxhost::file_content(document, element, *out, lastSaveError);
        }
        uxhost::KeptDocument content;
        make_content(document, element, options, report, content);
        std::string bytes;
        content.for_each_piece([&](std::string_view piece) { bytes += piece; });
        out->Assign(bytes.data(), bytes.size());
        return true;
    });
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
