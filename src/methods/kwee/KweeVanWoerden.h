// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#pragma once

// The reflection method of Kwee & van Woerden (1956, BAN 12, 327): the picked magnitudes are
// interpolated onto an equally spaced time grid, the sums of squared differences of grid
// points reflected about three trial times are fitted by a parabola, whose vertex is the time
// of minimum and whose curvature gives the error.

#include "runtime/Array.h"
#include "runtime/Integer.h"
#include "session/MethodWorkspaces.h"

namespace dip {

// Fills the grid's KweeGridT / KweeGridMag on 0 .. 2M between t(first) and t(last). Each
// grid time is bracketed by searching all used points from the last one down (not only the
// picked range) for the first t(j) <= grid time, then interpolated between points j and j + 1.
void KweeInterpolate(KweeGrid& grid, const rt::ObsArray& t, const rt::ObsArray& m, rt::Integer count, rt::Integer first,
                     rt::Integer last, rt::Integer M);

struct KweeResult {
    double time = 0;
    double error = 0;
    int completion = 0; // 1 when done
    // How the search went.
    rt::Integer startIndex = 0; // grid index of the first largest magnitude
    rt::Integer centre = 0;     // the centre c of the three trial times
    int shifts = 0;             // the shift counter at the end
    int passes = 0;             // how many times the three sums were formed
    bool bracketed = false;     // ended with S- > S0 < S+
    bool stalled = false;       // ended because a pass moved nothing without bracketing
    double sMinus = 0, sZero = 0, sPlus = 0;
    double A = 0, B = 0, C = 0;
};

// Runs the method on t(first..last), m(first..last) with the grid half-size M, the trial step
// s (grid steps) and the fraction f of the distance to the nearer grid end used for the sums,
// on the caller's grid: the sums read its slots above 2M, which hold what earlier runs on the
// same grid left there (the session's grid for the window, a fresh one elsewhere).
KweeResult KweeVanWoerden(KweeGrid& grid, const rt::ObsArray& t, const rt::ObsArray& m, rt::Integer count,
                          rt::Integer first, rt::Integer last, rt::Integer M, rt::Integer s, double f);

} // namespace dip
