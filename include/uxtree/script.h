// Scripts: the script entry points and the types that they take, for engines of the C-like language
// of AngelScript (https://www.angelcode.com/angelscript).
//
// Two libraries belong to this header. libuxtree_script asks of a host no more than the contract in
// include/uxtree/host/, so that it works on every host. libuxtree_script_kit adds what the embedded
// host alone can do (selection, files that keep their layout); with another host in place of the
// embedded one it cannot be loaded, and UXRegisterScriptKit is not to be called.
//
// Time and depth of calls of a script are bounded by UXScriptLimits. Memory is not: `uxtree run` and
// `uxtree repl` bound the memory of their whole process (RLIMIT_AS), which is nothing that a library
// may do to the program that it is a part of.
//
// Debian's build of AngelScript keeps its names in the namespace AngelScript: define
// AS_USE_NAMESPACE before including <angelscript.h>.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "uxtree/host/node.h"

#if defined(__GNUC__)
#define UXSCRIPT_API __attribute__((visibility("default")))
#else
#define UXSCRIPT_API
#endif

namespace AngelScript {
class asIScriptEngine;
class asIScriptFunction;
class asIScriptModule;
}  // namespace AngelScript

// --- registering into an engine ------------------------------------------------------------------

// Adds the types text, Tree and the records, all script entry points, and the further operations
// that scripts lack otherwise, to an engine. A type string of the size of std::string and the
// add-on's array may be there already, and are added when they are not; an engine with other ones is
// refused. The string that is added writes numbers as nodes do. Turns on
// asEP_ALLOW_UNSAFE_REFERENCES, without which a failed call could not leave a variable as it was.
// 0, or below 0 when something is refused: the engine's message callback is told what.
UXSCRIPT_API int UXRegisterScript(AngelScript::asIScriptEngine* engine);
// Adds to an engine with the above what needs the embedded host: Tree.select and what belongs to it,
// loading for editing and saving with the layout, write_file. The same results.
UXSCRIPT_API int UXRegisterScriptKit(AngelScript::asIScriptEngine* engine);

// A Tree of scripts that refers to a node, with one reference that belongs to the caller; null when
// memory runs out. What it points at is passed to scripts as the argument of type Tree@.
UXSCRIPT_API void* UXMakeScriptTree(const UXXmlWrapperBase& node);
// The handle in a Tree of scripts; null for null. It lives as long as the Tree.
UXSCRIPT_API UXXmlWrapperBase* UXScriptTreeNode(void* tree);
// Gives a reference to a Tree back. Null is passed over.
UXSCRIPT_API void UXReleaseScriptTree(void* tree);

// --- an engine of one's own ----------------------------------------------------------------------

// What ends a script that would not end by itself.
struct UXScriptLimits {
    double seconds = 0;  // 0: no limit. Noticed where loops turn and functions of scripts begin
    int depth = 1000;    // calls inside each other
};

enum class UXScriptOutcome {
    kDone,
    kNotCompiled,
    kNoFunction,  // there is none of that declaration
    kException,   // also when calls went too deep
    kTimeOut,
    kNoMemory,
};

// What scripts of an engine may do besides.
struct UXScriptOptions {
    bool files = true;  // read and list files by functions of their own, beside Tree.load
    std::function<void(std::string_view)> print;  // empty: to standard output
    // Adds functions of the caller; may be empty. A result below 0 is a refusal.
    std::function<int(AngelScript::asIScriptEngine*)> extend;
};

// An engine with everything registered, and one module of compiled scripts. One thread at a time.
// No function throws; a failure leaves its reason in problem().
class UXSCRIPT_API UXScriptEngine {
public:
    explicit UXScriptEngine(const UXScriptOptions& options = {});
    ~UXScriptEngine();
    UXScriptEngine(UXScriptEngine&& other) noexcept;
    UXScriptEngine& operator=(UXScriptEngine&& other) noexcept;

    // False when the engine could not be made.
    bool ready() const;
    // Compiles a script in place of the one before. #include "file" is relative to the script.
    // Sources that are nested too deeply for the compiler, or too large, are refused; no limit holds
    // for the time that it takes.
    bool compile_file(const std::string& path);
    // The same for code by any name. firstLine is the number by which messages call its first line.
    bool compile(const std::string& name, const std::string& code, int firstLine = 1);

    // Runs a function of the compiled script that takes nothing: its declaration as in "int f()", or
    // its name alone. What it yields is dropped.
    UXScriptOutcome run(const std::string& function, const UXScriptLimits& limits = {});
    // Runs a function void name(Tree@) with a node.
    UXScriptOutcome run_on(const std::string& function, const UXXmlWrapperBase& node,
                           const UXScriptLimits& limits = {});
    // Runs main, with what it takes: nothing or array<string>@. result receives what it yields, 0
    // for void.
    UXScriptOutcome run_main(const std::vector<std::string>& arguments, int& result,
                             const UXScriptLimits& limits = {});

    // What the last call had to say, in lines "file:line:column: error: text": why it failed, where
    // and through which calls, what a misspelt name may have meant; warnings of a compilation that
    // succeeded. "" when there is nothing.
    const std::string& problem() const;
    // Names of functions without parameters in the compiled script, sorted.
    std::vector<std::string> functions() const;
    // Names of everything global that begin with prefix: functions, types, variables; or, for
    // "variable.pre", of the members of a global variable's type. Sorted.
    std::vector<std::string> names(const std::string& prefix) const;

    // Runs a line of a dialogue: a statement, a declaration that stays, or an expression, whose
    // value is printed. show prints a Tree; empty: as XML.
    UXScriptOutcome run_line(const std::string& line, const UXScriptLimits& limits = {},
                             const std::function<void(const UXXmlWrapperBase&)>& show = {});

    AngelScript::asIScriptEngine* engine() const;

    struct State;

private:
    std::unique_ptr<State> state_;
};
