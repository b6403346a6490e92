// Completion scripts for shells, made of the registry.
#include <fmt/format.h>

#include "support/output.h"
#include "support/places.h"
#include "support/text.h"

namespace uxtool {
namespace {

// The same tables and the same walk serve both shells; how offers are made differs.
//
//   next     place -> the words that lead on
//   options  place -> its options
//   takes    place -> those options that take a value, blanks around each
//   choices  place and option, or place alone for positional arguments -> what there is to choose of
//
// A place is written as it is typed, "uxtree edit sort"; what stands between, such as files, is
// passed over.
std::string table(const char* name, const std::vector<std::pair<std::string, std::string>>& rows) {
    std::string text = std::string("typeset -gA _uxtree_") + name + "=(\n";
    for (const auto& [key, value] : rows) {
        if (!value.empty()) text += fmt::format("    ['{}']='{}'\n", key, value);
    }
    return text + ")\n";
}

std::string tables() {
    std::vector<std::pair<std::string, std::string>> next;
    std::vector<std::pair<std::string, std::string>> options;
    std::vector<std::pair<std::string, std::string>> takes;
    std::vector<std::pair<std::string, std::string>> choices;
    for (const Place& place : all_places()) {
        const std::string name = place.name.empty() ? "uxtree" : "uxtree " + place.name;
        next.emplace_back(name, join(place.next, " "));
        std::string all;
        std::string taking;
        for (const OptionFacts& option : place.options) {
            const std::string names = join(option.names, " ");
            if (!names.empty()) all += (all.empty() ? "" : " ") + names;
            if (!names.empty() && !option.value.empty()) taking += " " + names;
            if (option.names.empty()) choices.emplace_back(name, join(option.choices, " "));
            for (const std::string& each : option.names) {
                choices.emplace_back(fmt::format("{} {}", name, each), join(option.choices, " "));
            }
        }
        options.emplace_back(name, all);
        takes.emplace_back(name, taking.empty() ? "" : taking + " ");
    }
    return table("next", next) + table("options", options) + table("takes", takes) +
           table("choices", choices);
}

constexpr const char* kBash = R"(
_uxtree() {
    local current=${COMP_WORDS[COMP_CWORD]} place=uxtree option= word i
    for ((i = 1; i < COMP_CWORD; ++i)); do
        word=${COMP_WORDS[i]}
        if [[ $word == = ]]; then continue; fi
        if [[ -n $option ]]; then
            option=
        elif [[ ${_uxtree_takes[$place]-} == *" $word "* ]]; then
            option=$word
        elif [[ " ${_uxtree_next[$place]-} " == *" $word "* ]]; then
            place+=" $word"
        fi
    done
    if [[ $current == = ]]; then current=; fi
    COMPREPLY=()
    local words=
    if [[ -n $option ]]; then
        words=${_uxtree_choices["$place $option"]-}
    elif [[ $current == -* ]]; then
        words=${_uxtree_options[$place]-}
    else
        words="${_uxtree_next[$place]-} ${_uxtree_choices[$place]-}"
    fi
    if [[ $words == *[![:blank:]]* ]]; then
        COMPREPLY=($(compgen -W "$words" -- "$current"))
    fi
    # Files, unless only these words can stand here.
    if [[ $current == -* || (-n $option && -n $words) ]]; then return; fi
    if [[ -n ${_uxtree_next[$place]-} && -z ${_uxtree_takes[$place]-} ]]; then return; fi
    if [[ $place == uxtree ]]; then return; fi
    if [[ $current == [\"\']* ]]; then current=${current:1}; else current=${current//\\/}; fi
    local file
    while IFS= read -r file; do COMPREPLY+=("$file"); done < <(compgen -f -- "$current")
    compopt -o filenames 2>/dev/null || true
}
complete -F _uxtree uxtree
)";

constexpr const char* kZsh = R"(
_uxtree() {
    local current=$words[CURRENT] place=uxtree option= word i
    for ((i = 2; i < CURRENT; ++i)); do
        word=$words[i]
        if [[ -n $option ]]; then
            option=
        elif [[ $_uxtree_takes[$place] == *" $word "* ]]; then
            option=$word
        elif [[ " $_uxtree_next[$place] " == *" $word "* ]]; then
            place+=" $word"
        fi
    done
    if [[ -z $option && $current == --*=* ]]; then
        option=${current%%=*}
        compset -P '*='
        current=$PREFIX
    fi
    if [[ -n $option ]]; then
        local key="$place $option"
        local chosen=$_uxtree_choices[$key]
        if [[ -n $chosen ]]; then compadd -- ${=chosen}; else _files; fi
        return
    fi
    if [[ $current == -* ]]; then
        compadd -- ${=_uxtree_options[$place]}
        return
    fi
    compadd -- ${=_uxtree_next[$place]} ${=_uxtree_choices[$place]}
    if [[ $place == uxtree ]]; then return; fi
    if [[ -n $_uxtree_next[$place] && -z $_uxtree_takes[$place] ]]; then return; fi
    _files
}
if [[ $funcstack[1] == _uxtree ]]; then _uxtree "$@"; else compdef _uxtree uxtree; fi
)";

struct CompletionOptions {
    std::string shell = "bash";
    std::string output;
};

int run_completion(const CompletionOptions& options) {
    Output out(options.output);
    if (options.shell == "zsh") {
        out.write("#compdef uxtree\n# made by uxtree completion zsh\n" + tables() + kZsh);
    } else {
        out.write("# bash completion for uxtree; made by uxtree completion\n" + tables() + kBash);
    }
    return out.finish();
}

const Command kCompletion{"completion", "Print the completion script for bash or zsh",
                          "uxtree completion -o ~/.local/share/bash-completion/completions/uxtree\n"
                          "eval \"$(uxtree completion)\"   # for this shell, bash\n"
                          "uxtree completion zsh -o ~/.zfunc/_uxtree   # a folder of fpath",
                          runs<run_completion>([](CLI::App& app, CompletionOptions& options) {
                              app.add_option("SHELL", options.shell, "bash (default) or zsh")
                                  ->type_name("")
                                  ->check(CLI::IsMember({"bash", "zsh"}));
                              add_output(app, options.output);
                          })};

}  // namespace
}  // namespace uxtool
