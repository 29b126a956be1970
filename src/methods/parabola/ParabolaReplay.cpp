// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#include "app/Replay.h"

#include "methods/parabola/ParabolaCommands.h"
#include "plotting/MethodPlot.h"
#include "session/Session.h"

namespace dip {

ReplayResult ReplayParabola(const std::vector<double>& clicks)
{
    Session& s = S();
    FormMemory form;
    // Method button 1 on the first opening of frmPlott1.
    s.RangeFirst = 1;
    s.RangeLast = s.NumPts;
    ParabolaFormLoad(form);
    DrawMethodPlot(form);
    ParabolaRedrawOverlays(form);
    for (const double t : clicks)
        ParabolaMouseDown(form, Click::atTime(t));
    const std::optional<ParabolaFitResult> fit = ParabolaFitClick(form);
    if (!fit)
        return {};
    ReplayResult r;
    r.published = true;
    r.time = s.HJDOffset + fit->time;
    r.error = ParabolaError(*fit);
    return r;
}

} // namespace dip
