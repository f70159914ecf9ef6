// The whole memory pack road: a generated 31-day pack in the analyzer
// emulator, received by vexcli, then received again, then a chosen range.
#include "acquisition/PackImage.h"
#include "acquisition/PackLayout.h"
#include "core/Mod_Main.h"
#include "store/Cls_DB.h"
#include "support/CliRun.h"
#include "support/Emulator.h"
#include "support/TempApp.h"

#include <QDate>
#include <QDir>
#include <QProcess>
#include <QRegularExpression>
#include <gtest/gtest.h>

using namespace vex;

namespace {

struct SampleDay {
    QString start, end; // HHMM
    int tenths, brakes, accelerations;
};

// "261023  07:03-16:36   194.6 km  brakes 3  accelerations 3"
std::map<QString, SampleDay> Parse_Sample(const QString& out)
{
    static const QRegularExpression line(
        R"(^(\d{6})\s+(\d\d):(\d\d)-(\d\d):(\d\d)\s+([\d.]+) km\s+brakes (\d+)\s+accelerations (\d+))",
        QRegularExpression::MultilineOption);
    std::map<QString, SampleDay> days;
    for (auto it = line.globalMatch(out); it.hasNext();) {
        const auto m = it.next();
        days[m.captured(1)] = {m.captured(2) + m.captured(3), m.captured(4) + m.captured(5),
                               int(std::lround(m.captured(6).toDouble() * 10)), m.captured(7).toInt(),
                               m.captured(8).toInt()};
    }
    return days;
}

QString Sys_Field(const QString& image, const Field& f)
{
    const auto pack = PackImage::Load(image);
    return pack ? PageText(pack->Read_Hex(kSystemPageAddress)).field(f) : QString();
}

} // namespace

TEST(ReceivePack, ThirtyOneDaysThenNothingNewThenAChosenRange)
{
    test::TempApp app;
    const QString site = app.Path("site"), image = app.Path("pack.img");
    const QDate first = QDate::currentDate().addDays(-31);
    const QString lastRead = first.addDays(-1).toString("yyMMdd") + "1800";
    const test::CliRun sample = test::Vexcli({"sample", "pack", "--out", image, "--car", "0001", "--driver", "0002",
                                              "--from", first.toString("yyMMdd"), "--days", "31", "--last-read",
                                              lastRead});
    ASSERT_EQ(sample.code, 0) << sample.err.toStdString();
    const auto expected = Parse_Sample(sample.out);
    ASSERT_EQ(expected.size(), 31u);
    const QString lastWrite = Sys_Field(image, SysPage::SysPackLastWrite);

    test::Emulator analyzer(image);
    ASSERT_FALSE(analyzer.Tty().isEmpty());
    QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
    env.insert("VEX_SERIAL_PORTS", analyzer.Tty());

    // First reception: every day from the last reading on.
    test::CliRun r = test::Vexcli({"--app-dir", site, "receive", "pack"}, env);
    ASSERT_EQ(r.code, 0) << r.out.toStdString() << r.err.toStdString();
    EXPECT_TRUE(r.out.contains("분석기 연결 완료"));
    EXPECT_EQ(test::Lines_Starting(r.out, "read"), 32); // the day of the last reading is read again
    EXPECT_TRUE(r.out.contains("수신완료"));

    G().App_Dir = site;
    {
        Cls_DB db(Parse_DB_Server("\\db\\morix.mdb", site));
        for (const auto& [day, want] : expected) {
            Recordset rs = db.DB_RSet_D_D("SELECT * FROM D_D1 WHERE D_F1=?", {"000001000002" + day});
            ASSERT_EQ(rs.RecordCount(), 1) << day.toStdString();
            EXPECT_EQ(rs.Text("D_F5"), want.start) << day.toStdString();
            EXPECT_EQ(rs.Text("D_F7"), want.end) << day.toStdString();
            EXPECT_EQ(rs.Field("D_F8").toInt(), want.tenths) << day.toStdString();
            EXPECT_EQ(rs.Field("D_F9").toInt(), want.accelerations) << day.toStdString();
            EXPECT_EQ(rs.Field("D_F10").toInt(), want.brakes) << day.toStdString();
            EXPECT_EQ(db.DB_RSet_D_D("SELECT * FROM D_D3 WHERE D_F1=?", {"000001000002" + day})
                          .Text("D_F2")
                          .size(),
                      2880);
        }
        EXPECT_EQ(db.DB_RSet_D_D("SELECT * FROM S_D1 WHERE D_F1=?", {"000001"}).RecordCount(), 1);
    }
    // The pack now says it was read up to its last write.
    const QString lastDay = first.addDays(30).toString("yyMMdd");
    EXPECT_EQ(Sys_Field(image, SysPage::SysDBWriteDate), lastDay + lastWrite.mid(6, 4));

    // Second reception: nothing new, and nothing written to the pack.
    r = test::Vexcli({"--app-dir", site, "receive", "pack"}, env);
    ASSERT_EQ(r.code, 0) << r.err.toStdString();
    EXPECT_EQ(test::Lines_Starting(r.out, "read"), 0);
    EXPECT_TRUE(r.out.contains("수신완료\n0 day(s) stored\n")) << r.out.toStdString();
    EXPECT_EQ(Sys_Field(image, SysPage::SysDBWriteDate), lastDay + lastWrite.mid(6, 4));

    // A chosen range is read again and overwrites; the pack's mark moves back.
    const QString from = first.addDays(4).toString("yyMMdd"), to = first.addDays(6).toString("yyMMdd");
    r = test::Vexcli({"--app-dir", site, "receive", "pack", "--from", from, "--to", to}, env);
    ASSERT_EQ(r.code, 0) << r.err.toStdString();
    EXPECT_EQ(test::Lines_Starting(r.out, "read"), 3);
    EXPECT_EQ(test::Lines_Starting(r.out, "stored"), 3);
    EXPECT_EQ(Sys_Field(image, SysPage::SysDBWriteDate), to + "2359");
    Cls_DB db(Parse_DB_Server("\\db\\morix.mdb", site));
    EXPECT_EQ(db.DB_RSet_D_D("SELECT * FROM D_D1 WHERE LEFT(D_F1,12)=? AND (RIGHT(D_F1,6)) >= ?",
                             {"000001000002", first.toString("yyMMdd")})
                  .RecordCount(),
              31);
}

