// The analyzer protocol against a scripted port on a virtual clock: replies
// arrive in chunks at set times, and waiting advances the clock instead of
// sleeping, so deadlines are exact and the tests take no real time.
#include "acquisition/AnalyzerLink.h"
#include "core/Err_Proc.h"
#include "core/Mod_Main.h"
#include "support/ScriptedPort.h"

#include <QDate>
#include <gtest/gtest.h>

#include <algorithm>
#include <deque>
#include <functional>
#include <map>
#include <set>

namespace {

using vex::AnalyzerLink;
using vex::test::ScriptedPort;

// Keeps the global link flag and status sink as the test found them.
class AnalyzerLinkTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        savedLink_ = vex::G().Link_Type;
        savedSink_ = vex::G().Status_Sink;
        vex::G().Link_Type = 1;
    }
    void TearDown() override
    {
        vex::G().Link_Type = savedLink_;
        vex::G().Status_Sink = savedSink_;
    }

    ScriptedPort port;
    AnalyzerLink link{port, port.Clock()};

private:
    int16_t savedLink_ = 0;
    std::function<void(const QString&)> savedSink_;
};

TEST_F(AnalyzerLinkTest, ReceiveFramesTheFirstWholeReply)
{
    // Noise around the frame is skipped, and the reply is taken the moment
    // it is complete, not at the end of the deadline.
    port.Deliver(120, "xxSTARTYESENDOFyy");
    EXPECT_EQ(link.New_Pack_Receive(), "YES");
    EXPECT_EQ(port.now, 120);
    EXPECT_EQ(port.closes, 0);

    // A reply in pieces.
    port.now = 0;
    port.Deliver(10, "ST");
    port.Deliver(20, "ARTAB");
    port.Deliver(400, "CDENDOFSTARTEFENDOF");
    EXPECT_EQ(link.New_Pack_Receive(), "ABCD");
    EXPECT_EQ(port.now, 400);

    // "ENDOF" ahead of "START" empties what was gathered; the whole reply
    // that follows is still accepted (kept, the text would still have its
    // "ENDOF" first and be emptied again).
    port.now = 0;
    port.Deliver(100, "ENDOFSTART");
    port.Deliver(700, "STARTYESENDOF");
    EXPECT_EQ(link.New_Pack_Receive(), "YES");
    EXPECT_EQ(port.now, 700);

    // An empty frame is an empty payload, with the port left alone.
    port.now = 0;
    port.Deliver(50, "STARTENDOF");
    EXPECT_EQ(link.New_Pack_Receive(), "");
    EXPECT_EQ(port.now, 50);
    EXPECT_EQ(port.closes, 0);
    EXPECT_EQ(port.opens, 0);
}

TEST_F(AnalyzerLinkTest, NoReplyInTimeReopensThePortAndDropsTheLateReply)
{
    port.now = 0;
    port.Deliver(1600, "STARTLATEENDOF");
    EXPECT_EQ(link.New_Pack_Receive(), "");
    EXPECT_EQ(port.now, AnalyzerLink::kReplyDeadlineMs);
    EXPECT_EQ(port.closes, 1);
    EXPECT_EQ(port.opens, 1);
    EXPECT_TRUE(port.isOpen());
    EXPECT_EQ(port.portNumber(), 1);

    // The late reply never turns up as the next command's reply.
    port.Deliver(300, "STARTNEXTENDOF");
    EXPECT_EQ(link.New_Pack_Receive(), "NEXT");

    // A reply cut before "ENDOF" is no reply.
    port.now = 0;
    port.Deliver(100, "STARTYE");
    EXPECT_EQ(link.New_Pack_Receive(), "");
    EXPECT_EQ(port.closes, 2);

    // A reply complete only after the deadline misses it.
    port.now = 0;
    port.Deliver(1000, "STARTYE");
    port.Deliver(1501, "SENDOF");
    EXPECT_EQ(link.New_Pack_Receive(), "");
    EXPECT_EQ(port.closes, 3);

    // A port found closed is opened again under its number.
    port.close();
    EXPECT_EQ(link.New_Pack_Receive(), "");
    EXPECT_TRUE(port.isOpen());
    EXPECT_EQ(port.portNumber(), 1);
}

