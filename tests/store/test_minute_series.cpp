// The minute cells of distance and the clock of a minute.
#include "store/Minute_Series.h"

#include <gtest/gtest.h>

using namespace vex;

TEST(MinuteSeries, DistanceCellsAreTwoDigitsAndAnythingElseIsVal)
{
    EXPECT_EQ(Sum_Distance_Cells(QStringLiteral("0512990000")), 5 + 12 + 99);
    // Cells that are not two digits read as Val reads them: a lone digit
    // before a space or a letter, a sign, a decimal point.
    EXPECT_EQ(Sum_Distance_Cells(QStringLiteral(" 5" "7 " "3A" "-2" ".5" "ZZ")), 5 + 7 + 3 - 2 + 0.5);
    // An odd last character is a cell of its own.
    EXPECT_EQ(Sum_Distance_Cells(QStringLiteral("107")), 10 + 7);
    // Only the day's 1,440 cells count.
    EXPECT_EQ(Sum_Distance_Cells(QString(2880, QLatin1Char('0')) + QStringLiteral("99")), 0);

    QString flagged = QStringLiteral("8595");
    Clear_Pack_Distance_Flags(flagged);
    EXPECT_EQ(flagged, QStringLiteral("0515"));
}

TEST(MinuteSeries, AMinuteReadsAsTheHourOfTheClock)
{
    EXPECT_EQ(Minute_Time(0), QStringLiteral("0000"));
    EXPECT_EQ(Minute_Time(61), QStringLiteral("0101"));
    EXPECT_EQ(Minute_Time(1439), QStringLiteral("2359"));
    EXPECT_EQ(Minute_Time(1500), QStringLiteral("0100")); // past midnight, the next day's clock
}
