// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#pragma once

// The weighted mean of times of minimum and its standard error, as numbers: weights 1 / e^2,
//     mean = sum(t / e^2) / sum(1 / e^2),   standard error = 1 / sqrt(sum(1 / e^2)).
// The times are summed as offsets from the first one, so days of seven digits keep their
// fractions. A pair whose error is not a positive number (or whose time is not a number) would
// have no finite weight and is left out.

#include <utility>
#include <vector>

namespace dip {

struct WeightedMean {
    bool valid = false; // at least one pair used
    double mean = 0;
    double standardError = 0;
    int used = 0;
    // sum((t - mean)^2 / e^2) / (used - 1): near 1 when the times scatter as their errors say;
    // 0 with fewer than two pairs.
    double reducedChiSquare = 0;
};

// pairs: (time, error).
WeightedMean weightedMean(const std::vector<std::pair<double, double>>& pairs);

} // namespace dip