TEST_F(AnalyzerLinkTest, AStaleReplyIsTakenForTheNewOne)
{
    // The previous command's reply came after its reader gave up without a
    // reopen (it took "STARTENDOF"), and still sits in the port.
    port.onWrite = [](ScriptedPort& p, const QByteArray& msg) {
        if (msg == "CHECKENDOF")
            p.Deliver(30, "STARTYESENDOF");
    };
    port.Deliver(0, "STARTOLDENDOF");
    EXPECT_EQ(link.Query("CHECKENDOF"), "OLD");
    EXPECT_EQ(port.now, 0);
    // The answer to CHECK is now the stale one for whatever comes next.
    EXPECT_EQ(link.Read(vex::kSystemPageAddress), "YES");
}

TEST_F(AnalyzerLinkTest, CommandTexts)
{
    port.onWrite = [](ScriptedPort& p, const QByteArray&) { p.Deliver(10, "STARTAAENDOF"); };

    EXPECT_EQ(link.New_Pack_SearchIO_Byte1("07E0", "14", "01"), "AA");
    EXPECT_EQ(link.New_Pack_SearchIO_Byte1("2", "0", "31"), "AA");
    ASSERT_EQ(port.written.size(), 2u);
    EXPECT_EQ(port.written[0], "START0E0107E00001ENDOF");
    EXPECT_EQ(port.written[1], "START001F00020001ENDOF");

    // Day 31 of October: bank 0A, page 1F, the page as 07FF bytes.
    const auto day = vex::Date_Addresses(QDate(2024, 10, 31));
    ASSERT_TRUE(day);
    link.Read(day->day);
    link.Read(QStringLiteral("A"), QStringLiteral("1F"), QStringLiteral("0"), QStringLiteral("7FF"));
    link.Read(vex::kSystemPageAddress);
    EXPECT_EQ(port.written[2], "START0A1F000007FFENDOF");
    EXPECT_EQ(port.written[3], "START0A1F000007FFENDOF");
    EXPECT_EQ(port.written[4], "START00000000004DENDOF");

    // Writes: one byte, no reply read (the clock doesn't move).
    port.onWrite = nullptr;
    const qint64 before = port.now;
    EXPECT_TRUE(link.New_Pack_WriteIO_Byte("00000047", "24"));
    EXPECT_TRUE(link.New_Pack_WriteIO_Byte("00000004", "0"));
    EXPECT_EQ(port.written[5], "WRITE0000004724ENDOF");
    EXPECT_EQ(port.written[6], "WRITE0000000400ENDOF");
    EXPECT_EQ(port.now, before);

    // Bad decimal text is a run-time error of the procedure: nothing sent.
    EXPECT_EQ(link.New_Pack_SearchIO_Byte1("07E0", "x", "01"), "");
    EXPECT_EQ(port.written.size(), 7u);

    // A closed port sends nothing and reports failure.
    port.close();
    EXPECT_FALSE(link.New_Pack_WriteIO_Byte("00000047", "24"));
    EXPECT_THROW(link.Read(vex::kSystemPageAddress), vex::RunTimeError);
}

TEST_F(AnalyzerLinkTest, LinkFlagZeroSendsNothing)
{
    vex::G().Link_Type = 0;
    port.onWrite = [](ScriptedPort& p, const QByteArray&) { p.Deliver(10, "STARTYESENDOF"); };
    link.Set_Pack_Car_Code("0000");
    EXPECT_EQ(link.New_Pack_SearchIO_Byte1("07E0", "14", "01"), "");
    EXPECT_FALSE(link.SIO_PackCheck());
    EXPECT_TRUE(port.written.empty());
    EXPECT_EQ(link.Pack_Car_Code(), "0000");
}

// An analyzer whose pack holds bytes at given places; anything else reads
// as an erased byte.
struct PackScript {
    QByteArray check = "YES";
    std::map<QByteArray, QByteArray> bytes;  // read command body -> byte

    void operator()(ScriptedPort& p, const QByteArray& msg) const
    {
        if (msg == "CHECKENDOF") {
            p.Deliver(20, "START" + check + "ENDOF");
            return;
        }
        const QByteArray body = msg.mid(5, msg.size() - 10);
        const auto it = bytes.find(body);
        p.Deliver(20, "START" + (it == bytes.end() ? QByteArray("FF") : it->second) + "ENDOF");
    }
};

