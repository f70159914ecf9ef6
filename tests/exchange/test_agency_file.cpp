// The agency files against lines written by hand from the layout: the
// header, both data forms, the distance rules, padding and the file names,
// the folder rule past 200 files, and what the check reports beforehand.
#include "core/Mod_Main.h"
#include "exchange/Agency_File.h"
#include "store/Cls_DB.h"
#include "store/DayFile.h"
#include "support/AppSession.h"

#include <QDir>
#include <QFile>
#include <gtest/gtest.h>

using namespace vex;

namespace {

const QString kZeros35(35, '0');

class Agency : public ::testing::Test {
protected:
    test::AppSession app;
    Cls_DB& db() { return *G().DB; }
    void Car(const QString& car, const QString& vehicle, const QString& model, const QString& factor)
    {
        db().Execute("INSERT INTO S_D1 (D_F1, D_F3, D_F5, D_F6) VALUES (?, ?, ?, ?)", {car, vehicle, factor, model});
    }
    void Trip(const QString& car, const QString& driver, const QString& day)
    {
        db().Execute("INSERT INTO D_D1 (D_F1, D_F2, D_F3, D_F4, D_F8) VALUES (?, ?, ?, ?, 0)",
                     {car + driver + day, car, driver, day});
    }
    void Series(const QString& table, const QString& key, std::initializer_list<std::pair<int, const char*>> cells)
    {
        QString s(2880, '0');
        for (const auto& [m, cell] : cells)
            s.replace(2 * m, 2, QString::fromLatin1(cell));
        db().Execute("INSERT INTO " + table + " (D_F1, D_F2) VALUES (?, ?)", {key, s});
    }
    QByteArray File(const QString& rel)
    {
        QFile f(app.Path(rel));
        return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray("<missing>");
    }
};

} // namespace

TEST_F(Agency, BothFormsLineByLine)
{
    // Minute form: car of model "120", three minutes from 10:00, a cell of
    // 8.5 km that counts 0.5, an "FF" after them that ends nothing.
    Car("000100", "AB1234", "120", "4.25");
    Trip("000100", "000200", "260105");
    Series("D_D3", "000100000200260105", {{600, "28"}, {601, "32"}, {602, "1E"}, {603, "FF"}});
    Series("D_D7", "000100000200260105", {{600, "05"}, {601, "12"}, {602, "85"}});
    // Second form: car of model "250", factor 4.25, its engine running a
    // second before it moves and a second after.
    Car("000300", "XY-9", "250", "4.25");
    Trip("000300", "000400", "260105");
    Series("D_D7", "000300000400260105", {{600, "15"}});
    DayFile f{std::vector<uint8_t>(kDayArray, 0), std::vector<uint8_t>(kDayArray, 0), {}};
    f.speed[36000] = 10;
    f.speed[36001] = 20;
    f.speed[36003] = 255; // no speed: outside 1 to 254
    f.engine[35999] = 5;
    f.engine[36002] = 3;
    QDir().mkpath(app.Path("pack/000300/260105"));
    Write_Day_File(Local_Path(Day_File_Name("000300", "000400", "260105")), f);

    const Agency_Result r = Write_Agency_Files(db(), {"회사", "123"}, "260101", "260131");
    ASSERT_TRUE(r.ok) << r.message.toStdString();
    EXPECT_EQ(r.message, "완료");
    ASSERT_EQ(r.written.size(), 2);

    const QByteArray minute =
        "qrx120###############################11AB1234######0000000123000000000000000200\r\n"
        "00000000000260105100000000400000" "0" + kZeros35.toLatin1() + "\r\n"
        "00010000000260105100100000500000" "0" + kZeros35.toLatin1() + "\r\n"
        "00020000000260105100200000300000" "0" + kZeros35.toLatin1() + "\r\n";
    EXPECT_EQ(File("report/1/20260105_AB1234_00_0000200.TXT"), minute);

    const QByteArray second =
        "qrx250###############################11XY-9########0000000123000000000000000400\r\n"
        "00000000000260105095959000000850" "0" + kZeros35.toLatin1() + "\r\n"
        "00010000000260105100000000100000" "0" + kZeros35.toLatin1() + "\r\n"
        "00010000000260105100001000200000" "0" + kZeros35.toLatin1() + "\r\n"
        "00010000000260105100002000000510" "0" + kZeros35.toLatin1() + "\r\n";
    EXPECT_EQ(File("report/1/20260105_XY-9_00_0000400.TXT"), second);

    // Field rules at their edges.
    EXPECT_EQ(Agency_Engine_Text(1, 4.33f), "173.2");
    EXPECT_EQ(Agency_Engine_Text(0, 4.25f), "0000");
    EXPECT_EQ(Agency_Header("qrx120", "ABCDEFGHIJKLM", "0000000123", "000200").size(), 80);
    EXPECT_EQ(Agency_Header("qrx120", "AB1234", "0000000123", "000200").size(), 79);
    EXPECT_EQ(Agency_Data_Line(0, "260105", 10, 0, -1, 0, "0000").size(), 68);
    EXPECT_EQ(Agency_Data_Line(12345, "260105", 9, 59, 59, 255, "173.2"), "12345" "0000000" "260105" "09595900" "255"
                                                                           "173.2" "0" + kZeros35);
}

