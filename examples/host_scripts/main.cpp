// host_scripts: an application with a menu of scripts that work on the tree it has open.
//
//     host_scripts SCRIPTS [FOLDER]     reads the numbers of entries from standard input
//
// Every function void name(Tree@) of the scripts in a folder is an entry of the menu. The program
// links to libuxtree_script alone, so it runs on any host library.
#include <algorithm>
#include <filesystem>
#include <iostream>
#include <string>
#include <vector>

#define AS_USE_NAMESPACE
#include <angelscript.h>

#include "uxtree/script.h"

namespace {

struct Entry {
    std::string name;
    UXScriptEngine* script;
};

// What an application offers its scripts beside the tree.
int application_functions(AngelScript::asIScriptEngine* engine) {
    return engine->RegisterGlobalFunction(
        "string application()", asFUNCTION(+[](AngelScript::asIScriptGeneric* call) {
            new (call->GetAddressOfReturnLocation()) std::string("host_scripts");
        }),
        AngelScript::asCALL_GENERIC);
}

std::vector<UXScriptEngine> load_scripts() {
    std::vector<std::string> paths;
    for (const auto& file : std::filesystem::directory_iterator(".")) {
        if (file.path().extension() == ".as") paths.push_back(file.path().string());
    }
    std::sort(paths.begin(), paths.end());
    UXScriptOptions options;
    options.files = false;  // scripts of this application work on its tree alone
    options.print = [](std::string_view text) { std::cout << "  " << text; };
    options.extend = application_functions;
    std::vector<UXScriptEngine> scripts;
    for (const std::string& path : paths) {
        UXScriptEngine script(options);
        if (script.compile_file(path)) {
            scripts.push_back(std::move(script));
        } else {
            std::cout << "left out: " << script.problem();
        }
    }
    return scripts;
}

std::vector<Entry> menu_of(std::vector<UXScriptEngine>& scripts) {
    std::vector<Entry> menu;
    for (UXScriptEngine& script : scripts) {
        const AngelScript::asIScriptModule* module = script.engine()->GetModuleByIndex(0);
        for (unsigned i = 0; i < module->GetFunctionCount(); ++i) {
            const std::string name = module->GetFunctionByIndex(i)->GetName();
            const std::string declaration = "void " + name + "(Tree@)";
            if (module->GetFunctionByDecl(declaration.c_str()) != nullptr) {
                menu.push_back({name, &script});
            }
        }
    }
    return menu;
}

void print_tree(const UXXmlWrapperBase& tree) {
    CStringUTF8 text;
    tree.GetString(text);
    std::cout << text << "\n";
}

}  // namespace

int main(int argc, char** argv) {
    if (argc < 2) {
        std::cerr << "usage: host_scripts SCRIPTS\n";
        return 2;
    }
    std::filesystem::current_path(argv[1]);  // messages name files from here
    std::vector<UXScriptEngine> scripts = load_scripts();
    const std::vector<Entry> menu = menu_of(scripts);

    UXXmlWrapperBase tree;
    tree.CreateNew(0, "Options");
    UXXmlWrapperBase node;
    for (const char* tag : {"Method", "Points", "Unused"}) tree.AddNode(&node, tag, -1);

    for (std::size_t i = 0; i < menu.size(); ++i) std::cout << i << " " << menu[i].name << "\n";
    std::size_t choice = 0;
    while (std::cin >> choice) {
        if (choice >= menu.size()) {
            std::cout << "no entry " << choice << "\n";
            continue;
        }
        // A script that hangs must not hang the application.
        const UXScriptLimits limits{.seconds = 0.2, .depth = 100};
        const Entry& entry = menu[choice];
        std::cout << entry.name << ":\n";
        if (entry.script->run_on(entry.name, tree, limits) != UXScriptOutcome::kDone) {
            const std::string& problem = entry.script->problem();
            std::cout << "  failed: " << problem.substr(problem.find("error: ") + 7);
        }
        print_tree(tree);
    }
    return 0;
}
