// Every printed report of a received day as a PDF, read back: titles,
// labels, figures of the day, the attachment of a long day on its second
// page, what a day without recorder identity, maintenance check or RPM input
// leaves out, A4 in each orientation, and the two ways a print fails.
#include "acquisition/Cls_IO.h"
#include "analysis/Operation_Graph.h"
#include "analysis/Quick_Brake_Chart.h"
#include "analysis/Trip_Fields.h"
#include "core/Cls_Config.h"
#include "core/Err_Proc.h"
#include "core/Messages.h"
#include "core/Mod_Main.h"
#include "reports/Cls_Report.h"
#include "reports/Report_Printer.h"
#include "store/Cls_DB.h"
#include "support/AppSession.h"
#include "support/PdfRead.h"
#include "support/ReceivedSite.h"

#include <QDate>
#include <QTemporaryDir>
#include <gtest/gtest.h>

using namespace vex;

namespace {

const QString kDay = QStringLiteral("260105");
const QString kPortrait = QStringLiteral("A4 portrait");
const QString kLandscape = QStringLiteral("A4 landscape");

// Korean texts for the reports of one test.
class Korean {
public:
    Korean() : had_(qEnvironmentVariableIsSet("VEX_LANG")), saved_(qgetenv("VEX_LANG")) { qputenv("VEX_LANG", "ko"); }
    ~Korean()
    {
        if (had_)
            qputenv("VEX_LANG", saved_);
        else
            qunsetenv("VEX_LANG");
    }

private:
    bool had_;
    QByteArray saved_;
};

// A printer with no printers: the routine must stop before it opens one.
class No_Printers : public Report_Printer {
public:
    QStringList Device_Names() const override { return {}; }
    QPagedPaintDevice* Begin_Doc(const QString&, bool) override
    {
        ++opened;
        return nullptr;
    }
    int opened = 0;
};

class Reports : public ::testing::Test {
protected:
    void SetUp() override
    {
        QString why;
        const QString site = test::Received_Site(&why);
        ASSERT_FALSE(site.isEmpty()) << why.toStdString();
        session = std::make_unique<test::Site_Session>(site);
        ASSERT_TRUE(session->Ok()) << Err_Last().toStdString();
        report.Car_Code = test::kSiteCar;
        report.Driver_Code = test::kSiteDriver;
        report.Start_Date = report.End_Date = kDay;
        report.Msg_Box = [this](const QString& text, const QString& title) { boxes << title + ": " + text; };
    }
    void TearDown() override { session.reset(); }

    Cls_DB& db() { return *G().DB; }
    QString Pdf(const QString& name) const { return dir.filePath(name + ".pdf"); }
    // D_D1 column of the day.
    QString Stored(const QString& column)
    {
        Recordset rs = db().DB_RSet_D_D("SELECT * FROM D_D1 WHERE D_F1=?", {test::kSiteCar + test::kSiteDriver + kDay});
        return rs.Text(column);
    }

    Korean korean;
    std::unique_ptr<test::Site_Session> session;
    Cls_Report report;
    QStringList boxes;
    QTemporaryDir dir;
};

QString Today()
{
    return QDate::currentDate().toString("yyyy.MM.dd");
}

} // namespace

