// Writing results to standard output or into a file, and edited trees into theirs.
#include "support/output.h"

#include <algorithm>
#include <cerrno>
#include <climits>
#include <cstdlib>
#include <filesystem>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "support/input.h"
#include "support/text.h"
#include "support/text_diff.h"
#include "support/tree.h"

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

[[noreturn]] void throw_save_failure(const std::string& name) {
    const CStringUTF8 reason = UXGetLastSaveError();
    throw Failure(kRefused, name,
                  reason.IsEmpty() ? "cannot be written" : static_cast<const char*>(reason));
}

// Saves through the host and hands on its reason when that is refused.
void save_through_host(const UXXmlWrapperBase& root, const std::string& path,
                       const std::string& name) {
    const Progress progress("writing " + name);
    if (root.Save(path.c_str(), 0) == 0) throw_save_failure(name);
}

void write_difference(Output& out, std::string_view difference) {
    while (!difference.empty()) {
        const std::size_t end = std::min(difference.find('\n'), difference.size() - 1);
        const std::string line(difference.substr(0, end));
        difference.remove_prefix(end + 1);
        const bool heads = line.starts_with("---") || line.starts_with("+++");
        const bool added = line.starts_with('+');
        const bool paints = !heads && (added || line.starts_with('-'));
        out.write(paints ? out.palette().paint(added ? Role::kValue : Role::kError, line) : line);
        out.write("\n");
    }
}

void tell_unkept(const std::string& name) {
    const CStringUTF8 unkept = UXGetUnkeptProperties();
    if (!unkept.IsEmpty()) note(name + ": not kept: " + to_string(unkept));
}

// The same file under another name, or where the file system cannot do that, a copy: nobody else can
// read it before it is complete.
bool link_or_copy(const std::string& file, const std::string& other) {
    if (::link(file.c_str(), other.c_str()) == 0) return true;
    struct stat status {};
    if (errno == EEXIST || ::stat(file.c_str(), &status) != 0) return false;
    const std::string content = read_all(file);
    Descriptor copy(::open(other.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600));
    return copy.is_open() && write_fully(copy.number(), content) &&
           ::fchmod(copy.number(), status.st_mode & 0777U) == 0 && ::fsync(copy.number()) == 0 &&
           copy.close();
}

// The old file stays as the backup, with all that belongs to it, since the new one takes its name.
// A link under the name of the backup is replaced, not followed.
void keep_backup(const std::string& file, const std::string& backup) {
    const std::string made = fmt::format("{}.tmp{}", backup, ::getpid());
    if (link_or_copy(file, made) && ::rename(made.c_str(), backup.c_str()) == 0) {
        ::unlink(made.c_str());  // still there when the backup was this very file before
        return;
    }
    const std::string reason = system_error();
    ::unlink(made.c_str());
    throw Failure(kRefused, backup, reason);
}

// "-in" looks like -i and -n, the dry run, and would write the file.
void require_suffix(const std::string& argument, const std::string& suffix) {
    const bool isWord = !suffix.empty() && std::all_of(suffix.begin(), suffix.end(), [](char c) {
        return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
    });
    if (!isWord) return;
    throw Failure(kUsage, "uxtree", "'" + argument + "' is no suffix: it looks like options",
                  "write -i." + suffix + " for a copy FILE." + suffix +
                      ", or the options apart: -i -" + suffix);
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
    isTerminal_ = descriptor_ >= 0 && ::isatty(descriptor_) == 1;
}

void Output::open_file(const std::string& file) {
    if (!exists_but_not_regular(file)) {
        replaced_.emplace(file.c_str());
        if (replaced_->Error() != 0) throw_write_error(replaced_->Error());
        return;
    }
    file_ = Descriptor(::open(file.c_str(), O_WRONLY | O_CLOEXEC));
    if (!file_.is_open()) throw_write_error(errno);
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
    if (replaced_) {
        if (!replaced_->Write(buffer_)) throw_write_error(replaced_->Error());
    } else if (!write_fully(descriptor_, isTerminal_ ? terminal_safe(buffer_) : buffer_)) {
        throw_write_error(errno);
    }
    buffer_.clear();
}

int Output::finish(int exitCode) {
    const bool failed = exitCode > kNothingFound;
    if (!replaced_ || !failed) flush();
    if (!replaced_ || failed) return exitCode;
    if (!replaced_->Commit()) throw_write_error(replaced_->Error());
    tell_unkept(name_);
    replaced_.reset();
    return exitCode;
}

