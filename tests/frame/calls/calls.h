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
#include <sstream>
#include <string>
#include <tuple>
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

// One way to fill a parameter. acts: the call works all the same, and may change the trees.
template <typename Param>
struct Trial {
    std::string how;
    std::function<Param(Scene&)> make;
    Outcome expected;
    bool acts;
};
template <typename Param>
using Trials = std::vector<Trial<Param>>;

// Passes a kept value on, as a pointer or as a reference.
template <typename Param, typename Kept>
Param pass(Kept& kept) {
    if constexpr (std::is_pointer_v<Param>) {
        return &kept;
    } else {
        return kept;
    }
}
template <typename Param, typename Make>
Trial<Param> kept_trial(std::string how, Make make, const Outcome& expected, bool acts) {
    return {std::move(how), [make](Scene& s) -> Param { return pass<Param>(s.keep(make(s))); },
            expected, acts};
}

// What an argument says about its bad forms; unsaid, they give the row's failure value.
template <typename Self>
struct Spoilable {
    std::optional<Outcome> onNull, onInvalid, onWrongType;
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

    template <typename Param>
    void add_null(Trials<Param>& trials, const Row& row) const {
        if constexpr (std::is_pointer_v<Param>) {
            trials.push_back({"null", [](Scene&) -> Param { return nullptr; },
                              onNull.value_or(nullActs ? row.good : row.bad), nullActs});
        }
    }

private:
    const Self& self() const { return static_cast<const Self&>(*this); }
};

// A handle to a node of one of the two trees.
struct NodeArgument : Spoilable<NodeArgument> {
    std::size_t tree;
    const char* path;

    template <typename Param>
    Trials<Param> trials(const Row& row) const {
        const NodeArgument self = *this;
        const Outcome failure = onInvalid.value_or(invalidActs ? row.good : row.bad);
        Trials<Param> out{kept_trial<Param>(
            "good", [self](Scene& s) { return s.at(self.tree, self.path); }, row.good, true)};
        add_null(out, row);
        out.push_back(kept_trial<Param>(
            "an invalid handle", [](Scene&) { return UXXmlWrapperBase(); }, failure, invalidActs));
        out.push_back(kept_trial<Param>(
            "a handle to a removed node", [](Scene& s) { return s.removed(); }, failure,
            invalidActs));
        return out;
    }
};
inline NodeArgument node(const char* path = "") {
    return {{}, 0, path};
}
inline NodeArgument other(const char* path = "") {
    return {{}, 1, path};
}

// A handle that only receives a node, so that what it holds before the call does not matter.
struct OutNodeArgument : Spoilable<OutNodeArgument> {
    template <typename Param>
    Trials<Param> trials(const Row& row) const {
        Trials<Param> out{kept_trial<Param>(
            "good", [](Scene& s) { return s.bystander(); }, row.good, true)};
        add_null(out, row);
        out.push_back(kept_trial<Param>(
            "an invalid output", [](Scene&) { return UXXmlWrapperBase(); }, row.good, true));
        out.push_back(kept_trial<Param>(
            "an output of a removed node", [](Scene& s) { return s.removed(); }, row.good, true));
        return out;
    }
};
inline OutNodeArgument out() {
    return {};
}

struct TextArgument : Spoilable<TextArgument> {
    std::string text;

    template <typename Param>
    Trials<Param> trials(const Row& row) const {
        Trials<Param> out{{"good",
                           [kept = std::make_shared<std::string>(text)](Scene&) -> Param {
                               return kept->c_str();
                           },
                           row.good, true}};
        add_null(out, row);
        return out;
    }
};
inline TextArgument text(const std::string& value) {
    return {{}, value};
}

// A string, number, record or native array, in or out.
template <typename T>
struct ValueArgument : Spoilable<ValueArgument<T>> {
    T initial;

