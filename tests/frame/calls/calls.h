// Calls of entry points with good arguments, and with one of them spoilt at a time.
//
// A row names the entry point, its results, and a good argument for every parameter. Each argument
// knows how it can be bad: a pointer may be null, a handle invalid or its node removed, a script
// object of another type. A call with a bad argument must give the failure value and leave the
// trees as they were; arguments that may be missing must not keep the call from working.
//
// Row and annotations must say the same: what may be missing, what is written, what an array holds,
// which value a failure has. Where they differ, the row does not compile. The calls then show that
// both are right.
#pragma once

#include <array>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <type_traits>
#include <typeindex>
#include <utility>
#include <vector>

#include "uxtree/uxtree_Utils.h"

#include "entry_facts.h"
#include "gmock/gmock.h"
#include "support/test_tree.h"

namespace uxtest {

// A result as a row states it: a number or a text; nothing for void.
class Outcome {
public:
    constexpr Outcome() = default;
    template <typename T, typename = std::enable_if_t<std::is_integral_v<T>>>
    constexpr Outcome(T number) : number_(static_cast<long long>(number)), isNumber_(true) {}
    constexpr Outcome(const char* text) : text_(text) {}
    constexpr bool is_number() const { return isNumber_; }
    constexpr bool is_nothing() const { return !isNumber_ && text_ == nullptr; }
    constexpr long long number() const { return number_; }
    std::string text() const {
        if (isNumber_) return std::to_string(number_);
        return text_ == nullptr ? "nothing" : text_;
    }

private:
    long long number_ = 0;
    bool isNumber_ = false;
    const char* text_ = nullptr;
};

// A script object that cannot even be asked.
struct ThrowingObject : UXScriptObject {
    int IsValid() override { throw std::runtime_error("asked"); }
    void* GetInternalData(unsigned int) override { throw std::runtime_error("asked"); }
};
// A result as it came, in the words of an Outcome.
template <typename T>
std::string text_of_result(const T& result) {
    if constexpr (std::is_integral_v<T>) {
        return std::to_string(static_cast<long long>(result));
    } else {
        return static_cast<const char*>(result);
    }
}

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
    UXXmlWrapperBase root(std::size_t tree) const { return trees_[tree]; }
    std::string trees() const { return trees_[0].text() + "\n" + trees_[1].text(); }
    std::string outputs() const;
    std::size_t output_count() const { return outputs_.size(); }
    std::string output(std::size_t number) const { return outputs_[number](); }

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
    bool clearsOutputs = false;  // a failure empties outputs, or releases output handles
    Outcome shortage[2] = {};    // further results when memory runs short
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
    bool isHandle = false;
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
    using Kept = std::decay_t<std::invoke_result_t<Make, Scene&>>;
    return {std::move(how), keep, expected, acts, std::is_same_v<Kept, UXXmlWrapperBase>};
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
struct Spoilable {
    std::optional<Outcome> onNull, onInvalid, onWrongType, onThrow;
    bool nullActs = false;
    bool invalidActs = false;

    void add_null(Trials& trials, Parameter parameter, const Row& row) const {
        if (!parameter.isPointer) return;
        trials.push_back({"null", [](Scene&) -> const void* { return nullptr; },
                          onNull.value_or(nullActs ? row.good : row.bad), nullActs});
    }
};

// What a row says about an argument that the annotations say too.
struct Marks {
    bool optional = false;      // may be missing
    bool mayBeInvalid = false;  // may be a handle that refers to nothing
    bool needed = false;        // here it may not, though the annotation says so for other calls
    facts::Direction direction = facts::Direction::kIn;
};

// An argument with its marks, which are part of its type.
template <typename Argument, Marks kGiven = Marks{}>
struct Marked : Argument {
    static constexpr Marks kMarks = kGiven;

