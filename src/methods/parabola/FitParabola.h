// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#pragma once

// The parabolic fit: magnitude = a0 + b t + c t^2 by least squares on the picked points, the
// vertex as the time of minimum, and an error estimate from the errors of b and c.

#include "plotting/FormPort.h"
#include "runtime/Array.h"
#include "runtime/Integer.h"

namespace dip {

struct ParabolaFitResult {
    double time = 0; // -b / (2c)
    double rms = 0;  // sqrt(SSR / (n - 3))
    double a0 = 0;
    double b = 0;
    double c = 0;
    double sigB = 0;
    double sigC = 0;
};

// Fits t(first..last), y(first..last). The normal equations are solved by cofactors and
// Cramer's rule, with no check of c or of the determinant: a maximum is reported like a
// minimum, and a singular set of points fails in the division. count is the number of used
// points, which the fit does not need.
ParabolaFitResult FitParabola(const rt::ObsArray& t, const rt::ObsArray& y, rt::Integer count, rt::Integer first,
                              rt::Integer last);

// The error shown for the fit: E = T sqrt((sigB / b)^2 + (sigC / c)^2) RMS. The RMS enters a
// second time and the relative error is of the absolute time T (its sign follows T); both
// are kept so that the error matches the established results of this method.
double ParabolaError(const ParabolaFitResult& fit);

// Draws the fitted parabola from the session's coefficients over the whole time axis: 101
// samples, blue strictly between the picked times and grey outside, each segment a thick
// stroke of 21 line moves. Clipped to the plot box.
void PlotParabolaFit(Canvas& canvas);

} // namespace dip
