// Manual pages: one for the tool, and one for each group, command and edit.
#include <filesystem>

#include "support/output.h"
#include "support/places.h"
#include "support/text.h"

namespace uxtool {
namespace {

constexpr std::size_t kWidth = 78;  // of a line of the page's source

// Text for troff: a backslash, a leading dot or quote, and a hyphen have meanings of their own.
std::string troff(const std::string& text) {
    std::string out;
    for (const char c : text) {
        const bool lineStarts = out.empty() || out.back() == '\n';
        if (lineStarts && (c == '.' || c == '\'')) out += "\\&";
        if (c == '\\') {
            out += "\\e";
        } else if (c == '-') {
            out += "\\-";
        } else {
            out += c;
        }
    }
    return out;
}

// Running text, broken at blanks; a line of more is the source's own affair.
std::string paragraph(const std::string& text) {
    std::string out;
    std::string line;
    for (std::size_t at = 0; at < text.size();) {
        const std::size_t end = std::min(text.find_first_of(" \n", at), text.size());
        const std::string word = troff(text.substr(at, end - at));
        at = end + 1;
        if (word.empty()) continue;
        if (!line.empty() && line.size() + 1 + word.size() > kWidth) {
            out += line + "\n";
            line.clear();
        }
        line += (line.empty() ? "" : " ") + word;
    }
    return out + line + "\n";
}

// Lines as they are; long ones are continued in the source.
std::string examples(const std::string& text) {
    std::string out;
    std::size_t length = 0;
    for (const char c : troff(text)) {
        if (c == ' ' && length > kWidth - 20) {
            out += " \\\n";
            length = 0;
            continue;
        }
        out += c;
        length = c == '\n' ? 0 : length + 1;
    }
    return out;
}

std::string sentence(std::string text) {
    if (!text.empty() && text.back() != '.') text += ".";
    return paragraph(text);
}

// "uxtree-edit-sort" for the words "edit sort".
std::string page_name(const std::string& words) {
    std::string name = "uxtree";
    if (!words.empty()) name += "-" + words;
    std::replace(name.begin(), name.end(), ' ', '-');
    return name;
}

std::string reference(const std::string& words) {
    return ".BR " + troff(page_name(words)) + " (1)";
}

std::string option_entry(const OptionFacts& option) {
    const std::string names = join(option.names, ", ");
    std::string heading = names.empty() ? ".I " + troff(option.value) : ".B " + troff(names);
    if (!names.empty() && !option.value.empty()) {
        heading = ".BI \"" + troff(names) + " \" " + troff(option.value);
    }
    const std::string text = ".TP\n" + heading + "\n" + sentence(option.description);
    return option.choices.empty() ? text : text + sentence("One of: " + join(option.choices, ", "));
}

std::string synopsis(const Place& place) {
    // An edit stands behind the files of its command.
    if (!place.behind.empty()) {
        return "uxtree " + place.behind + " [OPTIONS] [FILE...] " +
               place.name.substr(place.behind.size() + 1) + " " + place.usage;
    }
    return "uxtree " + place.name + (place.name.empty() ? "" : " ") + place.usage;
}

constexpr const char* kAboutAll =
    ".SH EXIT STATUS\n"
    "0 done, 1 nothing found, 2 usage, 3 unreadable or not XML, 4 refused.\n";

constexpr const char* kEnvironment =
    ".SH ENVIRONMENT\n"
    ".B NO_COLOR\n"
    "turns colour off;\n"
    ".B TMPDIR\n"
    "is the folder of temporary files.\n"
    ".PP\n"
    ".B UXTREE_HOST_UTILITY_MODULE\n"
    "and\n"
    ".B UXTREE_HOST_MESSAGE_MODULE\n"
    "name the modules that convert texts of ranges and translate labels, by an\n"
    "absolute path or by a plain name.\n"
    "A relative path is not taken, and neither is any in a program that runs with\n"
    "more rights than its caller.\n";

std::string heading(const Place& place) {
    std::string title = page_name(place.name);
    std::transform(title.begin(), title.end(), title.begin(),
                   [](unsigned char c) { return static_cast<char>(std::toupper(c)); });
    return ".TH " + troff(title) +
           " 1 " UXTREE_DATE " \"uxtree " UXTREE_VERSION "\" \"User Commands\"\n.SH NAME\n" +
           paragraph(page_name(place.name) + " - " + place.summary) + ".SH SYNOPSIS\n" +
           paragraph(synopsis(place));
}

// The words that lead on, each with what its page is about.
std::string list_of_next(const Place& place, const std::vector<Place>& places) {
    if (place.next.empty()) return "";
    std::string text = ".SH COMMANDS\n";
    for (const std::string& word : place.next) {
        const std::string name = place.name.empty() ? word : place.name + " " + word;
        const auto found = std::find_if(places.begin(), places.end(),
                                        [&](const Place& each) { return each.name == name; });
        text += ".TP\n" + reference(name) + "\n" + sentence(found->summary);
    }
    return text;
}

std::string page(const Place& place, const std::vector<Place>& places) {
    std::string text = heading(place);
    if (place.name.empty()) {
        text += ".SH DESCRIPTION\n";
        text +=
            "Results go to standard output, or to a file that is replaced at once;\n"
            "everything else goes to standard error.\n"
            "A file named \\- is standard input.\n"
            "JSON is always a list.\n";
    }
    text += list_of_next(place, places);
    if (!place.options.empty()) text += ".SH OPTIONS\n";
    for (const OptionFacts& option : place.options) text += option_entry(option);
    if (!place.examples.empty())
        text += ".SH EXAMPLES\n.nf\n" + examples(place.examples) + "\n.fi\n";
    text += kAboutAll;
    if (place.name.empty()) return text + kEnvironment;
    text += ".SH SEE ALSO\n" + reference("");
    const std::size_t last = place.name.rfind(' ');
    if (last != std::string::npos) text += " ,\n" + reference(place.name.substr(0, last));
    return text + "\n";
}

struct ManualOptions {
    std::vector<std::string> words;
    std::string folder;
    std::string output;
};

int write_all_pages(const std::string& folder) {
    const std::vector<Place> places = all_places();
    for (const Place& place : places) {
        Output out((std::filesystem::path(folder) / (page_name(place.name) + ".1")).string());
        out.write(page(place, places));
        const int status = out.finish();
        if (status != kSuccess) return status;
    }
    return kSuccess;
}

int run_manual(const ManualOptions& options) {
    if (!options.folder.empty()) return write_all_pages(options.folder);
    const std::string name = join(options.words, " ");
    const std::vector<Place> places = all_places();
    const auto found = std::find_if(places.begin(), places.end(),
                                    [&](const Place& place) { return place.name == name; });
    if (found == places.end()) {
        throw Failure(kUsage, "man", "there is no command '" + name + "'",
                      "'uxtree list' shows all commands");
    }
    Output out(options.output);
    out.write(page(*found, places));
    return out.finish();
}

const Command kManual{
    "man", "Print the manual page of the tool, or of a command",
    "uxtree man | man -l -\n"
    "uxtree man edit sort | man -l -\n"
    "uxtree man --all ~/.local/share/man/man1   # then: man uxtree-edit-sort",
    runs<run_manual>([](CLI::App& app, ManualOptions& options) {
        app.add_option("COMMAND", options.words, "The words of a command")->type_name("");
        auto* all = app.add_option("--all", options.folder, "Write all pages into a folder")
                        ->type_name("FOLDER");
        add_output(app, options.output)->excludes(all);
    })};

}  // namespace
}  // namespace uxtool
