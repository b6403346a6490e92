// The command line as a tree of words, for the pages and the completion that are made of it.
#pragma once

#include <string>
#include <vector>

#include "support/command.h"

namespace uxtool {

// An option, or a positional argument.
struct OptionFacts {
    std::vector<std::string> names;  // "-o", "--output"; empty for a positional argument
    std::string value;               // what it takes, such as FILE; "" for nothing
    std::vector<std::string> choices;
    std::string description;
};

// A word of the command line with the words before it: the tool, a group of commands, a command, or
// an edit of a command.
struct Place {
    std::string name;     // without "uxtree"; "" for the tool itself
    std::string summary;  // without a full stop
    std::string usage;    // what may follow the name
    std::string examples;
    std::string behind;                // "edit" of "edit sort", which follows its files
    std::vector<std::string> next;     // the words that lead on
    std::vector<OptionFacts> options;  // with those of all commands
};

// The tool first, then all others by their names.
std::vector<Place> all_places();

}  // namespace uxtool
