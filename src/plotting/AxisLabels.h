// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#pragma once

// The numbers and names of a plot's two axes, laid out around the plot box so that they never
// cover the plot: the times under the box, each centred under its grid line, with the name
// (TimeAxisName: "HJD", or "HJD − 2459123" with whole days set apart) at the left of that row; the magnitudes in the
// narrow left margin, written upwards along the axis (the margin is 500 twips, too narrow for level numbers), each
// centred on its tick, with the name "Magnitude" in the top margin above the axis. Where neighbouring numbers would
// touch, only every 2nd, 5th, 10th ... grid value is numbered, so the numbers shown stay round.

#include "plotting/FormPort.h"
#include "plotting/PlotBox.h"

#include <vector>

namespace dip {

// A text beside an axis: (x, y) is its top left corner when level, its bottom left corner
// when it reads upwards.
struct AxisText {
    QString text;
    double x = 0;
    double y = 0;
    bool up = false;
};

// The decimals that show every multiple of a grid step exactly: none for steps of 1 and more,
// 3 for 0.005, 1 for 0.2.
int GridDecimals(const GridStep& g);

// The decimals the numbers of an axis are written with: those of the step, or up to four more
// where the numbers need them to lie within half a percent of a step from the value they
// stand for. The grid step is single precision, so over large times (HJD 2454123) its
// multiples drift off the round values: such a grid line is numbered with its own time
// ("2454123.4366"), not with the round time near it.
int LabelDecimals(const std::vector<double>& values, const GridStep& g);

// An axis number with exactly that many decimals, "0" before the point and no "-0".
QString AxisNumber(double value, int decimals);

// The multiples of the magnitude step from Int(m0 / step) to Int((m0 + mr) / step) that lie
// inside the box; empty when the scale has no magnitude range.
std::vector<double> MagnitudeSteps(const PlotScale& scale, const GridStep& g);

// Of evenly spaced numbers `spacing` apart, number every n-th (n = 1, 2, 5, 10, 20, 50 ...)
// so that the widest keeps `gap` from its neighbours.
long long LabelStride(double spacing, double widest, double gap);

// The texts of the time axis for the grid times drawn (step g) and of the magnitude axis for
// the magnitude steps (step mg), measured in the canvas' font.
std::vector<AxisText> TimeAxisTexts(const Canvas& canvas, const PlotScale& scale, const GridStep& g,
                                    const std::vector<double>& times);
std::vector<AxisText> MagnitudeAxisTexts(const Canvas& canvas, const PlotScale& scale, const GridStep& mg,
                                         const std::vector<double>& mags);

// The layout constants, in twips.
namespace axis {
constexpr double TickLength = 60; // ticks outside the box, under it and left of it
constexpr double TextGap = 30;    // between a tick and its number
constexpr double MinSpace = 90;   // between two numbers
} // namespace axis

} // namespace dip
