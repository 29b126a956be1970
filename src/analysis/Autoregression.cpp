// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#include "analysis/Autoregression.h"

#include <algorithm>
#include <cmath>

namespace dip {

AutoregressionByOrder::AutoregressionByOrder(double variance, std::size_t n)
    : m_n(n), m_v(variance), m_bestV(variance), m_bestCriterion(double(n) * std::log(variance))
{}

bool AutoregressionByOrder::extend(double k)
{
    const double v = m_v * (1 - k * k);
    if (!(v > 0))
        return false;
    const std::size_t p = m_a.size() + 1;
    std::vector<double> next(p, 0.0);
    for (std::size_t j = 1; j < p; ++j)
        next[j - 1] = m_a[j - 1] - k * m_a[p - j - 1];
    next[p - 1] = k;
    m_a = next;
    m_v = v;
    const double criterion = double(m_n) * std::log(v) + 2.0 * double(p);
    if (criterion < m_bestCriterion) {
        m_bestCriterion = criterion;
        m_best = m_a;
        m_bestV = v;
    }
    return true;
}

double persistenceOf(const std::vector<double>& a)
{
    double sum = 0;
    for (const double x : a)
        sum += x;
    return sum;
}

double unbiasedPersistence(double persistence, std::size_t n)
{
    // Negative persistence (noise that alternates) moves no time; it is left as fitted.
    if (!(persistence > 0) || n == 0)
        return persistence;
    return std::min(maximumPersistence, persistence + (1 + 3 * persistence) / double(n));
}

} // namespace dip
