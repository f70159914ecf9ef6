// The inbox as a user meets it: a saved day written byte by byte in the
// recorder's own layout, and the files that must never leave \new unless
// their rows were committed, nor write outside the application folder, nor
// store rows of junk.
#include "acquisition/Cls_IO.h"
#include "acquisition/Inbox.h"
#include "acquisition/Inbox_Names.h"
#include "acquisition/Reception.h"
#include "acquisition/UsbRecorder.h"
#include "core/Err_Proc.h"
#include "core/Messages.h"
#include "core/Mod_Main.h"
#include "platform/FileSystem.h"
#include "store/Cls_DB.h"
#include "store/DayFile.h"
#include "support/AppSession.h"

#include <QDir>
#include <QFile>
#include <QRandomGenerator>
#include <QSqlDatabase>
#include <QSqlQuery>
#include <gtest/gtest.h>

using namespace vex;

namespace {

class Inbox : public ::testing::Test {
protected:
    test::AppSession app;
    void SetUp() override { Register_Usb_Decoders(); }
    QString Text(const QString& table, const QString& key, const char* field = "D_F2")
    {
        Recordset rs = G().DB->DB_RSet_D_D("SELECT * FROM " + table + " WHERE D_F1=?", {key});
        return rs.RecordCount() > 0 ? rs.Text(field) : QString();
    }
    int Rows(const QString& table) { return G().DB->DB_RSet_D_D("SELECT * FROM " + table).RecordCount(); }
    QStringList Pass()
    {
        QStringList seen;
        Inbox_Pass(*G().DB, [&](const Inbox_File& f) { seen << f.name + (f.removed ? " removed" : " kept ") + f.why; });
        return seen;
    }
};

// A saved day as the recorder's office program wrote it: car, driver and day
// in three bytes each, then the speed array (86,401 entries, second s at s),
// the engine array one byte early over the last speed entry, and the minute
// distance one byte early again (entry 2m-1 hundreds of metres of minute m,
// 2m the rest). 175,690 bytes.
QByteArray Legacy_Saved_Day()
{
    QByteArray b(175690, '\0');
    const char head[9] = {'\x34', '\xCD', '\x00', '\x99', '\x00', '\x42', '\x26', '\x02', '\x10'};
    b.replace(0, 9, QByteArray(head, 9));
    for (int s = 36000; s < 36060; ++s) { // 10:00:00 to 10:00:59
        b[9 + s] = char(60);               // km/h
        b[9 + 86400 + s] = char(30);       // engine running
    }
    b[9 + 36060] = char(0xFF);             // an erased second counts as 0
    const int m = 601;                     // the 601st minute is 10:00
    b[9 + 86400 + 86400 + 2 * m - 1] = char(12); // 1,250 m
    b[9 + 86400 + 86400 + 2 * m] = char(50);
    return b;
}

} // namespace

TEST_F(Inbox, ASavedDayOfTheLegacyLayoutIsStored)
{
    app.Write_File("new/A.NTD", Legacy_Saved_Day());
    const QStringList seen = Pass();
    ASSERT_EQ(seen, QStringList{"A.NTD removed"});
    const QString key = "34CD00000042260210";
    const QString d3 = Text("D_D3", key);
    ASSERT_EQ(d3.size(), 2880);
    EXPECT_EQ(d3.mid(2 * 599, 6), "003C00"); // the clock minute 10:00, no earlier, no later
    EXPECT_EQ(d3.count('0'), 2878);
    EXPECT_EQ(Text("D_D7", key).mid(2 * 600, 2), "13");
    EXPECT_EQ(Text("D_D1", key, "D_F5"), "1000");
    EXPECT_EQ(Text("D_D1", key, "D_F7"), "1000");
    EXPECT_EQ(Text("D_D1", key, "D_F8").toInt(), 13);
    const DayFile f = Read_Day_File(Local_Path(Day_File_Name("34CD00", "000042", "260210")));
    EXPECT_EQ(f.speed[36000], 60);
    EXPECT_EQ(f.speed[36059], 60);
    EXPECT_EQ(f.speed[36060], 0);
    EXPECT_EQ(f.engine[36000], 30);

    // One byte short of a day is a copy cut short: it waits.
    app.Write_File("new/B.NTD", Legacy_Saved_Day().left(175689));
    EXPECT_TRUE(Pass().value(0).startsWith("B.NTD kept "));
    EXPECT_TRUE(QFile::exists(app.Path("new/B.NTD")));
}

