// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#pragma once

// Autoregressions of the noise between the branches of a dip, for the bootstrap's resampled
// noise (its sieve).
//
// Order by order (Levinson's recursion): from order p - 1 to p with the reflection coefficient
// k, a_j <- a_j - k a_{p-j} (j < p), a_p = k, and the innovation variance v <- v (1 - k^2). How
// k is estimated is the caller's (Yule-Walker from autocovariances, Burg from the series); the
// order kept is the one of smallest Akaike criterion n log v + 2p, order 0 included (of equal
// values the lower order wins).
//
// Persistence. The sum of the coefficients sets the long-run variance, v / (1 - sum a)^2: the
// slow part of the noise, which is what moves a time of minimum. Fitted on a short series it
// comes out too small, by about (1 + 3 rho) / n for an AR(1) of coefficient rho whose mean is
// estimated too (Kendall 1954; Marriott & Pope 1954), and near 1 a little too small is much too
// little long-run variance. The series fitted here (the differences between the branches
// reflected about a time of minimum) are taken about a time fitted to the same points, which
// takes out their slowest part as an estimated mean does, so that form of the bias is the one
// added back.

#include <cstddef>
#include <vector>

namespace dip {

class AutoregressionByOrder {
public:
    // Order 0: the series' variance (mean square) of n values.
    AutoregressionByOrder(double variance, std::size_t n);

    // The next order with reflection coefficient k; false, and nothing kept, when the
    // innovation variance does not stay positive.
    bool extend(double k);

    const std::vector<double>& coefficients() const { return m_a; } // a_1 .. a_p of the last order
    int order() const { return static_cast<int>(m_a.size()); }
    double innovationVariance() const { return m_v; }

    // The order of smallest criterion so far.
    const std::vector<double>& best() const { return m_best; }
    double bestInnovationVariance() const { return m_bestV; }

private:
    std::size_t m_n;
    std::vector<double> m_a, m_best;
    double m_v, m_bestV, m_bestCriterion;
};

// a_1 + ... + a_p.
double persistenceOf(const std::vector<double>& a);

// The persistence with its small-sample bias added back: unchanged when it is not positive,
// never more than maximumPersistence.
double unbiasedPersistence(double persistence, std::size_t n);

constexpr double maximumPersistence = 0.98;

} // namespace dip
