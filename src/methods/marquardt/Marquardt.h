// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#pragma once

// Non-linear least squares by the Levenberg-Marquardt method, after Press, Teukolsky,
// Vetterling & Flannery, Numerical Recipes (mrqmin, mrqcof, gaussj, covsrt), with the model
// of the Fourier fit (the solver itself, which takes the model as a parameter, is in
// MarquardtSolver.h). No window: the only things a user ever sees from here are the three
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

// The Fourier model at time x for the parameters a in solver order (A1..A5, C, W, Xo):
// y = C + sum_k A_k (cos(k u) - 1), u = W (x - Xo), and its partial derivatives dyda(1..8).
void FourierModel(double x, const ParVector& a, double& y, ParVector& dyda, Integer na);

// Solves a X = b in place by Gauss-Jordan elimination with full pivoting: a (n x n) becomes
// its inverse and b (n x m) the solution. np and mp are the declared sizes, carried along.
void GaussJordan(ParMatrix& a, Integer n, Integer np, ParMatrix& b, Integer m, Integer mp);

// Spreads the covariance of the mfit fitted parameters (in lista order) over the full
// ma x ma matrix in parameter order.
void SortCovariance(ParMatrix& covar, Integer ncvm, Integer ma, const ParList& lista, Integer mfit);

} // namespace dip
