// What an engine of scripts says when the libraries do not fit each other.
#include <iostream>

#include "uxtree/script.h"

int main() {
    UXScriptEngine engine;
    if (!engine.ready()) std::cout << "refused: " << engine.problem();
    engine.run_line("print(1)");
}