TEST(ReceivePack, AKilledReceptionEndsWithEveryDayStoredOnce)
{
    test::TempApp app;
    const QString site = app.Path("site"), image = app.Path("pack.img");
    const QDate first = QDate::currentDate().addDays(-5);
    const test::CliRun sample =
        test::Vexcli({"sample", "pack", "--out", image, "--car", "0001", "--driver", "0002", "--from",
                      first.toString("yyMMdd"), "--days", "5", "--last-read", first.toString("yyMMdd") + "0000"});
    ASSERT_EQ(sample.code, 0) << sample.err.toStdString();
    const auto expected = Parse_Sample(sample.out);
    test::Emulator analyzer(image);
    QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
    env.insert("VEX_SERIAL_PORTS", analyzer.Tty());
    env.insert("VEX_LANG", "en");

    // Killed after the second day was read: the pack is not marked.
    QProcess p;
    p.setProcessEnvironment(env);
    p.start(VEXCLI_PATH, {"--app-dir", site, "receive", "pack"});
    QByteArray out;
    while (out.count("\nread ") + out.startsWith("read ") < 2 && p.waitForReadyRead(30000))
        out += p.readAllStandardOutput();
    p.kill();
    p.waitForFinished();
    ASSERT_GE(QDir(site + "/new").entryList(QDir::Files).size(), 1) << out.toStdString();

    // The next reception finishes the filed days and reads the pack again.
    const test::CliRun r = test::Vexcli({"--app-dir", site, "receive", "pack"}, env);
    ASSERT_EQ(r.code, 0) << r.out.toStdString() << r.err.toStdString();
    EXPECT_TRUE(QDir(site + "/new").isEmpty());
    G().App_Dir = site;
    Cls_DB db(Parse_DB_Server("\\db\\morix.mdb", site));
    EXPECT_EQ(db.DB_RSet_D_D("SELECT * FROM D_D1").RecordCount(), int(expected.size()));
    for (const auto& [day, want] : expected) {
        Recordset rs = db.DB_RSet_D_D("SELECT * FROM D_D1 WHERE D_F1=?", {"000001000002" + day});
        ASSERT_EQ(rs.RecordCount(), 1) << day.toStdString();
        EXPECT_EQ(rs.Field("D_F8").toInt(), want.tenths) << day.toStdString();
        EXPECT_EQ(rs.Field("D_F10").toInt(), want.brakes) << day.toStdString();
    }
}

