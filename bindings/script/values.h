// script/values: what scripts hold, as C++ sees it.
#pragma once

#include <cstring>
#include <new>
#include <string>
#include <utility>

#ifndef AS_USE_NAMESPACE
#define AS_USE_NAMESPACE
#endif
#include <angelscript.h>
#include <angelscript/scriptarray.h>

#include "uxtree/host/node.h"

namespace uxscript {

namespace as = AngelScript;

// What is counted by its references. Scripts of one engine run in one thread at a time.
template <class Value>
struct Counted {
    Counted() : value() {}
    explicit Counted(Value given) : value(std::move(given)) {}
    void add() { ++references; }
    void release() {
        if (--references == 0) delete this;
    }

    int references = 1;
    Value value;
};
using ScriptTree = Counted<UXXmlWrapperBase>;

// A text that may be missing.
struct TextValue {
    std::string text;
    bool given = false;
};

// Raised as an exception of the running script.
struct ScriptError {
    std::string text;
};

// Runs what a script called, and turns what it throws into an exception of the script.
template <class Body>
void guarded(Body&& body) {
    const auto raise = [](const char* why) {
        if (as::asIScriptContext* context = as::asGetActiveContext()) context->SetException(why);
    };
    try {
        body();
    } catch (const ScriptError& error) {
        raise(error.text.c_str());
    } catch (const std::bad_alloc&) {
        raise("out of memory");
    } catch (const std::exception& error) {
        raise(error.what());
    } catch (...) {
        raise("failed");
    }
}

// Object and argument of a call by their types.
template <class T>
T& self(as::asIScriptGeneric* call) {
    return *static_cast<T*>(call->GetObject());
}
template <class T>
T& argument(as::asIScriptGeneric* call, as::asUINT index) {
    return *static_cast<T*>(call->GetArgAddress(index));
}
// A number, which the language does not align.
template <class T>
T number_argument(as::asIScriptGeneric* call, as::asUINT index) {
    T value{};
    std::memcpy(&value, call->GetAddressOfArg(index), sizeof value);
    return value;
}
template <class T, class... Given>
void return_value(as::asIScriptGeneric* call, Given&&... given) {
    new (call->GetAddressOfReturnLocation()) T(std::forward<Given>(given)...);
}
inline void return_handle(as::asIScriptGeneric* call, void* object) {
    *static_cast<void**>(call->GetAddressOfReturnLocation()) = object;
}
// The node of the Tree that a method belongs to; valid_node refuses one that refers to nothing.
inline UXXmlWrapperBase& node_of(as::asIScriptGeneric* call) {
    return self<ScriptTree>(call).value;
}
inline UXXmlWrapperBase& valid_node(as::asIScriptGeneric* call) {
    if (node_of(call).IsNodeValid() == 0) throw ScriptError{"the Tree refers to no node"};
    return node_of(call);
}
// A text for what takes it up to a character 0.
inline const char* c_text(as::asIScriptGeneric* call, as::asUINT index) {
    const auto& text = argument<std::string>(call, index);
    if (text.find('\0') != std::string::npos) {
        throw ScriptError{"the text holds a character 0, where it would end"};
    }
    return text.c_str();
}
inline std::string standard(const CStringUTF8& text) {
    return {static_cast<const char*>(text), static_cast<std::size_t>(text.GetLength())};
}

// An array of the script language with one reference.
inline as::CScriptArray* make_array(as::asIScriptEngine* engine, const char* declaration,
                                    as::asUINT size = 0) {
    as::CScriptArray* array =
        as::CScriptArray::Create(engine->GetTypeInfoByDecl(declaration), size);
    if (array == nullptr) throw std::bad_alloc();
    return array;
}

// An array that a call yields once it is filled: a call that raises an exception yields nothing.
class ResultArray {
public:
    ResultArray(as::asIScriptGeneric* call, const char* declaration, std::size_t size)
        : call_(call),
          array_(make_array(call->GetEngine(), declaration, static_cast<as::asUINT>(size))) {}
    ResultArray(const ResultArray&) = delete;
    ResultArray& operator=(const ResultArray&) = delete;
    ~ResultArray() {
        if (array_ != nullptr) array_->Release();
    }
    std::string& text(std::size_t i) const {
        return *static_cast<std::string*>(array_->At(static_cast<as::asUINT>(i)));
    }
    void set_tree(std::size_t i, const UXXmlWrapperBase& node) const {
        *static_cast<void**>(array_->At(static_cast<as::asUINT>(i))) = new ScriptTree(node);
    }
    void give() {
        return_handle(call_, array_);
        array_ = nullptr;
    }

private:
    as::asIScriptGeneric* call_;
    as::CScriptArray* array_;
};

}  // namespace uxscript
