// A received day and hour drawn into images, checked by the colours where
// the speed line, the state band and the limit line must be; and the bad
// inputs that must leave a frame, no crash and a line in the log.
#include "analysis/Graph_Geometry.h"
#include "analysis/Graph_Surface.h"
#include "analysis/Operation_Graph.h"
#include "analysis/Quick_Brake_Chart.h"
#include "core/Cls_Config.h"
#include "core/Err_Proc.h"
#include "core/Mod_Main.h"
#include "store/Cls_DB.h"
#include "support/ReceivedSite.h"

#include <QDir>
#include <QFile>
#include <QImage>
#include <QPainter>
#include <gtest/gtest.h>

using namespace vex;

namespace {

const QColor kBlue(0, 0, 192), kRed(255, 0, 0), kPurple(128, 0, 128), kGreen(0, 128, 0);

class Render : public ::testing::Test {
protected:
    void SetUp() override
    {
        QString why;
        const QString site = test::Received_Site(&why);
        ASSERT_FALSE(site.isEmpty()) << why.toStdString();
        session = std::make_unique<test::Site_Session>(site);
        ASSERT_TRUE(session->Ok()) << Err_Last().toStdString();
        logStart = Log().size();
    }
    void TearDown() override { session.reset(); }

    Cls_DB& db() { return *G().DB; }
    static QString Log()
    {
        QFile f(Err_Log_Path());
        return f.open(QIODevice::ReadOnly) ? QString::fromUtf8(f.readAll()) : QString();
    }
    QString New_Log() const { return Log().mid(logStart); }

    // The colour of a point given in the surface's twips, within one pixel
    // around it (lines fall on whole pixels).
    static bool Near(const QImage& img, float x, float y, const QColor& want, int reach = 1)
    {
        const int px = int(x / 15), py = int(y / 15);
        for (int dx = -reach; dx <= reach; ++dx)
            for (int dy = -reach; dy <= reach; ++dy) {
                const QPoint p(px + dx, py + dy);
                if (img.valid(p) && img.pixelColor(p) == want)
                    return true;
            }
        return false;
    }
    static QImage Blank(int w = 1920, int h = 1080)
    {
        QImage img(w, h, QImage::Format_RGB32);
        img.fill(Qt::white);
        return img;
    }
    std::unique_ptr<test::Site_Session> session;
    qsizetype logStart = 0;
};

} // namespace

TEST_F(Render, ADayShowsItsSpeedStateBandAndLimit)
{
    Operation_Graph og(db());
    QImage img = Blank();
    {
        QPainter p(&img);
        Graph_Surface s(p, img.rect(), true);
        ASSERT_TRUE(og.DB_Search_Data(&s, test::kSiteCar, test::kSiteDriver, "260105"));
    }
    const Graph_Geometry& g = Graph();
    ASSERT_EQ(g.Graph_XStep, 17);
    ASSERT_GT(og.First_Point(), 300);
    EXPECT_EQ(og.Current_Point, og.Make_X(float(og.First_Point() - 1)));
    const float band = (g.Graph_Top + g.Graph_RpmTop) / 2;

    int moving = 0, standing = 0, flat = 0;
    for (int k = og.First_Point(); k < og.Last_Point(); ++k) {
        const float x = (og.Make_X(float(k - 1)) + og.Make_X(float(k))) / 2; // inside minute k-1
        const int v = og.Speed_Search(k);
        if (v > 0) {
            ++moving;
            EXPECT_TRUE(Near(img, x, band, kBlue, 0)) << "moving minute " << k - 1;
        } else if (og.RPM_Search(k) > 0) {
            ++standing;
            EXPECT_TRUE(Near(img, x, band, kRed, 0)) << "standing minute " << k - 1;
        }
        // A level stretch of speed: the line runs along its height from
        // minute k-1 (element k) to minute k (element k+1).
        if (v > 10 && v == og.Speed_Search(k + 1)) {
            ++flat;
            EXPECT_TRUE(Near(img, x, og.Make_Y(float(v)), kBlue)) << "speed " << v << " at minute " << k - 1;
        }
    }
    EXPECT_GT(moving, 200);
    EXPECT_GT(standing, 0);
    EXPECT_GT(flat, 10);
    // Before the day: no band; the limit line of 80 km/h across the plot.
    const float early = og.Make_X(90);
    EXPECT_FALSE(Near(img, early, band, kBlue));
    EXPECT_FALSE(Near(img, early, band, kRed));
    EXPECT_TRUE(Near(img, early, g.Graph_SpeedBase - 80 * g.Graph_YStep, kPurple, 0));
    // The folded distance line lies in its band.
    bool distance = false;
    for (float y = g.Graph_SpeedBase; y < g.Graph_Bottom && !distance; y += 15)
        distance = Near(img, og.Make_X(float(og.Last_Point() - 1)), y, kGreen, 0);
    EXPECT_TRUE(distance);
    EXPECT_EQ(New_Log(), QString()) << New_Log().toStdString();
}

