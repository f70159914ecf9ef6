// Pack reading and writing against a scripted analyzer that serves a pack
// image: the checks, which days are read, and the bytes written back.
#include "acquisition/AnalyzerLink.h"
#include "acquisition/Cls_IO.h"
#include "acquisition/PackImage.h"
#include "acquisition/PackLayout.h"
#include "acquisition/Reception.h"
#include "core/Messages.h"
#include "core/Mod_Main.h"
#include "store/Cls_DB.h"
#include "support/AppSession.h"
#include "support/ScriptedPort.h"

#include <QRegularExpression>
#include <gtest/gtest.h>

using namespace vex;

namespace {

class PackReads : public ::testing::Test {
protected:
    void SetUp() override
    {
        port.onWrite = [this](test::ScriptedPort& p, const QByteArray& m) { Answer(p, m); };
        G().Link_Type = 1;
        G().IO->Link = &link;
    }
    void TearDown() override { G().IO->Link = nullptr; }

    // The analyzer: names itself, has a pack, serves reads, takes writes.
    void Answer(test::ScriptedPort& p, const QByteArray& m)
    {
        static const QRegularExpression read("^START(..)(..)(....)(....)ENDOF$"), write("^WRITE(.{8})(..)ENDOF$");
        const QString msg = QString::fromLatin1(m);
        if (msg == "NAMESENDOF")
            p.Deliver(1, "STARTSIOENDOF");
        else if (msg == "CHECKENDOF")
            p.Deliver(1, "STARTYESENDOF");
        else if (auto r = read.match(msg); r.hasMatch())
            p.Deliver(1, "START" + image.Read_Hex({r.captured(1).toInt(nullptr, 16), r.captured(2).toInt(nullptr, 16),
                                                   r.captured(3).toInt(nullptr, 16), r.captured(4).toInt(nullptr, 16)})
                                       .toLatin1()
                             + "ENDOF");
        else if (auto w = write.match(msg); w.hasMatch())
            image.Write_Hex(0, 0, w.captured(1).toInt(nullptr, 16), w.captured(2));
    }

    void System_Page(const QString& check1, const QString& dbWrite, const QString& lastWrite)
    {
        QString sys(kSysPageChars, '0');
        Put_Field(sys, SysPage::SysCheckPack, "AA");
        Put_Field(sys, SysPage::SysCheckPack1, check1);
        Put_Field(sys, SysPage::SysCarCode, "0001");
        Put_Field(sys, SysPage::SysDriveCode, "0002");
        Put_Field(sys, SysPage::SysWarehouse, "241201");
        Put_Field(sys, SysPage::SysPackInsert, lastWrite.isEmpty() ? "0000000000" : "2412010800");
        Put_Field(sys, SysPage::SysPackLastWrite, lastWrite.isEmpty() ? "0000000000" : lastWrite);
        Put_Field(sys, SysPage::SysDBWriteDate, dbWrite);
        image.Write_Hex(0, 0, 0, sys);
    }

    QStringList Sent(const QString& prefix) const
    {
        QStringList out;
        for (const QByteArray& m : port.written)
            if (m.startsWith(prefix.toLatin1()))
                out << QString::fromLatin1(m);
        return out;
    }

    test::AppSession app;
    PackImage image;
    test::ScriptedPort port;
    AnalyzerLink link{port, port.Clock()};
};

} // namespace

TEST_F(PackReads, ChecksClassifyThePack)
{
    Cls_IO& io = *G().IO;
    System_Page("AA", "2412100000", "2412101200");
    EXPECT_EQ(io.Pack_Checks(), 1);
    // A fresh pack: its second check byte refuses the system page itself.
    System_Page("11", "0000000000", "");
    EXPECT_EQ(io.Pack_Checks(), 7);
    EXPECT_EQ(io.System_Page.checkPack1, "11");
    System_Page("AA", "0000000000", "");
    image.Write_Hex(0, 0, 0, "BB");
    EXPECT_EQ(io.Pack_Checks(), 6);
    port.onWrite = [](test::ScriptedPort&, const QByteArray&) {}; // no reply at all
    EXPECT_EQ(io.Pack_Checks(), 7);
    EXPECT_EQ(io.Pack_Reads(), 18);
    G().Link_Type = 0;
    EXPECT_EQ(io.Pack_Checks(), 0);
}

