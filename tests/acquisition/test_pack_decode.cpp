// Decoding of filed pack days and of the system page, field by field.
#include "acquisition/Cls_IO.h"
#include "acquisition/PackLayout.h"
#include "acquisition/VexFiles.h"
#include "core/Cls_Config.h"
#include "core/Err_Proc.h"
#include "core/Mod_Main.h"
#include "store/Cls_DB.h"
#include "support/AppSession.h"

#include <QFile>
#include <gtest/gtest.h>

using namespace vex;

namespace {

// A plausible day: 08:00 to 08:59 at 60 km/h (hex "3C"), 1.0 km a minute.
struct Day_Pages {
    QString page = QString(kPageChars, QLatin1Char('0'));
    QString distance = QString(kPageChars, QLatin1Char('0'));
    QString third = QString(kPageChars, QLatin1Char('0'));

    Day_Pages()
    {
        Put_Field(page, DayPage::CheckPack, "AA");
        Put_Field(page, DayPage::CheckPack1, "AA");
        Put_Field(page, DayPage::StartDay, "240305");
        Put_Field(page, DayPage::StartTime, "0800");
        Put_Field(page, DayPage::EndDay, "240305");
        Put_Field(page, DayPage::EndTime, "0859");
        Put_Field(page, DayPage::Distance, "000600");
        Put_Field(page, DayPage::Acceleration, "0002");
        Put_Field(page, DayPage::Brack, "01");
        Put_Field(page, DayPage::Brack_Data, QString("0812003C20").leftJustified(100, '0'));
        QString speed(2880, '0'), dist(2880, '0');
        for (int m = 480; m < 540; ++m) {
            speed.replace(2 * m, 2, "3C");
            dist.replace(2 * m, 2, "10");
        }
        Put_Field(page, DayPage::Sec_Data, speed);
        Put_Field(distance, DistPage::StartDay, "240305");
        Put_Field(distance, DistPage::Sec_Data, dist);
    }
    void Set_Speed(int minute, const QString& cell) { page.replace(DayPage::Sec_Data.column - 1 + 2 * minute, 2, cell); }
    void Set_Distance(int minute, const QString& cell)
    {
        distance.replace(DistPage::Sec_Data.column - 1 + 2 * minute, 2, cell);
    }
    QString File(const test::TempApp& app, const QString& car = "0001") const
    {
        const QString path = app.Path("new/" + car + "0002240305.Vex");
        QFile::remove(path);
        const ReadLineStamp stamp{car, "0002", "012345"};
        Append_Read_Line(path, page, ReadLine::Day, stamp);
        Append_Read_Line(path, distance, ReadLine::Distance, stamp);
        Append_Read_Line(path, third, ReadLine::Third, stamp);
        return path;
    }
};

QString Stored(const QString& table, const QString& field, const QString& key = "000001000002240305")
{
    Recordset rs = G().DB->DB_RSet_D_D("SELECT * FROM " + table + " WHERE D_F1=?", {key});
    return rs.RecordCount() < 1 ? QString("<none>") : rs.Text(field);
}

} // namespace

TEST(PackDecode, AGoodDayIsStoredOnceWithItsSeriesAndRegistersItsCarAndDriver)
{
    test::AppSession app;
    Day_Pages day;
    Cls_IO& io = *G().IO;
    ASSERT_EQ(io.Pack_File_Read1(*G().DB, day.File(app)), 0) << Err_Last().toStdString();
    ASSERT_EQ(io.Pack_File_Read1(*G().DB, day.File(app)), 0);

    EXPECT_EQ(Stored("D_D1", "D_F5"), "0800");
    EXPECT_EQ(Stored("D_D1", "D_F7"), "0859");
    EXPECT_EQ(Stored("D_D1", "D_F8").toDouble(), 600);
    EXPECT_EQ(Stored("D_D1", "D_F10").toDouble(), 1);
    EXPECT_EQ(G().DB->DB_RSet_D_D("SELECT * FROM D_D1").RecordCount(), 1);
    EXPECT_EQ(Stored("D_D3", "D_F2").size(), 2880);
    EXPECT_EQ(Stored("D_D3", "D_F2").mid(960, 2), "3C");
    EXPECT_EQ(Stored("D_D7", "D_F2").mid(960, 2), "10");
    EXPECT_EQ(Stored("S_D1", "D_F5", "000001"), "4.25");
    EXPECT_EQ(Stored("S_D2", "D_F2", "000002"), "000002");
    EXPECT_EQ(io.Car_Code, "000001");
}

