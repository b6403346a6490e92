// script/kit: what a Tree can do besides where the embedded host keeps it, and files that are replaced
// as it replaces its own.
#include <system_error>
#include <vector>

#include "uxtree/host/embedded.h"
#include "uxtree/host/embedded_files.h"
#include "uxtree/kit/select.h"
#include "uxtree/script.h"

#include "registrar.h"

namespace uxscript {
namespace {

UXSelected selected(as::asIScriptGeneric* call) {
    const std::string expression = c_text(call, 0);
    UXSelection selection;
    UXSelectFault fault;
    if (!selection.compile(expression.c_str(), &fault)) {
        if (fault.message == "out of memory") throw std::bad_alloc();
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

void load_for_editing(as::asIScriptGeneric* call) {
    guarded([&] {
        if (UXLoadForEditing(&node_of(call), c_text(call, 0)) == 0) {
            throw ScriptError{standard(UXGetLastLoadError())};
        }
    });
}

void save_as(as::asIScriptGeneric* call, const UXSaveOptions& options) {
    if (UXSaveAs(&valid_node(call), c_text(call, 0), options, nullptr) == 0) {
        throw ScriptError{standard(UXGetLastSaveError())};
    }
}
void save_with_layout(as::asIScriptGeneric* call) {
    guarded([&] {
        if (UXKeepsLayout(&valid_node(call)) == 0) {
            throw ScriptError{"the Tree keeps no layout: it was not loaded by load_for_editing"};
        }
        save_as(call, {});
    });
}

void keeps_layout(as::asIScriptGeneric* call) {
    return_value<bool>(call, UXKeepsLayout(&node_of(call)) != 0);
}

void save_indented(as::asIScriptGeneric* call) {
    guarded([&] {
        UXSaveOptions options;
        options.form = UXSaveForm::kIndented;
        save_as(call, options);
    });
}

void write_file(as::asIScriptGeneric* call) {
    guarded([&] {
        UXFileOutput file(c_text(call, 0));
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
