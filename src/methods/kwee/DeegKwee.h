// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#pragma once

// Deeg's modified Kwee & van Woerden method (Deeg 2021, Galaxies 9, 1): the reflection sums are
// evaluated at several trial times (folds) and fitted by a least-squares parabola, and the error
// comes from the curvature of that parabola with the point noise measured on the light curve,
// so that it stays valid where the classic formula gives nothing or too little.
//
// Reflection sums. Each observed point i of the picked range within a half-width w of the fold
// centre T_c is paired with the light curve reflected about the trial time T, read by linear
// interpolation L between the observations:
//     S(T) = sum_i (m_i - L(2T - t_i))^2.
// The set of points is fixed for all folds of one evaluation: w = f d - 2D, with d the distance
// from T_c to the nearer end of the range, f the fraction used (1 by default) and D the distance
// of the outer folds from the centre, so every reflection falls on the data. A point whose
// reflection about any of the folds falls between two observations more than 8 median spacings
// apart (across a gap) is left out of them all: L there is the straight line across the gap,
// which cuts the curved branch, and its miss, the same whatever the noise, pulled the time off
// by several errors on long curves with a gap. The red-noise factor leaves such differences out
// too.
//
// Folds. S is evaluated at F trial times T_c + j h, j = -(F-1)/2 .. (F-1)/2 (F odd, 5 by
// default), and S = a j^2 + b j + c is fitted by least squares; its vertex T_c - h b / (2a) is
// the time of minimum. The first centre is the observed time, in the faint half of the dip and
// reflecting at least half the points any time there reflects, about which S per pair is
// smallest; the folds then walk towards the vertex while it lies
// outside them, and are re-centred on it until it stays within half an error of their centre.
//
// Error. Near the minimum T0, d_i(T) = m_i - L(2T - t_i) = e_i - e~_i + 2 s_i (T - T0), with s_i
// the slope of the light curve at t_i, e_i the noise of the point (standard deviation sigma) and
// e~_i the interpolated noise of its partner. Every observation enters S twice: as itself, and,
// through the interpolation weights (which sum to one over the points reflected onto it), as
// the partner of the points on the other branch. The P terms of S are therefore Z = P/2
// independent pairs, each of variance 2 sigma^2 counted twice, so chi^2(T) = S(T) / (4 sigma^2).
// With A = a / h^2 the curvature of S in time, Delta chi^2 = 1 gives
//     sigma_T^2 = 4 sigma^2 / A   (= sigma^2 / sum_i s_i^2, the bound for a symmetric profile).
// The classic error sigma^2 = (4AC - B^2) / (4A^2 (Z - 1)) is S_min / (A (Z - 1)): the same
// curvature with the noise taken from S at its minimum alone, which a three-point parabola can
// make tiny or negative, and which is low anyway because an interpolated partner carries only
// (w^2 + (1 - w)^2) sigma^2 of noise (w the interpolation weight).
//
// Noise. sigma is measured on the points of the picked range, robustly: each point is compared
// with the least-squares quadratic through its two neighbours on each side (which takes out the
// curvature of the light curve), r_i = (m_i - q_i) / sqrt(1 + v_i) with v_i sigma^2 the variance
// of the quadratic's value, and sigma is the RMS of the r_i within 3 sigma, iterated from
// 1.4826 times their median absolute value and divided by sqrt(0.97334) for the clipping. A
// caller who knows the photometric error may give it instead. S at the minimum gives a second
// measure, sigma_S^2 = S(T0) / sum_i (1 + w_i^2 + (1 - w_i)^2), which is larger where the
// reflected curve misses (an asymmetric dip); the error uses the larger.
//
// Red noise. Noise correlated over a few neighbouring points moves the time more than its size
// says. The differences d_i at the time found are contrasts of the noise at a point and its
// partner's two neighbours; the noise's covariance (white, and correlated over every time of a
// grid) is weighed on the differences of one branch (weighNoiseCovariances in NoiseCovariance.h),
// with what the time found took up left out: there sum g_i d_i = 0 (g_i the reflected slope),
// which on a short curve hides most of the slow noise from any measure taken on the d alone. The
// time's variance under the weighed covariances is divided by the one under white noise of sigma
// through the same weights, and the error is multiplied by the square root, at least 1
// (redNoiseFactor). Where a short curve cannot tell slow noise from none, the error takes in some
// of it: on white noise it is then up to a fifth larger than the scatter of the times.
//
// Pairs. Fewer than minimumDeegPairs points reflected at the time found (a minimum near an end
// of the range, or in a gap): no time is given. A handful of differences then decide the time,
// and neither their noise nor its correlation can be measured on them.
//
// Fold step. The outer folds start half a median spacing of the observations out. Where the
// noise is large for the sampling, S is jagged on that scale, its short-span curvature is the
// noise's, and the vertex wanders: the step is doubled until the curvature is the light curve's
// and the outer folds lie at least max(5, 0.85 sqrt(P)) errors out (see foldStep).

