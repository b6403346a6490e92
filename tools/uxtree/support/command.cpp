// The registry of the tool's commands.
#include "support/command.h"

#include <algorithm>
#include <utility>

#include "support/table.h"

namespace uxtool {
namespace {

std::vector<std::string> commandLine;

std::string indented(std::string_view lines) {
    std::string out = "  ";
    for (const char c : lines) {
        out += c;
        if (c == '\n') out += "  ";
    }
    return out;
}

}  // namespace

const Command* Command::last = nullptr;

const std::vector<std::string>& command_line() {
    return commandLine;
}

void set_command_line(std::vector<std::string> words) {
    commandLine = std::move(words);
}

std::vector<const Command*> all_commands() {
    std::vector<const Command*> commands;
    for (const Command* at = Command::last; at != nullptr; at = at->next) commands.push_back(at);
    std::sort(commands.begin(), commands.end(),
              [](const Command* a, const Command* b) { return a->name < b->name; });
    return commands;
}

PreparedCommand prepare(const Command& command) {
    std::string title = "uxtree ";
    title += command.name;
    PreparedCommand prepared;
    prepared.app = std::make_unique<CLI::App>(std::string(command.summary), title);
    prepared.colour = std::make_shared<std::string>("auto");
    CLI::App& app = *prepared.app;
    app.set_help_flag("-h,--help", "Print this help");
    app.get_formatter()->column_width(28);
    app.add_option("--color", *prepared.colour, "Colour the output: auto, always or never")
        ->type_name("WHEN")
        ->check(CLI::IsMember({"auto", "always", "never"}));
    prepared.action = command.setup(app);
    app.footer("Examples:\n" + indented(command.examples));
    return prepared;
}

CLI::Option* add_file(CLI::App& app, std::string& file) {
    return app.add_option("FILE", file, "XML file; - is standard input")->required()->type_name("");
}

CLI::Option* add_files(CLI::App& app, std::vector<std::string>& files) {
    return app.add_option("FILE", files, "XML files; - is standard input")
        ->required()
        ->type_name("");
}

CLI::Option* add_output(CLI::App& app, std::string& file) {
    return app.add_option("-o,--output", file, "Write to FILE instead of standard output")
        ->type_name("FILE");
}

namespace {

// The version of the shapes that docs/output.md tells of. It grows when a key, a column or a type goes
// away or means something else.
constexpr std::string_view kShapes = "1";

// Takes the version off json@1 and csv@1; yields why it cannot be written.
std::string take_version(std::string& format, const std::vector<std::string>& choices) {
    const std::size_t at = format.find('@');
    const std::string name = format.substr(0, at);
    const bool isChoice = std::find(choices.begin(), choices.end(), name) != choices.end();
    if (at == std::string::npos || !isChoice || (name != "json" && name != "csv")) return "";
    if (format.substr(at + 1) != kShapes) {
        return fmt::format("{} is not known: this version writes {}@{}", format, name, kShapes);
    }
    format = name;
    return "";
}

}  // namespace

CLI::Option* add_format(CLI::App& app, std::string& format,
                        const std::vector<std::string>& choices) {
    if (std::find(choices.begin(), choices.end(), "csv") != choices.end()) {
        app.add_flag_callback(
            "--csv-safe", [] { set_csv_safe(true); },
            "With csv: an apostrophe before texts that a spreadsheet would take for formulas");
    }
    return app.add_option("-f,--format", format, "Output format (default " + format + ")")
        ->type_name("NAME")
        ->check(CLI::IsMember(choices))
        ->transform(CLI::Validator(
            [choices](std::string& chosen) { return take_version(chosen, choices); }, ""));
}

}  // namespace uxtool
