// Values with identifiers, as the commands pass them on.
#pragma once

#include <string>
#include <vector>

#include "uxtree/host/host.h"

#include "support/table.h"

namespace uxtool {

struct ValueList {
    CArray<int, int> ids;
    CWBOStringArray values;
    CWBOStringArray labels;           // as many as there are, or none
    std::vector<std::string> places;  // the tags from the root down; as many, or none
    std::string comment;
};

// The values of a tree with the labels and places of their nodes. Broken rules of repeated
// identifiers are warned about.
ValueList collect_values(const UXXmlWrapperBase& root, const std::string& file);

// Keeps those values alone whose identifier one of the nodes has; the nodes are of the tree, in
// document order.
void keep_values_of(const UXXmlWrapperBase& root, const std::vector<UXXmlWrapperBase>& nodes,
                    ValueList& list);

// Identifiers of the list that no node of the tree has, each once.
std::vector<std::string> unknown_ids(const UXXmlWrapperBase& root, const ValueList& list);

// Sets values into a tree; yields how many were written. A refusal becomes a Failure that speaks of
// `file`, and the tree must not be saved then.
int set_values(const UXXmlWrapperBase& root, ValueList& list, const std::string& file);

// The negative results of setting and copying.
enum : int { kNoValues = -2, kDuplicateIdentifier = -4, kRepeatConflict = -5 };
// Throws the Failure that such a result stands for. root is the tree whose identifiers break the
// rules; it may be invalid.
[[noreturn]] void throw_refusal(int code, int duplicate, const UXXmlWrapperBase& root,
                                const std::string& file);

// A saved values document; throws Failure when it is none.
ValueList read_saved_values(const std::string& file);
// Saved values in any of the forms that are written: the document, CSV or JSON.
ValueList read_values(const std::string& file);
// The document as a tree.
UXXmlWrapperBase saved_values(ValueList& list, const char* comment);

Table table_of(const ValueList& list);

}  // namespace uxtool
