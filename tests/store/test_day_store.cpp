// Where day files are kept: files under "\pack" on the embedded database,
// rows of X_DAYFILE on a server; a server's day file lands with the day's
// rows in one transaction, and two PCs merging the same day add up.
#include "store/DayFile.h"
#include "store/Day_Store.h"
#include "store/IngestFixture.h"

#include <QFile>
#include <thread>

using namespace vex;

namespace {

class DayStore : public test::Ingest {
protected:
    bool Server() const { return GetParam() != test::Backend::Sqlite; }
    QByteArray Stored(const QString& systemPath)
    {
        const Day_File_Ref ref = Find_Day_File(*db, systemPath);
        return ref.Found() ? Read_Day_Bytes(*db, ref) : QByteArray();
    }
    static QByteArray Bytes(qint64 n, char fill)
    {
        QByteArray b(n, '\0');
        b[1] = fill;
        b[n - 1] = fill;
        return b;
    }
    const QString path = "\\pack\\000100\\240131\\240131000200.vex";
    const QString older = "\\pack\\000100\\240131\\240131.vex";
};

} // namespace

TEST(DayStoreKeys, AKeyIsTheDaysRowKeyOrTheOlderNameWithoutTheDriver)
{
    EXPECT_EQ(Day_File_Key("\\pack\\000100\\240131\\240131000200.vex"), "000100000200240131");
    EXPECT_EQ(Day_File_Key("\\pack\\000100\\240131\\240131.vex"), "000100240131");
    EXPECT_EQ(Day_File_Key("/pack/000100/240131/240131000200.VEX"), "000100000200240131");
    EXPECT_EQ(Day_File_Path_Of_Key("000100000200240131"), "\\pack\\000100\\240131\\240131000200.vex");
    EXPECT_EQ(Day_File_Path_Of_Key("000100240131"), "\\pack\\000100\\240131\\240131.vex");
    // Names of no day file: another day inside, no car code, a folder more.
    for (const char* bad : {"\\pack\\000100\\240131\\240130000200.vex", "\\pack\\0001\\240131\\240131000200.vex",
                            "\\pack\\000100\\241331\\241331000200.vex", "\\new\\000100\\240131\\240131000200.vex",
                            "\\pack\\000100\\240131\\x\\240131000200.vex", "\\pack\\000100\\240131\\240131000200.ntd",
                            "\\pack\\000100\\240131\\24013100020.vex"})
        EXPECT_TRUE(Day_File_Key(bad).isEmpty()) << bad;
}

TEST_P(DayStore, StoredReadSizedRenamedAndRemovedOnEveryEngine)
{
    EXPECT_FALSE(Find_Day_File(*db, path).Found());
    EXPECT_EQ(Day_File_Size(*db, path), -1);
    const QByteArray bytes = Bytes(kDayFileTwo, 7);
    Store_Day_Bytes(*db, path, bytes);
    EXPECT_EQ(Stored(path), bytes);
    EXPECT_EQ(Day_File_Size(*db, path), kDayFileTwo);
    // A server keeps it in the database only; this machine has no file.
    EXPECT_EQ(QFile::exists(app.Path("pack/000100/240131/240131000200.vex")), !Server());
    EXPECT_EQ(Find_Day_File(*db, path).key.isEmpty(), !Server());

    // Written again whole; the older name comes first for the views.
    const QByteArray full = Bytes(kDayFileFull, 9);
    Store_Day_Bytes(*db, path, full);
    EXPECT_EQ(Read_Day_File(*db, Find_Day_File(*db, "000100", "000200", "240131")).half.size(), size_t(kHalfArray));
    Store_Day_Bytes(*db, older, bytes);
    EXPECT_EQ(Read_Day_Bytes(*db, Find_Day_File(*db, "000100", "000200", "240131")), bytes);
    Remove_Day_File(*db, older);

    EXPECT_TRUE(Rename_Day_File(*db, path, "\\pack\\000100\\240131\\240131000300.vex"));
    EXPECT_FALSE(Find_Day_File(*db, path).Found());
    EXPECT_EQ(Stored("\\pack\\000100\\240131\\240131000300.vex"), full);
    EXPECT_FALSE(Rename_Day_File(*db, path, "\\pack\\000100\\240131\\240131000400.vex"));
    Remove_Day_File(*db, "\\pack\\000100\\240131\\240131000300.vex");
    EXPECT_FALSE(Find_Day_File(*db, "\\pack\\000100\\240131\\240131000300.vex").Found());

    // A short file is refused, never read in part.
    Store_Day_Bytes(*db, path, Bytes(1000, 1));
    EXPECT_THROW(Read_Day_File(*db, Find_Day_File(*db, path)), RunTimeError);
    EXPECT_THROW(Store_Day_Bytes(*db, "\\pack\\..\\db\\morix.mdb", bytes), RunTimeError);
}

