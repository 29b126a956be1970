// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#pragma once

// The methods as the batch timing runs them on a window: the same computations a method window
// runs on its picked range.

#include "analysis/BatchTiming.h"

namespace dip {

// The methods the batch can be asked for: 1, 3, 4, 5, 6 (the tracing paper wants a fold chosen
// by eye).
bool isBatchMethod(int method);

// Runs method on the whole range of the window. The parabolic fit runs through FitParabola and
// its own error estimate; the others answer "not yet".
MethodOutcome runBatchMethod(const BatchWindow& window, int method);

} // namespace dip
