// Where results go.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include <fmt/format.h>

#include "uxtree/host/embedded.h"
#include "uxtree/host/embedded_files.h"
#include "uxtree/host/host.h"

#include "support/command.h"
#include "support/file.h"
#include "support/replace_files.h"
#include "support/style.h"

namespace uxtool {

// Standard output for "" and "-", else a file that is replaced at once by finish(): until then, and
// when a command fails, an old file stays as it is. Devices and pipes are written directly.
// Throws Failure with kRefused when the place cannot be written, ClosedPipe when nobody reads.
class Output {
public:
    explicit Output(const std::string& file);
    Output(const Output&) = delete;
    Output& operator=(const Output&) = delete;

    void write(std::string_view text);
    template <typename... Args>
    void print(fmt::format_string<Args...> format, Args&&... args) {
        fmt::format_to(std::back_inserter(buffer_), format, std::forward<Args>(args)...);
        flush_when_full();
    }
    // Ends what was written by write() in a line break, where it did not end so and people or programs
    // read on; a regular file gets the bytes alone, and so does text that is not made of bytes.
    void end_line();
    // Writes what is left, puts the file in its place and yields exitCode. A file is not put in
    // place when the code is that of a failure, nor when finish is never reached.
    int finish(int exitCode = kSuccess);
    // Colours for what goes here.
    const Palette& palette() const { return palette_; }

private:
    void open_file(const std::string& file);
    void flush_when_full();
    void flush();
    void put(std::string_view bytes);
    [[noreturn]] void throw_write_error(int error) const;

    std::string name_;                      // in messages
    std::optional<UXFileOutput> replaced_;  // nothing when the place is written directly
    Descriptor file_;
    int descriptor_ = -1;  // of what is written directly
    bool isTerminal_ = false;
    bool isEmpty_ = true;
    char first_ = ' ';  // of the bytes given to write()
    char last_ = ' ';
    std::string buffer_;
    Palette palette_;
};

// Notes what the file that was replaced last had, and the new one could not get.
void tell_unkept(const std::string& name);

// Prints on standard output in which lines two states of a file differ, as diff -u does, or notes that
// they do not; yields whether they do.
bool print_text_difference(std::string_view before, std::string_view after,
                           const std::string& name);

// Writes a tree to the file of -o, at once, or to standard output.
void save_tree(const UXXmlWrapperBase& root, const std::string& output);

// -i, --backup and -n of commands that change files.
struct InPlace {
    CLI::Option* add_options(CLI::App& app, CLI::Option* output);  // yields that of -i

    bool chosen = false;
    bool dryRun = false;
    std::string backupSuffix;
};

// Standard input has no place.
[[noreturn]] void throw_not_in_place();

// Where an edited tree goes: -o FILE, -i (back into the file it came from), else standard output.
//
//     EditTarget target;  target.add_options(app);        when the options are declared
//     UXXmlWrapperBase root = target.open(options.file);   "-" is standard input
//     target.save(root, options.file);                     when the work is done
//
// The file's layout is kept: what the edit is not about stays as it was written. --plain and
// --indent write the tree anew; -n prints the difference and writes nothing. -iSUFFIX keeps the old
// file under its name with SUFFIX appended. Saving is atomic; a tree that cannot be written is
// refused and the old file stays.
class EditTarget {
public:
    CLI::Option* add_options(CLI::App& app);  // yields that of -i
    UXXmlWrapperBase open(const std::string& file) const;
    // Yields whether the file differs from before, or would; with -o, always. What does not differ is
    // not written in place.
    bool save(const UXXmlWrapperBase& root, const std::string& inputFile) const;
    // In place, but together with others: the same without putting it in its place.
    bool add_to(ReplacedFiles& files, const UXXmlWrapperBase& root,
                const std::string& inputFile) const;
    bool is_in_place() const { return inPlace_.chosen; }
    bool is_dry_run() const { return inPlace_.dryRun; }
    const std::string& backup_suffix() const { return inPlace_.backupSuffix; }

private:
    void save_content(const UXXmlWrapperBase& root, const std::string& path,
                      const std::string& name) const;
    void save_to(const UXXmlWrapperBase& root, const std::string& output) const;
    CStringUTF8 content_of(const UXXmlWrapperBase& root, const std::string& name) const;
    bool print_difference(const UXXmlWrapperBase& root, const std::string& inputFile) const;
    void tell(const UXSaveReport& report) const;
    UXSaveOptions save_options() const;

    std::string output_;
    InPlace inPlace_;
    bool plain_ = false;
    int indent_ = -1;  // -1: as it was
    bool noIds_ = false;
};

// Rewrites "-iSUFFIX" and "--in-place=SUFFIX" to "-i --backup=SUFFIX", as EditTarget declares them.
std::vector<std::string> with_backup_option(std::vector<std::string> arguments);

}  // namespace uxtool
