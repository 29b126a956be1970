// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#pragma once

// Sliding integrations: the time about which the light curve has equal area on both sides.
// The main window's sixth method button picks a stretch of the used points around the deepest
// one, resamples it onto an even time grid, slides two adjacent integration windows of equal
// width along the grid and refines the most balanced position with a straight-line fit.
// Session arrays: SlideHJD/SlideMag (1..SlideN), GridHJD/GridMag (1..3k), SlideDiff (1..k).

#include "runtime/Array.h"
#include "runtime/Integer.h"

namespace dip {

// Least-squares line y = a + b x over the indexes first..last (N = last - first + 1 points),
// with the standard errors of a and b, s sqrt(Sxx / D) and s sqrt(N / D) where
// s = sqrt(SSR / (N - 1)) and D = N Sxx - Sx^2; they are 0 unless D > 0. A D of 0 raises the
// runtime's division error in a or b; the standard errors never raise.
void LineFit(const rt::ObsArray& x, const rt::ObsArray& y, rt::Integer first, rt::Integer last, double& a, double& b,
             double& sigmaA, double& sigmaB, double& ssr);

// Resamples the n observations t, m onto the even grid GridHJD/GridMag of gridCount = 3k points
// with step delta = (t(n) - t(1)) / 3k, k = Int(n / 3) + 1. The grid stops one step short of
// t(n), deliberately.
void ResampleEven(const rt::ObsArray& t, const rt::ObsArray& m, rt::Integer n, rt::Integer& k, rt::Integer& gridCount,
                  double& delta);

// Time of minimum T and estimated error E of the n observations t, m. Leaves the bounds of the
// fit window, in grid indexes, in RangeFirst and RangeLast.
void SlidingIntegrations(const rt::ObsArray& t, const rt::ObsArray& m, rt::Integer n, double& T, double& E);

// What one press of the sixth method button did.
struct SlidingOutcome {
    bool published = false; // Text6, Text12 and Check6 were written
    double time = 0;        // HJDOffset + T
    double error = 0;
    int trappedError = 0; // the runtime error the button's trap caught, 0 when none
};

// The sixth method button: chooses the stretch (SlideHJD, SlideMag, SlideN), runs
// SlidingIntegrations and publishes T and E as method 6. Any runtime failure on the way is
// trapped: the message box shows ErrorText of its number and nothing more is written. Does
// nothing while no file is loaded.
SlidingOutcome RunSlidingIntegrations();

} // namespace dip
