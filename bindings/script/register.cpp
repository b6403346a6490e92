// script/register: the types of scripts, and the functions that take them.
#include <cstddef>
#include <iterator>
#include <new>
#include <type_traits>

#include <angelscript/scriptarray.h>
#include <angelscript/scripthelper.h>

#include "uxtree/analysis/ranges.h"
#include "uxtree/script.h"
#include "uxtree/version.h"

#include "call.h"
#include "registrar.h"
#include "string_type.h"

namespace uxscript {

void Place::refuse(const char* why) const {
    const char* name = nullptr;
    call->GetFunction()->GetParam(index, nullptr, nullptr, &name);
    throw ScriptError{std::string(call->GetFunction()->GetName()) + ": '" +
                      (name == nullptr ? "" : name) + "' " + why};
}

namespace {

// --- text

void make_text(as::asIScriptGeneric* call) {
    new (call->GetObject()) TextValue();
}
void make_text_of_string(as::asIScriptGeneric* call) {
    guarded([&] { new (call->GetObject()) TextValue{argument<std::string>(call, 0), true}; });
}
void copy_text(as::asIScriptGeneric* call) {
    guarded([&] { new (call->GetObject()) TextValue(argument<TextValue>(call, 0)); });
}
void end_text(as::asIScriptGeneric* call) {
    self<TextValue>(call).~TextValue();
}
void assign_text(as::asIScriptGeneric* call) {
    guarded([&] { self<TextValue>(call) = argument<TextValue>(call, 0); });
    call->SetReturnAddress(call->GetObject());
}
void text_is_none(as::asIScriptGeneric* call) {
    return_value<bool>(call, !self<TextValue>(call).given);
}
void text_or(as::asIScriptGeneric* call) {
    const auto& text = self<TextValue>(call);
    guarded([&] {
        return_value<std::string>(call, text.given ? text.text : argument<std::string>(call, 0));
    });
}
void same_text(as::asIScriptGeneric* call) {
    const auto& a = self<TextValue>(call);
    const auto& b = argument<TextValue>(call, 0);
    return_value<bool>(call, a.given == b.given && (!a.given || a.text == b.text));
}

void register_text(Registrar& add) {
    static TextValue none;
    add.type("text", sizeof(TextValue), as::asOBJ_VALUE | as::asOBJ_APP_CLASS_CDAK);
    add.behaviour("text", as::asBEHAVE_CONSTRUCT, "void f()", make_text);
    add.behaviour("text", as::asBEHAVE_CONSTRUCT, "void f(const string &in)", make_text_of_string);
    add.behaviour("text", as::asBEHAVE_CONSTRUCT, "void f(const text &in)", copy_text);
    add.behaviour("text", as::asBEHAVE_DESTRUCT, "void f()", end_text);
    add.method("text", "text &opAssign(const text &in)", assign_text);
    // Is there no text?
    add.method("text", "bool get_is_none() const property", text_is_none);
    // The text; missing when it is none.
    add.method("text", "string otherwise(const string &in missing) const", text_or);
    // The same text, or none both.
    add.method("text", "bool opEquals(const text &in) const", same_text);
    add.property("const text none", &none);
}

// --- records

template <class Value>
void make_counted(as::asIScriptGeneric* call) {
    guarded([&] { return_handle(call, new Counted<Value>()); });
}
template <class Value>
void add_reference(as::asIScriptGeneric* call) {
    self<Counted<Value>>(call).add();
}
template <class Value>
void release_reference(as::asIScriptGeneric* call) {
    self<Counted<Value>>(call).release();
}
template <class Value>
void assign_counted(as::asIScriptGeneric* call) {
    self<Counted<Value>>(call).value = argument<Counted<Value>>(call, 0).value;
    call->SetReturnAddress(call->GetObject());
}

// A type that is counted, by its name.
template <class Value>
void register_counted(Registrar& add, const char* name) {
    const std::string type = name;
    add.type(name, 0, as::asOBJ_REF);
    if constexpr (std::is_default_constructible_v<Value>) {
        add.behaviour(name, as::asBEHAVE_FACTORY, (type + "@ f()").c_str(), make_counted<Value>);
    }
    add.behaviour(name, as::asBEHAVE_ADDREF, "void f()", add_reference<Value>);
    add.behaviour(name, as::asBEHAVE_RELEASE, "void f()", release_reference<Value>);
    add.method(name, (type + " &opAssign(const " + type + " &in)").c_str(), assign_counted<Value>);
}

struct Field {
    const char* name;
    std::size_t offset;
};
template <class Value>
void register_fields(Registrar& add, const char* record, const char* type,
                     std::initializer_list<Field> fields) {
    const std::size_t start = offsetof(Counted<Value>, value);
    for (const Field& field : fields) {
        add.field(record, (std::string(type) + " " + field.name).c_str(), start + field.offset);
    }
}

#define UX_FIELD(name)                \
    Field {                           \
#name, offsetof(Record, name) \
    }

void register_statistics(Registrar& add) {
    using Record = tagDescStatResults;
    const char* name = "tagDescStatResults";
    register_counted<Record>(add, name);
    register_fields<Record>(add, name, "int", {UX_FIELD(N), UX_FIELD(Missing)});
    register_fields<Record>(
        add, name, "double",
        {UX_FIELD(Mean), UX_FIELD(SD), UX_FIELD(SEM), UX_FIELD(LCL), UX_FIELD(UCL),
         UX_FIELD(Variance), UX_FIELD(Sum), UX_FIELD(Skewness), UX_FIELD(Kurtosis),
         UX_FIELD(UncorSumSq), UX_FIELD(CorSumSq), UX_FIELD(COV), UX_FIELD(MAD), UX_FIELD(SDx2),
         UX_FIELD(SDx3), UX_FIELD(GeoMean), UX_FIELD(GeoSD), UX_FIELD(Mode), UX_FIELD(WeightSum)});
}

void register_histogram(Registrar& add) {
    using Record = tagHistogramStatsResult;
    const char* name = "tagHistogramStatsResult";
    register_counted<Record>(add, name);
    register_fields<Record>(add, name, "int",
                            {UX_FIELD(N), UX_FIELD(Missing), UX_FIELD(Bandwidth)});
    register_fields<Record>(
        add, name, "double",
        {UX_FIELD(Min), UX_FIELD(Max), UX_FIELD(Sum), UX_FIELD(Mean), UX_FIELD(SD), UX_FIELD(SEM),
         UX_FIELD(LCL), UX_FIELD(UCL), UX_FIELD(Q1), UX_FIELD(Median), UX_FIELD(Q3),
         UX_FIELD(LnMean), UX_FIELD(LnSD), UX_FIELD(WblMean), UX_FIELD(WblSD), UX_FIELD(Scale),
         UX_FIELD(Width), UX_FIELD(Gamalpha), UX_FIELD(Gamtheta)});
}

void register_point(Registrar& add) {
    using Record = tagPOINT;
    register_counted<Record>(add, "tagPOINT");
    register_fields<Record>(add, "tagPOINT", "int", {UX_FIELD(x), UX_FIELD(y)});
}

#undef UX_FIELD

// --- iterators of ranges

template <class Iterator>
void make_iterator(as::asIScriptGeneric* call) {
    auto* node = static_cast<ScriptTree*>(call->GetArgAddress(0));
    guarded([&] {
        UXXmlWrapperBase nothing;
        UXXmlWrapperBase& start = node == nullptr ? nothing : node->value;
        return_handle(call, new Counted<Iterator>(Iterator(start)));
    });
    if (node != nullptr) node->release();
}
// Get with null, which C++ cannot say, is 0.
template <class Iterator>
void iterate(as::asIScriptGeneric* call) {
    auto* node = static_cast<ScriptTree*>(call->GetArgAddress(0));
    auto& iterator = self<Counted<Iterator>>(call).value;
    guarded([&] { return_value<int>(call, node == nullptr ? 0 : iterator.Get(node->value)); });
    if (node != nullptr) node->release();
}
template <class Iterator>
void register_iterator(Registrar& add, const char* name) {
    const std::string type = name;
    register_counted<Iterator>(add, name);
    add.behaviour(name, as::asBEHAVE_FACTORY, (type + "@ f(Tree@ start)").c_str(),
                  make_iterator<Iterator>);
    add.method(name, "int Get(Tree@ result)", iterate<Iterator>);
}
void is_hierarchical(as::asIScriptGeneric* call) {
    return_value<int>(call, self<Counted<VCRangeTreeIterator>>(call).value.IsHierarchical());
}

// --- the whole

// Texts as std::string and the add-on's array: there, or added. False when the engine has other ones.
bool has_strings_and_arrays(Registrar& add) {
    as::asIScriptEngine* const engine = add.engine();
    if (engine->GetTypeInfoByName("string") == nullptr) register_strings(add);
    const as::asITypeInfo* string = engine->GetTypeInfoByName("string");
    if (string == nullptr || string->GetSize() != sizeof(std::string)) return false;
    if (engine->GetTypeInfoByName("array") == nullptr) as::RegisterScriptArray(engine, true);
    const as::asITypeInfo* array = engine->GetTypeInfoByName("array");
    return array != nullptr && (array->GetFlags() & as::asOBJ_TEMPLATE) != 0;
}

}  // namespace
}  // namespace uxscript

