// Keeping the data on a received site: packages out and back, the backup,
// compaction, re-keying, rebuilding a day and the move from an older
// installation. Each test works on its own copy of the received site.
#include "exchange/Data_Package.h"
#include "exchange/Db_Keeping.h"
#include "exchange/KeepingFixture.h"
#include "exchange/Package.h"
#include "store/DayFile.h"
#include "support/HandZip.h"

#include <QSqlDatabase>
#include <QSqlQuery>

using namespace vex;

namespace {

using test::Keeping;

const QString kTrip = test::kSiteCar + test::kSiteDriver;

QByteArray Read_All(const QString& path)
{
    QFile f(path);
    return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray();
}

// Runs statements on a SQLite file of its own connection.
void Sql_On(const QString& path, const QStringList& statements)
{
    {
        QSqlDatabase db = QSqlDatabase::addDatabase("QSQLITE", "edit-package");
        db.setDatabaseName(path);
        ASSERT_TRUE(db.open());
        QSqlQuery q(db);
        for (const QString& sql : statements)
            EXPECT_TRUE(q.exec(sql)) << sql.toStdString();
    }
    QSqlDatabase::removeDatabase("edit-package");
}

} // namespace

TEST_F(Keeping, ExportDeleteImportBringsEveryRowAndDayFileBack)
{
    const auto before = Dump_All();
    const auto files = Day_Files();
    ASSERT_EQ(before.at("D_D1").size(), 2u);
    ASSERT_EQ(files.size(), 2u);

    const Selection all{"260101", "260131"};
    const Exchange_Report out = Export_Package(db(), all, "round");
    ASSERT_TRUE(out.ok) << out.message.toStdString();
    EXPECT_EQ(out.files.size(), 2);
    EXPECT_TRUE(QFile::exists(site + "/Exp/round.zip")) << out.message.toStdString();
    EXPECT_FALSE(QFile::exists(site + "/Exp/round.mdb"));

    const Exchange_Report gone = Delete_Selection(db(), all);
    ASSERT_TRUE(gone.ok);
    EXPECT_EQ(Rows("SELECT * FROM D_D1"), 0);
    EXPECT_EQ(Rows("SELECT * FROM S_D1"), 1) << "registers stay";
    QDir(site + "/pack").removeRecursively();

    for (int pass = 0; pass < 2; ++pass) { // twice: the same rows
        const Exchange_Report in = Import_Package(db(), site + "/Exp/round.zip");
        ASSERT_TRUE(in.ok) << in.message.toStdString();
        EXPECT_EQ(Dump_All(), before) << "pass " << pass;
        EXPECT_EQ(Day_Files(), files);
    }

    // The package's row wins over a fuller live row of the same key.
    db().Execute("UPDATE D_D1 SET D_F8 = 99999, D_F9 = 77 WHERE D_F1 = ?", {kTrip + "260105"});
    ASSERT_TRUE(Import_Package(db(), site + "/Exp/round.zip").ok);
    EXPECT_EQ(Dump("D_D1"), before.at("D_D1"));

    // A package whose database is no database changes nothing.

    {
        QFile junk(tmp.path() + "/exp.mdb");
        ASSERT_TRUE(junk.open(QIODevice::WriteOnly));
        junk.write(QByteArray("SQLite format 3") + QByteArray(1, '\0') + QByteArray(5000, 'x'));
    }
    ASSERT_TRUE(Zip_Make(tmp.path() + "/junk.zip", {{tmp.path() + "/exp.mdb", "exp.mdb"}}));
    db().Execute("DELETE * FROM D_D2");
    const auto kept = Dump_All();
    const Exchange_Report bad = Import_Package(db(), tmp.path() + "/junk.zip");
    EXPECT_FALSE(bad.ok);
    EXPECT_EQ(Dump_All(), kept);
    // Nor does a package without exp.mdb.
    ASSERT_TRUE(Zip_Make(tmp.path() + "/none.zip", {{tmp.path() + "/exp.mdb", "other.mdb"}}));
    EXPECT_TRUE(Import_Package(db(), tmp.path() + "/none.zip").message.contains("exp.mdb"));
    EXPECT_EQ(Dump_All(), kept);
}

