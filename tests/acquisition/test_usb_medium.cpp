// The medium of a USB recorder: the model test, the identity file, the days
// a log holds, where the medium is found, and driver numbers written onto it.
#include "acquisition/UsbRecorder.h"
#include "samples/UsbSampler.h"
#include "core/Err_Proc.h"
#include "platform/UsbMedia.h"
#include "registers/DriverMedium.h"
#include "support/TempApp.h"

#include <QFile>
#include <gtest/gtest.h>

using namespace vex;

namespace {

UsbSample Sample(const QString& model, int days = 2)
{
    UsbSampleRequest r;
    r.model = model;
    r.car = "12AB00";
    r.driver = "000123";
    r.first = QDate(2026, 1, 30);
    r.days = days;
    QString error;
    auto s = Make_Sample_Usb(r, &error);
    EXPECT_TRUE(s) << error.toStdString();
    return s ? *s : UsbSample{};
}

QByteArray File_Bytes(const QString& path)
{
    QFile f(path);
    return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray();
}

} // namespace

TEST(UsbMedium, TheModelTestGoesBySizeThenByTheDistanceOfMarkers)
{
    test::TempApp app;
    const UsbSample s130 = Sample("130"), s250 = Sample("250");
    EXPECT_EQ(s130.log.size(), kDat130Filed);
    EXPECT_GT(s250.log.size(), kUsbSmallLog);
    app.Write_File("130/SPDR0403.dat", s130.log);
    app.Write_File("250/SPDR0403.dat", s250.log);
    EXPECT_EQ(Detect_Model(app.Path("130/SPDR0403.dat")), "130");
    EXPECT_EQ(Detect_Model(app.Path("250/SPDR0403.dat")), "250");
    EXPECT_EQ(Usb_Model_Refusal("130", app.Path("130/SPDR0403.dat")), "");
    EXPECT_EQ(Usb_Model_Refusal("250", app.Path("250/SPDR0403.dat")), "");
    EXPECT_EQ(Usb_Model_Refusal("250", app.Path("130/SPDR0403.dat")),
              "QRX 250 데이터가 아닙니다 ! QRX 130을 선택하여 주십시요 ");
    EXPECT_EQ(Usb_Model_Refusal("130", app.Path("250/SPDR0403.dat")),
              "QRX 130 데이터가 아닙니다 ! QRX 250을 선택하여 주십시요 ");

    // A large log of 256-byte blocks is a "130"; a marker inside the data
    // only starts the count again.
    QByteArray big(3000001 + 1024, '\0');
    big[100] = char(0xF0);
    big[300] = char(0xFA);
    big[556] = char(0xF0);
    app.Write_File("big", big);
    EXPECT_EQ(Detect_Model(app.Path("big")), "130");
    big[556] = 0;
    big[812] = char(0xF0); // 512 from 300
    app.Write_File("big", big);
    EXPECT_EQ(Detect_Model(app.Path("big")), "250");
    // Neither rhythm, or no file: no model, and either choice is refused.
    app.Write_File("big", QByteArray(3000001, char(0xF0)));
    EXPECT_EQ(Detect_Model(app.Path("big")), "");
    EXPECT_NE(Usb_Model_Refusal("250", app.Path("big")), "");
    EXPECT_EQ(Detect_Model(app.Path("none")), "");
}

TEST(UsbMedium, MasterFileAndTheDaysTheLogHolds)
{
    test::TempApp app;
    const UsbSample s = Sample("250", 3);
    app.Write_File("m/Master00.dat", s.master);
    const auto m = Read_Master(app.Path("m/Master00.dat"));
    ASSERT_TRUE(m);
    EXPECT_EQ(m->car, "12AB00");
    EXPECT_EQ(m->driver, "000123");
    EXPECT_EQ(m->start, "260129200000");
    EXPECT_EQ(m->end.left(6), "260201");
    EXPECT_EQ(m->end.right(4), "0000");
    app.Write_File("m/Short.dat", s.master.left(17));
    EXPECT_FALSE(Read_Master(app.Path("m/Short.dat")));

    for (const char* model : {"130", "250"}) {
        app.Write_File("log", Sample(model, 3).log);
        const Usb_Days_Held held = Usb_Log_Days(app.Path("log"), model, 26);
        EXPECT_EQ(held.oldest, "260130") << model;
        EXPECT_EQ(held.newest, "260201") << model;
        // Stamps of a later year than this one never give the newest day.
        EXPECT_EQ(Usb_Log_Days(app.Path("log"), model, 25).newest, "") << model;
    }
}

