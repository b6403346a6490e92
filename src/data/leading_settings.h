// Attribute settings that travel in front of a value, each as "::{name=value}".
#pragma once

#include "uxtree/host/node.h"

#include "marks/node_marks.h"

namespace ux {

inline bool has_leading_settings(const NodeMarks& marks) {
    return marks.has_any(Mark::kDynaCheck, Mark::kAutoText, Mark::kFormula);
}
// The node's value is its own text as it stands.
inline bool has_plain_text(const NodeMarks& marks) {
    return marks.text_at_hand() && !has_leading_settings(marks);
}
// Puts the settings of the attributes that travel this way in front of text; false when the node
// has none of them.
bool add_leading_settings(const NodeMarks& marks, CStringUTF8& text);

// Which of those attributes were among the settings of a value.
struct LeadingNames {
    bool dynaFx = false;
    bool automatic = false;
    bool dynaUseCheck = false;
};

// A quick test; what it lets pass may still hold none.
inline bool may_hold_leading_settings(const CStringUTF8& value) {
    constexpr int kShortest = 7;  // "::{a=b}"
    return value.GetLength() >= kShortest && value.Find(':') >= 0 && value.Find("::{") >= 0;
}
// Cuts the settings out of value and, unless apply is false, sets them as attributes of the node.
// Text in front of a setting is lost. The first malformed setting ends the search; it and what
// follows the last good one is the value.
LeadingNames take_leading_settings(UXXmlWrapperBase& node, CStringUTF8& value, bool apply);

}  // namespace ux