TEST_F(PackReads, OnlyNewDaysAreReadAndThePackIsMarked)
{
    Cls_IO& io = *G().IO;
    System_Page("AA", "2412101200", "2412101200"); // read up to its last write
    EXPECT_EQ(io.Pack_Reads(), 0);
    EXPECT_TRUE(Sent("START0C").isEmpty());
    EXPECT_TRUE(Sent("WRITE").isEmpty());

    System_Page("AA", "2412101200", "2412101201"); // one minute later: that day again
    port.written.clear();
    EXPECT_EQ(io.Pack_Reads(), 0);
    EXPECT_EQ(Sent("START0C"), QStringList{"START0C0A000007FFENDOF"});
    EXPECT_EQ(Sent("START0D"), QStringList{"START0D0A000007FFENDOF"});
    EXPECT_EQ(Sent("WRITE").size(), 5);
    EXPECT_EQ(PageText(image.Read_Hex(kSystemPageAddress)).field(SysPage::SysDBWriteDate), "2412101201");

    // Across New Year the bank follows each date's month.
    System_Page("AA", "2412301200", "2501021200");
    port.written.clear();
    io.Today = [] { return QDate(2025, 1, 3); };
    EXPECT_EQ(io.Pack_Reads(), 0);
    EXPECT_EQ(Sent("START0C").size() + Sent("START01").size(), 4);
    EXPECT_TRUE(Sent("START").contains("START0C1F000007FFENDOF"));
    EXPECT_TRUE(Sent("START").contains("START0102000007FFENDOF"));
    EXPECT_EQ(PageText(image.Read_Hex(kSystemPageAddress)).field(SysPage::SysDBWriteDate), "2501021200");
}

TEST_F(PackReads, ADayWithoutAReplyIsSkippedMarkedAndTold)
{
    Cls_IO& io = *G().IO;
    System_Page("AA", "2412101200", "2412121200");
    io.Today = [] { return QDate(2024, 12, 13); };
    // The third page of the 11th never answers.
    port.onWrite = [this](test::ScriptedPort& p, const QByteArray& m) {
        if (!m.startsWith("START0F0B"))
            Answer(p, m);
    };
    EXPECT_EQ(io.Pack_Reads(), 4);
    ASSERT_EQ(io.Skipped.size(), 1u);
    EXPECT_EQ(io.Skipped[0].day, QDate(2024, 12, 11));
    // The pack is marked read past it all the same, so the report says so.
    EXPECT_EQ(PageText(image.Read_Hex(kSystemPageAddress)).field(SysPage::SysDBWriteDate), "2412121200");

    System_Page("AA", "2412101200", "2412121200");
    const Reception_Outcome outcome = Receive_Pack_Days(false, {}, {});
    EXPECT_FALSE(outcome.Clean());
    ASSERT_EQ(outcome.skipped.size(), 1u);
    EXPECT_TRUE(outcome.Summary().contains("241211 (no reply)")) << outcome.Summary().toStdString();
    EXPECT_TRUE(outcome.failure.isEmpty());

    // No reply at all: the reception failed, and says why.
    port.onWrite = [](test::ScriptedPort&, const QByteArray&) {};
    const Reception_Outcome dead = Receive_Pack_Days(false, {}, {});
    EXPECT_EQ(dead.failure, LoadResString(5009));
    EXPECT_TRUE(dead.Summary().contains(LoadResString(5009)));
}

TEST_F(PackReads, WritesGoOneByteAMessage)
{
    Cls_IO& io = *G().IO;
    int16_t mode = 1;
    EXPECT_TRUE(io.Pack_Writes(mode, "0012"));
    EXPECT_EQ(Sent("NAMES").size(), 1); // the link is tested first
    EXPECT_EQ(Sent("WRITE"), (QStringList{"WRITE0000000400ENDOF", "WRITE0000000512ENDOF"}));

    port.written.clear();
    mode = 3;
    EXPECT_FALSE(io.Pack_Writes(mode, "0012"));
    EXPECT_TRUE(port.written.empty());

    // With the flag at 0 the test is skipped and the bytes still go out.
    G().Link_Type = 0;
    mode = 2;
    EXPECT_TRUE(io.Pack_Writes(mode, "2412101201"));
    EXPECT_TRUE(Sent("NAMES").isEmpty());
    EXPECT_EQ(Sent("WRITE").value(1), "WRITE0000004812ENDOF");
}
