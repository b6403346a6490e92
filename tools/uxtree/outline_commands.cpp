// uxtree outline: which elements and attributes occur where in XML files.
#include <algorithm>
#include <array>
#include <cstdint>
#include <optional>

#include "uxtree/kit/outline.h"
#include "uxtree/outline/layout.h"

#include "support/command.h"
#include "support/input.h"
#include "support/json.h"
#include "support/output.h"
#include "support/platform.h"
#include "support/text.h"
#include "support/tree.h"
#include "support/tree_lines.h"
#include "support/work_ahead.h"

namespace uxtool {
namespace {

struct OutlineOptions {
    std::vector<std::string> files;
    std::string format = "tree";
    std::string output;
    bool lenient = false;
    bool mapped = false;
    bool partial = false;
    bool check = false;  // asked for, and done anyway
    bool merge = false;
    unsigned jobs = 1;
    std::uint64_t maxSpool = NamedInput::kMaxSpool;
};

std::string label_of(const UXXmlWrapperBase& node) {
    return attribute_of(node, "Label").value_or("");
}

// The labels of an entry's attributes, which come first below it; with their "@".
std::vector<std::string> attributes_of(const UXXmlWrapperBase& entry) {
    std::vector<std::string> labels;
    UXXmlWrapperBase child;
    for (int more = entry.FirstChild(&child); more != 0; more = child.NextSibling(&child)) {
        if (tag_of(child) != "Attr") break;
        labels.push_back(label_of(child));
    }
    return labels;
}

// Calls enter and leave for element entries only.
template <typename Enter, typename Leave>
void walk_entries(const UXXmlWrapperBase& root, Enter&& enter, Leave&& leave) {
    walk(
        root,
        [&](const UXXmlWrapperBase& node, std::size_t level) {
            if (tag_of(node) == "Node") enter(node, level);
            return true;
        },
        [&](const UXXmlWrapperBase& node, std::size_t level) {
            if (tag_of(node) == "Node") leave(node, level);
        });
}

void write_tree(Output& out, const UXXmlWrapperBase& root) {
    TreeLines lines;
    const auto enter = [&](const UXXmlWrapperBase& entry, std::size_t level) {
        UXXmlWrapperBase next;
        const bool isLast = entry.NextSibling(&next) == 0;
        std::string line = out.palette().paint(Role::kDim, lines.prefix(level, isLast)) +
                           out.palette().paint(Role::kTag, visible(label_of(entry)));
        const std::string attributes = join(attributes_of(entry), " ");
        if (!attributes.empty()) {
            line += "  " + out.palette().paint(Role::kAttribute, visible(attributes));
        }
        out.write(line + "\n");
    };
    walk_entries(root, enter, [](const auto&, std::size_t) {});
}

// One line per element and attribute, as uxtree query takes them.
void write_paths(Output& out, const UXXmlWrapperBase& root, const std::string& prefix) {
    std::string path;
    std::vector<std::size_t> lengths;  // of the path without the open entries
    const auto enter = [&](const UXXmlWrapperBase& entry, std::size_t) {
        lengths.push_back(path.size());
        path += (lengths.size() == 1 ? "/" : "|") + visible(label_of(entry));
        out.write(prefix + path + "\n");
        for (const std::string& attribute : attributes_of(entry)) {
            out.write(prefix + path + "|" + visible(attribute) + "\n");
        }
    };
    const auto leave = [&](const auto&, std::size_t) {
        path.resize(lengths.back());
        lengths.pop_back();
    };
    walk_entries(root, enter, leave);
}

// {"file":...,"name":...,"attributes":[...],"children":[...]}; the file stands in the root alone.
void write_json(Output& out, const UXXmlWrapperBase& root, const std::string& file) {
    bool first = true;  // among its siblings
    const auto enter = [&](const UXXmlWrapperBase& entry, std::size_t level) {
        if (!first) out.write(",");
        first = true;
        const std::string start = level == 0 ? "\"file\":" + json_string(file) + "," : "";
        Json names = Json::array();
        for (const std::string& label : attributes_of(entry)) names.push_back(label.substr(1));
        out.write("{" + start + "\"name\":" + json_string(label_of(entry)) +
                  ",\"attributes\":" + json_text(names) + ",\"children\":[");
    };
    const auto leave = [&](const auto&, std::size_t) {
        out.write("]}");
        first = false;
    };
    walk_entries(root, enter, leave);
}

std::string escaped(const std::string& text) {
    return replaced(text, {{'&', "&amp;"},
                           {'<', "&lt;"},
                           {'"', "&quot;"},
                           {'\n', "&#10;"},
                           {'\t', "&#9;"},
                           {'\r', "&#13;"}});
}

std::string xml_indent(std::size_t level) {
    return std::string(2 * std::min<std::size_t>(level, 40), ' ');
}

// The outline itself, with the elements that the library writes it in.
void write_xml(Output& out, const UXXmlWrapperBase& root, const std::string& file) {
    out.write("  <Document Name=\"" + escaped(file) + "\">\n");
    const auto enter = [&](const UXXmlWrapperBase& entry, std::size_t level) {
        out.write(xml_indent(level + 2) + "<" + tag_of(entry) + " Label=\"" +
                  escaped(label_of(entry)) + "\"" + (entry.HasChildren() != 0 ? ">" : "/>") + "\n");
        return true;
    };
    const auto leave = [&](const UXXmlWrapperBase& entry, std::size_t level) {
        if (entry.HasChildren() != 0) {
            out.write(xml_indent(level + 2) + "</" + tag_of(entry) + ">\n");
        }
    };
    walk(root, enter, leave);
    out.write("  </Document>\n");
}

// Does the file hold characters beyond U+FFFF? The streamed scan ends at the first of them.
bool holds_long_characters(const std::string& path) {
    const Descriptor file = open_to_read(path);
    std::array<char, 65536> block;
    for (;;) {
        const long got = read_some(file, block.data(), block.size());
        if (got <= 0) return false;
        unsigned highest = 0;
        for (std::size_t i = 0; i < static_cast<std::size_t>(got); ++i) {
            highest =
                std::max(highest, static_cast<unsigned>(static_cast<unsigned char>(block[i])));
        }
        if (highest >= 0xF0) return true;
    }
}

// The outline of one file: what a thread of its own hands over.
struct Outlined {
    UXXmlWrapperBase holder;
    UXXmlWrapperBase root;  // invalid when there is none
    std::string name;
    std::optional<Failure> failure;  // to be told when the outline was written
};

class Outliner {
public:
    Outliner(const OutlineOptions& options, Output& out) : options_(options), out_(out) {
        merged_.CreateNew(0, "Outline");
    }

