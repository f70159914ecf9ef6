// The canvas as numbers: geometry of a 1920x1080 picture (28,800 x 16,200
// twips) for the three directions on both canvases, worked out by hand,
// and the mapping of minutes, speeds, distances and RPM samples.
#include "analysis/Graph_Geometry.h"
#include "analysis/Operation_Graph.h"
#include "core/Cls_Config.h"
#include "core/Err_Proc.h"
#include "core/Mod_Main.h"
#include "store/Cls_DB.h"
#include "support/TempApp.h"

#include <QFile>
#include <gtest/gtest.h>

using namespace vex;

namespace {

class Canvas : public ::testing::Test {
protected:
    void SetUp() override
    {
        G().App_Dir = app.Dir();
        G().Config = std::make_unique<Cls_Config>();
        G().Max_Speed_Axis = 180;
        G().Max_RPM_Axis = 3000;
        G().RPM_Tick10 = 0;
        G().Config->B_Val3 = 80;
    }
    void Rpm(bool on)
    {
        G().Config->C_RPM = on ? 1 : 0;
        G().RPM_Tick10 = on ? 40 : 0;
    }
    QString Log() const
    {
        QFile f(Err_Log_Path());
        return f.open(QIODevice::ReadOnly) ? QString::fromUtf8(f.readAll()) : QString();
    }
    // The mapping needs no database: a connection that never opened.
    Cls_DB& Offline()
    {
        if (!offline) {
            DbTarget none;
            none.driver = QStringLiteral("QSQLITE");
            none.database = app.Path("none.db");
            offline = std::make_unique<Cls_DB>(none);
        }
        return *offline;
    }
    test::TempApp app;
    std::unique_ptr<Cls_DB> offline;
    const Graph_Geometry& g = Graph();
};

constexpr float W = 28800, H = 16200;

} // namespace

TEST_F(Canvas, DayGeometryOfTheThreeDirections)
{
    Rpm(false);
    // A window: the whole surface.
    Graph_Init(W, H, 0);
    EXPECT_EQ(g.Graph_LabelX, 144);
    EXPECT_EQ(g.Graph_Left, 4032);
    EXPECT_EQ(g.Graph_XStep, 17); // Fix((28785 - 4032) / 1440)
    EXPECT_EQ(g.Graph_Width, 17 * 1440);
    EXPECT_EQ(g.Graph_Right, 4032 + 24480); // the frame shrinks to the plot
    EXPECT_FLOAT_EQ(g.Graph_Top, 810);
    EXPECT_FLOAT_EQ(g.Graph_Bottom, 14580);
    EXPECT_FLOAT_EQ(g.Graph_YStep, 13770.0f / 220); // 180 + 20 + 20 + 0 Y units
    EXPECT_FLOAT_EQ(g.Graph_RpmTop, 810 + 20 * g.Graph_YStep);
    EXPECT_FLOAT_EQ(g.Graph_SpeedTop, g.Graph_RpmTop); // no RPM band
    EXPECT_NEAR(g.Graph_SpeedBase, 13328.18f, 0.01);
    EXPECT_NEAR(g.Graph_Bottom - g.Graph_SpeedBase, 20 * g.Graph_YStep, 0.01);
    EXPECT_EQ(g.Graph_RpmStep, 0);
    EXPECT_EQ(G().Graph_Minutes, 1440);

    // The lower part of a printed page.
    Graph_Init(W, H, 1);
    EXPECT_EQ(g.Graph_LabelX, 230);  // Fix(23040 x 0.01)
    EXPECT_EQ(g.Graph_Left, 3225);   // Fix(23040 x 0.14)
    EXPECT_EQ(g.Graph_XStep, 13);    // Fix((23028 - 3225) / 1440)
    EXPECT_EQ(g.Graph_Right, 3225 + 13 * 1440);
    EXPECT_NEAR(g.Graph_Top, 10432.8f, 0.01);             // of the page height
    EXPECT_NEAR(g.Graph_Bottom, 5751 * 0.93f + 10432.8f, 0.01); // of the graph height, below the top

    // A page of its own under a header.
    Graph_Init(W, H, 2);
    EXPECT_EQ(g.Graph_LabelX, 1828);
    EXPECT_EQ(g.Graph_Left, 4032);
    EXPECT_EQ(g.Graph_XStep, 17);
    EXPECT_NEAR(g.Graph_Top, 14256 * 0.2f, 0.01);
    EXPECT_NEAR(g.Graph_Bottom, 14256 * 0.9f, 0.01);
}

