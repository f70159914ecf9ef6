// vexcli excel and fuel on a small database: a workbook where --out says,
// message 1135 and exit 1 without rows, refused words, and the fuel grids.
#include "core/Messages.h"
#include "core/Mod_Main.h"
#include "store/Cls_DB.h"
#include "support/AppSession.h"
#include "support/PutRow.h"
#include "support/CliRun.h"
#include "support/XlsxRead.h"

#include <QFileInfo>
#include <QTemporaryDir>
#include <gtest/gtest.h>

using namespace vex;

TEST(Excel_Cli, ReportsAndFuelGridsFromTheCommandLine)
{
    test::AppSession app;
    test::Put_Row("D_D1", "000101000201260105",
                  {{"D_F2", "000101"}, {"D_F3", "000201"}, {"D_F4", "260105"}, {"D_F5", "0810"}, {"D_F7", "1742"},
                   {"D_F8", 1234}, {"D_F9", 1}, {"D_F10", 2}, {"D_F12", 3}});
    QTemporaryDir out;
    const QString file = out.filePath("all.xlsx");
    const QStringList base = {"--app-dir", app.Dir()};
    test::CliRun r = test::Vexcli(base + QStringList{"excel", "carday1", "--from", "260101", "--to", "260131", "--out", file},
                                  test::Korean_Offscreen());
    ASSERT_EQ(r.code, 0) << r.err.toStdString();
    EXPECT_EQ(r.out.trimmed(), file);
    const test::Xlsx_Sheet s = test::Read_Xlsx(file, "list");
    ASSERT_TRUE(s.ok) << s.error.toStdString();
    EXPECT_EQ(s.Value("B6"), "000101");
    EXPECT_EQ(s.Value("E6"), "123.4");

    r = test::Vexcli(base + QStringList{"excel", "overspeed", "--car", "000101", "--driver", "000201", "--from",
                                        "260101", "--to", "260131"},
                     test::Korean_Offscreen());
    EXPECT_EQ(r.code, 1);
    EXPECT_EQ(r.err.trimmed(), "해당 데이터가 없습니다.");
    // Words refused before anything opens.
    EXPECT_EQ(test::Vexcli(base + QStringList{"excel", "nosuch", "--from", "260101", "--to", "260131"}).code, 2);
    EXPECT_EQ(test::Vexcli(base + QStringList{"excel", "carday", "--from", "260101", "--to", "260131"}).code, 2);
    EXPECT_EQ(test::Vexcli(base + QStringList{"excel", "carday1", "--from", "260131", "--to", "260101"}).code, 2);

    // The month grid: one car and the sum row; an empty month has the head only.
    r = test::Vexcli(base + QStringList{"fuel", "month", "2601", "--speed", "80", "--rates", "10,5,2,4", "--price",
                                        "1500"},
                     test::Korean_Offscreen());
    ASSERT_EQ(r.code, 0) << r.err.toStdString();
    QStringList lines = r.out.trimmed().split('\n');
    ASSERT_EQ(lines.size(), 3) << r.out.toStdString();
    EXPECT_TRUE(lines[0].startsWith("순위\t자동차 코드\t과속거리(km)"));
    EXPECT_TRUE(lines[1].startsWith("1\t000101\t0.0\t2\t1\t"));
    EXPECT_TRUE(lines[2].startsWith("\t소 계\t"));
    r = test::Vexcli(base + QStringList{"fuel", "month", "2602", "--speed", "80", "--rates", "10,5,2,4", "--price",
                                        "1500"});
    EXPECT_EQ(r.out.trimmed().split('\n').size(), 1);
    EXPECT_EQ(test::Vexcli(base + QStringList{"fuel", "month", "2601", "--rates", "1,2"}).code, 2);
    EXPECT_EQ(test::Vexcli(base + QStringList{"fuel", "day", "2601"}).code, 2);
}

TEST(Excel_Cli, WordsNoCommandTakesAreRefused)
{
    test::AppSession app;
    const QStringList base = {"--app-dir", app.Dir()};
    QTemporaryDir tmp;
    const QString missing = tmp.filePath("none/deeper");
    test::CliRun r = test::Vexcli(base + QStringList{"excel", "carday1", "--from", "260101", "--to", "260131", "--out",
                                                     missing + "/x.xlsx"});
    EXPECT_EQ(r.code, 2);
    EXPECT_TRUE(r.err.contains("cannot write")) << r.err.toStdString();
    EXPECT_FALSE(QFileInfo::exists(tmp.filePath("none"))) << "no folder is made";
    // A day of month 13, a price or a rate below zero.
    EXPECT_EQ(test::Vexcli(base + QStringList{"fuel", "day", "991399"}).code, 2);
    EXPECT_EQ(test::Vexcli(base + QStringList{"fuel", "day", "261301"}).code, 2);
    for (const char* price : {"-1500", "inf", "nan"})
        EXPECT_EQ(test::Vexcli(base + QStringList{"fuel", "month", "2601", "--speed", "80", "--rates", "10,5,2,4",
                                                  "--price", price})
                      .code,
                  2)
            << price;
    EXPECT_EQ(test::Vexcli(base + QStringList{"fuel", "month", "2601", "--speed", "80", "--rates", "10,-5,2,4",
                                              "--price", "1500"})
                  .code,
              2);
}
