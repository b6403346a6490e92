// What the tool says about itself: the list of commands, shell completion, the manual page.
#include <algorithm>
#include <map>

#include "support/table.h"

namespace uxtool {
namespace {

struct ListOptions {
    std::string format = "text";
    std::string output;
};

int run_list(const ListOptions& options) {
    Table table({"command", "summary"});
    for (const Command* command : all_commands()) table.add({command->name, command->summary});
    Output out(options.output);
    write_table(out, table, options.format);
    return out.finish();
}

const Command kList{"list", "List all commands",
                    "uxtree list\n"
                    "uxtree list -f json",
                    [](CLI::App& app) {
                        auto options = std::make_shared<ListOptions>();
                        add_format(app, options->format, table_formats());
                        add_output(app, options->output);
                        return [options] { return run_list(*options); };
                    }};

// "-o" and "--output" for each option of a command, blanks between.
std::string option_words(const CLI::App& app) {
    std::string words;
    for (const CLI::Option* option : app.get_options()) {
        for (const std::string& name : option->get_lnames()) words += " --" + name;
        for (const std::string& name : option->get_snames()) words += " -" + name;
    }
    return words;
}

constexpr const char* kCompletionEnd = R"(    esac
    if [[ $COMP_CWORD -eq 1 ]]; then
        words=$first
    elif [[ $COMP_CWORD -eq 2 && -n $second ]]; then
        words=$second
    elif [[ $current != -* ]]; then
        COMPREPLY=($(compgen -f -- "$current"))
        return
    fi
    COMPREPLY=($(compgen -W "$words" -- "$current"))
}
complete -o filenames -F _uxtree uxtree
)";

// A bash function with one case row for each command.
std::string completion_script() {
    std::string first = "--help --version -V --color";
    std::map<std::string, std::string> groups;
    std::string rows;
    for (const Command* command : all_commands()) {
        const std::size_t blank = command->name.find(' ');
        const std::string word = command->name.substr(0, blank);
        const bool grouped = blank != std::string::npos;
        if (!grouped || groups.count(word) == 0) first += " " + word;
        if (grouped) groups[word] += " " + command->name.substr(blank + 1);
        rows += fmt::format("        '{}') words='{}' ;;\n", command->name,
                            option_words(*prepare(*command).app).substr(1));
    }
    std::string seconds;
    for (const auto& [word, names] : groups) {
        seconds += fmt::format("        {}) second='{}' ;;\n", word, names.substr(1));
    }
    return "# bash completion for uxtree; made by uxtree completion\n"
           "_uxtree() {\n"
           "    local current=${COMP_WORDS[COMP_CWORD]} words= second=\n"
           "    local first='" +
           first + "'\n    case ${COMP_WORDS[1]} in\n" + seconds +
           "        *) ;;\n"
           "    esac\n"
           "    case ${COMP_WORDS[1]}${second:+ ${COMP_WORDS[2]}} in\n" +
           rows + kCompletionEnd;
}

struct TextOptions {
    std::string output;
};

int write_text(const TextOptions& options, const std::string& text) {
    Output out(options.output);
    out.write(text);
    return out.finish();
}

const Command kCompletion{"completion", "Print the completion script for bash",
                          "uxtree completion -o ~/.local/share/bash-completion/completions/uxtree\n"
                          "eval \"$(uxtree completion)\"   # for this shell",
                          [](CLI::App& app) {
                              auto options = std::make_shared<TextOptions>();
                              add_output(app, options->output);
                              return
                                  [options] { return write_text(*options, completion_script()); };
                          }};

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

std::string manual_entry(const Command& command) {
    const PreparedCommand prepared = prepare(command);
    std::string text = ".SS " + troff(command.name) + "\n" + troff(command.summary) + ".\n";
    for (const CLI::Option* option : prepared.app->get_options()) {
        const std::string name = option->get_name();
        if (name == "--help" || name == "--color") continue;
        std::string value = option->get_items_expected_max() > 0 ? option->get_type_name() : "";
        value = value.substr(0, value.find(':'));
        text += ".TP\n.B " + troff(option->get_name(false, true)) +
                (value.empty() ? "" : " " + troff(value)) + "\n" +
                troff(option->get_description()) + "\n";
    }
    return text + ".P\n.nf\n" + troff(command.examples) + "\n.fi\n";
}

std::string manual() {
    std::string text =
        ".TH UXTREE 1 \"\" \"uxtree " UXTREE_VERSION
        "\" \"User Commands\"\n"
        ".SH NAME\nuxtree \\- work on option and data trees, and on any XML file\n"
        ".SH SYNOPSIS\n.B uxtree\n.I COMMAND\n[\\fIOPTIONS\\fR] ...\n"
        ".SH DESCRIPTION\n"
        "Results go to standard output, or to a file that is replaced at once; everything else\n"
        "goes to standard error. A file named \\- is standard input. JSON is always a list.\n"
        ".SH COMMANDS\n";
    for (const Command* command : all_commands()) text += manual_entry(*command);
    return text +
           ".SH OPTIONS OF ALL COMMANDS\n"
           ".TP\n.B \\-\\-color WHEN\nColour the output: auto, always or never.\n"
           ".TP\n.B \\-h, \\-\\-help\nExplain the command.\n"
           ".SH EXIT STATUS\n"
           "0 done, 1 nothing found, 2 usage, 3 unreadable or not XML, 4 refused.\n"
           ".SH ENVIRONMENT\n"
           "NO_COLOR turns colour off; TMPDIR is the folder of temporary files.\n"
           "UXTREE_HOST_UTILITY_MODULE and UXTREE_HOST_MESSAGE_MODULE name the modules that "
           "convert\n"
           "texts of ranges and translate labels, by an absolute path or by a plain name. A "
           "relative\n"
           "path is not taken, and neither is any in a program that runs with more rights than "
           "its\n"
           "caller.\n";
}

const Command kManual{"man", "Print the manual page",
                      "uxtree man | man -l -\n"
                      "uxtree man -o uxtree.1",
                      [](CLI::App& app) {
                          auto options = std::make_shared<TextOptions>();
                          add_output(app, options->output);
                          return [options] { return write_text(*options, manual()); };
                      }};

}  // namespace
}  // namespace uxtool