#include "runtime/Array.h"
#include "runtime/Integer.h"

#include <QString>

#include <vector>

namespace dip {

struct DeegKweeParams {
    int folds = 5;           // trial times, odd, at least 3
    double fraction = 1.0;   // of the distance from the fold centre to the nearer end of the range
    double noise = 0;        // point noise in magnitudes; 0 or less: measured on the points
    int maxIterations = 100; // walking and re-centring steps of the folds
};

// The fewest points reflected onto the other branch that a time and its error are given from.
constexpr int minimumDeegPairs = 8;

enum class DeegKweeStatus {
    Ok,
    BadRange,     // first / last outside 1..count, or fewer than 7 points between them
    BadParameter, // folds even or below 3, fraction outside (0, 1], iterations below 1
    BadValue,     // a time or magnitude that is not a finite number
    NoSpread,     // all times of the range equal
    NoMinimum,    // no dip: the folds walked off the range, or the curve is not fainter there than about
    NotConverged, // the vertex kept moving; time and error are of the last fit
    TooFewPairs,  // fewer than minimumDeegPairs points reflected at the time found
};

struct DeegKweeResult {
    DeegKweeStatus status = DeegKweeStatus::BadRange;
    double time = 0;  // time of minimum
    double error = 0; // sigma_T = 2 sigma / sqrt(A)

    double noise = 0;          // the larger of the given or measured noise and noiseAtMinimum
    double measuredNoise = 0;  // sigma measured on the points (also when one was given)
    double noiseAtMinimum = 0; // sigma_S, from S at the time found
    // The classic form S_min / (A (Z - 1)), Z = P/2, from the same fit, for comparison.
    double minimumSumError = 0;
    // The factor the error carries for noise correlated over neighbouring points (1: white).
    double redNoiseFactor = 1;

    // The last fit: fold times and their sums, S(T) ~ minimumSum + curvature (T - time)^2.
    std::vector<double> foldTimes;
    std::vector<double> foldSums;
    double foldCentre = 0;
    double foldStep = 0;
    double curvature = 0;  // A, per day^2
    double minimumSum = 0; // S at the vertex
    int pairs = 0;         // P, the points reflected
    int iterations = 0;
    bool converged = false;

    bool ok() const { return status == DeegKweeStatus::Ok; }
};

// Runs the method on t(first..last), m(first..last) (times need not be in order; count is the
// number of used points and bounds first and last). Reads nothing else and touches no state.
DeegKweeResult DeegKwee(const rt::ObsArray& t, const rt::ObsArray& m, rt::Integer count, rt::Integer first,
                        rt::Integer last, const DeegKweeParams& params = {});

// The same on plain arrays of n points (index 0 .. n-1), all of them the range.
DeegKweeResult DeegKwee(const double* t, const double* m, int n, const DeegKweeParams& params = {});

// The point noise as measured for the method (see the comment above); 0 when fewer than five
// points or no usable neighbourhood. t must be in increasing order.
double DeegLocalNoise(const std::vector<double>& t, const std::vector<double>& m);

// A sentence for a status, for the windows and the console tool.
QString deegKweeStatusText(DeegKweeStatus status);

} // namespace dip