TEST(ReceivePack, TheDayOfTheLastReceptionLeftUndrivenIsNoRefusal)
{
    // The README's recipe: the pack was last read the evening before its
    // first day, and nothing was driven after that reading, so the page of
    // that day is still erased.
    test::TempApp app;
    const QString site = app.Path("site"), image = app.Path("pack.img");
    ASSERT_EQ(test::Vexcli({"sample", "pack", "--out", image, "--car", "0001", "--driver", "0002", "--from", "261001",
                            "--days", "7", "--last-read", "2609301800"})
                  .code,
              0);
    test::Emulator analyzer(image);
    QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
    env.insert("VEX_SERIAL_PORTS", analyzer.Tty());
    env.insert("VEX_LANG", "en");
    const test::CliRun r = test::Vexcli({"--app-dir", site, "receive", "pack"}, env);
    EXPECT_EQ(r.code, 0) << r.out.toStdString() << r.err.toStdString();
    EXPECT_EQ(test::Lines_Starting(r.out, "stored"), 7) << r.out.toStdString();
    EXPECT_TRUE(r.out.contains("not driven 260930")) << r.out.toStdString();
    EXPECT_TRUE(r.out.contains("7 day(s) stored; days without driving (nothing recorded on the pack): 260930"))
        << r.out.toStdString();
    EXPECT_FALSE(r.out.contains("refused")) << r.out.toStdString();
    EXPECT_TRUE(QDir(site + "/new").isEmpty());
    G().App_Dir = site;
    Cls_DB db(Parse_DB_Server("\\db\\morix.mdb", site));
    EXPECT_EQ(db.DB_RSet_D_D("SELECT * FROM D_D1").RecordCount(), 7) << "nothing stored of the empty day";
}

TEST(ReceivePack, AnalyzerFaultsAreNoSuccess)
{
    test::TempApp app;
    const QString image = app.Path("pack.img");
    const QDate first = QDate::currentDate().addDays(-2);
    ASSERT_EQ(test::Vexcli({"sample", "pack", "--out", image, "--car", "0001", "--driver", "0002", "--from",
                            first.toString("yyMMdd"), "--days", "2", "--last-read",
                            first.toString("yyMMdd") + "0000"})
                  .code,
              0);
    for (const char* fault : {"cut", "no-reply"}) {
        test::Emulator analyzer(image, fault);
        QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
        env.insert("VEX_SERIAL_PORTS", analyzer.Tty());
        const test::CliRun r = test::Vexcli({"--app-dir", app.Path("site"), "receive", "pack"}, env);
        EXPECT_NE(r.code, 0) << fault;
        EXPECT_TRUE(r.out.contains("수신완료")) << r.out.toStdString();
        EXPECT_TRUE(r.out.contains("reception failed: the pack's system page could not be read")) << r.out.toStdString();
    }
}

TEST(ReceivePack, NoAnalyzerAndBadOptionsAreRefused)
{
    test::TempApp app;
    QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
    env.insert("VEX_SERIAL_PORTS", app.Path("no-such-tty"));
    test::CliRun r = test::Vexcli({"--app-dir", app.Path("site"), "receive", "pack"}, env);
    EXPECT_EQ(r.code, 2);
    EXPECT_TRUE(r.out.contains("분석기와 연결되지 않았읍니다.")) << r.out.toStdString();
    r = test::Vexcli({"--app-dir", app.Path("site"), "receive", "pack", "--from", "241301", "--to", "241302"}, env);
    EXPECT_EQ(r.code, 2);
    r = test::Vexcli({"--app-dir", app.Path("site"), "receive", "pack", "--port", "9"}, env);
    EXPECT_EQ(r.code, 2);
}
