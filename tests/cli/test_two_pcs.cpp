// Two PCs on one PostgreSQL server, each with its own application folder:
// a day received by one is seen whole by the other (its day, its hour graph,
// its recount, its package, its agency file, its rebuild, its seconds)
// exactly as on a PC with the embedded database; two receptions and a
// recount at the same moment duplicate nothing, lose nothing, and a reader
// never sees a day in part.
#include "exchange/Package.h"
#include "store/Cls_DB.h"
#include "support/CliRun.h"
#include "support/TempApp.h"

#include <QCryptographicHash>
#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QProcess>
#include <QSqlDatabase>
#include <QSqlQuery>
#include <QUuid>
#include <atomic>
#include <gtest/gtest.h>
#include <thread>

using namespace vex;
using vex::test::CliRun;
using vex::test::Vexcli;

namespace two_pcs {

const QString kCar = "12AB00", kDriver = "000123";

bool Need_Server()
{
    if (!test::Pg_Uri().isEmpty())
        return true;
    if (qEnvironmentVariableIsSet("VEX_REQUIRE_PG"))
        ADD_FAILURE() << "VEX_REQUIRE_PG is set but VEX_TEST_PG_URI is not";
    return false;
}

QByteArray Read(const QString& path)
{
    QFile f(path);
    return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray("<missing " + path.toUtf8() + ">");
}

// A PC: an application folder on the embedded database, or on the server
// database given.
struct Pc {
    test::TempApp app;
    QString dir = app.Path("site");

    explicit Pc(const QString& server = {})
    {
        EXPECT_EQ(Vexcli({"--app-dir", dir, "init"}).code, 0);
        if (!server.isEmpty()) {
            app.Write_File("site/MORIX.INI", ("[MAIN]\nMAIN SERVER=" + server + "\n").toUtf8());
            const CliRun r = Vexcli({"--app-dir", dir, "init"});
            EXPECT_EQ(r.code, 0) << r.err.toStdString();
        }
    }
    CliRun Run(QStringList args) const
    {
        args.prepend(dir);
        args.prepend("--app-dir");
        return Vexcli(args);
    }
    // What the command printed, which must be the same on every PC.
    QString Out(const QStringList& args) const
    {
        const CliRun r = Run(args);
        EXPECT_EQ(r.code, 0) << args.join(' ').toStdString() << ": " << r.out.toStdString() << r.err.toStdString();
        return r.out;
    }
    QProcess* Start(QStringList args) const
    {
        auto* p = new QProcess;
        QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
        env.insert("VEX_LANG", "en");
        p->setProcessEnvironment(env);
        args.prepend(dir);
        args.prepend("--app-dir");
        p->start(QStringLiteral(VEXCLI_PATH), args);
        return p;
    }
};

// A database of its own on the test server, as a "MAIN SERVER" value.
QString New_Server_Database(const test::TempApp& app)
{
    const DbTarget t = test::Fresh_Target(test::Backend::Postgres, app);
    return QStringLiteral("postgresql://%1@%2:%3/%4").arg(t.user, t.host).arg(t.port).arg(t.database);
}

void Make_Medium(const QString& dir, const QString& from, int days, const QStringList& damage = {})
{
    QStringList args{"sample", "usb", "--model", "250", "--out", dir, "--car", kCar, "--driver", kDriver,
                     "--from", from, "--days", QString::number(days)};
    for (const QString& d : damage)
        args << "--damage" << d;
    const CliRun r = Vexcli(args);
    ASSERT_EQ(r.code, 0) << r.err.toStdString();
}

// The files of a folder by their names under it: size and digest.
std::map<std::string, std::string> Files(const QString& dir)
{
    std::map<std::string, std::string> files;
    for (QDirIterator it(dir, QDir::Files, QDirIterator::Subdirectories); it.hasNext();) {
        const QByteArray bytes = Read(it.next());
        files[QDir(dir).relativeFilePath(it.filePath()).toStdString()] =
            std::to_string(bytes.size()) + " " + QCryptographicHash::hash(bytes, QCryptographicHash::Sha1).toHex().toStdString();
    }
    return files;
}

// The day files a package carries.
std::map<std::string, std::string> Package_Day_Files(const QString& zip, const QString& into)
{
    const Unzip_Result r = UnZip_Make(zip, into, [](const QString& name) { return name.startsWith("pack/"); });
    EXPECT_TRUE(r.ok) << r.error.toStdString();
    return Files(into);
}

// What a PC shows of the days: each day's rows and day file, and the
// picture of an hour.
std::string Days_Seen(const Pc& pc, const QStringList& days)
{
    QString seen;
    for (const QString& day : days)
        seen += pc.Out({"day", kCar, kDriver, day});
    return seen.toStdString();
}

} // namespace two_pcs

