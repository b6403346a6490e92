// script/engine: an engine with everything registered: compiling, running within limits, telling
// what went wrong.
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <set>

#include <angelscript/scriptbuilder.h>
#include <angelscript/scriptdictionary.h>
#include <angelscript/scripthelper.h>
#include <angelscript/scriptmath.h>

#include "uxtree/script.h"

#include "functions.h"
#include "messages.h"
#include "printing.h"
#include "sources.h"
#include "string_type.h"

namespace uxscript {
namespace {

using Clock = std::chrono::steady_clock;
constexpr const char* kModule = "script";

// The limits of a run, for as long as it lasts. The clock is read every few turns of loops and calls.
class Limits {
public:
    Limits(as::asIScriptContext& context, const UXScriptLimits& limits)
        : context_(context), seconds_(limits.seconds) {
        const std::chrono::duration<double> span(std::min(seconds_, 1e9));
        end_ = Clock::now() + std::chrono::duration_cast<Clock::duration>(span);
        context.GetEngine()->SetEngineProperty(as::asEP_MAX_CALL_STACK_SIZE,
                                               static_cast<as::asPWORD>(std::max(limits.depth, 1)));
        if (seconds_ > 0) {
            context.SetLineCallback(asFUNCTION(at_turn), this, as::asCALL_CDECL);
        }
    }
    Limits(const Limits&) = delete;
    Limits& operator=(const Limits&) = delete;
    ~Limits() { context_.ClearLineCallback(); }

    bool passed() const { return passed_; }
    std::string text() const {
        char text[64];
        std::snprintf(text, sizeof text, "error: stopped after %g seconds\n", seconds_);
        return text;
    }

private:
    static void at_turn(as::asIScriptContext* context, void* limits) {
        auto& self = *static_cast<Limits*>(limits);
        if (++self.turns_ % 16 != 0 || Clock::now() < self.end_) return;
        self.passed_ = true;
        context->Abort();  // which no catch of the script stops
    }

    as::asIScriptContext& context_;
    double seconds_;
    Clock::time_point end_;
    unsigned turns_ = 0;
    bool passed_ = false;
};

void translate_exception(as::asIScriptContext* context, void*) {
    try {
        throw;
    } catch (const std::bad_alloc&) {
        context->SetException("out of memory");
    } catch (const std::exception& error) {
        context->SetException(error.what());
    } catch (...) {
        context->SetException("failed");
    }
}

struct GiveBack {
    template <class Object>
    void operator()(Object* object) const {
        object->Release();
    }
};
template <class Object>
using Held = std::unique_ptr<Object, GiveBack>;
using Context = Held<as::asIScriptContext>;
using Function = Held<as::asIScriptFunction>;

// "int x = 5;" in its parts; false when it assigns nothing.
bool split_declaration(const std::string& line, std::string& declaration, std::string& name,
                       std::string& value) {
    const std::size_t equals = line.find('=');
    if (equals == std::string::npos || equals + 1 >= line.size() || line[equals + 1] == '=') {
        return false;
    }
    const std::size_t last = line.find_last_not_of(" \t", equals == 0 ? 0 : equals - 1);
    if (equals == 0 || last == std::string::npos) return false;
    const auto inName = [](char c) {
        return c == '_' || (c >= '0' && c <= '9') || ((c | 32) >= 'a' && (c | 32) <= 'z');
    };
    std::size_t first = last + 1;
    while (first > 0 && inName(line[first - 1])) --first;
    name = line.substr(first, last + 1 - first);
    declaration = line.substr(0, last + 1);
    value = line.substr(equals + 1);
    const std::size_t before = declaration.find_last_not_of(" \t", first == 0 ? 0 : first - 1);
    if (name.empty() || first == 0 || before == std::string::npos) return false;
    if (declaration[before] == '@') name.insert(0, "@");
    return true;
}

}  // namespace
}  // namespace uxscript

using namespace uxscript;

