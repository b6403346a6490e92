// script/kit: what a Tree can do besides where the embedded host keeps it, and files that are replaced
// as it replaces its own.
#include <cstring>
#include <system_error>
#include <vector>

#include "uxtree/host/embedded.h"
#include "uxtree/host/embedded_files.h"
#include "uxtree/kit/select.h"
#include "uxtree/script.h"

#include "registrar.h"

namespace uxscript {
namespace {

UXXmlWrapperBase& node_of(as::asIScriptGeneric* call) {
    return self<ScriptTree>(call).value;
}

UXSelected selected(as::asIScriptGeneric* call) {
    const auto& expression = argument<std::string>(call, 0);
    if (std::memchr(expression.data(), '\0', expression.size()) != nullptr) {
        throw ScriptError{"the path holds a character 0, where it would end"};
    }
    UXSelection selection;
    UXSelectFault fault;
    if (!selection.compile(expression.c_str(), &fault)) {
        throw ScriptError{"'" + expression + "', behind " + std::to_string(fault.position) +
                          " bytes: " + fault.message};
    }
    UXSelected found;
    switch (selection.run(node_of(call), found)) {
        case UXSelectOutcome::kDone:
            return found;
        case UXSelectOutcome::kMixedText:
            throw ScriptError{"'" + expression +
                              "' depends on text between elements, whose place is not known"};
        case UXSelectOutcome::kNoTree:
            throw ScriptError{"the Tree refers to no node"};
        case UXSelectOutcome::kOutOfMemory:
            break;
    }
    throw std::bad_alloc();
}

// The elements; of an attribute or a text the one that has it.
void select(as::asIScriptGeneric* call) {
    guarded([&] {
        const UXSelected found = selected(call);
        ResultArray array(call, "array<Tree@>", found.size());
        for (std::size_t i = 0; i < found.size(); ++i) array.set_tree(i, found.node(i));
        array.give();
    });
}

void select_texts(as::asIScriptGeneric* call) {
    guarded([&] {
        const UXSelected found = selected(call);
        ResultArray array(call, "array<string>", found.size());
        for (std::size_t i = 0; i < found.size(); ++i) {
            CStringUTF8 text;
            if (!found.text(i, text)) {
                throw ScriptError{
                    "a text depends on text between elements, whose place is not known"};
            }
            array.text(i) = standard(text);
        }
        array.give();
    });
}

const char* file_name(as::asIScriptGeneric* call) {
    const auto& name = argument<std::string>(call, 0);
    if (name.find('\0') != std::string::npos) throw ScriptError{"the name holds a character 0"};
    return name.c_str();
}

void load_for_editing(as::asIScriptGeneric* call) {
    guarded([&] {
        if (UXLoadForEditing(&node_of(call), file_name(call)) == 0) {
            throw ScriptError{standard(UXGetLastLoadError())};
        }
    });
}

void save_with_layout(as::asIScriptGeneric* call) {
    guarded([&] {
        UXXmlWrapperBase& node = node_of(call);
        if (node.IsNodeValid() == 0) throw ScriptError{"the Tree refers to no node"};
        if (UXKeepsLayout(&node) == 0) {
            throw ScriptError{"the Tree keeps no layout: it was not loaded by load_for_editing"};
        }
        if (UXSaveAs(&node, file_name(call), UXSaveOptions{}, nullptr) == 0) {
            throw ScriptError{standard(UXGetLastSaveError())};
        }
    });
}

void keeps_layout(as::asIScriptGeneric* call) {
    return_value<bool>(call, UXKeepsLayout(&node_of(call)) != 0);
}

void save_indented(as::asIScriptGeneric* call) {
    guarded([&] {
        UXXmlWrapperBase& node = node_of(call);
        if (node.IsNodeValid() == 0) throw ScriptError{"the Tree refers to no node"};
        UXSaveOptions options;
        options.form = UXSaveForm::kIndented;
        if (UXSaveAs(&node, file_name(call), options, nullptr) == 0) {
            throw ScriptError{standard(UXGetLastSaveError())};
        }
    });
}

void write_file(as::asIScriptGeneric* call) {
    guarded([&] {
        UXFileOutput file(file_name(call));
        if (!file.Write(argument<std::string>(call, 1)) || !file.Commit()) {
            throw ScriptError{argument<std::string>(call, 0) + ": " +
                              std::generic_category().message(file.Error())};
        }
    });
}

}  // namespace
}  // namespace uxscript

int UXRegisterScriptKit(AngelScript::asIScriptEngine* engine) {
    using namespace uxscript;
    if (engine == nullptr) return as::asINVALID_ARG;
    Registrar add(engine);
    // The elements that a selection reaches, in the order of the document, nothing twice; of an
    // attribute or a text the element that has it.
    add.method("Tree", "array<Tree@>@ select(const string &in path)", select);
    // What a selection reaches as texts.
    add.method("Tree", "array<string>@ select_texts(const string &in path)", select_texts);
    // Loads a file so that save_with_layout can keep its comments, blanks and quotes.
    add.method("Tree", "void load_for_editing(const string &in file)", load_for_editing);
    // Writes it as it was written, except for what changed.
    add.method("Tree", "void save_with_layout(const string &in file) const", save_with_layout);
    // Writes it in lines of their own, indented; comments are left out.
    add.method("Tree", "void save_indented(const string &in file) const", save_indented);
    // Writes a text into a file, which is replaced as a whole or stays as it was.
    add.function("void write_file(const string &in name, const string &in text)", write_file);
    // Was it loaded for editing?
    add.method("Tree", "bool get_keeps_layout() const property", keeps_layout);
    return add.result();
}