using namespace two_pcs;

TEST(TwoPcs, ADayReceivedOnOnePcIsSeenWholeOnTheOther)
{
    if (!Need_Server())
        GTEST_SKIP() << "no PostgreSQL server (set VEX_TEST_PG_URI)";
    test::TempApp media;
    Make_Medium(media.Path("m"), "260105", 2);
    const QStringList days{"260105", "260106"};

    Pc local; // one PC on the embedded database, as every office had it
    const QString server = New_Server_Database(local.app);
    Pc first(server), second(server);
    for (const Pc* pc : {&local, &first}) {
        const CliRun r = pc->Run({"receive", "usb", "--model", "250", "--medium", media.Path("m")});
        ASSERT_EQ(r.code, 0) << r.out.toStdString() << r.err.toStdString();
    }
    // Nothing of the day lies in the receiving PC's folder: the server has it.
    EXPECT_FALSE(QFileInfo::exists(first.dir + "/pack/12AB00/260105/260105000123.vex"));

    // The day and its day file.
    const std::string seen = Days_Seen(local, days);
    EXPECT_NE(seen.find("day file: 172802 bytes"), std::string::npos) << seen;
    EXPECT_EQ(Days_Seen(second, days), seen);

    // The hour graph, drawn from the seconds.
    for (const Pc* pc : {&local, &second})
        pc->Out({"graph", "hour", kCar, kDriver, "260105", "08", "--out", pc->app.Path("hour.png")});
    EXPECT_EQ(Read(second.app.Path("hour.png")), Read(local.app.Path("hour.png")));

    // A recount under new standards, from the day files.
    for (const Pc* pc : {&local, &second})
        pc->Out({"standards", "set", "9=6", "10=5"});
    const QString recount = local.Out({"recalc"});
    EXPECT_TRUE(recount.contains("changed")) << recount.toStdString();
    EXPECT_EQ(second.Out({"recalc"}), recount);
    EXPECT_EQ(Days_Seen(second, days), Days_Seen(local, days));

    // The package: its day files byte for byte.
    for (const Pc* pc : {&local, &second})
        pc->Out({"export", "--from", "260105", "--to", "260106", "--out", pc->app.Path("p.zip")});
    const auto packed = Package_Day_Files(local.app.Path("p.zip"), local.app.Path("unpacked"));
    EXPECT_EQ(packed.size(), 2u);
    EXPECT_EQ(Package_Day_Files(second.app.Path("p.zip"), second.app.Path("unpacked")), packed);

    // The agency file.
    for (const Pc* pc : {&local, &second})
        pc->Out({"agency", "--from", "260105", "--to", "260106", "--company", "VEX", "--business", "1234567890"});
    const auto agency = Files(local.dir + "/report");
    EXPECT_FALSE(agency.empty());
    EXPECT_EQ(Files(second.dir + "/report"), agency);

    // The seconds of the period as text.
    for (const Pc* pc : {&local, &second})
        pc->Out({"excel", "speedfile", "--car", kCar, "--driver", kDriver, "--from", "260105", "--to", "260106",
                 "--out", pc->app.Path("seconds.dat")});
    EXPECT_EQ(Read(second.app.Path("seconds.dat")), Read(local.app.Path("seconds.dat")));

    // A day rebuilt from a day file chosen on the second PC.
    const QString chosen = local.app.Path("unpacked/pack/12AB00/260105/260105000123.vex");
    const QString rebuilt = local.Out({"rebuild", chosen, "--car", kCar});
    EXPECT_EQ(second.Out({"rebuild", chosen, "--car", kCar}), rebuilt);
    EXPECT_EQ(Days_Seen(second, days), Days_Seen(local, days));

    // A package brought in on one PC of another server is there for its
    // other PC.
    local.Out({"export", "--from", "260105", "--to", "260106", "--out", local.app.Path("rebuilt.zip")});
    const QString other = New_Server_Database(local.app);
    Pc third(other), fourth(other);
    third.Out({"import", local.app.Path("rebuilt.zip")});
    EXPECT_EQ(Days_Seen(fourth, days), Days_Seen(local, days));
    fourth.Out({"export", "--from", "260105", "--to", "260106", "--out", fourth.app.Path("p.zip")});
    EXPECT_EQ(Package_Day_Files(fourth.app.Path("p.zip"), fourth.app.Path("unpacked")), packed);
}

