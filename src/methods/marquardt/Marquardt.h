// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#pragma once

// Non-linear least squares by the Levenberg-Marquardt method, after Press, Teukolsky,
// Vetterling & Flannery, Numerical Recipes (mrqmin, mrqcof, gaussj, covsrt), with the model
// of the Fourier fit. No window: the only things a user ever sees from here are the three
// messages "Improper permutation in LISTA", "Singular matrix 1" and "Singular matrix 2", and
// after each of them the computation goes on with what it has.
//
// Vectors and matrices are indexed from 1; element 0 exists and is left alone. A gradient or
// a solution vector is kept as an n-by-1 matrix (column 1) so that it can be the right-hand
// side of GaussJordan.

#include "runtime/Array.h"
#include "runtime/Integer.h"

namespace dip {

using rt::Integer;

using ParVector = rt::Array<double, 0, 8>;
using ParMatrix = rt::Matrix<double, 0, 8>;
using ParList = rt::Array<Integer, 0, 8>;
using FitArray = rt::ObsArray; // 1..1000

// The state that belongs to the step procedure and survives from one call to the next: the
// trial parameters, the chi-square of the last accepted set, the gradient and the step.
struct MarquardtWork {
    ParVector ATry;
    double OChisq = 0;
    ParMatrix beta; // column 1
    ParMatrix da;   // column 1
};

// The solver's state of this process.
MarquardtWork& marquardtWork();

// How much work the coefficient sums have done since start (for the benchmark): evaluations
// over all points, and those of them that needed new cosines and sines.
struct MarquardtCounts {
    long long evaluations = 0;
    long long harmonicEvaluations = 0;
};
MarquardtCounts& marquardtCounts();

// The Fourier model at time x for the parameters a in solver order (A1..A5, C, W, Xo):
// y = C + sum_k A_k (cos(k u) - 1), u = W (x - Xo), and its partial derivatives dyda(1..8).
void FourierModel(double x, const ParVector& a, double& y, ParVector& dyda, Integer na);

// Curvature matrix alpha (mfit x mfit, symmetric), gradient beta (column 1) and chi-square of
// the parameters a over the points 1..ndata.
void MarquardtCoefficients(const FitArray& x, const FitArray& y, const FitArray& sig, Integer ndata, const ParVector& a,
                           Integer ma, const ParList& lista, Integer mfit, ParMatrix& alpha, ParMatrix& beta,
                           Integer nalp, double& chisq);

// Solves a X = b in place by Gauss-Jordan elimination with full pivoting: a (n x n) becomes
// its inverse and b (n x m) the solution. np and mp are the declared sizes, carried along.
void GaussJordan(ParMatrix& a, Integer n, Integer np, ParMatrix& b, Integer m, Integer mp);

// Spreads the covariance of the mfit fitted parameters (in lista order) over the full
// ma x ma matrix in parameter order.
void SortCovariance(ParMatrix& covar, Integer ncvm, Integer ma, const ParList& lista, Integer mfit);

// One damped step. alamda < 0 starts a fit (damping 0.001, first coefficients); alamda = 0
// finishes it: covar becomes the covariance matrix and nothing else changes. Otherwise a
// trial is made and accepted when its chi-square is not above the last accepted one (damping
// divided by 10) or rejected (damping times 10, chisq set back to the accepted value).
void MarquardtStep(const FitArray& x, const FitArray& y, const FitArray& sig, Integer ndata, ParVector& a, Integer ma,
                   ParList& lista, Integer mfit, ParMatrix& covar, ParMatrix& alpha, Integer nca, double& chisq,
                   double& alamda);

} // namespace dip
