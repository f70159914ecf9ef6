// The totals of a period, a row a driver (drivertotal1) or a car
// (cartotal): days worked, driving time, distance, the event counts, the
// idle time, the mark and the last trip; then the sums ("집계") and the
// daily average ("일평균") over the days worked.
#include "reports/Excel_Report.h"

#include "analysis/Status_Grids.h"
#include "core/Messages.h"
#include "core/Mod_Main.h"
#include "core/VbText.h"
#include "store/Cls_DB.h"

#include <QDate>
#include <cmath>
#include <set>

namespace vex {

namespace {

using namespace excel_detail;

constexpr int kTotalsRow = 5;

// The counted columns in the order both sheets show them from F.
constexpr const char* kEvents[] = {"D_F11", "D_F9", "D_F10", "D_F13", "D_F12"};
constexpr const char* kBands[] = {"D_F15", "D_F16", "D_F17"};

struct Totals {
    QString code;
    std::set<QString> days;
    int minutes = 0;
    double km = 0;
    double events[5] = {};
    double bands[3] = {};
    double marks = 0;
    int trips = 0;
    int idleSeconds = 0;
    QString lastDay, lastTime; // the latest end of a trip
};

// Minutes from the trip's start (D_F4, D_F5) to its end (D_F6, D_F7).
int Trip_Minutes(const Recordset& rs)
{
    const QDate start = QDate::fromString(QStringLiteral("20") + rs.Text(QStringLiteral("D_F4")), QStringLiteral("yyyyMMdd"));
    QDate end = QDate::fromString(QStringLiteral("20") + rs.Text(QStringLiteral("D_F6")), QStringLiteral("yyyyMMdd"));
    if (!end.isValid())
        end = start;
    const auto minute = [&](const char* f) {
        const QString t = rs.Text(QLatin1String(f));
        return t.left(2).toInt() * 60 + t.mid(2, 2).toInt();
    };
    const qint64 days = start.isValid() ? start.daysTo(end) : 0;
    return std::max<int>(0, int(days * 1440 + minute("D_F7") - minute("D_F5")));
}

void Add(Totals& t, const Recordset& rs)
{
    t.days.insert(rs.Text(QStringLiteral("D_F4")));
    t.minutes += Trip_Minutes(rs);
    t.km += Val(rs.Text(QStringLiteral("D_F8"))) / 10.0;
    for (int i = 0; i < 5; ++i)
        t.events[i] += Val(rs.Text(QLatin1String(kEvents[i])));
    for (int i = 0; i < 3; ++i)
        t.bands[i] += Val(rs.Text(QLatin1String(kBands[i])));
    t.marks += Val(rs.Text(QStringLiteral("D_F14")));
    ++t.trips;
    QString endDay = rs.Text(QStringLiteral("D_F6"));
    if (endDay.isEmpty())
        endDay = rs.Text(QStringLiteral("D_F4"));
    const QString end = endDay + rs.Text(QStringLiteral("D_F7"));
    if (end > t.lastDay + t.lastTime) {
        t.lastDay = endDay;
        t.lastTime = rs.Text(QStringLiteral("D_F7"));
    }
}

// The figures of a row into the sums (the days worked are counted apart).
void Add_Up(Totals& sum, const Totals& t)
{
    sum.minutes += t.minutes;
    sum.km += t.km;
    for (int i = 0; i < 5; ++i)
        sum.events[i] += t.events[i];
    for (int i = 0; i < 3; ++i)
        sum.bands[i] += t.bands[i];
    sum.marks += t.marks;
    sum.trips += t.trips;
    sum.idleSeconds += t.idleSeconds;
}

QString Hours(double minutes)
{
    const int m = int(minutes + 0.5);
    return QStringLiteral("%1:%2").arg(m / 60, 2, 10, QLatin1Char('0')).arg(m % 60, 2, 10, QLatin1Char('0'));
}

struct Layout {
    bool byDriver;
    const char* templ;
    const char* report;
    int title; // message id
};

// One row: the days worked and the figures from column C, divided by `per`
// (1, or the days worked for the daily average, which shows no days); the
// bands only on the driver's sheet.
void Put_Figures(Xlsx_Book& book, const Layout& k, int row, const Totals& t, int days, double per, bool withLast)
{
    int col = 3;
    if (per == 1)
        book.Set_Number(col, row, days);
    ++col;
    book.Set_Text(col++, row, Hours(t.minutes / per));
    book.Set_Number(col++, row, t.km / per);
    for (double e : t.events)
        book.Set_Number(col++, row, per == 1 ? e : std::round(e / per * 10) / 10);
    book.Set_Text(col++, row, Clock_Text(int(t.idleSeconds / per + 0.5)));
    if (k.byDriver)
        for (double b : t.bands)
            book.Set_Number(col++, row, per == 1 ? b : std::round(b / per * 10) / 10);
    if (t.trips > 0)
        book.Set_Number(col, row, std::round(t.marks / t.trips * 10) / 10);
    ++col;
    if (withLast) {
        book.Set_Text(col++, row, Date_Dash(t.lastDay));
        book.Set_Text(col, row, Time4_To_Text(t.lastTime));
    }
}

Excel_Result Totals_Report(const Layout& k, Cls_DB& db, const QString& appDir, const Excel_Selection& sel,
                           const QString& out)
{
    const QString code = k.byDriver ? sel.driver : sel.car;
    const bool one = !code.isEmpty() && code != QLatin1String("ALL");
    QString sql = QStringLiteral("SELECT * FROM D_D1 WHERE (RIGHT(D_F1,6)) >=? AND (RIGHT(D_F1,6)) <= ?");
    QVariantList values{sel.from, sel.to};
    if (one) {
        sql += k.byDriver ? QStringLiteral(" AND  (MID(D_F1,7,6)) = ?") : QStringLiteral(" AND  (LEFT(D_F1,6)) = ?");
        values << code;
    }
    sql += k.byDriver ? QStringLiteral(" ORDER BY D_F3, D_F4") : QStringLiteral(" ORDER BY D_F2");
    Recordset rs = db.DB_RSet_D_D(sql, values);
    if (rs.RecordCount() < 1)
        return No_Data();
    Xlsx_Book book;
    if (!Excel_Open(book, QStringLiteral("list"), Excel_Template_Path(appDir, QLatin1String(k.templ))))
        return Missing_Template(true, kErrUnlabelled, book.Error());

    std::vector<Totals> rows;
    const QString codeField = k.byDriver ? QStringLiteral("D_F3") : QStringLiteral("D_F2");
    int done = 0;
    for (rs.MoveFirst(); !rs.EOF_(); rs.MoveNext()) {
        Tell_Rows(sel, done++, rs.RecordCount());
        if (rows.empty() || rows.back().code != rs.Text(codeField)) {
            rows.emplace_back();
            rows.back().code = rs.Text(codeField);
        }
        Add(rows.back(), rs);
    }

    book.Set_Text(QStringLiteral("A1"), LoadResString(k.title));
    if (one)
        Put_Period(book, sel, LoadResString(k.byDriver ? 633 : 632),
                   code + QStringLiteral(" / ") + (k.byDriver ? Driver_Name(db, code) : Car_Name(db, code)));
    else
        Put_Period(book, sel, {}, {});
    book.Set_Text(QStringLiteral("C4"), LoadResString(1286));
    if (!k.byDriver)
        book.Set_Text(QStringLiteral("N4"), LoadResString(1282));
    if (k.byDriver) {
        const QStringList bands = Overspeed_Band_Heads();
        for (int i = 0; i < 3; ++i)
            book.Set_Text(12 + i, 4, bands[i]);
    }

    // The sums; the days worked are those of each row added.
    Totals sum;
    int workDays = 0;
    int row = kTotalsRow;
    for (Totals& t : rows) {
        if (k.byDriver) {
            t.idleSeconds = Idle_Seconds(db,
                QStringLiteral("SELECT * FROM D_DI WHERE (MID(D_F1,7,6)) = ? AND (RIGHT(D_F1,6)) >= ? "
                               "AND (RIGHT(D_F1,6)) <= ?"), {t.code, sel.from, sel.to});
        } else {
            // The car's idle lists from the start on, as this total has
            // always been taken: a later day's idle counts as well.
            t.idleSeconds = Idle_Seconds(db,
                QStringLiteral("SELECT *  FROM D_DI where (MID(D_F1,1,6)) = ? and (RIGHT(D_F1,6)) >= ?"),
                {t.code, sel.from});
        }
        book.Copy_Row_Format(kTotalsRow, row);
        book.Set_Text(1, row, t.code);
        book.Set_Text(2, row, Register_Name(db, t.code, k.byDriver));
        Put_Figures(book, k, row, t, int(t.days.size()), 1, true);
        workDays += int(t.days.size());
        Add_Up(sum, t);
        ++row;
    }
    book.Copy_Row_Format(kTotalsRow, row);
    book.Set_Text(1, row, LoadResString(1043));
    Put_Figures(book, k, row, sum, workDays, 1, false);
    ++row;
    book.Copy_Row_Format(kTotalsRow, row);
    book.Set_Text(1, row, QStringLiteral("일평균"));
    Put_Figures(book, k, row, sum, workDays, std::max(1, workDays), false);

    QString name = QLatin1String(k.report);
    if (one)
        name += QLatin1Char('_') + code;
    return Save(book, out.isEmpty() ? Excel_Report_Path(appDir, name, sel) : out, kErrUnlabelled);
}

const Layout kDriverTotal{true, "drivertotal1.xltx", "drivertotal1", 717};
const Layout kCarTotal{false, "cartotal.xltx", "cartotal", 720};

} // namespace

Excel_Result Excel_Driver_Total(Cls_DB& db, const QString& appDir, const Excel_Selection& sel, const QString& out)
{
    return Trapped(kErrUnlabelled, [&] { return Totals_Report(kDriverTotal, db, appDir, sel, out); });
}

Excel_Result Excel_Car_Total(Cls_DB& db, const QString& appDir, const Excel_Selection& sel, const QString& out)
{
    return Trapped(kErrUnlabelled, [&] { return Totals_Report(kCarTotal, db, appDir, sel, out); });
}

} // namespace vex
