// Selections on the command line.
#include "support/selection.h"

#include <algorithm>
#include <cctype>
#include <set>
#include <vector>

#include <fmt/format.h>

#include "support/input.h"
#include "support/text.h"
#include "support/tree.h"

namespace uxtool {
namespace {

constexpr const char* kLanguage =
    "such as /catalog/book, //book[@id='7']/title, //price[. > 10] or //@id";

std::string marked(const std::string& expression, std::size_t position) {
    const std::size_t width = display_width(visible(expression.substr(0, position)));
    return "  " + visible(expression) + "\n  " + std::string(width, ' ') + "^";
}

bool is_name_byte(char c) {
    const auto byte = static_cast<unsigned char>(c);
    return byte >= 0x80 || std::isalnum(byte) != 0 || c == '_' || c == '-' || c == '.' || c == ':';
}

struct AskedNames {
    std::vector<std::string> tags;
    std::vector<std::string> attributes;
};

// The names in an expression: outside of quotes, no functions, operators or numbers.
AskedNames names_in(const std::string& expression) {
    static const std::set<std::string> kWords{"and", "or", "div", "mod"};
    AskedNames names;
    for (std::size_t at = 0; at < expression.size();) {
        const char c = expression[at];
        if (c == '\'' || c == '"') {
            at = std::min(expression.find(c, at + 1), expression.size() - 1) + 1;
        } else if (!is_name_byte(c)) {
            ++at;
        } else {
            const std::size_t start = at;
            while (at < expression.size() && is_name_byte(expression[at])) ++at;
            const std::string name = expression.substr(start, at - start);
            const std::size_t behind = expression.find_first_not_of(" \t\n", at);
            const bool isCall = behind != std::string::npos && expression[behind] == '(';
            const bool isAttribute = start > 0 && expression[start - 1] == '@';
            const bool isNumber = name.find_first_not_of("0123456789.-") == std::string::npos;
            if (isCall || isNumber || kWords.count(name) != 0) continue;
            (isAttribute ? names.attributes : names.tags).push_back(name);
        }
    }
    return names;
}

std::string missing_hint(const std::vector<std::string>& asked, const std::set<std::string>& there,
                         const std::string& what) {
    const std::vector<std::string> list(there.begin(), there.end());
    for (const std::string& name : asked) {
        if (there.count(name) != 0) continue;
        const std::string meant = nearest(name, list);
        const std::string start = fmt::format("no {} is called '{}'", what, name);
        if (!meant.empty()) return fmt::format("{}: did you mean '{}'?", start, meant);
        return list.empty() ? start : fmt::format("{}: there are {}", start, short_list(list));
    }
    return "";
}

}  // namespace

MixedText::MixedText(const UXXmlWrapperBase& node, const std::string& file)
    : Failure(kRefused, input_name(file),
              "the answer depends on text that stands between the children of " + place_of(node) +
                  ", and a tree does not keep where it stands",
              "ask for attributes, names or places, or for elements without children") {}

Selection::Selection(const std::string& expression) : expression_(expression) {
    UXSelectFault fault;
    if (selection_.compile(expression.c_str(), &fault)) return;
    throw Failure(kUsage, "uxtree",
                  "the path is not understood at character " + std::to_string(fault.position + 1) +
                      ": " + fault.message,
                  kLanguage)
        .with_excerpt(marked(expression, fault.position));
}

UXSelected Selection::run(const UXXmlWrapperBase& root, const std::string& file) const {
    UXSelected selected;
    switch (selection_.run(root, selected)) {
        case UXSelectOutcome::kDone:
            return selected;
        case UXSelectOutcome::kMixedText:
            throw MixedText(selected.mixed(), file);
        default:
            throw Failure(kRefused, input_name(file), "out of memory");
    }
}

std::vector<UXXmlWrapperBase> Selection::elements(const UXXmlWrapperBase& root,
                                                  const std::string& file) const {
    const UXSelected selected = run(root, file);
    if (selected.size() == 0) throw nothing(root, file);
    std::vector<UXXmlWrapperBase> nodes;
    nodes.reserve(selected.size());
    for (std::size_t i = 0; i < selected.size(); ++i) {
        const bool isElement = selected.kind(i) == UXSelectedKind::kElement ||
                               selected.kind(i) == UXSelectedKind::kDocument;
        if (!isElement) {
            throw Failure(kUsage, "--select", "this command is about elements",
                          "select the elements that have the attribute or the text");
        }
        nodes.push_back(selected.node(i));
    }
    return nodes;
}

UXXmlWrapperBase open_tree_to_select(const std::string& file, const std::string& expression) {
    return expression.empty() ? open_tree(file) : open_tree_for_editing(file);
}

std::vector<UXXmlWrapperBase> selected_or_root(const UXXmlWrapperBase& root,
                                               const std::string& expression,
                                               const std::string& file) {
    if (expression.empty()) return {root};
    return Selection(expression).elements(root, file);
}

Failure Selection::nothing(const UXXmlWrapperBase& root, const std::string& file) const {
    std::set<std::string> tags;
    std::set<std::string> attributes;
    walk(root, [&](const UXXmlWrapperBase& node, std::size_t) {
        tags.insert(tag_of(node));
        for (std::string& name : attribute_names(node)) attributes.insert(std::move(name));
    });
    const AskedNames asked = names_in(expression_);
    std::string hint = missing_hint(asked.tags, tags, "element");
    if (hint.empty()) hint = missing_hint(asked.attributes, attributes, "attribute");
    if (hint.empty())
        hint = "uxtree outline -f paths shows which elements and attributes stand where";
    return Failure(kNothingFound, input_name(file), "nothing matches '" + expression_ + "'", hint);
}

std::string Selection::text(const UXSelected& selected, std::size_t index,
                            const std::string& file) {
    CStringUTF8 text;
    if (selected.text(index, text)) return to_string(text);
    throw MixedText(selected.node(index), file);
}

CLI::Option* add_select(CLI::App& app, std::string& expression) {
    return app
        .add_option("--select", expression,
                    "Only the nodes of this path, such as \"//book[@lang='fr']\"")
        ->type_name("PATH");
}

std::string place_of(const UXXmlWrapperBase& node) {
    std::string place;
    UXXmlWrapperBase at = node;
    do {
        const std::string tag = tag_of(at);
        int number = 1;
        int others = 0;
        for (UXXmlWrapperBase other = at; other.PrevSibling(&other) != 0;) {
            if (tag_of(other) == tag) ++number;
        }
        for (UXXmlWrapperBase other = at; others == 0 && other.NextSibling(&other) != 0;) {
            if (tag_of(other) == tag) ++others;
        }
        const bool alone = number == 1 && others == 0;
        place.insert(0, "/" + tag + (alone ? "" : "[" + std::to_string(number) + "]"));
    } while (at.GetParent(&at) != 0);
    return place;
}

}  // namespace uxtool