TEST(TwoPcs, ReceptionsAndARecountAtTheSameMomentLoseAndDuplicateNothing)
{
    if (!Need_Server())
        GTEST_SKIP() << "no PostgreSQL server (set VEX_TEST_PG_URI)";
    // Two media of one car, driver and days; the second holds a second
    // recording of the first driving hour at its end, which the day file of
    // that day must gain whichever PC stores its day first.
    test::TempApp media;
    Make_Medium(media.Path("a"), "260105", 3);
    Make_Medium(media.Path("b"), "260105", 3, {"second-recording"});

    Pc local;
    const QString server = New_Server_Database(local.app);
    Pc first(server), second(server), third(server);
    for (const QString& m : {"a", "b"})
        local.Out({"receive", "usb", "--model", "250", "--medium", media.Path(m)});

    // A reader on a third PC, looking all the while for a trip whose series
    // or day file is missing.
    DbTarget target = Parse_DB_Server(server, third.dir);
    std::atomic<bool> done{false};
    std::atomic<int> looks{0}, partial{0}, trips{0};
    std::thread reader([&] {
        const QString name = "two-pcs-reader-" + QUuid::createUuid().toString(QUuid::Id128);
        {
            QSqlDatabase db = QSqlDatabase::addDatabase("QPSQL", name);
            db.setHostName(target.host);
            db.setPort(target.port);
            db.setUserName(target.user);
            db.setDatabaseName(target.database);
            if (db.open()) {
                QSqlQuery q(db);
                while (!done) {
                    if (q.exec("SELECT COUNT(*) FROM D_D1 d WHERE "
                               "NOT EXISTS (SELECT 1 FROM X_DAYFILE x WHERE x.D_F1 = d.D_F1) OR "
                               "NOT EXISTS (SELECT 1 FROM D_D3 s WHERE s.D_F1 = d.D_F1) OR "
                               "NOT EXISTS (SELECT 1 FROM D_D7 k WHERE k.D_F1 = d.D_F1) OR "
                               "NOT EXISTS (SELECT 1 FROM D_D8 e WHERE e.D_F1 = d.D_F1)")
                        && q.next()) {
                        ++looks;
                        partial += q.value(0).toInt() > 0 ? 1 : 0;
                    }
                    if (q.exec("SELECT COUNT(*) FROM D_D1") && q.next())
                        trips = q.value(0).toInt();
                }
            }
        }
        QSqlDatabase::removeDatabase(name);
    });

    std::unique_ptr<QProcess> a(first.Start({"receive", "usb", "--model", "250", "--medium", media.Path("a")}));
    std::unique_ptr<QProcess> b(second.Start({"receive", "usb", "--model", "250", "--medium", media.Path("b")}));
    // The recount starts once there are trips to count.
    for (int i = 0; i < 2000 && trips.load() == 0 && a->state() != QProcess::NotRunning; ++i)
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
    std::unique_ptr<QProcess> recount(third.Start({"recalc"}));
    for (QProcess* p : {a.get(), b.get(), recount.get()}) {
        ASSERT_TRUE(p->waitForFinished(120000));
        EXPECT_EQ(p->exitCode(), 0) << p->readAllStandardOutput().toStdString() << p->readAllStandardError().toStdString();
    }
    done = true;
    reader.join();
    EXPECT_GT(looks.load(), 0);
    EXPECT_EQ(partial.load(), 0) << "a reader saw a trip without all of its rows and its day file";

    // The figures that depend on which came first (a reception's count or
    // the recount's) are counted once more on both; then every day is the
    // same as the one PC's that took the media one after the other.
    local.Out({"recalc"});
    third.Out({"recalc"});
    const QStringList days{"260105", "260106", "260107"};
    EXPECT_EQ(Days_Seen(third, days), Days_Seen(local, days));
    for (const Pc* pc : {&local, &third})
        pc->Out({"export", "--from", "260105", "--to", "260107", "--out", pc->app.Path("p.zip")});
    const auto packed = Package_Day_Files(local.app.Path("p.zip"), local.app.Path("unpacked"));
    EXPECT_EQ(packed.size(), 3u);
    EXPECT_EQ(Package_Day_Files(third.app.Path("p.zip"), third.app.Path("unpacked")), packed);
}

