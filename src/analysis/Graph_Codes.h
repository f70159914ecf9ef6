#pragma once
// The handler codes several graph routines report under: every search of a
// day's data shares 1103 (the minutes) and 1107 (the seconds), every drawing
// of a graph's picture 1117.
#include <cstdint>

namespace vex {

inline constexpr int16_t kErrSearch_Data = 1103;
inline constexpr int16_t kErrSearch_SecData = 1107;
inline constexpr int16_t kErrPicture_Base_Draw = 1117;

} // namespace vex
