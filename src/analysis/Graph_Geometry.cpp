#include "analysis/Graph_Geometry.h"

#include "core/Cls_Config.h"
#include "core/Err_Proc.h"
#include "core/Mod_Main.h"

#include <cmath>

namespace vex {

namespace {

constexpr int16_t kErrGraph_Init = 1116;

// Truncation toward zero.
float Fix(double v)
{
    return float(std::trunc(v));
}

// The steps both canvases share: widths, the RPM band, the left and right
// edges, the top and the bottom of the graph.
void Frame(Graph_Geometry& g, float scaleWidth, float scaleHeight, int16_t outDirection)
{
    Globals& G_ = G();
    g.Graph_Width = Fix(scaleWidth * (outDirection == 1 ? 0.8 : 1.0));
    g.Graph_Height = float(scaleHeight * (outDirection == 1 ? 0.355 : outDirection == 2 ? 0.88 : 1.0));
    g.Graph_DistBand = 20;
    if (Rpm_Input()) {
        G_.RPM_Tick10 = float((double(G_.Max_RPM_Axis) / 500.0) * 10.0);
        g.Graph_RpmStep = 500;
    } else {
        g.Graph_RpmStep = 0;
    }
    g.Graph_LabelX = Fix(g.Graph_Width * (outDirection == 0 ? 0.005 : outDirection == 1 ? 0.01 : 0.0635));
    g.Graph_Left = Fix(g.Graph_Width * 0.14);
    g.Graph_Right = Fix(g.Graph_Width * 0.9995);
    g.Graph_Width = g.Graph_Right - g.Graph_Left;
    if (outDirection == 0)
        g.Graph_Top = float(g.Graph_Height * 0.05);
    else if (outDirection == 1)
        g.Graph_Top = float(scaleHeight * 0.644);
    else
        g.Graph_Top = float(g.Graph_Height * 0.2);
    g.Graph_Bottom = outDirection == 1 ? float(g.Graph_Height * 0.93 + g.Graph_Top) : float(g.Graph_Height * 0.9);
}

// The plot becomes a whole number of units a column; the frame shrinks to it.
void Columns(Graph_Geometry& g, int columns)
{
    g.Graph_XStep = Fix(g.Graph_Width / columns);
    if (g.Graph_XStep < 1)
        Err_Proc(kErrGraph_Init, QStringLiteral("the surface leaves %1 units for %2 columns: the plot collapses")
                                     .arg(double(g.Graph_Width))
                                     .arg(columns));
    g.Graph_Width = g.Graph_XStep * float(columns);
    g.Graph_Right = g.Graph_Left + g.Graph_Width;
}

// The Y step of units from top to bottom, and the bands from the top: 20
// state, RPM_Tick10 RPM, Max_Speed_Axis speed.
void Bands(Graph_Geometry& g, float units)
{
    const Globals& G_ = G();
    g.Graph_YStep = (g.Graph_Bottom - g.Graph_Top) / units;
    g.Graph_RpmTop = g.Graph_YStep * 20 + g.Graph_Top;
    g.Graph_SpeedTop = (G_.RPM_Tick10 + 20) * g.Graph_YStep + g.Graph_Top;
    g.Graph_SpeedBase = (G_.Max_Speed_Axis + G_.RPM_Tick10 + 20) * g.Graph_YStep + g.Graph_Top;
}

} // namespace

Graph_Geometry& Graph()
{
    static Graph_Geometry geometry;
    return geometry;
}

bool Rpm_Input()
{
    const Globals& g = G();
    return g.Config && g.Config->C_RPM == 1;
}

void Graph_Init(float scaleWidth, float scaleHeight, int16_t outDirection)
{
    Graph_Geometry& g = Graph();
    Globals& G_ = G();
    Frame(g, scaleWidth, scaleHeight, outDirection);
    G_.Graph_Minutes = 1440;
    Columns(g, 1440);
    // From the top, in Y units: 20 state, RPM_Tick10 RPM, Max_Speed_Axis
    // speed, Graph_DistBand distance.
    Bands(g, G_.Max_Speed_Axis + g.Graph_DistBand + 20 + G_.RPM_Tick10);
}

void Graph_Init_360(float scaleWidth, float scaleHeight, int16_t outDirection)
{
    Graph_Geometry& g = Graph();
    Globals& G_ = G();
    Frame(g, scaleWidth, scaleHeight, outDirection);
    G_.Graph_Seconds = 3600;
    Columns(g, 3600);
    // The lowest band is a second RPM band as tall as the first.
    Bands(g, G_.Max_Speed_Axis + 2 * G_.RPM_Tick10 + 20);
    g.Graph_Rpm2Top = g.Graph_SpeedBase;
    g.Graph_Rpm2Base = (2 * G_.RPM_Tick10 + G_.Max_Speed_Axis + 20) * g.Graph_YStep + g.Graph_Top;
}

} // namespace vex
