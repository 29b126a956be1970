// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#include "methods/marquardt/Marquardt.h"

namespace dip {

// Press et al., Numerical Recipes, covsrt: the covariance of the fitted parameters, held in
// the leading mfit x mfit block in lista order, is moved to parameter order; the parameters
// that were held fixed get zero rows and columns. With lista = 1..ma and mfit = ma the matrix
// comes out as it went in (the inverse of the undamped curvature matrix).
void SortCovariance(ParMatrix& covar, Integer /*ncvm*/, Integer ma, const ParList& lista, Integer mfit)
{
    for (int j = 1; j <= ma - 1; ++j)
        for (int i = j + 1; i <= ma; ++i)
            covar(i, j) = 0;

    for (int i = 1; i <= mfit - 1; ++i) {
        for (int j = i + 1; j <= mfit; ++j) {
            if (lista(j) > lista(i))
                covar(lista(j), lista(i)) = covar(i, j);
            else
                covar(lista(i), lista(j)) = covar(i, j);
        }
    }

    // The diagonal goes through row 1 as scratch space.
    const double swap = covar(1, 1);
    for (int j = 1; j <= ma; ++j) {
        covar(1, j) = covar(j, j);
        covar(j, j) = 0;
    }
    covar(lista(1), lista(1)) = swap;
    for (int j = 2; j <= mfit; ++j)
        covar(lista(j), lista(j)) = covar(1, j);

    for (int j = 2; j <= ma; ++j)
        for (int i = 1; i <= j - 1; ++i)
            covar(i, j) = covar(j, i);
}

} // namespace dip