struct [[gnu::visibility("hidden")]] UXScriptEngine::State {
    ~State() {
        if (engine != nullptr) engine->ShutDownAndRelease();
    }

    std::vector<std::string> all_names() const;
    std::vector<std::string> names_from(const std::string& prefix) const;
    void add_members(const as::asITypeInfo& type, std::set<std::string>& names) const;
    UXScriptOutcome execute(as::asIScriptContext & context, const UXScriptLimits& limits);
    UXScriptOutcome run(as::asIScriptFunction * function, const UXScriptLimits& limits,
                        const std::function<void(as::asIScriptContext&)>& prepare,
                        const std::function<void(as::asIScriptContext&)>& finish);
    bool build(const std::function<bool(Sources&)>& add);
    UXScriptOutcome reset_globals(const UXScriptLimits& limits);
    as::asIScriptModule* dialogue_module();
    UXScriptOutcome run_statement(const std::string& code, const UXScriptLimits& limits);
    Function compile_statement(const std::string& code);
    bool declare(const std::string& code, std::string& assignment);

    UXScriptOptions options;
    Messages messages;
    SourceCheck check;
    std::string problem;
    as::asIScriptEngine* engine = nullptr;
    as::asIScriptModule* module = nullptr;
    bool globalsAreSet = true;
    std::function<void(const UXXmlWrapperBase&)> show;
};

namespace {

// The value of an expression of a dialogue.
void show_value(as::asIScriptGeneric* call) {
    guarded([&] {
        auto& state = *static_cast<UXScriptEngine::State*>(call->GetAuxiliary());
        const void* value = call->GetArgAddress(0);
        const int type = call->GetArgTypeId(0);
        const UXXmlWrapperBase* node = node_of_value(*call->GetEngine(), value, type);
        if (node != nullptr && node->IsNodeValid() != 0 && state.show) {
            state.show(*node);
        } else {
            state.options.print(text_of_value(*call->GetEngine(), value, type) + "\n");
        }
    });
}

}  // namespace

// --- names -----------------------------------------------------------------------------------------

void UXScriptEngine::State::add_members(const as::asITypeInfo& type,
                                        std::set<std::string>& names) const {
    for (as::asUINT i = 0; i < type.GetMethodCount(); ++i) {
        std::string name = type.GetMethodByIndex(i)->GetName();
        if (name.starts_with("op")) continue;
        if (type.GetMethodByIndex(i)->IsProperty()) name = name.substr(4);
        names.insert(name);
    }
    for (as::asUINT i = 0; i < type.GetPropertyCount(); ++i) {
        const char* name = nullptr;
        type.GetProperty(i, &name);
        names.insert(name);
    }
}

std::vector<std::string> UXScriptEngine::State::all_names() const {
    std::set<std::string> names;
    const auto add = [&](as::asUINT count, auto&& nameOf) {
        for (as::asUINT i = 0; i < count; ++i) names.insert(nameOf(i));
    };
    const auto typeName = [&](const as::asITypeInfo& type) {
        add_members(type, names);
        return type.GetName();
    };
    const char* name = nullptr;
    add(engine->GetGlobalFunctionCount(),
        [&](auto i) { return engine->GetGlobalFunctionByIndex(i)->GetName(); });
    add(engine->GetGlobalPropertyCount(), [&](auto i) {
        engine->GetGlobalPropertyByIndex(i, &name);
        return name;
    });
    add(engine->GetObjectTypeCount(),
        [&](auto i) { return typeName(*engine->GetObjectTypeByIndex(i)); });
    if (module != nullptr) {
        add(module->GetFunctionCount(),
            [&](auto i) { return module->GetFunctionByIndex(i)->GetName(); });
        add(module->GetGlobalVarCount(), [&](auto i) {
            module->GetGlobalVar(i, &name);
            return name;
        });
        add(module->GetObjectTypeCount(),
            [&](auto i) { return typeName(*module->GetObjectTypeByIndex(i)); });
    }
    return {names.begin(), names.end()};
}

