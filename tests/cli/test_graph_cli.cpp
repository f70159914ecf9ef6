// vexcli graph, sections and month on a received site: pictures as PNG and
// PDF (read back with pdftotext), the section sums, the month tables, and
// what the commands say of bad input.
#include "core/Mod_Main.h"
#include "store/Cls_DB.h"
#include "support/CliRun.h"
#include "support/ReceivedSite.h"
#include "support/TempApp.h"

#include <QDir>
#include <QImage>
#include <QProcess>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <gtest/gtest.h>

using namespace vex;

namespace {

QString Pdf_Text(const QString& pdf)
{
    QProcess p;
    p.start("pdftotext", {pdf, "-"});
    p.waitForFinished(30000);
    return QString::fromUtf8(p.readAllStandardOutput());
}

class GraphCli : public ::testing::Test {
protected:
    void SetUp() override
    {
        QString why;
        site = test::Received_Site(&why);
        ASSERT_FALSE(site.isEmpty()) << why.toStdString();
    }
    test::CliRun Run(QStringList args)
    {
        args.prepend(site);
        args.prepend("--app-dir");
        return test::Vexcli(args, test::Korean_Offscreen());
    }
    QString Out(const QString& name) const { return out.path() + "/" + name; }
    QString site;
    QTemporaryDir out;
};

} // namespace

TEST_F(GraphCli, DayAsImageAndAsPage)
{
    test::CliRun r = Run({"graph", "day", "12AB00", "000123", "260105", "--out", Out("day.png")});
    ASSERT_EQ(r.code, 0) << r.err.toStdString();
    EXPECT_TRUE(r.out.contains("12AB00")) << r.out.toStdString();
    EXPECT_EQ(QImage(Out("day.png")).size(), QSize(1920, 1080));

    r = Run({"graph", "day", "12AB00", "000123", "260105", "--zoom", "2", "--hour", "8", "--size", "800x600", "--out",
             Out("zoom.png")});
    ASSERT_EQ(r.code, 0) << r.err.toStdString();
    EXPECT_TRUE(r.out.contains("window 8-10h"));
    EXPECT_EQ(QImage(Out("zoom.png")).size(), QSize(800, 600));

    // A relative name is taken from where the command was given, not from
    // the application folder the program works in.
    const QString here = QDir::currentPath();
    QDir::setCurrent(out.path());
    r = Run({"graph", "day", "12AB00", "000123", "260105", "--out", "relative.png"});
    QDir::setCurrent(here);
    ASSERT_EQ(r.code, 0) << r.err.toStdString();
    EXPECT_EQ(QImage(Out("relative.png")).size(), QSize(1920, 1080));

    // The page, read back: title, band titles and the ticks of two hours.
    r = Run({"graph", "day", "12AB00", "000123", "260105", "--zoom", "2", "--hour", "8", "--out", Out("day.pdf")});
    ASSERT_EQ(r.code, 0) << r.err.toStdString();
    const QString text = Pdf_Text(Out("day.pdf"));
    for (const char* word : {"차량 운행 상황 분석", "운행 상태", "주행 속도", "(Km/h)", "총 주행거리", "2026-01-05",
                             "8시", "9시", "10시", "20분", "50분", "170", "15"})
        EXPECT_TRUE(text.contains(QString::fromUtf8(word))) << word << "\n" << text.toStdString();
}

TEST_F(GraphCli, HourAsImageAndAsPage)
{
    test::CliRun r = Run({"graph", "hour", "12AB00", "000123", "260105", "08", "--out", Out("hour.png")});
    ASSERT_EQ(r.code, 0) << r.err.toStdString();
    EXPECT_EQ(QImage(Out("hour.png")).size(), QSize(1920, 1080));
    r = Run({"graph", "hour", "12AB00", "000123", "260105", "08", "--zoom", "1", "--minute", "10", "--out",
             Out("hour.pdf")});
    ASSERT_EQ(r.code, 0) << r.err.toStdString();
    const QString text = Pdf_Text(Out("hour.pdf"));
    for (const char* word : {"초당 운행 그래프", "10분", "11분", "5초", "55초", "08시"})
        EXPECT_TRUE(text.contains(QString::fromUtf8(word))) << word << "\n" << text.toStdString();
    // "00" looks for the first hour with data.
    r = Run({"graph", "hour", "12AB00", "000123", "260105", "00", "--out", Out("first.png")});
    ASSERT_EQ(r.code, 0) << r.err.toStdString();
    EXPECT_TRUE(r.out.contains("(the first hour with data)")) << r.out.toStdString();
}

