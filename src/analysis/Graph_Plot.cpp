// The decoded day or hour on top of its frame: speed, the state band, the
// folded distance line and the RPM bands.
#include "analysis/Graph_Codes.h"
#include "analysis/Graph_Surface.h"
#include "analysis/Operation_Graph.h"

#include "core/Err_Proc.h"
#include "core/Messages.h"
#include "store/Cls_DB.h"

#include <algorithm>
#include <cmath>
#include <vector>

namespace vex {

namespace {

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
    const bool nothing = hour ? Hour.speed.empty() : Trip.speed.isEmpty();
    float& current = hour ? Current_Point360 : Current_Point;
    current = 0;
    const int columns = hour ? 3600 : 1440;
    const int first = hour ? first360_ : first_;
    const int last = hour ? last360_ : last_;
    const int16_t* speed = hour ? speed360_.data() : speed_.data();
    const int16_t* rpm = hour ? rpm360_.data() : rpm_.data();
    const int16_t* engine = hour ? second360_.data() : engine_.data();

    // Element k of a series is clock minute (second) k-1 and is drawn at
    // X(k-1), where the cursor shows that time and reads that element. V(a, t)
    // is the value of time t, 0 past the series.
    auto V = [columns]<class T>(const T* a, int t) -> T { return t + 1 <= columns ? a[t + 1] : T(0); };

    // Times t of the window and the drawn range; lines run from t to t+1,
    // beginning a time early so that the trace rises from standing.
    const int windowFrom = Zoom_Time * 60, windowTo = Zoom_ETime * 60;
    const int from = std::max({windowFrom, first - 2, 0});
    const int to = std::min({windowTo - 1, last - 1, columns - 1});
    if (nothing || first == 0 || from > to)
        return;

    std::vector<float> xs(size_t(to - from + 2));
    for (int t = from; t <= to + 1; ++t)
        xs[size_t(t - from)] = hour ? Make_X360(float(t)) : Make_X(float(t));
    auto X = [&](int t) { return xs[size_t(t - from)]; };
    current = X(std::max(from, first - 1));
    const int lineWidth = Out_Direction == 1 ? 3 : 1;
    s.DrawStyle = 0;

    // A band of boxes (the finest zoom: one a time, 5 units to each side,
    // cut at the window's left edge) or a line.
    auto trace = [&](auto Y, const int16_t* values, float base, uint32_t colour) {
        if (Zoom_Type == 1) {
            const float h = 5 * g.Graph_XStep;
            for (int t = std::max(from, first - 1); t <= to; ++t) {
                const float x = X(t);
                s.Box(t == windowFrom ? x : x - h, Y(V(values, t)), x + h, base, colour);
            }
        } else {
            for (int t = from; t <= to; ++t)
                s.Line(X(t), Y(V(values, t)), X(t + 1), Y(V(values, t + 1)), colour);
        }
    };

    // 1. Speed.
    s.DrawWidth = lineWidth;
    trace([&](int16_t v) { return Make_Y(v); }, speed, g.Graph_SpeedBase, kSpeedColor);

    // 2. State band: moving, or standing with the engine running, over the
    // column of each time. Runs of one state are one box. The engine byte
    // tells that it runs, whatever factor the car has.
    const float middle = (g.Graph_Top + g.Graph_RpmTop) / 2;
    const float half = Out_Direction == 1 ? 12 : 25;
    auto state = [&](int t) -> uint32_t {
        if (V(speed, t) != 0)
            return kSpeedColor;
        return V(engine, t) > 0 ? kStandingColor : 0;
    };
    for (int t = from; t <= to;) {
        const uint32_t c = state(t);
        int j = t;
        while (j + 1 <= to && state(j + 1) == c)
            ++j;
        if (c != 0)
            s.Filled_Box(X(t), middle - half, X(j + 1), middle + half, c);
        t = j + 1;
    }

    // 3. Distance, folded into the band; a fold is drawn as a corner.
    if (!hour) {
        s.DrawWidth = lineWidth;
        const float* km = distance_.data();
        for (int t = from; t <= to; ++t) {
            const float d0 = V(km, t), d1 = V(km, t + 1);
            if (d0 == 0 || d1 == 0)
                continue;
            const long k0 = std::lrint(d0), k1 = std::lrint(d1);
            const float x0 = Make_X_D(float(t)), x1 = Make_X_D(float(t + 1));
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

    // 4. RPM, with an RPM input only; the hour has a second band below. A
    // car without an engine factor has no RPM to draw: the band says so.
    if (Rpm_Input() && !Has_Engine_Factor()) {
        const QString note = Lang_Text(QStringLiteral("RPM 계수가 없어 R.P.M을 그릴 수 없습니다"),
                                       QStringLiteral("No RPM factor: R.P.M can't be drawn"));
        s.CurrentX = (g.Graph_Left + g.Graph_Right) / 2 - s.TextWidth(note) / 2;
        s.CurrentY = (g.Graph_RpmTop + g.Graph_SpeedTop) / 2 - s.TextHeight(note) / 2;
        s.Print(note, kRpmColor);
    } else if (Rpm_Input()) {
        s.DrawWidth = lineWidth;
        trace([&](int16_t v) { return Make_Y_R(v); }, rpm, g.Graph_SpeedTop, kRpmColor);
        if (hour)
            trace([&](int16_t v) { return Make_Y_R2(v); }, second360_.data(), g.Graph_Rpm2Base, kRpmColor);
    }

    // 6. A red line where the data ends: at the end of the column of the
    // last time with data.
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