void Output::throw_write_error(int error) const {
    if (error == EPIPE) throw ClosedPipe();
    errno = error;
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
    app.add_flag("-n,--dry-run", dryRun_, "Print what would change, and change nothing");
    CLI::Option* plain =
        app.add_flag("--plain", plain_, "Write the tree alone: no comments, no white space");
    app.add_option("--indent", indent_, "Format the tree anew, without comments: N blanks a level")
        ->type_name("N")
        ->check(CLI::Range(0, 100))
        ->excludes(plain);
    app.add_flag("--no-ids", noIds_, "Leave out IDs that the edit gave to nodes")->excludes(plain);
}

UXXmlWrapperBase EditTarget::open(const std::string& file) const {
    return plain_ && !dryRun_ ? open_tree(file) : open_tree_for_editing(file);
}

UXSaveOptions EditTarget::save_options() const {
    UXSaveOptions options;
    if (plain_) options.form = UXSaveForm::kPlain;
    if (indent_ >= 0) options.form = UXSaveForm::kIndented;
    options.indent = indent_;
    options.ids = noIds_ ? UXSaveIds::kLeaveOut : UXSaveIds::kWrite;
    return options;
}

void EditTarget::tell(const UXSaveReport& report) const {
    const auto count = [](std::size_t ids) {
        return fmt::format("{} new ID{}", ids, ids == 1 ? "" : "s");
    };
    if (report.idsWritten != 0) note(count(report.idsWritten) + " written; --no-ids leaves out");
    if (report.idsLeftOut != 0) note(count(report.idsLeftOut) + " left out");
    if (report.commentsLeftOut != 0) {
        note(fmt::format("{} comment{} or instruction{} left out", report.commentsLeftOut,
                         report.commentsLeftOut == 1 ? "" : "s",
                         report.commentsLeftOut == 1 ? "" : "s"));
    }
}

void EditTarget::save(const UXXmlWrapperBase& root, const std::string& inputFile) const {
    if (dryRun_) {
        print_difference(root, inputFile);
    } else if (inPlace_) {
        save_in_place(root, inputFile);
    } else {
        save_to(root, output_);
    }
}

void EditTarget::save_to(const UXXmlWrapperBase& root, const std::string& output) const {
    if (!is_standard_output(output) && !exists_but_not_regular(output)) {
        save_content(root, resolved(output), output);
        return;
    }
    const std::string content = content_of(root, is_standard_output(output) ? "stdout" : output);
    Output out(output);
    out.write(content);
    const bool ended = !content.empty() && content.back() == '\n';
    if (!ended && is_standard_output(output) && ::isatty(STDOUT_FILENO) == 1) out.write("\n");
    out.finish();
}

void EditTarget::save_content(const UXXmlWrapperBase& root, const std::string& path,
                              const std::string& name) const {
    const Progress progress("writing " + name);
    UXSaveReport report;
    if (UXSaveAs(&root, path.c_str(), save_options(), &report) == 0) throw_save_failure(name);
    tell_unkept(name);
    tell(report);
}

std::string EditTarget::content_of(const UXXmlWrapperBase& root, const std::string& name) const {
    CStringUTF8 content;
    UXSaveReport report;
    if (UXSaveToMemory(&root, &content, save_options(), &report) == 0) throw_save_failure(name);
    tell(report);
    return to_string(content);
}

void EditTarget::print_difference(const UXXmlWrapperBase& root,
                                  const std::string& inputFile) const {
    CStringUTF8 before;
    UXGetSourceBytes(&root, &before);
    const std::string name = input_name(inputFile);
    Output out("");
    const std::string difference =
        unified_diff(to_string(before), content_of(root, name), name, name);
    if (difference.empty()) note("nothing would change");
    write_difference(out, difference);
    out.finish();
}

void EditTarget::save_in_place(const UXXmlWrapperBase& root, const std::string& inputFile) const {
    if (inputFile == "-" || exists_but_not_regular(inputFile)) {
        throw Failure(kUsage, "-i", "standard input cannot be edited in place", "use -o FILE");
    }
    if (!backupSuffix_.empty()) {
        keep_backup(resolved(inputFile), inputFile + backupSuffix_);
    }
    save_content(root, resolved(inputFile), inputFile);
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
        const std::string suffix = argument.substr(prefix);
        require_suffix(argument, suffix);
        out.emplace_back("-i");
        if (!suffix.empty()) out.push_back("--backup=" + suffix);
    }
    return out;
}

}  // namespace uxtool
