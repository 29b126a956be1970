// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#pragma once

// The methods as the batch timing runs them on a window: the same computations a method window
// runs on its picked range, through the table of methods.

#include "analysis/BatchTiming.h"
#include "methods/MethodRegistry.h"
#include "session/Curve.h"

#include <optional>

namespace dip {

// The methods the batch can be asked for: 1, 3, 4, 5, 6 (the tracing paper wants a fold chosen
// by eye).
bool isBatchMethod(int method);

// What a method is given for one window: the points (a session holds at most 1000) and the
// request a user would make in its window.
//   1 parabola  the whole range
//   3 chords    the two ranges of chordRanges; none when a branch has no steep part
//   4 Kwee      the central 555 points at most: its grid of 2M + 1 points, M = CInt(0.9 N),
//               holds no more (M = 500 for N = 555)
//   5 Fourier   the whole range, the start values from the data (fourierStartValues), every
//               point's deviation 0.01 as in the window
//   6 sliding   the central 998 points at most (its grid of 3 (Int(N / 3) + 1) points must fit
//               in 1000); the method picks its own stretch about the deepest point
// why says what is missing when there is no request.
struct BatchMethodCall {
    CurveData curve;
    MethodRequest request;
    int points = 0; // the points the method works on (the chords: both ranges)
    QString why;
};
std::optional<BatchMethodCall> batchMethodCall(const BatchWindow& window, int method);

// Runs method on the window through the table of methods' compute, and, when bootstrap asks for
// resamples, the bootstrap of its result on this thread. The error is the
// method's own estimate, as a size (the parabola's carries the sign of its time). A runtime
// error of the method fails the row; the message boxes it would have shown are passed on.
MethodOutcome runBatchMethod(const BatchWindow& window, int method, const BatchBootstrap& bootstrap = {});

} // namespace dip
