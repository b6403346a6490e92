// The attributes by which the engines know a node, read with one look at it.
#pragma once

#include <array>
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
    kFormula,
    kCount
};

// Made once for a walk and read at each node. The texts hold until the next change of the node's
// document; after one, read again.
class NodeMarks {
public:
    explicit NodeMarks(const char* idAttribute = kDataId)
        : names_{idAttribute, kRepeatId,           kRepeatNodeId,         kIgnore,       kUse,
                 kData,       kThemeApplicability, kThemeApplicabilityEx, kDynaUseCheck, kAuto,
                 kDynaFx} {}

    void read(const UXXmlWrapperBase& node) {
        present_ = node.GetPropertyViews(names_, views_.data());
    }
    bool has(Mark mark) const { return (present_ >> static_cast<std::size_t>(mark) & 1U) != 0; }
    // "" for a missing one.
    std::string_view text(Mark mark) const {
        return has(mark) ? views_[static_cast<std::size_t>(mark)] : std::string_view();
    }
    // False, with value untouched, for one that is missing or no number.
    bool number(Mark mark, int& value) const { return has(mark) && UXParseInt(text(mark), value); }
    int number_or(Mark mark, int fallback) const {
        number(mark, fallback);
        return fallback;
    }
    unsigned bits(Mark mark) const { return static_cast<unsigned>(number_or(mark, 0)); }

private:
    UXNameKeys names_;
    std::array<std::string_view, static_cast<std::size_t>(Mark::kCount)> views_;
    unsigned present_ = 0;
};

}  // namespace ux
