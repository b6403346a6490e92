// Every entry point by name, with good and with bad arguments.
#include "frame/calls/calls.h"

#include <utility>

namespace uxtest {

UXXmlWrapperBase Scene::removed() const {
    UXXmlWrapperBase handle = aside_.at("victim/child");
    aside_.at("victim").RemoveNode();
    return handle;
}

std::string Scene::outputs() const {
    std::string all;
    for (const auto& output : outputs_) all += output() + "\n";
    return all + to_text(aside_);
}

Trials NodeArgument::trials(Parameter parameter, const Row& row) const {
    const auto good = [where = tree, what = path](Scene& s) { return s.at(where, what); };
    const Outcome failure = onInvalid.value_or(invalidActs ? row.good : row.bad);
    Trials out{kept_trial("good", parameter, good, row.good, true)};
    add_null(out, parameter, row);
    out.push_back(kept_trial(
        "an invalid handle", parameter, [](Scene&) { return UXXmlWrapperBase(); }, failure,
        invalidActs));
    out.push_back(kept_trial(
        "a handle to a removed node", parameter, [](Scene& s) { return s.removed(); }, failure,
        invalidActs));
    return out;
}

Trials OutNodeArgument::trials(Parameter parameter, const Row& row) const {
    Trials out{kept_trial(
        "good", parameter, [](Scene& s) { return s.bystander(); }, row.good, true)};
    add_null(out, parameter, row);
    out.push_back(kept_trial(
        "an invalid output", parameter, [](Scene&) { return UXXmlWrapperBase(); }, row.good, true));
    out.push_back(kept_trial(
        "an output of a removed node", parameter, [](Scene& s) { return s.removed(); }, row.good,
        true));
    return out;
}

Trials TextArgument::trials(Parameter parameter, const Row& row) const {
    const auto kept = std::make_shared<const std::string>(text);
    const auto address = [kept](Scene&) -> const void* { return kept->c_str(); };
    Trials out{{"good", address, row.good, true}};
    add_null(out, parameter, row);
    return out;
}

std::vector<Trials> Call::all_trials() const {
    std::vector<Trials> all;
    for (const TrialMaker& trials : parameters_) all.push_back(trials(row_));
    return all;
}

std::vector<const void*> Call::make(const std::vector<const Trial*>& chosen, Scene& scene) const {
    std::vector<const void*> arguments;
    for (const Trial* trial : chosen) arguments.push_back(trial->make(scene));
    return arguments;
}

namespace {

// The shown elements of an array without the bracket behind them.
std::string held(const std::string& shown) {
    const std::size_t end = shown.find_last_not_of(" }");
    return end == std::string::npos || end < 2 ? "{" : shown.substr(0, end + 1);
}

}  // namespace

void Call::try_once(const std::vector<const Trial*>& chosen, const Outcome& expected,
                    bool acts) const {
    Scene scene(row_.tree);
    const std::vector<const void*> arguments = make(chosen, scene);
    const std::string trees = scene.trees();
    const std::string outputs = scene.outputs();

    std::string result;
    try {
        result = invoke_(arguments.data(), nullptr);
    } catch (...) {
        FAIL() << "an exception left the library";
    }

    EXPECT_EQ(result, expected.text());
    if (acts) return;
    EXPECT_EQ(scene.trees(), trees);
    if (!row_.clearsOutputs) {
        EXPECT_EQ(scene.outputs(), outputs);
    }
}

// With good arguments, what is only read stays, and what is added to keeps what it held.
void Call::try_good(const std::vector<const Trial*>& chosen) const {
    using facts::Direction;
    Scene scene(row_.tree);
    std::vector<const void*> arguments;
    std::vector<std::optional<std::string>> before;
    std::vector<std::size_t> numbers;
    for (const Trial* trial : chosen) {
        const std::size_t number = scene.output_count();
        arguments.push_back(trial->make(scene));
        numbers.push_back(number);
        before.emplace_back();
        if (scene.output_count() > number) before.back() = scene.output(number);
    }
    const std::array<std::string, 2> trees{to_text(scene.root(0)), to_text(scene.root(1))};

    EXPECT_EQ(invoke_(arguments.data(), nullptr), row_.good.text());

    for (const std::size_t tree : {0U, 1U}) {
        if (!edits_[tree]) {
            EXPECT_EQ(to_text(scene.root(tree)), trees[tree]) << "tree " << tree << " is only read";
        }
    }
    for (std::size_t place = 0; place < directions_.size(); ++place) {
        if (!before[place]) continue;
        const std::string after = scene.output(numbers[place]);
        SCOPED_TRACE("argument " + std::to_string(place + 1));
        if (directions_[place] == Direction::kIn && !chosen[place]->isHandle) {
            EXPECT_EQ(after, *before[place]) << "it is only read";
        }
        if (directions_[place] == Direction::kAppends) {
            EXPECT_THAT(after, testing::StartsWith(held(*before[place]))) << "it is added to";
        }
    }
}

void Call::try_bad_arguments() const {
    const std::vector<Trials> all = all_trials();
    std::vector<const Trial*> chosen;
    for (const Trials& trials : all) chosen.push_back(&trials.front());
    {
        SCOPED_TRACE("with good arguments");
        try_good(chosen);
    }
    for (std::size_t place = 0; place < all.size(); ++place) {
        for (std::size_t k = 1; k < all[place].size(); ++k) {
            const Trial& trial = all[place][k];
            SCOPED_TRACE("argument " + std::to_string(place + 1) + " is " + trial.how);
            chosen[place] = &trial;
            try_once(chosen, trial.expected, trial.acts);
        }
        chosen[place] = &all[place].front();
    }
}

namespace {

// Whoever reads a text that is gone is found out: a short one goes with the elements of an array
// that grows, one with a buffer of its own when an array is emptied.
void set_buffer(CStringUTF8& text, bool own) {
    if (!own) return;
    const int length = text.GetLength();
    text.GetBuffer(4000);
    text.ReleaseBuffer(length);
}

// The state of the world after a call.
struct Aftermath {
    std::string result, trees, outputs;
};

void expect_same(const Aftermath& aliased, const Aftermath& apart) {
    EXPECT_EQ(aliased.result, apart.result);
    EXPECT_EQ(aliased.trees, apart.trees);
    EXPECT_EQ(aliased.outputs, apart.outputs);
}

}  // namespace

std::string Call::call(const std::vector<const void*>& arguments, bool directly) const {
    const Door kept = directly ? std::exchange(door(), nullptr) : nullptr;
    const std::string result = invoke_(arguments.data(), nullptr);
    if (directly) door() = kept;
    return result;
}

void Call::try_text_inside(std::size_t text, std::size_t holder, bool ownBuffer) const {
    const std::vector<Trials> all = all_trials();
    std::vector<const Trial*> chosen;
    for (const Trials& trials : all) chosen.push_back(&trials.front());
    Aftermath seen[2];
    for (const bool inside : {true, false}) {
        Scene scene(row_.tree);
        std::vector<const void*> arguments = make(chosen, scene);
        const Held held = texts_[holder].hold(scene, &*texts_[text].text);
        set_buffer(*held.place, ownBuffer);
        arguments[holder] = held.argument;
        if (inside) arguments[text] = static_cast<const char*>(*held.place);
        const std::string result = call(arguments, !inside);
        seen[inside ? 0 : 1] = {result, scene.trees(), scene.outputs()};
    }
    expect_same(seen[0], seen[1]);
}

// The string is compared as well, unless the array that holds it is an output itself.
void Call::try_string_inside(std::size_t string, std::size_t holder, bool ownBuffer) const {
    const std::vector<Trials> all = all_trials();
    std::vector<const Trial*> chosen;
    for (const Trials& trials : all) chosen.push_back(&trials.front());
    Aftermath seen[2];
    bool isOutput = false;
    for (const bool inside : {false, true}) {
        Scene scene(row_.tree);
        std::vector<const void*> arguments = make(chosen, scene);
        const Held held = texts_[holder].hold(scene, nullptr);
        set_buffer(*held.place, ownBuffer);
        const std::string before = show(*held.array);
        arguments[holder] = held.argument;
        CStringUTF8* const apart = &scene.keep(*held.place);
        arguments[string] = inside ? held.place : apart;
        const std::string result = call(arguments, !inside);
        if (!inside) isOutput = show(*held.array) != before;
        seen[inside ? 0 : 1] = {result, scene.trees(), ""};
        if (!isOutput) seen[inside ? 0 : 1].outputs = show(inside ? *held.place : *apart);
    }
    expect_same(seen[0], seen[1]);
}

bool Call::is_output(std::size_t place) const {
    return directions_[place] == facts::Direction::kOut ||
           directions_[place] == facts::Direction::kReleased;
}

// An output may be the handle that is asked; otherwise both stand for the same node.
void Call::try_one_handle(std::size_t first, std::size_t second) const {
    const std::vector<Trials> all = all_trials();
    std::vector<const Trial*> chosen;
    for (const Trials& trials : all) chosen.push_back(&trials.front());
    Aftermath seen[2];
    for (const bool one : {true, false}) {
        Scene scene(row_.tree);
        std::vector<const void*> arguments = make(chosen, scene);
        const auto& node = *static_cast<const UXXmlWrapperBase*>(arguments[first]);
        if (one) {
            arguments[second] = &node;
        } else if (!is_output(second)) {
            arguments[second] = &scene.keep(node);
        }
        const auto& result = *static_cast<const UXXmlWrapperBase*>(arguments[second]);
        const std::string told = call(arguments, !one);
        seen[one ? 0 : 1] = {told, scene.trees(), show(result)};
    }
    expect_same(seen[0], seen[1]);
}

void Call::try_aliases() const {
    const std::vector<Trials> all = all_trials();
    for (std::size_t first = 0; first < directions_.size(); ++first) {
        for (std::size_t second = 0; second < directions_.size(); ++second) {
            const bool moved = directions_[first] == facts::Direction::kInOut;
            if (first == second || is_output(first) || moved) continue;
            if (!all[first].front().isHandle || !all[second].front().isHandle) continue;
            SCOPED_TRACE("argument " + std::to_string(first + 1) + " is also argument " +
                         std::to_string(second + 1));
            try_one_handle(first, second);
        }
    }
    for (std::size_t holder = 0; holder < texts_.size(); ++holder) {
        if (!texts_[holder].hold) continue;
        for (std::size_t place = 0; place < texts_.size(); ++place) {
            SCOPED_TRACE("argument " + std::to_string(place + 1) + " inside argument " +
                         std::to_string(holder + 1));
            for (const bool ownBuffer : {false, true}) {
                if (texts_[place].text) try_text_inside(place, holder, ownBuffer);
                if (texts_[place].isString && !texts_[holder].isString) {
                    try_string_inside(place, holder, ownBuffer);
                }
            }
        }
    }
}

void Call::probe(Probe& probe) const {
    const std::vector<Trials> all = all_trials();
    std::vector<const Trial*> chosen;
    for (const Trials& trials : all) chosen.push_back(&trials.front());
    Scene scene(row_.tree);
    const std::vector<const void*> arguments = make(chosen, scene);
    probe.prepare(scene);
    const std::string result = invoke_(arguments.data(), &probe);
    probe.done(scene, result, row_);
}

const Sweep& all_calls() {
    static const Sweep whole = [] {
        Sweep rows;
        add_frame_rows(rows);
        add_lookup_rows(rows);
        add_tree_rows(rows);
        add_data_rows(rows);
        add_label_rows(rows);
        add_outline_rows(rows);
        add_import_rows(rows);
        add_analysis_rows(rows);
        add_stats_rows(rows);
        add_report_rows(rows);
        return rows;
    }();
    return whole;
}

}  // namespace uxtest
