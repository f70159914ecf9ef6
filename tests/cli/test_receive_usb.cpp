// The USB recorder road: a generated medium of each model received by
// vexcli, received again, with a second recording of one hour, refused for
// the other model; saved days left in \new decoded by the inbox pass.
#include "core/Mod_Main.h"
#include "store/Cls_DB.h"
#include "store/DayFile.h"
#include "support/CliRun.h"
#include "support/TempApp.h"

#include <QDate>
#include <QDir>
#include <QFile>
#include <QProcess>
#include <QSqlDatabase>
#include <QSqlQuery>
#include <QRegularExpression>
#include <gtest/gtest.h>
#include <unistd.h>

using namespace vex;

namespace {

const QString kUsbCar = "12AB00", kUsbDriver = "000123";

struct UsbSampleDay {
    QString start, end; // HHMM
    int metres, accelerations;
};

// "260105  06:30-16:14   232.9 km  accelerations 3"
std::map<QString, UsbSampleDay> Parse_Usb_Sample(const QString& out)
{
    static const QRegularExpression line(R"(^(\d{6})\s+(\d\d):(\d\d)-(\d\d):(\d\d)\s+([\d.]+) km\s+accelerations (\d+))",
                                         QRegularExpression::MultilineOption);
    std::map<QString, UsbSampleDay> days;
    for (auto it = line.globalMatch(out); it.hasNext();) {
        const auto m = it.next();
        days[m.captured(1)] = {m.captured(2) + m.captured(3), m.captured(4) + m.captured(5),
                               int(std::lround(m.captured(6).toDouble() * 1000)), m.captured(7).toInt()};
    }
    return days;
}

struct Site {
    test::TempApp app;
    QString site = app.Path("site");
    std::unique_ptr<Cls_DB> db;

    Cls_DB& DB()
    {
        if (!db) {
            G().App_Dir = site;
            db = std::make_unique<Cls_DB>(Parse_DB_Server("\\db\\morix.mdb", site));
        }
        return *db;
    }
    QString Text(const QString& table, const QString& key, const QString& field = "D_F2")
    {
        Recordset rs = DB().DB_RSet_D_D("SELECT * FROM " + table + " WHERE D_F1=?", {key});
        return rs.RecordCount() > 0 ? rs.Text(field) : QString();
    }
    int Rows(const QString& table)
    {
        return DB().DB_RSet_D_D("SELECT * FROM " + table).RecordCount();
    }
    QByteArray File(const QString& rel)
    {
        QFile f(site + "/" + rel);
        return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray();
    }
};

std::map<QString, UsbSampleDay> Make_Medium(const QString& model, const QString& dir, const QDate& first, int days,
                                         const QStringList& damage = {})
{
    QStringList args{"sample", "usb", "--model", model, "--out", dir, "--car", kUsbCar, "--driver", kUsbDriver,
                     "--from", first.toString("yyMMdd"), "--days", QString::number(days)};
    for (const QString& d : damage)
        args << "--damage" << d;
    const test::CliRun r = test::Vexcli(args);
    EXPECT_EQ(r.code, 0) << r.err.toStdString();
    return Parse_Usb_Sample(r.out);
}

} // namespace

