// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#include "methods/MethodReplay.h"

#include "plotting/MethodPlot.h"
#include "session/Session.h"

namespace dip {

void ReplayOpeningAndClicks(FormPort& form, const MethodProcedures& procedures, const std::vector<double>& clicks)
{
    Session& s = S();
    s.RangeFirst = 1;
    s.RangeLast = s.NumPts;
    procedures.formLoad(form);
    DrawMethodPlot(form);
    procedures.redrawOverlays(form);
    for (const double t : clicks)
        procedures.mouseDown(form, Click::atTime(t));
}

ReplayResult PublishedResult(double time, double error)
{
    ReplayResult r;
    r.published = true;
    r.time = S().HJDOffset + time;
    r.error = error;
    return r;
}

} // namespace dip
