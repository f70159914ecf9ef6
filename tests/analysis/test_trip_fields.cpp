// One element, one clock time: the cursor's readout, the drawn point, the
// event's time and the day file name the same element. Stored cells and
// day file are made by hand; the expected figures are the stored ones.
#include "analysis/Graph_Geometry.h"
#include "analysis/Graph_Surface.h"
#include "analysis/Operation_Graph.h"
#include "analysis/Trip_Fields.h"
#include "core/Cls_Config.h"
#include "core/Mod_Main.h"
#include "store/Cls_DB.h"
#include "store/DayFile.h"
#include "store/EventDetector.h"
#include "support/AppSession.h"

#include <QDir>
#include <QFileInfo>
#include <QImage>
#include <QPainter>
#include <gtest/gtest.h>

using namespace vex;

namespace {

const QString kTripCar = "12AB00", kTripDriver = "000123", kTripDay = "260105";

// A minute series of 1,440 cells, "00" but where given (clock minute: cell).
QString Minutes(std::initializer_list<std::pair<int, const char*>> cells)
{
    QString s(2880, QLatin1Char('0'));
    for (const auto& [m, v] : cells)
        s.replace(2 * m, 2, QLatin1String(v));
    return s;
}

bool Blue_Near(const QImage& img, float x, float y)
{
    const QPoint p(int(x / 15), int(y / 15));
    for (int dx = -1; dx <= 1; ++dx)
        for (int dy = -1; dy <= 1; ++dy)
            if (img.valid(p + QPoint(dx, dy)) && img.pixelColor(p + QPoint(dx, dy)) == QColor(0, 0, 192))
                return true;
    return false;
}

// The day of og drawn on a window of 1920 x 1080 pixels.
QImage Day_Image(Operation_Graph& og)
{
    QImage img(1920, 1080, QImage::Format_RGB32);
    img.fill(Qt::white);
    {
        QPainter p(&img);
        Graph_Surface s(p, img.rect(), true);
        og.Draw_Day(s);
    }
    return img;
}

class Mapping : public ::testing::Test {
protected:
    Cls_DB& db() { return *G().DB; }
    test::AppSession app;
};

} // namespace

TEST_F(Mapping, TheMinuteViewReadsAndDrawsTheStoredMinuteAtItsTime)
{
    // 09:01 standing, 09:02 at 32 km/h (cell "20"), 09:03 at 40; 37.8 km
    // driven by 09:01 and 0.1 km more in 09:02.
    Operation_Graph og(db());
    og.Trip.speed = Minutes({{542, "20"}, {543, "28"}});
    og.Trip.distanceSeries = Minutes({{480, "99"}, {481, "99"}, {482, "99"}, {483, "81"}, {542, "01"}});
    og.Trip.startTime = "0800";
    og.Trip.endTime = "0930";
    og.Trip.distance = "37.9";
    og.DB_1440_DB();

    QStringList f = Minute_Fields(og, 9 * 60 + 2, QString());
    EXPECT_EQ(f[2], "09 : 02");
    EXPECT_EQ(f[3], "32");
    EXPECT_EQ(f[14], "37.9");
    f = Minute_Fields(og, 9 * 60 + 1, QString());
    EXPECT_EQ(f[2], "09 : 01");
    EXPECT_EQ(f[3], "0");
    EXPECT_EQ(f[14], "37.8");

    // The hour 09 at one hour a window: 09:02's box stands at X(09:02) and
    // reaches 32 km/h; nothing stands at 09:01. The state band is blue over
    // the column of 09:02 and not over 09:01's.
    og.Set_Zoom_Window(1, 9, 24);
    const QImage img = Day_Image(og);
    const Graph_Geometry& g = Graph();
    const float band = (g.Graph_Top + g.Graph_RpmTop) / 2;
    const float x901 = og.Make_X(9 * 60 + 1), x902 = og.Make_X(9 * 60 + 2), x903 = og.Make_X(9 * 60 + 3);
    EXPECT_TRUE(Blue_Near(img, x902, og.Make_Y(32)));
    EXPECT_FALSE(Blue_Near(img, x901, og.Make_Y(32)));
    EXPECT_TRUE(Blue_Near(img, (x902 + x903) / 2, band));
    EXPECT_FALSE(Blue_Near(img, (x901 + x902) / 2, band));
}

