// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#pragma once

// The persistence of correlated noise, a_1 + ... + a_p of an autoregression fitted to n values,
// sets its long-run variance, var(innovations) / (1 - persistence)^2: the slow part of the
// noise, which is what moves a time of minimum. Fitted on a short series it comes out too small,
// by about (1 + 3 rho) / n for an AR(1) of coefficient rho whose mean is estimated too (Kendall
// 1954; Marriott & Pope 1954), and near 1 a little too small is much too little long-run
// variance. The series this program fits (the differences between the branches reflected about
// a time of minimum) are taken about a time fitted to the same points, which takes out their
// slowest part as an estimated mean does, so that form of the bias is the one added back.
//
// Used by Deeg's red-noise factor and by the bootstrap's autoregression of the noise.

#include <cstddef>

namespace dip {

// The persistence with its small-sample bias added back: unchanged when it is not positive,
// never more than maximumPersistence.
double unbiasedPersistence(double persistence, std::size_t n);

constexpr double maximumPersistence = 0.98;

} // namespace dip
