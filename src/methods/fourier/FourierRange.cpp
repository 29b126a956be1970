// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#include "methods/fourier/FourierFit.h"

#include "plotting/PlotBox.h"
#include "runtime/Numeric.h"
#include "runtime/Text.h"
#include "session/Session.h"

namespace dip {

using namespace fourierText;

namespace {

// The old marker of an end is painted over in white (even before any was drawn, at x = 0;
// whatever the line crosses is not redrawn), the new one drawn in purple at x.
void moveMarker(FormPort& form, double& markX, double x)
{
    const Session& s = S();
    form.setForeColor(colours::white);
    form.line(markX, s.PlotTop, markX, s.PlotBottom);
    form.setForeColor(colours::purple);
    form.line(x, s.PlotTop, x, s.PlotBottom);
    markX = x;
}

} // namespace

void fourierMouseDown(FourierView& view, int button, double x, double y)
{
    Session& s = S();
    // The edges of the box count as inside.
    if (x < s.PlotLeft || x > s.PlotRight || y < s.PlotTop || y > s.PlotBottom)
        return;
    if (button != 2) {
        RangePick& r = s.Fourier.Range;
        r.RangeSet = r.LeftSet & r.RightSet;
        return;
    }
    const double fraction = rt::div(x - s.PlotLeft, s.PlotWidth);
    const double clickHJD = PlotTimeAt(CurrentScale(), x);
    pickFourierEnd(view, x, clickHJD, fraction);
}

void pickFourierEnd(FourierView& view, double x, double clickHJD, double fraction)
{
    Session& s = S();
    RangePick& r = s.Fourier.Range;
    FormPort& form = view.form;

    // The side is decided by where the click falls, not by the order of the clicks: the
    // point index under it, estimated from its place across the plot, against the deepest
    // point.
    const Integer estimate = rt::CInt(s.RangeFirst + rt::i16(s.RangeLast - s.RangeFirst) * fraction);
    const bool rightEnd = estimate >= s.IdxMagMax;

    if (!rightEnd) {
        moveMarker(form, r.LeftMarkX, x);
        // The first point after the click; when there is none the index stays as it was.
        for (int i = 1; i <= s.NumPts; ++i) {
            if (s.HJD(i) > clickHJD) {
                r.LeftIdx = rt::i16(i);
                break;
            }
        }
        r.LeftHJD = clickHJD;
        r.LeftSet = rt::True;
        form.setControlText(leftIndexLabel(), rt::Str(r.LeftIdx));
        form.setCaption(leftPickedPrompt());
    } else {
        moveMarker(form, r.RightMarkX, x);
        // The last point before the click.
        for (int i = s.NumPts; i >= 1; --i) {
            if (s.HJD(i) < clickHJD) {
                r.RightIdx = rt::i16(i);
                break;
            }
        }
        r.RightHJD = clickHJD;
        r.RightSet = rt::True;
        form.setControlText(rightIndexLabel(), rt::Str(r.RightIdx));
        form.setCaption(rightPickedPrompt());
    }
    r.RangeSet = r.LeftSet & r.RightSet;
}

} // namespace dip
