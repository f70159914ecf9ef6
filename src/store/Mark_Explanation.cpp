#include "store/Mark_Explanation.h"

#include "core/Cls_Config.h"
#include "core/Err_Proc.h"
#include "core/VbText.h"

#include <cmath>

namespace vex {

namespace {

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

Mark_Explanation Explain_Mark(const Cls_Config& cfg, const Mark_Counts& c)
{
    Mark_Explanation e;
    // The deductions: the counts of integers multiply as 16-bit integers,
    // those carried as decimals as decimals.
    e.terms = {{
        {Mark_Event::Overspeed, double(c.overspeed), double(cfg.B_Val4), double(Product16(cfg.B_Val4, c.overspeed))},
        {Mark_Event::Acceleration, double(c.acceleration), double(cfg.B_Val6), double(cfg.B_Val6) * c.acceleration},
        {Mark_Event::Brake, double(c.brake), double(cfg.B_Val5), double(cfg.B_Val5) * c.brake},
        {Mark_Event::Long_Overspeed, double(c.longOver), double(cfg.B_Val7), double(Product16(cfg.B_Val7, c.longOver))},
        {Mark_Event::Idle, double(c.idle), double(cfg.B_Val8), double(Product16(cfg.B_Val8, c.idle))},
    }};
    e.deductions = e.terms[0].deduction + e.terms[1].deduction + e.terms[2].deduction + e.terms[3].deduction
                   + e.terms[4].deduction;
    e.base = Val(cfg.B_Val1);
    e.baseKm = cfg.B_Val2;
    if (cfg.B_Val2 == 0) {
        e.noBaseDistance = true;
        e.mark = QStringLiteral("0");
        return e;
    }
    // Deductions count per base distance; a day without distance takes
    // them at face value.
    const float km = c.distance / 10.0f;
    e.km = km;
    e.factor = km == 0.0f ? 1.0 : double(cfg.B_Val2) / double(km);
    e.unrounded = e.base - e.factor * e.deductions;
    // Whole points, halves away from zero as the number format rounds.
    const double whole = std::round(e.unrounded);
    e.mark = whole < 0 ? QStringLiteral("0") : QString::number(qint64(whole));
    return e;
}

} // namespace vex
