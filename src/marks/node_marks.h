// The attributes by which the engines know a node, read with one look at it.
#pragma once

#include <cstddef>
#include <string_view>

#include "uxtree/host/node.h"
#include "uxtree/host/utilities.h"

#include "marks/names.h"

namespace ux {

enum class Mark : std::size_t {
    kId,  // the attribute that serves as identifier
    kRepeat,
    kRepeatNode,
    kIgnored,
    kUseText,
    kDataText,
    kTheme,
    kThemeEx,
    kDynaCheck,
    kAutoText,
    kFormula
};

// Made once for a walk and read at each node. The texts hold until the next change of the node's
// document; after one, read again.
class NodeMarks {
public:
    explicit NodeMarks(const char* idAttribute = kDataId)
        : names_{idAttribute, kRepeatId,           kRepeatNodeId,         kIgnore,       kUse,
                 kData,       kThemeApplicability, kThemeApplicabilityEx, kDynaUseCheck, kAuto,
                 kDynaFx} {}

    void read(const UXXmlWrapperBase& node) { node.Look(names_, look_); }
    bool is_leaf() const { return look_.childCount < 1; }
    bool has(Mark mark) const { return (look_.present & bit(mark)) != 0; }
    template <typename... Marks>
    bool has_any(Marks... marks) const {
        return (look_.present & (bit(marks) | ...)) != 0;
    }
    // "" for a missing one.
    std::string_view text(Mark mark) const {
        return has(mark) ? look_.attributes[static_cast<std::size_t>(mark)] : std::string_view();
    }
    // The text of the node itself.
    void own_text(const UXXmlWrapperBase& node, CStringUTF8& out) const {
        if (look_.textAtHand) {
            out.Assign(look_.value.data(), look_.value.size());
        } else {
            node.GetNodeStringWithBlobInfo(out, 0);
        }
    }
    bool text_at_hand() const { return look_.textAtHand; }
    std::string_view own_text() const { return look_.value; }
    // False, with value untouched, for one that is missing or no number.
    bool number(Mark mark, int& value) const { return has(mark) && UXParseInt(text(mark), value); }
    int number_or(Mark mark, int fallback) const {
        number(mark, fallback);
        return fallback;
    }
    unsigned bits(Mark mark) const { return static_cast<unsigned>(number_or(mark, 0)); }

private:
    static constexpr unsigned bit(Mark mark) { return 1U << static_cast<unsigned>(mark); }

    UXNameKeys names_;
    UXNodeLook look_;
};

}  // namespace ux
