// The command-line tool: finds the command, reads its options, turns failures into exit codes.
#include <algorithm>
#include <new>
#include <optional>

#include <fmt/format.h>

#include "uxtree/host/embedded_files.h"

#include "support/command.h"
#include "support/file.h"
#include "support/input.h"
#include "support/output.h"
#include "support/platform.h"
#include "support/style.h"
#include "support/text.h"

namespace uxtool {
namespace {

using Words = std::vector<std::string>;

// The commands whose names begin with prefix, with their summaries.
std::string command_lines(const std::string& prefix) {
    std::size_t width = 0;
    for (const Command* command : all_commands()) {
        if (command->name.starts_with(prefix)) width = std::max(width, command->name.size());
    }
    std::string text = "Commands:\n";
    for (const Command* command : all_commands()) {
        if (!command->name.starts_with(prefix)) continue;
        text += fmt::format("  {:<{}}  {}\n", command->name, width, command->summary);
    }
    return text;
}

std::string general_help() {
    std::string text =
        "Work on option and data trees, and on any XML file.\n"
        "Usage: uxtree COMMAND [OPTIONS] ...\n\n" +
        command_lines("");
    text +=
        "\nOptions:\n"
        "  -h, --help      this help; uxtree COMMAND --help explains a command\n"
        "  -V, --version   the version\n"
        "  --color WHEN    colour the output: auto, always or never\n"
        "\nExamples:\n"
        "  uxtree show tree.xml                        what a tree holds\n"
        "  uxtree outline big.xml                      which elements and attributes occur where\n"
        "  uxtree query '/root|item|@id' a.xml b.xml   the values that a path reaches\n"
        "\nExit codes: 0 done, 1 nothing found, 2 usage, 3 unreadable or not XML, 4 refused\n";
    return text;
}

// Nothing that was begun stays behind.
void clean_up() {
    UXRemoveUnfinishedFiles();
    remove_temporaries();
}

void print(const std::string& text) {
    Output out("");
    out.write(text);
    out.finish();
}

[[noreturn]] void throw_usage(const std::string& message, const std::string& hint) {
    throw Failure(kUsage, "uxtree", message, hint);
}

// How many of the first words name the command.
std::size_t name_length(const Command& command) {
    return static_cast<std::size_t>(std::count(command.name.begin(), command.name.end(), ' ')) + 1;
}

bool is_named_by(const Command& command, const Words& words) {
    const auto length = static_cast<Words::difference_type>(name_length(command));
    return std::ssize(words) >= length &&
           join({words.begin(), words.begin() + length}, " ") == command.name;
}

const Command* find_command(const Words& words) {
    for (const Command* command : all_commands()) {
        if (is_named_by(*command, words)) return command;
    }
    return nullptr;
}

// The second words of the commands that begin with the given word.
Words names_in_group(const std::string& group) {
    Words names;
    for (const Command* command : all_commands()) {
        if (command->name.starts_with(group + " ")) {
            names.emplace_back(command->name.substr(group.size() + 1));
        }
    }
    return names;
}

// "theme --help", where all commands of that group have one more word.
bool asks_for_group_help(const Words& words) {
    const bool asks = words.size() == 2 && (words[1] == "--help" || words[1] == "-h");
    return asks && !names_in_group(words[0]).empty();
}

[[noreturn]] void throw_unknown_command(const Words& words) {
    const Words inGroup = names_in_group(words[0]);
    const bool grouped = !inGroup.empty();
    const std::string others =
        grouped ? "uxtree " + words[0] + " ... with one of: " + short_list(inGroup)
                : "'uxtree list' shows all commands";
    if (grouped && words.size() < 2) throw_usage("'" + words[0] + "' needs one more word", others);
    Words names = inGroup;
    if (!grouped) {
        for (const Command* command : all_commands()) {
            names.emplace_back(command->name.substr(0, command->name.find(' ')));
        }
    }
    const std::string prefix = grouped ? words[0] + " " : "";
    const std::string& wrong = words[grouped ? 1 : 0];
    const std::string meant = nearest(wrong, names);
    throw_usage("unknown command '" + prefix + wrong + "'",
                meant.empty() ? others : "did you mean 'uxtree " + prefix + meant + "'?");
}

// The options of a command and its sub-commands as people write them in full.
Words long_options(const CLI::App& app) {
    Words names;
    for (const CLI::Option* option : app.get_options()) {
        for (const std::string& name : option->get_lnames()) names.push_back("--" + name);
    }
    for (const CLI::App* sub : app.get_subcommands()) {
        const Words below = long_options(*sub);
        names.insert(names.end(), below.begin(), below.end());
    }
    return names;
}

// An option that nobody knows is told before what is missing, which may stand behind it.
[[noreturn]] void throw_bad_arguments(const CLI::App& app, const CLI::ParseError& error) {
    std::string help = app.get_name();
    for (const CLI::App* edit : app.get_subcommands()) help += " " + edit->get_name();
    help += " --help";
    for (const std::string& word : app.remaining(true)) {
        if (!word.starts_with("-") || word == "-" || word == "--") continue;
        const std::string meant = nearest(word, long_options(app));
        throw_usage("unknown option '" + word + "'",
                    is_regular_file(word) ? "the file of that name is ./" + word
                    : meant.empty()       ? help
                                          : "did you mean '" + meant + "'?");
    }
    throw_usage(error.what(), help);
}

// Reads the options of one command and runs it.
int run_command(const Command& command, Words arguments) {
    const PreparedCommand prepared = prepare(command);
    CLI::App& app = *prepared.app;
    if (app.get_option_no_throw("--backup") != nullptr) {
        arguments = with_backup_option(std::move(arguments));
    }
    std::reverse(arguments.begin(), arguments.end());  // as CLI11 takes them
    try {
        app.parse(std::move(arguments));
    } catch (const CLI::CallForHelp&) {
        print(app.help());
        return kSuccess;
    } catch (const CLI::ParseError& error) {
        throw_bad_arguments(app, error);
    }
    set_colour_choice(*prepared.colour);
    return prepared.action();
}

// Takes the options in front of the command away: --color goes on to the command. Yields the exit
// code when an option ends the run.
std::optional<int> take_leading_options(Words& words, Words& forwarded) {
    while (!words.empty() && words[0].starts_with("-")) {
        const std::string option = words[0];
        words.erase(words.begin());
        if (option == "-h" || option == "--help") {
            print(general_help());
            return kSuccess;
        }
        if (option == "-V" || option == "--version") {
            print("uxtree " UXTREE_VERSION "\n");
            return kSuccess;
        }
        if (!option.starts_with("--color")) {
            throw_usage("unknown option '" + option + "' before the command", "uxtree --help");
        }
        forwarded.push_back(option);
        if (option == "--color" && !words.empty()) {
            forwarded.push_back(words[0]);
            words.erase(words.begin());
        }
    }
    return std::nullopt;
}

int run(Words words) {
    Words arguments;
    if (const std::optional<int> done = take_leading_options(words, arguments)) return *done;
    if (!words.empty() && words[0] == "help") {  // "help show" is "show --help"
        words.erase(words.begin());
        words.emplace_back("--help");
        if (words.size() == 1) return run(words);
    }
    if (words.empty()) {
        const std::string text = general_help();
        std::fwrite(text.data(), 1, text.size(), stderr);
        return kUsage;
    }
    const Command* command = find_command(words);
    if (command == nullptr && asks_for_group_help(words)) {
        print("Usage: uxtree " + words[0] + " COMMAND [OPTIONS] ...\n\n" +
              command_lines(words[0] + " "));
        return kSuccess;
    }
    if (command == nullptr) throw_unknown_command(words);
    const auto named = static_cast<Words::difference_type>(name_length(*command));
    arguments.insert(arguments.end(), words.begin() + named, words.end());
    return run_command(*command, std::move(arguments));
}

}  // namespace
}  // namespace uxtool

int main(int argc, char** argv) {
    using namespace uxtool;
    clean_up_before_death(clean_up);
    survive_failed_writes();
    try {
        set_command_line(Words(argv + 1, argv + argc));
        return run(command_line());
    } catch (const ClosedPipe&) {
        return kSuccess;
    } catch (const Failure& failure) {
        report(failure);
        return failure.code();
    } catch (const std::bad_alloc&) {
        report(Failure(kRefused, "out of memory"));
        return kRefused;
    } catch (const std::exception& error) {
        report(Failure(kRefused, error.what()));
        return kRefused;
    }
}
