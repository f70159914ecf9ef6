#include "acquisition/PackLayout.h"

#include <gtest/gtest.h>

using namespace vex;

namespace {

// A day page built by hand, field after field, independent of the table.
QString Synthetic_Day_Page()
{
    QString p = QStringLiteral(
        "AA" "AA" "1234" "5678" "0000"          // check bytes, codes, reserved
        "231031" "0815" "231031" "1745"          // start, end
        "001234" "056789" "00123456"             // Distance, LastDistance, Engin
        "00" "00" "0012" "03" "04" "05"          // reserved, Acceleration, Brack, LKEngin, LastLKEngin
        "000000" "06" "0079" "07");              // reserved, LastBrack, reserved, LastEnginOver
    p += QString(128 - p.size(), QLatin1Char('0'));
    p += QStringLiteral("B") + QString(99, QLatin1Char('b'));          // Brack_Data at 129
    p += QString(1184 - p.size(), QLatin1Char('0'));
    p += QStringLiteral("S") + QString(2879, QLatin1Char('s'));        // Sec_Data at 1185
    p += QString(30, QLatin1Char('E'));
    return p;
}

} // namespace

TEST(PackLayout, NamedFieldsOfADayPage)
{
    const QString text = Synthetic_Day_Page();
    ASSERT_EQ(text.size(), kPageChars);
    const PageText p(text);
    EXPECT_EQ(p.field(DayPage::CheckPack1), "AA");
    EXPECT_EQ(p.field(DayPage::CarCode), "1234");
    EXPECT_EQ(p.field(DayPage::DriveCode), "5678");
    EXPECT_EQ(p.field(DayPage::StartDay), "231031");
    EXPECT_EQ(p.field(DayPage::StartTime), "0815");
    EXPECT_EQ(p.field(DayPage::EndTime), "1745");
    EXPECT_EQ(p.field(DayPage::Distance), "001234");
    EXPECT_EQ(p.field(DayPage::Engin), "00123456");
    EXPECT_EQ(p.field(DayPage::Acceleration), "0012");
    EXPECT_EQ(p.field(DayPage::Brack), "03");
    EXPECT_EQ(p.field(DayPage::LastLKEngin), "05");
    EXPECT_EQ(p.field(DayPage::LastBrack), "06");
    EXPECT_EQ(p.field(DayPage::Reserved79), "0079");
    EXPECT_EQ(p.field(DayPage::LastEnginOver), "07");
    EXPECT_EQ(p.field(DayPage::Brack_Data), "B" + QString(99, 'b'));
    EXPECT_EQ(p.field(DayPage::Sec_Data), "S" + QString(2879, 's'));
    EXPECT_EQ(p.field(DayPage::kFields.back()), QString(30, 'E'));
}

TEST(PackLayout, ShortPageGivesWhatExists)
{
    const PageText p(QStringLiteral("AAAA12"));
    EXPECT_EQ(p.field(DayPage::CheckPack), "AA");
    EXPECT_EQ(p.field(DayPage::CarCode), "12");
    EXPECT_EQ(p.field(DayPage::DriveCode), "");
    EXPECT_EQ(p.field(DayPage::Sec_Data), "");
    EXPECT_EQ(PageText().field(SysPage::SysDBWriteDate), "");
}

TEST(PackLayout, PutFieldKeepsThePageLength)
{
    QString page = Synthetic_Day_Page();
    Put_Field(page, DayPage::CarCode, "12");
    Put_Field(page, DayPage::DriveCode, "987654");
    EXPECT_EQ(page.size(), kPageChars);
    EXPECT_EQ(page.mid(0, 16), "AAAA12  98760000");

    QString shortPage = QStringLiteral("AAAA12");
    Put_Field(shortPage, DayPage::CarCode, "5678");
    Put_Field(shortPage, DayPage::DriveCode, "9999");
    EXPECT_EQ(shortPage, "AAAA56");
}

TEST(PackLayout, AddressesOfADate)
{
    const auto oct31 = Date_Addresses(QDate(2023, 10, 31));
    ASSERT_TRUE(oct31);
    EXPECT_EQ(oct31->day.bankText(), "0A");
    EXPECT_EQ(oct31->day.pageText(), "1F");
    EXPECT_EQ(oct31->day.text(), "0A1F000007FF");
    EXPECT_EQ(oct31->distance.text(), "0D1F000007FF");
    EXPECT_EQ(oct31->third.text(), "0F1F000007FF");

    const auto jan1 = Date_Addresses(QDate(2024, 1, 1));
    ASSERT_TRUE(jan1);
    EXPECT_EQ(jan1->day.text(), "0101000007FF");
    EXPECT_EQ(jan1->distance.pageText(), "01");

    EXPECT_FALSE(Date_Addresses(QDate()));

    EXPECT_EQ(kSystemPageAddress.text(), "00000000004D");
    EXPECT_EQ(kCarCodeHigh.text(), "0E0107E00001");
    EXPECT_EQ(kDriveCodeLow.offsetText(), "07E3");
    EXPECT_EQ(kAltCarCodeLow.text(), "0E0000030001");
}
