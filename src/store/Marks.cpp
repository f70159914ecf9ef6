// The driving mark of a trip and the overspeed minutes of the memory pack
// path.
#include "core/Cls_Config.h"
#include "core/Err_Proc.h"
#include "core/Mod_Main.h"
#include "store/Cls_DB.h"
#include "store/EventDetector.h"
#include "store/Marks.h"

#include <cmath>

namespace vex {

namespace {

constexpr int16_t kErrCAL_AVG = 1111;
constexpr int16_t kErrCAL_OVERSPEED_CNT = 1136;
constexpr int16_t kErrCAL_OVERSPEED_COUNT = 1137;

// A product of two 16-bit integers is 16-bit itself: out of range is an
// overflow, never a saturation.
int Product16(int a, int b)
{
    const int p = a * b;
    if (p < -32768 || p > 32767)
        throw RunTimeError(QStringLiteral("Overflow"));
    return p;
}

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
    // The deductions: the counts of integers multiply as 16-bit integers,
    // those carried as decimals as decimals.
    const double sum = double(Product16(cfg.B_Val4, overspeed)) + double(cfg.B_Val6) * acceleration +
                       double(cfg.B_Val5) * brake + double(Product16(cfg.B_Val7, longOver)) +
                       double(Product16(cfg.B_Val8, idle));
    if (cfg.B_Val2 == 0)
        return QStringLiteral("0");
    // Deductions count per base distance; a day without distance takes
    // them at face value.
    const float km = distance / 10.0f;
    const double factor = km == 0.0f ? 1.0 : double(cfg.B_Val2) / double(km);
    const double mark = Val(cfg.B_Val1) - factor * sum;
    // Whole points, halves away from zero as the number format rounds.
    const double whole = std::round(mark);
    return whole < 0 ? QStringLiteral("0") : QString::number(qint64(whole));
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