    // For any thread.
    Outlined outline(const std::string& file) const {
        const NamedInput input(file, options_.maxSpool);
        Outlined result;
        result.holder.CreateNew(0, "Outline");
        result.name = input_name(file);
        if (options_.lenient) {
            outline_leniently(result, input.path());
        } else {
            outline_strictly(result, input.path());
        }
        return result;
    }

    // In the order of the files.
    ExitCode take(const Outlined& result) {
        if (result.root.IsNodeValid() != 0) {
            if (options_.merge) {
                UXMergeOutline(&merged_, &result.holder);
            } else {
                write(result.root, result.name);
            }
        }
        if (result.failure) throw Failure(*result.failure);
        return kSuccess;
    }

    void begin() {
        if (options_.format == "xml") {
            out_.write("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<Outline>\n");
        }
    }

    int finish(int exitCode) {
        for_each_child(merged_, [this](const UXXmlWrapperBase& root) { write(root, ""); });
        if (options_.format == "xml") out_.write("</Outline>\n");
        if (options_.format == "json") list_.finish();
        return out_.finish(exitCode);
    }

private:
    bool read_strictly(UXXmlWrapperBase& holder, const std::string& path,
                       const std::string& name) const {
        const Progress progress("outlining " + name);
        return UXOutlineFile(&holder, path.c_str(), options_.partial) == 1;
    }

