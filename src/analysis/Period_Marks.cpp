#include "analysis/Period_Marks.h"

#include "core/Cls_Config.h"
#include "core/Err_Proc.h"
#include "core/Mod_Main.h"
#include "core/VbText.h"
#include "store/Cls_DB.h"

#include <QLocale>
#include <cmath>

namespace vex {

namespace {

constexpr int16_t kErrSearch_DayAVG = 1105;
constexpr int16_t kErrSearch_AvgDay = 1106;

// "###,##0.00"
QString Grouped(double v)
{
    QLocale c(QLocale::C);
    c.setNumberOptions(QLocale::DefaultNumberOptions);
    return c.toString(v, 'f', 2);
}

double Field_Number(const Recordset& rs, const char* field)
{
    return Val(rs.Text(QLatin1String(field)));
}

} // namespace

int16_t Overspeed_Runs(const QString& series, int limit)
{
    auto cell = [&](int position) { // 1-based character position
        const QString pair = series.mid(position - 1, 2);
        int v = 0;
        for (QChar c : pair)
            v = v * 16 + std::max(0, Hex_Digit(c));
        return v;
    };
    int16_t count = cell(1) > limit ? 1 : 0;
    for (int p = 1; p <= 2877; p += 2)
        if (cell(p) > limit)
            ++count;
    return count;
}

Day_Marks DB_Search_DayAVG(Cls_DB& db, const QString& carNumber, const QString& driver, const QString& start,
                           const QString& end)
{
    Day_Marks out;
    Guarded(kErrSearch_DayAVG, [&] {
        const Cls_Config& cfg = *G().Config;
        // Days of six digits order the same as text and as numbers.
        Recordset d3 = db.DB_RSet_D_D(QStringLiteral("SELECT * FROM D_D3 WHERE Mid(D_F1,5,4)=? AND "
                                                     "(RIGHT(D_F1,6) >= ? AND RIGHT(D_F1,6) <= ?) ORDER BY D_F1"),
                                      {carNumber, start, end});
        for (d3.MoveFirst(); !d3.EOF_(); d3.MoveNext()) {
            const QString day = d3.Text(QStringLiteral("D_F1")).right(6);
            const int runs = Overspeed_Runs(d3.Text(QStringLiteral("D_F5")), cfg.B_Val4);
            Recordset trip = db.DB_RSet_D_D(
                QStringLiteral("SELECT * FROM D_D1 WHERE Mid(D_F1,5,4)=? AND RIGHT(D_F1,6) = ?"), {carNumber, day});
            if (trip.RecordCount() < 1)
                continue;
            const double deduction = Field_Number(trip, "D_F10") * cfg.B_Val6 + runs * cfg.B_Val10 +
                                     Field_Number(trip, "D_F11") * cfg.B_Val7 +
                                     Field_Number(trip, "D_F12") * cfg.B_Val8;
            // Without distance the factor is 0 here (CAL_AVG takes 1).
            const double km = Field_Number(trip, "D_F8") / 10;
            const double factor = km != 0 ? cfg.B_Val3 / km : 0;
            const double mark = std::max(0.0, std::round(cfg.B_Val2 - factor * deduction));
            out.sum += mark;
            ++out.count;
        }
        out.average = out.count > 0 ? out.sum / out.count : 0;

        Recordset list = db.DB_RSet_D_D(
            QStringLiteral("SELECT * FROM D_D1 WHERE D_F3=? And D_F4 >=? And D_F6 <=? Order By D_F1"),
            {driver, start, end});
        for (list.MoveFirst(); !list.EOF_(); list.MoveNext()) {
            out.list.push_back({list.Text(QStringLiteral("D_F4")), list.Text(QStringLiteral("D_F2")),
                                list.Text(QStringLiteral("D_F3")), Grouped(Field_Number(list, "D_F8") / 10),
                                Grouped(Field_Number(list, "D_F14")), Grouped(Field_Number(list, "D_F16")),
                                list.Text(QStringLiteral("D_F24")), list.Text(QStringLiteral("D_F25"))});
            out.columns.push_back({list.Text(QStringLiteral("D_F4")), Field_Number(list, "D_F16")});
        }
    });
    return out;
}

Avg_Days DB_Search_AvgDay(Cls_DB& db, const QString& start, const QString& end)
{
    Avg_Days out;
    Guarded(kErrSearch_AvgDay, [&] {
        // The average runs over D_F16, the second overspeed band, as it always did.
        Recordset days = db.DB_RSet_D_D(QStringLiteral("SELECT D_F4, Avg(D_F16) as D_AVG FROM D_D1 WHERE D_F4 >=? "
                                                       "And D_F6 <=? Group by D_F4 Order By D_F4"),
                                        {start, end});
        if (days.RecordCount() < 1)
            return;
        for (days.MoveFirst(); !days.EOF_(); days.MoveNext())
            out.columns.push_back({days.Text(QStringLiteral("D_F4")), Field_Number(days, "D_AVG")});
        out.days = int(out.columns.size());
        Recordset all = db.DB_RSet_D_D(
            QStringLiteral("SELECT Avg(D_F16) as D_AVG_SUM FROM D_D1 WHERE D_F4 >=? And D_F6 <=?"), {start, end});
        out.average = std::round(Field_Number(all, "D_AVG_SUM") * 100) / 100;
    });
    return out;
}

} // namespace vex
