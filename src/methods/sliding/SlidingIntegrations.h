// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#pragma once

// Sliding integrations: the time about which the light curve has equal area on both sides.
// The main window's sixth method button picks a stretch of the used points around the deepest
// one, resamples it onto an even time grid, slides two adjacent integration windows of equal
// width along the grid and refines the most balanced position with a straight-line fit.
// Work arrays (a SlidingWorkspace): SlideHJD/SlideMag (1..SlideN), GridHJD/GridMag (1..3k),
// SlideDiff (1..k). The window's are the session's; a computation elsewhere brings its own.

#include "runtime/Array.h"
#include "runtime/Integer.h"
#include "session/Curve.h"
#include "session/MethodWorkspaces.h"

namespace dip {

// Least-squares line y = a + b x over the indexes first..last (N = last - first + 1 points),
// with the standard errors of a and b, s sqrt(Sxx / D) and s sqrt(N / D) where
// s = sqrt(SSR / (N - 1)) and D = N Sxx - Sx^2; they are 0 unless D > 0. A D of 0 raises the
// runtime's division error in a or b; the standard errors never raise.
void LineFit(const rt::ObsArray& x, const rt::ObsArray& y, rt::Integer first, rt::Integer last, double& a, double& b,
             double& sigmaA, double& sigmaB, double& ssr);

// Resamples the n observations t, m onto the even grid w.GridHJD/w.GridMag of gridCount = 3k points
// with step delta = (t(n) - t(1)) / 3k, k = Int(n / 3) + 1. The grid stops one step short of
// t(n), deliberately.
void ResampleEven(SlidingWorkspace& w, const rt::ObsArray& t, const rt::ObsArray& m, rt::Integer n, rt::Integer& k,
                  rt::Integer& gridCount, double& delta);

// The bounds of the line fit's window, in grid indexes.
struct SlidingWindow {
    bool set = false; // the bounds were found (before the line fit, which may still fail)
    rt::Integer first = 0;
    rt::Integer last = 0;
};

// Time of minimum T and estimated error E of the n observations t, m on the workspace w. The
// bounds of the fit window go into window as soon as they are known, so that a failing line
// fit still leaves them (the session adapter copies them into RangeFirst and RangeLast).
void SlidingIntegrations(SlidingWorkspace& w, const rt::ObsArray& t, const rt::ObsArray& m, rt::Integer n, double& T,
                         double& E, SlidingWindow& window);

// The stretch of the curve around its deepest point (deepest = the index of the first
// strictly largest magnitude), copied into w.SlideHJD / w.SlideMag / w.SlideN: 2 (n - deepest)
// points ending one before the last point when the deepest lies near the end, the first
// 2 deepest points when it lies near the start, otherwise all of them.
void ChooseSlidingStretch(SlidingWorkspace& w, const Curve& curve, rt::Integer deepest);

// The index of the deepest point as the extents find it: the first magnitude strictly above
// all before it, starting from -99; 0 when none is above -99.
rt::Integer DeepestPoint(const Curve& curve);

// What one press of the sixth method button did.
struct SlidingOutcome {
    bool published = false; // Text6, Text12 and Check6 were written
    double time = 0;        // HJDOffset + T
    double error = 0;
    int trappedError = 0; // the runtime error the button's trap caught, 0 when none
};

// The sixth method button: chooses the stretch (SlideHJD, SlideMag, SlideN), runs
// SlidingIntegrations on the session's workspace, leaves the fit window in RangeFirst and
// RangeLast, and publishes T and E as method 6. Any runtime failure on the way is
// trapped: the message box shows ErrorText of its number and nothing more is written. Does
// nothing while no file is loaded.
SlidingOutcome RunSlidingIntegrations();

} // namespace dip