    // May be missing: null works like a good argument, or with a result of its own.
    auto optional() const {
        constexpr Marks kNew{true, kGiven.mayBeInvalid, kGiven.needed, kGiven.direction};
        Marked<Argument, kNew> copy{*this};
        copy.nullActs = true;
        return copy;
    }
    auto optional(Outcome result) const { return optional().null(result); }
    // An invalid handle works like a good one.
    auto may_be_invalid() const {
        constexpr Marks kNew{kGiven.optional, true, kGiven.needed, kGiven.direction};
        Marked<Argument, kNew> copy{*this};
        copy.invalidActs = true;
        return copy;
    }
    auto needed_here() const {
        constexpr Marks kNew{kGiven.optional, kGiven.mayBeInvalid, true, kGiven.direction};
        return Marked<Argument, kNew>{*this};
    }
    // What becomes of it; unsaid, it is read.
    auto out() const { return directed<facts::Direction::kOut>(); }
    auto appends() const { return directed<facts::Direction::kAppends>(); }
    auto inout() const { return directed<facts::Direction::kInOut>(); }
    auto getset() const { return directed<facts::Direction::kGetSet>(); }

    Marked null(Outcome result) const {
        Marked copy = *this;
        copy.onNull = result;
        return copy;
    }
    Marked invalid(Outcome result) const {
        Marked copy = *this;
        copy.onInvalid = result;
        return copy;
    }
    Marked throwing(Outcome result) const {
        Marked copy = *this;
        copy.onThrow = result;
        return copy;
    }
    Marked wrong_type(Outcome result) const {
        Marked copy = *this;
        copy.onWrongType = result;
        return copy;
    }

private:
    template <facts::Direction kDirection>
    auto directed() const {
        constexpr Marks kNew{kGiven.optional, kGiven.mayBeInvalid, kGiven.needed, kDirection};
        return Marked<Argument, kNew>{*this};
    }
};

// A handle to a node of one of the two trees.
struct NodeArgument : Spoilable {
    using Object = UXXmlWrapperBase;
    std::size_t tree = 0;
    const char* path = "";

    Trials trials(Parameter parameter, const Row& row) const;
};
inline Marked<NodeArgument> node(const char* path = "") {
    return {{{}, 0, path}};
}
inline Marked<NodeArgument> other(const char* path = "") {
    return {{{}, 1, path}};
}

// A handle that only receives a node, so that what it holds before the call does not matter.
struct OutNodeArgument : Spoilable {
    using Object = UXXmlWrapperBase;
    Trials trials(Parameter parameter, const Row& row) const;
};
inline Marked<OutNodeArgument> out() {
    return {};
}

struct TextArgument : Spoilable {
    using Object = char;
    std::string text;

