// USB recorder files cut short or full of noise: the decoders keep what is
// whole, drop the rest, and never fail otherwise.
#include "samples/DrivingProfile.h"
#include "acquisition/Last_Reception.h"
#include "acquisition/UsbRecorder.h"
#include "samples/UsbSampler.h"
#include "core/Mod_Main.h"
#include "store/Cls_DB.h"
#include "store/DayFile.h"
#include "support/AppSession.h"

#include <QDir>
#include <QFile>
#include <gtest/gtest.h>

using namespace vex;

namespace {

QByteArray Noise(qint64 n, uint64_t seed)
{
    SampleRng rng(seed);
    QByteArray b(n, '\0');
    for (qint64 i = 0; i < n; ++i)
        b[i] = char(rng.Int(0, 255));
    return b;
}

// Noise whose stamps mostly read as digits, so that the deeper paths run.
QByteArray Digit_Noise(qint64 n, uint64_t seed, int record)
{
    SampleRng rng(seed);
    QByteArray b = Noise(n, seed);
    for (qint64 at = 0; at + 6 <= n; at += record) {
        b[at] = char(rng.Chance(50) ? 0xF0 : 0xFA);
        for (int i = 1; i < 6; ++i)
            b[at + i] = char((rng.Int(0, 9) << 4) | rng.Int(0, 9));
    }
    return b;
}

UsbSample Two_Day_Sample(const QString& model)
{
    UsbSampleRequest r;
    r.model = model;
    r.car = "12AB00";
    r.driver = "000123";
    r.first = QDate(2026, 1, 5);
    r.days = 2;
    QString error;
    auto s = Make_Sample_Usb(r, &error);
    EXPECT_TRUE(s) << error.toStdString();
    return s ? *s : UsbSample{};
}

class UsbDamage_ : public ::testing::Test {
protected:
    test::AppSession app;
    void SetUp() override { Usb_State() = Usb_Reception{"12AB00", "000123", {}, {}, {}}; }
    void TearDown() override { Usb_State() = Usb_Reception{}; }
    QString Put(const QString& rel, const QByteArray& bytes)
    {
        app.Write_File(rel, bytes);
        return app.Path(rel);
    }
    // A "130" log filed by a reception of its medium.
    QString Filed(const QByteArray& bytes)
    {
        app.Write_File("new/12AB00260105.dat.id",
                       Filing_Note_Text({"12AB00", "000123", "000101", "991231"}));
        return Put("new/12AB00260105.dat", bytes);
    }
    int Rows(const QString& table) { return G().DB->DB_RSet_D_D("SELECT * FROM " + table).RecordCount(); }
};

} // namespace

TEST_F(UsbDamage_, CutAndNoisyModel130LogsDecodeWhatIsWhole)
{
    const QByteArray log = Two_Day_Sample("130").log;
    for (qint64 n : {qint64(0), qint64(1), qint64(255), qint64(257), qint64(3 * 256 + 7), kEventRegion130 - 3,
                     kEventRegion130 + 15, kMinuteRegion130A + 60, kMinuteRegion130B + 100})
        EXPECT_TRUE(Decode_Dat130(*G().DB, Filed(log.left(n)))) << n;
    // Hours cut at the event region are all there.
    EXPECT_EQ(Rows("D_D1"), 2);
    for (uint64_t seed = 1; seed <= 3; ++seed) {
        EXPECT_TRUE(Decode_Dat130(*G().DB, Filed(Noise(kDat130Filed, seed))));
        EXPECT_TRUE(Decode_Dat130(*G().DB, Filed(Digit_Noise(kDat130Filed, seed, 256))));
    }
    EXPECT_FALSE(Decode_Dat130(*G().DB, app.Path("new/none.dat")));
}

TEST_F(UsbDamage_, CutAndNoisyModel250LogsDecodeWhatIsWhole)
{
    const QByteArray log = Two_Day_Sample("250").log;
    // Five whole records and a part of the sixth: the five make a day file.
    ASSERT_TRUE(Decode_Dat250(*G().DB, Put("m/SPDR0403.dat", log.left(5 * kRecord250 + 100))));
    const QStringList ntd = QDir(app.Path("new")).entryList(QDir::Files);
    ASSERT_EQ(ntd.size(), 1);
    const QByteArray day = [&] {
        QFile f(app.Path("new/" + ntd.first()));
        return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray();
    }();
    ASSERT_EQ(day.size(), kNtdFile);
    // The engine runs from the first record on; the car stands at first.
    int seconds = 0;
    for (int s = 1; s <= kDaySeconds; ++s)
        seconds += day[kNtdHeader + kDayArray + s] != 0;
    EXPECT_GT(seconds, 0);
    EXPECT_LE(seconds, 5 * 60);

    for (uint64_t seed = 1; seed <= 2; ++seed) {
        EXPECT_TRUE(Decode_Dat250(*G().DB, Put("m/SPDR0403.dat", Noise(200 * kRecord250 + 7, seed))));
        EXPECT_TRUE(Decode_Dat250(*G().DB, Put("m/SPDR0403.dat", Digit_Noise(200 * kRecord250, seed, kRecord250))));
        EXPECT_NE(Detect_Model(Put("m/big.dat", Noise(3000100, seed))), "x");
    }
    // A month of 13 never becomes a day file.
    for (const QString& f : QDir(app.Path("new")).entryList(QDir::Files))
        EXPECT_LE(f.mid(2, 2).toInt(), 12) << f.toStdString();
}

