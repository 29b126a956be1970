// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#pragma once

// The smooth model of a picked range for methods that fit no curve of their own: a local
// quadratic regression (loess, Cleveland 1979). At a time t0 the least-squares quadratic in
// (t - t0) is fitted to the k nearest points, each weighted by the tricube (1 - (d/d_k)^3)^3 of
// its distance d over 1.001 times the k-th nearest distance d_k, and its value at t0 is the
// model. A quadratic follows the bottom of a dip without the flattening of a running mean, and
// the tricube makes the model continuous as points enter and leave the neighbourhood.
//
// k is chosen by generalized cross-validation, GCV(k) = n RSS / (n - tr H)^2 (Craven & Wahba
// 1979), over k = 7, 9, 13, 19, 28, 42, ... (half as large again each time) up to the number of
// points, so a well-sampled quiet curve gets a wide neighbourhood and a sharp or sparsely sampled
// dip a narrow one.

#include <vector>

namespace dip {

class LocalSmoother {
public:
    // The points (any order; at least 3 distinct times for a quadratic) and the neighbourhood
    // size k; k <= 0 chooses it by GCV.
    LocalSmoother(const std::vector<double>& t, const std::vector<double>& m, int k = 0);

    // The model at time t.
    double operator()(double t) const;

    int neighbours() const { return m_k; }

    // At the points themselves, in the order given: the model's values and leverages h_ii
    // (the weight of each point in its own fitted value, so that r_i / sqrt(1 - h_ii) has the
    // variance of the noise).
    std::vector<double> fittedValues() const;
    std::vector<double> leverages() const;

    // GCV of a neighbourhood size on the points given.
    double gcv(int k) const;

private:
    struct Fit {
        double value = 0;
        double leverage = 0; // weight of the point at t0 itself, when t0 is one of the points
    };
    Fit fitAt(double t0, int k, long self) const;

    std::vector<double> m_t; // in increasing time
    std::vector<double> m_m;
    std::vector<long> m_rank; // position in m_t of each point as given
    int m_k = 0;
};

} // namespace dip