TEST_F(Agency, RefusalsTheCheckAndTheFolderRule)
{
    EXPECT_EQ(Write_Agency_Files(db(), {"", "123"}, "260101", "260131").message,
              "회사명과 사업자번호를 입력하신 후 저장 버튼을 누르세요 !");
    EXPECT_EQ(Write_Agency_Files(db(), {"회사", "123"}, "260101", "260131").message, "데이터가 없습니다");

    // The identity is kept, and a mail address is no company name.
    QString message;
    EXPECT_FALSE(Save_Agency_Identity(db(), {"", "1"}, &message));
    EXPECT_EQ(message, "회사명과 사업자번호를 입력하세요");
    ASSERT_TRUE(Save_Agency_Identity(db(), {"운수회사", "1234567890"}, &message));
    EXPECT_EQ(message, "저장되었습니다");
    EXPECT_EQ(Load_Agency_Identity(db()).company, "운수회사");
    db().Execute("UPDATE S_D14 SET D_F22 = 'site@example.com'");
    EXPECT_EQ(Load_Agency_Identity(db()).company, "");

    // 203 days of an unregistered car: folder 1 takes 201 files, then every
    // file opens the next folder. The check says what will happen.
    {
        Cls_DB::Batch batch(db());
        for (int d = 0; d < 203; ++d) {
        const QString day = QDate(2026, 1, 1).addDays(d).toString("yyMMdd");
        Trip("000500", "000600", day);
        Series("D_D3", "000500000600" + day, {{600, "28"}});
        }
    }
    Car("000700", "VERY-LONG-ID-13", "250", "");
    Trip("000700", "000600", "260105");
    const std::vector<Agency_Note> notes = Agency_Check(db(), {"운수회사", "1"}, "260101", "261231");
    int unregistered = 0, long_ids = 0, no_file = 0;
    for (const Agency_Note& n : notes) {
        unregistered += n.what.contains("no register row");
        long_ids += n.what.contains("longer than 12");
        no_file += n.what.contains("without its day file");
    }
    EXPECT_EQ(unregistered, 203);
    EXPECT_EQ(long_ids, 1);
    EXPECT_EQ(no_file, 1);

    const Agency_Result r = Write_Agency_Files(db(), {"운수회사", "1"}, "260101", "261231");
    ASSERT_TRUE(r.ok) << r.message.toStdString();
    EXPECT_EQ(r.written.size(), 203);
    EXPECT_EQ(QDir(app.Path("report/1")).entryList(QDir::Files).size(), 201);
    EXPECT_EQ(QDir(app.Path("report/2")).entryList(QDir::Files).size(), 1);
    EXPECT_EQ(QDir(app.Path("report/3")).entryList(QDir::Files).size(), 1);
    EXPECT_EQ(r.folders, 4);
    // Unregistered: model "120", the car code as the vehicle id.
    EXPECT_TRUE(QFile::exists(app.Path("report/1/20260101_000500_00_0000600.TXT")));
}

TEST_F(Agency, TheCheckNamesWhatStopsTheRunAndEveryLineOffTheLayout)
{
    // A Korean plate (three characters of two bytes in CP949), and a model
    // "250" whose engine reaches 81 x 40 x 4.25 = 13770 rpm, five digits.
    Car("000300", "서울12가3456", "250", "4.25");
    Trip("000300", "000400", "260105");
    Series("D_D7", "000300000400260105", {{600, "15"}});
    DayFile f{std::vector<uint8_t>(kDayArray, 0), std::vector<uint8_t>(kDayArray, 0), {}};
    for (int s = 36000; s < 36010; ++s) {
        f.speed[size_t(s)] = 30;
        f.engine[size_t(s)] = s < 36003 ? 81 : 10;
    }
    QDir().mkpath(app.Path("pack/000300/260105"));
    Write_Day_File(Local_Path(Day_File_Name("000300", "000400", "260105")), f);

    // Without the company: the check says what the run would say, and stops.
    std::vector<Agency_Note> notes = Agency_Check(db(), {"", ""}, "260101", "260131");
    ASSERT_FALSE(notes.empty());
    EXPECT_TRUE(notes[0].stops);
    EXPECT_EQ(notes[0].what, "회사명과 사업자번호를 입력하신 후 저장 버튼을 누르세요 !");
    EXPECT_EQ(Write_Agency_Files(db(), {"", ""}, "260101", "260131").message, notes[0].what);
    EXPECT_TRUE(Agency_Check(db(), {"운수회사", "1"}, "260201", "260228")[0].stops) << "no rows";

    notes = Agency_Check(db(), {"운수회사", "1"}, "260101", "260131");
    ASSERT_EQ(notes.size(), 2u);
    EXPECT_FALSE(notes[0].stops || notes[1].stops);
    EXPECT_EQ(notes[0].key, "000300000400260105");
    EXPECT_TRUE(notes[0].what.startsWith("header of 82 bytes instead of 79")) << notes[0].what.toStdString();
    EXPECT_TRUE(notes[1].what.startsWith("3 of 10 data lines are not 68 characters wide; the first, at 10:00, is 69"))
        << notes[1].what.toStdString();

    // The files stay as the layout writes them: the check measured them right.
    const Agency_Result r = Write_Agency_Files(db(), {"운수회사", "1"}, "260101", "260131");
    ASSERT_TRUE(r.ok);
    ASSERT_EQ(r.written.size(), 1);
    QFile written(r.written[0]);
    ASSERT_TRUE(written.open(QIODevice::ReadOnly));
    const QList<QByteArray> lines = written.readAll().split('\n');
    EXPECT_EQ(lines[0].size(), 82 + 1);
    EXPECT_EQ(lines[1].size(), 69 + 1);
    EXPECT_EQ(lines[4].size(), 68 + 1);
}
