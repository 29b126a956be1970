// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#pragma once

// Whether the noise of a light curve is correlated, judged on its baseline beside the dip.
//
// Within the dip every model the bootstrap can fit (a parabola, a cosine series, a smoother)
// bends with slow noise and takes most of it up; on a short curve what is left looks white, and
// the error comes out too small. Beside the dip the light is nearly a straight line: a line fitted
// to each side leaves the slow noise in the residuals, where their lag-1 autocorrelation shows
// it. The baseline is the points within the dip's own width of each end of it; a side is fitted
// with fewer than five points not at all, and a pair of neighbours more than three median spacings
// apart (across a gap) is not counted. A side whose line rises or falls by more than a quarter
// of the dip's depth (the range of the magnitudes within it) is left out: the ranges picked did not
// reach the baseline there, and the line through a branch of the dip would leave its curvature
// in the residuals, which looks like slow noise.
//
// The test: the residuals' lag-1 autocorrelation r over the pairs, their variance per degree of
// freedom left by the lines, plus 1 / dof for the part a fitted line takes from white noise (on a
// side of k points it takes about 2 / k, so on a short side white noise is called correlated less
// often than the level says), against 1.645 / sqrt(pairs), the one-sided 5 % level of white noise.
// At least eight pairs are needed to judge. On simulated eclipses with a baseline of 0.1 to 1.5
// times the dip's half-duration on each side (30 to 1000 points, noise correlated over 2 to 8
// spacings), it called white noise correlated on 15 of 273 it judged and correlated noise on 178
// of 281.

#include "methods/MethodRegistry.h"
#include "session/Curve.h"

#include <optional>
#include <vector>

namespace dip {

struct BaselineNoise {
    bool judged = false;     // the baseline had pairs enough
    bool correlated = false; // and it showed the noise correlated
    double lag1 = 0;         // r above, corrected for the lines
    int pairs = 0;
};

BaselineNoise JudgeBaselineNoise(const Curve& curve, double dipStart, double dipEnd);

// The dip's extent in time: from the earliest to the latest point of the ranges the requests
// picked (both of the chords'; a range outside 1..n or empty is left out, and the sliding
// integrations pick none). None when no range is picked.
struct TimeSpan {
    double start = 0;
    double end = 0;
};
std::optional<TimeSpan> DipExtent(const Curve& curve, const std::vector<MethodRequest>& requests);

} // namespace dip