TEST(PackDecode, TheCarsLimitIsLookedUpUnderThePacksCodeOfFour)
{
    test::AppSession app;
    Cls_IO& io = *G().IO;
    Day_Pages day; // an hour at 60 km/h
    ASSERT_EQ(io.Pack_File_Read1(*G().DB, day.File(app)), 0) << Err_Last().toStdString();
    EXPECT_EQ(io.Decoded.longOverspeeds, 0);

    // The car registered itself as "000001": its own limit isn't seen, the
    // day still counts against 80.
    G().DB->Execute("UPDATE S_D1 SET D_F10=? WHERE D_F1=?", {50, "000001"});
    ASSERT_EQ(io.Pack_File_Read1(*G().DB, day.File(app)), 0);
    EXPECT_EQ(io.Decoded.longOverspeeds, 0);

    // A row under the code of four is: 59 pairs of minutes above 50 km/h.
    G().DB->Execute("INSERT INTO S_D1 (D_F1, D_F10) VALUES (?, ?)", {"0001", 50});
    ASSERT_EQ(io.Pack_File_Read1(*G().DB, day.File(app)), 0);
    EXPECT_EQ(io.Decoded.longOverspeeds, 59);
}

TEST(PackDecode, CheckBytesAndErasedPages)
{
    test::AppSession app;
    Cls_IO& io = *G().IO;

    // A refused page stores nothing.
    Day_Pages refused;
    Put_Field(refused.page, DayPage::CheckPack1, "00");
    Put_Field(refused.page, DayPage::Distance, "000000");
    EXPECT_EQ(io.Pack_File_Read1(*G().DB, refused.File(app, "0000")), 1);
    EXPECT_EQ(G().DB->DB_RSet_D_D("SELECT * FROM D_D1").RecordCount(), 0);

    // An erased page with a car code from the system page passes and starts at 00:00.
    Day_Pages erased;
    erased.page = QString(kPageChars, 'F');
    erased.distance = QString(kPageChars, 'F');
    Put_Field(erased.distance, DistPage::StartDay, "240305");
    EXPECT_EQ(io.Pack_File_Read1(*G().DB, erased.File(app)), 0) << Err_Last().toStdString();
    EXPECT_EQ(G().IO->Decoded.startTime, "0000");
}

TEST(PackDecode, SpeedSeriesRepairs)
{
    test::AppSession app;
    Cls_IO& io = *G().IO;

    Day_Pages forty; // 40 neighbouring pairs above 150 km/h: the series is kept, the cells cleaned
    for (int m = 600; m < 640; ++m)
        forty.Set_Speed(m, "A0");
    ASSERT_EQ(io.Pack_File_Read1(*G().DB, forty.File(app)), 0);
    EXPECT_EQ(G().IO->Decoded.speed.mid(2 * 600, 2), "00");
    EXPECT_EQ(G().IO->Decoded.speed.mid(2 * 480, 2), "3C");

    Day_Pages fortyOne; // one more: rebuilt from the distance page, 1.0 km a minute is 60 km/h
    for (int m = 600; m < 641; ++m)
        fortyOne.Set_Speed(m, "A0");
    fortyOne.Set_Distance(700, "95"); // flag bit: 1.5 km, 90 km/h
    ASSERT_EQ(io.Pack_File_Read1(*G().DB, fortyOne.File(app)), 0);
    EXPECT_EQ(G().IO->Decoded.speed.mid(2 * 480, 2), "3C");
    EXPECT_EQ(G().IO->Decoded.speed.mid(2 * 700, 2), "5A");
    EXPECT_EQ(G().IO->Decoded.speed.mid(2 * 600, 2), "00");
}

TEST(PackDecode, CountsAndDistanceFallbacks)
{
    test::AppSession app;
    Cls_IO& io = *G().IO;

    Day_Pages d;
    Put_Field(d.page, DayPage::Distance, "010000"); // 1,000 km: kept
    Put_Field(d.page, DayPage::Acceleration, "0300");
    ASSERT_EQ(io.Pack_File_Read1(*G().DB, d.File(app)), 0);
    EXPECT_EQ(G().IO->Decoded.distance, 10000);
    EXPECT_EQ(G().IO->Decoded.accelerations, 300);

    Put_Field(d.page, DayPage::Distance, "010001"); // summed again from the minutes: 60 x 1.0 km
    Put_Field(d.page, DayPage::Acceleration, "0301");
    ASSERT_EQ(io.Pack_File_Read1(*G().DB, d.File(app)), 0);
    EXPECT_EQ(G().IO->Decoded.distance, 600);
    const int accel = G().IO->Decoded.accelerations;
    EXPECT_TRUE(accel >= 0 && accel <= 100);

    Put_Field(d.page, DayPage::Acceleration, "00A1");
    Put_Field(d.page, DayPage::EndTime, "99X9"); // a bad end time also forces the sum
    Put_Field(d.page, DayPage::Distance, "000123");
    ASSERT_EQ(io.Pack_File_Read1(*G().DB, d.File(app)), 0);
    EXPECT_EQ(G().IO->Decoded.accelerations, 0);
    EXPECT_EQ(G().IO->Decoded.endTime, "0859");
    EXPECT_EQ(G().IO->Decoded.distance, 600);
}

