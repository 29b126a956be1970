// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#include "methods/marquardt/FourierKernel.h"
#include "methods/marquardt/MarquardtSolver.h"

#include <cmath>
#include <cstring>

namespace dip {

namespace {

using fourierkernel::finite;

// Row j of alpha holds alpha(j, k) at column k - 1 for k = 1..j; rows 1 to 4 are four wide,
// rows 5 to 8 eight wide, so that every row is a whole number of vector lanes. The lanes past
// the diagonal (and the rows and lanes past mfit) are worked too and never read.
struct Sums {
    alignas(32) double alpha[8][8] = {};
    alignas(32) double beta[8] = {};
    double chisq = 0;
};

// One pass over the points. Each sum is its own accumulator running over i = 1..n in order,
// and each lane of a vector operation is the same IEEE multiplication or addition as the plain
// loop's, so the sums come out bit for bit as the plain loops give them.
template <class Evaluator>
void accumulate(const Evaluator& evaluate, Sums& sums, const double* y, const double* sig, int n, const double a[9],
                const int li[9], int mfit)
{
    // The sums are local while they run, so that they can stay in registers.
    alignas(32) double alpha[8][8] = {};
    alignas(32) double beta[8] = {};
    double chisq = 0;
    double dyda[9] = {};
    for (int i = 1; i <= n; ++i) {
        const double ymod = evaluate(i, a, dyda);
        const double sig2 = finite(sig[i] * sig[i]);
        // 1 / sig^2 with the checked division's common case inline: the same quotient, and a
        // zero or overflowing one still raises through rt::div.
        const double quotient = 1 / sig2;
        const double sig2i = sig2 != 0 && std::isfinite(quotient) ? quotient : rt::div(1, sig2);
        const double dy = y[i] - ymod;

        // The derivatives in lista order, and the weights wt(j) = dyda(lista(j)) / sig_i^2.
        alignas(32) double d[8];
        for (int j = 0; j < 8; ++j)
            d[j] = j < mfit ? dyda[li[j + 1]] : 0.0;
        alignas(32) double wt[8];
        for (int j = 0; j < 8; ++j)
            wt[j] = d[j] * sig2i;

        for (int j = 0; j < 4; ++j)
            for (int k = 0; k < 4; ++k)
                alpha[j][k] = alpha[j][k] + wt[j] * d[k];
        for (int j = 4; j < 8; ++j)
            for (int k = 0; k < 8; ++k)
                alpha[j][k] = alpha[j][k] + wt[j] * d[k];
        for (int j = 0; j < 8; ++j)
            beta[j] = beta[j] + dy * wt[j];
        chisq = chisq + dy * dy * sig2i;
    }
    std::memcpy(sums.alpha, alpha, sizeof alpha);
    std::memcpy(sums.beta, beta, sizeof beta);
    sums.chisq = chisq;
}

} // namespace

FourierModelT::FourierModelT() : m_h(std::make_unique<Harmonics>()) {}
FourierModelT::~FourierModelT() = default;
FourierModelT::FourierModelT(FourierModelT&&) noexcept = default;
FourierModelT& FourierModelT::operator=(FourierModelT&&) noexcept = default;

// Press et al., Numerical Recipes, mrqcof: alpha = sum_i dm/da_j dm/da_k / sig_i^2 (the
// curvature matrix, half the Hessian of chi-square), beta = sum_i (y_i - m_i) dm/da_j / sig_i^2
// and chi-square = sum_i (y_i - m_i)^2 / sig_i^2. Each sum runs over the points in order.
template <class Model>
void MarquardtSolver<Model>::coefficients(const FitArray& x, const FitArray& y, const FitArray& sig, Integer ndata,
                                          const ParVector& a, Integer /*ma*/, const ParList& lista, Integer mfit,
                                          ParMatrix& alpha, ParMatrix& beta, Integer /*nalp*/, double& chisq)
{
    for (int j = 1; j <= mfit; ++j) {
        for (int k = 1; k <= j; ++k)
            alpha(j, k) = 0;
        beta(j, 1) = 0;
    }
    chisq = 0;

    Sums sums;
    ++m_evaluations;
    if (ndata >= 1) {
        // The points, the parameters and the order list as plain vectors; every index is
        // checked here once (a point beyond 1000 or an entry of lista outside the
        // derivatives raises "Subscript out of range" as the loop would).
        x(ndata);
        y(ndata);
        sig(ndata);
        double p[9] = {};
        for (int j = 1; j <= 8; ++j)
            p[j] = a(j);
        ParVector dydaBounds;
        int li[9] = {};
        for (int j = 1; j <= mfit; ++j) {
            dydaBounds(lista(j));
            li[j] = lista(j);
        }
        accumulate(m_model.prepare(&x(0), ndata, p), sums, &y(0), &sig(0), ndata, p, li, mfit);
    }

    // Once infinite, a sum stays infinite or undefined, so checking the totals catches every
    // overflow on the way.
    for (int j = 1; j <= mfit; ++j) {
        for (int k = 1; k <= j; ++k)
            alpha(j, k) = rt::fin(sums.alpha[j - 1][k - 1]);
        beta(j, 1) = rt::fin(sums.beta[j - 1]);
    }
    chisq = rt::fin(sums.chisq);

    for (int j = 2; j <= mfit; ++j)
        for (int k = 1; k <= j - 1; ++k)
            alpha(k, j) = alpha(j, k);
}

template void FourierSolver::coefficients(const FitArray&, const FitArray&, const FitArray&, Integer, const ParVector&,
                                          Integer, const ParList&, Integer, ParMatrix&, ParMatrix&, Integer, double&);

} // namespace dip
