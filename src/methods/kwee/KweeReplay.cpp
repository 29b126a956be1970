// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#include "app/Replay.h"

#include "methods/kwee/KweeCommands.h"
#include "plotting/MethodPlot.h"
#include "session/Session.h"

namespace dip {

ReplayResult ReplayKwee(const std::vector<double>& clicks, const QString& stepp, const QString& frac)
{
    Session& s = S();
    FormMemory form;
    KweeDesignTexts(form);
    // Method button 4 on the first opening of frmPlott4.
    s.RangeFirst = 1;
    s.RangeLast = s.NumPts;
    KweeFormLoad(form);
    DrawMethodPlot(form);
    KweeRedrawOverlays(form);
    for (const double t : clicks)
        KweeMouseDown(form, Click::atTime(t));
    form.setControlText(QStringLiteral("Text1"), stepp);
    form.setControlText(QStringLiteral("Text2"), frac);
    const std::optional<KweeResult> result = KweeFitClick(form);
    if (!result)
        return {};
    ReplayResult r;
    r.published = true;
    r.time = s.HJDOffset + result->time;
    r.error = result->error;
    return r;
}

} // namespace dip
