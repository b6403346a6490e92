// Calls of entry points with good arguments, and with one of them spoilt at a time.
//
// A row names the entry point, its results, and a good argument for every parameter. Each argument
// knows how it can be bad: a pointer may be null, a handle invalid or its node removed, a script
// object of another type. A call with a bad argument must give the failure value and leave the
// trees as they were; arguments that may be missing must not keep the call from working.
#pragma once

#include <array>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include "uxtree/uxtree_Utils.h"

#include "gmock/gmock.h"
#include "support/test_tree.h"

namespace uxtest {

// A result as a row states it: a number or a text; nothing for void.
class Outcome {
public:
    Outcome() = default;
    template <typename T, typename = std::enable_if_t<std::is_integral_v<T>>>
    Outcome(T number) : text_(std::to_string(static_cast<long long>(number))) {}
    Outcome(const char* text) : text_(text) {}
    Outcome(const CStringUTF8& text) : text_(static_cast<const char*>(text)) {}
    const std::string& text() const { return text_; }

private:
    std::string text_ = "nothing";
};

// A script object that cannot even be asked.
struct ThrowingObject : UXScriptObject {
    int IsValid() override { throw std::runtime_error("asked"); }
    void* GetInternalData(unsigned int) override { throw std::runtime_error("asked"); }
};

// --- the values that a call works on ----------------------------------------------------------

inline std::string show(const UXXmlWrapperBase& node) {
    return to_text(node);
}
inline std::string show(const CStringUTF8& text) {
    return static_cast<const char*>(text);
}
inline std::string show(const CWBOStringArray& array) {
    return testing::PrintToString(texts(array));
}
template <typename T, typename A>
std::string show(const CArray<T, A>& array) {
    return testing::PrintToString(numbers(array));
}
template <typename Array>
std::string show(const UXScriptArray<Array>& object) {
    return show(object.array());
}
inline std::string show(const ThrowingObject&) {
    return "an object that throws";
}
template <typename T, typename = std::enable_if_t<std::is_trivially_copyable_v<T>>>
std::string show(const T& value) {
    return testing::PrintToString(value);
}

// Two trees of the same text, and whatever else the arguments of one call refer to.
class Scene {
public:
    explicit Scene(const char* xml) : trees_{TestTree(xml), TestTree(xml)} {}
    UXXmlWrapperBase at(std::size_t tree, const char* path) const { return trees_[tree].at(path); }
    // A node that stands outside the trees, for outputs to refer to before the call.
    UXXmlWrapperBase bystander() const { return aside_.at("bystander"); }
    // A handle to a node that is no more.
    UXXmlWrapperBase removed() const;
    // Keeps a value for the life of the scene and lists it among the outputs.
    template <typename T>
    T& keep(T value) {
        auto kept = std::make_shared<T>(std::move(value));
        outputs_.push_back([kept] { return show(*kept); });
        return *kept;
    }
    UXXmlWrapperBase root(std::size_t tree) const { return trees_[tree].root(); }
    std::string trees() const { return trees_[0].text() + "\n" + trees_[1].text(); }
    std::string outputs() const;

private:
    std::array<TestTree, 2> trees_;
    TestTree aside_{"<aside><bystander/><victim><child/></victim></aside>"};
    std::vector<std::function<std::string()>> outputs_;
};

// --- arguments --------------------------------------------------------------------------------

// What a row says about all its calls.
struct Row {
    Outcome good = {};
    Outcome bad = {};
    const char* tree =
        "<r DataID='1' Label='R'><a DataID='11' Label='A' n='5'>1</a>"
        "<b DataID='12' Label='B'><c DataID='13' Label='C'>2</c></b></r>";
    bool clearsOutputs = false;          // a failure empties outputs, or releases output handles
    std::vector<Outcome> shortage = {};  // further results when memory runs short
};

// What an argument must know of the parameter that it fills.
struct Parameter {
    bool isPointer = false;
    bool isScriptObject = false;
};
template <typename Param>
constexpr Parameter parameter_of() {
    return {std::is_pointer_v<Param>, std::is_same_v<Param, UXScriptObject*>};
}

// One way to fill a parameter. make: where the object is that a pointer or reference refers to, or
// that is copied into the parameter. acts: the call works all the same, and may change the trees.
struct Trial {
    std::string how;
    std::function<const void*(Scene&)> make;
    Outcome expected;
    bool acts;
};
using Trials = std::vector<Trial>;  // the good one comes first

template <typename Make>
Trial kept_trial(std::string how, Parameter parameter, Make make, const Outcome& expected,
                 bool acts) {
    const auto keep = [=](Scene& scene) -> const void* {
        auto& kept = scene.keep(make(scene));
        if constexpr (std::is_base_of_v<UXScriptObject, std::decay_t<decltype(kept)>>) {
            if (parameter.isScriptObject) return static_cast<UXScriptObject*>(&kept);
        }
        return &kept;
    };
    return {std::move(how), keep, expected, acts};
}

// A place inside an argument where a text stands: a string, or the first element of an array.
struct Held {
    const void* argument;
    CStringUTF8* place;
    CWBOStringArray* array = nullptr;
};
using HoldText = std::function<Held(Scene&, const std::string* text)>;
template <typename Array>
CStringUTF8* place_in(Array& array, const std::string* text) {
    if (array.IsEmpty()) array.Add("");
    if (text != nullptr) array.SetAt(0, text->c_str());
    return &array.ElementAt(0);
}
// What an argument has to do with texts: it is one, or one may stand in it.
struct Texts {
    std::optional<std::string> text;
    HoldText hold;
    bool isString = false;
};

// What an argument says about its bad forms; unsaid, they give the row's failure value.
template <typename Self>
struct Spoilable {
    std::optional<Outcome> onNull, onInvalid, onWrongType, onThrow;
    bool nullActs = false;
    bool invalidActs = false;