TEST_F(Reports, ALongDayPrintsItsNoteAndTheAttachmentOnTheSecondPage)
{
    Pdf_Printer pdf(Pdf("day"));
    ASSERT_TRUE(report.Report_Drive_Day(pdf, db())) << Err_Last().toStdString();
    EXPECT_EQ(test::Pdf_Pages(Pdf("day")), 2);
    EXPECT_EQ(test::Pdf_Page_Size(Pdf("day")), kPortrait);

    const QString first = test::Pdf_Text(Pdf("day"), 1, 1);
    for (const char* label : {"운전일보", "담당", "과장", "차장", "사장", "운행 상황", "주행 거리", "장비명", "정비 내역",
                              "경유지", "시작 시각", "종료 시각", "공차Km", "영차Km", "T.Km", "근무 시간", "근무 정보",
                              "운행 시간", "최고 속도", "연료소모량", "일계", "소모량", "총 주행거리"})
        EXPECT_TRUE(first.contains(QString::fromUtf8(label))) << label;
    EXPECT_TRUE(first.contains("출력일 : " + Today()));
    EXPECT_TRUE(first.contains("자동차 코드 : 12AB00"));
    EXPECT_TRUE(first.contains("운전원명/코드 : 000123 / 000123"));
    EXPECT_TRUE(first.contains("운행일 : 2026.01.05"));
    // The day's figures as stored: its distance, start and the first
    // section of the walk.
    EXPECT_TRUE(first.contains(QString::number(Stored("D_F8").toDouble() / 10, 'f', 1)));
    EXPECT_TRUE(first.contains(Stored("D_F5").left(2) + ":" + Stored("D_F5").right(2)));
    EXPECT_TRUE(first.contains("06:30"));
    // Seventeen sections: eleven lines and the note on the last line.
    EXPECT_TRUE(first.contains("* 별첨 (운행 정보) 참조"));
    EXPECT_FALSE(first.contains("15:55"));
    // No recorder identity received from a USB medium: no such lines.
    EXPECT_FALSE(first.contains("M - "));
    EXPECT_FALSE(first.contains("P - "));

    const QString second = test::Pdf_Text(Pdf("day"), 2, 2);
    EXPECT_EQ(second.count("운행 정보"), 2);
    EXPECT_TRUE(second.contains("운행 거리"));
    EXPECT_TRUE(second.contains("비운행 거리"));
    EXPECT_TRUE(second.contains("15:55")); // the last section
    EXPECT_TRUE(second.contains("일계"));
    // The printer's proportions stay with the report only.
    EXPECT_TRUE(boxes.isEmpty());
}

TEST_F(Reports, IdentityMaintenanceCheckAndRpmAppearOnlyWhenThereAreAny)
{
    Cls_Config& cfg = *G().Config;
    G().IO->System_Page.machineNumber = "M-77";
    G().IO->System_Page.serialNumber = "12345678";
    cfg.C_Oil = 1;
    cfg.C_RPM = 0;
    Pdf_Printer with(Pdf("with"));
    ASSERT_TRUE(report.Report_Drive_Day(with, db()));
    QString text = test::Pdf_Text(Pdf("with"), 1, 1);
    EXPECT_TRUE(text.contains("M - M-77"));
    EXPECT_TRUE(text.contains("P - 12345678"));
    for (const char* item : {"엔진오일", "변속기 오일", "브레이크 오일", "클러치 오일", "오일필터", "경유필터", "TR필터",
                             "에어필터", "데후오일", "핸드오일", "속도 센서", "점화플러그 배선", "점화플러그",
                             "브레이크 라이닝", "타이밍 밸트", "외부 밸트", "타이어"})
        EXPECT_TRUE(text.contains(QString::fromUtf8(item))) << item;
    // No maintenance record: every share is 0%; the trip's mark and
    // overspeed minutes stand beside the items.
    EXPECT_TRUE(text.contains("= 0%"));
    EXPECT_TRUE(text.contains("평가 점수"));
    EXPECT_TRUE(text.contains("= " + Stored("D_F14")));
    EXPECT_TRUE(text.contains("= " + Stored("D_F11")));
    EXPECT_FALSE(text.contains("R.P.M센서"));

    // With an RPM input the sensor's row and the graph's RPM band come in.
    cfg.C_RPM = 1;
    G().Max_RPM_Axis = 3000;
    Pdf_Printer rpm(Pdf("rpm"));
    ASSERT_TRUE(report.Report_Drive_Day(rpm, db()));
    text = test::Pdf_Text(Pdf("rpm"), 1, 1);
    EXPECT_TRUE(text.contains("R.P.M센서"));
    EXPECT_TRUE(text.contains("R.P.M"));

    // The check off: its items are gone, the rest stands.
    cfg.C_Oil = 0;
    cfg.C_RPM = 0;
    Pdf_Printer off(Pdf("off"));
    ASSERT_TRUE(report.Report_Drive_Day(off, db()));
    text = test::Pdf_Text(Pdf("off"), 1, 1);
    EXPECT_FALSE(text.contains("엔진오일"));
    EXPECT_FALSE(text.contains("평가 점수"));
    EXPECT_TRUE(text.contains("소모량"));
    EXPECT_TRUE(text.contains("근무 정보"));
}

