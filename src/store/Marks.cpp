// The driving mark of a trip and the overspeed minutes of the memory pack
// path.
#include "core/Cls_Config.h"
#include "core/Err_Proc.h"
#include "core/Mod_Main.h"
#include "store/Cls_DB.h"
#include "store/EventDetector.h"
#include "store/Mark_Explanation.h"
#include "store/Marks.h"

namespace vex {

namespace {

constexpr int16_t kErrCAL_AVG = 1111;
constexpr int16_t kErrCAL_OVERSPEED_CNT = 1136;
constexpr int16_t kErrCAL_OVERSPEED_COUNT = 1137;

} // namespace

int16_t Pack_Overspeed_Minutes(const QString& speed, const Cls_Config& standards)
{
    int16_t count = 0;
    for (int i = 0; i < kSeriesChars; i += 2)
        if (Hex_Cell(speed, i) > standards.B_Val4)
            ++count;
    return count;
}

QString Mark_Of(const Cls_Config& cfg, int16_t overspeed, float acceleration, float brake, int16_t idle,
                int16_t longOver, float distance)
{
    return Explain_Mark(cfg, {overspeed, acceleration, brake, idle, longOver, distance}).mark;
}

QString Cls_DB::CAL_AVG(int16_t overspeed, float acceleration, float brake, int16_t idle, int16_t longOver,
                        float distance)
{
    QString result;
    Guarded(kErrCAL_AVG, [&] {
        result = Mark_Of(*G().Config, overspeed, acceleration, brake, idle, longOver, distance);
    });
    return result;
}

int16_t Cls_DB::CAL_OVERSPEED_CNT(const QString& speed)
{
    int16_t count = 0;
    Guarded(kErrCAL_OVERSPEED_CNT, [&] { count = Pack_Overspeed_Minutes(speed, *G().Config); });
    return count;
}

int16_t Cls_DB::CAL_OVERSPEED_COUNT(const QString& series)
{
    int16_t count = 0;
    Guarded(kErrCAL_OVERSPEED_COUNT, [&] { count = Pack_Overspeed_Minutes(series, *G().Config); });
    return count;
}

} // namespace vex
