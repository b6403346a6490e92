// The list of all commands.
#include "support/table.h"

namespace uxtool {
namespace {

struct CommandListOptions {
    std::string format = "text";
    std::string output;
};

int list_commands(const CommandListOptions& options) {
    Table table({"command", "summary"});
    for (const Command* command : all_commands()) {
        table.add({std::string(command->name), std::string(command->summary)});
    }
    return print_table(options.output, table, options.format);
}

const Command kListCommands{"list", "List all commands",
                            "uxtree list\n"
                            "uxtree list -f json",
                            runs<list_commands>([](CLI::App& app, CommandListOptions& options) {
                                add_format(app, options.format, table_formats());
                                add_output(app, options.output);
                            })};

}  // namespace
}  // namespace uxtool