TEST_F(GraphCli, BadInputIsRefusedOrDrawsTheFrame)
{
    // Words that are wrong: refused before anything is drawn.
    for (const QStringList& args : {QStringList{"graph", "day", "12AB00", "000123", "260105", "--zoom", "5", "--out", Out("x.png")},
                                    QStringList{"graph", "day", "12AB00", "000123", "260105"},
                                    QStringList{"graph", "day", "12AB00", "000123", "260105", "--out", Out("x.gif")},
                                    QStringList{"graph", "day", "12AB00", "000123", "260105", "--size", "0x5", "--out", Out("x.png")},
                                    QStringList{"graph", "hour", "12AB00", "000123", "260105", "24", "--out", Out("x.png")},
                                    QStringList{"graph", "quickbrake", "12AB00", "--slot", "5", "--out", Out("x.png")},
                                    QStringList{"graph", "marks", "--all", "--car", "12AB00", "--from", "260101", "--to", "260131", "--out", Out("x.png")},
                                    QStringList{"graph", "week"}}) {
        const test::CliRun r = Run(args);
        EXPECT_EQ(r.code, 2) << args.join(' ').toStdString();
        EXPECT_TRUE(r.err.contains("graph day CARCODE")) << r.err.toStdString();
    }
    EXPECT_FALSE(QFile::exists(Out("x.png")));

    // A day, an hour, a car with nothing stored: the frame, and exit 1.
    test::CliRun r = Run({"graph", "day", "12AB00", "000123", "260301", "--out", Out("none.png")});
    EXPECT_EQ(r.code, 1);
    EXPECT_TRUE(r.err.contains("no stored day 12AB00000123260301")) << r.err.toStdString();
    EXPECT_EQ(QImage(Out("none.png")).size(), QSize(1920, 1080));
    r = Run({"graph", "hour", "12AB00", "000123", "260301", "09", "--out", Out("none-hour.png")});
    EXPECT_EQ(r.code, 1);
    EXPECT_TRUE(QFile::exists(Out("none-hour.png")));
    r = Run({"graph", "quickbrake", "12AB00", "--slot", "1", "--out", Out("qb.png")});
    EXPECT_EQ(r.code, 1);
    EXPECT_TRUE(r.err.contains("no quick-brake buffers"));
    EXPECT_TRUE(QFile::exists(Out("qb.png")));
}

TEST_F(GraphCli, QuickBrakeOfAStoredBuffer)
{
    // A memory pack day keeps its buffers in D_D2: 50 km/h, then a stop.
    {
        test::Reset_Globals();
        G().App_Dir = site;
        Cls_DB db(Parse_DB_Server("\\db\\morix.mdb", site));
        Recordset rs = db.DB_RSet_D_D("SELECT * FROM D_D2 WHERE D_F1=?", {"77CB00990000260105"});
        if (rs.RecordCount() < 1)
            rs.AddNew();
        rs.Set("D_F1", "77CB00990000260105");
        rs.Set("D_F2", "081530" "32" "00");
        rs.Set("D_F3", QString("32").repeated(50) + QString("00").repeated(10) + QString("1E").repeated(60));
        rs.Set("D_F4", "0105081530" "0105091000" + QString(20, '0'));
        rs.Update();
        rs.Close();
        db.DB_DConnection();
        test::Reset_Globals();
    }
    test::CliRun r = Run({"graph", "quickbrake", "77CB00", "--slot", "1", "--out", Out("qb1.png")});
    ASSERT_EQ(r.code, 0) << r.err.toStdString();
    EXPECT_TRUE(r.out.contains("제동 시각 : 01월 05일 08시 15분 30초")) << r.out.toStdString();
    EXPECT_TRUE(r.out.contains("50 50 50")) << r.out.toStdString();
    r = Run({"graph", "quickbrake", "77CB00", "--slot", "2", "--out", Out("qb2.pdf")});
    ASSERT_EQ(r.code, 0) << r.err.toStdString();
    EXPECT_TRUE(r.out.contains("01월 05일 09시 10분 00초"));
    EXPECT_TRUE(r.out.contains("30 30 30"));
    const QString pdf = Pdf_Text(Out("qb2.pdf"));
    EXPECT_TRUE(pdf.contains("속도 정밀 분석"));
    // The picture names the car, the driver and the day of the buffers.
    EXPECT_TRUE(pdf.contains("운전자 코드 990000")) << pdf.toStdString();
    EXPECT_TRUE(pdf.contains("운행일 2026-01-05"));
    // Slot 3 was never filled (its time is zeros): the frame alone, no time.
    r = Run({"graph", "quickbrake", "77CB00", "--slot", "3", "--out", Out("qb3.png")});
    ASSERT_EQ(r.code, 0) << r.err.toStdString();
    EXPECT_FALSE(r.out.contains("00월")) << r.out.toStdString();
    EXPECT_TRUE(r.err.contains("slot 3 holds no brake"));
}

