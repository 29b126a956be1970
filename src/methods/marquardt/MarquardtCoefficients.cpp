// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#include "methods/marquardt/FourierKernel.h"
#include "methods/marquardt/Marquardt.h"

#include <cstring>

namespace dip {

namespace {

using fourierkernel::finite;

bool sameBits(double a, double b) { return std::memcmp(&a, &b, sizeof a) == 0; }

// The cosines and sines of the last evaluation. They depend only on W, Xo and the times, so
// they are kept while those stay bit for bit the same: a refused step tried again with more
// damping, or a step that leaves W and Xo where they were, needs no new ones. The sums below
// come out exactly as if every one were computed afresh.
struct HarmonicsCache {
    bool valid = false;
    double w = 0;
    double xo = 0;
    int n = 0;
    double x[1001];
    double dx[1001];
    double cm1[1001][6];
    double sn[1001][6];
};

HarmonicsCache& harmonicsCache()
{
    static HarmonicsCache cache;
    return cache;
}

const HarmonicsCache& harmonicsFor(const double* x, int n, double w, double xo)
{
    HarmonicsCache& c = harmonicsCache();
    if (c.valid && c.n == n && sameBits(c.w, w) && sameBits(c.xo, xo) &&
        std::memcmp(c.x + 1, x + 1, sizeof(double) * static_cast<std::size_t>(n)) == 0)
        return c;
    c.valid = false;
    ++marquardtCounts().harmonicEvaluations;
    for (int i = 1; i <= n; ++i) {
        c.x[i] = x[i];
        fourierkernel::harmonics(x[i], w, xo, c.dx[i], c.cm1[i], c.sn[i]);
    }
    c.n = n;
    c.w = w;
    c.xo = xo;
    c.valid = true;
    return c;
}

struct Sums {
    double alpha[9][9] = {};
    double beta[9] = {};
    double chisq = 0;
};

// One pass over the points. Each sum is its own accumulator running over i = 1..n in order,
// so the unrolled form for all eight parameters in order gives the same bits as the general
// one.
template <bool allInOrder>
void accumulate(Sums& sums, const double* x, const double* y, const double* sig, int n, const double a[9],
                const int li[9], int mfit)
{
    if (allInOrder)
        mfit = 8;
    const HarmonicsCache& h = harmonicsFor(x, n, a[7], a[8]);
    double dyda[9] = {};
    for (int i = 1; i <= n; ++i) {
        const double ymod = fourierkernel::model(a, h.dx[i], h.cm1[i], h.sn[i], dyda);
        const double sig2 = finite(sig[i] * sig[i]);
        const double sig2i = sig2 != 0 ? finite(1 / sig2) : rt::div(1, sig2);
        const double dy = y[i] - ymod;
        for (int j = 1; j <= mfit; ++j) {
            const double wt = dyda[allInOrder ? j : li[j]] * sig2i;
            for (int k = 1; k <= j; ++k)
                sums.alpha[j][k] = sums.alpha[j][k] + wt * dyda[allInOrder ? k : li[k]];
            sums.beta[j] = sums.beta[j] + dy * wt;
        }
        sums.chisq = sums.chisq + dy * dy * sig2i;
    }
}

} // namespace

MarquardtCounts& marquardtCounts()
{
    static MarquardtCounts counts;
    return counts;
}

// Press et al., Numerical Recipes, mrqcof: alpha = sum_i dm/da_j dm/da_k / sig_i^2 (the
// curvature matrix, half the Hessian of chi-square), beta = sum_i (y_i - m_i) dm/da_j / sig_i^2
// and chi-square = sum_i (y_i - m_i)^2 / sig_i^2. Each sum runs over the points in order.
void MarquardtCoefficients(const FitArray& x, const FitArray& y, const FitArray& sig, Integer ndata,
                           const ParVector& a, Integer /*ma*/, const ParList& lista, Integer mfit, ParMatrix& alpha,
                           ParMatrix& beta, Integer /*nalp*/, double& chisq)
{
    for (int j = 1; j <= mfit; ++j) {
        for (int k = 1; k <= j; ++k)
            alpha(j, k) = 0;
        beta(j, 1) = 0;
    }
    chisq = 0;

    Sums sums;
    ++marquardtCounts().evaluations;
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
        bool inOrder = mfit == 8;
        for (int j = 1; j <= mfit; ++j) {
            dydaBounds(lista(j));
            li[j] = lista(j);
            inOrder = inOrder && li[j] == j;
        }
        if (inOrder)
            accumulate<true>(sums, &x(0), &y(0), &sig(0), ndata, p, li, mfit);
        else
            accumulate<false>(sums, &x(0), &y(0), &sig(0), ndata, p, li, mfit);
    }

    // Once infinite, a sum stays infinite or undefined, so checking the totals catches every
    // overflow on the way.
    for (int j = 1; j <= mfit; ++j) {
        for (int k = 1; k <= j; ++k)
            alpha(j, k) = rt::fin(sums.alpha[j][k]);
        beta(j, 1) = rt::fin(sums.beta[j]);
    }
    chisq = rt::fin(sums.chisq);

    for (int j = 2; j <= mfit; ++j)
        for (int k = 1; k <= j - 1; ++k)
            alpha(k, j) = alpha(j, k);
}

} // namespace dip
