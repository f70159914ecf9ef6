// Minutes, seconds, speeds, distances and RPM samples as points of the canvas.
#include "analysis/Graph_Surface.h"
#include "analysis/Operation_Graph.h"

#include "core/Err_Proc.h"
#include "core/Mod_Main.h"

#include <algorithm>

namespace vex {

namespace {

constexpr int16_t kErrMake_X = 1118;
constexpr int16_t kErrMake_X_D = 1120;
constexpr int16_t kErrMake_Y_R = 1122;

} // namespace

Operation_Graph::Operation_Graph(Cls_DB& db) : db_(db) {}

void Operation_Graph::Graph_Init(const Graph_Surface& surface) const
{
    vex::Graph_Init(surface.ScaleWidth(), surface.ScaleHeight(), Out_Direction);
}

void Operation_Graph::Graph_Init_360(const Graph_Surface& surface) const
{
    vex::Graph_Init_360(surface.ScaleWidth(), surface.ScaleHeight(), Out_Direction);
}

void Operation_Graph::Set_Zoom_Window(int16_t zoom, int first, int span)
{
    Zoom_Type = zoom;
    Zoom_Time = int16_t(std::clamp(first, 0, std::max(0, span - zoom)));
    Zoom_ETime = int16_t(std::min(Zoom_Time + zoom, span));
}

// Left + (perDay / zoom) x step x (units - Zoom_Time x 60); the quotient is
// whole. Unit 0 is Graph_Left whatever the window.
float Operation_Graph::X_Of(float units, int perDay, int16_t zoom, int16_t errCode) const
{
    const Graph_Geometry& g = Graph();
    if (units == 0)
        return g.Graph_Left;
    if (zoom == 0) {
        Err_Proc(errCode, QStringLiteral("Division by zero: zoom 0"));
        return 0;
    }
    const int factor = perDay / zoom;
    return g.Graph_Left + float(factor) * g.Graph_XStep * (units - float(Zoom_Time) * 60);
}

float Operation_Graph::Make_X(float minute) const
{
    return X_Of(minute, 24, Zoom_Type, kErrMake_X);
}

float Operation_Graph::Make_X_D(float minute) const
{
    return X_Of(minute, 24, Zoom_Type, kErrMake_X_D);
}

float Operation_Graph::Make_XO(float minute, int16_t zoom) const
{
    return X_Of(minute, 24, zoom, kErrMake_X);
}

float Operation_Graph::Make_X360(float second) const
{
    return X_Of(second, 60, Zoom_Type, kErrMake_X);
}

float Operation_Graph::Make_XO360(float second, int16_t zoom) const
{
    return X_Of(second, 60, zoom, kErrMake_X);
}

float Operation_Graph::Make_XO360s(float minutes) const
{
    return X_Of(minutes * 60, 60, Zoom_Type, kErrMake_X);
}

float Operation_Graph::Make_Y(float speed) const
{
    const Graph_Geometry& g = Graph();
    if (speed == 0)
        return g.Graph_SpeedBase;
    const float y = g.Graph_SpeedBase - speed * g.Graph_YStep;
    return y < g.Graph_SpeedTop ? g.Graph_SpeedTop : y;
}

float Operation_Graph::Make_Y360(float speed) const
{
    return Make_Y(speed);
}

float Operation_Graph::Make_Y_D(float km) const
{
    const Graph_Geometry& g = Graph();
    if (km == 0)
        return g.Graph_Bottom;
    const float y = g.Graph_Bottom - 2 * km * g.Graph_YStep;
    return y < g.Graph_SpeedBase ? g.Graph_SpeedBase : y;
}

namespace {

// An RPM sample (40 RPM a unit) in a band from top to base: above the axis
// at the top, below the band's floor at its base, else by the grid.
float Rpm_Y(float sample, float top, float base)
{
    const Graph_Geometry& g = Graph();
    const Globals& G_ = G();
    const float rpm = sample * 40;
    if (rpm > G_.Max_RPM_Axis)
        return top;
    const float floor = G_.Max_RPM_Axis - (G_.RPM_Tick10 / 10) * g.Graph_RpmStep;
    if (rpm < floor)
        return base;
    if (g.Graph_RpmStep == 0) {
        Err_Proc(kErrMake_Y_R, QStringLiteral("Division by zero: no RPM grid"));
        return 0;
    }
    return top + (G_.Max_RPM_Axis - rpm) / (float(g.Graph_RpmStep) / 10) * g.Graph_YStep;
}

} // namespace

float Operation_Graph::Make_Y_R(float sample) const
{
    return Rpm_Y(sample, Graph().Graph_RpmTop, Graph().Graph_SpeedTop);
}

float Operation_Graph::Make_Y_R2(float sample) const
{
    return Rpm_Y(sample, Graph().Graph_Rpm2Top, Graph().Graph_Rpm2Base);
}

} // namespace vex