TEST_F(Mapping, TheSecondsViewTheEventAndTheDayFileNameTheSameSecond)
{
    // 15:29:42 at 90 km/h, 15:29:43 at 77: a quick brake at 15:29:43.
    const int at = 15 * 3600 + 29 * 60 + 43;
    DayFile file;
    file.speed.assign(kDayArray, 0);
    file.engine.assign(kDayArray, 0);
    for (int t = at - 60; t < at; ++t)
        file.speed[size_t(t)] = 90;
    for (int t = at; t < at + 60; ++t)
        file.speed[size_t(t)] = 77;
    const QString path = Local_Path(Day_File_Name(kTripCar, kTripDriver, kTripDay));
    QDir().mkpath(QFileInfo(path).absolutePath());
    Write_Day_File(path, file);

    EventLimits limits;
    EXPECT_EQ(Detect_Day_Events(file.speed, file.engine, limits).Brack_Data.left(10), "1529435A4D");

    Operation_Graph og(db());
    QString hour = "15";
    ASSERT_FALSE(og.DB_Search_SecData2(nullptr, kTripCar, kTripDriver, kTripDay, hour).isEmpty());
    QStringList f = Second_Fields(og, kTripCar, kTripDriver, 29 * 60 + 43);
    EXPECT_EQ(f[2], "15 : 29 : 43");
    EXPECT_EQ(f[3], "77");
    f = Second_Fields(og, kTripCar, kTripDriver, 29 * 60 + 42);
    EXPECT_EQ(f[2], "15 : 29 : 42");
    EXPECT_EQ(f[3], "90");
}

TEST_F(Mapping, ACarWithoutAnEngineFactorShowsItsStandingAndSaysWhyNoRpmIsDrawn)
{
    // 08:00 to 08:09 standing with the engine at idle (byte 4, 680 rpm at
    // 4.25), 08:10 to 08:19 at 60 km/h (byte 12, 2,040 rpm).
    G().Config->C_RPM = 1;
    G().Max_RPM_Axis = 3000;
    QString speed(2880, QLatin1Char('0')), engine(2880, QLatin1Char('0'));
    for (int m = 480; m < 500; ++m) {
        engine.replace(2 * m, 2, m < 490 ? "04" : "0C");
        if (m >= 490)
            speed.replace(2 * m, 2, "3C");
    }
    const QColor red(255, 0, 0), purple(192, 0, 192);
    auto Draw = [&](float factor) {
        Operation_Graph og(db());
        og.Trip.speed = speed;
        og.Trip.rpm = engine;
        og.Engine_Factor = factor;
        og.DB_1440_DB();
        og.Set_Zoom_Window(1, 8, 24);
        return std::make_pair(Day_Image(og), og.RPM_Search(485 + 1));
    };
    auto Has = [](const QImage& img, const QColor& c, QRect r) {
        for (int x = r.left(); x <= r.right(); ++x)
            for (int y = r.top(); y <= r.bottom(); ++y)
                if (img.pixelColor(x, y) == c)
                    return true;
        return false;
    };

    const auto [rated, sample] = Draw(4.25f);
    EXPECT_EQ(sample * 40, 680);
    const Graph_Geometry& g = Graph();
    const QRect state(int(g.Graph_Left / 15) + 2, int(g.Graph_Top / 15), int((g.Graph_Right - g.Graph_Left) / 15) - 4,
                      int((g.Graph_RpmTop - g.Graph_Top) / 15));
    const QRect rpmBand(int(g.Graph_Left / 15) + 2, int(g.Graph_RpmTop / 15) + 1,
                        int((g.Graph_Right - g.Graph_Left) / 15) - 4, int((g.Graph_SpeedTop - g.Graph_RpmTop) / 15) - 2);
    EXPECT_TRUE(Has(rated, red, state));
    EXPECT_TRUE(Has(rated, purple, rpmBand));

    // Registered through the form: no factor. The standing minutes still
    // show; the RPM band carries the note, no line.
    qputenv("VEX_LANG", "en");
    const auto [unrated, none] = Draw(0);
    qunsetenv("VEX_LANG");
    EXPECT_EQ(none, 0);
    EXPECT_TRUE(Has(unrated, red, state));
    QImage text(1920, 1080, QImage::Format_RGB32);
    text.fill(Qt::white);
    {
        QPainter p(&text);
        Graph_Surface s(p, text.rect(), true);
        s.Set_FontSize(8);
        const QString note = "No RPM factor: R.P.M can't be drawn";
        const float w = s.TextWidth(note);
        const QRect where(int(((g.Graph_Left + g.Graph_Right) / 2 - w / 2) / 15), rpmBand.top(), int(w / 15),
                          rpmBand.height());
        EXPECT_TRUE(Has(unrated, purple, where));
        QRect left = rpmBand;
        left.setRight(where.left() - 2);
        EXPECT_FALSE(Has(unrated, purple, left));
    }
}
