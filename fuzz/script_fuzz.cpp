// Random scripts: statements that call what scripts can call, with whatever fits the parameters,
// chosen by the bytes. Each compiles, and ends by itself, by an exception or at a limit.
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <optional>
#include <set>
#include <string>
#include <vector>

#define AS_USE_NAMESPACE
#include <angelscript.h>

#include "uxtree/script.h"

namespace {

namespace as = AngelScript;

class Bytes {
public:
    Bytes(const std::uint8_t* data, std::size_t size) : data_(data), size_(size) {}
    bool left() const { return at_ < size_; }
    std::size_t below(std::size_t n) {
        if (at_ >= size_) return 0;
        std::size_t value = data_[at_++];
        if (n > 256 && at_ < size_) value = value * 256 + data_[at_++];
        return value % n;
    }

private:
    const std::uint8_t* data_;
    std::size_t size_;
    std::size_t at_ = 0;
};

using Choices = std::vector<const char*>;
const char* one_of(Bytes& bytes, const Choices& choices) {
    return choices[bytes.below(choices.size())];
}

// An expression for a parameter of a type; "" when there is none.
std::string argument(Bytes& bytes, const std::string& type) {
    static const Choices trees{"t0", "t1", "t2", "t3", "null", "gone"};
    static const Choices texts{
        "none", "\"\"",    "\"DataID\"",     "\"a\"",     "\"b\"",          "\"Label\"",
        "s0",   "\"a/b\"", "\"Result_1_2\"", "\"1|x|2\"", "\"\\xff\\xfe\"", "\"a b\""};
    static const Choices numbers{"0",   "1",  "-1",    "2",     "5", "12",
                                 "100", "-3", "32767", "65536", "i0"};
    if (type == "none") return type;
    if (type.find("Tree@") != std::string::npos) return one_of(bytes, trees);
    if (type == "const text&in") return one_of(bytes, texts);
    if (type == "const string&in" || type == "const Tree&in") {
        return type == "const Tree&in"
                   ? "t1"
                   : one_of(bytes, {"\"a\"", "\"b/c\"", "s0", "\"\"", "\"//a\""});
    }
    if (type == "string&" || type == "string&inout") return one_of(bytes, {"s0", "s1"});
    if (type == "int&" || type == "int&inout") return one_of(bytes, {"i0", "i1"});
    if (type == "uint&" || type == "uint&inout") return "u0";
    if (type == "bool&" || type == "bool&inout") return "b0";
    if (type == "double&" || type == "double&inout") return one_of(bytes, {"d0", "d1"});
    if (type == "array<int>@") return one_of(bytes, {"ai0", "ai1", "null"});
    if (type == "array<double>@") return one_of(bytes, {"ad0", "null"});
    if (type == "array<bool>@") return one_of(bytes, {"ab0", "null"});
    if (type == "array<string>@") return one_of(bytes, {"as0", "as1", "null"});
    if (type == "bool") return one_of(bytes, {"true", "false"});
    if (type == "int" || type == "int64" || type == "double") return one_of(bytes, numbers);
    if (type == "uint" || type == "uint8" || type == "uint16" || type == "uint64") {
        return one_of(bytes, {"0", "1", "2", "3", "65", "255"});
    }
    if (type.find("tagDescStatResults") == 0) return "r0";
    if (type.find("tagHistogramStatsResult") == 0) return "h0";
    if (type.find("tagPOINT") != std::string::npos) return "p0";
    return "";
}

struct Callable {
    std::string name;
    std::vector<std::string> types;
};

bool add_callable(std::vector<Callable>& all, std::vector<std::string>& firstForm,
                  const as::asIScriptEngine& engine, const as::asIScriptFunction& function,
                  const std::string& prefix) {
    Callable made{prefix + function.GetName(), {}};
    for (unsigned i = 0; i < function.GetParamCount(); ++i) {
        int type = 0;
        as::asDWORD flags = 0;
        function.GetParam(i, &type, &flags);
        std::string text = engine.GetTypeDeclaration(type);
        if ((flags & as::asTM_INOUTREF) == as::asTM_INREF) text += "&in";
        if ((flags & as::asTM_OUTREF) != 0) text += "&";
        if ((flags & as::asTM_CONST) != 0 && text.find("const") != 0) text.insert(0, "const ");
        made.types.push_back(text);
        Bytes none(nullptr, 0);
        if (argument(none, text).empty()) return false;
    }
    // Another form of a function takes none in the place of an output.
    if (!all.empty() && all.back().name == made.name) {
        for (std::size_t i = 0; i < made.types.size(); ++i) {
            if (made.types[i] != firstForm[i]) made.types[i] = "none";
        }
    } else {
        firstForm = made.types;
    }
    all.push_back(std::move(made));
    return true;
}

// What writes files, and what makes as many nodes as it is told to.
bool is_left_out(const std::string& name) {
    static const std::set<std::string> names{"uxtree_nlsf_add_params_node_DataID", "show_value",
                                             "throw", "print"};
    return names.contains(name) || name.find("save") != std::string::npos;
}

std::vector<Callable> all_callables(const as::asIScriptEngine& engine) {
    std::vector<Callable> all;
    std::vector<std::string> firstForm;
    for (unsigned i = 0; i < engine.GetGlobalFunctionCount(); ++i) {
        const as::asIScriptFunction* function = engine.GetGlobalFunctionByIndex(i);
        const std::string name = function->GetName();
        const bool ours = name.rfind("ux", 0) == 0 || name.rfind("vctree", 0) == 0 ||
                          name.rfind("VCTree", 0) == 0 || name.rfind("report_", 0) == 0 ||
                          name.rfind("format", 0) == 0 || name.rfind("parse", 0) == 0;
        if (ours && !is_left_out(name)) add_callable(all, firstForm, engine, *function, "");
    }
    for (const auto& [type, object] : {std::pair{"Tree", "t0."}, std::pair{"string", "s0."}}) {
        const as::asITypeInfo* info = engine.GetTypeInfoByName(type);
        for (unsigned i = 0; i < info->GetMethodCount(); ++i) {
            const as::asIScriptFunction* method = info->GetMethodByIndex(i);
            const std::string name = method->GetName();
            if (name.rfind("op", 0) == 0 || method->IsProperty() || is_left_out(name)) continue;
            add_callable(all, firstForm, engine, *method, object);
        }
    }
    return all;
}

std::string statement(Bytes& bytes, const std::vector<Callable>& callables) {
    if (bytes.below(8) == 0) {
        return one_of(bytes, {"t0 = t1;", "t1 = t0.copy();", "t2.remove();", "t3 = t0[\"a/b\"];",
                              "t3 = t0.first;", "t0.parse(\"<r><a DataID='5'>1</a></r>\");",
                              "s0 = t0.path + s1;", "print(t0, ai0, as0, d0, b0);",
                              "t1 = Tree(\"x\"); t1.add_copy(t0);", "as0.insertLast(s0);",
                              "s0 += d0; s1 = s0 + i0 + b0; u0 = s1.length();", "s0[i0] = 65;",
                              "d0 = parseFloat(s0); d1 = d0 / i1; s1 = d1;"});
    }
    const Callable& each = callables[bytes.below(callables.size())];
    std::string text = each.name + "(";
    for (std::size_t i = 0; i < each.types.size(); ++i) {
        text += (i == 0 ? "" : ", ") + argument(bytes, each.types[i]);
    }
    return text + ");";
}

constexpr const char* kStart =
    "void main() {\n"
    "Tree t0, t1, t2, t3, gone; int i0 = 1, i1 = 5; uint u0 = 0; bool b0 = true;\n"
    "double d0 = 1.5, d1 = -1; string s0 = \"a\", s1 = \"b|c\"; array<int> ai0 = {5, 6}, ai1;\n"
    "array<double> ad0 = {1, 2}; array<bool> ab0 = {true}; array<string> as0 = {\"x\", \"y\"}, "
    "as1;\n"
    "tagDescStatResults r0; tagHistogramStatsResult h0; tagPOINT p0;\n"
    "t0.parse(\"<r DataID='1' Label='R'><a DataID='5' RepeatID='2'>1<b DataID='6'>2</b></a>"
    "<c Show='0'/></r>\");\n"
    "t1.parse(\"<x><a DataID='5'>3</a><Range1><X>1</X><Y>2</Y></Range1></x>\");\n"
    "t2 = t1[\"Range1\"]; t3 = t0[\"a\"]; gone = t0[\"c\"]; gone.remove();\n";

UXScriptOptions options() {
    UXScriptOptions options;
    options.files = false;
    options.print = [](std::string_view) {};
    options.extend = UXRegisterScriptKit;
    return options;
}

// One engine for many inputs: making one takes three times as long as a script. It refers to nothing
// that an input leaves behind, but for what its collector holds: a leak is known at once.
class Engine {
public:
    void run(const std::string& code) {
        if (uses_++ % kUses == 0) made_.emplace(options());
        if (!made_->compile("random", code)) fail(code);
        int result = 0;
        const UXScriptOutcome outcome = made_->run_main({}, result, {.seconds = 5, .depth = 50});
        if (outcome != UXScriptOutcome::kDone) fail(code);
        made_->engine()->GetModuleByIndex(0)->Discard();
        as::asUINT held = 0;
        made_->engine()->GarbageCollect();
        made_->engine()->GetGCStatistics(&held);
        if (held != 0) fail(code + "objects are left: " + std::to_string(held) + "\n");
    }

private:
    [[noreturn]] void fail(const std::string& text) const {
        std::fputs((text + made_->problem()).c_str(), stderr);
        std::abort();
    }

    static constexpr unsigned kUses = 1000;
    std::optional<UXScriptEngine> made_;
    unsigned uses_ = 0;
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const std::vector<Callable> callables =
        all_callables(*UXScriptEngine(options()).engine());
    if (callables.size() < 180) std::abort();

    Bytes bytes(data, size);
    std::string code = kStart;
    for (int i = 0; i < 12 && bytes.left(); ++i) {
        code += "try { " + statement(bytes, callables) + " } catch {}\n";
    }
    static Engine engine;
    engine.run(code + "}\n");
    return 0;
}
