// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#pragma once

// The plot box of a plot window and the linear mapping of data to it, in twips with y growing
// downwards: x = PlotLeft + PlotWidth * (t - t0) / tr, y = PlotTop + PlotHeight * (m - m0) / mr.
// The smallest signed magnitude is at the top edge, so with "+Mags" bright is up and an
// eclipse hangs down. The box is the form's own (Canvas::transform()); each drawing also copies
// it into the session's shared PlotLeft .. PlotHeight, which describe the window drawn last.

#include "plotting/FormPort.h"
#include "plotting/PlotTransform.h"

#include <vector>

namespace dip {

// The extents of the used points (HJDMin, HJDRange, MagMin, MagRange): the method windows' scale.
PlotScale CurrentScale();
// The Full extents taken at the last load or sign change: the light-curve window's scale.
PlotScale FullScale();

// Sets the form's PlotLeft, PlotRight, PlotTop, PlotBottom, derives PlotWidth and PlotHeight,
// and copies them into the session's shared box.
void SetPlotBox(Canvas& canvas, double left, double right, double top, double bottom);
// The light-curve window's box for a form of W x H twips (each first taken as a 16-bit
// integer): left 500, right W - 415, top 242, bottom H - 1850.
void SetStandardPlotBox(Canvas& canvas, double formWidth, double formHeight);

// Data to form through a box. A time range of 0 raises "Division by zero".
double PlotX(const PlotTransform& box, const PlotScale& scale, double t);
double PlotY(const PlotTransform& box, const PlotScale& scale, double m);
// Form to data.
double PlotTimeAt(const PlotTransform& box, const PlotScale& scale, double x);
double PlotMagAt(const PlotTransform& box, const PlotScale& scale, double y);

// The grid step for a range: L = Int(ln(range) / 2.302585), P = 10^L in single precision,
// r = range / P, k = 10, 5 if r < 5, 2 if r < 2; step = P * k / 10 in single precision.
struct GridStep {
    int L = 0;
    float P = 0;
    double r = 0;
    int k = 0;
    float step = 0;
};
GridStep ComputeGridStep(double range);

// The multiples of the grid step from Int(from / step) to Int(to / step), as times.
std::vector<double> GridTimes(float step, double from, double to);

// The frame of the canvas' box: black, four lines clockwise from the top left corner.
void DrawFrame(Canvas& canvas);

// Light-grey vertical lines at the grid times from the scale's start to tMax; a line is drawn
// (the canvas' box) unless it falls left of PlotLeft or right of PlotRight, so one exactly on an edge is drawn.
// The step is chosen from span (normally the time range). Returns the times drawn.
std::vector<double> DrawTimeGrid(Canvas& canvas, const PlotScale& scale, double span, double tMax);

// The common picture of a plot window around its points: the frame, then the time grid over
// the scale (step chosen from span, lines from the scale's start up to tMax; a line on an edge
// shows over the frame), black ticks under the box at the grid lines and left of it at the
// magnitude steps (the grid step rule applied to the scale's magnitude range), and the axis
// numbers and names (see AxisLabels.h). The tracing paper passes its own span and last time.
void DrawAxes(Canvas& canvas, const PlotScale& scale, double span, double tMax);

// The used points HJD/Mag 1..NumPts as discs in the given colour, with the scale, which
// becomes the canvas' scale.
void DrawUsedPoints(Canvas& canvas, const PlotScale& scale, Rgb colour);

// A used point: fifteen concentric circles of radius 1 to 15 twips, a small filled disc.
void DrawPointDisc(Canvas& canvas, double x, double y);
// A deleted point: two diagonal strokes of 100 twips each way.
void DrawDeletedCross(Canvas& canvas, double x, double y);

} // namespace dip
