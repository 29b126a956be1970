// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#include "analysis/BatchMethods.h"

#include "methods/parabola/FitParabola.h"
#include "runtime/Array.h"

#include <cmath>
#include <memory>

namespace dip {

namespace {

// The window's range as a session's arrays hold it: points 1 .. n.
struct RangeArrays {
    rt::ObsArray t;
    rt::ObsArray m;
};

std::unique_ptr<RangeArrays> toArrays(const BatchWindow& window)
{
    auto a = std::make_unique<RangeArrays>();
    for (std::size_t i = 0; i < window.t.size(); ++i) {
        a->t(static_cast<long long>(i) + 1) = window.t[i];
        a->m(static_cast<long long>(i) + 1) = window.m[i];
    }
    return a;
}

MethodOutcome parabola(const BatchWindow& window)
{
    const std::unique_ptr<RangeArrays> a = toArrays(window);
    const rt::Integer n = rt::i16(static_cast<long long>(window.t.size()));
    const ParabolaFitResult fit = FitParabola(a->t, a->m, n, 1, n);
    MethodOutcome out;
    out.status = MethodOutcome::Status::Done;
    out.time = fit.time;
    // The method's error is relative to the time as fitted, so its sign follows that time: the
    // batch reports its size.
    out.error = std::abs(ParabolaError(fit));
    out.points = n;
    return out;
}

} // namespace

bool isBatchMethod(int method) { return method == 1 || (method >= 3 && method <= 6); }

MethodOutcome runBatchMethod(const BatchWindow& window, int method)
{
    if (method == 1)
        return parabola(window);
    MethodOutcome out;
    out.status = MethodOutcome::Status::NotYet;
    out.note = QStringLiteral("method %1 is not wired into the batch timing yet").arg(method);
    return out;
}

} // namespace dip
