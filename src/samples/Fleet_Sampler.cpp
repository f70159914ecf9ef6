#include "samples/Fleet_Sampler.h"

#include "core/Cls_Config.h"
#include "core/Err_Proc.h"
#include "core/Mod_Main.h"
#include "platform/AppFolder.h"
#include "platform/FileSystem.h"
#include "samples/UsbSampler.h"
#include "store/Cls_DB.h"
#include "store/DayFile.h"

#include <QDir>

namespace vex {

namespace {

constexpr int kWeek = 7;

// The same day of the same car is the same driving, whoever drives it.
uint64_t Day_Seed(int car, const QDate& day)
{
    return uint64_t(car + 1) * 0x9E3779B97F4A7C15ull ^ uint64_t(day.toJulianDay());
}

void Register(Cls_DB& db, const Fleet_Request& r)
{
    Cls_DB::Transaction all(db);
    for (int c = 0; c < r.cars; ++c) {
        db.Register_Car(Fleet_Car(c), G().Config ? G().Config->B_Val3 : int16_t(80), QStringLiteral("250"));
        Recordset car = Row_Or_New(db, QStringLiteral("S_D1"), Fleet_Car(c));
        car.Set(QStringLiteral("D_F3"), QStringLiteral("서울%1가%2").arg(10 + c % 90).arg(1000 + c, 4, 10, QLatin1Char('0')));
        car.Update();
        for (int k = 0; k < r.driversPerCar; ++k) {
            Recordset driver = Row_Or_New(db, QStringLiteral("S_D2"), Fleet_Driver(c, k));
            driver.Set(QStringLiteral("D_F2"), QStringLiteral("운전자 %1-%2").arg(c + 1).arg(k + 1));
            driver.Update();
        }
    }
    all.Commit();
}

} // namespace

QString Fleet_Car(int c)
{
    return QStringLiteral("A%1").arg(c, 5, 16, QLatin1Char('0')).toUpper();
}

QString Fleet_Driver(int c, int k)
{
    return QStringLiteral("%1%2").arg(c + 1, 4, 10, QLatin1Char('0')).arg(k + 1, 2, 10, QLatin1Char('0'));
}

Fleet_Result Fill_Fleet(Cls_DB& db, const Fleet_Request& r, const std::function<void(int done, int all)>& progress,
                        const std::function<void(const Reception_Outcome&)>& received)
{
    Fleet_Result result;
    if (r.cars < 1 || r.days < 1 || r.driversPerCar < 1 || r.driversPerCar > 16 || !r.first.isValid()) {
        result.error = QStringLiteral("a fleet needs at least one car, day and driver, at most 16 drivers a car");
        return result;
    }
    if (!Guarded(kErrFleet, [&] { Register(db, r); })) {
        result.error = Err_Last();
        return result;
    }
    const QString inbox = App_Path(G().App_Dir, QStringLiteral("\\new"));
    QDir().mkpath(inbox);
    const int all = r.cars * r.days;
    int done = 0;
    for (int week = 0; week * kWeek < r.days; ++week) {
        for (int c = 0; c < r.cars; ++c) {
            const QString driver = Fleet_Driver(c, (week + c) % r.driversPerCar);
            for (int d = week * kWeek; d < std::min(r.days, (week + 1) * kWeek); ++d) {
                const QDate day = r.first.addDays(d);
                const auto ntd = Make_Sample_Ntd(Fleet_Car(c), driver, day, Day_Seed(c, day), r.cyclesDir,
                                                 &result.error);
                if (!ntd)
                    return result;
                const QString name = Fleet_Car(c) + driver + day.toString(QStringLiteral("yyMMdd")) + QStringLiteral(".NTD");
                QString why;
                if (!Write_File_Atomic(QDir(inbox).filePath(name), *ntd, &why)) {
                    result.error = why;
                    return result;
                }
            }
        }
        Reception_Outcome outcome;
        int failures = 0;
        {
            // The week's files in one commit where a reception commits each
            // file: the rows are the same, and a fleet cut short is made again.
            Cls_DB::Batch week(db);
            Run_Inbox(db, outcome);
            failures = db.Engine_Failures();
        }
        if (db.Engine_Failures() != failures) {
            result.error = db.Last_Engine_Failure();
            return result;
        }
        result.trips += int(outcome.stored.size());
        result.kept += int(outcome.kept.size());
        done = std::min(all, (week + 1) * kWeek * r.cars);
        if (received)
            received(outcome);
        if (progress)
            progress(done, all);
    }
    return result;
}

} // namespace vex
