// The sweep through scripts: the same results, outputs and trees as from C++, also when memory runs
// short.
#include <fstream>
#include <map>
#include <set>
#include <sstream>

#include "uxtree/script.h"

#include "frame/calls/calls.h"
#include "frame/memory/failing_calls.h"
#include "values.h"

namespace uxtest {
namespace {

namespace as = AngelScript;
using uxscript::Counted;
using uxscript::TextValue;

// Calls through functions of a script, one for each form of each function.
class ScriptDoor {
public:
    ScriptDoor();
    bool call(const std::string& name, const std::vector<std::type_index>& types,
              const void* const* arguments, Probe* probe, std::string& result);
    bool knows(const std::string& name) const { return forms_.contains(name); }
    int calls() const { return calls_; }
    // Names of entry points of which a call could not be expressed, and how many.
    const std::map<std::string, int>& refused() const { return refused_; }

private:
    friend class Passed;

    UXScriptEngine engine_;
    std::map<std::string, std::vector<as::asIScriptFunction*>> forms_;
    int calls_ = 0;
    std::map<std::string, int> refused_;
};

// What a call passes, and how it goes back to where C++ has it.
class Passed {
public:
    Passed(as::asIScriptEngine& engine, as::asIScriptFunction& function,
           as::asIScriptContext& context)
        : engine_(engine), function_(function), context_(context) {}
    Passed(const Passed&) = delete;
    Passed& operator=(const Passed&) = delete;
    ~Passed() {
        for (const auto& release : releases_) release();
    }
    // False when a script cannot pass that.
    bool pass(as::asUINT place, std::type_index type, const void* argument);
    void bring_back() {
        for (const auto& back : back_) back();
    }

private:
    template <typename T>
    bool pass_counted(as::asUINT place, const void* argument);
    template <typename T>
    bool pass_number(as::asUINT place, const void* argument);
    template <typename T>
    bool pass_pointer(as::asUINT place, const void* argument);
    bool pass_string(as::asUINT place, const void* argument);
    bool pass_text(as::asUINT place, const void* argument);
    bool pass_script_array(as::asUINT place, const void* argument);
    template <typename T>
    bool pass_numbers(as::asUINT place, CArray<T, T>* array);
    bool pass_strings(as::asUINT place, CWBOStringArray* array);

    int type_of(as::asUINT place) const {
        int type = 0;
        function_.GetParam(place, &type);
        return type;
    }
    bool takes_text(as::asUINT place) const {
        const as::asITypeInfo* type = engine_.GetTypeInfoById(type_of(place));
        return type != nullptr && std::string(type->GetName()) == "text";
    }
    as::CScriptArray* new_array(as::asUINT place, const char* declaration, int size);

