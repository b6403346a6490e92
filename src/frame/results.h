// Result values that several families of entry points share. Families with codes of their own
// keep them as named constants beside their topic.
#pragma once

namespace ux {

inline constexpr int kOk = 1;
inline constexpr int kFail = 0;
inline constexpr int kBadArgument = -1;  // counts, levels and rows

}  // namespace ux
