#include "acquisition/Cls_IO.h"
#include "core/Err_Proc.h"
#include "core/Pad.h"

#include <gtest/gtest.h>

using vex::Cls_IO;

TEST(HexFamily, HexDecGivesTwoDigitZeroAndFullWidth)
{
    EXPECT_EQ(Cls_IO::Hex_Dec("00"), "00");
    EXPECT_EQ(Cls_IO::Hex_Dec("0"), "00");
    EXPECT_EQ(Cls_IO::Hex_Dec("00000000"), "00");
    EXPECT_EQ(Cls_IO::Hex_Dec("0A"), "10");
    EXPECT_EQ(Cls_IO::Hex_Dec("96"), "150");
    EXPECT_EQ(Cls_IO::Hex_Dec("ff"), "255");
    EXPECT_EQ(Cls_IO::Hex_Dec("FFFFFFFFFFFFFFFF"), "18446744073709551615");
    EXPECT_EQ(Cls_IO::Hex_Dec("000000000000000001"), "1");
}

TEST(HexFamily, BadInputGivesEmptyTextAndReachesErrProc)
{
    EXPECT_EQ(Cls_IO::Hex_Dec(""), "");
    EXPECT_EQ(Cls_IO::Hex_Dec(" 1"), "");  // no trimming
    EXPECT_EQ(Cls_IO::Hex_Dec("-1"), "");
    EXPECT_EQ(Cls_IO::Hex_Dec("0x1F"), "");
    EXPECT_EQ(Cls_IO::Hex_Dec("10000000000000000"), "");  // 65 bits
    EXPECT_EQ(Cls_IO::Hex_Bit("G1"), "");
    EXPECT_EQ(Cls_IO::Hex_Bit(""), "");
    EXPECT_EQ(Cls_IO::Hex_Oct("12 4"), "");
    EXPECT_EQ(Cls_IO::Oct_Dec("18"), "");
    EXPECT_EQ(Cls_IO::Oct_Dec(""), "");
    EXPECT_EQ(Cls_IO::Oct_Hex(18), "");
    EXPECT_EQ(Cls_IO::Oct_Hex(-7), "");
    EXPECT_EQ(Cls_IO::Bit_Dec("102"), "");
    EXPECT_EQ(Cls_IO::Bit_Dec(""), "");

    EXPECT_EQ(Cls_IO::Hex_Dec("7Z"), "");
    EXPECT_TRUE(vex::Err_Last().startsWith("Cls_IO - Hex_Dec")) << vex::Err_Last().toStdString();
    EXPECT_TRUE(vex::Err_Last().contains("7Z"));
}

TEST(HexFamily, DecimalToHexAndOctalUse16BitTwosComplement)
{
    EXPECT_EQ(Cls_IO::Dec_Hex(0), "0");
    EXPECT_EQ(Cls_IO::Dec_Hex(10), "A");
    EXPECT_EQ(Cls_IO::Dec_Hex(31), "1F");
    EXPECT_EQ(Cls_IO::Dec_Hex(2047), "7FF");
    EXPECT_EQ(Cls_IO::Dec_Hex(-1), "FFFF");
    EXPECT_EQ(Cls_IO::Dec_Oct(0), "0");
    EXPECT_EQ(Cls_IO::Dec_Oct(8), "10");
    EXPECT_EQ(Cls_IO::Dec_Oct(-1), "177777");
}

TEST(HexFamily, OctalConversions)
{
    EXPECT_EQ(Cls_IO::Oct_Dec("0"), "0");
    EXPECT_EQ(Cls_IO::Oct_Dec("17"), "15");
    EXPECT_EQ(Cls_IO::Oct_Dec("177777"), "65535");
    EXPECT_EQ(Cls_IO::Oct_Hex(0), "0");
    EXPECT_EQ(Cls_IO::Oct_Hex(17), "F");
    EXPECT_EQ(Cls_IO::Oct_Hex(377), "FF");
}