// With a dot, members of a global variable's type.
std::vector<std::string> UXScriptEngine::State::names_from(const std::string& prefix) const {
    std::set<std::string> found;
    const std::size_t dot = prefix.rfind('.');
    if (dot == std::string::npos) {
        const std::vector<std::string> all = all_names();
        found.insert(all.begin(), all.end());
    } else if (module != nullptr) {
        const int index = module->GetGlobalVarIndexByName(prefix.substr(0, dot).c_str());
        int type = 0;
        if (index < 0 ||
            module->GetGlobalVar(static_cast<as::asUINT>(index), nullptr, nullptr, &type) < 0) {
            return {};
        }
        const as::asITypeInfo* info = engine->GetTypeInfoById(type);
        if (info != nullptr) add_members(*info, found);
    }
    const std::string start = dot == std::string::npos ? "" : prefix.substr(0, dot + 1);
    std::vector<std::string> names;
    for (const std::string& name : found) {
        if ((start + name).starts_with(prefix)) names.push_back(start + name);
    }
    return names;
}

// --- running ---------------------------------------------------------------------------------------

UXScriptOutcome UXScriptEngine::State::execute(as::asIScriptContext& context,
                                               const UXScriptLimits& limits) {
    const Limits kept(context, limits);
    const int result = context.Execute();
    if (result == as::asEXECUTION_FINISHED) return UXScriptOutcome::kDone;
    if (result == as::asEXECUTION_EXCEPTION) {
        std::string why = context.GetExceptionString();
        if (why == "Stack overflow") {
            why = "more than " + std::to_string(limits.depth) + " calls inside each other";
        }
        problem = exception_text(context, why);
        return why == "out of memory" || why == "Out of memory" ? UXScriptOutcome::kNoMemory
                                                                : UXScriptOutcome::kException;
    }
    const char* section = nullptr;
    int column = 0;
    const int line = context.GetLineNumber(0, &column, &section);
    problem = place_text(section, line, column) + kept.text() + calls_text(context);
    return UXScriptOutcome::kTimeOut;
}

UXScriptOutcome UXScriptEngine::State::reset_globals(const UXScriptLimits& limits) {
    if (globalsAreSet) return UXScriptOutcome::kDone;
    // Their values are given by code of the script, for which the limits hold as well.
    const Context context(engine->CreateContext());
    if (!context) return UXScriptOutcome::kNoMemory;
    const Limits kept(*context, limits);
    messages.clear();
    globalsAreSet = module->ResetGlobalVars(&*context) >= 0;
    if (globalsAreSet) return UXScriptOutcome::kDone;
    problem = messages.text({});
    if (!kept.passed()) return UXScriptOutcome::kException;
    problem += kept.text();
    return UXScriptOutcome::kTimeOut;
}

UXScriptOutcome UXScriptEngine::State::run(
    as::asIScriptFunction* function, const UXScriptLimits& limits,
    const std::function<void(as::asIScriptContext&)>& prepare,
    const std::function<void(as::asIScriptContext&)>& finish) {
    problem.clear();
    const UXScriptOutcome globals = reset_globals(limits);
    if (globals != UXScriptOutcome::kDone) return globals;
    const Context context(engine->CreateContext());
    if (!context || context->Prepare(function) < 0) {
        problem = "error: the function cannot be run\n";
        return UXScriptOutcome::kException;
    }
    if (prepare) prepare(*context);
    const UXScriptOutcome outcome = execute(*context, limits);
    if (outcome == UXScriptOutcome::kDone && finish) finish(*context);
    return outcome;
}

