// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#include "plotting/LightCurve.h"

#include "plotting/PlotBox.h"
#include "runtime/Numeric.h"
#include "session/Formatting.h"
#include "session/Session.h"

namespace dip {

void PlotLightCurve(Canvas& form)
{
    const Session& s = S();
    form.cls();
    SetStandardPlotBox(form, form.formWidth(), form.formHeight());
    const PlotScale scale = FullScale();
    form.transform().scale = scale;
    const PlotTransform& box = form.transform();
    DrawAxes(form, scale, s.FullHJDRange, s.FullHJDMax);
    form.setForeColor(colours::red);
    for (int i = 1; i <= s.NumOrig; ++i) {
        const double x = PlotX(box, scale, s.OrigHJD(i));
        const double y = PlotY(box, scale, s.OrigMag(i));
        if (s.Deleted(i))
            DrawDeletedCross(form, x, y);
        else
            DrawPointDisc(form, x, y);
    }
}

rt::Integer PickNearestPoint(const PlotTransform& box, double x, double y)
{
    Session& s = S();
    // The mouse reports single-precision form coordinates; the inverse of the drawing
    // transform, evaluated as range x offset / extent.
    const double fx = rt::Single(x);
    const double fy = rt::Single(y);
    const double hx = s.FullHJDMin + rt::div(rt::fin(s.FullHJDRange * (fx - box.PlotLeft)), box.PlotWidth);
    const double my = s.FullMagMin + rt::div(rt::fin(s.FullMagRange * (fy - box.PlotTop)), box.PlotHeight);
    double best = 9999;
    s.PickIdx = 0;
    for (int i = 1; i <= s.NumOrig; ++i) {
        const double dm = my - s.OrigMag(i);
        const double dt = s.OrigHJD(i) - hx;
        const double d = rt::fin(dm * dm + dt * dt);
        if (d < best) { // strict: of equally near points the first one wins
            s.PickIdx = rt::i16(i);
            best = d;
        }
    }
    return s.PickIdx;
}

void MarkPick(Canvas& form)
{
    const Session& s = S();
    const PlotScale scale = FullScale();
    const double x = PlotX(form.transform(), scale, s.OrigHJD(s.PickIdx));
    const double y = PlotY(form.transform(), scale, s.OrigMag(s.PickIdx));
    // A point at the edge of the box keeps its cross inside it.
    PlotBoxClip clip(form);
    form.setForeColor(colours::blue);
    form.line(x - 200, y, x + 200, y);
    form.line(x, y - 200, x, y + 200);
}

PickTexts PickedPointTexts()
{
    const Session& s = S();
    return {QString::number(s.PickIdx), FormatFixed(s.HJD(s.PickIdx), 12, 6), FormatFixed(s.Mag(s.PickIdx), 8, 3)};
}

} // namespace dip
