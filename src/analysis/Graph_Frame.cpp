// The empty frame of the day and hour canvas: the bands, the time ticks of
// the zoom window with their Korean labels, the grid with its RPM and speed
// labels, the speed limit line and the band titles.
#include "analysis/Graph_Codes.h"
#include "analysis/Graph_Surface.h"
#include "analysis/Operation_Graph.h"

#include "core/Cls_Config.h"
#include "core/Err_Proc.h"
#include "core/Messages.h"
#include "core/Mod_Main.h"
#include "store/Cls_DB.h"

#include <algorithm>
#include <cmath>
#include <vector>

namespace vex {

namespace {

const QString kHour = QStringLiteral("시");
const QString kMinute = QStringLiteral("분");
const QString kSecond = QStringLiteral("초");

struct Tick {
    int i;
    QString label;
    bool line;      // a dotted line from top to bottom
    bool lastLabel; // right-aligned against the end of the plot
};

QString N(int v, const QString& unit)
{
    return QString::number(v) + unit;
}

// Ticks of a zoom: n of them over the window, tick 0 the left edge.
// big is the unit of the window (hour on the day canvas, minute on the
// hour canvas), small the one below it.
std::vector<Tick> Ticks(int zoom, int start, int end, bool hour, int& n)
{
    const QString& big = hour ? kMinute : kHour;
    const QString& small = hour ? kSecond : kMinute;
    std::vector<Tick> t;
    n = 0;
    auto edges = [&] {
        t.push_back({0, N(start, big), false, false});
        t.push_back({n, N(end, big), false, true});
    };
    if (zoom == 1) { // 5 minutes (seconds) a tick
        n = 12;
        edges();
        for (int i = 1; i < n; ++i)
            t.push_back({i, N(i * 5, small), true, false});
    } else if (zoom == 2) { // 10 a tick, the next whole unit in the middle
        n = 12;
        edges();
        for (int i = 1; i < n; ++i)
            t.push_back({i, i == 6 ? N(start + 1, big) : N(i * 10 % 60, small), true, false});
    } else if (!hour && (zoom == 6 || zoom == 12 || zoom == 24)) { // an hour a tick
        n = zoom;
        edges();
        for (int i = 1; i < n; ++i)
            t.push_back({i, N(start + i, big), true, false});
    } else if (hour && zoom == 15) { // a minute a tick
        n = 15;
        edges();
        for (int i = 1; i < n; ++i)
            t.push_back({i, N(start + i, big), true, false});
    } else if (hour && (zoom == 30 || zoom == 60)) { // 5 minutes a tick
        n = zoom / 5;
        edges();
        for (int i = 1; i < n; ++i)
            t.push_back({i, N(start + 5 * i, big), true, false});
    }
    return t;
}

uint32_t Grid_Color(const Graph_Surface& s)
{
    return s.Screen() ? 0xC0C0C0 : kWindowText;
}

// Text centred between two X at a top Y.
void Centred(Graph_Surface& s, const QString& text, float x1, float x2, float y)
{
    s.CurrentX = (x1 + x2) / 2 - s.TextWidth(text) / 2;
    s.CurrentY = y;
    s.Print(text);
}

// Lines no wider than width, broken at blanks; a word wider than the width
// stands alone on its line.
QStringList Wrapped(const Graph_Surface& s, const QString& text, float width)
{
    QStringList lines;
    for (const QString& word : text.split(QLatin1Char(' '), Qt::SkipEmptyParts)) {
        const QString joined = lines.isEmpty() ? QString() : lines.last() + QLatin1Char(' ') + word;
        if (!lines.isEmpty() && s.TextWidth(joined) <= width)
            lines.last() = joined;
        else
            lines << word;
    }
    return lines;
}

// The widest of the texts.
float Widest(const Graph_Surface& s, const QStringList& texts)
{
    float w = 0;
    for (const QString& t : texts)
        w = std::max(w, s.TextWidth(t));
    return w;
}

// A band title in the title column, left of the axis labels whose widest
// takes labels: each part wrapped to the free width (a part is a line of its
// own, as "(Km/h)" under the speed title), the font made smaller while a
// word is wider than the column or the lines are taller than the band, the
// lines centred in the free column and as a block on the band's middle.
// The font is restored afterwards.
void Band_Title(Graph_Surface& s, const QStringList& parts, float labels, float top, float bottom)
{
    const Graph_Geometry& g = Graph();
    const float gap = s.TextWidth(QStringLiteral("0"));
    const float left = g.Graph_LabelX + gap / 2;
    const float right = g.Graph_Left - (labels > 0 ? labels + gap : 0) - gap / 2;
    const double size = s.FontSize();
    QStringList lines;
    for (double points = size;; points -= 0.5) {
        s.Set_FontSize(points);
        lines.clear();
        for (const QString& part : parts)
            lines << Wrapped(s, part, right - left);
        const float height = s.TextHeight(QStringLiteral("A")) * float(lines.size());
        if ((Widest(s, lines) <= right - left && height <= bottom - top) || points <= 4)
            break;
    }
    const float line = s.TextHeight(QStringLiteral("A"));
    float y = (top + bottom) / 2 - line * float(lines.size()) / 2;
    for (const QString& text : lines) {
        Centred(s, text, left, right, y);
        y += line;
    }
    s.Set_FontSize(size);
}

// A label right-aligned against Graph_Left less the width of "0", centred
// on the grid line at y.
void Axis_Label(Graph_Surface& s, const QString& text, float y)
{
    const Graph_Geometry& g = Graph();
    s.CurrentX = g.Graph_Left - s.TextWidth(QStringLiteral("0")) - s.TextWidth(text);
    s.CurrentY = y - s.TextHeight(QStringLiteral("000")) / 2;
    s.Print(text);
}

void Outer_Frame(Graph_Surface& s)
{
    const Graph_Geometry& g = Graph();
    s.DrawWidth = 2;
    s.DrawStyle = 0;
    for (float y : {g.Graph_Top, g.Graph_RpmTop, g.Graph_Bottom, g.Graph_SpeedBase})
        s.Line(g.Graph_LabelX, y, g.Graph_Right, y);
    for (float x : {g.Graph_LabelX, g.Graph_Left, g.Graph_Right})
        s.Line(x, g.Graph_Top, x, g.Graph_Bottom);
    s.DrawWidth = 1;
    s.DrawMode = 13;
    s.DrawStyle = 2;
}

} // namespace

void Operation_Graph::Draw_Ticks(Graph_Surface& s, bool hour)
{
    const Graph_Geometry& g = Graph();
    int n = 0;
    const std::vector<Tick> ticks = Ticks(Zoom_Type, Zoom_Time, Zoom_ETime, hour, n);
    if (n == 0)
        return; // an unknown zoom draws no ticks
    const float spacing = float((hour ? 3600 : 1440) / n) * g.Graph_XStep;
    const float labelY = g.Graph_Bottom + s.Pixel() * 2;
    // Each label is measured before it is placed: one that would run into
    // the label before it or into the last one, right-aligned at the end,
    // is left out, its tick line stays.
    const float gap = s.TextWidth(QStringLiteral(" "));
    float lastLeft = g.Graph_Right;
    for (const Tick& t : ticks)
        if (t.lastLabel)
            lastLeft = g.Graph_Right - s.TextWidth(t.label);
    float placedRight = -1e9f;
    for (const Tick& t : ticks) {
        const float x = spacing * float(t.i) + g.Graph_Left;
        if (t.line)
            s.Line(x, g.Graph_Top, x, g.Graph_Bottom, Grid_Color(s));
        const float w = s.TextWidth(t.label);
        const float left = t.lastLabel ? x - w : x - w / 2;
        if (!t.lastLabel && (left < placedRight + gap || left + w + gap > lastLeft))
            continue;
        s.CurrentX = left;
        s.CurrentY = labelY;
        s.Print(t.label);
        if (!t.lastLabel)
            placedRight = left + w;
    }
}

void Operation_Graph::Draw_Grid(Graph_Surface& s, bool hour)
{
    const Graph_Geometry& g = Graph();
    const Globals& G_ = G();
    const float extra = hour ? G_.RPM_Tick10 : 0;
    const int rows = int(std::floor((G_.RPM_Tick10 + G_.Max_Speed_Axis + extra) / 10)) - 1;
    const int rpmRows = int(G_.RPM_Tick10 / 10);
    const int speedRows = int(G_.Max_Speed_Axis / 10);
    for (int i = 1; i <= rows; ++i) {
        const float y = g.Graph_RpmTop + 10 * g.Graph_YStep * float(i);
        s.Line(g.Graph_Left, y, g.Graph_Right, y, Grid_Color(s));
        QString label;
        if (i < rpmRows)
            label = QString::number(G_.Max_RPM_Axis - g.Graph_RpmStep * i);
        else if (i > rpmRows && (!hour || i < rpmRows + speedRows))
            label = QString::number(int(G_.Max_Speed_Axis) - 10 * (i - rpmRows));
        else if (hour && i > rpmRows + speedRows)
            label = QString::number(G_.Max_RPM_Axis - g.Graph_RpmStep * (i - rpmRows - speedRows));
        if (!label.isEmpty())
            Axis_Label(s, label, y);
        // On a page of its own the band boundaries stand out of the grid.
        if (hour && Out_Direction == 2 && (i == rpmRows || i == rpmRows + speedRows)) {
            s.DrawStyle = 0;
            s.Line(g.Graph_Left, y, g.Graph_Right, y);
            s.DrawStyle = 2;
        }
    }
}

// The frame both canvases share: bands, ticks, the title of the day (and
// hour), the grid, the state band's middle, the speed limit and the band
// titles. The day adds its distance band, the hour its second RPM band.
void Operation_Graph::Frame(Graph_Surface& s, bool hour)
{
    const Graph_Geometry& g = Graph();
    const Globals& G_ = G();
    Outer_Frame(s);
    s.Set_FontSize(Out_Direction == 1 ? 7 : 8);
    Draw_Ticks(s, hour);
    const float labelY = g.Graph_Bottom + s.Pixel() * 2;
    const float line = s.TextHeight(QStringLiteral("A"));
    if (hour) {
        const QString day = Hour.endDay.isEmpty() ? Trip.startDay : Hour.endDay;
        Centred(s, QStringLiteral("  ") + Date_Dash(day), g.Graph_LabelX, g.Graph_Left, labelY);
        if (Hour.startTime.size() >= 2)
            Centred(s, QStringLiteral("  ") + Hour.startTime.left(2) + kHour, g.Graph_LabelX, g.Graph_Left,
                    labelY + line);
    } else {
        Centred(s, Date_Dash(Trip.startDay), g.Graph_LabelX, g.Graph_Left, labelY);
    }
    Draw_Grid(s, hour);
    const float stateMiddle = (g.Graph_Top + g.Graph_RpmTop) / 2;
    s.Line(g.Graph_Left, stateMiddle, g.Graph_Right, stateMiddle, Grid_Color(s));

    s.DrawStyle = 0;
    s.Line(g.Graph_LabelX, g.Graph_SpeedTop, g.Graph_Right, g.Graph_SpeedTop);
    const int16_t limit = G_.Config ? G_.Config->B_Val3 : 0;
    if (G_.Max_Speed_Axis > limit) {
        const float y = g.Graph_SpeedBase - float(limit) * g.Graph_YStep;
        s.Line(g.Graph_Left, y, g.Graph_Right, y, 0x800080);
    }

    // The titles keep clear of the axis labels of their band.
    const float speedLabels = s.TextWidth(QString::number(int(G_.Max_Speed_Axis)));
    Band_Title(s, {LoadResString(1127)}, 0, g.Graph_Top, g.Graph_RpmTop);
    Band_Title(s, {LoadResString(1126), QStringLiteral("(Km/h)")}, speedLabels, g.Graph_SpeedTop, g.Graph_SpeedBase);
    if (Rpm_Input()) {
        std::vector<float> bands{(g.Graph_RpmTop + g.Graph_SpeedTop) / 2};
        if (hour)
            bands.push_back((g.Graph_Rpm2Top + g.Graph_Rpm2Base) / 2);
        for (float middle : bands) {
            // Measured with the blanks, printed without: kept as it always was.
            s.CurrentX = (g.Graph_LabelX + g.Graph_Left) / 2 - s.TextWidth(QStringLiteral("R. P. M")) / 2;
            s.CurrentY = middle - line / 2;
            s.Print(QStringLiteral("R.P.M"));
        }
    }
    if (!hour) {
        Band_Title(s, {LoadResString(1128)}, s.TextWidth(QStringLiteral("15")), g.Graph_SpeedBase, g.Graph_Bottom);
        // The distance band folds at 10 km, yet its lines read 5 and 15.
        s.DrawStyle = 2;
        for (int i = 1; i <= 2; ++i) {
            const float y = g.Graph_Bottom - 10 * g.Graph_YStep * float(i);
            s.Line(g.Graph_Left, y, g.Graph_Right, y, Grid_Color(s));
            Axis_Label(s, QString::number(5 + 10 * (i - 1)), y);
        }
    }
    s.DrawWidth = 1;
    s.DrawMode = 13;
    s.DrawStyle = 0;
}

void Operation_Graph::Picture_Base_Draw(Graph_Surface& s)
{
    Guarded(kErrPicture_Base_Draw, [&] { Frame(s, false); });
}

void Operation_Graph::Picture_Base_Draw_360(Graph_Surface& s)
{
    Guarded(kErrPicture_Base_Draw, [&] { Frame(s, true); });
}

} // namespace vex
