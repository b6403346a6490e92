// script/sources: the sources of a script, with the files that they include, on their way to the
// compiler.
#pragma once

#include <set>
#include <string>
#include <string_view>

#include "values.h"

namespace AngelScript {
class CScriptBuilder;
}

namespace uxscript {

// Refuses what the compiler does not survive. It follows on the machine stack what is nested, takes
// exponential time for types of types, and ends where one of its messages passes a thousand bytes.
// All sources of a module are checked by the same one, since a message may speak of several.
class SourceCheck {
public:
    // "" for code that may be compiled, otherwise a line "name:line:column: error: why".
    std::string problem(const as::asIScriptEngine& engine, const std::string& name,
                        const std::string& code, int firstLine);

    // What messages may have to name.
    struct Longest {
        std::size_t type = 0;        // the name of a type
        std::size_t namespaces = 0;  // the names of all namespaces together
        std::size_t nesting = 0;     // of types
        std::size_t list = 1;        // number of parameters or arguments
    };

private:
    Longest longest_;
};

// Adds sources to what a builder builds, the files that they include among them.
class Sources {
public:
    Sources(const as::asIScriptEngine& engine, as::CScriptBuilder& builder, SourceCheck& check);
    Sources(const Sources&) = delete;
    Sources& operator=(const Sources&) = delete;

    // False when something is refused or cannot be read.
    bool add(const std::string& name, const std::string& code, int firstLine);
    bool add_file(const std::string& path);
    // Why, in a line.
    const std::string& problem() const { return problem_; }

private:
    static int include(const char* file, const char* from, as::CScriptBuilder*, void* sources);

    const as::asIScriptEngine& engine_;
    as::CScriptBuilder& builder_;
    SourceCheck& check_;
    std::set<std::string> files_;
    std::size_t bytes_ = 0;
    int depth_ = 0;
    std::string problem_;
};

}  // namespace uxscript
