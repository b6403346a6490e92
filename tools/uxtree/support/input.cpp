// Reading trees and files, advice on broken ones, and the progress line.
#include "support/input.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>
#include <condition_variable>
#include <mutex>
#include <thread>

#include <fcntl.h>
#include <fmt/format.h>
#include <sys/stat.h>
#include <unistd.h>

#include "uxtree/host/embedded.h"

#include "support/file.h"
#include "support/text.h"

namespace uxtool {
namespace {

[[noreturn]] void throw_unreadable(const std::string& file, std::string hint = "") {
    const std::string reason = errno == 0 ? "cannot be read" : system_error();
    throw Failure(kUnreadable, input_name(file), reason, std::move(hint));
}

// Opens for reading; a directory is refused here, since reading one fails with a poorer message.
Descriptor open_for_reading(const std::string& file) {
    errno = 0;
    if (file == "-") return Descriptor(::dup(STDIN_FILENO));
    Descriptor descriptor(::open(file.c_str(), O_RDONLY | O_CLOEXEC));
    if (!descriptor.is_open()) throw_unreadable(file);
    struct stat status {};
    if (::fstat(descriptor.number(), &status) == 0 && S_ISDIR(status.st_mode)) {
        errno = EISDIR;
        throw_unreadable(file, "name the XML files in it");
    }
    return descriptor;
}

bool is_regular(const Descriptor& descriptor) {
    struct stat status {};
    return ::fstat(descriptor.number(), &status) == 0 && S_ISREG(status.st_mode);
}

// Hands on the content block by block.
template <typename Take>
void read_blocks(const Descriptor& descriptor, const std::string& file, Take&& take) {
    std::array<char, 65536> block;
    for (;;) {
        const ssize_t got = ::read(descriptor.number(), block.data(), block.size());
        if (got < 0 && errno == EINTR) continue;
        if (got < 0) throw_unreadable(file);
        if (got == 0) return;
        take(std::string_view(block.data(), static_cast<std::size_t>(got)));
    }
}

std::string read_open_file(const Descriptor& descriptor, const std::string& file) {
    if (!descriptor.is_open()) throw_unreadable(file);
    std::string content;
    read_blocks(descriptor, file, [&](std::string_view block) { content += block; });
    return content;
}

struct Advice {
    std::string_view message;  // part of the parser's message
    std::string_view hint;
};

constexpr std::array<Advice, 13> kAdvice{{
    {"mismatched tag", "an end tag closes the element that was opened last, by the same name"},
    {"input ends before", "the file was cut off, or an end tag is missing"},
    {"no element found", "the file is empty"},
    {"unclosed", "the file ends in the middle of a tag, comment, section or reference"},
    {"invalid token", "text and attributes write &lt; for < and &amp; for &; values need quotes"},
    {"syntax error", "an XML file begins with < and the name of its root element"},
    {"junk after", "a document has one root element, and nothing but comments behind it"},
    {"not at start", "nothing comes before <?xml, not even a blank line"},
    {"duplicate attribute", "an element has each attribute once"},
    {"undefined entity", "write the character itself, or &#...; with its number"},
    {"reference to the entity", "write the character itself, or &#...; with its number"},
    {"encoding", "UTF-8, UTF-16, ISO-8859-1, windows-1252 and ASCII are read"},
    {"nested deeper", "uxtree outline reads any depth"},
}};

// Does the file say an encoding that is not UTF-8?
bool declares_encoding(std::string_view content) {
    const std::string_view start = content.substr(0, content.find('>'));
    if (!content.starts_with("<?xml")) return false;
    return start.find("encoding") != std::string_view::npos &&
           start.find("UTF-8") == std::string_view::npos &&
           start.find("utf-8") == std::string_view::npos;
}

std::string advice_for(std::string_view message) {
    const auto fits = [message](const Advice& advice) {
        return message.find(advice.message) != std::string_view::npos;
    };
    const auto found = std::find_if(kAdvice.begin(), kAdvice.end(), fits);
    return found == kAdvice.end() ? std::string() : std::string(found->hint);
}

struct Magic {
    std::string_view bytes;
    const char* kind;
    const char* unpacker;  // null: nothing to unpack
};

constexpr std::array<Magic, 12> kMagic{{
    {{"\x1f\x8b", 2}, "gzip", "gunzip or zcat"},
    {{"\x1f\x9d", 2}, "compress", "zcat"},
    {{"BZh", 3}, "bzip2", "bzcat"},
    {{"\xfd"
      "7zXZ",
      5},
     "xz",
     "xzcat"},
    {{"\x28\xb5\x2f\xfd", 4}, "zstd", "zstdcat"},
    {{"\x04\x22\x4d\x18", 4}, "lz4", "lz4cat"},
    {{"PK\x03\x04", 4}, "zip", "unzip"},
    {{"7z\xbc\xaf", 4}, "7z", "7z"},
    {{"%PDF-", 5}, "PDF", nullptr},
    {{"\x89PNG", 4}, "PNG", nullptr},
    {{"\xff\xd8\xff", 3}, "JPEG", nullptr},
    {{"\x7f"
      "ELF",
      4},
     "ELF",
     nullptr},
}};

// A message for what is no text at all; nothing is thrown for what may be broken XML.
void throw_unless_text(const std::string& name, std::string_view content) {
    for (const Magic& magic : kMagic) {
        if (!content.starts_with(magic.bytes)) continue;
        if (magic.unpacker == nullptr) {
            throw Failure(kUnreadable, name, fmt::format("this is no XML: a {} file", magic.kind));
        }
        throw Failure(kUnreadable, name,
                      fmt::format("compressed ({}): unpack it first", magic.kind),
                      fmt::format("such as with {}, and - for FILE", magic.unpacker));
    }
    const std::string_view start = content.substr(0, 4096);
    const bool isUtf16 = start.starts_with("\xff\xfe") || start.starts_with("\xfe\xff") ||
                         start.starts_with(std::string_view("<\0", 2)) ||
                         start.starts_with(std::string_view("\0<", 2));
    const auto controls = std::count_if(start.begin(), start.end(), [](char c) {
        const auto byte = static_cast<unsigned char>(c);
        return byte < 0x20 && c != '\n' && c != '\r' && c != '\t';
    });
    // A few stray control characters are a fault in a text.
    if (isUtf16 || controls * 50 <= static_cast<std::ptrdiff_t>(start.size())) return;
    throw Failure(kUnreadable, name, "this is no XML: a binary file");
}

// What bytes that are no UTF-8 probably mean: windows-1252 has letters and signs where ISO-8859-1
// has control characters.
std::string encoding_hint(std::string_view content) {
    bool inWindows = false;
    bool isValid = true;
    for (std::size_t at = 0; at < content.size();) {
        const std::size_t length = utf8_length(content.substr(at));
        if (length == 0) {
            isValid = false;
            const auto byte = static_cast<unsigned char>(content[at]);
            inWindows = inWindows || (byte >= 0x80 && byte < 0xA0);
        }
        at += std::max<std::size_t>(length, 1);
    }
    if (isValid) return "";
    const std::string name = inWindows ? "windows-1252" : "ISO-8859-1";
    return fmt::format(
        "the bytes are no UTF-8, probably {0}: begin the file with <?xml version=\"1.0\" "
        "encoding=\"{0}\"?>, or convert it with iconv -f {0} -t UTF-8",
        name);
}

// What the host's loader refused, with its position; content is what it read.
[[noreturn]] void throw_load_failure(const std::string& name, std::string_view content) {
    const UXFileError& failure = UXGetLastLoadFailure();
    const std::string message =
        failure.message.IsEmpty() ? "cannot be loaded" : static_cast<const char*>(failure.message);
    if (failure.line <= 0) throw Failure(kUnreadable, name, message, advice_for(message));
    throw_unless_text(name, content);
    const bool isToken = message.find("invalid token") != std::string::npos;
    const std::string encoding =
        isToken && !declares_encoding(content) ? encoding_hint(content) : "";
    const bool isText = content.substr(0, 4096).find('\0') == std::string_view::npos;
    throw Failure(kUnreadable, fmt::format("{}:{}:{}", name, failure.line, failure.column), message,
                  encoding.empty() ? advice_for(message) : encoding)
        .with_excerpt(isText ? excerpt(content, failure.line, failure.column) : "");
}

template <typename LoadText, typename LoadFile>
UXXmlWrapperBase open_as(const std::string& file, const std::string& name, LoadText&& loadText,
                         LoadFile&& loadFile) {
    const Descriptor descriptor = open_for_reading(file);
    const Progress progress("reading " + name);
    UXXmlWrapperBase root;
    if (file == "-" || !is_regular(descriptor)) {
        const std::string content = read_open_file(descriptor, file);
        if (loadText(root, content) == 0) throw_load_failure(name, content);
    } else if (loadFile(root, file.c_str()) == 0) {
        throw_load_failure(name, read_open_file(descriptor, file));
    }
    return root;
}

}  // namespace

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

void require_readable(const std::string& file) {
    open_for_reading(file);
}

void throw_refused_file(const std::string& name, const std::string& path) {
    constexpr std::uint64_t kMostBytes = std::uint64_t{64} << 20;  // to be read for an excerpt
    const Descriptor file(::open(path.c_str(), O_RDONLY | O_CLOEXEC));
    struct stat status {};
    const bool isSmall = file.is_open() && ::fstat(file.number(), &status) == 0 &&
                         static_cast<std::uint64_t>(status.st_size) <= kMostBytes;
    throw_load_failure(name, isSmall && is_regular(file) ? read_open_file(file, path) : "");
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
    ::unlink(path.c_str());
    copy_ = std::move(made.second);
    path_ = "/proc/self/fd/" + std::to_string(copy_.number());
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
    });
}

void add_max_spool(CLI::App& app, std::uint64_t& bytes) {
    app.add_option("--max-spool", bytes,
                   "Refuse input from a pipe that is larger, like 500MB (4GB)")
        ->transform(CLI::AsSizeValue(true));
}

int for_each_file(const std::vector<std::string>& files,
                  const std::function<ExitCode(const std::string& file)>& work) {
    int gravest = kSuccess;
    bool found = false;
    for (const std::string& file : files) {
        try {
            found = work(file) == kSuccess || found;
        } catch (const Failure& failure) {
            report(failure);
            gravest = std::max(gravest, static_cast<int>(failure.code()));
        }
    }
    if (gravest != kSuccess) return gravest;
    return found ? kSuccess : kNothingFound;
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

Progress::Progress(std::string text) {
    if (isatty(STDERR_FILENO) == 1 && !HeldMessages::is_held())
        ticker_ = std::make_unique<Ticker>(terminal_safe(clipped(text, 60)));
}

Progress::~Progress() = default;

}  // namespace uxtool
