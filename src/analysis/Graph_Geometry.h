#pragma once
// The geometry of the graph canvas: four bands stacked on a surface (state,
// RPM, speed, and distance on the day canvas or a second RPM band on the
// hour canvas), a column of band titles on the left and the time axis along
// the bottom. The values are shared by every graph and window, because a
// window's mouse and key handlers need the numbers its picture was drawn
// with; each Graph_Init replaces them. A printed graph leaves paper
// proportions behind, so a window computes them again after printing.
//
// Out_Direction: 0 a window, 1 a graph in the lower part of a printed page,
// 2 a graph on a page of its own under a header.
#include <cstdint>

namespace vex {

struct Graph_Geometry {
    float Graph_Width = 0;     // usable width, whole units; afterwards the plot width
    float Graph_Height = 0;    // height of the graph area
    float Graph_DistBand = 20; // Y units of the distance band
    int16_t Graph_RpmStep = 0; // RPM a grid line: 500 with an RPM input, else 0
    float Graph_LabelX = 0;    // left edge of the frame and of the title column
    float Graph_Left = 0;      // X of the first plot column
    float Graph_Right = 0;     // X of the last plot column
    float Graph_Top = 0;       // top of the state band
    float Graph_RpmTop = 0;    // bottom of the state band, top of the RPM band
    float Graph_SpeedTop = 0;  // bottom of the RPM band, top of the speed band
    float Graph_SpeedBase = 0; // Y of speed 0
    float Graph_Bottom = 0;    // lower edge of the frame
    float Graph_XStep = 0;     // whole units a minute (day) or a second (hour)
    float Graph_YStep = 0;     // units of one Y unit (1 km/h)
    float Graph_Rpm2Top = 0;   // hour canvas: the second RPM band
    float Graph_Rpm2Base = 0;
};

// The geometry of the present surface.
Graph_Geometry& Graph();

// Graph_Init (day, 1440 columns) and Graph_Init_360 (hour, 3600 columns) on
// a surface of scaleWidth x scaleHeight units. They read Max_Speed_Axis,
// Max_RPM_Axis and RPM_Tick10 of the globals and C_RPM of the
// configuration; with an RPM input they set RPM_Tick10 from the RPM axis.
// A surface narrower than 1440 (3600) units gets a step of 0: the plot
// collapses onto Graph_Left, and the log says so.
void Graph_Init(float scaleWidth, float scaleHeight, int16_t outDirection);
void Graph_Init_360(float scaleWidth, float scaleHeight, int16_t outDirection);

// True when the cars have an RPM input (C_RPM 1).
bool Rpm_Input();

} // namespace vex
