// The column charts of marks over a period, one column a day.
#include "analysis/Graph_Surface.h"
#include "analysis/Period_Marks.h"

#include "core/Cls_Config.h"
#include "core/Err_Proc.h"
#include "core/Mod_Main.h"
#include "core/VbText.h"

#include <QDate>
#include <cmath>

namespace vex {

namespace {

constexpr int16_t kErrPicture_Day_AVG_Base = 1114;
constexpr int16_t kErrPicture_Avg_Day_Base = 1115;
constexpr uint32_t kColumnColor = 0xC00000;

QDate Day_Of(const QString& yymmdd)
{
    return QDate::fromString(QStringLiteral("20") + yymmdd, QStringLiteral("yyyyMMdd"));
}

void Column_Chart(Graph_Surface& s, const QString& start, const QString& end,
                  const std::vector<Mark_Column>& columns, int16_t errCode)
{
    Guarded(errCode, [&] {
        const QDate first = Day_Of(start), last = Day_Of(end);
        if (!first.isValid() || !last.isValid() || last < first)
            throw RunTimeError(QStringLiteral("Type mismatch: period %1 to %2").arg(start, end));
        const Cls_Config* cfg = G().Config.get();
        // The lowest score is B_Val15, which nothing assigns: 0.
        const double low = cfg ? Val(cfg->B_Val15) : 0;
        const double high = cfg ? cfg->B_Val2 : 100;
        if (high <= low)
            throw RunTimeError(QStringLiteral("Division by zero: a mark axis from %1 to %2").arg(low).arg(high));
        const int days = int(first.daysTo(last)) + 1;

        const float W = s.ScaleWidth(), H = s.ScaleHeight();
        // On paper a header stands above the chart.
        const float left = W * 0.08f, right = W * 0.98f, top = H * (s.Screen() ? 0.08f : 0.16f), bottom = H * 0.85f;
        const float columnWidth = (right - left) / float(days);
        auto Y = [&](double v) {
            const double clipped = std::clamp(v, low, high);
            return bottom - float((clipped - low) / (high - low)) * (bottom - top);
        };

        s.Set_FontSize(8);
        s.DrawWidth = 1;
        s.DrawStyle = 0;
        s.Box(left, top, right, bottom);
        s.DrawStyle = 2;
        for (double v = low; v <= high + 1e-9; v += 10) {
            const float y = Y(v);
            if (v > low && v < high)
                s.Line(left, y, right, y, s.Screen() ? 0xC0C0C0 : kWindowText);
            const QString label = QString::number(v, 'f', 0).rightJustified(3);
            s.CurrentX = left - s.TextWidth(label + QStringLiteral("0"));
            s.CurrentY = y - s.TextHeight(label) / 2;
            s.Print(label);
        }
        s.DrawStyle = 0;

        // Day labels as far apart as they need.
        const float labelWidth = s.TextWidth(QStringLiteral("00 / 00 "));
        const int every = std::max(1, int(std::ceil(labelWidth / columnWidth)));
        for (int d = 0; d < days; d += every) {
            const QDate day = first.addDays(d);
            const QString label = day.toString(QStringLiteral("MM")) + QStringLiteral(" / ") +
                                  day.toString(QStringLiteral("dd"));
            s.CurrentX = left + columnWidth * (float(d) + 0.5f) - s.TextWidth(label) / 2;
            s.CurrentY = bottom + s.Pixel() * 3;
            s.Print(label);
        }
        for (const Mark_Column& c : columns) {
            const QDate day = Day_Of(c.day);
            if (!day.isValid())
                continue;
            const int d = int(first.daysTo(day));
            if (d < 0 || d >= days)
                continue;
            const float x0 = left + columnWidth * (float(d) + 0.2f), x1 = left + columnWidth * (float(d) + 0.8f);
            s.Filled_Box(x0, Y(c.value), x1, bottom, kColumnColor);
            const QString value = QString::number(c.value, 'f', 1);
            s.CurrentX = (x0 + x1) / 2 - s.TextWidth(value) / 2;
            s.CurrentY = Y(c.value) - s.TextHeight(value);
            s.Print(value);
        }
    });
}

} // namespace

void Picture_Day_AVG_Base(Graph_Surface& s, const QString& start, const QString& end,
                          const std::vector<Mark_Column>& columns)
{
    Column_Chart(s, start, end, columns, kErrPicture_Day_AVG_Base);
}

void Picture_Avg_Day_Base(Graph_Surface& s, const QString& start, const QString& end,
                          const std::vector<Mark_Column>& columns)
{
    Column_Chart(s, start, end, columns, kErrPicture_Avg_Day_Base);
}

} // namespace vex
