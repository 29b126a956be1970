// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#include "app/Replay.h"

#include "methods/chords/ChordsCommands.h"
#include "plotting/MethodPlot.h"
#include "session/Session.h"

namespace dip {

ReplayResult ReplayChords(const std::vector<double>& clicks)
{
    Session& s = S();
    FormMemory form;
    // Method button 3 on the first opening of frmPlott3.
    s.RangeFirst = 1;
    s.RangeLast = s.NumPts;
    ChordsFormLoad(form);
    DrawMethodPlot(form);
    ChordsRedrawOverlays(form);
    for (const double t : clicks)
        ChordsMouseDown(form, Click::atTime(t));
    const std::optional<ChordsResult> result = ChordsBisectClick(form);
    if (!result)
        return {};
    ReplayResult r;
    r.published = true;
    r.time = s.HJDOffset + result->time;
    r.error = result->error;
    return r;
}

} // namespace dip
