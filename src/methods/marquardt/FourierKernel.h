// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#pragma once

// The arithmetic of the Fourier model, shared by FourierModel and the coefficient sums, on
// plain vectors indexed 1..8 in solver order (A1..A5, C, W, Xo). The cosines and sines depend
// only on u = W (x - Xo); they are computed apart so that a caller can keep them while W, Xo
// and x stay the same.

#include "runtime/Numeric.h"

#include <cmath>
#include <cstring>

namespace dip::fourierkernel {

// The overflow check with its common case inline: a value that is not finite raises
// "Overflow" (6) through rt::fin.
inline double finite(double v) { return std::isfinite(v) ? v : rt::fin(v); }

// Whether two doubles are the same bit for bit.
inline bool sameBits(double a, double b) { return std::memcmp(&a, &b, sizeof a) == 0; }

// cos(k u) - 1 and sin(k u) for k = 1..5 (index 0 unused), with u = W (x - Xo).
inline void harmonics(double x, double w, double xo, double& dx, double cm1[6], double sn[6])
{
    dx = finite(x - xo);
    const double u = finite(w * dx);
    for (int k = 1; k <= 5; ++k) {
        const double ku = k * u;
        cm1[k] = std::cos(ku) - 1;
        sn[k] = std::sin(ku);
    }
}

// y = C + sum_k A_k (cos(k u) - 1), summed from C upwards in the order of k; dyda(1..8).
inline double model(const double a[9], double dx, const double cm1[6], const double sn[6], double dyda[9])
{
    double sum = a[6];
    double s = 0;
    for (int k = 1; k <= 5; ++k) {
        dyda[k] = cm1[k];
        sum = sum + a[k] * cm1[k];
        s = s + k * a[k] * sn[k];
    }
    const double y = finite(sum);
    s = finite(s);
    dyda[6] = 1;
    dyda[7] = finite(-s * dx);
    dyda[8] = finite(s * a[7]);
    return y;
}

} // namespace dip::fourierkernel
