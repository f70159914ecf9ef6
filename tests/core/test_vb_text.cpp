#include "core/VbText.h"

#include <gtest/gtest.h>

using namespace vex;

TEST(VbText, NumbersAsRecorderFieldsAreJudged)
{
    EXPECT_EQ(Val("12AB"), 12);
    EXPECT_EQ(Val("FF"), 0);
    EXPECT_EQ(Val("  007"), 7);
    EXPECT_EQ(Val("-12"), -12);
    EXPECT_EQ(Val("010001"), 10001);
    EXPECT_DOUBLE_EQ(Val("1.5x"), 1.5);
    EXPECT_DOUBLE_EQ(Val("12E3"), 12000);
    EXPECT_EQ(Val("1234567890123456789"), 1234567890123456789.0);
    EXPECT_EQ(Val(""), 0);

    EXPECT_TRUE(Is_Numeric("240305"));
    EXPECT_TRUE(Is_Numeric(" 12 "));
    EXPECT_TRUE(Is_Numeric("12E012")); // an exponent, as the runtime reads it
    EXPECT_FALSE(Is_Numeric("12E456")); // too large for a double
    EXPECT_FALSE(Is_Numeric("FFFFFF"));
    EXPECT_FALSE(Is_Numeric(""));
    EXPECT_FALSE(Is_Numeric("12 3"));

    EXPECT_TRUE(All_Digits("0123"));
    EXPECT_FALSE(All_Digits("01 3"));
    EXPECT_FALSE(All_Digits(""));

    EXPECT_EQ(Hex_Digit(QChar('b')), 11);
    EXPECT_EQ(Hex_Digit(QChar('G')), -1);

    EXPECT_EQ(Fixed("3", 2), "3 ");
    EXPECT_EQ(Fixed("12345", 4), "1234");
    EXPECT_EQ(HHMM_Of_Minutes(0), "0000");
    EXPECT_EQ(HHMM_Of_Minutes(1439), "2359");
    EXPECT_EQ(HHMM_Of_Minutes(-1), "2359");
    EXPECT_EQ(HHMM_Of_Minutes(1440), "0000");
}