    as::asIScriptEngine& engine_;
    as::asIScriptFunction& function_;
    as::asIScriptContext& context_;
    std::vector<std::shared_ptr<void>> kept_;
    // By the objects of C++, so that aliases stay aliases: counted objects, and elements of arrays.
    std::map<const void*, void*> counted_;
    std::map<const void*, std::string*> elements_;
    std::vector<std::function<void()>> back_;
    std::vector<std::function<void()>> releases_;
};

template <typename T>
bool Passed::pass_counted(as::asUINT place, const void* argument) {
    if (argument == nullptr) {
        context_.SetArgObject(place, nullptr);
        return true;
    }
    auto* object = static_cast<T*>(const_cast<void*>(argument));
    void*& known = counted_[argument];
    if (known == nullptr) {
        auto* made = new Counted<T>(*object);
        known = made;
        releases_.push_back([made] { made->release(); });
        back_.push_back([made, object] { *object = made->value; });
    }
    context_.SetArgObject(place, known);
    return true;
}

template <typename T>
bool Passed::pass_number(as::asUINT place, const void* argument) {
    std::memcpy(context_.GetAddressOfArg(place), argument, sizeof(T));
    return true;
}

template <typename T>
bool Passed::pass_pointer(as::asUINT place, const void* argument) {
    as::asDWORD flags = 0;
    int type = 0;
    function_.GetParam(place, &type, &flags);
    if (takes_text(place)) return argument == nullptr && pass_text(place, nullptr);
    if (argument == nullptr) return false;
    if ((flags & as::asTM_INOUTREF) == 0) return pass_number<T>(place, argument);
    context_.SetArgAddress(place, const_cast<void*>(argument));
    return true;
}

bool Passed::pass_text(as::asUINT place, const void* argument) {
    auto value = std::make_shared<TextValue>();
    if (argument != nullptr) *value = {static_cast<const char*>(argument), true};
    context_.SetArgAddress(place, value.get());
    kept_.push_back(value);
    return true;
}

bool Passed::pass_string(as::asUINT place, const void* argument) {
    if (takes_text(place)) return argument == nullptr && pass_text(place, nullptr);
    if (argument == nullptr) return false;
    const auto element = elements_.find(argument);
    if (element != elements_.end()) {
        context_.SetArgAddress(place, element->second);
        return true;
    }
    auto* string = static_cast<CStringUTF8*>(const_cast<void*>(argument));
    auto value = std::make_shared<std::string>(uxscript::standard(*string));
    context_.SetArgAddress(place, value.get());
    kept_.push_back(value);
    back_.push_back([value, string] { string->Assign(value->data(), value->size()); });
    return true;
}

as::CScriptArray* Passed::new_array(as::asUINT place, const char* declaration, int size) {
    as::CScriptArray* array =
        uxscript::make_array(&engine_, declaration, static_cast<as::asUINT>(size));
    releases_.push_back([array] { array->Release(); });
    context_.SetArgObject(place, array);
    return array;
}

template <typename T>
bool Passed::pass_numbers(as::asUINT place, CArray<T, T>* from) {
    const char* name = std::is_same_v<T, int>    ? "array<int>"
                       : std::is_same_v<T, bool> ? "array<bool>"
                                                 : "array<double>";
    as::CScriptArray* array = new_array(place, name, from->GetSize());
    for (int i = 0; i < from->GetSize(); ++i) {
        *static_cast<T*>(array->At(static_cast<as::asUINT>(i))) = from->GetAt(i);
    }
    back_.push_back([array, from] {
        CArray<T, T> now;
        for (as::asUINT i = 0; i < array->GetSize(); ++i) now.Add(*static_cast<T*>(array->At(i)));
        *from = now;
    });
    return true;
}

bool Passed::pass_strings(as::asUINT place, CWBOStringArray* from) {
    as::CScriptArray* array = new_array(place, "array<string>", from->GetSize());
    for (int i = 0; i < from->GetSize(); ++i) {
        auto* const element = static_cast<std::string*>(array->At(static_cast<as::asUINT>(i)));
        *element = uxscript::standard(from->GetAt(i));
        elements_[&from->ElementAt(i)] = element;
    }
    back_.push_back([array, from] {
        from->SetSize(static_cast<int>(array->GetSize()));
        for (int i = 0; i < from->GetSize(); ++i) {
            const auto& text = *static_cast<std::string*>(array->At(static_cast<as::asUINT>(i)));
            from->ElementAt(i).Assign(text.data(), text.size());
        }
    });
    return true;
}

// An array of another type, and an object that is none, do not fit the parameter of a script.
bool Passed::pass_script_array(as::asUINT place, const void* argument) {
    if (argument == nullptr) {
        context_.SetArgObject(place, nullptr);
        return true;
    }
    auto* object = static_cast<UXScriptObject*>(const_cast<void*>(argument));
    const std::string wanted = engine_.GetTypeDeclaration(type_of(place));
    const auto data = [&](unsigned type) -> void* {
        try {
            return object->GetInternalData(type);
        } catch (const std::runtime_error&) {
            return nullptr;
        }
    };
    if (wanted == "array<int>@") {
        auto* array = static_cast<CArray<int, int>*>(data(kUXTypeIntVector));
        return array != nullptr && pass_numbers(place, array);
    }
    if (wanted == "array<double>@") {
        auto* array = static_cast<CArray<double, double>*>(data(kUXTypeDoubleVector));
        return array != nullptr && pass_numbers(place, array);
    }
    if (wanted == "array<bool>@") {
        auto* array = static_cast<CArray<bool, bool>*>(data(kUXTypeBoolVector));
        return array != nullptr && pass_numbers(place, array);
    }
    auto* array = static_cast<CWBOStringArray*>(data(kUXTypeStringArray));
    return wanted == "array<string>@" && array != nullptr && pass_strings(place, array);
}

template <typename Array>
bool pass_array_or_null(const void* argument, const std::function<bool(Array*)>& pass,
                        as::asIScriptContext& context, as::asUINT place) {
    if (argument != nullptr) return pass(static_cast<Array*>(const_cast<void*>(argument)));
    context.SetArgObject(place, nullptr);
    return true;
}

bool Passed::pass(as::asUINT place, std::type_index type, const void* argument) {
    using Way = bool (Passed::*)(as::asUINT, const void*);
    static const std::map<std::type_index, Way> ways = {
        {typeid(UXXmlWrapperBase*), &Passed::pass_counted<UXXmlWrapperBase>},
        {typeid(const UXXmlWrapperBase*), &Passed::pass_counted<UXXmlWrapperBase>},
        {typeid(UXXmlWrapperBase), &Passed::pass_counted<UXXmlWrapperBase>},
        {typeid(tagDescStatResults*), &Passed::pass_counted<tagDescStatResults>},
        {typeid(tagHistogramStatsResult*), &Passed::pass_counted<tagHistogramStatsResult>},
        {typeid(tagPOINT), &Passed::pass_counted<tagPOINT>},
        {typeid(const char*), &Passed::pass_text},
        {typeid(CStringUTF8*), &Passed::pass_string},
        {typeid(const CStringUTF8*), &Passed::pass_string},
        {typeid(CStringUTF8), &Passed::pass_string},
        {typeid(int*), &Passed::pass_pointer<int>},
        {typeid(const int*), &Passed::pass_pointer<int>},
        {typeid(double*), &Passed::pass_pointer<double>},
        {typeid(const double*), &Passed::pass_pointer<double>},
        {typeid(bool*), &Passed::pass_pointer<bool>},
        {typeid(int), &Passed::pass_pointer<int>},  // or a reference
        {typeid(unsigned int), &Passed::pass_pointer<unsigned int>},
        {typeid(double), &Passed::pass_pointer<double>},
        {typeid(bool), &Passed::pass_pointer<bool>},
        {typeid(char), &Passed::pass_number<char>},
        {typeid(unsigned char), &Passed::pass_number<unsigned char>},
        {typeid(unsigned short), &Passed::pass_number<unsigned short>},
        {typeid(UXScriptObject*), &Passed::pass_script_array},
    };
    const auto way = ways.find(type);
    if (way != ways.end()) return (this->*way->second)(place, argument);
    if (type == typeid(CWBOStringArray*) || type == typeid(const CWBOStringArray*) ||
        type == typeid(CWBOStringArray)) {
        return pass_array_or_null<CWBOStringArray>(
            argument, [&](auto* array) { return pass_strings(place, array); }, context_, place);
    }
    if (type == typeid(CArray<int, int>*) || type == typeid(CArray<int, int>)) {
        return pass_array_or_null<CArray<int, int>>(
            argument, [&](auto* array) { return pass_numbers(place, array); }, context_, place);
    }
    if (type == typeid(CArray<double, double>*) || type == typeid(CArray<double, double>)) {
        return pass_array_or_null<CArray<double, double>>(
            argument, [&](auto* array) { return pass_numbers(place, array); }, context_, place);
    }
    ADD_FAILURE() << "no way to pass " << type.name();
    return false;
}

ScriptDoor::ScriptDoor() {
    std::ostringstream code;
    std::vector<std::string> names;
    as::asIScriptEngine* engine = engine_.engine();
    for (unsigned i = 0; i < engine->GetGlobalFunctionCount(); ++i) {
        const as::asIScriptFunction* function = engine->GetGlobalFunctionByIndex(i);
        const std::string name = function->GetName();
        if (!all_calls().calls().contains(name)) continue;
        std::string declaration = function->GetDeclaration(true, true, true);
        declaration.replace(declaration.find(name + "("), name.size(),
                            "call_" + std::to_string(names.size()));
        std::string arguments;
        for (unsigned p = 0; p < function->GetParamCount(); ++p) {
            const char* parameter = nullptr;
            function->GetParam(p, nullptr, nullptr, &parameter);
            arguments += std::string(p == 0 ? "" : ", ") + parameter;
        }
        const bool nothing = function->GetReturnTypeId() == as::asTYPEID_VOID;
        code << declaration << " { " << (nothing ? "" : "return ") << name << "(" << arguments
             << "); }\n";
        names.push_back(name);
    }
    EXPECT_TRUE(engine_.compile("door", code.str())) << engine_.problem();
    EXPECT_EQ(engine_.run("call_none"), UXScriptOutcome::kNoFunction);
    for (std::size_t i = 0; i < names.size(); ++i) {
        forms_[names[i]].push_back(
            engine->GetModuleByIndex(0)->GetFunctionByName(("call_" + std::to_string(i)).c_str()));
    }
}

bool is_string(std::type_index type) {
    return type == typeid(CStringUTF8*) || type == typeid(const CStringUTF8*) ||
           type == typeid(CStringUTF8);
}

std::string result_of(as::asIScriptContext& context, const as::asIScriptFunction& form) {
    switch (form.GetReturnTypeId()) {
        case as::asTYPEID_VOID:
            return Outcome().text();
        case as::asTYPEID_BOOL:
            return std::to_string(context.GetReturnByte());
        case as::asTYPEID_INT32:
            return std::to_string(static_cast<int>(context.GetReturnDWord()));
        default:
            return *static_cast<std::string*>(context.GetReturnObject());
    }
}

bool ScriptDoor::call(const std::string& name, const std::vector<std::type_index>& types,
                      const void* const* arguments, Probe* probe, std::string& result) {
    const auto forms = forms_.find(name);
    if (forms == forms_.end()) return false;
    as::asIScriptContext* context = engine_.engine()->CreateContext();
    bool called = false;
    for (as::asIScriptFunction* form : forms->second) {
        if (called || form->GetParamCount() != types.size()) continue;
        context->Prepare(form);
        Passed passed(*engine_.engine(), *form, *context);
        bool fits = true;
        for (const bool strings : {false, true}) {  // which may be elements of arrays
            for (std::size_t i = 0; i < types.size() && fits; ++i) {
                if (is_string(types[i]) != strings) continue;
                fits = passed.pass(static_cast<as::asUINT>(i), types[i], arguments[i]);
            }
        }
        if (!fits) {
            context->Unprepare();
            continue;
        }
        if (probe != nullptr) probe->before_call();
        const int outcome = context->Execute();
        if (probe != nullptr) probe->after_call();
        passed.bring_back();
        result = outcome == as::asEXECUTION_FINISHED ? result_of(*context, *form)
                                                     : context->GetExceptionString();
        if (outcome != as::asEXECUTION_FINISHED && probe == nullptr) {
            ADD_FAILURE() << name << ": " << result;
        }
        context->Unprepare();
        called = true;
    }
    context->Release();
    ++(called ? calls_ : refused_[name]);
    return called;
}

const std::set<std::string>& script_forms() {
    static const std::set<std::string> forms = [] {
        std::set<std::string> names;
        std::ifstream list(source_path("docs/entry_points.txt"));
        std::string kind, name, rest;
        while (list >> kind >> name && std::getline(list, rest)) {
            if (kind == "script") names.insert(name);
        }
        EXPECT_FALSE(names.empty());
        return names;
    }();
    return forms;
}

ScriptDoor& script_door() {
    static ScriptDoor made;
    return made;
}

class ScriptSweep : public testing::TestWithParam<std::string> {
protected:
    void SetUp() override {
        door() = [](const auto& name, const auto& types, const auto* arguments, auto* probe,
                    auto& result) {
            return script_door().call(name, types, arguments, probe, result);
        };
    }
    void TearDown() override { door() = nullptr; }
};

}  // namespace

TEST_P(ScriptSweep, GivesWhatCppGives) {
    if (!script_door().knows(GetParam())) {  // a native operation: its script form is tried
        EXPECT_FALSE(script_forms().contains(GetParam()));
        return;
    }
    const int before = script_door().calls();
    for (const Call& call : all_calls().calls().at(GetParam())) {
        call.try_bad_arguments();
        call.try_aliases();
    }
    EXPECT_GT(script_door().calls(), before);
}

// What the language allocates for itself, by malloc, does not fail: it does not check for that
// everywhere. What it calls is ours.
TEST_P(ScriptSweep, RaisesAnExceptionWhenMemoryRunsShort) {
    if (!script_door().knows(GetParam())) return;
    const int before = script_door().calls();
    for (const Call& call : all_calls().calls().at(GetParam())) {
        fail_each_allocation(call, "out of memory");
    }
    EXPECT_GT(script_door().calls(), before);
}
INSTANTIATE_TEST_SUITE_P(Sweep, ScriptSweep, testing::ValuesIn(all_calls().names()),
                         [](const auto& row) { return row.param; });

}  // namespace uxtest
