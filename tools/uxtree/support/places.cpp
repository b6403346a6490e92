// Where the command line leads, read out of the registry.
#include "support/places.h"

#include <algorithm>
#include <map>

#include <fmt/format.h>

namespace uxtool {
namespace {

OptionFacts facts_of(const CLI::Option& option) {
    OptionFacts facts;
    for (const std::string& name : option.get_snames()) facts.names.push_back("-" + name);
    for (const std::string& name : option.get_lnames()) facts.names.push_back("--" + name);
    facts.description = option.get_description();
    if (option.get_items_expected_max() == 0) return facts;

    const std::string type = option.get_type_name();  // "NAME:{text,csv}", "N:INT in [0 - 9]"
    facts.value = type.substr(0, type.find(':'));
    if (facts.names.empty()) facts.value = option.get_name();
    if (facts.value.empty()) facts.value = "VALUE";
    const std::size_t start = type.find('{');
    const std::size_t end = type.find('}');
    if (start >= end || end == std::string::npos) return facts;
    for (std::size_t at = start + 1; at < end;) {
        const std::size_t comma = std::min(type.find(',', at), end);
        facts.choices.push_back(type.substr(at, comma - at));
        at = comma + 1;
    }
    return facts;
}

std::vector<OptionFacts> options_of(const CLI::App& app) {
    std::vector<OptionFacts> options;
    for (const CLI::Option* option : app.get_options()) options.push_back(facts_of(*option));
    return options;
}

std::string usage_of(const Place& place) {
    std::string usage = "[OPTIONS]";
    for (const OptionFacts& option : place.options) {
        if (option.names.empty()) usage += " " + option.value;
    }
    return usage;
}

std::vector<OptionFacts> options_of_the_tool() {
    return {{{"-h", "--help"}, "", {}, "Explain the tool"},
            {{"-V", "--version"}, "", {}, "Print the version"},
            {{"--color"}, "WHEN", {"auto", "always", "never"}, "Colour the output"}};
}

Place described(std::string name, std::string summary, const CLI::App& app) {
    Place place;
    place.name = std::move(name);
    place.summary = std::move(summary);
    place.options = options_of(app);
    place.usage = usage_of(place);
    return place;
}

// A command, and the edits that it has.
void add_command(const Command& command, std::vector<Place>& places) {
    const PreparedCommand prepared = prepare(command);
    const std::string name(command.name);
    Place place = described(name, std::string(command.summary), *prepared.app);
    place.examples = command.examples;
    const auto edits = prepared.app->get_subcommands([](const CLI::App*) { return true; });
    std::vector<Place> below;
    for (const CLI::App* edit : edits) {
        if (edit->get_name().empty()) {  // a group of options
            for (OptionFacts& option : options_of(*edit)) place.options.push_back(option);
            continue;
        }
        place.next.push_back(edit->get_name());
        below.push_back(described(name + " " + edit->get_name(), edit->get_description(), *edit));
        below.back().behind = name;
    }
    places.push_back(std::move(place));
    std::move(below.begin(), below.end(), std::back_inserter(places));
}

}  // namespace

std::vector<Place> all_places() {
    std::vector<Place> places;
    std::map<std::string, Place> groups;
    Place tool;
    tool.summary = "work on option and data trees, and on any XML file";
    tool.usage = "COMMAND [OPTIONS] ...";
    tool.options = options_of_the_tool();
    for (const Command* command : all_commands()) {
        const std::size_t blank = command->name.find(' ');
        const std::string word(command->name.substr(0, blank));
        const bool isGrouped = blank != std::string::npos;
        if (!isGrouped || groups.count(word) == 0) tool.next.push_back(word);
        if (isGrouped) {
            Place& group = groups[word];
            group.name = word;
            group.next.emplace_back(command->name.substr(blank + 1));
        }
        add_command(*command, places);
    }
    for (auto& [word, group] : groups) {
        group.summary = fmt::format("commands about {}: {}", word, fmt::join(group.next, ", "));
        group.usage = "COMMAND [OPTIONS] ...";
        places.push_back(std::move(group));
    }
    std::sort(places.begin(), places.end(),
              [](const Place& a, const Place& b) { return a.name < b.name; });
    places.insert(places.begin(), std::move(tool));
    return places;
}

}  // namespace uxtool
