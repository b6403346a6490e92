// What the commands that change files share: which files, which nodes, what is done with them, and
// what is told about it.
//
// A kind of edit is a subcommand; its setup adds options and yields the work:
//
//     add_edit(app, edit, "prune", "Remove empty leaves", [](CLI::App& sub) {
//         ...
//         return on_each([](UXXmlWrapperBase& node) { ...; return Told(count, "node", "removed"); });
//     });
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "uxtree/kit/select.h"

#include "support/command.h"
#include "support/output.h"

namespace uxtool {

// One thing that an edit is about: an element, an attribute of one, or the text of one.
struct EditedItem {
    UXXmlWrapperBase node;
    UXSelectedKind kind = UXSelectedKind::kElement;
    std::string attribute;
};

struct EditedNodes {
    UXXmlWrapperBase root;
    std::vector<EditedItem> items;  // in document order; of --select, else the node of --at alone
    bool selected = false;          // by --select
};

// What an edit tells the user: how many of what were changed how, or a sentence, or nothing.
struct Told {
    Told() = default;
    Told(std::string sentence) : text(std::move(sentence)) {}
    // A count below 0 is a refusal of the library's, and throws Failure.
    Told(long long howMany, std::string what, std::string how);
    std::string line() const;
    // As one: counts of the same are added up.
    void add(const Told& other);

    std::string text;
    long long count = -1;
    std::string noun;
    std::string done;
};

// "attribute", "text" or "node".
const char* noun_of(UXSelectedKind kind);

using EditWork = std::function<Told(EditedNodes&)>;
// For work on elements, each with the branch below it. What an earlier call removed is passed over.
EditWork on_each(std::function<Told(UXXmlWrapperBase&)> work);

struct EditOptions {
    std::vector<std::string> files;
    std::string at;
    std::string select;
    bool allOrNone = false;
    EditTarget target;
    std::string hint;                // for a call without an edit
    std::vector<std::string> names;  // of the edits
    EditWork work;
};
using Edit = std::shared_ptr<EditOptions>;

// Declares FILE..., --at, --select, --all-or-none and where results go.
Edit add_edit_options(CLI::App& app);

// Declares one kind of edit.
template <typename Setup>
void add_edit(CLI::App& app, const Edit& options, const char* name, const char* summary,
              Setup&& setup) {
    CLI::App* sub = app.add_subcommand(name, summary);
    options->names.emplace_back(name);
    EditWork work = setup(*sub);
    sub->callback([options, work] { options->work = work; });
}

// -a NAME, --attr NAME.
CLI::Option* add_attribute(CLI::App& app, std::string& name);

// Edits all files; yields the exit code.
int run_edit(const EditOptions& options);

}  // namespace uxtool
