// The tags that lead to an element.
#include "host/element_path.h"

#include <algorithm>
#include <vector>

namespace uxhost {
namespace {

std::string step_of(const Document& document, const Element& element) {
    int position = 1;
    for (Ref ref = element.previous; ref != 0; ref = document.element(ref)->previous) {
        position += document.element(ref)->tag == element.tag ? 1 : 0;
    }
    std::string step = "/";
    step += document.name_view(element.tag);
    if (element.parent != 0) step.append("[").append(std::to_string(position)).append("]");
    return step;
}

}  // namespace

std::string path_of(const Document& document, const Element& element) {
    constexpr std::size_t kSteps = 100;
    std::vector<const Element*> line;
    const Element* at = &element;
    for (; at != nullptr && line.size() < kSteps; at = document.element(at->parent)) {
        line.push_back(at);
    }
    std::string path = at == nullptr ? "" : "...";
    std::for_each(line.rbegin(), line.rend(),
                  [&](const Element* ancestor) { path += step_of(document, *ancestor); });
    return path;
}

}  // namespace uxhost
