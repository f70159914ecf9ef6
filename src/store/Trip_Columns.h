#pragma once
// The columns of D_D1, the trip summary, by what they hold. The table keeps
// the names every table of the system has (D_F1, D_F2, ...), and its SQL
// texts keep them as they stand; where the code reads or writes a column
// by name, it says which one here, once.
namespace vex::trip_col {

inline constexpr char Key[] = "D_F1";              // car + driver + day
inline constexpr char Car[] = "D_F2";
inline constexpr char Driver[] = "D_F3";
inline constexpr char Start_Day[] = "D_F4";        // yyMMdd
inline constexpr char Start_Time[] = "D_F5";       // HHmm
inline constexpr char End_Day[] = "D_F6";
inline constexpr char End_Time[] = "D_F7";
inline constexpr char Distance[] = "D_F8";         // tenths of a km
inline constexpr char Accelerations[] = "D_F9";
inline constexpr char Brakes[] = "D_F10";
inline constexpr char Overspeed_Minutes[] = "D_F11";
inline constexpr char Idles[] = "D_F12";
inline constexpr char Long_Overspeeds[] = "D_F13";
inline constexpr char Mark[] = "D_F14";
inline constexpr char Over_Band1[] = "D_F15";      // overspeed minutes by band
inline constexpr char Over_Band2[] = "D_F16";
inline constexpr char Over_Band3[] = "D_F17";

} // namespace vex::trip_col
