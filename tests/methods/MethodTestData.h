// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#pragma once

// Light curves for the method tests: as points, and as the arrays the module procedures take.

#include "plotting/PlotBox.h"
#include "runtime/Array.h"
#include "runtime/Integer.h"
#include "session/Curve.h"

#include <utility>
#include <vector>

namespace dip::test {

using Points = std::vector<std::pair<double, double>>;

// Times and magnitudes in 1..n, as HJD and Mag hold them.
using Curve = dip::CurveData;

inline Curve toCurve(const Points& pts)
{
    Curve c;
    for (const auto& [t, m] : pts) {
        c.n = rt::i16(c.n + 1);
        c.t(c.n) = t;
        c.m(c.n) = m;
    }
    return c;
}

// The plot box of a method window on a form of 9000 x 6000 twips, given to form (and, as
// every drawing does, to the session's shared box).
inline void setMethodBox(Canvas& form) { SetStandardPlotBox(form, 9000, 6000); }
// The same box as the session's shared box only, as after drawing a method window.
inline void setMethodBox()
{
    FormMemory window;
    setMethodBox(window);
}

} // namespace dip::test
