// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#include "methods/marquardt/Marquardt.h"

#include "runtime/Numeric.h"

#include <cmath>

namespace dip {

// m(x) = C + sum_{k=1..5} A_k (cos(k u) - 1), u = W (x - Xo), parameters in solver order
// a = (A1..A5, C, W, Xo). The "- 1" pins the curve to C at x = Xo whatever the amplitudes.
// Derivatives: dm/dA_k = cos(k u) - 1, dm/dC = 1, dm/dW = -S (x - Xo), dm/dXo = S W with
// S = sum_k k A_k sin(k u). The sum runs from C upwards in the order of k, as written.
void FourierModel(double x, const ParVector& a, double& y, ParVector& dyda, Integer /*na*/)
{
    const double dx = rt::fin(x - a(8));
    const double u = rt::fin(a(7) * dx);
    double sum = a(6);
    double s = 0;
    for (int k = 1; k <= 5; ++k) {
        const double ku = k * u;
        const double ck = std::cos(ku) - 1;
        dyda(k) = ck;
        sum = sum + a(k) * ck;
        s = s + k * a(k) * std::sin(ku);
    }
    y = rt::fin(sum);
    s = rt::fin(s);
    dyda(6) = 1;
    dyda(7) = rt::fin(-s * dx);
    dyda(8) = rt::fin(s * a(7));
}

} // namespace dip
