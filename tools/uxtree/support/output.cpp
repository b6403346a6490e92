// Writing results to standard output or into a file, and edited trees into theirs.
#include "support/output.h"

#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <system_error>

#include "support/input.h"
#include "support/replace_files.h"
#include "support/text.h"
#include "support/text_diff.h"
#include "support/tree.h"

namespace uxtool {
namespace {

constexpr std::size_t kBufferSize = 65536;

bool is_standard_output(const std::string& file) {
    return file.empty() || file == "-";
}

std::string output_name(const std::string& file) {
    return is_standard_output(file) ? "stdout" : file;
}

// What is no regular file cannot be replaced by one.
bool exists_but_not_regular(const std::string& file) {
    std::error_code error;
    const std::filesystem::file_status status = std::filesystem::status(file, error);
    return std::filesystem::exists(status) && !std::filesystem::is_regular_file(status);
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

std::string_view bytes_of(const CStringUTF8& text) {
    return {static_cast<const char*>(text), static_cast<std::size_t>(text.GetLength())};
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

void write_content(const CStringUTF8& content, const std::string& file) {
    Output out(file);
    out.write(bytes_of(content));
    if (is_standard_output(file)) out.end_line();
    out.finish();
}

// For places that the host cannot replace: the same bytes.
void save_to_stream(const UXXmlWrapperBase& root, const std::string& file) {
    UXSaveOptions options;
    options.form = UXSaveForm::kPlain;
    CStringUTF8 content;
    if (UXSaveToMemory(&root, &content, options, nullptr) == 0)
        throw_save_failure(output_name(file));
    write_content(content, file);
}

}  // namespace

Output::Output(const std::string& file) : name_(output_name(file)), palette_(false) {
    if (is_standard_output(file)) {
        descriptor_ = kStandardOutput;
    } else {
        open_file(file);
    }
    palette_ = palette_for_descriptor(descriptor_);
    isTerminal_ = descriptor_ >= 0 && is_terminal(descriptor_);
}

void Output::open_file(const std::string& file) {
    if (!exists_but_not_regular(file)) {
        replaced_.emplace(file.c_str());
        if (replaced_->Error() != 0) throw_write_error(replaced_->Error());
        return;
    }
    file_ = open_to_write(file);
    if (!file_.is_open()) throw_write_error(errno);
    descriptor_ = file_.number();
}

void Output::write(std::string_view text) {
    if (text.empty()) return;
    if (isEmpty_) first_ = text.front();
    isEmpty_ = false;
    last_ = text.back();
    if (text.size() < kBufferSize || isTerminal_) {
        buffer_ += text;
        return flush_when_full();
    }
    flush();
    put(text);
}

void Output::end_line() {
    const bool isFile = kind_of(descriptor_) == FileKind::kRegular;
    const bool isWide = first_ == '\0' || first_ == '\xff' || first_ == '\xfe' || last_ == '\0';
    if (!isFile && !isWide && last_ != '\n') write("\n");
}

void Output::flush_when_full() {
    if (buffer_.size() < kBufferSize) return;
    const std::string rest = isTerminal_ ? buffer_.substr(cut_character(buffer_)) : "";
    buffer_.resize(buffer_.size() - rest.size());
    flush();
    buffer_ = rest;
}

void Output::flush() {
    put(isTerminal_ ? terminal_safe(buffer_) : buffer_);
    buffer_.clear();
}

void Output::put(std::string_view bytes) {
    if (replaced_) {
        if (!replaced_->Write(bytes)) throw_write_error(replaced_->Error());
    } else if (!write_fully(descriptor_, bytes)) {
        throw_write_error(errno);
    }
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
    if (replaced_) throw_not_replaced(name_, error);
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

bool print_text_difference(std::string_view before, std::string_view after,
                           const std::string& name) {
    Output out("");
    const std::string difference = unified_diff(before, after, name, name);
    if (difference.empty()) note("nothing would change");
    write_difference(out, difference);
    out.finish();
    return !difference.empty();
}

void tell_unkept(const std::string& name) {
    const CStringUTF8 unkept = UXGetUnkeptProperties();
    if (!unkept.IsEmpty()) note(name + ": not kept: " + to_string(unkept));
}

void throw_not_in_place() {
    throw Failure(kUsage, "-i", "standard input cannot be edited in place", "use -o FILE");
}

CLI::Option* InPlace::add_options(CLI::App& app, CLI::Option* output) {
    CLI::Option* const option =
        app.add_flag("-i,--in-place", chosen,
                     "Write back into the input file; -i.bak keeps the old one as FILE.bak")
            ->excludes(output);
    app.add_option("--backup", backupSuffix, "With -i: the suffix under which the old file stays")
        ->type_name("SUFFIX")
        ->needs(option);
    app.add_flag("-n,--dry-run", dryRun, "Print what would change, and change nothing");
    return option;
}

CLI::Option* EditTarget::add_options(CLI::App& app) {
    CLI::Option* inPlace = inPlace_.add_options(app, add_output(app, output_));
    CLI::Option* plain =
        app.add_flag("--plain", plain_, "Write the tree alone: no comments, no white space");
    app.add_option("--indent", indent_, "Format the tree anew, without comments: N blanks a level")
        ->type_name("N")
        ->check(CLI::Range(0, 100))
        ->excludes(plain);
    app.add_flag("--no-ids", noIds_, "Leave out IDs that the edit gave to nodes")->excludes(plain);
    return inPlace;
}

UXXmlWrapperBase EditTarget::open(const std::string& file) const {
    return plain_ && !inPlace_.dryRun ? open_tree(file) : open_tree_for_editing(file);
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
    if (report.idsWritten != 0) {
        note(counted(report.idsWritten, "new ID") + " written; --no-ids writes none");
    }
    if (report.idsLeftOut != 0) note(counted(report.idsLeftOut, "new ID") + " left out");
    if (report.commentsLeftOut == 1) note("1 comment or instruction left out");
    if (report.commentsLeftOut > 1) {
        note(fmt::format("{} comments or instructions left out", report.commentsLeftOut));
    }
}

bool EditTarget::save(const UXXmlWrapperBase& root, const std::string& inputFile) const {
    if (inPlace_.dryRun) return print_difference(root, inputFile);
    if (!inPlace_.chosen) {
        save_to(root, output_);
        return true;
    }
    ReplacedFiles files(inPlace_.backupSuffix);
    const bool changed = add_to(files, root, inputFile);
    files.commit();
    return changed;
}

bool EditTarget::add_to(ReplacedFiles& files, const UXXmlWrapperBase& root,
                        const std::string& inputFile) const {
    if (inputFile == "-" || exists_but_not_regular(inputFile)) throw_not_in_place();
    const Progress progress("writing " + inputFile);
    const CStringUTF8 content = content_of(root, inputFile);
    CStringUTF8 before;
    if (UXGetSourceBytes(&root, &before) != 0 && content == before) return false;
    files.add(inputFile, bytes_of(content));
    return true;
}

void EditTarget::save_to(const UXXmlWrapperBase& root, const std::string& output) const {
    if (!is_standard_output(output) && !exists_but_not_regular(output)) {
        save_content(root, resolved(output), output);
        return;
    }
    write_content(content_of(root, output_name(output)), output);
}

void EditTarget::save_content(const UXXmlWrapperBase& root, const std::string& path,
                              const std::string& name) const {
    const Progress progress("writing " + name);
    UXSaveReport report;
    if (UXSaveAs(&root, path.c_str(), save_options(), &report) == 0) throw_save_failure(name);
    tell_unkept(name);
    tell(report);
}

CStringUTF8 EditTarget::content_of(const UXXmlWrapperBase& root, const std::string& name) const {
    CStringUTF8 content;
    UXSaveReport report;
    if (UXSaveToMemory(&root, &content, save_options(), &report) == 0) throw_save_failure(name);
    tell(report);
    return content;
}

bool EditTarget::print_difference(const UXXmlWrapperBase& root,
                                  const std::string& inputFile) const {
    CStringUTF8 before;
    UXGetSourceBytes(&root, &before);
    const std::string name = input_name(inputFile);
    return print_text_difference(to_string(before), to_string(content_of(root, name)), name);
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
