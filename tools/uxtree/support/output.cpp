// Writing results to standard output or into a file, and edited trees into theirs.
#include "support/output.h"

#include <cerrno>
#include <climits>
#include <cstdlib>
#include <filesystem>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "support/input.h"

namespace uxtool {
namespace {

constexpr std::size_t kBufferSize = 65536;

bool is_standard_output(const std::string& file) {
    return file.empty() || file == "-";
}

// The file behind symbolic links, so that replacing it keeps the link.
std::string resolved(const std::string& file) {
    std::error_code error;
    std::filesystem::path path = std::filesystem::weakly_canonical(file, error);
    return error ? file : path.string();
}

bool exists_but_not_regular(const std::string& file) {
    struct stat status {};
    return ::stat(file.c_str(), &status) == 0 && !S_ISREG(status.st_mode);
}

// The permissions of the file to replace, or those of a new file.
mode_t permissions_for(const std::string& file) {
    struct stat status {};
    if (::stat(file.c_str(), &status) == 0) return status.st_mode & 07777U;
    const mode_t mask = ::umask(0);
    ::umask(mask);
    return 0666U & ~mask;
}

// Saves through the host and hands on its reason when that is refused.
void save_through_host(const UXXmlWrapperBase& root, const std::string& path,
                       const std::string& name) {
    const Progress progress("writing " + name);
    if (root.Save(path.c_str(), 0) != 0) return;
    const CStringUTF8 reason = UXGetLastSaveError();
    throw Failure(kRefused, name,
                  reason.IsEmpty() ? "cannot be written" : static_cast<const char*>(reason));
}

// For places that the host cannot replace: the same bytes, by way of a temporary file.
void save_to_stream(const UXXmlWrapperBase& root, const std::string& file) {
    const std::string path = create_temporary().first;
    std::string content;
    try {
        save_through_host(root, path, is_standard_output(file) ? "stdout" : file);
        content = read_all(path);
    } catch (...) {
        ::unlink(path.c_str());
        throw;
    }
    ::unlink(path.c_str());
    Output out(file);
    out.write(content);
    if (is_standard_output(file) && ::isatty(STDOUT_FILENO) == 1) out.write("\n");
    out.finish();
}

}  // namespace

Output::Output(const std::string& file) : palette_(false) {
    if (is_standard_output(file)) {
        name_ = "stdout";
        descriptor_ = STDOUT_FILENO;
    } else {
        name_ = file;
        open_file(file);
    }
    palette_ = palette_for_descriptor(descriptor_);
}

Output::~Output() {
    if (!temporary_.empty()) ::unlink(temporary_.c_str());
}

void Output::open_file(const std::string& file) {
    if (exists_but_not_regular(file)) {
        file_ = Descriptor(::open(file.c_str(), O_WRONLY | O_CLOEXEC));
    } else {
        target_ = resolved(file);
        std::string path = target_ + ".XXXXXX";
        file_ = Descriptor(::mkstemp(path.data()));
        if (file_.is_open()) {
            temporary_ = path;
            ::fchmod(file_.number(), permissions_for(target_));
        }
    }
    if (!file_.is_open()) throw_write_error();
    descriptor_ = file_.number();
}

void Output::write(std::string_view text) {
    buffer_ += text;
    flush_when_full();
}

void Output::flush_when_full() {
    if (buffer_.size() >= kBufferSize) flush();
}

void Output::flush() {
    if (!write_fully(descriptor_, buffer_)) throw_write_error();
    buffer_.clear();
}

int Output::finish(int exitCode) {
    if (temporary_.empty() || exitCode <= kNothingFound) flush();
    if (temporary_.empty() || exitCode > kNothingFound) return exitCode;
    if (::fsync(descriptor_) != 0 || !file_.close() ||
        ::rename(temporary_.c_str(), target_.c_str()) != 0) {
        throw_write_error();
    }
    temporary_.clear();
    return exitCode;
}

void Output::throw_write_error() const {
    if (errno == EPIPE) throw ClosedPipe();
    throw Failure(kRefused, name_, system_error());
}

void save_tree(const UXXmlWrapperBase& root, const std::string& output) {
    if (is_standard_output(output) || exists_but_not_regular(output)) {
        save_to_stream(root, output);
    } else {
        save_through_host(root, resolved(output), output);
    }
}

void EditTarget::add_options(CLI::App& app) {
    CLI::Option* output = add_output(app, output_);
    CLI::Option* inPlace =
        app.add_flag("-i,--in-place", inPlace_,
                     "Write back into the input file; -i.bak keeps the old one as FILE.bak")
            ->excludes(output);
    app.add_option("--backup", backupSuffix_, "With -i: the suffix under which the old file stays")
        ->type_name("SUFFIX")
        ->needs(inPlace);
}

void EditTarget::save(const UXXmlWrapperBase& root, const std::string& inputFile) const {
    if (inPlace_) {
        save_in_place(root, inputFile);
    } else {
        save_tree(root, output_);
    }
}

void EditTarget::save_in_place(const UXXmlWrapperBase& root, const std::string& inputFile) const {
    if (inputFile == "-" || exists_but_not_regular(inputFile)) {
        throw Failure(kUsage, "-i", "standard input cannot be edited in place", "use -o FILE");
    }
    if (!backupSuffix_.empty()) {
        std::error_code error;
        std::filesystem::copy_file(inputFile, inputFile + backupSuffix_,
                                   std::filesystem::copy_options::overwrite_existing, error);
        if (error) throw Failure(kRefused, inputFile + backupSuffix_, error.message());
    }
    save_through_host(root, resolved(inputFile), inputFile);
}

std::vector<std::string> with_backup_option(std::vector<std::string> arguments) {
    constexpr std::string_view kLong = "--in-place=";
    std::vector<std::string> out;
    bool optionsEnded = false;
    for (std::string& argument : arguments) {
        optionsEnded = optionsEnded || argument == "--";
        const std::size_t prefix = optionsEnded                  ? 0
                                   : argument.starts_with(kLong) ? kLong.size()
                                   : argument.starts_with("-i") && argument.size() > 2 ? 2
                                                                                       : 0;
        if (prefix == 0) {
            out.push_back(std::move(argument));
            continue;
        }
        out.emplace_back("-i");
        if (argument.size() > prefix) out.push_back("--backup=" + argument.substr(prefix));
    }
    return out;
}

}  // namespace uxtool