int UXRegisterScript(AngelScript::asIScriptEngine* engine) try {
    using namespace uxscript;
    if (engine == nullptr) return as::asINVALID_ARG;
    engine->SetEngineProperty(as::asEP_ALLOW_UNSAFE_REFERENCES, 1);
    Registrar add(engine);
    if (const char* const problem = UXVersionProblem(); *problem != '\0') {
        engine->WriteMessage("", 0, 0, as::asMSGTYPE_ERROR, problem);
        return as::asNOT_SUPPORTED;
    }
    if (!has_strings_and_arrays(add)) {
        engine->WriteMessage("", 0, 0, as::asMSGTYPE_ERROR,
                             "the engine's types string and array are not those of the add-ons");
        return as::asNOT_SUPPORTED;
    }
    static std::string version = UXVersion();
    // The version of the library.
    add.property("const string uxtree_version", &version);
    register_text(add);
    register_counted<UXXmlWrapperBase>(add, "Tree");
    register_tree(add);
    register_statistics(add);
    register_histogram(add);
    register_point(add);
    register_iterator<VCRangeTreeIterator>(add, "VCRangeTreeIterator");
    add.method("VCRangeTreeIterator", "int IsHierarchical() const", is_hierarchical);
    register_iterator<VCSubRangeTreeIterator>(add, "VCSubRangeTreeIterator");
    for (std::size_t i = 0; i < kRowCount; ++i) add.function(kRows[i].declaration, kRows[i].call);
    return add.result();
} catch (const std::bad_alloc&) {
    return AngelScript::asOUT_OF_MEMORY;
}

void* UXMakeScriptTree(const UXXmlWrapperBase& node) {
    return new (std::nothrow) uxscript::ScriptTree(node);
}
UXXmlWrapperBase* UXScriptTreeNode(void* tree) {
    return tree == nullptr ? nullptr : &static_cast<uxscript::ScriptTree*>(tree)->value;
}
void UXReleaseScriptTree(void* tree) {
    if (tree != nullptr) static_cast<uxscript::ScriptTree*>(tree)->release();
}