TEST_F(Reports, EveryRoutinePrintsItsTitleLabelsAndFigures)
{
    // The dispatch form: the same day with its blocks to fill in.
    Pdf_Printer inspection(Pdf("inspection"));
    ASSERT_TRUE(report.Report_inspection_Day(inspection, db()));
    QString text = test::Pdf_Text(Pdf("inspection"), 1, 1);
    for (const char* label : {"운전일보", "지점", "배차", "수송화물", "배차 번호", "의뢰번호", "화주명", "물자명",
                              "운반구간", "톤(수량)", "운임", "연료 소모량", "점소명", "주입량", "주입 시각", "L/T Km",
                              "비운행 시간", "기타 비용과 교통비", "지급액", "숙박비", "도로비", "식비", "결박비",
                              "회전 수당", "통행료", "기타", "소계", "* 별첨 (운행 정보) 참조"})
        EXPECT_TRUE(text.contains(QString::fromUtf8(label))) << label;
    EXPECT_EQ(test::Pdf_Pages(Pdf("inspection")), 2);

    Pdf_Printer sections(Pdf("sections"));
    ASSERT_TRUE(report.Report_Drive_Sections(sections, db()));
    text = test::Pdf_Text(Pdf("sections"));
    EXPECT_EQ(text.count("운행 정보"), 2);
    EXPECT_TRUE(text.contains("M- / P- /"));
    EXPECT_TRUE(text.contains("06:30") && text.contains("15:55"));

    // The minute view: its figures under their captions, landscape.
    Operation_Graph og(db());
    ASSERT_TRUE(og.DB_Search_Data(nullptr, test::kSiteCar, test::kSiteDriver, kDay));
    report.Car_Government = "서울 12가 3456";
    Pdf_Printer operation(Pdf("operation"));
    ASSERT_TRUE(report.Report_Operation(operation, og, Minute_Field_Captions(), Opening_Fields(og)));
    EXPECT_EQ(og.Out_Direction, 0);
    EXPECT_EQ(test::Pdf_Page_Size(Pdf("operation")), kLandscape);
    text = test::Pdf_Text(Pdf("operation"));
    EXPECT_TRUE(text.contains("차량 운행 상황 분석"));
    EXPECT_TRUE(text.contains("차량 번호 : 서울 12가 3456"));
    EXPECT_TRUE(text.contains("운전자 코드 : 000123"));
    EXPECT_TRUE(text.contains("평점 : " + Stored("D_F14")));
    EXPECT_TRUE(text.contains("IDLE : " + Stored("D_F12")));
    EXPECT_TRUE(text.contains("과속 횟수 : " + Stored("D_F11")));
    EXPECT_FALSE(text.contains("R.P.M :")); // no RPM input

    // The seconds view of eight o'clock: the hour's brakes, accelerations,
    // overspeed minutes and highest speed.
    QString hour = "08";
    ASSERT_FALSE(og.DB_Search_SecData2(nullptr, test::kSiteCar, test::kSiteDriver, kDay, hour).isEmpty());
    Pdf_Printer seconds(Pdf("seconds"));
    ASSERT_TRUE(report.Report_Operation_360(seconds, og, Second_Field_Captions(),
                                            Second_Fields(og, test::kSiteCar, test::kSiteDriver, 0)));
    text = test::Pdf_Text(Pdf("seconds"));
    EXPECT_TRUE(text.contains("초당 운행 그래프"));
    EXPECT_TRUE(text.contains("운행 시각 : 08 : 00 : 00"));
    for (const char* label : {"급제동 : ", "급가속 : ", "과속 : ", "속도(Km/h) : "})
        EXPECT_TRUE(text.contains(QString::fromUtf8(label))) << label;
    EXPECT_EQ(test::Pdf_Page_Size(Pdf("seconds")), kLandscape);

    // The charts of marks of the period and the quick-brake chart.
    report.Start_Date = "260101";
    report.End_Date = "260110";
    Pdf_Printer avg(Pdf("avg"));
    ASSERT_TRUE(report.Report_Avg_Day_G(avg, db()));
    text = test::Pdf_Text(Pdf("avg"));
    EXPECT_TRUE(text.contains("운전원 평균 평점 그래프"));
    EXPECT_TRUE(text.contains("검색 시작일 : 2026-01-01"));
    EXPECT_TRUE(text.contains("검색 일수 : 2"));
    EXPECT_TRUE(text.contains("01 / 05"));
    Pdf_Printer byDay(Pdf("byday"));
    ASSERT_TRUE(report.Report_Day_AVG_G(byDay, db()));
    text = test::Pdf_Text(Pdf("byday"));
    EXPECT_TRUE(text.contains("운전원 일별 평점 그래프"));
    EXPECT_TRUE(text.contains("근무 일수 : 2"));
    Quick_Brake_Chart chart;
    Pdf_Printer brake(Pdf("brake"));
    ASSERT_TRUE(report.Report_Quick_Brake(brake, db(), chart, 1));
    text = test::Pdf_Text(Pdf("brake"));
    EXPECT_TRUE(text.contains("속도 정밀 분석"));
    EXPECT_TRUE(text.contains("자동차 코드 : 12AB00"));
    EXPECT_EQ(chart.Out_Direction, 0);
}

