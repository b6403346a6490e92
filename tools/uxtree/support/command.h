// The registry of the tool's commands.
//
// To add commands for a topic, add one file tools/uxtree/<topic>_commands.cpp and nothing else:
//
//     #include "support/command.h"
//     #include "support/input.h"
//     #include "support/output.h"
//     namespace uxtool {
//     namespace {
//
//     struct CountOptions {
//         std::string file;
//         std::string output;
//     };
//
//     int run_count(const CountOptions& options) {
//         UXXmlWrapperBase root = open_tree(options.file);  // "-" is standard input
//         Output out(options.output);
//         out.print("{}\n", root.GetNodeCount());
//         return out.finish();                       // kSuccess
//     }
//
//     const Command kCount{
//         "count",                                    // "theme save" makes a command of a group
//         "Count the children of the root",           // one line, no full stop
//         "uxtree count tree.xml\n"                   // examples, one a line; "# ..." is a remark
//         "uxtree count - < tree.xml   # from standard input",
//         runs<run_count>([](CLI::App& app, CountOptions& options) {
//             add_file(app, options.file);            // positional FILE
//             add_output(app, options.output);        // -o FILE
//         })};
//
//     }  // namespace
//     }  // namespace uxtool
//
// Rules: results go to the Output, everything else to standard error (note(), warn()). A failure is
// thrown as Failure (support/failure.h), which carries the exit code and a hint; nothing is written
// then. Tables: support/table.h gives aligned text, CSV and JSON from one Table; JSON is always a
// list. Commands that edit a tree: EditTarget in support/output.h adds -o and -i[SUFFIX] and saves.
// Only headers below include/ and support/ are included. Tests: tests/cli/<topic>_cases.py.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <CLI/CLI.hpp>

#include "support/failure.h"

namespace uxtool {

// Runs a command after its options were read; yields the exit code.
using Action = std::function<int()>;

// One row of the registry. Constructing it registers it, so it is a constant at namespace scope. It
// holds nothing but places of constants, since each start of the tool makes all of them.
class Command {
public:
    // declare(app) declares the options and yields what to run; a lambda that captures nothing.
    template <typename Declare>
    Command(std::string_view commandName, std::string_view commandSummary,
            std::string_view commandExamples, Declare)
        : name(commandName),
          summary(commandSummary),
          examples(commandExamples),
          setup([](CLI::App& app) -> Action { return Declare{}(app); }),
          next(std::exchange(last, this)) {}
    Command(const Command&) = delete;
    Command& operator=(const Command&) = delete;

    std::string_view name;      // words separated by one blank
    std::string_view summary;   // one line
    std::string_view examples;  // lines
    Action (*setup)(CLI::App&);
    const Command* next;  // the one that was registered before

    static const Command* last;  // the one that was registered last
};

// What a command with options of its own declares: the options, and that run takes them.
template <typename Options>
Options options_of_run(int (*run)(const Options&));

template <auto run, typename Declare>
struct Runs {
    Action operator()(CLI::App& app) const {
        auto options = std::make_shared<decltype(options_of_run(run))>();
        Declare{}(app, *options);
        return [options] { return run(*options); };
    }
};
template <auto run, typename Declare>
Runs<run, Declare> runs(Declare) {
    return {};
}

// The words behind the tool's name, as main() was given them.
const std::vector<std::string>& command_line();
void set_command_line(std::vector<std::string> words);

// All commands, sorted by name.
std::vector<const Command*> all_commands();

// A command's own command line, with the options that all commands have, and what to run once it
// was parsed.
struct PreparedCommand {
    std::unique_ptr<CLI::App> app;
    Action action;
    std::shared_ptr<std::string> colour;  // the choice of --color
};
PreparedCommand prepare(const Command& command);

// A positional argument FILE; "-" is standard input.
CLI::Option* add_file(CLI::App& app, std::string& file);
// One or more of them.
CLI::Option* add_files(CLI::App& app, std::vector<std::string>& files);
// -o FILE, --output FILE: where results go; "" and "-" are standard output.
CLI::Option* add_output(CLI::App& app, std::string& file);
// -f NAME, --format NAME: one of the given names; format holds the default before and the choice
// after. A program may ask for a version of the shapes of JSON and CSV, as in json@1.
CLI::Option* add_format(CLI::App& app, std::string& format,
                        const std::vector<std::string>& choices);

}  // namespace uxtool