TEST_F(Inbox, AFileStaysUntilItsRowsAreCommitted)
{
    app.Write_File("new/A.NTD", Legacy_Saved_Day());
    {
        // Another program holds the database.
        QSqlDatabase other = QSqlDatabase::addDatabase("QSQLITE", "other");
        other.setDatabaseName(app.Path("db/morix.mdb"));
        ASSERT_TRUE(other.open());
        QSqlQuery lock(other);
        ASSERT_TRUE(lock.exec("BEGIN EXCLUSIVE"));
        // Held for longer than the pass waits: it gives up on the file.
        G().DB->Write_Wait_Seconds = 0;
        const QStringList seen = Pass();
        ASSERT_EQ(seen.size(), 1);
        EXPECT_TRUE(seen[0].startsWith("A.NTD kept database: ")) << seen[0].toStdString();
        EXPECT_TRUE(QFile::exists(app.Path("new/A.NTD")));
        lock.exec("ROLLBACK");
        other.close();
    }
    QSqlDatabase::removeDatabase("other");
    // Free again: the next pass stores it and only then lets it go.
    EXPECT_EQ(Pass(), QStringList{"A.NTD removed"});
    EXPECT_EQ(Rows("D_D1"), 1);
}

TEST_F(Inbox, NamesAndContentsCannotWriteOutsideOrStoreJunk)
{
    // A name that climbs out of \new: the log names no reception, so it
    // waits, and nothing appears above the application folder.
    const QString evil = "..\\..261101.dat";
    {
        QFile f(app.Path("new") + "/" + evil);
        ASSERT_TRUE(f.open(QIODevice::WriteOnly));
        f.write(QByteArray(kDat130Filed, '\xF0'));
    }
    const QStringList seen = Pass();
    ASSERT_EQ(seen.size(), 1);
    EXPECT_TRUE(seen[0].contains(" kept ")) << seen[0].toStdString();
    EXPECT_FALSE(Parse_Dat130_Name(evil));
    EXPECT_FALSE(QDir(app.Path("..")).exists("pack"));
    EXPECT_THROW(Local_Path("\\pack\\..\\..\\x.vex"), RunTimeError);
    EXPECT_FALSE(G().FS->CopyFile(app.Path("new/" + evil), "\\new\\..\\..\\x"));
    EXPECT_FALSE(G().FS->CreateFolder("\\mpack\\..\\..\\y"));
    EXPECT_TRUE(G().FS->Writable("\\mpack\\0001"));
    QFile::remove(app.Path("new/" + evil));

    // An empty pack file and one of random bytes store nothing.
    app.Write_File("new/00010002261101.Vex", QByteArray());
    QByteArray noise(9000, '\0');
    for (char& c : noise)
        c = char(QRandomGenerator::global()->bounded(256));
    app.Write_File("new/00010002261102.Vex", noise);
    Pass();
    EXPECT_EQ(Rows("D_D1"), 0);
    EXPECT_EQ(Rows("S_D1"), 0);
    EXPECT_EQ(G().IO->Refusal.isEmpty(), false);

    EXPECT_TRUE(Is_Code("12AB00"));
    EXPECT_FALSE(Is_Code("12ab00"));
    EXPECT_FALSE(Is_Code("../.."));
    EXPECT_TRUE(Is_Day("261231"));
    EXPECT_FALSE(Is_Day("261301"));
    EXPECT_FALSE(Is_Day("2612 1"));
    const auto name = Parse_Dat130_Name("12AB00261101.dat");
    ASSERT_TRUE(name);
    EXPECT_EQ(name->car, "12AB00");
    EXPECT_EQ(name->day, "261101");
}

TEST_F(Inbox, AReceptionThatCannotWriteSaysWhyBeforeItStarts)
{
    EXPECT_TRUE(Reception_Precheck(G().DB.get()).isEmpty());
    // \new is no folder one can write in (a read-only mount says the same).
    QDir(app.Path("new")).removeRecursively();
    app.Write_File("new", "not a folder");
    EXPECT_TRUE(Reception_Precheck(G().DB.get()).startsWith(LoadResString(5006).section('(', 0, 0))) << Reception_Precheck(G().DB.get()).toStdString();
    const Reception_Outcome outcome = Receive_Pack_Days(false, {}, {});
    EXPECT_FALSE(outcome.Clean());
    EXPECT_TRUE(outcome.Summary().contains(LoadResString(5005).section(':', 0, 0)));
    QFile::remove(app.Path("new"));

    // The database gone: nothing is received into it.
    G().DB->DB_DConnection();
    EXPECT_TRUE(Reception_Precheck(G().DB.get()).startsWith(LoadResString(5007).section('(', 0, 0)));
    G().DB->DB_Connection();
    EXPECT_TRUE(Reception_Precheck(G().DB.get()).isEmpty());
}

TEST(InsideFolder, RootsOfEveryShape)
{
    EXPECT_TRUE(Inside_Folder("/", "/new/x.dat"));
    EXPECT_TRUE(Inside_Folder("/srv/app", "/srv/app/new/../pack/x.vex"));
    EXPECT_FALSE(Inside_Folder("/srv/app", "/srv/app/../x"));
    EXPECT_FALSE(Inside_Folder("/srv/app", "/srv/application/x"));
    EXPECT_FALSE(Inside_Folder("", "/srv/app/x"));
}