TEST(UsbMedium, TheMediumIsTheFolderWithMaster00)
{
    test::TempApp app;
    app.Write_File("drive/inner/MASTER00.DAT", QByteArray(18, '\0'));
    app.Write_File("drive/inner/spdr0403.dat", QByteArray(10, '\0'));
    Usb_Medium m = Find_Usb_Medium(app.Path("drive/inner"));
    EXPECT_EQ(m.root, app.Path("drive/inner"));
    EXPECT_EQ(m.Master(), app.Path("drive/inner/MASTER00.DAT"));
    EXPECT_EQ(m.Log(), app.Path("drive/inner/spdr0403.dat"));
    EXPECT_EQ(m.Driver_File(), app.Path("drive/inner/Driverid.dat"));
    EXPECT_EQ(Find_Usb_Medium(app.Path("drive")).root, app.Path("drive/inner"));
    m = Find_Usb_Medium(app.Path("nothing"));
    EXPECT_EQ(m.root, "");
    EXPECT_EQ(m.message, "USB가 없읍니다!");
}

TEST(UsbMedium, DriverNumbersGoIntoMaster00AndDriverid)
{
    test::TempApp app;
    const UsbSample s = Sample("130", 1);
    app.Write_File("m/Master00.dat", s.master);
    app.Write_File("m/Driverid.dat", s.driverId);

    Driver_Medium_Result r = Write_Driver_To_Medium(app.Path("m"), "1234");
    EXPECT_TRUE(r.written);
    EXPECT_EQ(r.message, "저장 완료되었읍니다.");
    QByteArray master = File_Bytes(app.Path("m/Master00.dat"));
    EXPECT_EQ(master.size(), s.master.size());
    EXPECT_EQ(master.mid(32, 3).toHex(), "001234");
    EXPECT_EQ(master.mid(48, 2).toHex(), "aa00");
    EXPECT_EQ(master.left(32), s.master.left(32)); // the identity stays
    EXPECT_EQ(File_Bytes(app.Path("m/Driverid.dat")).toHex(), "001234" + s.driverId.mid(3).toHex());

    // Files shorter than the bytes grow; missing ones are made.
    app.Write_File("n/Master00.dat", QByteArray(18, '\x11'));
    r = Write_Driver_To_Medium(app.Path("n"), "ab12cd");
    EXPECT_TRUE(r.written);
    master = File_Bytes(app.Path("n/Master00.dat"));
    EXPECT_EQ(master.size(), 50);
    EXPECT_EQ(master.mid(18, 14), QByteArray(14, '\0'));
    EXPECT_EQ(master.mid(32, 3).toHex(), "ab12cd");
    EXPECT_EQ(File_Bytes(app.Path("n/Driverid.dat")).toHex(), "ab12cd");

    // No medium; no driver chosen; a code that isn't hexadecimal.
    EXPECT_EQ(Write_Driver_To_Medium("", "1234").message, "메모리 팩이 없읍니다!");
    r = Write_Driver_To_Medium(app.Path("m"), "");
    EXPECT_FALSE(r.written);
    EXPECT_EQ(r.message, "");
    r = Write_Driver_To_Medium(app.Path("m"), "12G4");
    EXPECT_FALSE(r.written);
    EXPECT_EQ(File_Bytes(app.Path("m/Master00.dat")).mid(32, 3).toHex(), "001234");
}