    Trials trials(Parameter parameter, const Row& row) const;
};
inline Marked<TextArgument> text(const std::string& value) {
    return {{{}, value}};
}

// A string, number, record or native array, in or out.
template <typename T>
struct ValueArgument : Spoilable {
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
Marked<ValueArgument<T>> value(T initial) {
    return {{{}, initial}};
}
inline Marked<ValueArgument<CStringUTF8>> string(const char* initial = "kept") {
    return {{{}, initial}};
}

// An array, in or out: itself, or behind a script object as the parameter asks.
template <typename Array>
struct ArrayArgument : Spoilable {
    using Object = Array;
    static constexpr bool kIsArray = true;
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
inline Marked<ArrayArgument<CWBOStringArray>> strings(const std::vector<std::string>& values = {}) {
    return {{{}, string_list(values)}};
}
inline Marked<ArrayArgument<CArray<int, int>>> ints(const std::vector<int>& values = {}) {
    return {{{}, number_list(values)}};
}
inline Marked<ArrayArgument<CArray<double, double>>> doubles(
    const std::vector<double>& values = {}) {
    return {{{}, number_list(values)}};
}
inline Marked<ArrayArgument<CArray<bool, bool>>> bools(const std::vector<bool>& values = {}) {
    CArray<bool, bool> array;
    for (const bool value : values) array.Add(value);
    return {{{}, array}};
}

// All ways to fill a parameter with an argument; a plain value has a good one alone.
using TrialMaker = std::function<Trials(const Row&)>;
template <typename Param, typename Argument>
TrialMaker trials_of(const Argument& argument) {
    if constexpr (requires { typename Argument::Object; }) {
        using Object = typename Argument::Object;
        using Referred = std::remove_cv_t<std::remove_pointer_t<std::remove_reference_t<Param>>>;
        static_assert(
            std::is_same_v<Referred, Object> ||
                (std::is_same_v<Referred, UXScriptObject> &&
                 (std::is_base_of_v<UXScriptObject, Object> || requires { Argument::kIsArray; })),
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
    if constexpr (std::is_base_of_v<TextArgument, Argument>) {
        return {.text = argument.text, .hold = {}};
    } else if constexpr (std::is_base_of_v<ArrayArgument<CWBOStringArray>, Argument>) {
        return {.text = {}, .hold = [argument](Scene& scene, const std::string* text) {
                    return argument.hold(scene, parameter_of<Param>(), text);
                }};
    } else if constexpr (std::is_base_of_v<ValueArgument<CStringUTF8>, Argument>) {
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

// --- row and annotations ----------------------------------------------------------------------

template <typename Object>
constexpr facts::Element element_of() {
    if (std::is_same_v<Object, CArray<int, int>>) return facts::Element::kInts;
    if (std::is_same_v<Object, CArray<double, double>>) return facts::Element::kDoubles;
    if (std::is_same_v<Object, CArray<bool, bool>>) return facts::Element::kBools;
    if (std::is_same_v<Object, CWBOStringArray>) return facts::Element::kStrings;
    return facts::Element::kNone;
}

constexpr bool is_result(facts::Direction direction) {
    return direction == facts::Direction::kOut || direction == facts::Direction::kReleased;
}

// Does an argument say about a parameter what its annotation says? Plain values say nothing.
template <typename Argument>
constexpr bool same_direction(facts::Parameter annotated) {
    using Object = typename Argument::Object;
    if (std::is_base_of_v<OutNodeArgument, Argument>) return is_result(annotated.direction);
    if (std::is_same_v<Object, UXXmlWrapperBase>) return !is_result(annotated.direction);
    return annotated.direction == Argument::kMarks.direction;
}
template <typename Argument>
constexpr bool same_optional(facts::Parameter annotated) {
    return annotated.optional == Argument::kMarks.optional ||
           (annotated.optional && Argument::kMarks.needed);
}
template <typename Argument>
constexpr bool same_validity(facts::Parameter annotated) {
    return annotated.mayBeInvalid == Argument::kMarks.mayBeInvalid ||
           (annotated.mayBeInvalid && Argument::kMarks.needed) ||
           std::is_same_v<typename Argument::Object, UXXmlWrapperBase> == false;
}
template <typename Param, typename Argument>
constexpr bool same_element(facts::Parameter annotated) {
    return !std::is_same_v<Param, UXScriptObject*> ||
           annotated.element == element_of<typename Argument::Object>();
}

template <typename Facts, typename Param, std::size_t kPlace, typename Argument>
constexpr bool compare_argument() {
    if constexpr (requires { Argument::kMarks; }) {
        constexpr facts::Parameter kAnnotated = Facts::kParameters[kPlace];
        static_assert(same_direction<Argument>(kAnnotated), "row and annotation differ: direction");
        static_assert(same_optional<Argument>(kAnnotated), "row and annotation differ: optional");
        static_assert(same_validity<Argument>(kAnnotated), "row and annotation differ: invalid");
        static_assert(same_element<Param, Argument>(kAnnotated),
                      "row and annotation differ: array");
    }
    return true;
}

// May a failing call yield this number?
template <typename Facts>
constexpr bool is_code(long long number) {
    for (const long long code : Facts::kCodes) {
        if (code == number) return true;
    }
    return Facts::kFurtherCodes;
}
template <typename Facts>
constexpr bool good_fits(const Row& row) {
    using facts::Kind;
    const long long good = row.good.number();
    switch (Facts::kKind) {
        case Kind::kNothing:
            return row.good.is_nothing();
        case Kind::kDone:
            return good == 1;
        case Kind::kYes:
            return good == 0 || good == 1;
        case Kind::kZero:
            return good == 0;
        case Kind::kCount:
            return good >= 0;
        case Kind::kText:
            return !row.good.is_number() && !row.good.is_nothing();
        default:
            return row.good.is_number();
    }
}
template <typename Facts>
constexpr bool bad_fits(const Row& row) {
    using facts::Kind;
    switch (Facts::kKind) {
        case Kind::kNothing:
            return row.bad.is_nothing();
        case Kind::kText:
            return !row.bad.is_number();
        case Kind::kSaysNothing:
            return row.bad.number() == row.good.number() || is_code<Facts>(row.bad.number());
        case Kind::kStored:
            return Facts::kCodes.size() == 0 || is_code<Facts>(row.bad.number());
        default:
            return is_code<Facts>(row.bad.number());
    }
}

// A row whose results are those of the annotation; no other one compiles.
template <typename Facts>
class CheckedRow {
public:
    consteval CheckedRow(const Row& row) : row_(row) {
        if (!good_fits<Facts>(row)) throw "row and annotation differ: the good result";
        if (!bad_fits<Facts>(row)) throw "row and annotation differ: the failure value";
    }
    const Row& row() const { return row_; }

private:
    Row row_;
};

// --- calls ------------------------------------------------------------------------------------

// Looks at a call: before_call() and after_call() stand right around the call alone.
class Probe {
public:
    virtual ~Probe() = default;
    virtual void prepare(const Scene& /*scene*/) {}
    virtual void before_call() = 0;
    virtual void after_call() = 0;
    virtual void done(const Scene& scene, const std::string& result, const Row& row) = 0;
};

// A row: an entry point with all that may be passed to it.
class Call {
public:
    using Invoke = std::function<std::string(const void* const* arguments, Probe* probe)>;

    Call(const Row& row, Invoke invoke, std::vector<TrialMaker> parameters,
         std::vector<Texts> texts, std::vector<facts::Direction> directions,
         std::array<bool, 2> edits)
        : row_(row),
          invoke_(std::move(invoke)),
          parameters_(std::move(parameters)),
          texts_(std::move(texts)),
          directions_(std::move(directions)),
          edits_(edits) {}

    // Calls with good arguments, then with each of them spoilt in each of its ways.
    void try_bad_arguments() const;
    // Calls with each text standing inside each string or array, with each string standing inside
    // each array, and with one handle for two; what comes out is what comes out of a direct call with
    // arguments of their own.
    void try_aliases() const;
    // One good call under a probe.
    void probe(Probe& probe) const;

private:
    std::vector<Trials> all_trials() const;
    std::vector<const void*> make(const std::vector<const Trial*>& chosen, Scene& scene) const;
    void try_good(const std::vector<const Trial*>& chosen) const;
    void try_once(const std::vector<const Trial*>& chosen, const Outcome& expected,
                  bool acts) const;
    void try_text_inside(std::size_t text, std::size_t holder, bool ownBuffer) const;
    void try_string_inside(std::size_t string, std::size_t holder, bool ownBuffer) const;
    void try_one_handle(std::size_t first, std::size_t second) const;
    bool is_output(std::size_t place) const;
    std::string call(const std::vector<const void*>& arguments, bool directly) const;

    Row row_;
    Invoke invoke_;
    std::vector<TrialMaker> parameters_;
    std::vector<Texts> texts_;
    std::vector<facts::Direction> directions_;  // of each parameter; empty when nothing is known
    std::array<bool, 2> edits_;                 // which of the trees the call may change
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

// An entry point by its name and what the annotations say, by the type of the function.
template <template <typename> class FactsFor>
struct Entry {
    const char* name;
};
// The same for a function that stands for the entry point because it cannot be called by its type.
template <typename Facts>
struct Wrapped {
    const char* name;
};
// A class, whose members bear no annotations.
struct Unannotated {
    const char* name;
};

// Which trees a call may change: those that an edited handle belongs to.
template <typename Argument>
void note_edit(std::array<bool, 2>& edits, facts::Direction direction, const Argument& argument) {
    if constexpr (std::is_base_of_v<NodeArgument, Argument>) {
        if (direction != facts::Direction::kIn) edits[argument.tree] = true;
    }
}

// Another way to call entry points, which a test may set: it gets the name, the types of the
// parameters (without references), where the arguments are and what looks at the call, and yields
// false for a call that it cannot express, which is then made directly.
using Door = std::function<bool(const std::string& name, const std::vector<std::type_index>& types,
                                const void* const* arguments, Probe* probe, std::string& result)>;
inline Door& door() {
    static Door instead;
    return instead;
}

// Entry points by name, with their rows.
class Sweep {
public:
    template <template <typename> class FactsFor, typename Result, typename... Params,
              typename... Arguments>
    void add(Entry<FactsFor> entry, Result (*function)(Params...),
             std::type_identity_t<CheckedRow<FactsFor<Result(Params...)>>> row,
             const Arguments&... arguments) {
        add_annotated<FactsFor<Result(Params...)>>(
            entry.name, function, row.row(), std::index_sequence_for<Params...>(), arguments...);
    }
    template <typename Facts, typename Result, typename... Params, typename... Arguments>
    void add(Wrapped<Facts> entry, Result (*function)(Params...),
             std::type_identity_t<CheckedRow<Facts>> row, const Arguments&... arguments) {
        add_annotated<Facts>(entry.name, function, row.row(), std::index_sequence_for<Params...>(),
                             arguments...);
    }
    template <typename Result, typename... Params, typename... Arguments>
    void add(Unannotated entry, Result (*function)(Params...), const Row& row,
             const Arguments&... arguments) {
        add_call(entry.name, function, row, {}, {true, true}, arguments...);
    }
    const std::map<std::string, std::vector<Call>>& calls() const { return calls_; }
    // Of what is called, for a test of each.
    std::vector<std::string> names() const {
        std::vector<std::string> names;
        for (const auto& [name, calls] : calls_) names.push_back(name);
        return names;
    }

private:
    template <typename Facts, typename Result, typename... Params, std::size_t... I,
              typename... Arguments>
    void add_annotated(const char* name, Result (*function)(Params...), const Row& row,
                       std::index_sequence<I...>, const Arguments&... arguments) {
        static_assert(sizeof...(Params) == sizeof...(Arguments), "one argument per parameter");
        static_assert((compare_argument<Facts, Params, I, Arguments>() && ...));
        std::array<bool, 2> edits{};
        (note_edit(edits, Facts::kParameters[I].direction, arguments), ...);
        add_call(name, function, row, {Facts::kParameters[I].direction...}, edits, arguments...);
    }
    template <typename Result, typename... Params, typename... Arguments>
    void add_call(const char* name, Result (*function)(Params...), const Row& row,
                  std::vector<facts::Direction> directions, std::array<bool, 2> edits,
                  const Arguments&... arguments) {
        static_assert(sizeof...(Params) == sizeof...(Arguments), "one argument per parameter");
        calls_[name].push_back(
            Call(row, invoker(name, function, std::index_sequence_for<Params...>()),
                 {trials_of<Params>(arguments)...}, {texts_of<Params>(arguments)...},
                 std::move(directions), edits));
    }
    template <typename Result, typename... Params, std::size_t... I>
    static Call::Invoke invoker(const char* name, Result (*entry)(Params...),
                                std::index_sequence<I...>) {
        return [name, entry]([[maybe_unused]] const void* const* arguments,
                             Probe* probe) -> std::string {
            std::string told;
            if (door() && door()(name, {typeid(Params)...}, arguments, probe, told)) return told;
            if (probe != nullptr) probe->before_call();
            if constexpr (std::is_void_v<Result>) {
                entry(argument_at<Params>(arguments[I])...);
                if (probe != nullptr) probe->after_call();
                return Outcome().text();
            } else {
                const Result result = entry(argument_at<Params>(arguments[I])...);
                if (probe != nullptr) probe->after_call();
                return text_of_result(result);
            }
        };
    }

    std::map<std::string, std::vector<Call>> calls_;
};

// All of them.
const Sweep& all_calls();

// The name, the annotations and the address of an entry point, for Sweep::add.
#define UX_ENTRY(name) Entry<facts::name>{#name}, &name
// The same for one of several functions of a name.
#define UX_ENTRY_AS(name, function) Entry<facts::name>{#name}, function
// The same for a function that is called through another one.
#define UX_WRAPPED(name, function) Wrapped<facts::only_##name>{#name}, function
// A class that is tried through a function.
#define UX_CLASS(name, function) Unannotated{#name}, function

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