TEST_F(Canvas, RpmBandsOfTheDayAndTheHour)
{
    Rpm(true);
    G().RPM_Tick10 = 40; // as stored; the init takes it from the RPM axis
    Graph_Init(W, H, 0);
    EXPECT_FLOAT_EQ(G().RPM_Tick10, 60);
    EXPECT_EQ(g.Graph_RpmStep, 500);
    EXPECT_FLOAT_EQ(g.Graph_YStep, 13770.0f / 280);
    EXPECT_NEAR(g.Graph_RpmTop, 1793.57f, 0.01);
    EXPECT_NEAR(g.Graph_SpeedTop, 4744.29f, 0.01);
    EXPECT_NEAR(g.Graph_SpeedBase, 13596.43f, 0.01);

    // The hour: 3,600 columns, and a second RPM band in place of distance.
    Graph_Init_360(W, H, 0);
    EXPECT_EQ(G().Graph_Seconds, 3600);
    EXPECT_EQ(g.Graph_XStep, 6); // Fix(24753 / 3600)
    EXPECT_EQ(g.Graph_Right, 4032 + 21600);
    EXPECT_FLOAT_EQ(g.Graph_YStep, 13770.0f / 320);
    EXPECT_FLOAT_EQ(g.Graph_SpeedTop, 4252.5f);
    EXPECT_FLOAT_EQ(g.Graph_SpeedBase, 11998.125f);
    EXPECT_FLOAT_EQ(g.Graph_Rpm2Top, g.Graph_SpeedBase);
    EXPECT_FLOAT_EQ(g.Graph_Rpm2Base, g.Graph_Bottom);

    // Without RPM the lower band has no height either.
    Rpm(false);
    Graph_Init_360(W, H, 2);
    EXPECT_EQ(g.Graph_RpmStep, 0);
    EXPECT_FLOAT_EQ(g.Graph_SpeedTop, g.Graph_RpmTop);
    EXPECT_FLOAT_EQ(g.Graph_Rpm2Base, g.Graph_SpeedBase);
}

TEST_F(Canvas, ASurfaceNarrowerThanADayCollapsesThePlotAndSaysSo)
{
    Rpm(false);
    Graph_Init(1600, 1200, 0); // 1,375 units of plot for 1,440 minutes
    EXPECT_EQ(g.Graph_XStep, 0);
    EXPECT_EQ(g.Graph_Right, g.Graph_Left);
    Operation_Graph og(Offline());
    EXPECT_EQ(og.Make_X(720), g.Graph_Left);
    EXPECT_TRUE(Log().contains("Cls_DB - Graph_Init")) << Log().toStdString();
    EXPECT_TRUE(Log().contains("1440 columns"));
}

