// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#include "methods/parabola/ParabolaCommands.h"

#include "methods/parabola/FitParabola.h"
#include "session/Formatting.h"
#include "session/MainForm.h"
#include "session/Results.h"
#include "session/Session.h"

namespace dip {

RangePicker parabolaPicker(FormPort& form) { return RangePicker(S().ParabolaPick, form, parabolaRangeStyle()); }

void ParabolaFormLoad(FormPort& form) { parabolaPicker(form).formLoad(); }

void ParabolaRedrawOverlays(FormPort& form)
{
    RangePicker picker = parabolaPicker(form);
    if (picker.pick().RangeSet != 0)
        picker.redrawMarkers();
    if (picker.pick().Fitted != 0 && form.drawsAnything())
        PlotParabolaFit(form);
}

void ParabolaMouseDown(FormPort& form, const Click& click) { parabolaPicker(form).mouseDown(click); }

std::optional<ParabolaFitResult> ParabolaFitClick(FormPort& form)
{
    RangePicker picker = parabolaPicker(form);
    if (!picker.ready())
        return std::nullopt;
    Session& s = S();
    RangePick& pick = picker.pick();

    picker.redrawMarkers();
    const ParabolaFitResult fit = FitParabola(s.HJD, s.Mag, s.NumPts, pick.LeftIdx, pick.RightIdx);
    s.ParabA0 = fit.a0;
    s.ParabB = fit.b;
    s.ParabC = fit.c;
    s.ParabSigB = fit.sigB;
    s.ParabSigC = fit.sigC;
    pick.Fitted = rt::True;

    PublishResult(1, fit.time, ParabolaError(fit));
    if (form.drawsAnything())
        PlotParabolaFit(form);
    // This window's RMS box keeps its leading blanks: right-aligned in 8.
    form.setControlText(QStringLiteral("Text1"), FormatFixed(fit.rms, 8, 3));
    picker.showFitted();
    return fit;
}

void ParabolaUndoClick(FormPort& form)
{
    RangePicker picker = parabolaPicker(form);
    picker.undo();
    ClearResult(1, true);
    form.setControlText(QStringLiteral("Text1"), QString());
}

} // namespace dip
