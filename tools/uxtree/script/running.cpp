// Running scripts, and a dialogue in their language.
#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>

#define AS_USE_NAMESPACE
#include <angelscript.h>
#include <editline/readline.h>

#include "uxtree/kit/version.h"
#include "uxtree/script.h"

#include "script/script.h"
#include "script/small_memory.h"
#include "show.h"
#include "support/file.h"
#include "support/output.h"
#include "support/platform.h"

namespace uxtool {
namespace {

// --- what is printed -------------------------------------------------------------------------------

// Prints are collected in a place that a signal handler can still write out.
char waiting[8192];
volatile std::size_t waitingSize = 0;
bool nobodyReads = false;

void flush_prints() {
    const bool written = write_fully(kStandardOutput, {waiting, waitingSize});
    waitingSize = 0;
    if (!written) {
        nobodyReads = errno == EPIPE;
        throw std::runtime_error("cannot write to standard output: " + system_error());
    }
}

void print(std::string_view text) {
    if (waitingSize + text.size() > sizeof waiting) flush_prints();
    if (text.size() > sizeof waiting) {
        if (write_fully(kStandardOutput, text)) return;
        nobodyReads = errno == EPIPE;
        throw std::runtime_error("cannot write to standard output: " + system_error());
    }
    std::memcpy(waiting + waitingSize, text.data(), text.size());
    waitingSize = waitingSize + text.size();
}

// --- limits ----------------------------------------------------------------------------------------

void write_error(std::string_view text) {
    [[maybe_unused]] const bool written = write_fully(kStandardError, text);
}

// Ends the process as far as that is safe from anywhere.
[[noreturn]] void end_at_limit(std::string_view why) {
    [[maybe_unused]] const bool written = write_fully(kStandardOutput, {waiting, waitingSize});
    write_error(why);
    UXRemoveUnfinishedFiles();
    remove_temporaries();
    std::_Exit(kRefused);
}

// The compiler, or a call of the script, that does not come back: loops and functions of the script
// are stopped by the engine itself.
void end_late() {
    end_at_limit("error: stopped within a call, or in compiling, longer than --time allows\n");
}

void start_alarm(double seconds) {
    if (seconds > 0) call_after(seconds + 1 + seconds / 10, end_late);
}

// The language does not survive a refusal of the small pieces that it works with; a large one is an
// array of the script, which becomes an exception.
void* allocate(std::size_t size) {
    void* const piece = take_memory(size);
    if (piece == nullptr && size < 1 << 20) {
        end_at_limit("error: out of memory; --memory MB allows more\n");
    }
    return piece;
}

void limit_megabytes(std::uint64_t megabytes) {
    AngelScript::asSetGlobalMemoryFunctions(allocate, give_memory);
#if !defined(__SANITIZE_ADDRESS__)  // which reserves more than any limit
    if (megabytes == 0) return;
    if (!limit_memory(megabytes << 20)) {
        throw Failure(kRefused, "cannot limit the memory: " + system_error());
    }
#else
    if (megabytes != LimitOptions().megabytes)
        note("built with a sanitizer: no limit kept for memory");
#endif
}

UXScriptLimits limits_of(const LimitOptions& options) {
    return {options.seconds, options.depth};
}

void require_libraries_that_fit() {
    const std::string problem = ux_version_problem();
    if (!problem.empty()) throw Failure(kRefused, problem);
    if (ux_version_fits(UXTREE_VERSION) == 1) return;
    throw Failure(kRefused, fmt::format("this is version " UXTREE_VERSION
                                        ", which does not fit libuxtree_kit {}",
                                        ux_version()));
}

UXScriptEngine make_engine() {
    require_libraries_that_fit();
    UXScriptOptions options;
    options.print = print;
    options.extend = UXRegisterScriptKit;
    UXScriptEngine engine(options);
    if (!engine.ready()) throw Failure(kRefused, "no script engine: " + engine.problem());
    return engine;
}

ExitCode code_of(UXScriptOutcome outcome) {
    switch (outcome) {
        case UXScriptOutcome::kDone:
            return kSuccess;
        case UXScriptOutcome::kNotCompiled:
        case UXScriptOutcome::kNoFunction:
            return kUsage;
        default:
            return kRefused;
    }
}

void tell_problem(const UXScriptEngine& engine, UXScriptOutcome outcome) {
    write_error(engine.problem());
    if (outcome == UXScriptOutcome::kTimeOut) write_error("hint: --time SECONDS allows more\n");
    if (outcome == UXScriptOutcome::kNoMemory) write_error("hint: --memory MB allows more\n");
}

// --- run -------------------------------------------------------------------------------------------

std::string standard_input() {
    return {std::istreambuf_iterator<char>(std::cin), {}};
}

void require_readable(const std::string& path) {
    const Descriptor file = open_to_read(path);
    const bool isFolder = file.is_open() && kind_of(file.number()) == FileKind::kFolder;
    if (isFolder) errno = EISDIR;
    if (isFolder || !file.is_open()) throw Failure(kUnreadable, path, system_error());
}

// Compiles what was asked for and yields the arguments that are left.
std::vector<std::string> compile(const RunOptions& options, UXScriptEngine& engine) {
    std::vector<std::string> words = options.words;
    const double seconds = options.limits.seconds;
    bool compiled = false;
    if (!options.code.empty()) {
        start_alarm(seconds);
        compiled =
            engine.compile("-e", "void main(array<string>@ args) {\n" + options.code + "\n}", 0);
    } else if (words.empty()) {
        throw Failure(kUsage, "uxtree", "no script is named", "uxtree run --help");
    } else {
        const std::string file = words.front();
        words.erase(words.begin());
        if (file == "-") {
            const std::string code = standard_input();
            start_alarm(seconds);
            compiled = engine.compile("stdin", code);
        } else {
            require_readable(file);
            start_alarm(seconds);
            compiled = engine.compile_file(file);
        }
    }
    call_nothing_after();
    write_error(engine.problem());  // warnings too
    if (!compiled) throw Failure(kUsage, "the script was not compiled");
    return words;
}

}  // namespace

int run_script(const RunOptions& options) {
    limit_megabytes(options.limits.megabytes);
    UXScriptEngine engine = make_engine();
    const std::vector<std::string> arguments = compile(options, engine);
    start_alarm(options.limits.seconds);
    int result = 0;
    const UXScriptOutcome outcome = engine.run_main(arguments, result, limits_of(options.limits));
    call_nothing_after();
    if (!nobodyReads) flush_prints();
    if (nobodyReads) throw ClosedPipe();
    if (outcome != UXScriptOutcome::kDone) {
        tell_problem(engine, outcome);
        return code_of(outcome);
    }
    if (result < 0 || result > 255) {
        throw Failure(kRefused, "main() yields " + std::to_string(result) +
                                    ", which is no exit code from 0 to 255");
    }
    return result;
}

// --- dialogue --------------------------------------------------------------------------------------

namespace {

UXScriptEngine* completing = nullptr;  // the engine whose names the line editor offers

char* next_name(const char* text, int state) {
    static std::vector<std::string> names;
    static std::size_t next = 0;
    if (state == 0) {
        names = completing->names(text);
        next = 0;
    }
    return next < names.size() ? ::strdup(names[next++].c_str()) : nullptr;
}
char** complete(const char* text, int, int) {
    return rl_completion_matches(text, next_name);
}

// Lines of a terminal with history and completion, or of a pipe.
class Lines {
public:
    explicit Lines(UXScriptEngine& engine) : terminal_(uxtool::is_terminal(kStandardInput)) {
        if (!terminal_) return;
        completing = &engine;
        static char name[] = "uxtree";
        static char breaks[] = " \t\n\"'()[]{}<>=+-*/%&|!?:;,@";
        rl_readline_name = name;
        rl_completer_word_break_characters = breaks;
        rl_attempted_completion_function = complete;
        rl_completion_append_character = 0;
        using_history();
        find_history();
        if (!history_.empty()) read_history(history_.c_str());
    }
    Lines(const Lines&) = delete;
    Lines& operator=(const Lines&) = delete;
    ~Lines() {
        if (!terminal_ || history_.empty()) return;
        const std::string whole = history_ + ".new";  // another dialogue may end just now
        std::error_code error;
        if (write_history(whole.c_str()) == 0) std::filesystem::rename(whole, history_, error);
    }

