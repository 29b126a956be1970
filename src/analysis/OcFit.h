// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#pragma once

// The straight line through an O - C diagram: O - C = a + b E by weighted least squares, which
// corrects the ephemeris to T0 + a and P + b.

#include "analysis/Ephemeris.h"

#include <optional>
#include <vector>

namespace dip {

struct OcFitPoint {
    double cycle = 0;
    double oc = 0;    // days
    double error = 0; // days; zero, negative or not finite when not known
};

struct EphemerisFit {
    double intercept = 0; // a, days
    double slope = 0;     // b, days per cycle
    double t0 = 0;        // corrected epoch T0 + a
    double period = 0;    // corrected period P + b
    // Errors of T0 and P: the formal errors scaled by sqrt(chi2 / dof), so that they follow the
    // scatter about the line; the weights only say how the points compare. Zero when dof is 0.
    double sigmaT0 = 0;
    double sigmaPeriod = 0;
    double chi2 = 0; // sum of w r^2 (w = 1 when unweighted)
    int dof = 0;     // points - 2
    int count = 0;
    bool weighted = false; // every point had an error, weights 1 / error^2
    double ocAt(double cycle) const { return intercept + slope * cycle; }
};

// Fits the points: weights 1 / error^2 when every point has a positive finite error, equal
// weights otherwise. No fit (nullopt) with fewer than two points or when all share one cycle.
std::optional<EphemerisFit> fitEphemeris(const Ephemeris& ephemeris, const std::vector<OcFitPoint>& points);

} // namespace dip
