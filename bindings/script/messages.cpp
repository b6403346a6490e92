// script/messages: what the language says about a script, in lines for people.
#include "messages.h"

#include <filesystem>
#include <string_view>
#include <system_error>

#include "printing.h"

namespace uxscript {
namespace {

// A file below the current folder goes by its short name.
std::string short_name(const char* section) {
    if (section == nullptr) return "";
    std::error_code error;
    const std::string folder = std::filesystem::current_path(error).string() + "/";
    const std::string name = section;
    return !error && name.starts_with(folder) ? name.substr(folder.size()) : name;
}

// The name that a message calls unknown; "" when it is about something else.
std::string unknown_name(const std::string& text) {
    for (const std::string_view start :
         {"No matching symbol '", "No matching signatures to '", "Identifier '", "'"}) {
        if (!text.starts_with(start)) continue;
        std::string name = text.substr(start.size());
        name = name.substr(0, name.find_first_of("'( "));
        const std::size_t member = name.rfind("::");
        if (member != std::string::npos) name = name.substr(member + 2);
        return name;
    }
    return "";
}

const char* word_of(as::asEMsgType type) {
    if (type == as::asMSGTYPE_ERROR) return "error: ";
    return type == as::asMSGTYPE_WARNING ? "warning: " : "";
}

}  // namespace

std::string place_text(const char* section, int line, int column) {
    std::string text = short_name(section);
    if (text.empty()) return "";
    if (line > 0) text += ":" + std::to_string(line) + ":" + std::to_string(column);
    return text + ": ";
}

void Messages::hear(const as::asSMessageInfo* message, void* messages) {
    auto& heard = static_cast<Messages*>(messages)->heard_;
    guarded([&] {
        heard.push_back({place_text(message->section, message->row, message->col), message->type,
                         message->message});
    });
}

std::string Messages::text(const std::vector<std::string>& names) const {
    std::string text;
    for (std::size_t i = 0; i < heard_.size(); ++i) {
        const Heard& each = heard_[i];
        const std::string& said = each.text;
        if (said.starts_with("Compiling ")) continue;  // which function: the lines tell
        text += each.place + word_of(each.type) + said;
        const bool listed = i + 1 < heard_.size() && heard_[i + 1].text.starts_with("Candidates");
        if (each.type == as::asMSGTYPE_ERROR && !listed) {
            const std::string meant = nearest_name(unknown_name(said), names);
            if (!meant.empty()) text += "; did you mean '" + meant + "'?";
        }
        text += "\n";
    }
    return text;
}

std::string calls_text(as::asIScriptContext& context) {
    constexpr as::asUINT kShown = 10;
    const as::asUINT size = context.GetCallstackSize();
    std::string text;
    for (as::asUINT level = 0; level < size; ++level) {
        if (level == kShown && size > 2 * kShown) {
            text += "  ... " + std::to_string(size - 2 * kShown) + " more\n";
            level = size - kShown;
        }
        const as::asIScriptFunction* function = context.GetFunction(level);
        if (function == nullptr) continue;
        const char* section = nullptr;
        int column = 0;
        const bool raised = level == 0 && context.GetState() == as::asEXECUTION_EXCEPTION;
        const int line = raised ? context.GetExceptionLineNumber(&column, &section)
                                : context.GetLineNumber(level, &column, &section);
        if (section == nullptr) continue;
        text += "  in " + std::string(function->GetDeclaration(true, false, false)) + " at ";
        std::string place = place_text(section, line, column);
        if (place.size() > 2) place.resize(place.size() - 2);
        text += place + "\n";
    }
    return text;
}

std::string exception_text(as::asIScriptContext& context, const std::string& why) {
    const char* section = nullptr;
    int column = 0;
    int line = context.GetExceptionLineNumber(&column, &section);
    // What a function of the language itself raises has no place: the one of its call is shown.
    for (as::asUINT level = 1; section == nullptr && level < context.GetCallstackSize(); ++level) {
        line = context.GetLineNumber(level, &column, &section);
    }
    return place_text(section, line, column) + "error: " + why + "\n" + calls_text(context);
}

}  // namespace uxscript