TEST_F(UsbDamage_, SavedDaysThatAreShortOrNoDayAreKeptOrDropped)
{
    const auto ntd = Make_Sample_Ntd("34CD00", "000042", QDate(2026, 2, 10));
    ASSERT_TRUE(ntd);
    ASSERT_EQ(ntd->size(), kSavedNtdFile);
    EXPECT_FALSE(Decode_Ntd(*G().DB, Put("new/a.NTD", ntd->left(kSavedNtdFile - 1))));
    EXPECT_FALSE(Decode_Ntd(*G().DB, Put("new/a.NTD", QByteArray())));
    EXPECT_FALSE(Decode_Ntd(*G().DB, app.Path("new/none.NTD")));
    EXPECT_EQ(Rows("D_D1"), 0);

    // A day with a letter or of month 13: nothing to store, the file is done.
    QByteArray bad = *ntd;
    bad[7] = char(0x13);
    EXPECT_TRUE(Decode_Ntd(*G().DB, Put("new/a.NTD", bad)));
    bad[7] = char(0x0A);
    EXPECT_TRUE(Decode_Ntd(*G().DB, Put("new/a.NTD", bad)));
    EXPECT_FALSE(QDir(app.Path("pack")).exists() && !QDir(app.Path("pack")).isEmpty());

    // Noise of a day's size decodes as whatever it says, without failing.
    for (uint64_t seed = 1; seed <= 3; ++seed) {
        QByteArray noise = Noise(kSavedNtdFile, seed);
        noise[6] = 0x26;
        noise[7] = 0x03;
        noise[8] = char(0x10 + seed);
        EXPECT_TRUE(Decode_Ntd(*G().DB, Put("new/a.NTD", noise)));
    }

    // The whole day, and again: the same summary.
    ASSERT_TRUE(Decode_Ntd(*G().DB, Put("new/a.NTD", *ntd)));
    const QString key = "34CD00000042260210";
    Recordset first = G().DB->DB_RSet_D_D("SELECT * FROM D_D1 WHERE D_F1=?", {key});
    ASSERT_EQ(first.RecordCount(), 1);
    ASSERT_TRUE(Decode_Ntd(*G().DB, Put("new/a.NTD", *ntd)));
    Recordset again = G().DB->DB_RSet_D_D("SELECT * FROM D_D1 WHERE D_F1=?", {key});
    ASSERT_EQ(again.RecordCount(), 1);
    for (const char* f : {"D_F5", "D_F7", "D_F8", "D_F9", "D_F10", "D_F11"})
        EXPECT_EQ(again.Text(f), first.Text(f)) << f;
}

TEST_F(UsbDamage_, DamagedSampleMediaReceiveTheirGoodPart)
{
    for (const char* model : {"130", "250"}) {
        UsbSampleRequest r;
        r.model = model;
        r.car = "12AB00";
        r.driver = "000123";
        r.first = QDate(2026, 1, 5);
        r.days = 2;
        r.damage = {UsbDamage::FreeRecords, UsbDamage::BadStamps, UsbDamage::FfSamples};
        const auto s = Make_Sample_Usb(r);
        ASSERT_TRUE(s);
        QDir(app.Path("new")).removeRecursively();
        if (QString(model) == "130")
            ASSERT_TRUE(Decode_Dat130(*G().DB, Filed(s->log)));
        else {
            ASSERT_TRUE(Decode_Dat250(*G().DB, Put("m/SPDR0403.dat", s->log)));
            for (const QString& f : QDir(app.Path("new")).entryList(QDir::Files))
                EXPECT_TRUE(Decode_Ntd(*G().DB, app.Path("new/" + f))) << f.toStdString();
        }
        // Only the two days: no day of month 13, no day with a letter.
        Recordset rs = G().DB->DB_RSet_D_D("SELECT * FROM D_D1 ORDER BY D_F4");
        ASSERT_EQ(rs.RecordCount(), 2) << model;
        rs.MoveFirst();
        EXPECT_EQ(rs.Text("D_F4"), "260105");
        EXPECT_EQ(rs.Text("D_F5").left(2) >= "05", true);
        // No speed of 200 from a skipped block reached the series.
        for (const char* day : {"260105", "260106"}) {
            Recordset d3 = G().DB->DB_RSet_D_D("SELECT * FROM D_D3 WHERE D_F1=?", {QString("12AB00000123") + day});
            ASSERT_EQ(d3.RecordCount(), 1);
            const QString series = d3.Text("D_F2");
            for (int i = 0; i < 2880; i += 2)
                EXPECT_LT(series.mid(i, 2).toInt(nullptr, 16), 200) << model << " " << day << " " << i / 2;
        }
        G().DB->Execute("DELETE FROM D_D1");
        G().DB->Execute("DELETE FROM D_D3");
    }
}

TEST_F(UsbDamage_, TheLastReceptionPassesOverDaysThatAreNoDays)
{
    EXPECT_EQ(Last_Reception_Day(*G().DB, "12AB00"), "000000");
    for (const char* day : {"260105", "26AB01", "991301", "001231", "260110"}) {
        Recordset rs = G().DB->DB_RSet_D_D("SELECT * FROM D_D1 WHERE D_F1=?", {QString("12AB00000123") + day});
        rs.AddNew();
        rs.Set("D_F1", QString("12AB00000123") + day);
        rs.Set("D_F2", "12AB00");
        rs.Set("D_F4", day);
        rs.Update();
    }
    EXPECT_EQ(Last_Reception_Day(*G().DB, "12AB00"), "260110");
    EXPECT_EQ(Last_Reception_Day(*G().DB, "000000"), "000000");
}