    bool is_terminal() const { return terminal_; }
    bool next(const char* prompt, std::string& line) {
        if (!terminal_) return static_cast<bool>(std::getline(std::cin, line));
        char* const read = ::readline(prompt);
        if (read == nullptr) return false;
        line = read;
        std::free(read);
        return true;
    }
    void remember(const std::string& line) const {
        if (terminal_ && !line.empty()) add_history(line.c_str());
    }

private:
    void find_history() {
        const char* state = std::getenv("XDG_STATE_HOME");
        const char* home = std::getenv("HOME");
        std::filesystem::path folder;
        if (state != nullptr && *state != '\0') {
            folder = state;
        } else if (home != nullptr && *home != '\0') {
            folder = std::filesystem::path(home) / ".local" / "state";
        } else {
            return;
        }
        std::error_code error;
        std::filesystem::create_directories(folder / "uxtree", error);
        if (!error) history_ = (folder / "uxtree" / "history").string();
    }

    bool terminal_;
    std::string history_;
};

// Brackets that are still open; texts and comments do not count.
int open_brackets(const std::string& code) {
    int open = 0;
    char quote = '\0';
    for (std::size_t i = 0; i < code.size(); ++i) {
        const char c = code[i];
        if (quote != '\0') {
            if (c == '\\') ++i;
            if (c == quote || c == '\n') quote = '\0';
        } else if (c == '"' || c == '\'') {
            quote = c;
        } else if (code.compare(i, 2, "//") == 0) {
            i = std::min(code.find('\n', i), code.size() - 1);
        } else if (std::strchr("([{", c) != nullptr) {
            ++open;
        } else if (std::strchr(")]}", c) != nullptr) {
            --open;
        }
    }
    return open;
}

const char* const kHelp =
    "An expression prints its value, a declaration stays, a statement is run.\n"
    "  Tree t\n"
    "  t.load(\"tree.xml\")\n"
    "  t[\"Input/Range1\"]           shows that branch\n"
    "  t.select(\"//c\")             all elements c\n"
    "Tab completes names. quit, or the end of the input, ends the dialogue.\n";

}  // namespace

int run_dialogue(const LimitOptions& options) {
    limit_megabytes(options.megabytes);
    UXScriptEngine engine = make_engine();
    Lines lines(engine);
    const auto show = [](const UXXmlWrapperBase& node) {
        flush_prints();
        Output out("");
        show_tree(out, node);
        out.finish();
    };
    if (lines.is_terminal()) print("uxtree " UXTREE_VERSION ": help, quit\n");
    int code = kSuccess;
    std::string line;
    while (flush_prints(), lines.next("> ", line)) {
        std::string more;
        while (open_brackets(line) > 0 && lines.next("... ", more)) line += "\n" + more;
        lines.remember(line);
        if (line == "quit" || line == "exit") break;
        if (line == "help") {
            print(kHelp);
            continue;
        }
        start_alarm(options.seconds);
        const UXScriptOutcome outcome = engine.run_line(line, limits_of(options), show);
        call_nothing_after();
        if (nobodyReads) throw ClosedPipe();
        flush_prints();
        tell_problem(engine, outcome);
        if (outcome != UXScriptOutcome::kDone) code = code_of(outcome);
    }
    // People have seen what failed; a program behind a pipe has only the code.
    return lines.is_terminal() ? kSuccess : code;
}

}  // namespace uxtool
