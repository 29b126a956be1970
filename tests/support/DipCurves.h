// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#pragma once

// The light curves the tests make: dips of known shape and centre, as (time, magnitude)
// points, each with the formula written once so that its digits are the same in every test.

#include <QByteArray>

#include <utility>
#include <vector>

namespace dip::test {

using Points = std::vector<std::pair<double, double>>;

// A Gaussian dip: base + depth exp(-((t - centre) / width)^2), symmetric about centre.
double gaussianMag(double t, double centre, double width, double depth = 0.8, double base = 11.0);

// n points at first, first + step, ... of a Gaussian dip.
Points gaussianDip(int n, double first, double step, double centre, double width, double depth = 0.8,
                   double base = 11.0);

// Points k = 0..60 at k / 64 d (spacings exact in binary) of a Gaussian dip of width 5/64 d
// centred on point 30, less the points missingFrom..missingTo: a gap where they are.
Points sixtyFourthsDip(int missingFrom, int missingTo);

// The Fourier fit's model, m(t) = C + sum_k A_k (cos(k u) - 1), u = W (t - Xo), summed from C
// in the order of k; a holds A1..A5.
double fourierMag(double t, double xo, double c, double w, const double a[5]);

// n points evenly over [t0, t1] (t0 + (t1 - t0) i / (n - 1)) of the Fourier model, plus uniform
// noise of the given full width from a 64-bit Mersenne twister with the seed.
Points fourierDip(double xo, double c, double w, const double a[5], int n, double t0, double t1, double noise,
                  unsigned seed);

// A parabolic dip, base - curvature (t - centre)^2, with a scatter of scatter sin(2.7 i) on
// point i = 0 .. n - 1 at first + step i.
Points parabolicDip(int n, double first, double step, double centre, double scatter, double curvature = 25,
                    double base = 11.2);

// Twelve points: t = 1000.1 + 0.01 i, m = 11 + 0.01 i, point 6 half a magnitude fainter.
Points twelvePoints();

// A light curve as CSV text: one "t,m" line per point, 17 significant digits.
QByteArray csv(const Points& points);

} // namespace dip::test
