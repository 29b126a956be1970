// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#include "methods/kwee/KweeCommands.h"

#include "runtime/Numeric.h"
#include "runtime/Text.h"
#include "session/MainForm.h"
#include "session/Results.h"
#include "session/Session.h"

namespace dip {

RangePicker kweePicker(FormPort& form) { return RangePicker(S().KweePick, form, kweeRangeStyle()); }

void KweeDesignTexts(FormPort& form)
{
    form.setControlText(QStringLiteral("Text1"), QStringLiteral("1"));
    form.setControlText(QStringLiteral("Text2"), QStringLiteral(".9"));
}

void KweeFormLoad(FormPort& form) { kweePicker(form).formLoad(); }

void KweeRedrawOverlays(FormPort& form)
{
    RangePicker picker = kweePicker(form);
    if (picker.pick().RangeSet != 0)
        picker.redrawMarkers();
}

void KweeMouseDown(FormPort& form, const Click& click) { kweePicker(form).mouseDown(click); }

std::optional<KweeResult> KweeFitClick(FormPort& form)
{
    RangePicker picker = kweePicker(form);
    if (!picker.ready())
        return std::nullopt;
    Session& s = S();
    RangePick& pick = picker.pick();

    picker.drawStoredMarkers();
    const rt::Integer N = rt::i16(pick.RightIdx - pick.LeftIdx + 1);
    const rt::Integer M = rt::CInt(N * 0.9);
    const rt::Integer stepp = rt::CIntText(form.controlText(QStringLiteral("Text1")));
    const double frac = rt::CDbl(form.controlText(QStringLiteral("Text2")));
    const KweeResult result = KweeVanWoerden(s, s.HJD, s.Mag, s.NumPts, pick.LeftIdx, pick.RightIdx, M, stepp, frac);
    pick.Fitted = rt::True;
    s.KweeStepUsed = stepp;
    s.KweeFractionUsed = frac;
    PublishResult(4, result.time, result.error);
    picker.showFitted();
    return result;
}

void KweeUndoClick(FormPort& form)
{
    kweePicker(form).undo();
    ClearResult(4, true);
}

} // namespace dip