bool UXScriptEngine::State::build(const std::function<bool(Sources&)>& add) {
    messages.clear();
    module = nullptr;
    check = SourceCheck();
    as::CScriptBuilder builder;
    builder.StartNewModule(engine, kModule);
    Sources sources(*engine, builder, check);
    if (add(sources) && builder.BuildModule() >= 0) module = builder.GetModule();
    globalsAreSet = false;
    problem = sources.problem();
    // Of a script that compiles there are warnings at most, which call no name unknown.
    const bool built = module != nullptr;
    if (problem.empty()) problem = messages.text(built ? std::vector<std::string>() : all_names());
    return built;
}

// --- dialogues -------------------------------------------------------------------------------------

as::asIScriptModule* UXScriptEngine::State::dialogue_module() {
    if (module == nullptr) module = engine->GetModule(kModule, as::asGM_CREATE_IF_NOT_EXISTS);
    return module;
}

// Null when it does not compile.
Function UXScriptEngine::State::compile_statement(const std::string& code) {
    messages.clear();
    const std::string whole = "void statement() {\n" + code + "\n;}";
    as::asIScriptFunction* function = nullptr;
    dialogue_module()->CompileFunction("line", whole.c_str(), -1, 0, &function);
    return Function(function);
}

// What is declared stays. The value of a variable is given by the assignment, within the limits.
bool UXScriptEngine::State::declare(const std::string& code, std::string& assignment) {
    const auto isVariable = [&](const std::string& declaration) {
        return module->CompileGlobalVar("line", (declaration + ";").c_str(), 0) >= 0;
    };
    engine->SetEngineProperty(as::asEP_INIT_GLOBAL_VARS_AFTER_BUILD, 1);
    std::string declaration, name, value;
    const bool parts = split_declaration(code, declaration, name, value) && isVariable(declaration);
    if (parts) assignment = name + " = " + value + ";";
    const bool declared = parts || isVariable(code);
    engine->SetEngineProperty(as::asEP_INIT_GLOBAL_VARS_AFTER_BUILD, 0);
    return declared ||
           module->CompileFunction("line", code.c_str(), 0, as::asCOMP_ADD_TO_MODULE, nullptr) >= 0;
}

UXScriptOutcome UXScriptEngine::State::run_statement(const std::string& code,
                                                     const UXScriptLimits& limits) {
    const Function function = compile_statement(code);
    if (!function) {
        problem = messages.text(all_names());
        return UXScriptOutcome::kNotCompiled;
    }
    return run(&*function, limits, {}, {});
}

// --- the engine ------------------------------------------------------------------------------------

namespace {

// There may be no memory for that either.
void tell(const std::exception& error, std::string& problem) try {
    const bool noMemory = dynamic_cast<const std::bad_alloc*>(&error) != nullptr;
    problem = "error: ";
    problem.append(noMemory ? "out of memory" : error.what()).append("\n");
} catch (const std::bad_alloc&) {
}

template <class Result, class Body>
Result without_exceptions(Result failure, std::string* problem, Body&& body) {
    try {
        return body();
    } catch (const std::exception& error) {
        if (problem != nullptr) tell(error, *problem);
        return failure;
    }
}

bool set_up(UXScriptEngine::State& state) {
    as::asIScriptEngine* engine = as::asCreateScriptEngine();
    if (engine == nullptr) throw std::bad_alloc();
    state.engine = engine;
    engine->SetMessageCallback(asFUNCTION(Messages::hear), &state.messages, as::asCALL_CDECL);
    engine->SetEngineProperty(as::asEP_USE_CHARACTER_LITERALS, 1);    // 'a' is a number, as in C
    engine->SetEngineProperty(as::asEP_EXPAND_DEF_ARRAY_TO_TMPL, 1);  // array<int>, not int[]
    engine->SetEngineProperty(as::asEP_INIT_GLOBAL_VARS_AFTER_BUILD, 0);
    engine->SetEngineProperty(as::asEP_BUILD_WITHOUT_LINE_CUES, 1);  // loops and calls have theirs
    engine->SetEngineProperty(as::asEP_ALLOW_UNSAFE_REFERENCES, 1);
    engine->SetTranslateAppExceptionCallback(asFUNCTION(translate_exception), nullptr,
                                             as::asCALL_CDECL);
    Registrar add(engine);
    if (const int result = UXRegisterScript(engine); result < 0) {
        if (result == as::asOUT_OF_MEMORY) throw std::bad_alloc();
        state.problem = state.messages.text({});
        return false;
    }
    register_splitting(add);
    as::RegisterScriptDictionary(engine);
    as::RegisterScriptMath(engine);
    as::RegisterExceptionRoutines(engine);
    register_printing(add, state.options.print);
    if (state.options.files) register_files(add);
    add.function("void show_value(const ?&in)", show_value, &state);
    if (state.options.extend) add.keep(state.options.extend(engine));
    state.problem = state.messages.text({});
    return add.result() >= 0;
}

}  // namespace

