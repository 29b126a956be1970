// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#include "analysis/LocalSmoother.h"

#include <algorithm>
#include <cmath>
#include <numeric>

namespace dip {

LocalSmoother::LocalSmoother(const std::vector<double>& t, const std::vector<double>& m, int k)
{
    const std::size_t n = std::min(t.size(), m.size());
    std::vector<std::size_t> order(n);
    std::iota(order.begin(), order.end(), std::size_t{0});
    std::stable_sort(order.begin(), order.end(), [&](std::size_t a, std::size_t b) { return t[a] < t[b]; });
    m_t.resize(n);
    m_m.resize(n);
    m_rank.resize(n);
    for (std::size_t i = 0; i < n; ++i) {
        m_t[i] = t[order[i]];
        m_m[i] = m[order[i]];
        m_rank[order[i]] = static_cast<long>(i);
    }
    const int nPoints = static_cast<int>(n);
    if (k > 0) {
        m_k = std::min(k, nPoints);
        return;
    }
    m_k = std::min(7, nPoints);
    double best = gcv(m_k);
    for (int candidate = 9; candidate <= nPoints; candidate = candidate < 13 ? 13 : candidate * 3 / 2) {
        const double g = gcv(candidate);
        if (g < best) {
            best = g;
            m_k = candidate;
        }
    }
}

// The weighted least-squares quadratic in x = t - t0 over the k nearest points. Its value at
// x = 0 is the first element of (X'WX)^-1 X'W m; the weight of point j in it is
// w_j (c0 + c1 x_j + c2 x_j^2) with c the first row of the inverse, so a point at t0 itself
// has the leverage w c0.
LocalSmoother::Fit LocalSmoother::fitAt(double t0, int k, long self) const
{
    const long n = static_cast<long>(m_t.size());
    Fit fit;
    if (n == 0 || k <= 0)
        return fit;
    // The k nearest: grow a window [lo, hi) from the insertion position.
    long hi = static_cast<long>(std::lower_bound(m_t.begin(), m_t.end(), t0) - m_t.begin());
    long lo = hi;
    while (hi - lo < k) {
        if (lo == 0)
            ++hi;
        else if (hi == n)
            --lo;
        else if (t0 - m_t[std::size_t(lo - 1)] <= m_t[std::size_t(hi)] - t0)
            --lo;
        else
            ++hi;
    }
    double dmax = 0;
    for (long j = lo; j < hi; ++j)
        dmax = std::max(dmax, std::abs(m_t[std::size_t(j)] - t0));
    dmax *= 1.001;

    double s0 = 0, s1 = 0, s2 = 0, s3 = 0, s4 = 0, r0 = 0, r1 = 0, r2 = 0;
    for (long j = lo; j < hi; ++j) {
        const double x = m_t[std::size_t(j)] - t0;
        const double u = dmax > 0 ? std::abs(x) / dmax : 0;
        const double c = 1 - u * u * u;
        const double w = c * c * c;
        const double y = m_m[std::size_t(j)];
        s0 += w;
        s1 += w * x;
        s2 += w * x * x;
        s3 += w * x * x * x;
        s4 += w * x * x * x * x;
        r0 += w * y;
        r1 += w * x * y;
        r2 += w * x * x * y;
    }
    // First row of the inverse of [[s0, s1, s2], [s1, s2, s3], [s2, s3, s4]] by cofactors.
    const double c00 = s2 * s4 - s3 * s3;
    const double c01 = -(s1 * s4 - s2 * s3);
    const double c02 = s1 * s3 - s2 * s2;
    const double det = s0 * c00 + s1 * c01 + s2 * c02;
    if (!(std::abs(det) > 1e-12 * std::abs(s0 * c00)) || !(s0 > 0)) {
        // Fewer than three distinct times: the weighted mean.
        fit.value = s0 > 0 ? r0 / s0 : 0;
        fit.leverage = self >= 0 && s0 > 0 ? 1 / s0 : 0;
        return fit;
    }
    fit.value = (c00 * r0 + c01 * r1 + c02 * r2) / det;
    if (self >= 0)
        fit.leverage = c00 / det; // the point's own weight is 1 at distance 0
    return fit;
}

double LocalSmoother::operator()(double t) const { return fitAt(t, m_k, -1).value; }

std::vector<double> LocalSmoother::fittedValues() const
{
    std::vector<double> v(m_rank.size());
    for (std::size_t i = 0; i < m_rank.size(); ++i)
        v[i] = fitAt(m_t[std::size_t(m_rank[i])], m_k, m_rank[i]).value;
    return v;
}

std::vector<double> LocalSmoother::leverages() const
{
    std::vector<double> v(m_rank.size());
    for (std::size_t i = 0; i < m_rank.size(); ++i)
        v[i] = fitAt(m_t[std::size_t(m_rank[i])], m_k, m_rank[i]).leverage;
    return v;
}

double LocalSmoother::gcv(int k) const
{
    const std::size_t n = m_t.size();
    double rss = 0, trace = 0;
    for (std::size_t i = 0; i < n; ++i) {
        const Fit f = fitAt(m_t[i], k, static_cast<long>(i));
        const double r = m_m[i] - f.value;
        rss += r * r;
        trace += f.leverage;
    }
    const double dof = double(n) - trace;
    return dof > 0 ? double(n) * rss / (dof * dof) : HUGE_VAL;
}

} // namespace dip
