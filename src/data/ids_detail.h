// The rules of combining identifiers at a node, and what is said when one is broken.
#pragma once

#include "uxtree/host/array.h"
#include "uxtree/host/node.h"

#include "data/id_rules.h"

namespace ux {

// See uxtree_combine_treenode_id_with_repeat_id.
int _tree_combine_id_with_repeat_id(UXXmlWrapperBase& node, int& dataId, int& repeatOut,
                                    int inheritedRepeat);

// Places the node's RepeatNodeID in the top byte of dataId: kIdCombined; kIdUnchanged when there is
// no identifier or no RepeatNodeID; kRepeatConflict when bits are taken; kRepeatInvalid.
int _tree_apply_repeat_node_id(UXXmlWrapperBase& node, int& dataId);

// 1 when all entries differ. Otherwise 0, and dupOut, when given, receives the value of the
// first entry that occurs again. Kept for callers under its name; setting values has an index at
// hand that tells the same.
int _tree_find_dup_id(const CArray<int, int>& ids, int* dupOut);

// What went wrong at a node, assigned to errorText when one is given and code is an error.
void _tree_format_repeat_id_error(const UXXmlWrapperBase& node, int code, int dataId,
                                  int inheritedRepeat, CStringUTF8* errorText);
void _tree_format_repeat_node_id_error(const UXXmlWrapperBase& node, int code, int dataId,
                                       CStringUTF8* errorText);
void format_missing_data_id(const UXXmlWrapperBase& node, CStringUTF8& errorText);
// The text of what an engine met, one of the three above; nothing for nothing.
void format_id_problem(const IdProblem& problem, CStringUTF8& errorText);
void format_duplicate_id(int id, int inheritedRepeat, CStringUTF8& errorText);

}  // namespace ux