TEST(ReceiveUsb, Model250StoresEveryDayAndAgainDuplicatesNothing)
{
    Site s;
    const QDate first(2026, 1, 5);
    const auto expected = Make_Medium("250", s.app.Path("m"), first, 3);
    ASSERT_EQ(expected.size(), 3u);

    test::CliRun r = test::Vexcli({"--app-dir", s.site, "receive", "usb", "--model", "250", "--medium", s.app.Path("m")});
    ASSERT_EQ(r.code, 0) << r.out.toStdString() << r.err.toStdString();
    EXPECT_TRUE(r.out.contains("car 12AB00  driver 000123"));
    EXPECT_TRUE(r.out.contains("last reception 00-00-00"));
    EXPECT_EQ(test::Lines_Starting(r.out, "stored"), 3) << r.out.toStdString();
    EXPECT_TRUE(r.out.contains("수신완료"));

    std::map<QString, QString> brakes, accels;
    for (const auto& [day, want] : expected) {
        const QString key = kUsbCar + kUsbDriver + day;
        const std::string d = day.toStdString();
        // The summary comes from the second data: the engine decides start
        // and end, which run at least as long as the speed.
        EXPECT_LE(s.Text("D_D1", key, "D_F5"), want.start) << d;
        EXPECT_GE(s.Text("D_D1", key, "D_F7"), want.end) << d;
        EXPECT_NEAR(s.Text("D_D1", key, "D_F8").toDouble() * 100, want.metres, want.metres * 0.03) << d;
        EXPECT_EQ(s.Text("D_D1", key, "D_F9").toInt(), want.accelerations) << d;
        EXPECT_EQ(s.Text("D_D3", key).size(), 2880) << d;
        EXPECT_EQ(s.Text("D_D7", key).size(), 2880) << d;
        EXPECT_EQ(s.Text("D_D8", key).size(), 2880) << d;
        EXPECT_EQ(s.Text("D_D4", key).size(), 10 * want.accelerations) << d;
        EXPECT_EQ(s.File("pack/12AB00/" + day + "/" + day + "000123.vex").size(), kDayFileTwo) << d;
        brakes[day] = s.Text("D_D2", key);
        accels[day] = s.Text("D_D4", key);
    }
    EXPECT_TRUE(QDir(s.site + "/new").isEmpty());
    const QByteArray vex = s.File("pack/12AB00/260105/260105000123.vex");
    s.db.reset();

    // Again: the same rows, the same day files.
    r = test::Vexcli({"--app-dir", s.site, "receive", "usb", "--model", "250", "--medium", s.app.Path("m")});
    ASSERT_EQ(r.code, 0) << r.err.toStdString();
    EXPECT_TRUE(r.out.contains("last reception 26-01-07")) << r.out.toStdString();
    EXPECT_EQ(s.Rows("D_D1"), 3);
    for (const auto& [day, want] : expected) {
        EXPECT_EQ(s.Text("D_D2", kUsbCar + kUsbDriver + day), brakes[day]);
        EXPECT_EQ(s.Text("D_D4", kUsbCar + kUsbDriver + day), accels[day]);
    }
    EXPECT_EQ(s.File("pack/12AB00/260105/260105000123.vex"), vex);

    // A chosen range of one day reads that day only.
    s.db.reset();
    QFile::remove(s.site + "/pack/12AB00/260106/260106000123.vex");
    r = test::Vexcli({"--app-dir", s.site, "receive", "usb", "--model", "250", "--medium", s.app.Path("m"), "--from",
                      "260106", "--to", "260106"});
    ASSERT_EQ(r.code, 0) << r.err.toStdString();
    EXPECT_EQ(test::Lines_Starting(r.out, "stored"), 1) << r.out.toStdString();
    EXPECT_TRUE(r.out.contains("stored 260106"));
}

// A small file system mounted over a folder for one test (root only).
class Small_Disk {
public:
    Small_Disk(const QString& folder, const QString& size) : folder_(folder)
    {
        mounted_ = geteuid() == 0
                   && QProcess::execute("mount", {"-t", "tmpfs", "-o", "size=" + size, "tmpfs", folder}) == 0;
    }
    ~Small_Disk()
    {
        if (mounted_)
            QProcess::execute("umount", {folder_});
    }
    bool Mounted() const { return mounted_; }

private:
    QString folder_;
    bool mounted_ = false;
};

