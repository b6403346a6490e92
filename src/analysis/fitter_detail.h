// The lists of a fitter's parameter settings.
#pragma once

namespace ux {

// Does a node of this tag hold one value per parameter? Case-sensitive; null is no tag.
bool is_parameter_list_tag(const char* tag);

}  // namespace ux