TEST_F(AnalyzerLinkTest, PackCheckFindsTheCarCodeInThreePlaces)
{
    // Current pack: 0E/01/07E0-07E1.
    PackScript current;
    current.bytes = {{"0E0107E00001", "12"}, {"0E0107E10001", "34"}};
    port.onWrite = current;
    EXPECT_TRUE(link.SIO_PackCheck());
    EXPECT_EQ(link.Pack_Car_Code(), "1234");
    EXPECT_EQ(port.written.size(), 3u);  // check and two bytes

    // "0000" there: the older place 0E/00/0002-0003.
    port.written.clear();
    PackScript older;
    older.bytes = {{"0E0107E00001", "00"}, {"0E0107E10001", "00"},
                   {"0E0000020001", "56"}, {"0E0000030001", "78"}};
    port.onWrite = older;
    EXPECT_TRUE(link.SIO_PackCheck());
    EXPECT_EQ(link.Pack_Car_Code(), "5678");
    ASSERT_EQ(port.written.size(), 5u);
    EXPECT_EQ(port.written[3], "START0E0000020001ENDOF");

    // Hexadecimal letters fail both tests; the oldest place, 00/00/0002,
    // is taken untested.
    port.written.clear();
    PackScript oldest;
    oldest.bytes = {{"0E0107E00001", "12"}, {"0E0107E10001", "3F"},
                    {"0E0000020001", "AB"}, {"0E0000030001", "CD"},
                    {"000000020001", "1A"}, {"000000030001", "2B"}};
    port.onWrite = oldest;
    EXPECT_TRUE(link.SIO_PackCheck());
    EXPECT_EQ(link.Pack_Car_Code(), "1A2B");
    ASSERT_EQ(port.written.size(), 7u);
    EXPECT_EQ(port.written[5], "START000000020001ENDOF");
    EXPECT_EQ(port.written[6], "START000000030001ENDOF");

    // No pack: false at once, the code stays as it was.
    port.written.clear();
    PackScript none;
    none.check = "NO";
    port.onWrite = none;
    EXPECT_FALSE(link.SIO_PackCheck());
    EXPECT_EQ(port.written.size(), 1u);
    EXPECT_EQ(link.Pack_Car_Code(), "1A2B");
}

TEST_F(AnalyzerLinkTest, FindAnalyzerScansPortsOneToSix)
{
    // Port 2 can't be opened; the analyzer is on port 4 and answers with
    // noise in front. The scan stops the moment it has the name.
    port.dead = {2};
    port.onWrite = [](ScriptedPort& p, const QByteArray& msg) {
        if (msg == "NAMESENDOF" && p.portNumber() == 4)
            p.Deliver(250, "\x01zSTARTSIOENDOF");
        else if (msg == "NAMESENDOF")
            p.Deliver(50, "STARTNOSENDOF");
    };
    port.now = 0;
    EXPECT_TRUE(link.Find_Analyzer());
    EXPECT_EQ(port.openedNumbers, (std::vector<int>{1, 2, 3, 4}));
    EXPECT_TRUE(port.isOpen());
    EXPECT_EQ(port.portNumber(), 4);
    EXPECT_EQ(port.now, 2 * AnalyzerLink::kNameDeadlineMs + 250);

    // Nobody answers: every port is tried, the last one stays open.
    port.openedNumbers.clear();
    port.dead.clear();
    port.onWrite = nullptr;
    port.now = 0;
    EXPECT_FALSE(link.Find_Analyzer());
    EXPECT_EQ(port.openedNumbers, (std::vector<int>{1, 2, 3, 4, 5, 6}));
    EXPECT_TRUE(port.isOpen());
    EXPECT_EQ(port.portNumber(), 6);
    EXPECT_EQ(port.now, 6 * AnalyzerLink::kNameDeadlineMs);
}

TEST_F(AnalyzerLinkTest, LinkResultSetsFlagAndTexts)
{
    QString shown;
    vex::G().Status_Sink = [&](const QString& t) { shown = t; };
    vex::Apply_Link_Result(true);
    EXPECT_EQ(vex::G().Link_Type, 1);
    EXPECT_EQ(shown, QStringLiteral("분석기 연결 완료"));
    EXPECT_EQ(vex::Link_Panel4_Text(vex::G().Link_Type), "SIO");
    vex::Apply_Link_Result(false);
    EXPECT_EQ(vex::G().Link_Type, 0);
    EXPECT_EQ(shown, QStringLiteral("분석기와 연결되지 않았읍니다."));
    EXPECT_EQ(vex::Link_Panel4_Text(vex::G().Link_Type), "ISA");
}

} // namespace
