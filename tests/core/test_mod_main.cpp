#include "acquisition/Cls_IO.h"
#include "app/Start_Up.h"
#include "core/Cls_Config.h"
#include "core/Err_Proc.h"
#include "core/Mod_Main.h"
#include "platform/FileSystem.h"
#include "support/TempApp.h"

#include <QFile>
#include <gtest/gtest.h>

using namespace vex;

TEST(ModMain, DateAndTimeHelpersKeepTheirEdgeResults)
{
    EXPECT_EQ(Date8_To_Date("20240229"), QDate(2024, 2, 29));
    EXPECT_EQ(Date8_To_Date("2024022"), Zero_Date());   // 7 long
    EXPECT_EQ(Date8_To_Date("2024O229"), Zero_Date());  // a letter
    EXPECT_EQ(Date8_To_Date("20231345"), Zero_Date());  // no such day
    EXPECT_EQ(Zero_Date(), QDate(1899, 12, 30));

    EXPECT_EQ(Time4_To_Text("0930"), "09:30");
    EXPECT_EQ(Time4_To_Text("930"), "");
    EXPECT_EQ(Time4_To_Text("09:3"), "");

    EXPECT_EQ(Date6_To_Date8("991231"), "20991231");    // no century window
    EXPECT_EQ(Date6_To_Date8("20240101"), "20240101");
    EXPECT_EQ(Date6_To_Date8("2401011"), "");

    EXPECT_EQ(Date_Dash("240105"), "2024-01-05");
    EXPECT_EQ(Date_Dash("19990105"), "1999-01-05");
    EXPECT_EQ(Date_Dash("2401051230"), "");
    EXPECT_EQ(Date_Dash10("2401051230"), "2024-01-05");
    EXPECT_EQ(Date_Dash10("240105"), "2024-01-05");
    EXPECT_EQ(Date_Dash10("24010512"), "2401-05-12");   // 8 digits read as yyyymmdd

    EXPECT_EQ(Pad2("7"), "07");
    EXPECT_EQ(Pad2("17"), "17");
    EXPECT_EQ(Pad2(""), "");
    EXPECT_EQ(Pad4("12"), "0012");
    EXPECT_EQ(Pad4(""), "0000");
    EXPECT_EQ(Pad4("12345"), "");

    EXPECT_EQ(Min_To_HHMM(0), "00:00");
    EXPECT_EQ(Min_To_HHMM(605), "10:05");
    EXPECT_EQ(Min_To_HHMM(1500), "01:00");
    EXPECT_EQ(Min_To_HHMM(-5), "23:55");
}

TEST(ModMain, FormPlaceSizesAndTheSameCaptionQuirk)
{
    EXPECT_EQ(Form_Place_Size("frm_About", false).width, 5220);
    EXPECT_EQ(Form_Place_Size("frmReport_Main", false).height, 5280);
    EXPECT_EQ(Form_Place_Size("frm_Inspection", false).width, 9360);
    EXPECT_EQ(Form_Place_Size("frmRegister_Average", false).height, 7215);
    // With a window of the same caption open these two take the last row;
    // the others keep theirs.
    EXPECT_EQ(Form_Place_Size("frm_Inspection", true).width, 8385);
    EXPECT_EQ(Form_Place_Size("frmRegister_Average", true).height, 6180);
    EXPECT_EQ(Form_Place_Size("frm_Config", true).width, 7680);
    EXPECT_EQ(Form_Place_Size("frmSomething", false).width, 8385);
}

TEST(ModMain, MainStartFollowsTheIniKey)
{
    test::TempApp app;
    app.Write_File("MORIX.INI", "[MAIN]\r\nMAIN SERVER=\\db\\morix.mdb\r\n");
    Main_Start(app.Dir());
    Globals& g = G();
    EXPECT_EQ(g.Prog_Title, "VEX");
    EXPECT_EQ(g.DB_Server, "\\db\\morix.mdb");
    EXPECT_EQ(g.DB_Conn, "DSN=\\db\\morix.mdb");
    EXPECT_EQ(g.Graph_Minutes, 1440.0f);
    EXPECT_EQ(g.Graph_Seconds, 3600.0f);
    EXPECT_EQ(g.Pack_Mark1 + g.Pack_Mark2 + g.Pack_Mark3 + g.Pack_Mark4 + g.Pack_Mark5 + g.Pack_Mark6,
              "AAAA115AA500");
    EXPECT_TRUE(g.IO && g.Config && g.FS);
    EXPECT_FALSE(g.DB); // made by the login, not here
    EXPECT_EQ(g.FS->Path("\\new\\a.Vex"), app.Dir() + "/new/a.Vex");

    QString status;
    QString shown;
    g.Status_Sink = [&](const QString& t) { shown = t; };
    Status_Text(status);
    EXPECT_EQ(status, "VEX"); // the argument changes too
    EXPECT_EQ(shown, "VEX");

    Main_Shutdown();
    EXPECT_FALSE(g.IO || g.Config);
}

TEST(ModMain, MissingOrEmptyKeyLeavesTheObjectsMissingWithoutAWord)
{
    for (const QByteArray& ini : {QByteArray("[MAIN]\nMAIN SERVER=\n"), QByteArray("[OTHER]\nMAIN SERVER=x\n"),
                                 QByteArray("garbage \x01\x02 [[[ ===\n"), QByteArray()}) {
        test::TempApp app;
        if (!ini.isEmpty())
            app.Write_File("MORIX.INI", ini);
        Main_Start(app.Dir());
        EXPECT_EQ(G().Prog_Title, "VEX");
        EXPECT_TRUE(G().DB_Server.isEmpty());
        EXPECT_TRUE(G().DB_Conn.isEmpty());
        EXPECT_FALSE(G().IO || G().Config);
        EXPECT_TRUE(G().FS);
        EXPECT_TRUE(Err_Last().contains("MAIN SERVER")); // silent to the user, but in the log
        EXPECT_TRUE(QFile::exists(app.Path("vex-error.log")));
    }
}
