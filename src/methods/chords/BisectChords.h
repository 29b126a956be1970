// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#pragma once

// The bisectors of chords: from every point of a stretch of the descending branch (Idx1..Idx2)
// and of the ascending branch (Idx3..Idx4) a horizontal chord is drawn across to the other
// branch; the time of minimum is the mean of the chords' midpoints.

#include "runtime/Array.h"
#include "runtime/Integer.h"

namespace dip {

struct ChordsResult {
    double time = 0;  // mean of the midpoints
    double error = 0; // their sample standard deviation
    int midpoints = 0;
};

// The partner of left point i: the first point from the end at least as faint; the chord's
// crossing lies between it and the point after it. Of right point i: the first point from the
// start at least as faint; the crossing lies between the point before it and it. Point i is
// as faint as itself, so for i in 1..n the search stops within 1..n.
long long LeftPartner(const rt::ObsArray& m, rt::Integer n, long long i);
long long RightPartner(const rt::ObsArray& m, long long i);

// The partner of a left point is searched from the end of the curve, of a right point from
// its start, over the whole curve; a point in both ranges gives two midpoints. The error is
// the scatter of one chord's midpoint, not the standard error of their mean, and stays so.
ChordsResult BisectChords(const rt::ObsArray& t, const rt::ObsArray& m, rt::Integer n, rt::Integer Idx1,
                          rt::Integer Idx2, rt::Integer Idx3, rt::Integer Idx4);

} // namespace dip