TEST_F(GraphCli, MarksOfTheReceivedDays)
{
    test::CliRun r = Run({"graph", "marks", "--all", "--from", "260101", "--to", "260131", "--out", Out("avg.png")});
    ASSERT_EQ(r.code, 0) << r.err.toStdString();
    EXPECT_TRUE(r.out.contains("검색 일수 2")) << r.out.toStdString();
    EXPECT_TRUE(r.out.contains("2026-01-05"));
    r = Run({"graph", "marks", "--car", "12AB00", "--from", "260101", "--to", "260131", "--out", Out("car.pdf")});
    ASSERT_EQ(r.code, 0) << r.err.toStdString();
    EXPECT_TRUE(r.out.contains("운전자 코드 000123  근무 일수 2")) << r.out.toStdString();
    EXPECT_TRUE(Pdf_Text(Out("car.pdf")).contains("01 / 05"));
    r = Run({"graph", "marks", "--all", "--from", "250101", "--to", "250131", "--out", Out("empty.png")});
    EXPECT_EQ(r.code, 1);
}

TEST_F(GraphCli, SectionsAlternateAndAddUp)
{
    const test::CliRun r = Run({"sections", "12AB00", "000123", "260105"});
    ASSERT_EQ(r.code, 0) << r.err.toStdString();
    static const QRegularExpression row(R"(^  (\d\d):(\d\d) ~ (\d\d):(\d\d)  (\d\d):(\d\d)  (\S+)\s+([\d.]+) km$)",
                                        QRegularExpression::MultilineOption);
    int total = 0, drive = 0, count = 0;
    QString last;
    for (auto it = row.globalMatch(r.out); it.hasNext(); ++count) {
        const auto m = it.next();
        const int start = m.captured(1).toInt() * 60 + m.captured(2).toInt();
        const int end = m.captured(3).toInt() * 60 + m.captured(4).toInt();
        const int length = m.captured(5).toInt() * 60 + m.captured(6).toInt();
        EXPECT_EQ(end - start, length);
        EXPECT_NE(m.captured(7), last) << "kinds alternate";
        last = m.captured(7);
        total += length;
        if (last == QString::fromUtf8("운행"))
            drive += length;
    }
    EXPECT_GE(count, 3) << r.out.toStdString();
    EXPECT_EQ(last, QString::fromUtf8("운행"));
    auto hhmm = [](int m) { return QString("%1:%2").arg(m / 60, 2, 10, QChar('0')).arg(m % 60, 2, 10, QChar('0')); };
    EXPECT_TRUE(r.out.contains("Sum_DriveTime " + hhmm(drive) + "  Sum_BDriveTime " + hhmm(total - drive) +
                               "  Total_Time " + hhmm(total)))
        << r.out.toStdString();
    EXPECT_EQ(Run({"sections", "12AB00", "000123", "260301"}).code, 1);
}

TEST_F(GraphCli, MonthRebuildsTheSameRows)
{
    const test::CliRun a = Run({"month", "2601"});
    ASSERT_EQ(a.code, 0) << a.err.toStdString();
    EXPECT_TRUE(a.out.contains("D_M1 2601: 1 row(s)")) << a.out.toStdString();
    EXPECT_TRUE(a.out.contains("D_Y1 2601: 1 row(s)"));
    EXPECT_TRUE(a.out.contains("260112AB00000123  12AB00  000123  2601")) << a.out.toStdString();
    const test::CliRun b = Run({"month", "2601"});
    EXPECT_EQ(b.out, a.out);
    const test::CliRun none = Run({"month", "2502"});
    EXPECT_EQ(none.code, 1);
    EXPECT_TRUE(none.out.contains("D_M1 2502: 0 row(s)"));
    EXPECT_EQ(Run({"month", "26013"}).code, 2);
}
