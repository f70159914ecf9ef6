#include "forms/logic/View_Logic.h"

#include "analysis/Graph_Geometry.h"
#include "analysis/Operation_Graph.h"
#include "core/Err_Proc.h"
#include "core/Mod_Main.h"
#include "core/VbText.h"
#include "registers/Register_Lookup.h"
#include "store/Cls_DB.h"

#include <QDate>
#include <cmath>

namespace vex::forms {

Report_Selection& Selection()
{
    static Report_Selection selection;
    return selection;
}

float Cursor_Track::Snap(float x) const
{
    if (step <= 0)
        return left;
    return std::floor((x - left) / step) * step + left;
}

float Cursor_Track::Left(float x) const
{
    x = Snap(x);
    return x - step >= left ? x - step : right - step;
}

float Cursor_Track::Right(float x) const
{
    x = Snap(x);
    return x + step <= right ? x + step : left;
}

int Cursor_Track::Steps(float x) const
{
    return step <= 0 ? 0 : int(std::floor(std::fabs(x - left) / step));
}

namespace {

Cursor_Track Track(const Operation_Graph& og, int perSpan)
{
    const Graph_Geometry& g = Graph();
    const int factor = og.Zoom_Type > 0 ? perSpan / og.Zoom_Type : 0;
    return {g.Graph_Left, g.Graph_Right, float(factor) * g.Graph_XStep};
}

QString Two(int v)
{
    return QString::number(v).rightJustified(2, QLatin1Char('0'));
}

QString Hhmmss_Text(const QString& t)
{
    return t.mid(0, 2) + QLatin1Char(':') + t.mid(2, 2) + QLatin1Char(':') + t.mid(4, 2);
}

int Seconds_Of(const QString& hhmmss)
{
    return int(Val(hhmmss.mid(0, 2))) * 3600 + int(Val(hhmmss.mid(2, 2))) * 60 + int(Val(hhmmss.mid(4, 2)));
}

int Hex_Value(const QString& hex)
{
    bool ok = false;
    const int v = hex.toInt(&ok, 16);
    return ok ? v : 0;
}

} // namespace

Cursor_Track Day_Track(const Operation_Graph& og)
{
    return Track(og, 24);
}

Cursor_Track Hour_Track(const Operation_Graph& og)
{
    return Track(og, 60);
}

int Minute_At(const Operation_Graph& og, float x)
{
    return Day_Track(og).Steps(x) + og.Zoom_Time * 60;
}

int Second_At(const Operation_Graph& og, float x)
{
    return Hour_Track(og).Steps(x) + og.Zoom_Time * 60;
}

QString Step_Day(const QString& day, int days)
{
    const QString digits = day.size() == 6 ? day : day.mid(2, 6);
    const QDate d = QDate::fromString(QStringLiteral("20") + digits, QStringLiteral("yyyyMMdd"));
    if (!d.isValid())
        return day;
    const QDate n = d.addDays(days);
    return Two(n.year() % 100) + Two(n.month()) + Two(n.day());
}

QString Driver_Name(Cls_DB& db, const QString& driver)
{
    QString name = QStringLiteral("-");
    Guarded(1074, [&] { name = Driver_Name_Of(db, driver); });
    return name;
}

std::vector<Event_Row> Event_List(Cls_DB& db, const QString& car, const QString& driver, const QString& day)
{
    struct Kind {
        const char* title;
        const char* table;
        int width;
    };
    static const Kind kinds[] = {{"급제동", "D_D2", 10},   {"급가속", "D_D4", 10}, {"장기과속", "D_D6", 18},
                                 {"IDLE", "D_DI", 18}, {"과속", "D_D9", 6}};
    std::vector<Event_Row> rows;
    Guarded(1074, [&] {
        for (const Kind& k : kinds) {
            const QString title = QString::fromUtf8(k.title);
            rows.push_back({title, -1, title});
            Recordset rs = db.DB_RSet_D_D(QStringLiteral("SELECT * FROM ") + QLatin1String(k.table) +
                                              QStringLiteral(" WHERE (RIGHT(D_F1,6)) =?  AND  (LEFT(D_F1,6)) =? AND  "
                                                             "(MID(D_F1,7,6)) =? ORDER BY D_F1"),
                                          {day, car, driver});
            for (rs.MoveFirst(); !rs.EOF_(); rs.MoveNext()) {
                const QString list = rs.Text(QStringLiteral("D_F2"));
                for (int i = 0; i + k.width <= list.size(); i += k.width) {
                    const QString item = list.mid(i, k.width);
                    if (item.left(6) == QLatin1String("000000"))
                        break;
                    Event_Row row{QString(), 0, title};
                    if (k.width == 10) {
                        row.text = Hhmmss_Text(item) + QStringLiteral("  속도 ") +
                                   QString::number(Hex_Value(item.mid(6, 2))) + QStringLiteral("km/h => ") +
                                   QString::number(Hex_Value(item.mid(8, 2))) + QStringLiteral(" km/h");
                        row.second = Seconds_Of(item);
                    } else if (k.width == 18) {
                        row.text = Hhmmss_Text(item) + QStringLiteral(" ~  ") + Hhmmss_Text(item.mid(6)) +
                                   QStringLiteral("  지속시간 : ") + Hhmmss_Text(item.mid(12));
                        row.second = Seconds_Of(item);
                    } else { // an overspeed minute: HHmm and its speed
                        row.text = item.left(2) + QLatin1Char(':') + item.mid(2, 2) + QStringLiteral("  ") +
                                   QString::number(Hex_Value(item.mid(4, 2))) + QStringLiteral(" km/h");
                        row.second = Seconds_Of(item.left(4) + QStringLiteral("00"));
                    }
                    rows.push_back(row);
                }
            }
        }
    });
    return rows;
}

} // namespace vex::forms
