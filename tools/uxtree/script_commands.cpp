// uxtree run, repl: scripts.
#include "script/script.h"
#include "support/command.h"

namespace uxtool {
namespace {

void add_limits(CLI::App& app, LimitOptions& limits) {
    app.add_option("--time", limits.seconds, "Stop after this many seconds; 0: never")
        ->type_name("SECONDS")
        ->check(CLI::Range(0.0, 1e8))
        ->capture_default_str();
    app.add_option("--depth", limits.depth, "Calls inside each other, at most")
        ->type_name("N")
        ->check(CLI::Range(1, 100000))
        ->capture_default_str();
    app.add_option("--memory", limits.megabytes, "Memory of the whole process; 0: as there is")
        ->type_name("MB")
        ->check(CLI::Range(0, 100000000))
        ->capture_default_str();
}

const Command kRun{
    "run", "Run a script",
    "uxtree run rename.as *.xml\n"
    "uxtree run -e 'Tree t; t.load(args[0]); print(t.count);' tree.xml\n"
    "uxtree run --time 5 - < script.as      # from standard input",
    runs<run_script>([](CLI::App& app, RunOptions& options) {
        app.add_option("FILE", options.words,
                       "The script, - for standard input, and what its main(array<string>@) "
                       "receives; -- in front of arguments that begin with -");
        app.add_option("-e,--code", options.code, "Run this code instead of a file; it sees args")
            ->type_name("CODE");
        add_limits(app, options.limits);
    })};

const Command kRepl{
    "repl", "Try out the script language line by line",
    "uxtree repl\n"
    "echo '1 + 2' | uxtree repl   # lines from elsewhere; the code tells of failures",
    runs<run_dialogue>([](CLI::App& app, LimitOptions& options) { add_limits(app, options); })};

}  // namespace
}  // namespace uxtool