TEST_P(DayStore, ADayLandsWholeAndAFailingStatementTakesOnlyItselfBack)
{
    std::vector<uint8_t> speed(kDayArray, 0), engine(kDayArray, 0), distance(kNtdDistance, 0);
    speed[3600] = 40;
    engine[3600] = 9;
    {
        Cls_DB::Batch batch(*db);
        ASSERT_EQ(db->DB_Save_D_D2_file("000100", "000200", speed, engine, distance, "240131"), -1)
            << Err_Last().toStdString();
        // Inside the batch on a server another PC sees nothing of the day yet.
        if (Server()) {
            Cls_DB other(db->Target());
            EXPECT_FALSE(Find_Day_File(other, path).Found());
            EXPECT_EQ(other.DB_RSet_D_D("SELECT * FROM D_D7").RecordCount(), 0);
        }
        // A statement the engine refuses fails alone: what came before stays.
        EXPECT_FALSE(Guarded(1161, [&] { db->Execute("INSERT INTO NO_SUCH_TABLE (D_F1) VALUES (?)", {"x"}); }));
        Put("D_D1", "000100000200240131", {"D_F2", "000100"});
    }
    Cls_DB other(db->Target());
    EXPECT_EQ(Read_Day_File(other, Find_Day_File(other, path)).speed[3600], 40);
    EXPECT_EQ(other.DB_RSet_D_D("SELECT * FROM D_D7").RecordCount(), 1);
    EXPECT_EQ(other.DB_RSet_D_D("SELECT * FROM D_D1").RecordCount(), 1);
}

TEST_P(DayStore, TwoPcsMergingOneDayAddUp)
{
    if (!Server())
        GTEST_SKIP() << "one program holds the embedded database's whole file while it writes";
    // The first PC has merged its recording and not yet committed; the second
    // merges its own meanwhile and must wait for the first, or it would write
    // its recording over the first one's.
    std::vector<uint8_t> speed(kDayArray, 0), engine(kDayArray, 0), distance(kNtdDistance, 0);
    speed[3600] = 40;
    auto first = std::make_unique<Cls_DB::Batch>(*db);
    ASSERT_EQ(db->DB_Save_D_D2_file("000100", "000200", speed, engine, distance, "240131"), -1);

    std::atomic<bool> merged{false};
    const DbTarget target = db->Target();
    std::thread second([&] {
        Cls_DB pc(target);
        std::vector<uint8_t> sp(kDayArray, 0), en(kDayArray, 0), di(kNtdDistance, 0);
        sp[7200] = 50;
        Cls_DB::Batch batch(pc);
        pc.DB_Save_D_D2_file("000100", "000200", sp, en, di, "240131");
        merged = true;
    });
    std::this_thread::sleep_for(std::chrono::milliseconds(300));
    EXPECT_FALSE(merged.load()) << "the second merge did not wait for the first";
    first.reset(); // commit
    second.join();
    const DayFile f = Read_Day_File(*db, Find_Day_File(*db, path));
    EXPECT_EQ(f.speed[3600], 40);
    EXPECT_EQ(f.speed[7200], 50);
}

VEX_INGEST_ENGINES(DayStore);
