// script/functions: what scripts need beside trees: printing and files.
#include "functions.h"

#include <cerrno>
#include <cstring>
#include <fstream>
#include <iterator>

#include "platform.h"
#include "printing.h"

namespace uxscript {
namespace {

std::string printed_argument(as::asIScriptGeneric* call, as::asUINT index) {
    return text_of_value(*call->GetEngine(), call->GetArgAddress(index), call->GetArgTypeId(index));
}

// All arguments, with a blank between them.
void print(as::asIScriptGeneric* call) {
    guarded([&] {
        std::string line;
        for (int i = 0; i < call->GetArgCount(); ++i) {
            if (i != 0) line += ' ';
            line += printed_argument(call, static_cast<as::asUINT>(i));
        }
        line += '\n';
        (*static_cast<std::function<void(std::string_view)>*>(call->GetAuxiliary()))(line);
    });
}
void str(as::asIScriptGeneric* call) {
    guarded([&] { return_value<std::string>(call, printed_argument(call, 0)); });
}

// The names that match a pattern, sorted by their bytes; none is no error.
void files(as::asIScriptGeneric* call) {
    guarded([&] {
        const std::vector<std::string> found = files_matching(argument<std::string>(call, 0));
        ResultArray array(call, "array<string>", found.size());
        for (std::size_t i = 0; i < found.size(); ++i) array.text(i) = found[i];
        array.give();
    });
}

void read_file(as::asIScriptGeneric* call) {
    guarded([&] {
        const auto& name = argument<std::string>(call, 0);
        std::ifstream file(name, std::ios::binary);
        std::string text{std::istreambuf_iterator<char>(file), {}};
        if (!file.is_open() || file.bad()) {
            throw ScriptError{name + ": " + std::strerror(errno)};
        }
        return_value<std::string>(call, std::move(text));
    });
}

}  // namespace

void register_printing(Registrar& add, std::function<void(std::string_view)>& out) {
    std::string parameters = "const ?&in";
    for (int count = 1; count <= 8; ++count) {
        add.function(("void print(" + parameters + ")").c_str(), print, &out);
        parameters += ", const ?&in";
    }
    // A value as print shows it.
    add.function("string str(const ?&in)", str);
}

void register_files(Registrar& add) {
    // The names that match a pattern such as "folder/*.xml", sorted; none is no error.
    add.function("array<string>@ files(const string &in pattern)", files);
    // The whole text of a file.
    add.function("string read_file(const string &in name)", read_file);
}

}  // namespace uxscript
