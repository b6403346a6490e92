// Commands that change files: which nodes, several files, and the report.
#include "support/edit.h"

#include <filesystem>
#include <optional>
#include <system_error>

#include "support/input.h"
#include "support/node_path.h"
#include "support/replace_files.h"
#include "support/selection.h"
#include "support/text.h"
#include "support/tree.h"

namespace uxtool {
namespace {

EditedItem whole(UXXmlWrapperBase node) {
    return {std::move(node), UXSelectedKind::kElement, ""};
}

std::vector<EditedItem> items_of(const UXSelected& selected) {
    std::vector<EditedItem> items;
    items.reserve(selected.size());
    for (std::size_t i = 0; i < selected.size(); ++i) {
        const UXSelectedKind kind = selected.kind(i);
        const bool isDocument = kind == UXSelectedKind::kDocument;
        items.push_back({selected.node(i), isDocument ? UXSelectedKind::kElement : kind,
                         selected.attribute(i)});
    }
    return items;
}

// Counts what became of the files of one call.
struct Report {
    std::size_t changed = 0;
    std::size_t unchanged = 0;
    std::size_t unmatched = 0;

    std::size_t failed_of(std::size_t files) const {
        return files - changed - unchanged - unmatched;
    }

    std::string line(std::size_t files, bool dryRun) const {
        std::string text = counted(files, "file") + ": " + std::to_string(changed) +
                           (dryRun ? " would change" : " changed");
        if (unchanged > 0) text += fmt::format(", {} as before", unchanged);
        if (unmatched > 0) text += fmt::format(", {} without a match", unmatched);
        const std::size_t failed = failed_of(files);
        if (failed > 0) text += fmt::format(", {} failed", failed);
        return text;
    }
};

class Editor {
public:
    explicit Editor(const EditOptions& options)
        : options_(options), replaced_(options.target.backup_suffix()) {
        if (!options.select.empty()) selection_.emplace(options.select);
    }

    int edit_all() {
        HeldNotes ofAll(options_.allOrNone && !options_.target.is_dry_run());
        int code = for_each_file(options_.files, [this](const std::string& file) {
            HeldNotes notes(!options_.target.is_dry_run());
            const ExitCode result = edit_one(file);
            notes.say();
            return result;
        });
        const std::size_t files = options_.files.size();
        bool refused = options_.allOrNone && report_.failed_of(files) > 0;
        if (options_.allOrNone && !refused) {
            try {
                replaced_.commit();
            } catch (const Failure& failure) {
                report(failure);
                code = failure.code();
                refused = true;
            }
        }
        if (refused) {
            ofAll.drop();
            report_ = {0, report_.changed + report_.unchanged, report_.unmatched};
        } else {
            ofAll.say();
        }
        const char* const outcome = !refused               ? ""
                                    : replaced_.is_whole() ? "; nothing was written"
                                                           : "; not all could be put back";
        note(report_.line(files, options_.target.is_dry_run()) + outcome);
        return code;
    }

    // With a Failure for whatever goes wrong.
    int edit_alone() {
        HeldNotes notes(!options_.target.is_dry_run());
        UXXmlWrapperBase root;
        if (!change(options_.files[0], root)) throw selection_->nothing(root, options_.files[0]);
        options_.target.save(root, options_.files[0]);
        notes.say();
        return kSuccess;
    }

    bool is_several() const { return options_.files.size() > 1; }

private:
    ExitCode edit_one(const std::string& file) {
        UXXmlWrapperBase root;
        if (!change(file, root)) {
            note(input_name(file) + ": nothing matches");
            ++report_.unmatched;
            return kNothingFound;
        }
        const bool together = options_.allOrNone && !options_.target.is_dry_run();
        const bool changed = together ? options_.target.add_to(replaced_, root, file)
                                      : options_.target.save(root, file);
        ++(changed ? report_.changed : report_.unchanged);
        return kSuccess;
    }