    // May be missing: null works like a good argument, or with a result of its own.
    Self optional() const {
        Self copy = self();
        copy.nullActs = true;
        return copy;
    }
    Self optional(Outcome result) const { return optional().null(result); }
    Self null(Outcome result) const {
        Self copy = self();
        copy.onNull = result;
        return copy;
    }
    Self invalid(Outcome result) const {
        Self copy = self();
        copy.onInvalid = result;
        return copy;
    }
    // An invalid handle works like a good one.
    Self may_be_invalid() const {
        Self copy = self();
        copy.invalidActs = true;
        return copy;
    }
    Self wrong_type(Outcome result) const {
        Self copy = self();
        copy.onWrongType = result;
        return copy;
    }

    Self throwing(Outcome result) const {
        Self copy = self();
        copy.onThrow = result;
        return copy;
    }

    void add_null(Trials& trials, Parameter parameter, const Row& row) const {
        if (!parameter.isPointer) return;
        trials.push_back({"null", [](Scene&) -> const void* { return nullptr; },
                          onNull.value_or(nullActs ? row.good : row.bad), nullActs});
    }

private:
    const Self& self() const { return static_cast<const Self&>(*this); }
};

// A handle to a node of one of the two trees.
struct NodeArgument : Spoilable<NodeArgument> {
    using Object = UXXmlWrapperBase;
    std::size_t tree;
    const char* path;

    Trials trials(Parameter parameter, const Row& row) const;
};
inline NodeArgument node(const char* path = "") {
    return {{}, 0, path};
}
inline NodeArgument other(const char* path = "") {
    return {{}, 1, path};
}

// A handle that only receives a node, so that what it holds before the call does not matter.
struct OutNodeArgument : Spoilable<OutNodeArgument> {
    using Object = UXXmlWrapperBase;
    Trials trials(Parameter parameter, const Row& row) const;
};
inline OutNodeArgument out() {
    return {};
}

struct TextArgument : Spoilable<TextArgument> {
    using Object = char;
    std::string text;

    Trials trials(Parameter parameter, const Row& row) const;
};
inline TextArgument text(const std::string& value) {
    return {{}, value};
}

// A string, number, record or native array, in or out.
template <typename T>
struct ValueArgument : Spoilable<ValueArgument<T>> {
    using Object = T;
    T initial;

    Trials trials(Parameter parameter, const Row& row) const {
        Trials out{kept_trial(
            "good", parameter, [v = initial](Scene&) { return v; }, row.good, true)};
        this->add_null(out, parameter, row);
        return out;
    }
};
template <typename T>
ValueArgument<T> value(T initial) {
    return {{}, initial};
}
inline ValueArgument<CStringUTF8> string(const char* initial = "kept") {
    return {{}, initial};
}

// An array, in or out: itself, or behind a script object as the parameter asks.
template <typename Array>
struct ArrayArgument : Spoilable<ArrayArgument<Array>> {
    using Object = Array;
    Array initial;

