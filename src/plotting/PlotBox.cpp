// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#include "plotting/PlotBox.h"

#include "plotting/AxisLabels.h"

#include "runtime/Numeric.h"
#include "session/Session.h"

#include <algorithm>
#include <cmath>

namespace dip {

PlotScale CurrentScale()
{
    const Session& s = S();
    return {s.HJDMin, s.HJDRange, s.MagMin, s.MagRange};
}

PlotScale FullScale()
{
    const Session& s = S();
    return {s.FullHJDMin, s.FullHJDRange, s.FullMagMin, s.FullMagRange};
}

void SetPlotBox(Canvas& canvas, double left, double right, double top, double bottom)
{
    canvas.transform().setBox(left, right, top, bottom);
    // The shared box describes the window drawn last.
    Session& s = S();
    s.PlotLeft = left;
    s.PlotRight = right;
    s.PlotTop = top;
    s.PlotBottom = bottom;
    s.PlotWidth = right - left;
    s.PlotHeight = bottom - top;
}

void SetStandardPlotBox(Canvas& canvas, double formWidth, double formHeight)
{
    const rt::Integer w = rt::CInt(formWidth);
    const rt::Integer h = rt::CInt(formHeight);
    SetPlotBox(canvas, 500, w - 415, 242, h - 1850);
}

double PlotX(const PlotTransform& s, const PlotScale& scale, double t)
{
    return rt::fin(s.PlotLeft + rt::div(rt::fin(s.PlotWidth * (t - scale.t0)), scale.tr));
}

double PlotY(const PlotTransform& s, const PlotScale& scale, double m)
{
    return rt::fin(s.PlotTop + rt::div(rt::fin(s.PlotHeight * (m - scale.m0)), scale.mr));
}

double PlotTimeAt(const PlotTransform& s, const PlotScale& scale, double x)
{
    return scale.t0 + scale.tr * rt::div(x - s.PlotLeft, s.PlotWidth);
}

double PlotMagAt(const PlotTransform& s, const PlotScale& scale, double y)
{
    return scale.m0 + scale.mr * rt::div(y - s.PlotTop, s.PlotHeight);
}

GridStep ComputeGridStep(double range)
{
    if (range <= 0)
        rt::raise(5); // the logarithm of a non-positive range
    GridStep g;
    // ln 10 to six decimals, as the grid has always used it.
    g.L = static_cast<int>(rt::Int(std::log(range) / 2.302585));
    g.P = static_cast<float>(rt::pow(10.0, g.L));
    g.r = rt::div(range, static_cast<double>(g.P));
    g.k = 10;
    if (g.r < 5)
        g.k = 5;
    if (g.r < 2)
        g.k = 2;
    g.step = g.P * static_cast<float>(g.k) / 10.0f;
    return g;
}

std::vector<double> GridTimes(float step, double from, double to)
{
    const double s = static_cast<double>(step);
    const long long first = static_cast<long long>(rt::Int(rt::div(from, s)));
    const long long last = static_cast<long long>(rt::Int(rt::div(to, s)));
    std::vector<double> times;
    // A step far too small for the times (a grid of millions of lines) draws nothing useful.
    if (last - first > 100000)
        return times;
    for (long long j = first; j <= last; ++j)
        times.push_back(s * static_cast<double>(j));
    return times;
}

void DrawFrame(Canvas& canvas)
{
    const PlotTransform& s = canvas.transform();
    canvas.setForeColor(colours::black);
    canvas.line(s.PlotLeft, s.PlotTop, s.PlotRight, s.PlotTop);
    canvas.line(s.PlotRight, s.PlotTop, s.PlotRight, s.PlotBottom);
    canvas.line(s.PlotRight, s.PlotBottom, s.PlotLeft, s.PlotBottom);
    canvas.line(s.PlotLeft, s.PlotBottom, s.PlotLeft, s.PlotTop);
}

std::vector<double> DrawTimeGrid(Canvas& canvas, const PlotScale& scale, double span, double tMax)
{
    const PlotTransform& s = canvas.transform();
    const GridStep g = ComputeGridStep(span);
    std::vector<double> drawn;
    canvas.setForeColor(colours::lightGrey);
    for (const double t : GridTimes(g.step, scale.t0, tMax)) {
        const double x = PlotX(s, scale, t);
        if (!(x < s.PlotLeft) && !(x > s.PlotRight)) {
            canvas.line(x, s.PlotTop, x, s.PlotBottom);
            drawn.push_back(t);
        }
    }
    return drawn;
}

void DrawAxes(Canvas& canvas, const PlotScale& scale, double span, double tMax)
{
    const PlotTransform& s = canvas.transform();
    // The grid goes over the frame, so a grid time on an edge shows.
    DrawFrame(canvas);
    const std::vector<double> times = DrawTimeGrid(canvas, scale, span, tMax);
    const GridStep g = ComputeGridStep(span);

    // The magnitude steps; a curve of one brightness has none (its points fail the transform).
    GridStep mg;
    std::vector<double> mags;
    if (scale.mr > 0) {
        mg = ComputeGridStep(scale.mr);
        mags = MagnitudeSteps(scale, mg);
    }

    canvas.setForeColor(colours::black);
    const double bottom = std::max(s.PlotTop, s.PlotBottom);
    for (const double t : times) {
        const double x = PlotX(s, scale, t);
        canvas.line(x, bottom, x, bottom + axis::TickLength);
    }
    for (const double m : mags) {
        const double y = PlotY(s, scale, m);
        canvas.line(s.PlotLeft - axis::TickLength, y, s.PlotLeft, y);
    }
    std::vector<AxisText> texts = TimeAxisTexts(canvas, scale, g, times);
    const std::vector<AxisText> magTexts = MagnitudeAxisTexts(canvas, scale, mg, mags);
    texts.insert(texts.end(), magTexts.begin(), magTexts.end());
    for (const AxisText& t : texts) {
        if (t.up)
            canvas.textUp(t.x, t.y, t.text);
        else
            canvas.text(t.x, t.y, t.text);
    }
}

void DrawUsedPoints(Canvas& canvas, const PlotScale& scale, Rgb colour)
{
    const Session& s = S();
    canvas.transform().scale = scale;
    const PlotTransform& box = canvas.transform();
    canvas.setForeColor(colour);
    for (int i = 1; i <= s.NumPts; ++i)
        DrawPointDisc(canvas, PlotX(box, scale, s.HJD(i)), PlotY(box, scale, s.Mag(i)));
}

void DrawPointDisc(Canvas& canvas, double x, double y)
{
    for (int r = 1; r <= 15; ++r)
        canvas.circle(x, y, r);
}

void DrawDeletedCross(Canvas& canvas, double x, double y)
{
    canvas.line(x - 100, y - 100, x + 100, y + 100);
    canvas.line(x - 100, y + 100, x + 100, y - 100);
}

} // namespace dip
