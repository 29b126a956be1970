// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#pragma once

// Simulated eclipses with a known time of minimum, for the tests of errors: a symmetric dip
// (Gaussian-like or flat-bottomed) sampled at given times, with white Gaussian noise from a
// seeded generator, and correlated noise to add to it.

#include <algorithm>
#include <cmath>
#include <random>
#include <vector>

namespace dip::test {

enum class DipShape { Gaussian, FlatBottomed };

struct Dip {
    double centre = 0.5;
    double depth = 0.5;  // magnitudes, fainter at the centre
    double width = 0.02; // days: the Gaussian's sigma, or the flat bottom's width
    DipShape shape = DipShape::Gaussian;

    double magnitude(double t) const
    {
        const double x = std::abs(t - centre) / width;
        if (shape == DipShape::Gaussian)
            return depth * std::exp(-0.5 * x * x);
        // Flat for |x| < 1/2, then falling as (x - 1/2)^1.5 to 0 at |x| = 3/2.
        if (x < 0.5)
            return depth;
        if (x < 1.5)
            return depth * (1 - std::pow(x - 0.5, 1.5));
        return 0;
    }
};

// n times evenly spaced from first to last.
inline std::vector<double> evenTimes(double first, double last, int n)
{
    std::vector<double> t(static_cast<std::size_t>(n));
    for (int i = 0; i < n; ++i)
        t[static_cast<std::size_t>(i)] = first + (last - first) * i / (n - 1);
    return t;
}

// n times evenly spaced, each moved by up to +-jitter/2 of a spacing, in increasing order.
inline std::vector<double> jitteredTimes(double first, double last, int n, double jitter, std::mt19937_64& rng)
{
    std::uniform_real_distribution<double> u(-0.5, 0.5);
    std::vector<double> t = evenTimes(first, last, n);
    const double step = (last - first) / (n - 1);
    for (double& x : t)
        x += jitter * step * u(rng);
    std::sort(t.begin(), t.end());
    return t;
}

// The dip's magnitudes at times t plus white noise of standard deviation sigma.
inline std::vector<double> noisyMagnitudes(const Dip& dip, const std::vector<double>& t, double sigma,
                                           std::mt19937_64& rng)
{
    std::normal_distribution<double> g(0.0, 1.0);
    std::vector<double> m(t.size());
    for (std::size_t i = 0; i < t.size(); ++i)
        m[i] = dip.magnitude(t[i]) + (sigma > 0 ? sigma * g(rng) : 0.0);
    return m;
}

// White noise of standard deviation white plus a correlated part of standard deviation red with
// correlation time tau (an AR(1) in steps of 1: the Ornstein-Uhlenbeck process on even
// sampling), n values.
inline std::vector<double> correlatedNoise(int n, double white, double red, double tau, std::mt19937_64& rng)
{
    std::normal_distribution<double> g(0, 1);
    const double rho = std::exp(-1 / tau);
    std::vector<double> e(static_cast<std::size_t>(n));
    double slow = red * g(rng);
    for (double& v : e) {
        v = white * g(rng) + slow;
        slow = rho * slow + red * std::sqrt(1 - rho * rho) * g(rng);
    }
    return e;
}

} // namespace dip::test
