// The pages that show where a figure comes from, read back from their PDF:
// a trip's mark step by step ending on its stored mark, over as many sheets
// as its events take; the drivers' month table with every driver in it.
#include "support/CliRun.h"
#include "support/PdfRead.h"
#include "support/TempApp.h"
#include "support/XlsxRead.h"

#include <QProcessEnvironment>
#include <QRegularExpression>
#include <gtest/gtest.h>

using namespace vex;

TEST(TrustPages, TheMarkExplainedAndTheDriversMonthOnPaper)
{
    test::TempApp temp;
    const QString app = temp.Path("site");
    auto cli = [&](const QStringList& args) { return test::Vexcli(QStringList{"--app-dir", app} + args); };
    ASSERT_EQ(cli({"sample", "fleet", "--cars", "3", "--days", "10", "--from", "261025"}).code, 0);

    const test::CliRun told = cli({"marks", "explain", "A00001", "000202", "261025"});
    ASSERT_EQ(told.code, 0) << told.err.toStdString();
    static const QRegularExpression markLine("mark (\\d+) \\(stored (\\d+)\\)");
    const auto m = markLine.match(told.out);
    ASSERT_TRUE(m.hasMatch()) << told.out.toStdString();
    EXPECT_EQ(m.captured(1), m.captured(2));

    ASSERT_EQ(cli({"report", "mark-explanation", "A00001", "000202", "261025", "--out", temp.Path("mark.pdf")}).code, 0);
    const QString page = test::Pdf_Text(temp.Path("mark.pdf"));
    EXPECT_TRUE(page.contains(m.captured(0))) << page.toStdString();
    EXPECT_TRUE(page.contains("driver 운전자 2-2, management number")) << page.toStdString();
    // Every event line of the command is on paper, the sheets as many as it takes.
    const int events = int(told.out.count(QRegularExpression("^    \\d\\d:\\d\\d:\\d\\d  ", QRegularExpression::MultilineOption)));
    EXPECT_GT(events, 40);
    EXPECT_EQ(page.count(QRegularExpression("\\d\\d:\\d\\d:\\d\\d +overspeed minutes")) +
                  page.count(QRegularExpression("\\d\\d:\\d\\d:\\d\\d +(quick|long|idle)")),
              events);
    EXPECT_GE(test::Pdf_Pages(temp.Path("mark.pdf")), 2);
    EXPECT_EQ(cli({"report", "mark-explanation", "A00001", "000202", "261130", "--out", temp.Path("none.pdf")}).code, 2);

    ASSERT_EQ(cli({"report", "driver-trend", "--from", "2610", "--to", "2611", "--out", temp.Path("trend.pdf")}).code, 0);
    const QString table = test::Pdf_Text(temp.Path("trend.pdf"));
    EXPECT_EQ(test::Pdf_Page_Size(temp.Path("trend.pdf")), "A4 landscape");
    for (const char* driver : {"000101", "000102", "000201", "000202", "000301", "000302"})
        EXPECT_TRUE(table.contains(driver)) << driver << "\n" << table.toStdString();
    // The same table as a workbook.
    ASSERT_EQ(cli({"marks", "trend", "--from", "2610", "--to", "2611", "--out", temp.Path("trend.xlsx")}).code, 0);
    const test::Xlsx_Sheet sheet = test::Read_Xlsx(temp.Path("trend.xlsx"), "condition");
    EXPECT_EQ(sheet.Value("A1"), "Drivers month by month");
    EXPECT_EQ(sheet.Value("B2"), "2610-2611");
    EXPECT_EQ(sheet.Value("F4"), "avg mark");
    EXPECT_EQ(sheet.Value("A5"), "2610");
    EXPECT_EQ(sheet.Value("I10"), "3/3");
    // Drivers take their cars by the week: three drive in October, the other three in November.
    EXPECT_EQ(table.count("/3"), 6) << table.toStdString();
}