TEST_F(Keeping, BackupMovesThePeriodOutOnlyOnceItsPackageIsWhole)
{
    EXPECT_EQ(Backup_Period(db()), std::make_pair(QString("260101"), QString("260131")));
    const Exchange_Report r = Backup(db(), "260105", "260105");
    ASSERT_TRUE(r.ok) << r.message.toStdString();
    EXPECT_EQ(Rows("SELECT * FROM D_D1"), 1);
    EXPECT_EQ(Rows("SELECT * FROM D_D1 WHERE D_F4 = '260106'"), 1);
    const QString zip = site + "/Exp/260105260105.zip";
    ASSERT_TRUE(Zip_Holds(zip, "exp.mdb"));
    QTemporaryDir look;
    ASSERT_TRUE(UnZip_Make(zip, look.path()).ok);
    auto inside = Db_Source::Open(look.path() + "/exp.mdb");
    ASSERT_TRUE(inside);
    EXPECT_EQ(inside->Read("D_D1").rows.size(), 1u);

    // A period without days: an empty package, nothing deleted.
    const Exchange_Report empty = Backup(db(), "250101", "250131");
    ASSERT_TRUE(empty.ok);
    EXPECT_EQ(Rows("SELECT * FROM D_D1"), 1);

    // A package that can't be written deletes nothing: the folder is a file.
    QDir(site + "/Exp").removeRecursively();
    QFile::remove(site + "/exp");
    for (const char* name : {"/Exp", "/exp"}) {
        QFile blocker(site + name);
        ASSERT_TRUE(blocker.open(QIODevice::WriteOnly));
    }
    EXPECT_FALSE(Backup(db(), "260106", "260106").ok);
    EXPECT_EQ(Rows("SELECT * FROM D_D1"), 1);
}

TEST_F(Keeping, OptimiseRekeyAndRebuild)
{
    for (int pass = 0; pass < 2; ++pass) { // twice before a restart: the copy is written again
        const Optimise_Result o = Optimise(db());
        ASSERT_TRUE(o.ok) << o.message.toStdString();
        EXPECT_TRUE(o.swapAtStart);
        EXPECT_GT(o.after, 0);
        auto copy = Db_Source::Open(site + "/db/temp2.mdb");
        ASSERT_TRUE(copy);
        EXPECT_EQ(copy->Read("D_D1").rows.size(), 2u);
    }

    // Re-keying a day onto a driver who has that day's file already stops.
    const QString taken = site + "/pack/12AB00/260106/260106000777.vex";
    QFile::copy(site + "/pack/12AB00/260106/260106000123.vex", taken);
    Exchange_Report r = Rekey(db(), "12AB00", "000123", "260105", "260106", "000777");
    EXPECT_EQ(r.message, "동일한 차량번호 데이터가 존재합니다");
    EXPECT_EQ(Rows("SELECT * FROM D_D1 WHERE D_F3 = '000123'"), 2) << "no row moves before its files";
    QFile::remove(taken);
    r = Rekey(db(), "12AB00", "000123", "260105", "260106", "000777");
    ASSERT_TRUE(r.ok) << r.message.toStdString();
    EXPECT_EQ(Rows("SELECT * FROM D_D1 WHERE D_F3 = '000777' AND LEFT(D_F1,12) = '12AB00000777'"), 2);
    EXPECT_EQ(Rows("SELECT * FROM D_D3 WHERE (MID(D_F1,7,6)) = '000123'"), 0);
    EXPECT_TRUE(QFile::exists(site + "/pack/12AB00/260106/260106000777.vex"));

    // A day rebuilt from its file comes back as it was.
    const QString distance = db().DB_RSet_D_D("SELECT * FROM D_D1 WHERE D_F4='260106'").Text("D_F8");
    db().Execute("DELETE * FROM D_D1 WHERE D_F4 = '260106'");
    r = Rebuild_Day(db(), site + "/pack/12AB00/260106/260106000777.vex", "12AB00");
    ASSERT_TRUE(r.ok) << r.message.toStdString();
    EXPECT_EQ(db().DB_RSet_D_D("SELECT * FROM D_D1 WHERE D_F4='260106'").Text("D_F8"), distance);
    EXPECT_EQ(Rebuild_Day(db(), site + "/pack/x.vex", "").message, "차량번호를 입력하세요");
    EXPECT_EQ(Rebuild_Day(db(), "", "12AB00").message, "파일을 선택하세요");
    EXPECT_EQ(Newest_Day(db()), "260106");
}