    // Loads and edits; false when nothing matches.
    bool change(const std::string& file, UXXmlWrapperBase& root) {
        root = options_.target.open(file);
        EditedNodes nodes{root, {}, selection_.has_value()};
        if (selection_) {
            nodes.items = items_of(selection_->run(root, file));
            if (nodes.items.empty()) return false;
        } else {
            nodes.items.push_back(whole(node_at(root, options_.at, file)));
        }
        const std::string told = options_.work(nodes).line();
        if (root.IsNodeValid() == 0) {
            throw Failure(kRefused, input_name(file), "the edit would remove the whole tree");
        }
        if (!told.empty()) note(is_several() ? input_name(file) + ": " + told : told);
        return true;
    }

    const EditOptions& options_;
    std::optional<Selection> selection_;
    ReplacedFiles replaced_;
    Report report_;
};

[[noreturn]] void throw_no_file(const EditOptions& options) {
    throw Failure(kUsage, "uxtree", "FILE is required", options.hint);
}

// What is taken for a file may be a word too many, or a wrong one.
void require_existing(const std::string& file, const EditOptions& options) {
    std::error_code error;
    if (file == "-" || std::filesystem::exists(file, error)) return;
    const std::string meant = file == "remove" ? "delete" : nearest(file, options.names);
    throw Failure(kUsage, "uxtree", "'" + file + "' is no edit and no file",
                  meant.empty() ? options.hint : "did you mean '" + meant + "'?");
}

[[noreturn]] void throw_no_edit(const EditOptions& options) {
    if (options.files.empty()) throw_no_file(options);
    require_existing(options.files.back(), options);
    throw Failure(kUsage, "uxtree", "say what to do after FILE", options.hint);
}

}  // namespace

const char* noun_of(UXSelectedKind kind) {
    return kind == UXSelectedKind::kAttribute ? "attribute"
           : kind == UXSelectedKind::kText    ? "text"
                                              : "node";
}

Told::Told(long long howMany, std::string what, std::string how)
    : count(howMany), noun(std::move(what)), done(std::move(how)) {
    if (count < 0) throw Failure(kRefused, "the library refuses this edit");
}

std::string Told::line() const {
    return count < 0 ? text : counted(count, noun) + " " + done;
}

void Told::add(const Told& other) {
    if (count >= 0 && other.count >= 0) {
        count += other.count;
    } else if (count >= 0 || !other.line().empty()) {
        *this = other;
    }
}

EditWork on_each(std::function<Told(UXXmlWrapperBase&)> work) {
    return [work = std::move(work)](EditedNodes& nodes) {
        Told told;
        bool first = true;
        for (EditedItem& item : nodes.items) {
            if (item.kind != UXSelectedKind::kElement) {
                throw Failure(kUsage, "--select", "this edit is about elements",
                              "select the elements that have the attribute or the text");
            }
            if (item.node.IsNodeValid() == 0) continue;
            const Told one = work(item.node);
            if (first) {
                told = one;
            } else {
                told.add(one);
            }
            first = false;
        }
        return told;
    };
}

Edit add_edit_options(CLI::App& app) {
    auto options = std::make_shared<EditOptions>();
    add_files(app, options->files)->required(false);  // so that "edit sort --help" needs none
    CLI::Option* at = add_at(app, options->at);
    add_select(app, options->select)->excludes(at);
    CLI::Option* inPlace = options->target.add_options(app);
    app.add_flag("--all-or-none", options->allOrNone,
                 "With -i: write all files, or none when any of them fails")
        ->needs(inPlace);
    app.fallthrough();
    app.require_subcommand(0, 1);  // so that an argument may be called like another edit
    return options;
}

CLI::Option* add_attribute(CLI::App& app, std::string& name) {
    return app.add_option("-a,--attr", name, "The attribute")->type_name("NAME");
}

int run_edit(const EditOptions& options) {
    if (!options.work) throw_no_edit(options);
    if (options.files.empty()) throw_no_file(options);
    Editor editor(options);
    if (!editor.is_several()) return editor.edit_alone();
    if (!options.target.is_in_place() && !options.target.is_dry_run()) {
        for (const std::string& file : options.files) require_existing(file, options);
        throw Failure(kUsage, "uxtree", "several files are edited in place",
                      "-i writes them, -n prints what would change");
    }
    return editor.edit_all();
}

}  // namespace uxtool
