// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#include "methods/MethodOpening.h"
#include "methods/MethodRegistry.h"
#include "methods/parabola/ParabolaCommands.h"

namespace dip {

void ReplayParabola(const ReplayRequest& request)
{
    FormMemory form;
    ReplayOpeningAndClicks(form, {ParabolaFormLoad, ParabolaRedrawOverlays, ParabolaMouseDown}, request.clicks);
    ParabolaFitClick(form);
}

MethodResult ComputeParabola(const Curve& curve, const MethodRequest& request)
{
    return RunCompute([&](MethodResult& r) {
        const ParabolaFitResult fit = FitParabola(curve.t, curve.m, curve.n, request.first, request.last);
        r.time = fit.time;
        r.error = ParabolaError(fit);
        r.parabolaA0 = fit.a0;
        r.parabolaB = fit.b;
        r.parabolaC = fit.c;
        r.parabolaSigB = fit.sigB;
        r.parabolaSigC = fit.sigC;
        r.parabolaRms = fit.rms;
    });
}

} // namespace dip