TEST_F(Render, AnHourOfSecondsAndAZoomedDay)
{
    Operation_Graph og(db());
    og.Set_Zoom_Window(60, 0, 60);
    QImage img = Blank();
    QString hour = "08";
    {
        QPainter p(&img);
        Graph_Surface s(p, img.rect(), true);
        ASSERT_FALSE(og.DB_Search_SecData2(&s, test::kSiteCar, test::kSiteDriver, "260105", hour).isEmpty());
    }
    EXPECT_EQ(og.Hour.startTime, "080000");
    const Graph_Geometry& g = Graph();
    EXPECT_EQ(g.Graph_XStep, 6);
    int checked = 0;
    for (int k = 2; k < 3600 && checked < 50; ++k) {
        const int v = og.Speed_Search360(k);
        if (v > 10 && v == og.Speed_Search360(k + 1)) {
            ++checked;
            EXPECT_TRUE(Near(img, (og.Make_X360(float(k - 1)) + og.Make_X360(float(k))) / 2,
                             og.Make_Y360(float(v)), kBlue))
                << "second " << k - 1;
        }
    }
    EXPECT_EQ(checked, 50);

    // Two hours from 08:00: minute 08:30 lies half way along the plot.
    Operation_Graph day(db());
    day.Set_Zoom_Window(2, 8, 24);
    QImage zoomed = Blank();
    {
        QPainter p(&zoomed);
        Graph_Surface s(p, zoomed.rect(), true);
        ASSERT_TRUE(day.DB_Search_Data(&s, test::kSiteCar, test::kSiteDriver, "260105"));
    }
    EXPECT_FLOAT_EQ(day.Make_X(8 * 60 + 60), (g.Graph_Left + g.Graph_Right) / 2);
    const int k = 8 * 60 + 10 + 1; // minute 08:10
    ASSERT_GT(day.Speed_Search(k), 0);
    EXPECT_TRUE(Near(zoomed, (day.Make_X(float(k - 1)) + day.Make_X(float(k))) / 2,
                     (Graph().Graph_Top + Graph().Graph_RpmTop) / 2, kBlue, 0));
}

TEST_F(Render, BadInputDrawsTheFrameAndSaysWhatWasMissing)
{
    const QColor frame = Vb_Color(kWindowText);
    auto Draw_Day = [&](Operation_Graph& og, const std::function<void(Graph_Surface&)>& f, int w = 1920) {
        QImage img = Blank(w, 1080);
        QPainter p(&img);
        {
            Graph_Surface s(p, img.rect(), true);
            f(s);
        }
        p.end();
        return img;
    };
    auto Blue_Anywhere = [](const QImage& img) {
        for (int y = 0; y < img.height(); y += 2)
            for (int x = 0; x < img.width(); ++x)
                if (img.pixelColor(x, y) == kBlue)
                    return true;
        return false;
    };
    Operation_Graph og(db());

    // A key that is not stored: the frame alone.
    QImage img = Draw_Day(og, [&](Graph_Surface& s) { og.DB_Search_Data(&s, test::kSiteCar, test::kSiteDriver, "260301"); });
    EXPECT_TRUE(Near(img, Graph().Graph_Left + 3000, Graph().Graph_Top, frame));
    EXPECT_FALSE(Blue_Anywhere(img));
    EXPECT_TRUE(New_Log().contains("no stored day 12AB00000123260301")) << New_Log().toStdString();
    EXPECT_TRUE(New_Log().contains("no minute speed of 12AB00000123260301 in D_D3"));

    // Series of a wrong length and with cells that are no number.
    og.Trip.speed = QString(1000, QLatin1Char('Z'));
    og.Trip.rpm = QStringLiteral("0");
    og.Trip.distanceSeries = QString(2880, QLatin1Char('#'));
    og.DB_1440_DB();
    img = Draw_Day(og, [&](Graph_Surface& s) { og.Draw_Day(s); });
    EXPECT_FALSE(Blue_Anywhere(img));
    EXPECT_TRUE(New_Log().contains("minute speed (D_D3) series holds 1000 characters"));
    EXPECT_TRUE(New_Log().contains("minute distance (D_D7) series: 1440 cell(s) are no number"));

    // No day file, and a day file cut short.
    QString hour = "08";
    EXPECT_TRUE(og.DB_Search_SecData2(nullptr, test::kSiteCar, test::kSiteDriver, "260301", hour).isEmpty());
    EXPECT_TRUE(New_Log().contains("no day file of 12AB00 000123 260301"));
    EXPECT_TRUE(og.Hour.speed.empty());
    const QString folder = G().App_Dir + "/pack/12AB00/260302";
    QDir().mkpath(folder);
    QFile cut(folder + "/260302000123.vex");
    ASSERT_TRUE(cut.open(QIODevice::WriteOnly));
    cut.write(QByteArray(40000, '\x30'));
    cut.close();
    img = Draw_Day(og, [&](Graph_Surface& s) {
        og.DB_Search_SecData2(&s, test::kSiteCar, test::kSiteDriver, "260302", hour);
    });
    EXPECT_TRUE(New_Log().contains("Input past end of file")) << New_Log().toStdString();
    EXPECT_FALSE(Blue_Anywhere(img));
    EXPECT_EQ(og.Neighbour_Hour(test::kSiteCar, test::kSiteDriver, "260302", 8, 1), -1);
    QDir(folder).removeRecursively();

    // A surface narrower than 1440 units: the frame, a collapsed plot.
    img = Draw_Day(og, [&](Graph_Surface& s) { og.DB_Search_Data(&s, test::kSiteCar, test::kSiteDriver, "260105"); }, 100);
    EXPECT_EQ(Graph().Graph_XStep, 0);
    EXPECT_TRUE(New_Log().contains("the plot collapses"));
}