    Held hold(Scene& scene, Parameter parameter, const std::string* text) const {
        if (!parameter.isScriptObject) {
            Array& kept = scene.keep(initial);
            return {&kept, place_in(kept, text), &kept};
        }
        auto& kept = scene.keep(UXScriptArray<Array>(initial));
        return {static_cast<UXScriptObject*>(&kept), place_in(kept.array(), text), &kept.array()};
    }
    Trials trials(Parameter parameter, const Row& row) const {
        if (!parameter.isScriptObject) {
            Trials out{good(parameter, initial, row)};
            this->add_null(out, parameter, row);
            return out;
        }
        Trials out{good(parameter, UXScriptArray<Array>(initial), row)};
        this->add_null(out, parameter, row);
        add_wrong<CArray<bool, bool>>(out, parameter, row, "a vector of booleans");
        add_wrong<CArray<int, int>>(out, parameter, row, "a vector of integers");
        add_wrong<CArray<double, double>>(out, parameter, row, "a vector of doubles");
        add_wrong<CWBOStringArray>(out, parameter, row, "an array of texts");
        out.push_back(kept_trial(
            "a node handle", parameter, [](Scene& s) { return s.bystander(); }, wrong(row), false));
        out.push_back(kept_trial(
            "an object that throws", parameter, [](Scene&) { return ThrowingObject(); },
            this->onThrow.value_or(wrong(row)), false));
        return out;
    }

private:
    template <typename Kept>
    static Trial good(Parameter parameter, const Kept& kept, const Row& row) {
        return kept_trial(
            "good", parameter, [kept](Scene&) { return kept; }, row.good, true);
    }
    Outcome wrong(const Row& row) const { return this->onWrongType.value_or(row.bad); }
    template <typename Other>
    void add_wrong(Trials& out, Parameter parameter, const Row& row, const char* how) const {
        if constexpr (!std::is_same_v<Array, Other>) {
            out.push_back(kept_trial(
                how, parameter, [](Scene&) { return UXScriptArray<Other>(); }, wrong(row), false));
        }
    }
};
inline ArrayArgument<CWBOStringArray> strings(const std::vector<std::string>& values = {}) {
    return {{}, string_list(values)};
}
inline ArrayArgument<CArray<int, int>> ints(const std::vector<int>& values = {}) {
    return {{}, number_list(values)};
}
inline ArrayArgument<CArray<double, double>> doubles(const std::vector<double>& values = {}) {
    return {{}, number_list(values)};
}
inline ArrayArgument<CArray<bool, bool>> bools(const std::vector<bool>& values = {}) {
    CArray<bool, bool> array;
    for (const bool value : values) array.Add(value);
    return {{}, array};
}

// All ways to fill a parameter with an argument; a plain value has a good one alone.
using TrialMaker = std::function<Trials(const Row&)>;
template <typename Param, typename Argument>
TrialMaker trials_of(const Argument& argument) {
    if constexpr (requires { typename Argument::Object; }) {
        using Object = typename Argument::Object;
        using Referred = std::remove_cv_t<std::remove_pointer_t<std::remove_reference_t<Param>>>;
        static_assert(
            std::is_same_v<Referred, Object> || (std::is_same_v<Referred, UXScriptObject> &&
                                                 (std::is_base_of_v<UXScriptObject, Object> ||
                                                  std::is_same_v<Argument, ArrayArgument<Object>>)),
            "the argument does not fit the parameter");
        return [argument](const Row& row) { return argument.trials(parameter_of<Param>(), row); };
    } else if constexpr (std::is_pointer_v<Param>) {
        const void* const address = static_cast<Param>(argument);
        return [address](const Row& row) {
            return Trials{{"good", [address](Scene&) { return address; }, row.good, true}};
        };
    } else {
        const auto kept = std::make_shared<const Param>(static_cast<Param>(argument));
        return [kept](const Row& row) {
            const auto address = [kept](Scene&) -> const void* { return kept.get(); };
            return Trials{{"good", address, row.good, true}};
        };
    }
}

template <typename Param, typename Argument>
Texts texts_of(const Argument& argument) {
    if constexpr (std::is_same_v<Argument, TextArgument>) {
        return {.text = argument.text, .hold = {}};
    } else if constexpr (std::is_same_v<Argument, ArrayArgument<CWBOStringArray>>) {
        return {.text = {}, .hold = [argument](Scene& scene, const std::string* text) {
                    return argument.hold(scene, parameter_of<Param>(), text);
                }};
    } else if constexpr (std::is_same_v<Argument, ValueArgument<CStringUTF8>>) {
        const auto hold = [argument](Scene& scene, const std::string* text) -> Held {
            CStringUTF8& kept = scene.keep(argument.initial);
            if (text != nullptr) kept = text->c_str();
            return {&kept, &kept};
        };
        return {.text = {}, .hold = hold, .isString = true};
    } else {
        return {};
    }
}

// --- calls ------------------------------------------------------------------------------------

// Looks at a call: before_call() and after_call() stand right around the call alone.
class Probe {
public:
    virtual ~Probe() = default;
    virtual void prepare(const Scene& /*scene*/) {}
    virtual void before_call() = 0;
    virtual void after_call() = 0;
    virtual void done(const Scene& scene, const Outcome& result, const Row& row) = 0;
};

// A row: an entry point with all that may be passed to it.
class Call {
public:
    using Invoke = std::function<Outcome(const void* const* arguments, Probe* probe)>;