TEST_F(Canvas, MappingOfMinutesAtEveryZoom)
{
    Rpm(false);
    Graph_Init(W, H, 0);
    Operation_Graph og(Offline());
    // A whole day: 17 units a minute.
    EXPECT_EQ(og.Make_X(1), 4032 + 17);
    EXPECT_EQ(og.Make_X(1440), g.Graph_Right);
    // Two hours from 08:00: twelve times wider, and minute 0 stays at the left edge.
    og.Set_Zoom_Window(2, 8, 24);
    EXPECT_EQ(og.Zoom_Time, 8);
    EXPECT_EQ(og.Zoom_ETime, 10);
    EXPECT_EQ(og.Make_X(8 * 60 + 30), 4032 + 12 * 17 * 30);
    EXPECT_EQ(og.Make_X(10 * 60), g.Graph_Right);
    EXPECT_EQ(og.Make_X(0), g.Graph_Left);
    EXPECT_EQ(og.Make_X_D(8 * 60 + 30), og.Make_X(8 * 60 + 30));
    EXPECT_EQ(og.Make_XO(8 * 60 + 30, 24), 4032 + 17 * 30);
    // A window past midnight is moved back; a whole day starts at 0.
    og.Set_Zoom_Window(6, 21, 24);
    EXPECT_EQ(og.Zoom_Time, 18);
    EXPECT_EQ(og.Zoom_ETime, 24);
    og.Set_Zoom_Window(24, 13, 24);
    EXPECT_EQ(og.Zoom_Time, 0);

    // The hour canvas: 6 units a second, a minute window 60 times wider.
    Graph_Init_360(W, H, 0);
    og.Set_Zoom_Window(60, 0, 60);
    EXPECT_EQ(og.Make_X360(3600), g.Graph_Right);
    og.Set_Zoom_Window(1, 30, 60);
    EXPECT_EQ(og.Make_X360(30 * 60 + 10), 4032 + 60 * 6 * 10);
    EXPECT_EQ(og.Make_XO360s(30.5f), og.Make_X360(30 * 60 + 30));
    EXPECT_EQ(og.Make_XO360(30 * 60 + 10, 60), 4032 + 6 * 10);

    // Zoom 0 is refused by the handler: no value, a log line.
    og.Zoom_Type = 0;
    EXPECT_EQ(og.Make_X(5), 0);
    EXPECT_TRUE(Log().contains("Cls_DB - Make_X"));
}

TEST_F(Canvas, MappingOfSpeedDistanceAndRpm)
{
    Rpm(true);
    Graph_Init(W, H, 0);
    Operation_Graph og(Offline());
    // Speed 0 is the base itself; above the axis it holds at the top.
    EXPECT_EQ(og.Make_Y(0), g.Graph_SpeedBase);
    EXPECT_FLOAT_EQ(og.Make_Y(80), g.Graph_SpeedBase - 80 * g.Graph_YStep);
    EXPECT_EQ(og.Make_Y(181), g.Graph_SpeedTop);
    EXPECT_EQ(og.Make_Y(250), g.Graph_SpeedTop);
    // The distance band: 10 km at its top, 0 at the bottom, 5 in the middle.
    EXPECT_EQ(og.Make_Y_D(0), g.Graph_Bottom);
    EXPECT_FLOAT_EQ(og.Make_Y_D(10), g.Graph_SpeedBase);
    EXPECT_FLOAT_EQ(og.Make_Y_D(5), g.Graph_Bottom - 10 * g.Graph_YStep);
    EXPECT_EQ(og.Make_Y_D(12), g.Graph_SpeedBase);
    // RPM in units of 40: above the axis at the top, 1,000 RPM 40 Y units down.
    EXPECT_EQ(og.Make_Y_R(76), g.Graph_RpmTop); // 3,040
    EXPECT_FLOAT_EQ(og.Make_Y_R(25), g.Graph_RpmTop + 40 * g.Graph_YStep);
    // Floor 0 (60 marks of 500 reach down to 0): sample 0 by the formula,
    // which is the base of the band.
    EXPECT_FLOAT_EQ(og.Make_Y_R(0), g.Graph_RpmTop + 60 * g.Graph_YStep);
    EXPECT_NEAR(og.Make_Y_R(0), g.Graph_SpeedTop, 0.01);
    // A floor above 0 holds what lies below it at the base.
    G().RPM_Tick10 = 40; // floor 3000 - 4 x 500 = 1000
    EXPECT_EQ(og.Make_Y_R(0), g.Graph_SpeedTop);
    EXPECT_EQ(og.Make_Y_R(24), g.Graph_SpeedTop); // 960
    EXPECT_FLOAT_EQ(og.Make_Y_R(25), g.Graph_RpmTop + 40 * g.Graph_YStep);

    Graph_Init_360(W, H, 0);
    EXPECT_EQ(og.Make_Y_R2(100), g.Graph_Rpm2Top);
    EXPECT_FLOAT_EQ(og.Make_Y_R2(25), g.Graph_Rpm2Top + 40 * g.Graph_YStep);
    EXPECT_EQ(og.Make_Y360(0), g.Graph_SpeedBase);
}