TEST_F(Keeping, MoveFromAnOlderInstallation)
{
    // The older installation: this site's database and day files, copied.
    const QString old = tmp.path() + "/old";
    test::Copy_Tree(site + "/db", old + "/db");
    test::Copy_Tree(site + "/pack", old + "/pack");
    const auto before = Dump_All();
    for (const QString& t : Day_Tables())
        db().Execute("DELETE * FROM " + t);
    QDir(site + "/pack").removeRecursively();

    Exchange_Report r = Move_From(db(), old + "/db/morix.mdb", 1, "260106");
    ASSERT_TRUE(r.ok) << r.message.toStdString();
    EXPECT_EQ(Rows("SELECT * FROM D_D1"), 1) << "from the 6th on";
    EXPECT_EQ(r.files.size(), 1);
    r = Move_From(db(), old + "/db/morix.mdb", 3, "260101");
    ASSERT_TRUE(r.ok);
    EXPECT_EQ(Dump("D_D1"), before.at("D_D1"));
    EXPECT_EQ(Dump("S_D1"), before.at("S_D1"));

    // A Jet file is read as Jet; one without the tables stops the move.
    r = Move_From(db(), QStringLiteral(VEX_TEST_DATA) + "/mdb/mdbreader_V2000_numeric.mdb", 1, "260101");
    EXPECT_FALSE(r.ok);
    EXPECT_TRUE(r.message.contains("D_D1")) << r.message.toStdString();
    EXPECT_FALSE(Move_From(db(), tmp.path() + "/none.mdb", 1, "260101").ok);
}