UXScriptEngine::UXScriptEngine(const UXScriptOptions& options) {
    without_exceptions(false, nullptr, [&] {
        auto state = std::make_unique<State>();
        state->options = options;
        if (!state->options.print) {
            state->options.print = [](std::string_view text) {
                std::fwrite(text.data(), 1, text.size(), stdout);
            };
        }
        if (!set_up(*state)) {
            state->engine->ShutDownAndRelease();
            state->engine = nullptr;
        }
        state_ = std::move(state);
        return true;
    });
}
UXScriptEngine::~UXScriptEngine() = default;
UXScriptEngine::UXScriptEngine(UXScriptEngine&& other) noexcept = default;
UXScriptEngine& UXScriptEngine::operator=(UXScriptEngine&& other) noexcept = default;

bool UXScriptEngine::ready() const {
    return state_ != nullptr && state_->engine != nullptr;
}

AngelScript::asIScriptEngine* UXScriptEngine::engine() const {
    return state_ == nullptr ? nullptr : state_->engine;
}

const std::string& UXScriptEngine::problem() const {
    static const std::string noMemory = "error: out of memory\n";
    return state_ == nullptr ? noMemory : state_->problem;
}

bool UXScriptEngine::compile_file(const std::string& path) {
    if (!ready()) return false;
    return without_exceptions(false, &state_->problem, [&] {
        return state_->build([&](Sources& sources) { return sources.add_file(path); });
    });
}

bool UXScriptEngine::compile(const std::string& name, const std::string& code, int firstLine) {
    if (!ready()) return false;
    return without_exceptions(false, &state_->problem, [&] {
        return state_->build([&](Sources& sources) { return sources.add(name, code, firstLine); });
    });
}

UXScriptOutcome UXScriptEngine::run(const std::string& function, const UXScriptLimits& limits) {
    if (!ready() || state_->module == nullptr) return UXScriptOutcome::kNoFunction;
    return without_exceptions(UXScriptOutcome::kNoMemory, &state_->problem, [&] {
        const bool byName = function.find('(') == std::string::npos;
        as::asIScriptFunction* found = byName ? state_->module->GetFunctionByName(function.c_str())
                                              : state_->module->GetFunctionByDecl(function.c_str());
        if (found == nullptr || found->GetParamCount() != 0) {
            state_->problem = "error: there is no function '" + function + "' without parameters\n";
            return UXScriptOutcome::kNoFunction;
        }
        return state_->run(found, limits, {}, {});
    });
}

UXScriptOutcome UXScriptEngine::run_on(const std::string& function, const UXXmlWrapperBase& node,
                                       const UXScriptLimits& limits) {
    if (!ready() || state_->module == nullptr) return UXScriptOutcome::kNoFunction;
    return without_exceptions(UXScriptOutcome::kNoMemory, &state_->problem, [&] {
        const std::string declaration = "void " + function + "(Tree@)";
        as::asIScriptFunction* found = state_->module->GetFunctionByDecl(declaration.c_str());
        if (found == nullptr) {
            state_->problem = "error: there is no function '" + declaration + "'\n";
            return UXScriptOutcome::kNoFunction;
        }
        const std::unique_ptr<void, decltype(&UXReleaseScriptTree)> tree(UXMakeScriptTree(node),
                                                                         UXReleaseScriptTree);
        if (!tree) throw std::bad_alloc();
        return state_->run(found, limits,
                           [&](auto& context) { context.SetArgObject(0, tree.get()); }, {});
    });
}

