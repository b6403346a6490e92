// Reading trees and files, and the progress line.
#include "support/input.h"

#include <array>
#include <atomic>
#include <cerrno>
#include <chrono>
#include <condition_variable>
#include <filesystem>
#include <mutex>
#include <thread>

#include <fmt/format.h>

#include "uxtree/host/embedded.h"

#include "support/file.h"
#include "support/refused_content.h"
#include "support/text.h"
#include "support/work_ahead.h"

namespace uxtool {
namespace {

[[noreturn]] void throw_unreadable(const std::string& file, std::string hint = "") {
    const std::string reason = errno == 0 ? "cannot be read" : system_error();
    throw Failure(kUnreadable, input_name(file), reason, std::move(hint));
}

// Standard input is there once: who asked again would find it empty, or a part of it.
Descriptor take_standard_input() {
    static std::atomic<bool> taken{false};
    if (!taken.exchange(true)) return standard_input();
    throw Failure(kUsage, "stdin", "it is named twice and can be read only once",
                  "save it to a file first");
}

// Opens for reading; a directory is refused here, since reading one fails with a poorer message.
Descriptor open_for_reading(const std::string& file) {
    errno = 0;
    if (file == "-") return take_standard_input();
    Descriptor descriptor = open_to_read(file);
    if (!descriptor.is_open()) throw_unreadable(file);
    if (kind_of(descriptor.number()) == FileKind::kFolder) {
        errno = EISDIR;
        throw_unreadable(file, "name the XML files in it");
    }
    return descriptor;
}

bool is_regular(const Descriptor& descriptor) {
    return kind_of(descriptor.number()) == FileKind::kRegular;
}

// Hands on the content block by block, until take yields false.
template <typename Take>
void read_blocks(const Descriptor& descriptor, const std::string& file, Take&& take) {
    std::array<char, 65536> block;
    for (;;) {
        const long got = read_some(descriptor, block.data(), block.size());
        if (got < 0) throw_unreadable(file);
        if (got == 0 || !take(std::string_view(block.data(), static_cast<std::size_t>(got))))
            return;
    }
}

std::string read_open_file(const Descriptor& descriptor, const std::string& file) {
    if (!descriptor.is_open()) throw_unreadable(file);
    std::string content;
    read_blocks(descriptor, file, [&](std::string_view block) {
        content += block;
        return true;
    });
    return content;
}

// What the host's loader refused, with its position; content is what it read.
[[noreturn]] void throw_load_failure(const std::string& name, std::string_view content) {
    RefusedContent refused;
    refused.take(content);
    throw refused.failure(name);
}
[[noreturn]] void throw_load_failure(const std::string& name, const Descriptor& descriptor,
                                     const std::string& file) {
    RefusedContent refused;
    read_blocks(descriptor, file, [&](std::string_view block) { return refused.take(block); });
    throw refused.failure(name);
}

template <typename LoadText, typename LoadFile>
UXXmlWrapperBase open_as(const std::string& file, const std::string& name, LoadText&& loadText,
                         LoadFile&& loadFile) {
    const Progress progress("reading " + name);
    UXXmlWrapperBase root;
    if (is_regular_file(file)) {
        if (loadFile(root, file.c_str()) == 0) {
            throw_load_failure(name, open_for_reading(file), file);
        }
        return root;
    }
    const std::string content = read_open_file(open_for_reading(file), file);
    if (loadText(root, content) == 0) throw_load_failure(name, content);
    return root;
}

}  // namespace

bool is_regular_file(const std::string& file) {
    std::error_code unknown;
    return file != "-" && std::filesystem::is_regular_file(file, unknown);
}

std::string input_name(const std::string& file) {
    return file == "-" ? "stdin" : file;
}

UXXmlWrapperBase open_tree(const std::string& file) {
    return open_tree(file, input_name(file));
}

UXXmlWrapperBase open_tree(const std::string& file, const std::string& name) {
    return open_as(
        file, name,
        [](UXXmlWrapperBase& root, const std::string& content) {
            return root.LoadFromMemory(content.data(), content.size());
        },
        [](UXXmlWrapperBase& root, const char* path) { return root.load(path, 0, false); });
}

UXXmlWrapperBase open_tree_for_editing(const std::string& file) {
    return open_as(
        file, input_name(file),
        [](UXXmlWrapperBase& root, const std::string& content) {
            return UXLoadForEditingFromMemory(&root, content.data(), content.size());
        },
        [](UXXmlWrapperBase& root, const char* path) { return UXLoadForEditing(&root, path); });
}

std::string read_all(const std::string& file) {
    const Descriptor descriptor = open_for_reading(file);
    const Progress progress("reading " + input_name(file));
    return read_open_file(descriptor, file);
}

void throw_refused_file(const std::string& name, const std::string& path) {
    const Descriptor file = open_to_read(path);
    if (!file.is_open() || !is_regular(file)) throw_load_failure(name, "");
    throw_load_failure(name, file, path);
}

void throw_refused_text(const std::string& name, std::string_view content) {
    throw_load_failure(name, content);
}

void warn_of_refused_file(const std::string& name, const std::string& consequence) {
    const UXFileError& failure = UXGetLastLoadFailure();
    warn(fmt::format("{}:{}:{}: {}; {}", name, failure.line, failure.column,
                     static_cast<const char*>(failure.message), consequence));
}

NamedInput::NamedInput(const std::string& file, std::uint64_t maxSpool) : path_(file) {
    const Descriptor source = open_for_reading(file);
    if (!source.is_open()) throw_unreadable(file);
    if (file != "-" && is_regular(source)) return;
    auto made = create_temporary();
    const std::string path = made.first;
    remove_file(path.c_str());
    copy_ = std::move(made.second);
    path_ = path_of(copy_);
    const Progress progress("reading " + input_name(file));
    std::uint64_t size = 0;
    read_blocks(source, file, [&](std::string_view block) {
        size += block.size();
        if (size > maxSpool) {
            throw Failure(kRefused, input_name(file),
                          fmt::format("more than {} bytes, which a copy of it may have", maxSpool),
                          "--max-spool allows more, or save it to a file first");
        }
        if (!write_fully(copy_.number(), block)) throw Failure(kRefused, path, system_error());
        return true;
    });
}

void add_max_spool(CLI::App& app, std::uint64_t& bytes) {
    app.add_option("--max-spool", bytes,
                   "Refuse input from a pipe that is larger, like 500MB (4GB)")
        ->transform(CLI::AsSizeValue(true));
}

int for_each_file(const std::vector<std::string>& files,
                  const std::function<ExitCode(const std::string& file)>& work) {
    return for_each_in_order(files, 1, work, [](ExitCode code) { return code; });
}

// Waits on a thread of its own, since loading and outlining are single calls.
struct Progress::Ticker {
    explicit Ticker(std::string line) : text(std::move(line)), thread([this] { run(); }) {}
    ~Ticker() {
        {
            const std::lock_guard lock(mutex);
            finished = true;
        }
        wake.notify_one();
        thread.join();
        if (shown) std::fputs("\r\x1b[K", stderr);
    }

    void run() {
        using namespace std::chrono;
        const auto start = steady_clock::now();
        std::unique_lock lock(mutex);
        if (wake.wait_for(lock, milliseconds(500), [this] { return finished; })) return;
        do {
            const double seconds = duration<double>(steady_clock::now() - start).count();
            fmt::print(stderr, "\r{} ... {:.1f} s", text, seconds);
            std::fflush(stderr);
            shown = true;
        } while (!wake.wait_for(lock, milliseconds(200), [this] { return finished; }));
    }

    std::string text;
    std::mutex mutex;
    std::condition_variable wake;
    bool finished = false;
    bool shown = false;
    std::thread thread;  // the last member: it uses the others
};

Progress::Progress(const std::string& text) {
    if (is_terminal(kStandardError) && !HeldMessages::is_held())
        ticker_ = std::make_unique<Ticker>(terminal_safe(clipped(text, 60)));
}

Progress::~Progress() = default;

}  // namespace uxtool
