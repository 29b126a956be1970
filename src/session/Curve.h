// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#pragma once

// The points a method works on. Curve is a view of two whole observation arrays (index 0..1000)
// and the count of used points: the methods deliberately read entries above n (Kwee's element
// just past the used points, the chords' empty entry beyond the last point), so a view of
// anything shorter would change their results. CurveData owns its arrays, for a curve that is
// not the session's (another thread, a resampled copy, one eclipse of a long light curve).

#include "runtime/Array.h"
#include "runtime/Integer.h"

#include <vector>

namespace dip {

struct Curve {
    const rt::ObsArray& t; // times, 1..n
    const rt::ObsArray& m; // signed magnitudes, 1..n
    rt::Integer n;
};

struct CurveData {
    rt::ObsArray t;
    rt::ObsArray m;
    rt::Integer n = 0;

    Curve view() const { return Curve{t, m, n}; }

    // Points 1..times.size() from two equally long vectors; more than 1000 raise 9.
    static CurveData from(const std::vector<double>& times, const std::vector<double>& mags);
};

// The session's used points HJD/Mag 1..NumPts.
Curve SessionCurve();

} // namespace dip