TEST(TwoPcs, AnInstallationMovingToAServerBringsItsDayFiles)
{
    if (!Need_Server())
        GTEST_SKIP() << "no PostgreSQL server (set VEX_TEST_PG_URI)";
    test::TempApp media;
    Make_Medium(media.Path("m"), "260105", 2);
    const QStringList days{"260105", "260106"};
    Pc local;
    local.Out({"receive", "usb", "--model", "250", "--medium", media.Path("m")});

    // The server has the rows (as a server installation had them before its
    // day files moved in) and one of the days' files; the other lies in the
    // folder of the PC that received it, beside a file that is no day file.
    const QString server = New_Server_Database(local.app);
    Pc first(server), second(server);
    first.Out({"receive", "usb", "--model", "250", "--medium", media.Path("m")});
    {
        const DbTarget t = Parse_DB_Server(server, first.dir);
        Cls_DB db(t);
        db.Execute("DELETE FROM X_DAYFILE WHERE D_F1 = ?", {kCar + kDriver + "260106"});
    }
    EXPECT_NE(Days_Seen(second, days), Days_Seen(local, days)); // "day file: none"
    for (const QString& day : days) {
        const QString rel = "/pack/12AB00/" + day + "/" + day + "000123.vex";
        QDir().mkpath(QFileInfo(first.dir + rel).path());
        ASSERT_TRUE(QFile::copy(local.dir + rel, first.dir + rel));
    }
    first.app.Write_File("site/pack/12AB00/260105/notes.vex", "x");

    const CliRun moved = first.Run({"dayfiles", "to-database"});
    EXPECT_EQ(moved.code, 1) << moved.out.toStdString() << moved.err.toStdString(); // the stray file is named
    EXPECT_TRUE(moved.out.contains("day files stored 1, merged with the server's 1")) << moved.out.toStdString();
    EXPECT_TRUE(moved.out.contains("notes.vex: not the name of a day file")) << moved.out.toStdString();
    EXPECT_EQ(Days_Seen(second, days), Days_Seen(local, days));

    // Again: nothing new, the same days.
    QFile::remove(first.dir + "/pack/12AB00/260105/notes.vex");
    EXPECT_TRUE(first.Out({"dayfiles", "to-database"}).contains("day files stored 0, merged with the server's 2"));
    EXPECT_EQ(Days_Seen(second, days), Days_Seen(local, days));
    // On the embedded database the files stay files.
    EXPECT_EQ(local.Run({"dayfiles", "to-database"}).code, 1);
}
