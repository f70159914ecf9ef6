// The keeping commands as a scheduler or a user runs them, and killed half
// way: the live database still opens and passes its integrity check, and
// a backup never deletes a period whose package isn't whole.
#include "exchange/Package.h"
#include "support/CliRun.h"
#include "support/ReceivedSite.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QProcess>
#include <QSqlDatabase>
#include <QSqlQuery>
#include <QTemporaryDir>
#include <QEventLoop>
#include <QFileSystemWatcher>
#include <QTimer>
#include <gtest/gtest.h>

using namespace vex;

namespace {

struct Db_Look {
    explicit Db_Look(const QString& path) : name("look-" + path)
    {
        QSqlDatabase db = QSqlDatabase::addDatabase("QSQLITE", name);
        db.setDatabaseName(path);
        db.open();
    }
    ~Db_Look()
    {
        QSqlDatabase::database(name, false).close();
        QSqlDatabase::removeDatabase(name);
    }
    QString Value(const QString& sql)
    {
        QSqlQuery q(QSqlDatabase::database(name, false));
        return q.exec(sql) && q.next() ? q.value(0).toString() : QStringLiteral("<none>");
    }
    bool Exec(const QString& sql)
    {
        QSqlQuery q(QSqlDatabase::database(name, false));
        return q.exec(sql);
    }
    QString name;
};

class KeepCli : public ::testing::Test {
protected:
    void SetUp() override
    {
        QString why;
        const QString received = test::Received_Site(&why);
        ASSERT_FALSE(received.isEmpty()) << why.toStdString();
        site = tmp.path() + "/site";
        test::Copy_Tree(received, site);
        // A fleet: the two received days copied under 400 more cars.
        Db_Look db(site + "/db/morix.mdb");
        ASSERT_TRUE(db.Exec("BEGIN"));
        for (const char* t : {"D_D1", "D_D2", "D_D3", "D_D4", "D_D6", "D_D7", "D_D8", "D_D9", "D_DI"}) {
            ASSERT_TRUE(db.Exec(QStringLiteral("CREATE TEMP TABLE x AS SELECT * FROM %1 WHERE D_F1 LIKE '12AB00%%'").arg(t)));
            for (int c = 0; c < 400; ++c) {
                const QString car = QStringLiteral("%1").arg(c, 4, 16, QLatin1Char('0')).toUpper() + "00";
                db.Exec(QStringLiteral("UPDATE x SET D_F1 = '%1' || substr(D_F1, 7)").arg(car));
                if (QString(t) == "D_D1")
                    db.Exec(QStringLiteral("UPDATE x SET D_F2 = '%1'").arg(car));
                ASSERT_TRUE(db.Exec(QStringLiteral("INSERT INTO %1 SELECT * FROM x").arg(t)));
            }
            db.Exec("DROP TABLE x");
        }
        ASSERT_TRUE(db.Exec("COMMIT"));
    }
    QString Db() const { return site + "/db/morix.mdb"; }

    QTemporaryDir tmp;
    QString site;
};

} // namespace

TEST_F(KeepCli, KilledHalfWayTheDatabaseStaysSound)
{
    test::CliRun r = test::Vexcli({"--app-dir", site, "export", "--from", "260101", "--to", "260131", "--out",
                                   tmp.path() + "/fleet.zip"});
    ASSERT_EQ(r.code, 0) << r.err.toStdString();
    EXPECT_TRUE(r.out.contains("D_D1 802")) << r.out.toStdString();
    {
        Db_Look db(Db());
        ASSERT_TRUE(db.Exec("DELETE FROM D_D3"));
    }
    for (const QStringList& command :
         {QStringList{"import", tmp.path() + "/fleet.zip"}, QStringList{"optimise"},
          QStringList{"backup", "--from", "260105", "--to", "260105"}}) {
        // Killed at once, and at points the command tells: after its first
        // and third line of progress, or for the optimise, which tells
        // none, after the first and third change in the database folder.
        for (int told : {0, 1, 3}) {
            QProcess p;
            QFileSystemWatcher folder({site + "/db"});
            QEventLoop loop;
            int seen = 0;
            const auto count = [&](int n) {
                seen += n;
                if (seen >= told)
                    loop.quit();
            };
            if (command[0] == "optimise")
                QObject::connect(&folder, &QFileSystemWatcher::directoryChanged, &loop, [&] { count(1); });
            else
                QObject::connect(&p, &QProcess::readyReadStandardError, &loop,
                                 [&] { count(int(p.readAllStandardError().count('\n'))); });
            QObject::connect(&p, &QProcess::finished, &loop, &QEventLoop::quit);
            QTimer::singleShot(120000, &loop, &QEventLoop::quit); // only a guard against a hang
            p.start(VEXCLI_PATH, QStringList{"--app-dir", site} + command);
            ASSERT_TRUE(p.waitForStarted());
            if (told > 0)
                loop.exec();
            p.kill();
            p.waitForFinished();
            Db_Look db(Db());
            EXPECT_EQ(db.Value("PRAGMA integrity_check"), "ok") << command.join(' ').toStdString() << " " << told;
            // What a killed backup deleted, its package holds whole.
            const int left = db.Value("SELECT COUNT(*) FROM D_D1 WHERE D_F4 = '260105'").toInt();
            if (command[0] == "backup" && left < 401)
                EXPECT_TRUE(Zip_Holds(site + "/Exp/260105260105.zip", "exp.mdb")) << told;
            // A compaction's copy is whole or absent.
            if (QFile::exists(site + "/db/temp2.mdb")) {
                Db_Look copy(site + "/db/temp2.mdb");
                EXPECT_EQ(copy.Value("PRAGMA integrity_check"), "ok") << told;
            }
        }
    }
    // Run to the end, the import brings every row back.
    r = test::Vexcli({"--app-dir", site, "import", tmp.path() + "/fleet.zip"});
    EXPECT_EQ(r.code, 0) << r.out.toStdString() << r.err.toStdString();
    Db_Look db(Db());
    EXPECT_EQ(db.Value("SELECT COUNT(*) FROM D_D3"), "802");
}

TEST(Keep_Cli, ExportToAFileLeavesNoCopyInExp)
{
    QString why;
    const QString received = test::Received_Site(&why);
    ASSERT_FALSE(received.isEmpty()) << why.toStdString();
    QTemporaryDir tmp;
    const QString site = tmp.path() + "/site";
    test::Copy_Tree(received, site);
    const QStringList exp = QDir(site + "/Exp").entryList({"*.zip"}, QDir::Files);

    test::CliRun r = test::Vexcli({"--app-dir", site, "export", "--from", "260101", "--to", "260131", "--out",
                                   tmp.path() + "/out.zip"});
    ASSERT_EQ(r.code, 0) << r.err.toStdString();
    EXPECT_TRUE(Zip_Holds(tmp.path() + "/out.zip", "exp.mdb"));
    EXPECT_EQ(QDir(site + "/Exp").entryList({"*.zip"}, QDir::Files), exp);
    // FILE can't be written: no copy waits in "\exp" either.
    r = test::Vexcli({"--app-dir", site, "export", "--from", "260101", "--to", "260131", "--out",
                      tmp.path() + "/none/out.zip"});
    EXPECT_EQ(r.code, 1);
    EXPECT_EQ(QDir(site + "/Exp").entryList({"*.zip"}, QDir::Files), exp);
}