TEST_F(Reports, WithoutAPrinterOrWritableFileNothingIsPrinted)
{
    No_Printers none;
    EXPECT_FALSE(report.Report_Drive_Day(none, db()));
    EXPECT_EQ(none.opened, 0);
    ASSERT_EQ(boxes.size(), 1);
    EXPECT_EQ(boxes[0], "출력 오류: 설치된 프린터가 없습니다.");

    // A file that can't be written: the routine fails, logged under its
    // name, and the stored day is as it was.
    const QString before = Stored("D_F14") + Stored("D_F8") + Stored("D_F11");
    Pdf_Printer nowhere("/nonexistent-folder/day.pdf");
    EXPECT_FALSE(report.Report_Drive_Day(nowhere, db()));
    EXPECT_TRUE(Err_Last().contains("Cls_Report - Report_Drive_Day")) << Err_Last().toStdString();
    EXPECT_EQ(Stored("D_F14") + Stored("D_F8") + Stored("D_F11"), before);
}

TEST(Reports_Short_Day, ADayThatFitsItsTableHasOnePageAndNoNote)
{
    Korean korean;
    test::AppSession app;
    // Two drives of an hour with an hour's stop between them.
    QString speed(2880, '0');
    for (int m = 480; m < 540; ++m)
        speed.replace(2 * m, 2, "32");
    for (int m = 600; m < 660; ++m)
        speed.replace(2 * m, 2, "3C");
    const QString key = "000100000200260110";
    Cls_DB& db = *G().DB;
    auto put = [&](const QString& table, const QVariantList& fields) {
        Recordset rs = db.DB_RSet_D_D("SELECT * FROM " + table + " WHERE D_F1=?", {key});
        rs.AddNew();
        rs.Set("D_F1", key);
        for (int i = 0; i + 1 < fields.size(); i += 2)
            rs.Set(fields[i].toString(), fields[i + 1]);
        rs.Update();
    };
    put("D_D1", {"D_F2", "000100", "D_F3", "000200", "D_F4", "260110", "D_F5", "0800", "D_F7", "1100", "D_F8", 1100,
                 "D_F14", 0});
    put("D_D3", {"D_F2", speed});
    Cls_Report report;
    report.Car_Code = "000100";
    report.Driver_Code = "000200";
    report.Start_Date = "260110";
    QTemporaryDir dir;
    Pdf_Printer pdf(dir.filePath("short.pdf"));
    ASSERT_TRUE(report.Report_Drive_Day(pdf, db));
    EXPECT_EQ(test::Pdf_Pages(dir.filePath("short.pdf")), 1);
    const QString text = test::Pdf_Text(dir.filePath("short.pdf"));
    EXPECT_FALSE(text.contains("별첨"));
    EXPECT_TRUE(text.contains("08:00") && text.contains("09:00") && text.contains("10:00"));
    EXPECT_TRUE(text.contains("110.0"));
}