UXScriptOutcome UXScriptEngine::run_main(const std::vector<std::string>& arguments, int& result,
                                         const UXScriptLimits& limits) {
    result = 0;
    if (!ready() || state_->module == nullptr) return UXScriptOutcome::kNoFunction;
    return without_exceptions(UXScriptOutcome::kNoMemory, &state_->problem, [&] {
        as::asIScriptFunction* found = nullptr;
        for (const char* each : {"int main(array<string>@)", "void main(array<string>@)",
                                 "int main()", "void main()"}) {
            if (found == nullptr) found = state_->module->GetFunctionByDecl(each);
        }
        if (found == nullptr) {
            state_->problem =
                "error: there is no function 'void main()', 'int main()' or one of them with the "
                "parameter 'array<string>@ arguments'\n";
            return UXScriptOutcome::kNoFunction;
        }
        const auto size = static_cast<as::asUINT>(arguments.size());
        const Held<as::CScriptArray> array(make_array(state_->engine, "array<string>", size));
        for (as::asUINT i = 0; i < size; ++i) {
            *static_cast<std::string*>(array->At(i)) = arguments[i];
        }
        return state_->run(
            found, limits,
            [&](auto& context) {
                if (found->GetParamCount() != 0) context.SetArgObject(0, &*array);
            },
            [&](auto& context) {
                if (found->GetReturnTypeId() != as::asTYPEID_VOID) {
                    result = static_cast<int>(context.GetReturnDWord());
                }
            });
    });
}

std::vector<std::string> UXScriptEngine::functions() const {
    if (!ready() || state_->module == nullptr) return {};
    return without_exceptions(std::vector<std::string>(), nullptr, [&] {
        std::vector<std::string> names;
        for (as::asUINT i = 0; i < state_->module->GetFunctionCount(); ++i) {
            const as::asIScriptFunction* function = state_->module->GetFunctionByIndex(i);
            if (function->GetParamCount() == 0) names.emplace_back(function->GetName());
        }
        std::sort(names.begin(), names.end());
        return names;
    });
}

std::vector<std::string> UXScriptEngine::names(const std::string& prefix) const {
    if (!ready()) return {};
    return without_exceptions(std::vector<std::string>(), nullptr,
                              [&] { return state_->names_from(prefix); });
}

UXScriptOutcome UXScriptEngine::run_line(const std::string& line, const UXScriptLimits& limits,
                                         const std::function<void(const UXXmlWrapperBase&)>& show) {
    if (!ready()) return UXScriptOutcome::kNotCompiled;
    return without_exceptions(UXScriptOutcome::kNoMemory, &state_->problem, [&] {
        State& state = *state_;
        state.show = show;
        state.problem.clear();
        std::string code = line;
        while (!code.empty() && std::string(" \t\r\n;").find(code.back()) != std::string::npos) {
            code.pop_back();
        }
        if (code.empty()) return UXScriptOutcome::kDone;
        state.problem = state.check.problem(*state.engine, "line", code, 1);
        if (!state.problem.empty()) return UXScriptOutcome::kNotCompiled;

        const Function function = state.compile_statement("show_value(" + code + "\n);");
        if (function) return state.run(&*function, limits, {}, {});
        std::string assignment;
        if (state.declare(code, assignment)) {
            return assignment.empty() ? UXScriptOutcome::kDone
                                      : state.run_statement(assignment, limits);
        }
        return state.run_statement(code + ";", limits);
    });
}
