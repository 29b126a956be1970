// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#include "methods/fourier/FourierFit.h"

#include "methods/marquardt/Marquardt.h"
#include "plotting/PlotBox.h"
#include "plotting/RangePicking.h"
#include "runtime/Numeric.h"
#include "session/Session.h"

namespace dip {

void PlotFourierLightCurve(FormPort& form)
{
    const Session& s = S();
    SetPlotBox(form, FourierPlotLeft, form.formWidth() - FourierRightMargin, FourierPlotTop,
               form.formHeight() - FourierBottomMargin);
    form.transform().scale = CurrentScale();
    if (!form.drawsAnything())
        return;
    form.cls();
    DrawAxes(form, CurrentScale(), s.HJDRange, s.HJDMax);
    DrawUsedPoints(form, CurrentScale(), colours::red);
}

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
    if (!form.drawsAnything())
        return;
    const PlotScale scale = CurrentScale();
    PlotBoxClip clip(form);
    form.setForeColor(colours::blue);
    const PlotTransform& box = form.transform();
    double x0 = PlotX(box, scale, f.CurveT(0));
    double y0 = PlotY(box, scale, f.CurveM(0));
    for (int i = 1; i <= 100; ++i) {
        const double x1 = PlotX(box, scale, f.CurveT(i));
        const double y1 = PlotY(box, scale, f.CurveM(i));
        for (int d = -10; d <= 10; ++d)
            form.line(x0, y0 + d, x1, y1 + d);
        x0 = x1;
        y0 = y1;
    }
}

void RedrawFourierCurve(FormPort& form)
{
    if (!form.drawsAnything())
        return;
    const FourierState& f = S().Fourier;
    const PlotScale scale = CurrentScale();
    PlotBoxClip clip(form);
    form.setForeColor(colours::blue);
    // Thin: one stroke per segment, from the points stored by the last DrawFourierCurve.
    const PlotTransform& box = form.transform();
    form.line(PlotX(box, scale, f.CurveT(0)), PlotY(box, scale, f.CurveM(0)), PlotX(box, scale, f.CurveT(1)),
              PlotY(box, scale, f.CurveM(1)));
    for (int i = 2; i <= 100; ++i)
        form.lineTo(PlotX(box, scale, f.CurveT(i)), PlotY(box, scale, f.CurveM(i)));
}

} // namespace dip
