// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#pragma once

// The O - C diagram drawn with Qt's painter on any device (an image, an SVG or PDF file, a
// window): O - C against the cycle number or the time, error bars, primary minima and
// secondary minima in two colours, the fitted straight line, and the corrected T0 and P.

#include "analysis/OcDiagram.h"

#include <QColor>
#include <QPointF>
#include <QRectF>

class QPainter;

namespace dip {

namespace occolours {
const QColor primary(255, 0, 0);   // the program's data-point red
const QColor secondary(0, 0, 255); // the program's second-branch blue
const QColor line(150, 0, 150);    // the program's overlay purple
const QColor grid(192, 192, 192);
} // namespace occolours

// The one mapping of the diagram's values to the device and back. O - C is shown in minutes
// when every bar lies within 0.02 d (29 min) of zero, in days otherwise.
struct OcPlotFrame {
    QRectF box; // the plot box on the device
    double xMin = 0, xMax = 1;
    double yMin = 0, yMax = 1; // in the shown unit
    double yScale = 1;         // shown unit per day: 1440 for minutes, 1 for days
    double xOf(const OcPoint& p, OcAxis axis) const { return axis == OcAxis::Cycle ? p.cycle : p.time; }
    QPointF map(double x, double ocDays) const;
    double xToDevice(double x) const;
    double yToDevice(double ocDays) const;
};

// The frame of a diagram drawn into area: margins in proportion to the area, the axes spanning
// the points and their error bars with a margin.
OcPlotFrame ocPlotFrame(const OcDiagram& diagram, const QRectF& area);

// The marker radius in device pixels for an area.
double ocMarkerRadius(const QRectF& area);

// Draws the diagram into area: white background, grid, axes and their labels, the zero line, the
// fitted line with "T0 = ... ± ..." and "P = ... ± ... d", error bars, filled discs for the
// minima (red primaries, blue secondaries) and a legend in the two colours.
void paintOcDiagram(QPainter& painter, const QRectF& area, const OcDiagram& diagram);

} // namespace dip
