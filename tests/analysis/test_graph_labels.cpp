// The frame's texts are measured before they are placed: time labels never
// run into each other, and band titles, in Korean and in English, on a
// window and on a printed page, stay in their band and their column, clear
// of the axis numbers and of the plot.
#include "analysis/Graph_Geometry.h"
#include "analysis/Graph_Surface.h"
#include "analysis/Operation_Graph.h"
#include "core/Mod_Main.h"
#include "store/Cls_DB.h"
#include "support/AppSession.h"
#include "support/Text_Recorder.h"

#include <QRegularExpression>
#include <gtest/gtest.h>

using namespace vex;

namespace {

using Texts = std::vector<test::Text_Recorder::Item>;

class Labels : public ::testing::Test {
protected:
    ~Labels() override { qunsetenv("VEX_LANG"); }
    // The empty frame of a day on a device of that size.
    Texts Frame(QSize size, int16_t out, const char* lang)
    {
        qputenv("VEX_LANG", lang);
        test::Text_Recorder device(size);
        Operation_Graph og(*G().DB);
        og.Trip.startDay = "260105";
        og.Out_Direction = out;
        {
            QPainter p(&device);
            Graph_Surface s(p, QRectF(0, 0, size.width(), size.height()), out == 0);
            og.Graph_Init(s);
            og.Picture_Base_Draw(s);
        }
        return device.Items();
    }
    test::AppSession app;
};

// Tick labels of hours, "N시".
std::vector<QRectF> Hour_Labels(const Texts& d)
{
    std::vector<QRectF> out;
    for (const auto& i : d)
        if (QRegularExpression("^\\d+시$").match(i.text).hasMatch())
            out.push_back(i.box);
    return out;
}

void Expect_Titles_Clear(const Texts& d, const std::string& where)
{
    const Graph_Geometry& g = Graph();
    const double left = g.Graph_LabelX / 15, plot = g.Graph_Left / 15, bottom = g.Graph_Bottom / 15;
    std::vector<QRectF> numbers, titles;
    for (const auto& i : d) {
        if (i.box.center().y() >= bottom)
            continue; // the time axis and the day under the title column
        if (QRegularExpression("^\\d+$").match(i.text).hasMatch())
            numbers.push_back(i.box);
        else if (i.box.center().x() < plot)
            titles.push_back(i.box);
    }
    ASSERT_GE(numbers.size(), 10u) << where;
    ASSERT_GE(titles.size(), 4u) << where;
    // Each title line lies inside one band, between two of the band lines.
    const double lines[] = {g.Graph_Top / 15, g.Graph_RpmTop / 15, g.Graph_SpeedTop / 15, g.Graph_SpeedBase / 15,
                            bottom};
    for (const QRectF& t : titles) {
        EXPECT_GE(t.left(), left) << where;
        EXPECT_LE(t.right(), plot) << where;
        bool inside = false;
        for (int b = 0; b + 1 < 5; ++b)
            inside = inside || (t.top() >= lines[b] - 1 && t.bottom() <= lines[b + 1] + 1);
        EXPECT_TRUE(inside) << where << " title line at " << t.y() << " to " << t.bottom();
        for (const QRectF& n : numbers)
            EXPECT_FALSE(t.intersects(n)) << where << " title at " << t.x() << "," << t.y();
    }
}

} // namespace

TEST_F(Labels, HourLabelsOfADayNeverOverlapAndTheLastStandsAtTheEnd)
{
    for (const QSize size : {QSize(1000, 600), QSize(1600, 900)}) {
        const Texts d = Frame(size, 0, "ko");
        const std::vector<QRectF> hours = Hour_Labels(d);
        ASSERT_GE(hours.size(), 20u) << size.width();
        for (size_t a = 0; a < hours.size(); ++a)
            for (size_t b = a + 1; b < hours.size(); ++b)
                EXPECT_FALSE(hours[a].intersects(hours[b])) << size.width() << ": labels " << a << " and " << b;
        std::vector<QRectF> last;
        for (const auto& i : d)
            if (i.text == "24시")
                last.push_back(i.box);
        ASSERT_EQ(last.size(), 1u);
        EXPECT_NEAR(last[0].right(), Graph().Graph_Right / 15, 1.5);
    }
}

TEST_F(Labels, BandTitlesStayInTheirColumnInBothLanguagesOnScreenAndPaper)
{
    for (const char* lang : {"ko", "en"}) {
        Expect_Titles_Clear(Frame(QSize(1000, 600), 0, lang), std::string(lang) + " window");
        Expect_Titles_Clear(Frame(QSize(1123, 794), 2, lang), std::string(lang) + " page");
    }
    // The English titles are wrapped at blanks, not cut.
    QString all;
    for (const auto& i : Frame(QSize(1000, 600), 0, "en"))
        all += i.text + " ";
    EXPECT_TRUE(all.contains("Total")) << all.toStdString();
    EXPECT_TRUE(all.contains("distance"));
    EXPECT_TRUE(all.contains("Driving"));
}
