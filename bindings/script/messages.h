// script/messages: what the language says about a script, in lines for people.
#pragma once

#include <string>
#include <vector>

#include "values.h"

namespace uxscript {

// Collects the messages of a compilation.
class Messages {
public:
    // Called by the language.
    static void hear(const as::asSMessageInfo* message, void* messages);
    void clear() { heard_.clear(); }
    // Lines "file:line:column: error: text"; with the nearest of the names where one is unknown.
    std::string text(const std::vector<std::string>& names) const;

private:
    struct Heard {
        std::string place;
        as::asEMsgType type;
        std::string text;
    };
    std::vector<Heard> heard_;
};

// "file:line:column: ".
std::string place_text(const char* section, int line, int column);
// What ended a run: the place, why, and the calls that led there.
std::string exception_text(as::asIScriptContext& context, const std::string& why);
std::string calls_text(as::asIScriptContext& context);

}  // namespace uxscript