    void outline_strictly(Outlined& result, const std::string& path) const {
        const bool good = read_strictly(result.holder, path, result.name);
        result.holder.FirstChild(&result.root);
        if (good) return;
        try {
            throw_refused_file(result.name, path);
        } catch (const Failure& failure) {
            result.failure = failure;
        }
    }

    // The forgiving scan says nothing about where it stopped, so the strict reader is asked.
    void outline_leniently(Outlined& result, const std::string& path) const {
        {
            const Progress progress("outlining " + result.name);
            const bool mapped = options_.mapped || holds_long_characters(path);
            SAXTreeLayout(&result.holder, nullptr, path.c_str(), mapped ? 1 : 0);
            result.holder.FirstChild(&result.root);
        }
        UXXmlWrapperBase checked;
        checked.CreateNew(0, "Outline");
        const bool good = read_strictly(checked, path, result.name);
        // The scan knows neither UTF-16 nor the end of what is no XML at all.
        if (label_of(result.root).empty()) {
            result.holder = checked;
            if (checked.FirstChild(&result.root) == 0) throw_refused_file(result.name, path);
        }
        if (good) return;
        warn_of_refused_file(result.name, "the outline is what the forgiving scan made of it");
    }

    void write(const UXXmlWrapperBase& root, const std::string& name) {
        const bool several = options_.files.size() > 1 && !options_.merge;
        if (options_.format == "paths") return write_paths(out_, root, several ? name + ": " : "");
        if (options_.format == "xml") return write_xml(out_, root, name);
        if (options_.format == "json") {
            list_.begin_entry();
            return write_json(out_, root, name);
        }
        if (several) {
            out_.write((any_ ? "\n" : "") +
                       out_.palette().paint(Role::kHeading, visible(name) + ":") + "\n");
        }
        any_ = true;
        write_tree(out_, root);
    }

    const OutlineOptions& options_;
    Output& out_;
    JsonList list_{out_};
    bool any_ = false;
    UXXmlWrapperBase merged_;
};

int run_outline(const OutlineOptions& options) {
    Output out(options.output);
    Outliner outliner(options, out);
    outliner.begin();
    const int result = for_each_in_order(
        options.files, options.jobs,
        [&](const std::string& file) { return outliner.outline(file); },
        [&](const Outlined& outlined) { return outliner.take(outlined); });
    return outliner.finish(result);
}

const Command kOutline{
    "outline", "Show which elements and attributes occur where in XML files",
    "uxtree outline big.xml\n"
    "uxtree outline -f paths big.xml     # one line each, ready for uxtree query\n"
    "uxtree outline -f json *.xml        # a list with one entry per file\n"
    "uxtree outline --merge *.xml        # what occurs in any of them\n"
    "uxtree outline --partial cut.xml    # what stands before the error, too\n"
    "uxtree outline --lenient broken.xml # the forgiving scan of what is no XML",
    runs<run_outline>([](CLI::App& app, OutlineOptions& options) {
        add_files(app, options.files);
        add_format(app, options.format, {"tree", "paths", "xml", "json"});
        add_output(app, options.output);
        app.add_flag("--partial", options.partial,
                     "Of a broken file, show the outline up to the error");
        CLI::Option* const lenient =
            app.add_flag("--lenient", options.lenient,
                         "Scan forgivingly: text that is no XML yields what can be made out");
        app.add_flag("--mmap", options.mapped, "Let the forgiving scan read through a mapping")
            ->needs(lenient);
        app.add_flag("--check", options.check,
                     "Nothing more than without: files are always checked");
        app.add_flag("--merge", options.merge,
                     "One outline of all files, with what occurs in any of them")
            ->excludes(lenient);
        add_jobs(app, options.jobs);
        add_max_spool(app, options.maxSpool);
    })};

}  // namespace
}  // namespace uxtool
