// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#include "methods/fourier/FourierFit.h"

#include "runtime/Numeric.h"
#include "runtime/Text.h"
#include "session/Session.h"

namespace dip {

using namespace fourierText;

void fourierMouseDown(FourierView& view, int button, double x, double y)
{
    pickFourierEnd(view, Click::atTwips(x, y, rt::Integer(button)));
}

void pickFourierEnd(FourierView& view, const Click& click)
{
    Session& s = S();
    RangePick& r = s.Fourier.Range;
    FormPort& form = view.form;
    const PlotTransform& box = form.transform();
    if (!clickInsideBox(box, click))
        return;
    if (click.Button == RightButton) {
        const double t = clickTime(box, click, ClickTimeForm::GroupedFraction);
        // The side is decided by where the click falls, not by the order of the clicks: the
        // point index under it, estimated from its place across the plot, against the deepest
        // point. A replayed click at time t lies at (t - HJDMin) / HJDRange across the box.
        const double fraction =
            click.exactTime ? rt::div(t - s.HJDMin, s.HJDRange) : rt::div(click.X - box.PlotLeft, box.PlotWidth);
        const Integer estimate = rt::CInt(s.RangeFirst + rt::i16(s.RangeLast - s.RangeFirst) * fraction);
        if (estimate < s.IdxMagMax) {
            // The old marker is painted over in white, even before any was drawn (at x = 0).
            drawMarker(form, r.LeftMarkX, colours::white);
            // The first point after the click; when there is none the index stays as it was.
            const Integer i = searchFirstAfter(t);
            if (i <= s.NumPts)
                r.LeftIdx = i;
            drawMarker(form, click.X);
            r.LeftMarkX = click.X;
            r.LeftHJD = t;
            r.LeftSet = rt::True;
            form.setControlText(leftIndexLabel(), rt::Str(r.LeftIdx));
            form.setCaption(leftPickedPrompt());
        } else {
            drawMarker(form, r.RightMarkX, colours::white);
            // The last point before the click.
            const Integer i = searchLastBefore(t);
            if (i >= 1)
                r.RightIdx = i;
            drawMarker(form, click.X);
            r.RightMarkX = click.X;
            r.RightHJD = t;
            r.RightSet = rt::True;
            form.setControlText(rightIndexLabel(), rt::Str(r.RightIdx));
            form.setCaption(rightPickedPrompt());
        }
    }
    // For any button, as long as the click was inside the plot box.
    r.RangeSet = r.LeftSet & r.RightSet;
}

} // namespace dip
