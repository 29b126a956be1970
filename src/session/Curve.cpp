// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#include "session/Curve.h"

#include "runtime/Numeric.h"
#include "session/Session.h"

namespace dip {

CurveData CurveData::from(const std::vector<double>& times, const std::vector<double>& mags)
{
    CurveData c;
    const std::size_t n = times.size() < mags.size() ? times.size() : mags.size();
    for (std::size_t i = 0; i < n; ++i) {
        c.t(static_cast<long long>(i) + 1) = times[i];
        c.m(static_cast<long long>(i) + 1) = mags[i];
    }
    c.n = rt::i16(static_cast<long long>(n));
    return c;
}

Curve SessionCurve()
{
    const Session& s = S();
    return Curve{s.HJD, s.Mag, s.NumPts};
}

} // namespace dip
