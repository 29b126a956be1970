// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#pragma once

// The plot box of one window and the data scale of its last drawing. Every plot window (and
// the console tool's in-memory form) owns one and sets it on each drawing; its own mouse
// handlers, markers, picking, frame and grid convert with it, so a click is read with the box
// of the window it falls on, not that of whichever window drew last. Each drawing also copies
// the box into the session's shared PlotLeft .. PlotHeight, which keep describing the window
// drawn last.

namespace dip {

// The data extents a drawing maps into the box: time minimum and range, magnitude minimum and
// range.
struct PlotScale {
    double t0 = 0;
    double tr = 0;
    double m0 = 0;
    double mr = 0;
};

// Twips, y growing downwards: x = PlotLeft + PlotWidth (t - t0) / tr and
// y = PlotTop + PlotHeight (m - m0) / mr (PlotBox.h has the mapping).
struct PlotTransform {
    double PlotLeft = 0;
    double PlotRight = 0;
    double PlotTop = 0;
    double PlotBottom = 0;
    double PlotWidth = 0;
    double PlotHeight = 0;
    PlotScale scale; // the scale of the points of the last drawing

    void setBox(double left, double right, double top, double bottom)
    {
        PlotLeft = left;
        PlotRight = right;
        PlotTop = top;
        PlotBottom = bottom;
        PlotWidth = right - left;
        PlotHeight = bottom - top;
    }
};

} // namespace dip
