// Folders of spectrum files.
#include "support/spectrum_files.h"

#include <algorithm>
#include <cctype>
#include <filesystem>
#include <system_error>

#include <fmt/format.h>

#include "support/text.h"

namespace uxtool {
namespace {

namespace fs = std::filesystem;

bool has_spectrum_extension(const fs::path& path) {
    std::string extension = path.extension().string();
    for (char& c : extension) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    return extension == ".n42" || extension == ".xml";
}

// Links to folders are not followed, so that no loop is walked.
void add_folder(const std::string& folder, std::vector<SpectrumFileName>& out) {
    std::error_code error;
    std::vector<std::string> found;
    std::size_t others = 0;
    for (fs::recursive_directory_iterator at(folder, error), end; !error && at != end;
         at.increment(error)) {
        std::error_code unknown;
        if (at->is_directory(unknown)) continue;
        if (at->is_regular_file(unknown) && has_spectrum_extension(at->path())) {
            found.push_back(at->path().string());
        } else {
            ++others;
        }
    }
    if (error) throw Failure(kUnreadable, folder, error.message());
    if (others > 0) {
        note(fmt::format("{}: {} not ending in .n42 or .xml passed over", folder,
                         counted(others, "file")));
    }
    if (found.empty()) note(folder + " has no files ending in .n42 or .xml");
    std::sort(found.begin(), found.end());
    for (std::string& path : found) out.push_back({std::move(path), true});
}

}  // namespace

CLI::Option* add_spectrum_files(CLI::App& app, std::vector<std::string>& files) {
    return app
        .add_option("FILE", files,
                    "N42 files, or folders of files ending in .n42 or .xml; - is standard input")
        ->required()
        ->type_name("");
}

std::vector<SpectrumFileName> spectrum_files(const std::vector<std::string>& files) {
    std::vector<SpectrumFileName> out;
    for (const std::string& file : files) {
        std::error_code unknown;
        if (file != "-" && fs::is_directory(file, unknown)) {
            add_folder(file, out);
        } else {
            out.push_back({file, false});
        }
    }
    return out;
}

bool passes_over(const SpectrumFileName& file, const Failure& failure) {
    if (!file.fromFolder || std::string_view(failure.what()).substr(0, 11) != "no N42 file") {
        return false;
    }
    note(file.path + " passed over: " + failure.what());
    return true;
}

}  // namespace uxtool
