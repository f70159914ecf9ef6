// Every second of a period from the day files: day, time, speed and engine
// byte in hexadecimal, the distance driven since the period began, and
// whether the engine ran ("idle", "장치작동") or not ("noidle", "비작동").
// CAL_SPEED_DIST fills the bat template, a sheet a day (a day of seconds
// is 86,400 rows, and only the sheet being filled is held in memory);
// CAL_SPEED_FILE writes the same fields as a text file.
#include "reports/Excel_Report.h"

#include "acquisition/Inbox_Names.h"
#include "analysis/New_Standards.h"
#include "core/Cls_Config.h"
#include "core/Messages.h"
#include "core/Mod_Main.h"
#include "platform/AppFolder.h"
#include "store/Cls_DB.h"
#include "store/DayFile.h"
#include "store/EventDetector.h"

#include <QDate>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>

namespace vex {

namespace {

using namespace excel_detail;

constexpr int16_t kErrSpeedDist = 1068;
constexpr int16_t kErrSpeedFile = 1069;
constexpr int kSecondsRow = 5;
constexpr int kHeadRows = 4;

struct Second {
    QString day;  // yyyy-MM-dd
    QString time; // HH:MM:SS
    int speed = 0, engine = 0;
    double km = 0;
};

// The days of the period that have a day file, each with the seconds the
// selection takes of it: from fromTime on the first day to toTime on the
// last, whole days between.
struct Day_Part {
    QString day;
    Day_File_Ref file;
    int first = 0, last = 86399;
};

std::vector<Day_Part> Days_Of(Cls_DB& db, const Excel_Selection& sel)
{
    std::vector<Day_Part> days;
    const QDate from = QDate::fromString(QStringLiteral("20") + sel.from, QStringLiteral("yyyyMMdd"));
    const QDate to = QDate::fromString(QStringLiteral("20") + sel.to, QStringLiteral("yyyyMMdd"));
    if (!from.isValid() || !to.isValid())
        return days;
    const QString packDir = G().Config ? G().Config->U_PackDir : QString();
    const auto seconds = [](const QString& hhmm) { return hhmm.left(2).toInt() * 3600 + hhmm.mid(2, 2).toInt() * 60; };
    for (QDate d = from; d <= to; d = d.addDays(1)) {
        Day_Part part;
        part.day = d.toString(QStringLiteral("yyMMdd"));
        part.file = Trip_Day_File(db, packDir, sel.car, sel.driver, part.day);
        if (!part.file.Found())
            continue;
        if (d == from)
            part.first = seconds(sel.fromTime);
        if (d == to)
            part.last = std::min(86399, seconds(sel.toTime) + 59);
        days.push_back(part);
    }
    return days;
}

// Walks the seconds, day by day; `day` is told before a day's first second.
// Progress by the hour ("시") and "완료" at the end.
template <class Day_Start, class Visit>
void Walk(Cls_DB& db, const Excel_Selection& sel, const std::vector<Day_Part>& days, Day_Start&& dayStart, Visit&& visit)
{
    if (sel.progress)
        sel.progress(0, QStringLiteral("DB processing..."));
    double km = 0;
    for (size_t i = 0; i < days.size(); ++i) {
        const Day_Part& part = days[i];
        const DayFile file = Read_Day_File(db, part.file);
        dayStart(i, part);
        Second s;
        s.day = Date_Dash(part.day);
        for (int t = part.first; t <= part.last; ++t) {
            if (sel.progress && (t % 3600 == 0 || t == part.first))
                sel.progress(int((i * 24 + size_t(t / 3600)) * 100 / (days.size() * 24)),
                             QStringLiteral("%1시").arg(t / 3600, 2, 10, QLatin1Char('0')));
            s.speed = file.speed[size_t(t)];
            s.engine = file.engine[size_t(t)];
            km += s.speed / 3600.0;
            s.km = km;
            s.time = QStringLiteral("%1:%2:%3")
                         .arg(t / 3600, 2, 10, QLatin1Char('0'))
                         .arg(t / 60 % 60, 2, 10, QLatin1Char('0'))
                         .arg(t % 60, 2, 10, QLatin1Char('0'));
            visit(s);
        }
    }
    if (sel.progress)
        sel.progress(100, QStringLiteral("완료"));
}

QString Running(const Second& s, bool english)
{
    if (english)
        return s.engine > 0 ? QStringLiteral("idle") : QStringLiteral("noidle");
    return s.engine > 0 ? QStringLiteral("장치작동") : QStringLiteral("비작동");
}

Excel_Result Speed_Sheet(Cls_DB& db, const QString& appDir, const Excel_Selection& sel, const QString& out)
{
    const std::vector<Day_Part> days = Days_Of(db, sel);
    if (days.empty())
        return No_Data();
    Xlsx_Book book;
    if (!Excel_Open(book, QStringLiteral("list"), Excel_Template_Path(appDir, QStringLiteral("bat.XLTX"))))
        return Missing_Template(false, kErrSpeedDist, book.Error());
    Put_Period(book, sel, LoadResString(632), sel.car + QStringLiteral(" / ") + Car_Name(db, sel.car));
    book.Set_Text(QStringLiteral("D3"), LoadResString(633));
    book.Set_Text(QStringLiteral("E3"), sel.driver + QStringLiteral(" / ") + Driver_Name(db, sel.driver));

    int row = kSecondsRow;
    bool failed = false;
    Walk(db, sel, days,
         [&](size_t i, const Day_Part& part) {
             if (i > 0 && !failed) {
                 failed = !book.Add_Sheet(Date_Dash(part.day), kHeadRows, kSecondsRow);
                 row = kSecondsRow;
             }
         },
         [&](const Second& s) {
             book.Copy_Row_Format(kSecondsRow, row);
             book.Set_Text(1, row, s.day);
             book.Set_Text(2, row, s.time);
             book.Set_Text(3, row, Dec_Hex1(s.speed));
             book.Set_Text(4, row, Dec_Hex1(s.engine));
             book.Set_Number(5, row, std::round(s.km * 10) / 10);
             book.Set_Text(6, row, Running(s, true));
             book.Set_Text(7, row, Running(s, false));
             ++row;
         });
    if (failed)
        return Failed(kErrSpeedDist, book.Error());
    const QString name = QStringLiteral("bat_") + sel.car + QLatin1Char('_') + sel.driver;
    return Save(book, out.isEmpty() ? Excel_Report_Path(appDir, name, sel) : out, kErrSpeedDist);
}

Excel_Result Speed_Text(Cls_DB& db, const QString& appDir, const Excel_Selection& sel, const QString& out)
{
    const std::vector<Day_Part> days = Days_Of(db, sel);
    if (days.empty())
        return No_Data();
    const QString path = out.isEmpty()
        ? App_Path(appDir, QStringLiteral("\\new\\") + Speed_File_Name(sel.car, sel.driver, sel.from, sel.to))
        : out;
    QDir().mkpath(QFileInfo(path).absolutePath());
    // Written whole or not at all.
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly))
        return Failed(kErrSpeedFile, QStringLiteral("cannot write %1").arg(path));
    QByteArray line;
    Walk(db, sel, days, [](size_t, const Day_Part&) {},
         [&](const Second& s) {
             line = (QStringList{s.day, s.time, Dec_Hex1(s.speed), Dec_Hex1(s.engine), QString::number(s.km, 'f', 1),
                                 Running(s, true), Running(s, false)}.join(QLatin1Char('\t'))
                     + QStringLiteral("\r\n")).toUtf8();
             file.write(line);
         });
    if (!file.commit())
        return Failed(kErrSpeedFile, QStringLiteral("cannot write %1").arg(path));
    Excel_Result r;
    r.outcome = Excel_Result::Written;
    r.path = path;
    return r;
}

} // namespace

Excel_Result CAL_SPEED_DIST(Cls_DB& db, const QString& appDir, const Excel_Selection& sel, const QString& out)
{
    return Trapped(kErrSpeedDist, [&] { return Speed_Sheet(db, appDir, sel, out); });
}

Excel_Result CAL_SPEED_FILE(Cls_DB& db, const QString& appDir, const Excel_Selection& sel, const QString& out)
{
    return Trapped(kErrSpeedFile, [&] { return Speed_Text(db, appDir, sel, out); });
}

} // namespace vex
