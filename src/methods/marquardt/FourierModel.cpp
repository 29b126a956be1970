// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#include "methods/marquardt/FourierKernel.h"
#include "methods/marquardt/Marquardt.h"

namespace dip {

// m(x) = C + sum_{k=1..5} A_k (cos(k u) - 1), u = W (x - Xo), parameters in solver order
// a = (A1..A5, C, W, Xo). The "- 1" pins the curve to C at x = Xo whatever the amplitudes.
// Derivatives: dm/dA_k = cos(k u) - 1, dm/dC = 1, dm/dW = -S (x - Xo), dm/dXo = S W with
// S = sum_k k A_k sin(k u).
void FourierModel(double x, const ParVector& a, double& y, ParVector& dyda, Integer /*na*/)
{
    double p[9];
    for (int j = 1; j <= 8; ++j)
        p[j] = a(j);
    double dx = 0;
    double cm1[6];
    double sn[6];
    fourierkernel::harmonics(x, p[7], p[8], dx, cm1, sn);
    double d[9];
    y = fourierkernel::model(p, dx, cm1, sn, d);
    for (int j = 1; j <= 8; ++j)
        dyda(j) = d[j];
}

} // namespace dip
