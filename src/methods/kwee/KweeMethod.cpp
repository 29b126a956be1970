// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#include "methods/MethodOpening.h"
#include "methods/MethodRegistry.h"
#include "methods/kwee/KweeCommands.h"
#include "runtime/Numeric.h"

#include <memory>

namespace dip {

void ReplayKwee(const ReplayRequest& request)
{
    FormMemory form;
    KweeDesignTexts(form);
    ReplayOpeningAndClicks(form, {KweeFormLoad, KweeRedrawOverlays, KweeMouseDown}, request.clicks);
    form.setControlText(QStringLiteral("Text1"), request.stepp);
    form.setControlText(QStringLiteral("Text2"), request.frac);
    KweeFitClick(form);
}

MethodResult ComputeKwee(const Curve& curve, const MethodRequest& request)
{
    return RunCompute([&](MethodResult& r) {
        // A grid of its own: the slots above 2M read as 0.
        const auto grid = std::make_unique<KweeGrid>();
        const rt::Integer N = rt::i16(request.last - request.first + 1);
        const rt::Integer M = rt::CInt(N * 0.9);
        const KweeResult k = KweeVanWoerden(*grid, curve.t, curve.m, curve.n, request.first, request.last, M,
                                            request.kweeStep, request.kweeFraction);
        r.time = k.time;
        r.error = k.error;
        r.kweeSMinus = k.sMinus;
        r.kweeSZero = k.sZero;
        r.kweeSPlus = k.sPlus;
        r.kweeA = k.A;
        r.kweeB = k.B;
        r.kweeC = k.C;
        r.kweeCentre = k.centre;
    });
}

} // namespace dip
