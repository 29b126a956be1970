// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#pragma once

// The bootstrap error of one method's result (runBootstrap in Bootstrap.h, wired to the table
// of methods): the method's own compute is run again on resampled copies of the curve with the
// user's range and parameters.
//
// What is resampled, and about which model, per row:
//   1 parabola      the picked range; the fitted parabola itself (3 parameters), the same least
//                   squares computed about the range's mean time so that large times keep their
//                   digits
//   3 chords        from the first to the last of the four picked indexes; the local smoother
//                   of the points folded about the method's time
//   4 Kwee          the picked range; the local smoother of the points folded about the time
//   5 Fourier       the picked range; the fitted cosine series (8 parameters). Every resample's
//                   fit starts from the user's start values, as the fit on the curve did: where
//                   a fit stops depends on the path its damped steps take from there, and that
//                   part of the spread is the user's too
//   6 sliding       the stretch about the deepest point the method chooses on the curve itself;
//                   the local smoother of the points folded about the time. Each resample
//                   chooses its own stretch again, as the method does
// Every model is symmetric about the method's time (a parabola about its vertex, the cosine
// series about Xo, the folded smoother by construction), and the error is the standard deviation
// of the replicates' times (see Bootstrap.h). The noise is also measured on all the used points,
// as the differences between the branches reflected about the method's time; where it is
// correlated beyond what the range's residuals show, the replicates' noise is drawn from the
// autoregression of those differences (the sieve) instead of the residuals in blocks.
// The tracing paper (row 2) has no fit to repeat: its error stays the fixed scroll step.
// A time beyond the first and last times of what is resampled (a parabola through one branch,
// sliding integrations that slid off the dip across a gap) gets no error: its replicates repeat
// the same mistake and would agree on it closely.

#include "analysis/Bootstrap.h"
#include "methods/MethodRegistry.h"
#include "session/Curve.h"

#include <atomic>
#include <cstdint>
#include <functional>
#include <optional>

namespace dip {

struct MethodBootstrapOptions {
    int replicates = 500;
    std::uint64_t seed = 1;
    int threads = 0;                           // 0: every core; the batch passes 1 (it runs one eclipse per thread)
    bool correlatedNoise = false;              // the observer knows the noise is correlated (BootstrapSetup)
    std::optional<NoiseCovariance> knownNoise; // the noise's own covariance (BootstrapSetup)
    // The curve's baseline beside the dip showed the noise correlated (BaselineNoise.h): it is
    // taken as correlated, as the observer's word takes it, unless that word or a given noise is there.
    bool baselineCorrelated = false;
};

// Re-runs row's compute on `replicates` resampled copies of curve (the magnitudes of the
// request's range(s) resampled about the method's own fitted curve where it has one,
// otherwise a smoothing), with the same request; fitted is the method's result on the curve
// itself. Never throws; failures are counted in the result.
BootstrapResult BootstrapMethod(int row, const Curve& curve, const MethodRequest& request, const MethodResult& fitted,
                                const MethodBootstrapOptions& options,
                                const std::function<void(int done, int total)>& progress = {},
                                const std::atomic<bool>* cancel = nullptr);

// Whether row k has a bootstrap (1, 3, 4, 5, 6).
bool HasBootstrap(int row);

// The error to believe of row's bootstrap about the method's time; NaN without a valid bootstrap.
// For the bisectors of chords it is the error with the replicates' shift from the time added in
// quadrature (BootstrapResult::errorWithShift), for the other methods the error itself. Each
// chord ends on a crossing read by a straight line between the two points about it, and that
// line cuts the curved branch: the crossing is off by an amount the sampling sets, not the
// noise, and differently on the two branches, so the bisector moves. Every replicate has the
// same sampling and repeats it: the replicates' spread does not show it, their mean does. On
// simulated eclipses the shift came to 0.85 (white noise) and 0.62 (correlated) of the spread,
// root mean square, and followed the time's true offset (correlation 0.62 and 0.44); with it
// added, the chords' pulls came to 0.94 and 1.18 instead of 1.21 and 1.40. For the other methods
// the shift is mostly the replicates' own scatter (correlation 0.04 to 0.48, 0.15 to 0.59 of the
// spread), and adding it made their errors too large (Kwee and van Woerden's on white noise
// 0.71, the sliding integrations' 0.75).
double AdvisedBootstrapError(int row, const BootstrapResult& bootstrap, double time);

} // namespace dip
