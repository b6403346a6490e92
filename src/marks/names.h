// Names of attributes that two or more topics read or write.
#pragma once

namespace ux {

inline constexpr char kDataId[] = "DataID";
inline constexpr char kRepeatId[] = "RepeatID";
inline constexpr char kRepeatNodeId[] = "RepeatNodeID";
inline constexpr char kIgnore[] = "TreeGetByIdIgnore";
inline constexpr char kLabel[] = "Label";
inline constexpr char kName[] = "Name";
inline constexpr char kShow[] = "Show";
inline constexpr char kUse[] = "Use";
inline constexpr char kData[] = "Data";
inline constexpr char kAuto[] = "Auto";
inline constexpr char kDynaFx[] = "DynaFx";
inline constexpr char kDynaUseCheck[] = "DynaUseChck";  // the published spelling
inline constexpr char kOldValue[] = "OldValue";
inline constexpr char kOldName[] = "OldName";
inline constexpr char kThemeApplicability[] = "ThemeApplicability";
inline constexpr char kThemeApplicabilityEx[] = "ThemeApplicabilityEx";

}  // namespace ux
