// The link over a real serial port: vex-analyzer serves a pack image on a
// pseudo-terminal, and the link finds it as port 1 through VEX_SERIAL_PORTS.
#include "acquisition/AnalyzerLink.h"
#include "acquisition/PackImage.h"
#include "core/Mod_Main.h"
#include "platform/SerialPort.h"
#include "support/Emulator.h"

#include <QTemporaryDir>
#include <QEventLoop>
#include <QFileInfo>
#include <QFileSystemWatcher>
#include <QTimer>
#include <gtest/gtest.h>

namespace {

using vex::AnalyzerLink;
using vex::PackImage;

using vex::test::Emulator;

class AnalyzerEmulatorTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        ASSERT_TRUE(dir_.isValid());
        savedPorts_ = qgetenv("VEX_SERIAL_PORTS");
        hadPorts_ = qEnvironmentVariableIsSet("VEX_SERIAL_PORTS");
        savedLink_ = vex::G().Link_Type;
        imagePath = dir_.filePath("pack.img");

        // A pack of car 1234, driver 5678, read up to 24-10-30, with a day
        // page for 31 October that holds a recognisable pattern.
        image.Write_Hex(0, 0, 0, "AAAA12345678");
        image.Write_Hex(0, 0, 0x47, "2410300000");
        image.Set_Byte(0x0E, 0x01, 0x07E0, 0x12);
        image.Set_Byte(0x0E, 0x01, 0x07E1, 0x34);
        for (int i = 0; i < 0x7FF; ++i)
            image.Set_Byte(0x0A, 0x1F, i, uint8_t(i * 7 + 3));
        ASSERT_TRUE(image.Save(imagePath));
    }
    void TearDown() override
    {
        if (hadPorts_)
            qputenv("VEX_SERIAL_PORTS", savedPorts_);
        else
            qunsetenv("VEX_SERIAL_PORTS");
        vex::G().Link_Type = savedLink_;
    }

    QString imagePath;
    PackImage image;

private:
    QTemporaryDir dir_;
    QByteArray savedPorts_;
    bool hadPorts_ = false;
    int16_t savedLink_ = 0;
};

TEST_F(AnalyzerEmulatorTest, FindReadCheckAndWrite)
{
    Emulator emulator(imagePath);
    ASSERT_TRUE(emulator.Tty().startsWith("/dev/")) << emulator.Tty().toStdString();
    qputenv("VEX_SERIAL_PORTS", emulator.Tty().toLocal8Bit());
    EXPECT_EQ(vex::Serial_Port_Device(1), emulator.Tty());
    EXPECT_EQ(vex::Serial_Port_Device(2), "");

    vex::SerialPort port;
    AnalyzerLink link(port);
    ASSERT_TRUE(link.Find_Analyzer()) << port.errorText().toStdString();
    EXPECT_TRUE(port.isOpen());
    EXPECT_EQ(port.portNumber(), 1);
    vex::Apply_Link_Result(true);

    EXPECT_TRUE(link.SIO_PackCheck());
    EXPECT_EQ(link.Pack_Car_Code(), "1234");

    const QString sys = link.Read(vex::kSystemPageAddress);
    EXPECT_EQ(sys.size(), vex::kSysPageChars);
    EXPECT_EQ(sys, image.Read_Hex(vex::kSystemPageAddress));

    const auto oct31 = vex::Date_Addresses(QDate(2024, 10, 31));
    ASSERT_TRUE(oct31);
    const QString day = link.Read(oct31->day);
    EXPECT_EQ(day.size(), vex::kPageChars);
    EXPECT_EQ(day, image.Read_Hex(oct31->day));

    // The closing write of a reception: the stamp into SysDBWriteDate. The
    // emulator keeps the pack's writes in the image file.
    const QString stamp = "2410311200";
    for (int i = 0; i < 5; ++i)
        ASSERT_TRUE(link.New_Pack_WriteIO_Byte(QStringLiteral("%1").arg(0x47 + i, 8, 16, QLatin1Char('0')).toUpper(),
                                               stamp.mid(2 * i, 2)));
    // Read again each time the emulator writes the image (in place or by a
    // rename in its folder); the deadline only ends a wait for nothing.
    std::optional<PackImage> saved;
    QFileSystemWatcher watcher({imagePath, QFileInfo(imagePath).path()});
    QEventLoop loop;
    const auto look = [&] {
        saved = PackImage::Load(imagePath);
        if (!watcher.files().contains(imagePath))
            watcher.addPath(imagePath);
        if (saved && saved->Read_Hex({0, 0, 0x47, 5}) == stamp)
            loop.quit();
    };
    QObject::connect(&watcher, &QFileSystemWatcher::fileChanged, &loop, look);
    QObject::connect(&watcher, &QFileSystemWatcher::directoryChanged, &loop, look);
    QTimer::singleShot(20000, &loop, &QEventLoop::quit);
    look();
    if (!(saved && saved->Read_Hex({0, 0, 0x47, 5}) == stamp))
        loop.exec();
    ASSERT_TRUE(saved);
    EXPECT_EQ(saved->Read_Hex({0, 0, 0x47, 5}), stamp);
    EXPECT_EQ(saved->Read_Hex({0, 0, 0, 6}), "AAAA12345678");  // nothing else moved
    EXPECT_EQ(link.Read(vex::kSystemPageAddress).mid(142, 10), stamp);

    EXPECT_EQ(emulator.Stop(), 0);
}

TEST_F(AnalyzerEmulatorTest, AReadWithoutReplyLeavesTheLinkUsable)
{
    Emulator emulator(imagePath, "no-reply");
    ASSERT_TRUE(emulator.Tty().startsWith("/dev/")) << emulator.Tty().toStdString();
    qputenv("VEX_SERIAL_PORTS", emulator.Tty().toLocal8Bit());

    vex::SerialPort port;
    AnalyzerLink link(port);
    ASSERT_TRUE(link.Find_Analyzer());
    EXPECT_EQ(link.Read(vex::kSystemPageAddress), "");
    // Reopened under the same number, and the next command goes through.
    EXPECT_TRUE(port.isOpen());
    EXPECT_EQ(port.portNumber(), 1);
    EXPECT_EQ(link.Query("CHECKENDOF"), "YES");
}

TEST_F(AnalyzerEmulatorTest, NoiseAndStaleRepliesOfABadLine)
{
    Emulator emulator(imagePath, "garbage,stale");
    ASSERT_TRUE(emulator.Tty().startsWith("/dev/")) << emulator.Tty().toStdString();
    qputenv("VEX_SERIAL_PORTS", emulator.Tty().toLocal8Bit());

    vex::SerialPort port;
    AnalyzerLink link(port);
    ASSERT_TRUE(link.Find_Analyzer());
    // Noise in front of "START" is skipped.
    const QString sys = image.Read_Hex(vex::kSystemPageAddress);
    EXPECT_EQ(link.Read(vex::kSystemPageAddress), sys);
    // The day page's command gets the previous reply, and nothing tells.
    EXPECT_EQ(link.Read(vex::Date_Addresses(QDate(2024, 10, 31))->day), sys);
}

TEST_F(AnalyzerEmulatorTest, NoAnalyzerOnAnyPort)
{
    // Ports without a device can't even be opened; the scan says no.
    qputenv("VEX_SERIAL_PORTS", ",/nonexistent/tty");
    vex::SerialPort port;
    AnalyzerLink link(port);
    EXPECT_FALSE(link.Find_Analyzer());
    EXPECT_FALSE(port.isOpen());
    EXPECT_EQ(port.portNumber(), 6);
}

} // namespace