TEST(ReceiveUsb, Model250OnAFullDiskNamesEveryDayNotStored)
{
    Site s;
    Make_Medium("250", s.app.Path("m"), QDate(2026, 1, 5), 3);
    ASSERT_EQ(test::Vexcli({"--app-dir", s.site, "init"}).code, 0);
    // Room for two of the three saved days in \new.
    Small_Disk disk(s.site + "/new", "400k");
    if (!disk.Mounted())
        GTEST_SKIP() << "needs root to mount a small file system";
    test::CliRun r = test::Vexcli({"--app-dir", s.site, "receive", "usb", "--model", "250", "--medium", s.app.Path("m")});
    EXPECT_EQ(r.code, 1) << r.out.toStdString();
    EXPECT_EQ(test::Lines_Starting(r.out, "stored"), 2) << r.out.toStdString();
    EXPECT_TRUE(r.out.contains("days not stored: 260107")) << r.out.toStdString();
    EXPECT_TRUE(r.out.contains("No space left on device")) << r.out.toStdString();
    EXPECT_EQ(s.Rows("D_D1"), 2);
}

TEST(ReceiveUsb, AReceptionWaitsForAnotherProgramThatHoldsTheDatabase)
{
    Site s;
    Make_Medium("250", s.app.Path("m"), QDate(2026, 1, 5), 1);
    ASSERT_EQ(test::Vexcli({"--app-dir", s.site, "init"}).code, 0);
    // Another program (a recount, a second reception) holds the write lock.
    QSqlDatabase holder = QSqlDatabase::addDatabase("QSQLITE", "other-program");
    holder.setDatabaseName(s.site + "/db/morix.mdb");
    ASSERT_TRUE(holder.open());
    ASSERT_TRUE(QSqlQuery(holder).exec("BEGIN IMMEDIATE"));

    QProcess reception;
    QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
    env.insert("VEX_LANG", "en");
    reception.setProcessEnvironment(env);
    reception.start(VEXCLI_PATH, {"--app-dir", s.site, "receive", "usb", "--model", "250", "--medium", s.app.Path("m")});
    reception.setReadChannel(QProcess::StandardError);
    // It says that it waits, and goes on waiting.
    QString err;
    while (!err.contains("waiting") && reception.state() != QProcess::NotRunning && reception.waitForReadyRead(30000))
        err += QString::fromUtf8(reception.readAllStandardError());
    EXPECT_TRUE(err.contains("in use by another program; waiting")) << err.toStdString();
    EXPECT_EQ(reception.state(), QProcess::Running);
    // The other program finishes; the reception stores its day.
    ASSERT_TRUE(QSqlQuery(holder).exec("COMMIT"));
    holder.close();
    ASSERT_TRUE(reception.waitForFinished(60000));
    const QString out = QString::fromUtf8(reception.readAllStandardOutput());
    EXPECT_EQ(reception.exitCode(), 0) << out.toStdString() << err.toStdString();
    EXPECT_EQ(test::Lines_Starting(out, "stored"), 1) << out.toStdString();
    EXPECT_EQ(s.Rows("D_D1"), 1);
    holder = QSqlDatabase();
    QSqlDatabase::removeDatabase("other-program");
}

