// The decoded day or hour on top of its frame: speed, the state band, the
// folded distance line and the RPM bands.
#include "analysis/Graph_Surface.h"
#include "analysis/Operation_Graph.h"

#include "core/Err_Proc.h"
#include "store/Cls_DB.h"

#include <algorithm>
#include <cmath>
#include <vector>

namespace vex {

namespace {

constexpr int16_t kErrPicture_Base_Draw = 1117;

constexpr uint32_t kSpeedColor = 0xC00000;
constexpr uint32_t kStandingColor = 0xFF; // engine running, not moving
constexpr uint32_t kDistanceColor = 0x8000;
constexpr uint32_t kRpmColor = 0xC000C0;
constexpr uint32_t kEndColor = 0xFF;

// The distance band shows 10 km: the line climbs for ten kilometres and
// falls for the next ten. Whole kilometres, as the band is drawn.
float Folded_Y(const Operation_Graph& og, long km)
{
    const long period = km / 10, rest = km % 10;
    return og.Make_Y_D(float(period % 2 == 0 ? rest : 10 - rest));
}

// The pen as the routines found it.
void Restore(Graph_Surface& s)
{
    s.DrawWidth = 1;
    s.DrawMode = 13;
    s.DrawStyle = 0;
}

} // namespace

void Operation_Graph::Plot(Graph_Surface& s, bool hour)
{
    const Graph_Geometry& g = Graph();
    const QString& series = hour ? db_.Sec_Sec_Data : db_.Sec_Data;
    float& current = hour ? Current_Point360 : Current_Point;
    current = 0;
    const int columns = hour ? 3600 : 1440;
    const int first = hour ? first360_ : first_;
    const int last = hour ? last360_ : last_;
    const int16_t* speed = hour ? speed360_.data() : speed_.data();
    const int16_t* rpm = hour ? rpm360_.data() : rpm_.data();

    // Segments i join point i and i+1 (minute or second i of the window),
    // within the zoom window and the drawn range.
    const int windowFrom = Zoom_Time * 60, windowTo = Zoom_ETime * 60;
    const int from = std::max({windowFrom, first - 1, 0});
    const int to = std::min({windowTo - 1, last, columns - 1});
    if (series.isEmpty() || first == 0 || from > to)
        return;

    std::vector<float> xs(size_t(to - from + 2));
    for (int k = from; k <= to + 1; ++k)
        xs[size_t(k - from)] = hour ? Make_X360(float(k)) : Make_X(float(k));
    auto X = [&](int k) { return xs[size_t(k - from)]; };
    current = X(from);
    const int lineWidth = Out_Direction == 1 ? 3 : 1;
    s.DrawStyle = 0;

    // 1. Speed: boxes a column at the finest zoom, else a line.
    s.DrawWidth = lineWidth;
    if (Zoom_Type == 1) {
        const float half = 5 * g.Graph_XStep;
        for (int k = from; k <= to + 1; ++k) {
            const float x = X(k);
            const float left = k == windowFrom ? x : x - half;
            const float right = k == windowTo ? x : x + half;
            s.Box(left, Make_Y(speed[k]), right, g.Graph_SpeedBase, kSpeedColor);
        }
    } else {
        for (int i = from; i <= to; ++i)
            s.Line(X(i), Make_Y(speed[i]), X(i + 1), Make_Y(speed[i + 1]), kSpeedColor);
    }

    // 2. State band: moving, or standing with the engine running. Runs of
    // one state are one box.
    const float middle = (g.Graph_Top + g.Graph_RpmTop) / 2;
    const float half = Out_Direction == 1 ? 12 : 25;
    auto state = [&](int i) -> uint32_t {
        if (speed[i + 1] != 0)
            return kSpeedColor;
        return rpm[i + 1] > 0 ? kStandingColor : 0;
    };
    for (int i = from; i <= to;) {
        const uint32_t c = state(i);
        int j = i;
        while (j + 1 <= to && state(j + 1) == c)
            ++j;
        if (c != 0)
            s.Filled_Box(X(i), middle - half, X(j + 1), middle + half, c);
        i = j + 1;
    }

    // 3. Distance, folded into the band; a fold is drawn as a corner.
    if (!hour) {
        s.DrawWidth = lineWidth;
        for (int i = from; i <= to; ++i) {
            const float d0 = distance_[size_t(i)], d1 = distance_[size_t(i + 1)];
            if (d0 == 0 || d1 == 0)
                continue;
            const long k0 = std::lrint(d0), k1 = std::lrint(d1);
            const float x0 = Make_X_D(float(i)), x1 = Make_X_D(float(i + 1));
            if (k0 / 10 == k1 / 10 || k1 == k0) {
                s.Line(x0, Folded_Y(*this, k0), x1, Folded_Y(*this, k1), kDistanceColor);
                continue;
            }
            const long fold = (k1 / 10) * 10;
            const float xc = x0 + (x1 - x0) * float(fold - k0) / float(k1 - k0);
            const float yc = (k1 / 10) % 2 == 1 ? Make_Y_D(10) : Make_Y_D(0);
            s.Line(x0, Folded_Y(*this, k0), xc, yc, kDistanceColor);
            s.Line(xc, yc, x1, Folded_Y(*this, k1), kDistanceColor);
        }
    }

    // 4. RPM, with an RPM input only; the hour has a second band below.
    if (Rpm_Input()) {
        s.DrawWidth = lineWidth;
        const int16_t* lower = second360_.data();
        auto band = [&](const int16_t* values, bool second, float base) {
            auto Y = [&](int16_t v) { return second ? Make_Y_R2(v) : Make_Y_R(v); };
            if (Zoom_Type == 1) {
                const float h = 5 * g.Graph_XStep;
                for (int k = from; k <= to + 1; ++k) {
                    const float x = X(k);
                    s.Box(k == windowFrom ? x : x - h, Y(values[k]), k == windowTo ? x : x + h, base, kRpmColor);
                }
            } else {
                for (int i = from; i <= to; ++i)
                    s.Line(X(i), Y(values[i]), X(i + 1), Y(values[i + 1]), kRpmColor);
            }
        };
        band(rpm, false, g.Graph_SpeedTop);
        if (hour)
            band(lower, true, g.Graph_Rpm2Base);
    }

    // 6. A red line where the data ends.
    if (last >= windowFrom && last <= windowTo) {
        s.DrawWidth = lineWidth;
        const float x = hour ? Make_X360(float(last)) : Make_X(float(last));
        s.Line(x, g.Graph_Top, x, g.Graph_Bottom, kEndColor);
    }
}

void Operation_Graph::Plot_Day(Graph_Surface& s)
{
    Guarded(kErrPicture_Base_Draw, [&] { Plot(s, false); });
    Restore(s);
    Graph_Init(s);
}

void Operation_Graph::Plot_Hour(Graph_Surface& s)
{
    Guarded(kErrPicture_Base_Draw, [&] { Plot(s, true); });
    Restore(s);
    Graph_Init_360(s);
}

void Operation_Graph::Draw_Day(Graph_Surface& s)
{
    Graph_Init(s);
    Picture_Base_Draw(s);
    Plot_Day(s);
}

void Operation_Graph::Draw_Hour(Graph_Surface& s)
{
    Graph_Init_360(s);
    Picture_Base_Draw_360(s);
    Plot_Hour(s);
}

} // namespace vex
