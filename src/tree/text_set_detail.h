// Sets of texts compared without regard to ASCII case.
#pragma once

#include <string>
#include <string_view>
#include <unordered_map>

#include "uxtree/host/array.h"
#include "uxtree/host/string.h"

#include "base/ascii.h"
#include "frame/text.h"

namespace ux {

// Texts, each numbered from 0 in the order of its first appearance.
class FoldedTexts {
public:
    void add_all(const CWBOStringArray& texts) {
        for (int i = 0; i < texts.GetSize(); ++i) {
            numbers_.try_emplace(folded(view_of(texts[i])), numbers_.size());
        }
    }
    bool empty() const { return numbers_.empty(); }
    std::size_t size() const { return numbers_.size(); }
    bool contains(std::string_view text) const { return number_of(text) < size(); }
    // size() for a text that is not there.
    std::size_t number_of(std::string_view text) const {
        const auto found = numbers_.find(folded(text));
        return found == numbers_.end() ? size() : found->second;
    }

private:
    std::unordered_map<std::string, std::size_t> numbers_;
};

}  // namespace ux
