// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#include "methods/marquardt/MarquardtSolver.h"

#include "runtime/MsgBox.h"
#include "runtime/Numeric.h"

namespace dip {

namespace {

// At the start of a fit: every parameter must occur exactly once in lista; the ones not
// fitted are appended after the first mfit entries.
bool checkPermutation(ParList& lista, Integer ma, Integer mfit)
{
    int kk = mfit + 1;
    for (int j = 1; j <= ma; ++j) {
        int ihit = 0;
        for (int k = 1; k <= mfit; ++k)
            if (lista(k) == j)
                ++ihit;
        if (ihit == 0) {
            lista(kk) = rt::i16(j);
            ++kk;
        } else if (ihit > 1) {
            rt::MsgBox(QStringLiteral("Improper permutation in LISTA"));
            return false;
        }
    }
    if (kk != ma + 1) {
        rt::MsgBox(QStringLiteral("Improper permutation in LISTA"));
        return false;
    }
    return true;
}

} // namespace

// Press et al., Numerical Recipes, mrqmin. The damped normal equations
// (alpha + alamda diag(alpha)) da = beta give the trial step; a trial whose chi-square is not
// above the last accepted one is taken (equality included, so a step that changes nothing is
// accepted and the damping still falls), any other is refused and the damping rises.
template <class Model>
void MarquardtSolver<Model>::step(const FitArray& x, const FitArray& y, const FitArray& sig, Integer ndata,
                                  ParVector& a, Integer ma, ParList& lista, Integer mfit, ParMatrix& covar,
                                  ParMatrix& alpha, Integer nca, double& chisq, double& alamda)
{
    MarquardtSolver& w = *this;

    if (alamda < 0) {
        // An improper list leaves the damping negative, so the next call tries again.
        if (!checkPermutation(lista, ma, mfit))
            return;
        alamda = 0.001;
        coefficients(x, y, sig, ndata, a, ma, lista, mfit, alpha, w.beta, nca, chisq);
        w.OChisq = chisq;
        for (int j = 1; j <= ma; ++j)
            w.ATry(j) = a(j);
    }

    for (int j = 1; j <= mfit; ++j) {
        for (int k = 1; k <= mfit; ++k)
            covar(j, k) = alpha(j, k);
        covar(j, j) = rt::fin(alpha(j, j) * (1 + alamda));
        w.da(j, 1) = w.beta(j, 1);
    }
    // A singular system has been reported by GaussJordan; the step is made with what it left.
    GaussJordan(covar, mfit, nca, w.da, 1, 1);

    // Damping 0: the fit is finished and covar, the inverse of the undamped curvature matrix,
    // is the covariance matrix. The damping also reaches exactly 0 by underflow after some
    // hundreds of accepted steps; the call then behaves the same way.
    if (alamda == 0) {
        SortCovariance(covar, nca, ma, lista, mfit);
        return;
    }

    for (int j = 1; j <= mfit; ++j)
        w.ATry(lista(j)) = rt::fin(a(lista(j)) + w.da(j, 1));
    coefficients(x, y, sig, ndata, w.ATry, ma, lista, mfit, covar, w.da, nca, chisq);

    if (chisq <= w.OChisq) {
        alamda = 0.1 * alamda;
        w.OChisq = chisq;
        for (int j = 1; j <= mfit; ++j) {
            for (int k = 1; k <= mfit; ++k)
                alpha(j, k) = covar(j, k);
            w.beta(j, 1) = w.da(j, 1);
            a(lista(j)) = w.ATry(lista(j));
        }
    } else {
        alamda = rt::fin(10 * alamda);
        chisq = w.OChisq;
    }
}

template void FourierSolver::step(const FitArray&, const FitArray&, const FitArray&, Integer, ParVector&, Integer,
                                  ParList&, Integer, ParMatrix&, ParMatrix&, Integer, double&, double&);

} // namespace dip
