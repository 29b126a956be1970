// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#include "methods/fourier/FourierFit.h"

#include "methods/marquardt/Marquardt.h"
#include "runtime/Numeric.h"
#include "session/Session.h"

namespace dip {

namespace {

// The plot's scaling with the current extents: time across, magnitude down.
double plotX(double t)
{
    const Session& s = S();
    return s.PlotLeft + rt::div(s.PlotWidth * (t - s.HJDMin), s.HJDRange);
}

double plotY(double m)
{
    const Session& s = S();
    return s.PlotTop + rt::div(s.PlotHeight * (m - s.MagMin), s.MagRange);
}

} // namespace

void DrawFourierCurve(FormPort& form)
{
    Session& s = S();
    FourierState& f = s.Fourier;
    const Integer first = f.Range.LeftIdx;
    const Integer last = f.Range.RightIdx;

    ParVector a;
    fourierParToSolver(f.FourierPar, a);

    const double step = rt::div(s.HJD(last) - s.HJD(first), 100);
    ParVector dyda;
    for (int i = 0; i <= 100; ++i) {
        f.CurveT(i) = s.HJD(first) + i * step;
        FourierModel(f.CurveT(i), a, f.CurveM(i), dyda, 8);
    }

    // Thick: every segment drawn 21 times, shifted vertically by -10 .. +10 twips.
    form.setForeColor(colours::blue);
    double x0 = plotX(f.CurveT(0));
    double y0 = plotY(f.CurveM(0));
    for (int i = 1; i <= 100; ++i) {
        const double x1 = plotX(f.CurveT(i));
        const double y1 = plotY(f.CurveM(i));
        for (int d = -10; d <= 10; ++d)
            form.line(x0, y0 + d, x1, y1 + d);
        x0 = x1;
        y0 = y1;
    }
}

void RedrawFourierCurve(FormPort& form)
{
    const FourierState& f = S().Fourier;
    form.setForeColor(colours::blue);
    // Thin: one stroke per segment, from the points stored by the last DrawFourierCurve.
    form.line(plotX(f.CurveT(0)), plotY(f.CurveM(0)), plotX(f.CurveT(1)), plotY(f.CurveM(1)));
    for (int i = 2; i <= 100; ++i)
        form.lineTo(plotX(f.CurveT(i)), plotY(f.CurveM(i)));
}

} // namespace dip
