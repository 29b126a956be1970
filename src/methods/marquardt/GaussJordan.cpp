// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#include "methods/marquardt/Marquardt.h"

#include "runtime/MsgBox.h"
#include "runtime/Numeric.h"

#include <cmath>
#include <utility>

namespace dip {

// Gauss-Jordan elimination with full pivoting (Press et al., Numerical Recipes, gaussj).
// A failure is reported in a message box and the routine returns at once, leaving a and b
// partly reduced; the caller is not told and carries on with them.
void GaussJordan(ParMatrix& a, Integer n, Integer /*np*/, ParMatrix& b, Integer m, Integer /*mp*/)
{
    // Bookkeeping of the pivots: fixed at 100 entries, so at most 100 unknowns.
    rt::Array<Integer, 0, 100> ipiv;
    rt::Array<Integer, 0, 100> indxr;
    rt::Array<Integer, 0, 100> indxc;
    Integer irow = 0;
    Integer icol = 0;

    for (int j = 1; j <= n; ++j)
        ipiv(j) = 0;

    for (int i = 1; i <= n; ++i) {
        // The pivot: the largest element in the rows and columns not used yet. The test is
        // greater-or-equal, so of equal magnitudes the last one met wins, and a zero element
        // is taken when nothing larger is left.
        double big = 0;
        for (int j = 1; j <= n; ++j) {
            if (ipiv(j) == 1)
                continue;
            for (int k = 1; k <= n; ++k) {
                if (ipiv(k) == 0) {
                    if (std::abs(a(j, k)) >= big) {
                        big = std::abs(a(j, k));
                        irow = rt::i16(j);
                        icol = rt::i16(k);
                    }
                } else if (ipiv(k) > 1) {
                    rt::MsgBox(QStringLiteral("Singular matrix 1"));
                    return;
                }
            }
        }
        ipiv(icol) = rt::i16(ipiv(icol) + 1);

        // The pivot onto the diagonal: rows are swapped now, columns once at the end.
        if (irow != icol) {
            for (int l = 1; l <= n; ++l)
                std::swap(a(irow, l), a(icol, l));
            for (int l = 1; l <= m; ++l)
                std::swap(b(irow, l), b(icol, l));
        }
        indxr(i) = irow;
        indxc(i) = icol;
        if (a(icol, icol) == 0) {
            rt::MsgBox(QStringLiteral("Singular matrix 2"));
            return;
        }

        const double pivinv = rt::div(1, a(icol, icol));
        a(icol, icol) = 1;
        for (int l = 1; l <= n; ++l)
            a(icol, l) = rt::fin(a(icol, l) * pivinv);
        for (int l = 1; l <= m; ++l)
            b(icol, l) = rt::fin(b(icol, l) * pivinv);

        for (int ll = 1; ll <= n; ++ll) {
            if (ll == icol)
                continue;
            const double dum = a(ll, icol);
            a(ll, icol) = 0;
            for (int l = 1; l <= n; ++l)
                a(ll, l) = rt::fin(a(ll, l) - a(icol, l) * dum);
            for (int l = 1; l <= m; ++l)
                b(ll, l) = rt::fin(b(ll, l) - b(icol, l) * dum);
        }
    }

    // Unscramble: undo the column interchanges in the reverse order of the passes.
    for (int l = n; l >= 1; --l) {
        if (indxr(l) != indxc(l))
            for (int k = 1; k <= n; ++k)
                std::swap(a(k, indxr(l)), a(k, indxc(l)));
    }
}

} // namespace dip
