// The ledger of receptions: what a reception stored and what the checks
// noted, told in its last line and kept through backups and optimising, never
// sent in a package; the checks read what the store held before.
#include "core/Mod_Main.h"
#include "exchange/Reception_Ledger.h"
#include "store/Cls_DB.h"
#include "support/AppSession.h"
#include "support/CliRun.h"
#include "support/PutRow.h"
#include "support/TempApp.h"

#include <QDir>
#include <QProcess>
#include <QSqlDatabase>
#include <QSqlQuery>
#include <gtest/gtest.h>

#include <set>

using namespace vex;

namespace {

test::CliRun Cli(const QString& app, QStringList args)
{
    return test::Vexcli(QStringList{"--app-dir", app} + args);
}

int Ledger_Rows(const QString& database)
{
    const QString name = QStringLiteral("ledger-count");
    int rows = -1;
    {
        QSqlDatabase db = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), name);
        db.setDatabaseName(database);
        if (db.open()) {
            QSqlQuery q(db);
            if (q.exec(QStringLiteral("SELECT COUNT(*) FROM X_LEDGER")) && q.next())
                rows = q.value(0).toInt();
        }
    }
    QSqlDatabase::removeDatabase(name);
    return rows;
}

// A day of the car under a key, with its summary and minute rows.
void Put_Day(const QString& key, const QString& start, const QString& end, const QString& speeds)
{
    test::Put_Row("D_D1", key, {{"D_F2", key.left(6)}, {"D_F3", key.mid(6, 6)}, {"D_F4", key.right(6)},
                                {"D_F5", start}, {"D_F6", key.right(6)}, {"D_F7", end}});
    test::Put_Row("D_D3", key, {{"D_F2", speeds}});
}

std::set<Finding_Kind> Finding_Kinds(const std::vector<Finding>& findings)
{
    std::set<Finding_Kind> kinds;
    for (const Finding& f : findings)
        kinds.insert(f.kind);
    return kinds;
}

} // namespace

TEST(Ledger, AMediumWithASlippingSensorIsNotedInTheLastLineAndKeptThroughBackupAndOptimise)
{
    test::TempApp temp;
    const QString app = temp.Path("site");
    ASSERT_EQ(Cli(app, {"init"}).code, 0);
    ASSERT_EQ(Cli(app, {"driver", "add", "000123", "--name", "홍길동"}).code, 0);
    ASSERT_EQ(Cli(app, {"driver", "add", "000124", "--name", "김철수"}).code, 0);
    ASSERT_EQ(Cli(app, {"sample", "usb", "--model", "250", "--out", temp.Path("slip"), "--car", "12AB00", "--driver",
                        "000123", "--from", "261103", "--days", "2", "--damage", "slipping-sensor"})
                  .code,
              0);
    ASSERT_EQ(Cli(app, {"sample", "usb", "--model", "250", "--out", temp.Path("clean"), "--car", "12AC00",
                        "--driver", "000124", "--from", "261103", "--days", "2", "--seed", "2"})
                  .code,
              0);

    test::CliRun r = Cli(app, {"receive", "usb", "--model", "250", "--medium", temp.Path("slip")});
    ASSERT_EQ(r.code, 0) << r.err.toStdString();
    EXPECT_TRUE(r.out.contains("2 day(s) stored\n2 days stored, 2 with a note\n")) << r.out.toStdString();
    EXPECT_TRUE(r.out.contains("12AB00000123261103  minute distances ")) << r.out.toStdString();
    EXPECT_TRUE(r.out.contains("-30% apart (check the speed factor or the distance sensor)")) << r.out.toStdString();
    r = Cli(app, {"receive", "usb", "--model", "250", "--medium", temp.Path("clean")});
    EXPECT_TRUE(r.out.contains("2 days stored, 0 with a note\n")) << r.out.toStdString();

    // The ledger by the findings, by kind, by car and day.
    r = Cli(app, {"ledger", "--findings"});
    EXPECT_EQ(r.out.count("\n    distance  "), 2) << r.out.toStdString();
    EXPECT_FALSE(r.out.contains("12AC00")) << r.out.toStdString();
    r = Cli(app, {"ledger", "--car", "12AC00", "--from", "261104", "--to", "261104"});
    EXPECT_TRUE(r.out.contains("stored  12AC00000124261104")) << r.out.toStdString();
    EXPECT_FALSE(r.out.contains("261103")) << r.out.toStdString();
    EXPECT_EQ(Cli(app, {"ledger", "--kind", "jump"}).out, "no reception in the ledger\n");
    EXPECT_EQ(Cli(app, {"ledger", "--kind", "nonsense"}).code, 2);

    // A package carries the days, never the ledger; a backup and an optimise keep it.
    ASSERT_EQ(Cli(app, {"export", "--from", "261101", "--to", "261130", "--out", temp.Path("out.zip")}).code, 0);
    QProcess unzip;
    unzip.start("unzip", {"-o", "-q", temp.Path("out.zip"), "-d", temp.Path("unpacked")});
    ASSERT_TRUE(unzip.waitForFinished(30000));
    EXPECT_EQ(Ledger_Rows(temp.Path("unpacked/exp.mdb")), 0);
    // Another site imports it: the same distance notes, on the import's entry.
    const QString other = temp.Path("other");
    ASSERT_EQ(Cli(other, {"init"}).code, 0);
    r = Cli(other, {"import", temp.Path("out.zip")});
    // The package carries no driver register rows: the drivers are new there.
    EXPECT_TRUE(r.out.contains("4 days stored, 4 with a note\n")) << r.out.toStdString();
    r = Cli(other, {"ledger", "--findings"});
    EXPECT_TRUE(r.out.contains("  import  out.zip")) << r.out.toStdString();
    EXPECT_EQ(r.out.count("\n    distance  "), 2) << r.out.toStdString();
    ASSERT_EQ(Cli(app, {"backup", "--from", "261103", "--to", "261103"}).code, 0);
    ASSERT_EQ(Cli(app, {"optimise"}).code, 0);
    r = Cli(app, {"ledger"});
    EXPECT_EQ(r.out.count("stored  "), 4) << r.out.toStdString();
    EXPECT_EQ(Ledger_Rows(app + "/db/morix.mdb"), 2);
}