TEST(ReceiveUsb, Model130FilesTheLogAndStoresItsThreeRegions)
{
    Site s;
    const QDate first(2026, 1, 5);
    const auto expected = Make_Medium("130", s.app.Path("m"), first, 3);
    ASSERT_EQ(expected.size(), 3u);

    test::CliRun r = test::Vexcli({"--app-dir", s.site, "receive", "usb", "--model", "130", "--medium", s.app.Path("m")});
    ASSERT_EQ(r.code, 0) << r.out.toStdString() << r.err.toStdString();
    EXPECT_EQ(test::Lines_Starting(r.out, "stored"), 3) << r.out.toStdString();
    EXPECT_TRUE(r.out.contains("수신완료\n3 day(s) stored\n")) << r.out.toStdString();
    EXPECT_TRUE(QDir(s.site + "/new").isEmpty());
    EXPECT_EQ(QFileInfo(s.site + "/temp.dat").size(), 0x200200);

    for (const auto& [day, want] : expected) {
        const QString key = kUsbCar + kUsbDriver + day;
        const std::string d = day.toStdString();
        // Start and end from the minute speed, as the recorder kept it.
        EXPECT_EQ(s.Text("D_D1", key, "D_F5"), want.start) << d;
        EXPECT_EQ(s.Text("D_D1", key, "D_F7"), want.end) << d;
        EXPECT_NEAR(s.Text("D_D1", key, "D_F8").toDouble() * 100, want.metres, want.metres * 0.02) << d;
        EXPECT_EQ(s.Text("D_D1", key, "D_F9").toInt(), want.accelerations) << d;
        EXPECT_EQ(s.Text("D_D4", key).size(), 10 * want.accelerations) << d;
        EXPECT_EQ(s.Text("D_D3", key).size(), 2880) << d;
        EXPECT_EQ(s.Text("D_D7", key).size(), 2880) << d;
        EXPECT_EQ(s.Text("D_D8", key).size(), 2880) << d;
    }
    EXPECT_EQ(s.Text("S_D1", kUsbCar, "D_F6"), "130");
    // Second data of the last minutes the engine ran: the last day has its
    // day file and the copy in \static.
    const QByteArray vex = s.File("pack/12AB00/260107/260107000123.vex");
    EXPECT_EQ(vex.size(), kDayFileFull);
    EXPECT_EQ(s.File("static/12AB00260107000123.vex"), vex);
    int driven = 0;
    for (int i = 1; i <= kDaySeconds; ++i)
        driven += vex[i] != 0;
    EXPECT_GT(driven, 1000);

    const QString d3 = s.Text("D_D3", kUsbCar + kUsbDriver + "260105");
    const QString d2 = s.Text("D_D2", kUsbCar + kUsbDriver + "260105");
    s.db.reset();
    r = test::Vexcli({"--app-dir", s.site, "receive", "usb", "--model", "130", "--medium", s.app.Path("m")});
    ASSERT_EQ(r.code, 0) << r.err.toStdString();
    EXPECT_EQ(s.Rows("D_D1"), 3);
    EXPECT_EQ(s.Text("D_D3", kUsbCar + kUsbDriver + "260105"), d3);
    EXPECT_EQ(s.Text("D_D2", kUsbCar + kUsbDriver + "260105"), d2);
    EXPECT_EQ(s.File("pack/12AB00/260107/260107000123.vex"), vex);
}

