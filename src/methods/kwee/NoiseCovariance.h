// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#pragma once

// The covariance of a light curve's noise, fitted to the differences between the branches of a
// dip: the bootstrap draws its replicates' noise from it, and Deeg's error weighs the time's
// variance under it.
//
// The model: white noise of variance w at each point plus a correlated part of variance r whose
// correlation falls as exp(-|dt| / tau) (the Ornstein-Uhlenbeck process, the continuous form of
// an AR(1), defined at any sampling):
//     C(dt) = w [same point] + r exp(-|dt| / tau).
//
// What it is fitted to: contrasts, each a weighted sum of the noise at a few points. A
// difference between a point and the other branch reflected about the time of minimum,
// interpolated, is one: the symmetric dip cancels and the noise remains. Their covariance
// follows from C exactly, Cov(c_k, c_l) = sum_a sum_b u_ka u_lb C(t_ka - t_lb), also where the
// partners are interpolated and share points. This matters for slow noise: the difference of a
// point near the centre with its partner, a few points away, cancels most of the slow noise, so
// the differences look much less correlated, and smaller, than the noise is. A series model
// (an autoregression) fitted to them describes the differences; this one describes the noise.
//
// The fit: Gaussian maximum likelihood with the overall scale profiled out (for a covariance
// s K, s = c' K^-1 c / n), over a grid of the correlated fraction r / (w + r) and of tau in
// median spacings of the points. The correlated model has two parameters more than white noise
// alone and is kept only when it lowers -2 log L by more than 4 (Akaike's criterion): white
// noise stays white. Where the contrasts carry drifts (the differences about a time of minimum
// fitted to the same points, with their part along the reflected slope taken out), that gate
// stays on the ordinary likelihood, but which correlated covariance, its plausible neighbours
// and their scales come from the restricted likelihood, of what is left free of that part: a
// centre fitted to the data has taken up the noise along its drift, which on a short curve is
// much of the slow noise, and the ordinary likelihood calls that noise smaller and less
// correlated than it is. (The restricted one would also favour correlation under which the
// drifts are large, and let it in on white noise too often.)
//
// The doubt: on a short curve the differences cannot pin the correlation time down, and a
// replicate drawn from the best covariance alone is too sure of it (a time moved by slow noise
// is then given too small an error). So where the noise is correlated, the fit also keeps every
// cell of the grid the data do not rule out, weighted by its likelihood relative to the best,
// exp(-delta / 2), and each replicate draws its covariance from them, its scale divided by a
// draw of chi^2_d / d (the doubt of a variance from d whitened contrasts: n of them, one fewer
// where a fitted centre has taken up the part along their drifts).

#include <cstddef>
#include <vector>

namespace dip {

// One contrast: sum_k weights[k] noise(times[k]), observed as value. drift is how much of the
// value a fitted centre of the dip takes up: the contrasts' values are what is left once the part
// along the drifts is fitted and taken out (zero drifts: nothing was).
struct NoiseContrast {
    std::vector<double> times;
    std::vector<double> weights;
    double value = 0;
    double drift = 0;
};

struct NoiseCovariance {
    double white = 0; // variance of the independent part
    double red = 0;   // variance of the correlated part
    double tau = 0;   // its correlation time, in the times' unit; 0 when there is none

    bool correlated() const { return red > 0 && tau > 0; }
    // C(t1 - t2) between the noise at two times; equal times are the same point.
    double operator()(double t1, double t2) const;
    // The covariance of two contrasts under this model.
    double between(const NoiseContrast& a, const NoiseContrast& b) const;
};

struct NoiseCovarianceFit {
    bool ok = false; // fitted (at least ten contrasts with some variance)
    NoiseCovariance covariance;
    // The contrasts whitened by the fitted covariance (L^-1 c with K = L L'), centred and of
    // unit mean square: the independent innovations a replicate's noise is drawn from.
    std::vector<double> innovations;
    // Where the noise is correlated: the plausible covariances of the grid (each with its own
    // scale) and their likelihood weights summed up as they go.
    std::vector<NoiseCovariance> plausible;
    std::vector<double> cumulativeWeights;
    // What the scale was measured on: the contrasts fitted, less one where they carry drifts.
    std::size_t degreesOfFreedom = 0;

    // One replicate's covariance from a uniform number u in [0, 1) and a normal one z: the
    // plausible covariance u falls on, its scale divided by chi^2_d / d from z, d the degrees of
    // freedom (Wilson and Hilferty's cube, kept at 0.008 or more). The fitted covariance itself
    // where the noise is white.
    NoiseCovariance draw(double u, double z) const;
};

// The most contrasts a fit takes: its cost grows as their cube.
constexpr std::size_t maximumFittedContrasts = 120;

// The differences of one branch (in time order) nearest the centre, at most
// maximumFittedContrasts of them: the last of the left branch, the first of the right one.
std::vector<NoiseContrast> nearestTheCentre(std::vector<NoiseContrast> branch, bool leftBranch);

// spacing: the median spacing of the points, the unit of the grid of tau. knownCorrelated: the
// observer knows the noise is correlated (ground-based photometry), so white noise is no
// candidate and the best correlated covariance is taken however little it gains over white:
// a short curve hides most of its slow noise, and the test between the two often calls it white.
NoiseCovarianceFit fitNoiseCovariance(const std::vector<NoiseContrast>& contrasts, double spacing,
                                      bool knownCorrelated = false);

// A covariance and how much it weighs among others.
struct WeighedCovariance {
    NoiseCovariance covariance;
    double weight = 0;
};

// What the contrasts leave open: white noise and every correlated covariance of the grid, each
// at its own scale and weighted by its restricted likelihood, exp(-delta / 2) from the best. On
// a short curve the data cannot tell slow noise from none, and a choice between them is often
// wrong; so every covariance keeps a weight: before the data white noise is twice as likely
// as correlated noise, whose covariances share their odds equally. Those weighing less than 1e-3 of the heaviest are
// left out; the weights sum to 1. Empty when the contrasts cannot be fitted (fewer than ten, or no variance).
std::vector<WeighedCovariance> weighNoiseCovariances(const std::vector<NoiseContrast>& contrasts, double spacing);

} // namespace dip