    template <typename Param>
    Trials<Param> trials(const Row& row) const {
        Trials<Param> out{kept_trial<Param>(
            "good", [v = initial](Scene&) { return v; }, row.good, true)};
        this->add_null(out, row);
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
    Array initial;

    template <typename Param>
    Trials<Param> trials(const Row& row) const {
        if constexpr (std::is_same_v<Param, UXScriptObject*>) {
            Trials<Param> out{good<Param>(UXScriptArray<Array>(initial), row)};
            this->add_null(out, row);
            add_wrong<CArray<bool, bool>>(out, row, "a vector of booleans");
            add_wrong<CArray<int, int>>(out, row, "a vector of integers");
            add_wrong<CArray<double, double>>(out, row, "a vector of doubles");
            add_wrong<CWBOStringArray>(out, row, "an array of texts");
            out.push_back(kept_trial<Param>(
                "a node handle", [](Scene& s) { return s.bystander(); }, wrong(row), false));
            return out;
        } else {
            Trials<Param> out{good<Param>(initial, row)};
            this->add_null(out, row);
            return out;
        }
    }

private:
    template <typename Param, typename Kept>
    static Trial<Param> good(const Kept& kept, const Row& row) {
        return kept_trial<Param>(
            "good", [kept](Scene&) { return kept; }, row.good, true);
    }
    Outcome wrong(const Row& row) const { return this->onWrongType.value_or(row.bad); }
    template <typename Other>
    void add_wrong(Trials<UXScriptObject*>& out, const Row& row, const char* how) const {
        if constexpr (!std::is_same_v<Array, Other>) {
            out.push_back(kept_trial<UXScriptObject*>(
                how, [](Scene&) { return UXScriptArray<Other>(); }, wrong(row), false));
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

template <typename Param, typename Argument>
Trials<Param> trials_of(const Argument& argument, const Row& row) {
    if constexpr (requires { argument.template trials<Param>(row); }) {
        return argument.template trials<Param>(row);
    } else {
        return {{"good", [argument](Scene&) -> Param { return static_cast<Param>(argument); },
                 row.good, true}};
    }
}

// --- calls ------------------------------------------------------------------------------------

// Looks at a call with good arguments: before() and after() stand right around the call alone.
class Probe {
public:
    virtual ~Probe() = default;
    virtual void before() = 0;
    virtual void after() = 0;
    virtual void done(const Scene& scene, const Outcome& result, const Row& row) = 0;
};

// A row: what tries all bad arguments, and what makes one good call under a probe.
struct Call {
    std::function<void()> try_bad_arguments;
    std::function<void(Probe&)> probe;
};

// Entry points by name, with their rows.
class Sweep {
public:
    template <typename Result, typename... Params, typename... Arguments>
    void add(const char* name, Result (*entry)(Params...), const Row& row,
             const Arguments&... arguments) {
        static_assert(sizeof...(Params) == sizeof...(Arguments), "one argument per parameter");
        const auto all = [=] { return std::tuple(trials_of<Params>(arguments, row)...); };
        calls_[name].push_back({[=] { try_all(entry, row, all()); },
                                [=](Probe& probe) { call_good(entry, row, all(), probe); }});
    }
    const std::map<std::string, std::vector<Call>>& calls() const { return calls_; }

private:
    template <std::size_t count>
    using Choice = std::array<std::size_t, count>;

    template <typename Result, typename... Params>
    static void try_all(Result (*entry)(Params...), const Row& row,
                        const std::tuple<Trials<Params>...>& all) {
        Choice<sizeof...(Params)> choice{};
        {
            SCOPED_TRACE("with good arguments");
            call(entry, row, all, choice, row.good, true, std::index_sequence_for<Params...>());
        }
        spoil(entry, row, all, choice, std::index_sequence_for<Params...>());
    }
    template <typename Entry, typename All, typename Places, std::size_t... I>
    static void spoil(Entry entry, const Row& row, const All& all, Places choice,
                      std::index_sequence<I...> places) {
        const auto spoil_one = [&](auto place) {
            const auto& trials = std::get<place>(all);
            for (std::size_t k = 1; k < trials.size(); ++k) {
                SCOPED_TRACE("argument " + std::to_string(place + 1) + " is " + trials[k].how);
                Places spoilt = choice;
                spoilt[place] = k;
                call(entry, row, all, spoilt, trials[k].expected, trials[k].acts, places);
            }
        };
        (spoil_one(std::integral_constant<std::size_t, I>()), ...);
    }
    template <typename Result, typename... Params, typename All, typename Places, std::size_t... I>
    static void call(Result (*entry)(Params...), const Row& row, const All& all,
                     const Places& choice, const Outcome& expected, bool acts,
                     std::index_sequence<I...>) {
        Scene scene(row.tree);
        std::tuple<Params...> arguments{std::get<I>(all)[choice[I]].make(scene)...};
        const std::string trees = scene.trees();
        const std::string outputs = scene.outputs();

        Outcome result;
        if constexpr (std::is_void_v<Result>) {
            std::apply(entry, std::move(arguments));
        } else {
            result = std::apply(entry, std::move(arguments));
        }

        EXPECT_EQ(result.text(), expected.text());
        if (acts) return;
        EXPECT_EQ(scene.trees(), trees);
        if (!row.clearsOutputs) {
            EXPECT_EQ(scene.outputs(), outputs);
        }
    }
    template <typename Result, typename... Params>
    static void call_good(Result (*entry)(Params...), const Row& row,
                          const std::tuple<Trials<Params>...>& all, Probe& probe) {
        Scene scene(row.tree);
        auto arguments = std::apply(
            [&](const auto&... trials) { return std::tuple<Params...>{trials[0].make(scene)...}; },
            all);
        if constexpr (std::is_void_v<Result>) {
            probe.before();
            std::apply(entry, std::move(arguments));
            probe.after();
            probe.done(scene, {}, row);
        } else {
            probe.before();
            const Result result = std::apply(entry, std::move(arguments));
            probe.after();
            probe.done(scene, result, row);
        }
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
