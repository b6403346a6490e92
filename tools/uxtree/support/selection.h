// Selections on the command line.
#pragma once

#include <string>
#include <vector>

#include "uxtree/kit/select.h"

#include "support/command.h"

namespace uxtool {

// The answer depends on text among child elements, and the tree does not tell where it stands: a tree
// that is loaded for editing may.
class MixedText : public Failure {
public:
    MixedText(const UXXmlWrapperBase& node, const std::string& file);
};

// A selection as a user wrote it.
class Selection {
public:
    // Throws Failure with kUsage, with the place of the fault.
    explicit Selection(const std::string& expression);

    // Selects in a tree. Throws MixedText.
    UXSelected run(const UXXmlWrapperBase& root, const std::string& file) const;
    // The elements that it selects. Throws Failure with kUsage when it selects attributes or texts,
    // with kNothingFound when nothing.
    std::vector<UXXmlWrapperBase> elements(const UXXmlWrapperBase& root,
                                           const std::string& file) const;
    // Why nothing was found: kNothingFound, with the names that the tree does not have.
    Failure nothing(const UXXmlWrapperBase& root, const std::string& file) const;
    // A text of a result; throws as run does.
    static std::string text(const UXSelected& selected, std::size_t index, const std::string& file);

private:
    std::string expression_;
    UXSelection selection_;
};

// --select PATH: which nodes the command is about.
CLI::Option* add_select(CLI::App& app, std::string& expression);

// A tree to select in: loaded for editing when there is a selection, since that is what knows where
// texts stand among child elements; as open_tree does otherwise.
UXXmlWrapperBase open_tree_to_select(const std::string& file, const std::string& expression);

// The elements of --select, or root alone without one.
std::vector<UXXmlWrapperBase> selected_or_root(const UXXmlWrapperBase& root,
                                               const std::string& expression,
                                               const std::string& file);

// "/catalog/book[2]": where a node stands, as a selection that finds it alone.
std::string place_of(const UXXmlWrapperBase& node);

}  // namespace uxtool