TEST(ReceiveUsb, ASecondRecordingOfAnHourOnlyFillsWhatTheFirstLeftEmpty)
{
    // "130": minute by minute. The second recording has other speeds in
    // every driven minute and 33 km/h in every empty one.
    {
        Site s;
        Make_Medium("130", s.app.Path("m"), QDate(2026, 1, 5), 2, {"second-recording"});
        const test::CliRun r =
            test::Vexcli({"--app-dir", s.site, "receive", "usb", "--model", "130", "--medium", s.app.Path("m")});
        ASSERT_EQ(r.code, 0) << r.err.toStdString();
        Make_Medium("130", s.app.Path("clean"), QDate(2026, 1, 5), 2);
        Site c;
        ASSERT_EQ(test::Vexcli({"--app-dir", c.site, "receive", "usb", "--model", "130", "--medium",
                                s.app.Path("clean")})
                      .code,
                  0);
        const QString merged = s.Text("D_D3", kUsbCar + kUsbDriver + "260105");
        const QString clean = c.Text("D_D3", kUsbCar + kUsbDriver + "260105");
        ASSERT_EQ(merged.size(), 2880);
        int filled = 0, kept = 0;
        for (int i = 0; i < 2880; i += 2) {
            if (clean.mid(i, 2) != "00") {
                EXPECT_EQ(merged.mid(i, 2), clean.mid(i, 2)) << i / 2;
                ++kept;
            } else if (merged.mid(i, 2) != "00") {
                EXPECT_EQ(merged.mid(i, 2), "21") << i / 2;
                ++filled;
            }
        }
        EXPECT_GT(kept, 100);
        EXPECT_GT(filled, 0);
        EXPECT_LE(filled, 60);
    }
    // "250": second by second, into the day file; the day between makes the
    // second recording a merge of its own.
    {
        Site s;
        Make_Medium("250", s.app.Path("m"), QDate(2026, 1, 5), 2, {"second-recording"});
        ASSERT_EQ(test::Vexcli({"--app-dir", s.site, "receive", "usb", "--model", "250", "--medium", s.app.Path("m")})
                      .code,
                  0);
        Make_Medium("250", s.app.Path("clean"), QDate(2026, 1, 5), 2);
        Site c;
        ASSERT_EQ(test::Vexcli({"--app-dir", c.site, "receive", "usb", "--model", "250", "--medium",
                                s.app.Path("clean")})
                      .code,
                  0);
        const QByteArray merged = s.File("pack/12AB00/260105/260105000123.vex");
        const QByteArray clean = c.File("pack/12AB00/260105/260105000123.vex");
        ASSERT_EQ(merged.size(), clean.size());
        int filled = 0;
        for (int i = 1; i <= kDaySeconds; ++i) {
            if (clean[i] != 0)
                ASSERT_EQ(merged[i], clean[i]) << i;
            else if (merged[i] != 0) {
                ASSERT_EQ(int(merged[i]), 33) << i;
                ++filled;
            }
        }
        EXPECT_GT(filled, 0);
        EXPECT_LE(filled, 3600);
    }
}

TEST(ReceiveUsb, TheOtherModelNoMediumAndModel260AreRefusedOrShown)
{
    Site s;
    Make_Medium("130", s.app.Path("m130"), QDate(2026, 1, 5), 1);
    Make_Medium("250", s.app.Path("m250"), QDate(2026, 1, 5), 1);
    auto Receive = [&](const QString& model, const QString& medium) {
        return test::Vexcli({"--app-dir", s.site, "receive", "usb", "--model", model, "--medium", medium});
    };
    test::CliRun r = Receive("250", s.app.Path("m130"));
    EXPECT_EQ(r.code, 2);
    EXPECT_TRUE(r.err.contains("QRX 250 데이터가 아닙니다 ! QRX 130을 선택하여 주십시요 ")) << r.err.toStdString();
    r = Receive("130", s.app.Path("m250"));
    EXPECT_EQ(r.code, 2);
    EXPECT_TRUE(r.err.contains("QRX 130 데이터가 아닙니다 ! QRX 250을 선택하여 주십시요 ")) << r.err.toStdString();
    r = Receive("130", s.app.Path("nothing"));
    EXPECT_EQ(r.code, 2);
    EXPECT_TRUE(r.err.contains("USB가 없읍니다!"));
    // The medium one folder down is found; "260" only shows who it is.
    r = Receive("260", s.app.Dir());
    EXPECT_EQ(r.code, 0) << r.err.toStdString();
    EXPECT_TRUE(r.out.contains("model 260  car 12AB00  driver 000123")) << r.out.toStdString();
    EXPECT_EQ(s.Rows("D_D1"), 0);
    EXPECT_EQ(Receive("120", s.app.Path("m130")).code, 2);

    // A medium without its log holds no recordings: it is of neither model.
    QFile::remove(s.app.Path("m250/SPDR0403.dat"));
    for (const char* model : {"130", "250"}) {
        r = Receive(model, s.app.Path("m250"));
        EXPECT_EQ(r.code, 2);
        EXPECT_TRUE(r.err.contains("the medium holds no recorder log (SPDR0403.dat)")) << r.err.toStdString();
    }
}

