// Scripts run in an engine of their own, with what they print.
#pragma once

#include <string>

#include "uxtree/script.h"

namespace uxtest {

class Script {
public:
    Script() : engine_(options()) {}
    UXScriptEngine& engine() { return engine_; }

    // What a script printed, or what was wrong with it.
    std::string run(const std::string& code, const UXScriptLimits& limits = {}) {
        if (!engine_.ready() || !engine_.compile("test.as", code)) return engine_.problem();
        printed_.clear();
        outcome_ = engine_.run_main({}, result_, limits);
        return printed_ + engine_.problem();
    }
    // The same for the body of main.
    std::string body(const std::string& code, const UXScriptLimits& limits = {}) {
        return run("void main() {\n" + code + "\n}", limits);
    }
    // Lines of a dialogue, and what they print.
    std::string line(const std::string& code, const UXScriptLimits& limits = {}) {
        printed_.clear();
        outcome_ = engine_.run_line(code, limits);
        return printed_ + engine_.problem();
    }
    UXScriptOutcome outcome() const { return outcome_; }
    int result() const { return result_; }

private:
    UXScriptOptions options() {
        UXScriptOptions options;
        options.print = [this](std::string_view text) { printed_ += text; };
        options.extend = UXRegisterScriptKit;
        return options;
    }

    std::string printed_;
    UXScriptOutcome outcome_ = UXScriptOutcome::kDone;
    int result_ = 0;
    UXScriptEngine engine_;
};

}  // namespace uxtest
