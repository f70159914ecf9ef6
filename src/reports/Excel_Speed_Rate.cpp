// The speed classes of a driver's period (speedrate): every driven minute
// of the minute speed series counted into its class of 10 km/h (B for 0 to
// 9 up to K for 90 to 99, L from 100 on), and the minute's distance added
// to the class on the row below. The template's chart is drawn over these
// two rows, so filling them fills the chart.
#include "reports/Excel_Report.h"

#include "analysis/Operation_Graph.h"
#include "core/Messages.h"
#include "store/Cls_DB.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace vex {

namespace {

using namespace excel_detail;

constexpr int kClasses = 11;
constexpr int kMinutesRow = 5, kKmRow = 6;

Excel_Result Speed_Rate(Cls_DB& db, const QString& appDir, const Excel_Selection& sel, const QString& out)
{
    const bool one = !sel.driver.isEmpty() && sel.driver != QLatin1String("ALL");
    // Each trip's minute speeds with its minute distances (none without a
    // D_D7 row), in one statement instead of one a trip. The trips are
    // taken in the order of their keys, put in order here: the engine would
    // sort the minute series along with them.
    QString sql = QStringLiteral("SELECT D_D3.D_F1, D_D3.D_F2, D_D7.D_F2 AS D_KM FROM D_D3 "
                                 "LEFT JOIN D_D7 ON D_D7.D_F1 = D_D3.D_F1 "
                                 "WHERE (RIGHT(D_D3.D_F1,6)) >=? AND (RIGHT(D_D3.D_F1,6)) <= ?");
    QVariantList values{sel.from, sel.to};
    if (one) {
        sql += QStringLiteral(" AND  (MID(D_D3.D_F1,7,6)) = ?");
        values << sel.driver;
    }
    Recordset rs = db.DB_RSet_D_D(sql, values);
    if (rs.RecordCount() < 1)
        return No_Data();
    struct Trip {
        QString key, speed, km;
    };
    std::vector<Trip> trips;
    for (rs.MoveFirst(); !rs.EOF_(); rs.MoveNext())
        trips.push_back({rs.Text(QStringLiteral("D_F1")), rs.Text(QStringLiteral("D_F2")), rs.Text(QStringLiteral("D_KM"))});
    std::sort(trips.begin(), trips.end(), [](const Trip& a, const Trip& b) { return a.key < b.key; });
    Xlsx_Book book;
    if (!Excel_Open(book, QStringLiteral("list"), Excel_Template_Path(appDir, QStringLiteral("speedrate.xltx"))))
        return Missing_Template(true, kErrUnlabelled, book.Error());

    std::array<int, kClasses> minutes{};
    std::array<double, kClasses> km{};
    int done = 0;
    for (const Trip& trip : trips) {
        Tell_Rows(sel, done++, int(trips.size()));
        std::array<int16_t, 1441> speed{};
        std::array<float, 1441> cumulative{};
        Decode_Minute_Speed(trip.speed, speed, kErrUnlabelled);
        Decode_Minute_Distance(trip.km, cumulative, kErrUnlabelled);
        // Point m of the arrays is the end of minute m - 1.
        for (int m = 1; m <= 1440; ++m) {
            if (speed[m] <= 0)
                continue; // standing, or no recording
            const int c = std::min(kClasses - 1, speed[m] / 10);
            ++minutes[c];
            km[c] += cumulative[m] - cumulative[m - 1];
        }
    }

    Put_Period(book, sel, LoadResString(633),
               one ? sel.driver + QStringLiteral(" / ") + Driver_Name(db, sel.driver) : QStringLiteral("ALL"));
    for (int c = 0; c < kClasses; ++c) {
        book.Set_Number(2 + c, kMinutesRow, minutes[c]);
        book.Set_Number(2 + c, kKmRow, std::round(km[c] * 10) / 10);
    }
    const QString name = one ? QStringLiteral("speedrate_") + sel.driver : QStringLiteral("speedrate");
    return Save(book, out.isEmpty() ? Excel_Report_Path(appDir, name, sel) : out, kErrUnlabelled);
}

} // namespace

Excel_Result Excel_Speed_Rate(Cls_DB& db, const QString& appDir, const Excel_Selection& sel, const QString& out)
{
    return Trapped(kErrUnlabelled, [&] { return Speed_Rate(db, appDir, sel, out); });
}

} // namespace vex
