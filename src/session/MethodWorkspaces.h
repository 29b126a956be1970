// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#pragma once

// The work arrays and the persistent fit state of the methods, as values a caller owns. The
// session owns the ones its windows use (it is one of each), so that what they leave behind
// stays there for the next run exactly as before: Kwee's grid slots above the last 2M and
// SlideDiff beyond the last k are read by design. A computation elsewhere (another thread, a
// batch) brings a fresh one of its own.

#include "runtime/Array.h"
#include "runtime/Integer.h"

namespace dip {

// Kwee and van Woerden's time grid, filled on 0 .. 2M; slots above keep older values.
struct KweeGrid {
    rt::ObsArray KweeGridT;
    rt::ObsArray KweeGridMag;
};

// Sliding integrations: the chosen stretch (1..SlideN), its even grid (1..3k) and the window
// differences (1..k; index k + 1 holds what an earlier, longer run left).
struct SlidingWorkspace {
    rt::ObsArray SlideHJD;
    rt::ObsArray SlideMag;
    rt::Integer SlideN = 0;
    rt::ObsArray GridHJD;
    rt::ObsArray GridMag;
    rt::ObsArray SlideDiff;
};

// The parameter order list of the Levenberg-Marquardt fit: every parameter fitted, in order.
inline rt::Array<rt::Integer, 0, 8> allParametersInOrder()
{
    rt::Array<rt::Integer, 0, 8> list;
    for (int j = 1; j <= 8; ++j)
        list(j) = static_cast<rt::Integer>(j);
    return list;
}

// What the Fourier fit hands the solver and keeps between fits (solver order: A1..A5, C, W,
// Xo). Alamda is -1 after a load and after Undo; the per-point deviations are 0.01.
struct FourierFitState {
    rt::ObsArray FitX;
    rt::ObsArray FitY;
    rt::ObsArray FitSig; // per-point standard deviation
    rt::Array<double, 0, 8> FitA;
    rt::Array<double, 0, 8> FitAUndo; // FitA as it stood when the last fit began
    rt::Matrix<double, 0, 8> Alpha;
    rt::Matrix<double, 0, 8> Covar; // the covariance matrix after a fit
    double Chisq = 0;
    double Alamda = 0;                                           // the solver's damping; -1 starts a fit
    rt::Array<rt::Integer, 0, 8> Lista = allParametersInOrder(); // 1..8 from program start

    // The state a fit starts from on a fresh curve of n points: Alamda -1, FitSig 0.01.
    static FourierFitState fresh(rt::Integer n)
    {
        FourierFitState f;
        for (int i = 1; i <= n; ++i)
            f.FitSig(i) = 0.01;
        f.Alamda = -1;
        return f;
    }
};

} // namespace dip
