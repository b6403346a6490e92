// uxtree label, kv: texts of nodes for people and for other programs.
#include "uxtree/uxtree_Utils.h"

#include "support/command.h"
#include "support/input.h"
#include "support/node_path.h"
#include "support/output.h"
#include "support/selection.h"
#include "support/table.h"
#include "support/text.h"
#include "support/tree.h"

namespace uxtool {
namespace {

// --- label list --------------------------------------------------------------------------------

struct LabelOptions {
    std::string file;
    std::string select;
    std::string output;
    std::string format = "text";
    int mode = 1;
};

int run_label_list(const LabelOptions& options) {
    const UXXmlWrapperBase root = open_tree_to_select(options.file, options.select);
    const auto wanted = selected_or_root(root, options.select, options.file);
    const bool all = options.select.empty();
    auto next = wanted.begin();
    Table table({"node", "label"});
    std::vector<std::string> path;
    walk(root, [&](UXXmlWrapperBase node, std::size_t level) {
        path.resize(level);
        path.push_back(tag_of(node));
        const bool isWanted = all || (next != wanted.end() && *next == node);
        if (!isWanted) return;
        if (!all) ++next;
        table.add({join(path, "."), to_string(uxtree_get_node_label(&node, options.mode))});
    });
    return print_table(options.output, table, options.format);
}

const Command kLabelList{"label list", "List the labels of all nodes",
                         "uxtree label list dialog.xml\n"
                         "uxtree label list --select \"//*[@Show='1']\" dialog.xml\n"
                         "uxtree label list --mode 2 dialog.xml   # tag, label and sub-headers",
                         runs<run_label_list>([](CLI::App& app, LabelOptions& options) {
                             add_file(app, options.file);
                             add_select(app, options.select);
                             app.add_option("--mode", options.mode,
                                            "0: the tag, 1: the label or the tag, 2: all")
                                 ->check(CLI::Range(0, 2))
                                 ->capture_default_str();
                             add_format(app, options.format, table_formats());
                             add_output(app, options.output);
                         })};

// --- label combine -----------------------------------------------------------------------------

struct CombineOptions {
    std::vector<std::string> labels;
    bool prefix = false;
    bool always = false;
    bool strict = false;
};

int run_combine(const CombineOptions& options) {
    auto labels = script_texts(options.labels);
    CStringUTF8 combined;
    uxtree_combine_data_label(&combined, &labels, options.prefix, options.always, options.strict);
    Output out("");
    out.write(to_string(combined) + "\n");
    return out.finish();
}

const Command kCombine{
    "label combine", "Combine labels into one label expression",
    "uxtree label combine --prefix '?$OP:Time' '?$OP:Signal'",
    runs<run_combine>([](CLI::App& app, CombineOptions& options) {
        app.add_option("LABEL", options.labels, "The labels")->required();
        app.add_flag("--prefix", options.prefix, "Begin with the mark of an expression, ?$OP:");
        app.add_flag("--always", options.always, "Enclose a single label in parentheses, too");
        app.add_flag("--strict", options.strict, "Join the labels plainly unless all are marked");
    })};

// --- label replace -----------------------------------------------------------------------------

struct ReplaceOptions {
    std::string file;
    std::string select;
    std::string oldText;
    std::string newText;
    EditTarget target;
};

// What the library does with a branch, for one node.
int replace_in_label(UXXmlWrapperBase& node, const ReplaceOptions& options) {
    const auto label = attribute_of(node, "Label");
    if (!label) return 0;
    UXXmlWrapperBase alone;
    alone.CreateNew(0, "x");
    alone.SetPropertyValue("Label", CStringUTF8(label->c_str()));
    const int changed = uxtree_recursively_replace_label_attributes(&alone, options.oldText.c_str(),
                                                                    options.newText.c_str());
    if (changed > 0) {
        node.SetPropertyValue("Label", CStringUTF8(attribute_of(alone, "Label")->c_str()));
    }
    return changed;
}

int replace_labels(UXXmlWrapperBase& root, const ReplaceOptions& options) {
    if (options.select.empty()) {
        return uxtree_recursively_replace_label_attributes(&root, options.oldText.c_str(),
                                                           options.newText.c_str());
    }
    int changed = 0;
    for (UXXmlWrapperBase& node : Selection(options.select).elements(root, options.file)) {
        changed += replace_in_label(node, options);
    }
    return changed;
}

int run_replace(const ReplaceOptions& options) {
    UXXmlWrapperBase root = options.target.open(options.file);
    const int changed = replace_labels(root, options);
    options.target.save(root, options.file);
    note(counted(changed, "label") + " changed");
    return changed > 0 ? kSuccess : kNothingFound;
}

const Command kReplace{
    "label replace", "Replace a text in all labels of a tree",
    "uxtree label replace dialog.xml Colour Color -i.bak\n"
    "uxtree label replace dialog.xml Colour Color --select //Plot -n   # of these nodes alone",
    runs<run_replace>([](CLI::App& app, ReplaceOptions& options) {
        add_file(app, options.file);
        add_select(app, options.select);
        app.add_option("OLD", options.oldText, "The text to replace")->required();
        app.add_option("NEW", options.newText, "What stands in its place")->required();
        options.target.add_options(app);
    })};

// --- kv ----------------------------------------------------------------------------------------

struct PairOptions {
    std::string file;
    std::string text;
    std::string at;
    std::string select;
    std::string keySeparator = "=";
    std::string pairSeparator = ";";
    std::string output;
    EditTarget target;
};

// The branches that a command is about.
std::vector<UXXmlWrapperBase> branches_of(const UXXmlWrapperBase& root,
                                          const PairOptions& options) {
    if (!options.select.empty()) return Selection(options.select).elements(root, options.file);
    return {node_at(root, options.at, options.file)};
}

int run_to_pairs(const PairOptions& options) {
    const UXXmlWrapperBase root = open_tree_to_select(options.file, options.select);
    bool found = false;
    Output out(options.output);
    for (UXXmlWrapperBase& node : branches_of(root, options)) {
        CStringUTF8 text;
        if (uxtree_branch_to_key_value_pairs_str(&node, &text, options.keySeparator[0],
                                                 options.pairSeparator[0]) == 0) {
            continue;
        }
        out.write(to_string(text) + "\n");
        found = true;
    }
    return out.finish(found ? kSuccess : kNothingFound);
}

// Pairs without a key that can be a tag would be dropped without a word.
void refuse_lost_pairs(const std::string& text, char keySeparator, char pairSeparator) {
    CWBOStringArray pairs;
    UXGetTokens(pairs, text.c_str(), pairSeparator, '"');
    for (const std::string& pair : to_strings(pairs)) {
        CStringUTF8 key = pair.substr(0, pair.find(keySeparator)).c_str();
        key.Trim();
        const bool isPair = pair.find(keySeparator) != std::string::npos;
        if (key.IsEmpty() && !isPair) continue;  // nothing between two separators
        UXXmlWrapperBase trial;
        trial.CreateNew(0, "trial");
        if (isPair && trial.AddNode(nullptr, key, -1) != 0) continue;
        throw Failure(kRefused, "uxtree",
                      isPair ? "'" + to_string(key) + "' is no element name"
                             : "'" + pair + "' is no pair of a key and a value",
                      "nothing was changed; keys are element names");
    }
}

int run_from_pairs(const PairOptions& options) {
    const UXXmlWrapperBase root = options.target.open(options.file);
    const std::string text = options.text == "-" ? read_all("-") : options.text;
    refuse_lost_pairs(text, options.keySeparator[0], options.pairSeparator[0]);
    for (UXXmlWrapperBase& node : branches_of(root, options)) {
        if (node.IsNodeValid() == 0) continue;  // below a branch that was replaced
        if (uxtree_key_value_pairs_str_to_branch(&node, text.c_str(), options.keySeparator[0],
                                                 options.pairSeparator[0]) == 0) {
            throw Failure(kRefused, "uxtree", "no pair of a key and a value in the text",
                          "pairs look like a" + options.keySeparator + "1" + options.pairSeparator +
                              "b" + options.keySeparator + "2; keys are element names");
        }
    }
    options.target.save(root, options.file);
    return kSuccess;
}

void add_pair_options(CLI::App& app, PairOptions& options) {
    const auto oneCharacter = [](const std::string& text) {
        return text.size() == 1 ? std::string() : "one ASCII character, not '" + text + "'";
    };
    CLI::Option* at = add_at(app, options.at);
    add_select(app, options.select)->excludes(at);
    app.add_option("--key-separator", options.keySeparator, "Between key and value")
        ->check(oneCharacter)
        ->type_name("C");
    app.add_option("--pair-separator", options.pairSeparator, "Behind each pair")
        ->check(oneCharacter)
        ->type_name("C");
}

const Command kToPairs{"kv to", "Write the children of a branch as key and value text",
                       "uxtree kv to dialog.xml --at Input/Options   # prints a=1;b=2;\n"
                       "uxtree kv to dialog.xml --select //Options   # a line for each",
                       runs<run_to_pairs>([](CLI::App& app, PairOptions& options) {
                           add_file(app, options.file);
                           add_pair_options(app, options);
                           add_output(app, options.output);
                       })};

const Command kFromPairs{
    "kv from", "Replace the children of a branch by the pairs of a key and value text",
    "uxtree kv from dialog.xml 'a=1;b=2' --at Input/Options -o changed.xml",
    runs<run_from_pairs>([](CLI::App& app, PairOptions& options) {
        add_file(app, options.file);
        app.add_option("TEXT", options.text, "The pairs; - reads them from standard input")
            ->required();
        add_pair_options(app, options);
        options.target.add_options(app);
    })};

}  // namespace
}  // namespace uxtool