TEST(ReceiveUsb, AReceptionKilledAfterFilingIsFinishedUnderItsOwnIdentity)
{
    Site s;
    const auto expected = Make_Medium("130", s.app.Path("m"), QDate(2026, 1, 5), 3);
    ASSERT_EQ(test::Vexcli({"--app-dir", s.site, "init"}).code, 0);
    // The reception filed the log and its note, then died before the pass.
    QFile::copy(s.app.Path("m/SPDR0403.dat"), s.site + "/new/12AB00261123.dat");
    QFile note(s.site + "/new/12AB00261123.dat.id");
    ASSERT_TRUE(note.open(QIODevice::WriteOnly));
    note.write("car=12AB00\ndriver=000123\nfrom=260105\nto=260107\n");
    note.close();
    // A log filed without its note waits and says why.
    QFile::copy(s.app.Path("m/SPDR0403.dat"), s.site + "/new/12AB00261124.dat");

    // The next reception of another medium finishes it, under its own car,
    // driver and dates, and leaves the log without a note where it is.
    Make_Medium("250", s.app.Path("m250"), QDate(2026, 2, 1), 1);
    test::CliRun r = test::Vexcli({"--app-dir", s.site, "receive", "usb", "--model", "250", "--medium",
                                   s.app.Path("m250")});
    EXPECT_EQ(r.code, 1) << r.out.toStdString();
    EXPECT_TRUE(r.out.contains("kept 12AB00261124.dat (no record of the reception")) << r.out.toStdString();
    EXPECT_TRUE(QFile::exists(s.site + "/new/12AB00261124.dat"));
    EXPECT_FALSE(QFile::exists(s.site + "/new/12AB00261123.dat"));
    EXPECT_FALSE(QFile::exists(s.site + "/new/12AB00261123.dat.id"));
    for (const auto& [day, want] : expected)
        EXPECT_EQ(s.Rows("D_D1 WHERE D_F1='12AB00000123" + day + "'"), 1) << day.toStdString();
    EXPECT_EQ(s.Rows("D_D1 WHERE D_F3='000000'"), 0);
}

TEST(ReceiveUsb, SavedDaysLeftInTheInboxAreDecodedByTheInboxPass)
{
    Site s;
    ASSERT_EQ(test::Vexcli({"--app-dir", s.site, "init"}).code, 0);
    const QString ntd = s.site + "/new/A.NTD";
    test::CliRun r = test::Vexcli(
        {"sample", "ntd", "--out", ntd, "--car", "34CD00", "--driver", "990042", "--day", "260210"});
    ASSERT_EQ(r.code, 0) << r.err.toStdString();
    EXPECT_TRUE(r.out.contains("driver 000042"));
    // A copy cut short stays for a later pass.
    QFile cut(s.site + "/new/B.NTD");
    ASSERT_TRUE(cut.open(QIODevice::WriteOnly));
    cut.write(s.File("new/A.NTD").left(90000));
    cut.close();

    // A file left behind is no success: the pass says so and exits non-zero.
    r = test::Vexcli({"--app-dir", s.site, "receive", "inbox"});
    ASSERT_EQ(r.code, 1) << r.err.toStdString();
    EXPECT_TRUE(r.err.contains("B.NTD")) << r.err.toStdString();
    EXPECT_TRUE(r.out.contains("decoded A.NTD")) << r.out.toStdString();
    EXPECT_TRUE(r.out.contains("kept B.NTD"));
    EXPECT_TRUE(r.out.contains("stored 260210 car 34CD00 driver 000042"));
    EXPECT_FALSE(QFile::exists(ntd));
    EXPECT_TRUE(QFile::exists(s.site + "/new/B.NTD"));
    const QString key = "34CD00000042260210";
    EXPECT_EQ(s.Text("D_D3", key).size(), 2880);
    EXPECT_GT(s.Text("D_D1", key, "D_F8").toDouble(), 100);
    EXPECT_EQ(s.File("pack/34CD00/260210/260210000042.vex").size(), kDayFileTwo);
}