TEST(PackDecode, BrakeRecordFilterAndForeignDistancePage)
{
    test::AppSession app;
    Cls_IO& io = *G().IO;

    Day_Pages d;
    Put_Field(d.page, DayPage::Brack, "04");
    Put_Field(d.page, DayPage::Brack_Data,
              QString("081200" "8C8C" "081300" "8D10" "081400" "0010" "08A500" "3C20" "081600" "3C20")
                  .leftJustified(100, '0'));
    ASSERT_EQ(io.Pack_File_Read1(*G().DB, d.File(app)), 0);
    EXPECT_EQ(G().IO->Decoded.brakes, 2);
    EXPECT_EQ(G().IO->Decoded.brakeRecords.left(20), "0812008C8C0816003C20");
    EXPECT_EQ(G().IO->Decoded.brakeRecords.size(), 100);

    Put_Field(d.page, DayPage::Brack, "00"); // no count: the records go as they are
    Put_Field(d.distance, DistPage::StartDay, "240205"); // last month's page
    ASSERT_EQ(io.Pack_File_Read1(*G().DB, d.File(app)), 0);
    EXPECT_EQ(G().IO->Decoded.brakeRecords.left(10), "0812008C8C");
    EXPECT_EQ(Stored("D_D7", "D_F2"), QString(2880, '0'));
    EXPECT_EQ(Stored("D_D1", "D_F5"), "0800"); // the day is still stored
}

TEST(PackDecode, SystemPageDatesAreRepaired)
{
    test::AppSession app;
    Cls_IO& io = *G().IO;
    io.Today = [] { return QDate(2024, 3, 10); };
    QString sys(kSysPageChars, '0');
    Put_Field(sys, SysPage::SysCheckPack, "AA");
    Put_Field(sys, SysPage::SysCheckPack1, "AA");
    Put_Field(sys, SysPage::SysCarCode, "0001");
    Put_Field(sys, SysPage::SysDriveCode, "0002");
    Put_Field(sys, SysPage::SysPackInsert, "2403012575"); // hour 25
    Put_Field(sys, SysPage::SysPackLastWrite, "2403091830");
    Put_Field(sys, SysPage::SysDBWriteDate, "FFFFFFFFFF");
    const QString path = app.Path("Dat/SysRead.Vex");
    ASSERT_TRUE(Write_SysRead(path, sys));
    ASSERT_TRUE(io.Pack_SysFile_Read());
    Pack_System_Page& page = io.System_Page;
    EXPECT_EQ(page.packInsert, "2403010000");
    EXPECT_EQ(page.packLastWrite, "2403091830");
    EXPECT_EQ(page.dbWriteDate, "2403061159"); // four days back from today
    EXPECT_EQ(page.car, "0001");

    Put_Field(sys, SysPage::SysPackLastWrite, "2503091830"); // a year ahead of the desk
    Put_Field(sys, SysPage::SysDBWriteDate, "2403081200");
    ASSERT_TRUE(Write_SysRead(path, sys));
    ASSERT_TRUE(io.Pack_SysFile_Read());
    EXPECT_EQ(page.packLastWrite, "2403102359");
    EXPECT_EQ(page.dbWriteDate, "2403081200");

    // Under a chosen range the three stamps stay as the dialog set them.
    io.Range_Selected = true;
    page.dbWriteDate = "2402010000";
    ASSERT_TRUE(io.Pack_SysFile_Read());
    EXPECT_EQ(page.dbWriteDate, "2402010000");

    // A fresh pack's second check byte is not "AA": only it is taken.
    QString fresh(kSysPageChars, '0');
    Put_Field(fresh, SysPage::SysCheckPack, "AA");
    Put_Field(fresh, SysPage::SysCheckPack1, "11");
    ASSERT_TRUE(Write_SysRead(path, fresh));
    page.checkPack = "x";
    EXPECT_FALSE(io.Pack_SysFile_Read());
    EXPECT_EQ(page.checkPack1, "11");
    EXPECT_EQ(page.checkPack, "x");
}

TEST(PackDecode, AFailureHalfWayKeepsWhatWasWritten)
{
    test::AppSession app;
    G().DB->Execute("DROP TABLE D_D7"); // the last save of the day will fail
    Day_Pages day;
    EXPECT_EQ(G().IO->Pack_File_Read1(*G().DB, day.File(app)), 0);
    EXPECT_EQ(Stored("D_D1", "D_F5"), "0800");
    EXPECT_EQ(Stored("D_D3", "D_F2").size(), 2880);
    EXPECT_TRUE(Err_Last().contains("D_D7")) << Err_Last().toStdString();
}
