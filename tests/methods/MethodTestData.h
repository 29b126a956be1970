// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#pragma once

// Light curves for the method tests: as points, and as the arrays the module procedures take.

#include "plotting/PlotBox.h"
#include "runtime/Array.h"
#include "runtime/Integer.h"

#include <utility>
#include <vector>

namespace dip::test {

using Points = std::vector<std::pair<double, double>>;

// Times and magnitudes in 1..n, as HJD and Mag hold them.
struct Curve {
    rt::ObsArray t;
    rt::ObsArray m;
    rt::Integer n = 0;
};

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

// The plot box of a method window on a form of 9000 x 6000 twips.
inline void setMethodBox() { SetStandardPlotBox(9000, 6000); }

} // namespace dip::test
