// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#pragma once

// The Levenberg-Marquardt solver as an object (Press et al., Numerical Recipes, mrqmin and
// mrqcof): it owns what survives from one step to the next (the trial parameters ATry, the
// chi-square OChisq of the last accepted set, the gradient beta and the step da), its model
// with whatever the model keeps between evaluations, and its work counters. The caller owns
// the parameters, the curvature and covariance matrices, chi-square and the damping, and passes
// them in on every call, as the step procedure has always been called. Two solvers share
// nothing, so fits run side by side in threads.
//
// A model is a class with
//   Evaluator prepare(const double* x, int n, const double a[9]);  before a pass over x[1..n]
// whose evaluator, called as e(i, a, dyda), returns the model at x[i] and fills dm/da_j
// (parameters 1..8, index 0 unused). FourierModelT is the one the program uses.

#include "methods/marquardt/FourierKernel.h"
#include "methods/marquardt/Marquardt.h"

#include <memory>

namespace dip {

// How much work the coefficient sums have done: evaluations over all points, and those of
// them that needed new cosines and sines.
struct MarquardtCounts {
    long long evaluations = 0;
    long long harmonicEvaluations = 0;
};

// The Fourier model of the fit, m(x) = C + sum_k A_k (cos(k u) - 1), u = W (x - Xo), with
// the cosines and sines of its last pass kept: they depend only on W, Xo and the times, so
// they are reused while those stay bit for bit the same (a refused step tried again with
// more damping needs no new ones). The sums come out exactly as if every one were new.
class FourierModelT {
public:
    // The cosines and sines of the last pass, for points 1..n.
    struct Harmonics {
        bool valid = false;
        double w = 0;
        double xo = 0;
        int n = 0;
        double x[1001];
        double dx[1001];
        double cm1[1001][6];
        double sn[1001][6];
    };

    // The model at point i of the pass, from the kept cosines and sines.
    struct Evaluator {
        const Harmonics& h;
        double operator()(int i, const double a[9], double dyda[9]) const
        {
            return fourierkernel::model(a, h.dx[i], h.cm1[i], h.sn[i], dyda);
        }
    };

    FourierModelT();
    ~FourierModelT();
    FourierModelT(FourierModelT&&) noexcept;
    FourierModelT& operator=(FourierModelT&&) noexcept;

    Evaluator prepare(const double* x, int n, const double a[9]);

    long long harmonicEvaluations() const { return m_harmonicEvaluations; }

private:
    std::unique_ptr<Harmonics> m_h;
    long long m_harmonicEvaluations = 0;
};

// Inline, so that the sums see through it: with the kept cosines and sines (the common case in a
// fit) the pass is a plain loop over the arrays.
inline FourierModelT::Evaluator FourierModelT::prepare(const double* x, int n, const double a[9])
{
    Harmonics& c = *m_h;
    const double w = a[7];
    const double xo = a[8];
    if (c.valid && c.n == n && fourierkernel::sameBits(c.w, w) && fourierkernel::sameBits(c.xo, xo) &&
        std::memcmp(c.x + 1, x + 1, sizeof(double) * static_cast<std::size_t>(n)) == 0)
        return Evaluator{c};
    c.valid = false;
    ++m_harmonicEvaluations;
    for (int i = 1; i <= n; ++i) {
        c.x[i] = x[i];
        fourierkernel::harmonics(x[i], w, xo, c.dx[i], c.cm1[i], c.sn[i]);
    }
    c.n = n;
    c.w = w;
    c.xo = xo;
    c.valid = true;
    return Evaluator{c};
}

template <class Model>
class MarquardtSolver {
public:
    // One damped step. alamda < 0 starts a fit (damping 0.001, first coefficients); alamda = 0
    // finishes it: covar becomes the covariance matrix and nothing else changes. Otherwise a
    // trial is made and accepted when its chi-square is not above the last accepted one
    // (damping divided by 10) or rejected (damping times 10, chisq set back to the accepted
    // value).
    void step(const FitArray& x, const FitArray& y, const FitArray& sig, Integer ndata, ParVector& a, Integer ma,
              ParList& lista, Integer mfit, ParMatrix& covar, ParMatrix& alpha, Integer nca, double& chisq,
              double& alamda);

    // Curvature matrix alpha (mfit x mfit, symmetric), gradient beta (column 1) and chi-square
    // of the parameters a over the points 1..ndata.
    void coefficients(const FitArray& x, const FitArray& y, const FitArray& sig, Integer ndata, const ParVector& a,
                      Integer ma, const ParList& lista, Integer mfit, ParMatrix& alpha, ParMatrix& beta, Integer nalp,
                      double& chisq);

    MarquardtCounts counts() const { return {m_evaluations, m_model.harmonicEvaluations()}; }

    // The step's own state, kept from one call to the next.
    ParVector ATry;
    double OChisq = 0;
    ParMatrix beta; // column 1
    ParMatrix da;   // column 1

private:
    Model m_model;
    long long m_evaluations = 0;
};

// The solver of the Fourier fit. Its step and its coefficient sums are compiled once, for this
// model (MarquardtStep.cpp, and MarquardtCoefficients.cpp, the one file that lets the vectoriser
// work on the sums); the header has their declarations only.
using FourierSolver = MarquardtSolver<FourierModelT>;

} // namespace dip