TEST(HexFamily, HexOctCutsTo16Bits)
{
    EXPECT_EQ(Cls_IO::Hex_Oct("0"), "0");
    EXPECT_EQ(Cls_IO::Hex_Oct("FF"), "377");
    EXPECT_EQ(Cls_IO::Hex_Oct("FFFF"), "177777");
    EXPECT_EQ(Cls_IO::Hex_Oct("10000"), "0");
    EXPECT_EQ(Cls_IO::Hex_Oct("12345"), "21505");
    EXPECT_EQ(Cls_IO::Hex_Oct("FFFFFFFFFFFFFFFFFFFF0008"), "10");
}

TEST(HexFamily, HexBitPadsToAtLeastEight)
{
    EXPECT_EQ(Cls_IO::Hex_Bit("1"), "00000001");
    EXPECT_EQ(Cls_IO::Hex_Bit("0"), "00000000");
    EXPECT_EQ(Cls_IO::Hex_Bit("00"), "00000000");
    EXPECT_EQ(Cls_IO::Hex_Bit("A5"), "10100101");
    EXPECT_EQ(Cls_IO::Hex_Bit("1FF"), "111111111");
}

TEST(HexFamily, BitDecIsExactUpTo101Digits)
{
    EXPECT_EQ(Cls_IO::Bit_Dec("0"), "0");
    EXPECT_EQ(Cls_IO::Bit_Dec("0001010"), "10");
    EXPECT_EQ(Cls_IO::Bit_Dec(QString(101, '1')), "2535301200456458802993406410751");
    EXPECT_EQ(Cls_IO::Bit_Dec("1" + QString(100, '0')), "1267650600228229401496703205376");
    EXPECT_EQ(Cls_IO::Bit_Dec(QString(102, '1')), "");
    EXPECT_EQ(Cls_IO::Bit_Dec(QString(102, '0')), "");
}

TEST(HexFamily, DecBitHalvesItsArgumentDownToOne)
{
    int16_t n = 6;
    EXPECT_EQ(Cls_IO::Dec_Bit(n), "110");
    EXPECT_EQ(n, 1);
    n = 2;
    EXPECT_EQ(Cls_IO::Dec_Bit(n), "10");
    EXPECT_EQ(n, 1);
    n = 32767;
    EXPECT_EQ(Cls_IO::Dec_Bit(n), QString(15, '1'));
    EXPECT_EQ(n, 1);
    n = 1;
    EXPECT_EQ(Cls_IO::Dec_Bit(n), "1");
    EXPECT_EQ(n, 1);
    n = 0;
    EXPECT_EQ(Cls_IO::Dec_Bit(n), "0");
    EXPECT_EQ(n, 0);
    n = -4;
    EXPECT_EQ(Cls_IO::Dec_Bit(n), "");
    EXPECT_EQ(n, -4);
}

TEST(HexFamily, Dec4HexPadsToFour)
{
    EXPECT_EQ(Cls_IO::Dec_4Hex(0), "0000");
    EXPECT_EQ(Cls_IO::Dec_4Hex(32), "0020");
    EXPECT_EQ(Cls_IO::Dec_4Hex(2016), "07E0");
    EXPECT_EQ(Cls_IO::Dec_4Hex(0x12345), "12345");
    EXPECT_EQ(Cls_IO::Dec_4Hex(-1), "FFFFFFFF");
}

TEST(Pad, TwoAndFour)
{
    EXPECT_EQ(vex::Pad2(""), "");
    EXPECT_EQ(vex::Pad2("A"), "0A");
    EXPECT_EQ(vex::Pad2("1F"), "1F");
    EXPECT_EQ(vex::Pad2("123"), "123");

    EXPECT_EQ(vex::Pad4(""), "0000");
    EXPECT_EQ(vex::Pad4("7"), "0007");
    EXPECT_EQ(vex::Pad4("7E0"), "07E0");
    EXPECT_EQ(vex::Pad4("07E0"), "07E0");
    EXPECT_EQ(vex::Pad4("12345"), "");
}
