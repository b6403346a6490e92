// Naming an element in messages.
#pragma once

#include <string>

#include "host/document.h"

namespace uxhost {

// "/r/a[2]/b[1]"; of a very deep path the steps next to the element.
std::string path_of(const Document& document, const Element& element);

}  // namespace uxhost