TEST(Ledger, TheChecksOfAStoredDayReadWhatTheStoreHeldBefore)
{
    test::AppSession session;
    Cls_DB& db = *G().DB;
    const QString speeds = QString(600, '0') + QString("3330").repeated(300) + QString(1080, '0'); // 51 and 48 km/h
    Put_Day("12AB00000123261110", "0500", "1400", speeds);
    test::Put_Row("S_D2", "000123", {{"D_F2", "홍길동"}});
    test::Put_Row("S_D2", "000777", {{"D_F2", "000777"}});

    // Alone and named: nothing to note.
    EXPECT_TRUE(Check_Stored_Day(db, "12AB00000123261110", "medium A", {}).empty());

    // The same minutes under another car that day: a copied medium; another
    // driver of the car at the same hours; a driver known by code only.
    Put_Day("12AC00000777261110", "0600", "0700", speeds);
    Put_Day("12AB00000777261110", "1300", "1500", QString(2880, '0'));
    EXPECT_EQ(Finding_Kinds(Check_Stored_Day(db, "12AB00000123261110", "medium A", {})),
              (std::set{Finding_Kind::Overlapping_Trip, Finding_Kind::Copied_Day}));
    EXPECT_EQ(Finding_Kinds(Check_Stored_Day(db, "12AC00000777261110", "medium B", {})),
              (std::set{Finding_Kind::Copied_Day, Finding_Kind::Unknown_Driver}));

    // A day before the car's first, while newer ones are stored; the days of
    // the same reception are no earlier knowledge.
    Put_Day("12AB00000123261101", "0800", "0900", QString(2880, '0'));
    EXPECT_EQ(Finding_Kinds(Check_Stored_Day(db, "12AB00000123261101", "medium A", {})),
              std::set{Finding_Kind::Older_Day});
    EXPECT_TRUE(Check_Stored_Day(db, "12AB00000123261101", "medium A",
                                 {"12AB00000123261110", "12AB00000777261110"})
                    .empty());

    // The same key stored before from another medium at the same hours.
    Ledger_Day earlier{"12AB00000123261101", "stored", {}, {}, {}, {}};
    Record_Reception(db, Ledger_Road::Usb, "medium B", {}, {earlier});
    const Ledger_Entry again = Record_Reception(db, Ledger_Road::Usb, "medium C", "1 day(s) stored", {earlier});
    ASSERT_EQ(again.days.size(), 1u);
    EXPECT_EQ(Finding_Kinds(again.days[0].findings),
              (std::set{Finding_Kind::Older_Day, Finding_Kind::Overlapping_Trip}));
    EXPECT_EQ(again.Stored_With_Findings(), 1);
    const auto read = Read_Ledger(db, {QString(), QString(), "12AB00", QString(), "overlap", false});
    ASSERT_EQ(read.size(), 1u);
    EXPECT_EQ(read[0].source, "medium C");
    ASSERT_EQ(read[0].days.size(), 1u);
    ASSERT_EQ(read[0].days[0].findings.size(), 1u);
    EXPECT_EQ(read[0].days[0].findings[0].other, "medium B");
    EXPECT_EQ(read[0].days[0].first, "2611010800");

    // One reception of several cars and days, its days out of calendar
    // order: each is checked against the others of its own day.
    const Ledger_Entry mixed = Record_Reception(
        db, Ledger_Road::Import, "package", {},
        {{"12AC00000777261110", "stored", {}, {}, {}, {}}, {"12AB00000123261101", "stored", {}, {}, {}, {}},
         {"12AB00000123261110", "stored", {}, {}, {}, {}}});
    ASSERT_EQ(mixed.days.size(), 3u);
    EXPECT_TRUE(Finding_Kinds(mixed.days[0].findings).count(Finding_Kind::Copied_Day));
    EXPECT_FALSE(Finding_Kinds(mixed.days[1].findings).count(Finding_Kind::Copied_Day));
    EXPECT_TRUE(Finding_Kinds(mixed.days[2].findings).count(Finding_Kind::Copied_Day));
    EXPECT_EQ(mixed.days[0].first, "2611100600");
    EXPECT_EQ(mixed.days[1].first, "2611010800");
    EXPECT_EQ(mixed.days[2].first, "2611100500");
}