TEST_F(Render, NeighbourHoursOfTheDayFile)
{
    Operation_Graph og(db());
    const int first = og.Neighbour_Hour(test::kSiteCar, test::kSiteDriver, "260105", -1, 1);
    EXPECT_GE(first, 5);
    EXPECT_LE(first, 7);
    EXPECT_EQ(og.Neighbour_Hour(test::kSiteCar, test::kSiteDriver, "260105", first, -1), -1);
    const int next = og.Neighbour_Hour(test::kSiteCar, test::kSiteDriver, "260105", first, 1);
    EXPECT_EQ(next, first + 1);
    EXPECT_EQ(og.Neighbour_Hour(test::kSiteCar, test::kSiteDriver, "260105", 23, 1), -1);
}

TEST_F(Render, QuickBrakeChartOfAStoredBuffer)
{
    // Sixty seconds: 60 km/h held, a stop from second 50 within three seconds.
    QString buffer;
    for (int n = 1; n <= 60; ++n)
        buffer += QStringLiteral("%1").arg(n < 50 ? 60 : n < 53 ? 60 - 20 * (n - 49) : 0, 2, 16, QLatin1Char('0')).toUpper();
    Quick_Brake_Chart chart;
    chart.Quick_Brack_Date = buffer; // one buffer stored
    chart.Quick_Brack_Time = QStringLiteral("0105081530") + QString(30, QLatin1Char('0'));
    QImage img = Blank();
    {
        QPainter p(&img);
        Graph_Surface s(p, img.rect(), true);
        chart.Quick_Brack_Graph(s, 1);
    }
    EXPECT_EQ(chart.QB_Speed_Search(1), 60);
    EXPECT_EQ(chart.QB_Speed_Search(51), 20);
    EXPECT_EQ(chart.QB_Speed_Search(61), 0);
    EXPECT_EQ(chart.QB_Speed_Search(0), 0);
    EXPECT_FLOAT_EQ(chart.BX_Gap, (chart.BRight - chart.BX2) / 60);
    EXPECT_EQ(chart.QB_Current_Point, chart.Sample_X(1));
    EXPECT_TRUE(chart.Stamp.startsWith("01"));
    EXPECT_TRUE(Near(img, (chart.Sample_X(10) + chart.Sample_X(11)) / 2, chart.BBottom - 60 * chart.BY_Gap, kBlue));
    // The second slot holds nothing: the frame only.
    QImage empty = Blank();
    {
        QPainter p(&empty);
        Graph_Surface s(p, empty.rect(), true);
        chart.Quick_Brack_Graph(s, 2);
    }
    EXPECT_EQ(chart.QB_Current_Point, 0);
    EXPECT_EQ(chart.QB_Speed_Search(1), 0);
    // A slot the recorder never filled holds zeros: no time, no trace.
    chart.Quick_Brack_Date = buffer + QString(120, QLatin1Char('0'));
    {
        QPainter p(&empty);
        Graph_Surface s(p, empty.rect(), true);
        chart.Quick_Brack_Graph(s, 2);
    }
    EXPECT_TRUE(chart.Empty_Slot(2));
    EXPECT_EQ(chart.QB_Current_Point, 0);
    EXPECT_EQ(chart.Stamp, "");
    EXPECT_FALSE(chart.Empty_Slot(1));
}
