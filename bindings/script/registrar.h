// script/registrar: registering at an engine, up to the first refusal.
#pragma once

#include "values.h"

namespace uxscript {

using Called = void (*)(as::asIScriptGeneric*);

// How an engine calls. Most functions take their arguments through the engine: the same on every
// machine, and no slower.
struct Way {
    Way(Called called) : function(as::asFunctionPtr(called)) {}
    // One that takes its object first, and at most a number of four bytes, is called at once where the
    // language knows how the machine does that.
    template <class Function>
    Way(Function* direct, Called otherwise) : Way(otherwise) {
        if (std::strstr(as::asGetLibraryOptions(), "AS_MAX_PORTABILITY") != nullptr) return;
        function = as::asFunctionPtr(direct);
        convention = as::asCALL_CDECL_OBJFIRST;
    }

    as::asSFuncPtr function;
    as::asDWORD convention = as::asCALL_GENERIC;
};

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
                   const Way& way) {
        keep(engine_->RegisterObjectBehaviour(type, which, declaration, way.function,
                                              way.convention));
    }
    void method(const char* type, const char* declaration, const Way& way) {
        keep(engine_->RegisterObjectMethod(type, declaration, way.function, way.convention));
    }
    void field(const char* type, const char* declaration, std::size_t offset) {
        keep(engine_->RegisterObjectProperty(type, declaration, static_cast<int>(offset)));
    }
    void property(const char* declaration, void* value) {
        keep(engine_->RegisterGlobalProperty(declaration, value));
    }
    void function(const char* declaration, const Way& way, void* auxiliary = nullptr) {
        keep(engine_->RegisterGlobalFunction(declaration, way.function, way.convention, auxiliary));
    }

private:
    as::asIScriptEngine* engine_;
    int result_ = 0;
};

// The Tree of scripts with its own methods; after text.
void register_tree(Registrar& add);

}  // namespace uxscript
