// Nothing is lost when the data is kept: a compacted copy never replaces
// days received after it, a backup never replaces its package with an
// emptier one nor deletes half a period, a move never reads the live
// database into itself, a rebuild never replaces a good day file with a
// damaged one, and a re-key changes all of its days or none.
#include "core/Messages.h"
#include "exchange/Data_Package.h"
#include "exchange/Db_Keeping.h"
#include "exchange/KeepingFixture.h"
#include "exchange/Package.h"
#include "store/DayFile.h"
#include "support/CliRun.h"

#include <QSqlDatabase>
#include <QSqlQuery>

using namespace vex;

namespace {

class KeepingSafety : public test::Keeping {
protected:
    // A day received after the optimise, as a reception writes it.
    void Receive_Another_Day(const QString& day)
    {
        Recordset rs = Row_Or_New(db(), "D_D1", kTrip + day);
        rs.Set("D_F2", test::kSiteCar);
        rs.Set("D_F3", test::kSiteDriver);
        rs.Set("D_F4", day);
        rs.Update();
    }

    const QString kTrip = test::kSiteCar + test::kSiteDriver;
};

TEST_F(KeepingSafety, ACompactedCopyGivesWayToDaysReceivedAfterIt)
{
    // Optimise, receive, restart: the copy is older than the database and goes.
    ASSERT_TRUE(Optimise(db()).ok);
    ASSERT_TRUE(QFile::exists(site + "/db/temp2.mdb"));
    Receive_Another_Day("260107");
    session.reset();
    EXPECT_EQ(Take_Over_Compaction(site), Compaction_Takeover::Stale);
    EXPECT_FALSE(QFile::exists(site + "/db/temp2.mdb"));
    Start();
    EXPECT_EQ(Rows("SELECT * FROM D_D1"), 3) << "the day received after the optimise stays";

    // Optimise, restart with nothing received: the copy takes the file's place.
    db().Execute("DELETE * FROM D_D1 WHERE D_F4 = '260107'");
    ASSERT_TRUE(Optimise(db()).ok);
    const auto before = Dump_All();
    session.reset();
    EXPECT_EQ(Take_Over_Compaction(site), Compaction_Takeover::Taken);
    EXPECT_FALSE(QFile::exists(site + "/db/temp2.mdb"));
    EXPECT_EQ(Take_Over_Compaction(site), Compaction_Takeover::Nothing);
    Start();
    EXPECT_EQ(Dump_All(), before);

    // A copy without the fingerprint of its source is never taken.
    session.reset();
    ASSERT_TRUE(QFile::copy(site + "/db/morix.mdb", site + "/db/temp2.mdb"));
    EXPECT_EQ(Take_Over_Compaction(site), Compaction_Takeover::Stale);
    Start();
}

TEST_F(KeepingSafety, VexcliTakesOverOnlyACopyOfTheLiveFile)
{
    // A nightly optimise, then a day received by another program: the next
    // command keeps the day and says why the copy went.
    session.reset();
    test::CliRun r = test::Vexcli({"--app-dir", site, "optimise"});
    ASSERT_EQ(r.code, 0) << r.out.toStdString() << r.err.toStdString();
    Start();
    Receive_Another_Day("260108");
    session.reset();
    r = test::Vexcli({"--app-dir", site, "show"});
    EXPECT_EQ(r.code, 0) << r.err.toStdString();
    EXPECT_TRUE(r.err.contains("Optimise again")) << r.err.toStdString();
    Start();
    EXPECT_EQ(Rows("SELECT * FROM D_D1 WHERE D_F4 = '260108'"), 1);

    // Optimise and nothing else: the next command takes the copy over.
    session.reset();
    ASSERT_EQ(test::Vexcli({"--app-dir", site, "optimise"}).code, 0);
    r = test::Vexcli({"--app-dir", site, "show"});
    EXPECT_EQ(r.code, 0);
    EXPECT_FALSE(r.err.contains("Optimise again")) << r.err.toStdString();
    EXPECT_FALSE(QFile::exists(site + "/db/temp2.mdb"));
    Start();
    EXPECT_EQ(Rows("SELECT * FROM D_D1"), 3);
}

TEST_F(KeepingSafety, ABackupNeverReplacesItsPackageNorDeletesHalfAPeriod)
{
    const auto before = Dump_All();
    const QString zip = site + "/Exp/260101260131.zip";

    // Cut short in its delete step (a table that refuses the delete stands
    // for a failure or a killed process): every table keeps its rows.
    db().Execute("CREATE TRIGGER refuse BEFORE DELETE ON D_D7 BEGIN SELECT RAISE(ABORT, 'disk I/O error'); END");
    Exchange_Report r = Backup(db(), "260101", "260131");
    EXPECT_FALSE(r.ok);
    EXPECT_EQ(Dump_All(), before) << "no table emptied while others stay";
    ASSERT_TRUE(Zip_Holds(zip, "exp.mdb"));
    db().Execute("DROP TRIGGER refuse");

    // Run again: the package of the first run holds the period and stays;
    // nothing leaves the database.
    r = Backup(db(), "260101", "260131");
    EXPECT_FALSE(r.ok);
    EXPECT_TRUE(r.message.contains("260101260131.zip")) << r.message.toStdString();
    EXPECT_EQ(Dump_All(), before);

    // With the first package moved away the backup runs; a second run for
    // the same period finds its package and deletes nothing further.
    ASSERT_TRUE(QFile::rename(zip, tmp.path() + "/first.zip"));
    r = Backup(db(), "260101", "260131");
    ASSERT_TRUE(r.ok) << r.message.toStdString();
    EXPECT_EQ(Rows("SELECT * FROM D_D1"), 0);
    const QByteArray package = [&] {
        QFile f(zip);
        f.open(QIODevice::ReadOnly);
        return f.readAll();
    }();
    r = Backup(db(), "260101", "260131");
    EXPECT_FALSE(r.ok);
    QFile f(zip);
    ASSERT_TRUE(f.open(QIODevice::ReadOnly));
    EXPECT_EQ(f.readAll(), package) << "the package of the period is never written over";
    ASSERT_TRUE(Import_Package(db(), zip).ok);
    EXPECT_EQ(Dump_All(), before);
}

TEST_F(KeepingSafety, AMoveFromThisInstallationIsRefused)
{
    const auto rows = Dump_All();
    const auto files = Day_Files();
    for (const QString& source : {site + "/db/morix.mdb", site + "/db", site + "/db/../db/morix.mdb"}) {
        const Exchange_Report r = Move_From(db(), source, 1, "260101");
        EXPECT_FALSE(r.ok) << source.toStdString();
        EXPECT_EQ(r.message, LoadResString(5015));
    }
    EXPECT_EQ(Day_Files(), files);
    EXPECT_EQ(Dump_All(), rows);

    session.reset();
    const test::CliRun r = test::Vexcli({"--app-dir", site, "move", "--source", site + "/db/morix.mdb", "--kind",
                                         "1", "--from", "260101"});
    EXPECT_EQ(r.code, 1) << r.out.toStdString();
    Start();
    EXPECT_EQ(Day_Files(), files);
}

TEST_F(KeepingSafety, ARebuildFromADamagedFileChangesNothing)
{
    const auto files = Day_Files();
    const auto rows = Dump_All();
    const QString good = site + "/pack/12AB00/260106/260106000123.vex";
    QFile in(good);
    ASSERT_TRUE(in.open(QIODevice::ReadOnly));
    const QByteArray half = in.read(in.size() / 2);
    QDir().mkpath(tmp.path() + "/damaged");
    QFile damaged(tmp.path() + "/damaged/260106000123.vex");
    ASSERT_TRUE(damaged.open(QIODevice::WriteOnly));
    damaged.write(half);
    damaged.close();

    const Exchange_Report r = Rebuild_Day(db(), damaged.fileName(), "12AB00");
    EXPECT_FALSE(r.ok);
    EXPECT_EQ(r.message, "파일입력 실패");
    EXPECT_EQ(Day_Files(), files) << "the good day file stays";
    EXPECT_EQ(Dump_All(), rows);
}

TEST_F(KeepingSafety, AReKeyChangesAllOfItsDaysOrNone)
{
    const auto rows = Dump_All();
    const auto files = Day_Files();
    // A collision on the second day: the first day stays under its driver too.
    const QString taken = site + "/pack/12AB00/260106/260106000777.vex";
    ASSERT_TRUE(QFile::copy(site + "/pack/12AB00/260106/260106000123.vex", taken));
    Exchange_Report r = Rekey(db(), "12AB00", "000123", "260105", "260106", "000777");
    EXPECT_FALSE(r.ok);
    EXPECT_EQ(r.message, "동일한 차량번호 데이터가 존재합니다");
    EXPECT_TRUE(QFile::exists(site + "/pack/12AB00/260105/260105000123.vex"));
    EXPECT_FALSE(QFile::exists(site + "/pack/12AB00/260105/260105000777.vex"));
    EXPECT_EQ(Dump_All(), rows);
    QFile::remove(taken);
    EXPECT_EQ(Day_Files(), files);

    // A failure among the rows rolls all of them back and moves no file.
    db().Execute("CREATE TRIGGER refuse BEFORE UPDATE ON D_D2 BEGIN SELECT RAISE(ABORT, 'disk I/O error'); END");
    r = Rekey(db(), "12AB00", "000123", "260105", "260106", "000777");
    EXPECT_FALSE(r.ok);
    EXPECT_EQ(Dump_All(), rows);
    EXPECT_EQ(Day_Files(), files);
    db().Execute("DROP TRIGGER refuse");

    // Killed after the rows committed and before the files moved: the next
    // start of either program moves them.
    {
        db().Ensure_Schema();
        Cls_DB::Transaction t(db());
        for (const QString& table : Day_Tables())
            db().Execute("UPDATE " + table + " SET D_F1 = ? || substr(D_F1, 13) WHERE D_F1 LIKE ?",
                         {"12AB00000777", "12AB00000123%"});
        db().Execute("UPDATE D_D1 SET D_F3 = '000777' WHERE D_F3 = '000123'");
        for (const QString day : {"260105", "260106"})
            db().Execute("INSERT INTO X_RENAME (D_F1, D_F2) VALUES (?, ?)",
                         {Day_File_Name("12AB00", "000123", day), Day_File_Name("12AB00", "000777", day)});
        t.Commit();
    }
    session.reset();
    const test::CliRun started = test::Vexcli({"--app-dir", site, "show"});
    EXPECT_EQ(started.code, 0) << started.err.toStdString();
    Start();
    for (const QString day : {"260105", "260106"}) {
        EXPECT_TRUE(QFile::exists(site + "/pack/12AB00/" + day + "/" + day + "000777.vex")) << day.toStdString();
        EXPECT_FALSE(QFile::exists(site + "/pack/12AB00/" + day + "/" + day + "000123.vex")) << day.toStdString();
    }
    EXPECT_EQ(Rows("SELECT * FROM X_RENAME"), 0);

    // And a whole re-key back: rows and files under the old driver again.
    r = Rekey(db(), "12AB00", "000777", "260105", "260106", "000123");
    ASSERT_TRUE(r.ok) << r.message.toStdString();
    EXPECT_EQ(r.files.size(), 2);
    EXPECT_EQ(Dump_All(), rows);
    EXPECT_EQ(Day_Files(), files);
}

TEST_F(KeepingSafety, AWriterWaitsForAnotherProgramThatHoldsTheDatabase)
{
    // Another program holds the write lock; a batch started meanwhile waits,
    // says so, and writes once the lock is let go.
    session.reset();
    {
        QSqlDatabase holder = QSqlDatabase::addDatabase("QSQLITE", "holder");
        holder.setDatabaseName(site + "/db/morix.mdb");
        ASSERT_TRUE(holder.open());
        QSqlQuery lock(holder);
        ASSERT_TRUE(lock.exec("BEGIN IMMEDIATE"));

        Cls_DB waiting(Parse_DB_Server(site + "/db/morix.mdb", site));
        ASSERT_EQ(waiting.DB_State(), 1);
        QStringList notices;
        waiting.Wait_Notice = [&](const QString& text) {
            notices << text;
            // The other program finishes while this one waits.
            if (notices.size() == 1)
                QSqlQuery(holder).exec("COMMIT");
        };
        {
            Cls_DB::Batch batch(waiting);
            waiting.Execute("DELETE * FROM D_H");
        }
        EXPECT_EQ(notices.size(), 1);
        EXPECT_EQ(waiting.Engine_Failures(), 0) << waiting.Last_Engine_Failure().toStdString();

        // Held for longer than the writer will wait: it gives up and says so.
        ASSERT_TRUE(lock.exec("BEGIN IMMEDIATE"));
        waiting.Wait_Notice = [&](const QString& text) { notices << text; };
        waiting.Write_Wait_Seconds = 5;
        EXPECT_THROW(Cls_DB::Transaction t(waiting), std::exception);
        EXPECT_FALSE(waiting.Last_Engine_Failure().isEmpty());
        QSqlQuery(holder).exec("ROLLBACK");
    }
    QSqlDatabase::removeDatabase("holder");
    Start();
}

} // namespace
