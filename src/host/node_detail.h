// What the parts of the node handle share.
#pragma once

#include <string_view>

#include "uxtree/host/node.h"

#include "host/document.h"

namespace uxhost {

// Operations report failures as 0; shortage of memory is one of them.
template <typename Body>
int guarded(Body&& body) noexcept {
    try {
        return body();
    } catch (...) {
        return 0;
    }
}

inline int assign(CStringUTF8& out, std::string_view text) {
    out.Assign(text.data(), text.size());
    return 1;
}

inline std::string_view view(const CStringUTF8& text) {
    return {static_cast<const char*>(text), static_cast<std::size_t>(text.GetLength())};
}

// Text of an array of texts: joined by "|", with backslash doubled and "|" behind a backslash.
CStringUTF8 joined(const CWBOStringArray& texts);

}  // namespace uxhost

// In a header because every operation begins with it.
inline uxhost::Element* UXXmlWrapperBase::Live() const {
    return element_ != nullptr && element_->generation == generation_ ? element_ : nullptr;
}
