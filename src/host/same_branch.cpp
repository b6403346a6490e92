// Comparing branches, along their links.
#include "host/same_branch.h"

namespace uxhost {
namespace {

bool same_attributes(const Document& a, const Element& x, const Document& b, const Element& y) {
    if (x.attributeCount != y.attributeCount) return false;
    for (std::uint32_t i = 0; i < x.attributeCount; ++i) {
        const Attribute& one = a.attributes(x)[i];
        const Attribute& other = b.attributes(y)[i];
        if (a.name_view(one.name) != b.name_view(other.name) ||
            a.attribute_value(one) != b.attribute_value(other)) {
            return false;
        }
    }
    return true;
}

bool same_element(const Document& a, const Element& x, const Document& b, const Element& y,
                  bool withIds) {
    CStringUTF8 madeA;
    CStringUTF8 madeB;
    return a.name_view(x.tag) == b.name_view(y.tag) && x.childCount == y.childCount &&
           (!withIds || x.id == y.id) && same_attributes(a, x, b, y) &&
           a.value_text(x, madeA) == b.value_text(y, madeB);
}

}  // namespace

bool same_branch(const Document& a, const Element& topA, const Document& b, const Element& topB,
                 bool withIds) {
    const Element* x = &topA;
    const Element* y = &topB;
    while (x != nullptr && y != nullptr) {
        if (!same_element(a, *x, b, *y, withIds)) return false;
        x = a.next_below(topA, *x);
        y = b.next_below(topB, *y);
    }
    return x == nullptr && y == nullptr;
}

}  // namespace uxhost
