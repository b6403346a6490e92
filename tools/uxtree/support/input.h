// Reading trees and files, and the progress line.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include <CLI/CLI.hpp>

#include "uxtree/host/host.h"

#include "support/failure.h"
#include "support/file.h"

namespace uxtool {

// The name of an input in messages and results: "stdin" for "-".
std::string input_name(const std::string& file);

// No pipe, device, folder or "-", whatever is called so; false as well when that cannot be told.
bool is_regular_file(const std::string& file);

// Loads an XML file strictly and yields its root; "-" is standard input, and pipes work too. Throws
// Failure with kUnreadable, located as file:line:column where the XML is broken.
UXXmlWrapperBase open_tree(const std::string& file);
// The same for a file that messages call by another name.
UXXmlWrapperBase open_tree(const std::string& file, const std::string& name);

// The same for a tree that is to be saved with the layout of its file.
UXXmlWrapperBase open_tree_for_editing(const std::string& file);

// The whole content of a file, of "-" or of a pipe; throws Failure with kUnreadable.
std::string read_all(const std::string& file);

// Says why the last load of this thread failed, where it did; path is what the library read. Throws
// Failure with kUnreadable.
[[noreturn]] void throw_refused_file(const std::string& name, const std::string& path);
// The same for content that was read before.
[[noreturn]] void throw_refused_text(const std::string& name, std::string_view content);
// The same as a warning; consequence is what that means for the result.
void warn_of_refused_file(const std::string& name, const std::string& consequence);

// A file name that the library can open by itself: file, or for "-" and pipes a temporary copy that
// lives as long as the object and has no name that others could see. Throws Failure with kRefused
// when the copy would be larger than maxSpool bytes.
class NamedInput {
public:
    static constexpr std::uint64_t kMaxSpool = std::uint64_t{4} << 30;

    explicit NamedInput(const std::string& file, std::uint64_t maxSpool = kMaxSpool);
    NamedInput(const NamedInput&) = delete;
    NamedInput& operator=(const NamedInput&) = delete;
    const std::string& path() const { return path_; }

private:
    std::string path_;
    Descriptor copy_;
};

// The option --max-spool of a command that reads NamedInput.
void add_max_spool(CLI::App& app, std::uint64_t& bytes);

// Calls work for each file. A file that fails is reported and does not keep the others from being
// worked on. Work yields kSuccess or kNothingFound. The result is the gravest failure, else
// kSuccess when work succeeded for any file, else kNothingFound.
int for_each_file(const std::vector<std::string>& files,
                  const std::function<ExitCode(const std::string& file)>& work);

// A line on standard error while the object lives, shown after half a second and only on a
// terminal, and taken away at the end.
class Progress {
public:
    explicit Progress(const std::string& text);
    ~Progress();
    Progress(const Progress&) = delete;
    Progress& operator=(const Progress&) = delete;

private:
    struct Ticker;
    std::unique_ptr<Ticker> ticker_;
};

}  // namespace uxtool