    Call(Row row, Invoke invoke, std::vector<TrialMaker> parameters, std::vector<Texts> texts)
        : row_(std::move(row)),
          invoke_(std::move(invoke)),
          parameters_(std::move(parameters)),
          texts_(std::move(texts)) {}

    // Calls with good arguments, then with each of them spoilt in each of its ways.
    void try_bad_arguments() const;
    // Calls with each text standing inside each string or array, and with each string standing
    // inside each array; what comes out is what comes out with a text that stands elsewhere.
    void try_aliases() const;
    // One good call under a probe.
    void probe(Probe& probe) const;

private:
    std::vector<Trials> all_trials() const;
    std::vector<const void*> make(const std::vector<const Trial*>& chosen, Scene& scene) const;
    void try_once(const std::vector<const Trial*>& chosen, const Outcome& expected,
                  bool acts) const;
    void try_text_inside(std::size_t text, std::size_t holder, bool ownBuffer) const;
    void try_string_inside(std::size_t string, std::size_t holder, bool ownBuffer) const;

    Row row_;
    Invoke invoke_;
    std::vector<TrialMaker> parameters_;
    std::vector<Texts> texts_;
};

// Reads an argument out of where a trial has put it.
template <typename Param>
Param argument_at(const void* place) {
    if constexpr (std::is_pointer_v<Param>) {
        return static_cast<Param>(const_cast<void*>(place));
    } else {
        using Object = std::remove_reference_t<Param>;
        return *static_cast<Object*>(const_cast<void*>(place));
    }
}

// Entry points by name, with their rows.
class Sweep {
public:
    template <typename Result, typename... Params, typename... Arguments>
    void add(const char* name, Result (*entry)(Params...), const Row& row,
             const Arguments&... arguments) {
        static_assert(sizeof...(Params) == sizeof...(Arguments), "one argument per parameter");
        calls_[name].push_back(Call(row, invoker(entry, std::index_sequence_for<Params...>()),
                                    {trials_of<Params>(arguments)...},
                                    {texts_of<Params>(arguments)...}));
    }
    const std::map<std::string, std::vector<Call>>& calls() const { return calls_; }

private:
    template <typename Result, typename... Params, std::size_t... I>
    static Call::Invoke invoker(Result (*entry)(Params...), std::index_sequence<I...>) {
        return [entry]([[maybe_unused]] const void* const* arguments, Probe* probe) -> Outcome {
            if (probe != nullptr) probe->before_call();
            if constexpr (std::is_void_v<Result>) {
                entry(argument_at<Params>(arguments[I])...);
                if (probe != nullptr) probe->after_call();
                return {};
            } else {
                const Result result = entry(argument_at<Params>(arguments[I])...);
                if (probe != nullptr) probe->after_call();
                return result;
            }
        };
    }

    std::map<std::string, std::vector<Call>> calls_;
};

// All of them.
const Sweep& all_calls();

// The name and the address of an entry point, for Sweep::add.
#define UX_ENTRY(name) #name, &name

void add_frame_rows(Sweep& sweep);
void add_lookup_rows(Sweep& sweep);
void add_tree_rows(Sweep& sweep);
void add_data_rows(Sweep& sweep);
void add_label_rows(Sweep& sweep);
void add_outline_rows(Sweep& sweep);
void add_import_rows(Sweep& sweep);
void add_analysis_rows(Sweep& sweep);
void add_stats_rows(Sweep& sweep);
void add_report_rows(Sweep& sweep);

}  // namespace uxtest
