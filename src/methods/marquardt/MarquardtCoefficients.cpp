// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#include "methods/marquardt/Marquardt.h"

#include "runtime/Numeric.h"

namespace dip {

// Press et al., Numerical Recipes, mrqcof: alpha = sum_i dm/da_j dm/da_k / sig_i^2 (the
// curvature matrix, half the Hessian of chi-square), beta = sum_i (y_i - m_i) dm/da_j / sig_i^2
// and chi-square = sum_i (y_i - m_i)^2 / sig_i^2. Each sum runs over the points in order.
void MarquardtCoefficients(const FitArray& x, const FitArray& y, const FitArray& sig, Integer ndata,
                           const ParVector& a, Integer ma, const ParList& lista, Integer mfit, ParMatrix& alpha,
                           ParMatrix& beta, Integer /*nalp*/, double& chisq)
{
    for (int j = 1; j <= mfit; ++j) {
        for (int k = 1; k <= j; ++k)
            alpha(j, k) = 0;
        beta(j, 1) = 0;
    }
    chisq = 0;

    ParVector dyda;
    for (int i = 1; i <= ndata; ++i) {
        double ymod = 0;
        FourierModel(x(i), a, ymod, dyda, ma);
        const double sig2i = rt::div(1, sig(i) * sig(i));
        const double dy = y(i) - ymod;
        for (int j = 1; j <= mfit; ++j) {
            const double wt = dyda(lista(j)) * sig2i;
            for (int k = 1; k <= j; ++k)
                alpha(j, k) = alpha(j, k) + wt * dyda(lista(k));
            beta(j, 1) = beta(j, 1) + dy * wt;
        }
        chisq = chisq + dy * dy * sig2i;
    }

    // Once infinite, a sum stays infinite or undefined, so checking the totals catches every
    // overflow on the way.
    chisq = rt::fin(chisq);
    for (int j = 1; j <= mfit; ++j) {
        for (int k = 1; k <= j; ++k)
            rt::fin(alpha(j, k));
        rt::fin(beta(j, 1));
    }

    for (int j = 2; j <= mfit; ++j)
        for (int k = 1; k <= j - 1; ++k)
            alpha(k, j) = alpha(j, k);
}

} // namespace dip
