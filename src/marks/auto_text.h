// The text "mode|name|count" of a node that is updated automatically, in its attribute "Auto".
#pragma once

#include "uxtree/host/node.h"

namespace ux {

inline constexpr int kAutoRemoved = 0;  // as an argument
inline constexpr int kAutoOn = 1;
inline constexpr int kAutoKeptOff = -1;  // as an argument and as a result
inline constexpr int kKeepAutoCount = -1;
inline constexpr int kDefaultAutoCount = 1;

// What these do, and what they yield, is said at the entry points of analysis/auto_support.h that
// bear their names: vctree_create_auto_support_string and so on.
CStringUTF8 make_auto_text(int mode, const char* name, int count);
int parse_auto_text(const char* text, int& mode, CStringUTF8& name, int& count);
int read_auto(const UXXmlWrapperBase& node, CStringUTF8& name, int& count);
int write_auto(UXXmlWrapperBase& node, int mode, const char* name, int count);
void switch_auto_off(UXXmlWrapperBase& node);

}  // namespace ux
