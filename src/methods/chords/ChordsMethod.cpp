// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#include "methods/MethodOpening.h"
#include "methods/MethodRegistry.h"
#include "methods/chords/ChordsCommands.h"

namespace dip {

void ReplayChords(const ReplayRequest& request)
{
    FormMemory form;
    ReplayOpeningAndClicks(form, {ChordsFormLoad, ChordsRedrawOverlays, ChordsMouseDown}, request.clicks);
    ChordsBisectClick(form);
}

MethodResult ComputeChords(const Curve& curve, const MethodRequest& request)
{
    return RunCompute([&](MethodResult& r) {
        const ChordsResult c =
            BisectChords(curve.t, curve.m, curve.n, request.first, request.last, request.first2, request.last2);
        r.time = c.time;
        r.error = c.error;
        r.chordMidpoints = c.midpoints;
    });
}

} // namespace dip
