// script/registrar: registering at an engine, up to the first refusal.
#pragma once

#include "values.h"

namespace uxscript {

using Called = void (*)(as::asIScriptGeneric*);

// Functions take their arguments through the engine (the generic convention): the same on every
// machine, and no slower.
class Registrar {
public:
    explicit Registrar(as::asIScriptEngine* engine) : engine_(engine) {}

    as::asIScriptEngine* engine() const { return engine_; }
    // 0, or the engine's reason.
    int result() const { return result_; }
    void keep(int result) {
        if (result < 0 && result_ == 0) result_ = result;
    }
    void type(const char* name, std::size_t size, as::asDWORD flags) {
        keep(engine_->RegisterObjectType(name, static_cast<int>(size), flags));
    }
    void behaviour(const char* type, as::asEBehaviours which, const char* declaration,
                   Called called) {
        keep(engine_->RegisterObjectBehaviour(type, which, declaration, asFUNCTION(called),
                                              as::asCALL_GENERIC));
    }
    void method(const char* type, const char* declaration, Called called) {
        keep(engine_->RegisterObjectMethod(type, declaration, asFUNCTION(called),
                                           as::asCALL_GENERIC));
    }
    void field(const char* type, const char* declaration, std::size_t offset) {
        keep(engine_->RegisterObjectProperty(type, declaration, static_cast<int>(offset)));
    }
    void property(const char* declaration, void* value) {
        keep(engine_->RegisterGlobalProperty(declaration, value));
    }
    void function(const char* declaration, Called called, void* auxiliary = nullptr) {
        keep(engine_->RegisterGlobalFunction(declaration, asFUNCTION(called), as::asCALL_GENERIC,
                                             auxiliary));
    }

private:
    as::asIScriptEngine* engine_;
    int result_ = 0;
};

// The Tree of scripts with its own methods; after text.
void register_tree(Registrar& add);

}  // namespace uxscript
