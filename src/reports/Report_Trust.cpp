#include "reports/Report_Trust.h"

#include "core/Err_Proc.h"
#include "core/Messages.h"
#include "registers/Register_Lookup.h"
#include "reports/Report_Page.h"
#include "reports/Excel_Grid.h"
#include "reports/Report_Printer.h"

namespace vex {

namespace {

// Lines down the page, a new sheet when the next one would not fit.
void Lines(Report_Page& page, float& y, const QStringList& lines)
{
    const float pitch = page.Pitch() * 1.3f;
    for (const QString& line : lines) {
        if (y + pitch > page.H()) {
            page.New_Page();
            y = 0;
        }
        page.Text(0, y, line);
        y += pitch;
    }
}

} // namespace

QStringList Driver_Month_Cells(const Driver_Month& m, const QString& name)
{
    return {m.month, m.driver, name, QString::number(m.trips), QString::number(m.km, 'f', 1),
            QString::number(m.averageMark, 'f', 1), QString::number(m.eventsPer100Km, 'f', 2),
            QString::number(m.overspeedMinutes, 'f', 0), QStringLiteral("%1/%2").arg(m.rank).arg(m.drivers),
            m.change ? QString::asprintf("%+.1f", *m.change) : QStringLiteral("-")};
}

QStringList Driver_Month_Heads()
{
    return {Lang_Text(QStringLiteral("월"), QStringLiteral("month")), Lang_Text(QStringLiteral("운전자"), QStringLiteral("driver")),
            Lang_Text(QStringLiteral("이름"), QStringLiteral("name")), Lang_Text(QStringLiteral("운행"), QStringLiteral("trips")),
            QStringLiteral("km"), Lang_Text(QStringLiteral("평균 점수"), QStringLiteral("avg mark")),
            Lang_Text(QStringLiteral("100km당 이벤트"), QStringLiteral("events/100 km")),
            Lang_Text(QStringLiteral("과속 분"), QStringLiteral("over min")), Lang_Text(QStringLiteral("순위"), QStringLiteral("rank")),
            Lang_Text(QStringLiteral("변화"), QStringLiteral("change"))};
}

Excel_Result Excel_Driver_Trend(Cls_DB& db, const QString& appDir, const std::vector<Driver_Month>& rows,
                                const QString& fromMonth, const QString& toMonth, const QString& out)
{
    Excel_Grid grid;
    grid.templ = QStringLiteral("carcondition.xltx");
    grid.report = QStringLiteral("drivertrend");
    grid.title = Lang_Text(QStringLiteral("운전자별 월간 추이"), QStringLiteral("Drivers month by month"));
    grid.periodLabel = Lang_Text(QStringLiteral("기간"), QStringLiteral("months"));
    grid.period = fromMonth + QLatin1Char('-') + toMonth;
    grid.heads = Driver_Month_Heads();
    for (const Driver_Month& m : rows)
        grid.rows.push_back(Driver_Month_Cells(m, Driver_Name_Of(db, m.driver)));
    return Excel_Grid_Export(appDir, grid, out);
}

bool Report_Mark_Explanation(Report_Printer& printer, Cls_DB& db, const Trip_Explanation& e)
{
    bool ok = false;
    Guarded(kErrReportExplanation, [&] {
        const QString title = Lang_Text(QStringLiteral("운행 점수 산출 내역"), QStringLiteral("How the mark was counted"));
        Report_Page page(printer, title, false);
        float y = page.Title(title);
        page.Print_Date(y);
        page.Font(10);
        y += page.Pitch() * 2;
        QStringList lines = Explanation_Lines(e);
        lines.insert(1, Lang_Text(QStringLiteral("  운전자 %1, 관리 번호 %2"), QStringLiteral("  driver %1, management number %2"))
                            .arg(Driver_Name_Of(db, e.driver), Management_Number(db, e.car)));
        Lines(page, y, lines);
        ok = page.Finish();
    });
    return ok;
}

bool Report_Driver_Trend(Report_Printer& printer, Cls_DB& db, const std::vector<Driver_Month>& rows,
                         const QString& fromMonth, const QString& toMonth)
{
    bool ok = false;
    Guarded(kErrReportTrend, [&] {
        const QString title = Lang_Text(QStringLiteral("운전자별 월간 추이"), QStringLiteral("Drivers month by month"));
        Report_Page page(printer, title, true);
        float y = page.Title(title);
        page.Print_Date(y);
        page.Font(9);
        y += page.Pitch() * 1.5f;
        page.Text(0, y, QStringLiteral("20%1.%2 - 20%3.%4")
                            .arg(fromMonth.left(2), fromMonth.mid(2), toMonth.left(2), toMonth.mid(2)));
        y += page.Pitch() * 1.5f;
        const auto edges = Edges(0, page.W(), {0, 0.07f, 0.16f, 0.32f, 0.39f, 0.49f, 0.60f, 0.73f, 0.84f, 0.92f, 1});
        const float h = page.Pitch() * 1.4f;
        const QStringList head = Driver_Month_Heads();
        page.Row(y, h, edges, head);
        y += h;
        for (const Driver_Month& m : rows) {
            if (y + h > page.H()) {
                page.New_Page();
                y = 0;
                page.Row(y, h, edges, head);
                y += h;
            }
            page.Row(y, h, edges, Driver_Month_Cells(m, Driver_Name_Of(db, m.driver)));
            y += h;
        }
        ok = page.Finish();
    });
    return ok;
}

} // namespace vex