TEST_F(Keeping, HostilePackagesLeaveExpCleanAndTheDatabaseAsItWas)
{
    const Exchange_Report out = Export_Package(db(), {"260101", "260131"}, "good");
    ASSERT_TRUE(out.ok) << out.message.toStdString();
    QTemporaryDir look;
    ASSERT_TRUE(UnZip_Make(site + "/Exp/good.zip", look.path()).ok);
    const QByteArray expMdb = Read_All(look.path() + "/exp.mdb");
    const QByteArray dayFile = Read_All(site + "/pack/12AB00/260105/260105000123.vex");
    ASSERT_FALSE(dayFile.isEmpty());
    const QStringList expBefore = QDir(site + "/Exp").entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot);
    const auto before = Dump_All();

    // Folders where the export's database and its work files go, a file
    // where the day files go; junk of every kind beside.
    const QString blocking = tmp.path() + "/blocking.zip";
    test::Hand_Zip(blocking, {{"exp.mdb", expMdb},
                              {"exp.mdb-journal/x", "j"},
                              {"exp.mdb-wal/x", "w"},
                              {"pack", "a file"},
                              {"zeros.bin", QByteArray(10 << 20, '\0')},
                              {"ctl\x01\x1b[2Jname", "c"},
                              {"nested.zip", Read_All(site + "/Exp/good.zip")},
                              {"pack/12AB00/260105/260105000123.vex", dayFile}});
    for (int run = 0; run < 2; ++run) {
        const Exchange_Report in = Import_Package(db(), blocking);
        EXPECT_TRUE(in.ok) << in.message.toStdString();
        EXPECT_EQ(QDir(site + "/Exp").entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot), expBefore);
        EXPECT_EQ(Dump_All(), before);
    }
    EXPECT_EQ(Read_All(site + "/pack/12AB00/260105/260105000123.vex"), dayFile) << "the one entry of use arrived";
    // Exports and imports go on as before, also over what an import of an
    // older version left.
    ASSERT_TRUE(QDir().mkpath(site + "/Exp/exp.mdb-journal/x"));
    ASSERT_TRUE(Export_Package(db(), {"260101", "260131"}, "after").ok);
    ASSERT_TRUE(Import_Package(db(), site + "/Exp/after.zip").ok);
    QFile::remove(site + "/Exp/after.zip");

    // Rows no reception could make: keys that aren't car + driver + day,
    // endless and out-of-range numbers, a summary at odds with its key.
    const QString edited = look.path() + "/exp.mdb";
    Sql_On(edited, {"INSERT INTO D_D1 (D_F1, D_F2, D_F3, D_F4) VALUES ('../../etc', '../../', 'etc', '260105')",
                    "INSERT INTO D_D2 (D_F1) VALUES ('12AB00' || char(10) || '00123260105')",
                    "INSERT INTO D_D3 (D_F1) VALUES ('')",
                    "INSERT INTO D_D3 (D_F1) VALUES ('" + QString(5000, '7') + "')",
                    "INSERT INTO D_D1 (D_F1, D_F2, D_F3, D_F4, D_F8) VALUES ('12AB00000123991305', '12AB00', '000123', "
                    "'991305', 5)",
                    "UPDATE D_D1 SET D_F8 = 9e999 WHERE D_F1 = '12AB00000123260105'",
                    "INSERT INTO D_D1 (D_F1, D_F2, D_F3, D_F4, D_F8) VALUES ('12AB00000123260107', '12AB00', '000123', "
                    "'260107', 4.6e18)",
                    "INSERT INTO D_D1 (D_F1, D_F2, D_F3, D_F4, D_F8) VALUES ('12AB00000123260108', '12AB00', '000777', "
                    "'260108', 1)",
                    "INSERT INTO D_D1 (D_F1, D_F2, D_F3, D_F4, D_F8) VALUES ('12AB00000123260109', '12AB00', '000123', "
                    "'260109', 12.5)",
                    "INSERT INTO S_D2 (D_F1) VALUES ('x' || char(27) || '[31m')"});
    ASSERT_TRUE(Zip_Make(tmp.path() + "/rows.zip", {{edited, "exp.mdb"}}));
    const Exchange_Report rows = Import_Package(db(), tmp.path() + "/rows.zip");
    EXPECT_TRUE(rows.ok) << rows.message.toStdString();
    EXPECT_EQ(rows.refused.size(), 9) << rows.refused.join('\n').toStdString();
    EXPECT_FALSE(rows.refused.join('\n').contains(QChar(27))) << "no raw control byte in the report";
    EXPECT_TRUE(rows.Text().contains("rows refused 9"));
    EXPECT_EQ(Rows("SELECT * FROM D_D1"), 3) << "the good row is taken";
    EXPECT_EQ(Rows("SELECT * FROM D_D1 WHERE D_F1 = '12AB00000123260109'"), 1);
    // The trips the ledger takes as stored: the good row, none refused.
    EXPECT_TRUE(rows.trips.contains("12AB00000123260109")) << rows.trips.join(' ').toStdString();
    for (const QString bad : {QString("../../etc"), QString("12AB00000123991305"), QString("12AB00000123260107"),
                              QString("12AB00000123260108"), kTrip + "260105"})
        EXPECT_FALSE(rows.trips.contains(bad)) << bad.toStdString();
    EXPECT_EQ(Dump("D_D1").at(kTrip + "260105"), before.at("D_D1").at(kTrip + "260105")) << "its infinite row refused";
    EXPECT_EQ(Dump("S_D2"), before.at("S_D2"));
    EXPECT_EQ(Dump("D_D3"), before.at("D_D3"));

    // More entries than a site sends: refused before anything is written.
    std::vector<std::pair<QByteArray, QByteArray>> many{{"exp.mdb", expMdb}};
    for (int i = 0; i < 70000; ++i)
        many.emplace_back("f" + QByteArray::number(i), QByteArray());
    test::Hand_Zip(tmp.path() + "/many.zip", many);
    db().Execute("DELETE * FROM D_D1 WHERE D_F1 = '12AB00000123260109'");
    const Exchange_Report refused = Import_Package(db(), tmp.path() + "/many.zip");
    EXPECT_FALSE(refused.ok);
    EXPECT_TRUE(refused.message.contains("70001 entries")) << refused.message.toStdString();
    EXPECT_EQ(Dump_All(), before);
    EXPECT_EQ(QDir(site + "/Exp").entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot), expBefore);

    // What a killed export or backup left of its package goes with the
    // next, a killed import's scratch folder with the next import; a running
    // import's folder stays.
    for (const char* left : {"/Exp/260101260131.zip.part", "/Exp/good.zip.part.Ab12Cd"})
        QFile(site + left).open(QIODevice::WriteOnly);
    ASSERT_TRUE(QDir().mkpath(site + "/Exp/.import-999999999-AbCdEf/pack"));
    ASSERT_TRUE(QDir().mkpath(site + "/Exp/.import-1-AbCdEf"));
    ASSERT_TRUE(Import_Package(db(), site + "/Exp/good.zip").ok);
    EXPECT_FALSE(QFileInfo::exists(site + "/Exp/.import-999999999-AbCdEf"));
    EXPECT_TRUE(QDir().rmdir(site + "/Exp/.import-1-AbCdEf")) << "process 1 is running";
    ASSERT_TRUE(Export_Package(db(), {"260101", "260131"}, "good").ok);
    EXPECT_EQ(QDir(site + "/Exp").entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot), expBefore);
}
