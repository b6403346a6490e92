// Texts of the host's message table.
#pragma once

#include "uxtree/host/services.h"

#include "frame/guards.h"

namespace ux {

inline constexpr int kMessageAutoName = 1624;
inline constexpr int kMessageWeightData = 1627;
inline constexpr int kMessageWeightA = 1628;
inline constexpr int kMessageWeightB = 1629;
inline constexpr int kMessageWeightC = 1630;
inline constexpr int kMessageWeight = 1631;
inline constexpr int kMessageWeightMethods = 1935;
inline constexpr int kMessageRange = 1996;

// The text of a message, "" when the host has none. The option is the host's own.
inline CStringUTF8 message_text(int number, int option = 0) {
    CStringUTF8 text;
    call_out(UXGetHostServices().messageText, number, option, text);
    return text;
}

}  // namespace ux
