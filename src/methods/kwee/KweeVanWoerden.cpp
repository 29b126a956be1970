// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#include "methods/kwee/KweeVanWoerden.h"

#include "runtime/Numeric.h"

#include <cmath>

namespace dip {

using rt::fin;
using rt::i16;
using rt::Integer;

void KweeInterpolate(KweeGrid& s, const rt::ObsArray& t, const rt::ObsArray& m, Integer count, Integer first,
                     Integer last, Integer M)
{
    const Integer K = i16(2 * M);
    s.KweeGridT(0) = t(first);
    s.KweeGridT(K) = t(last);
    s.KweeGridMag(0) = m(first);
    s.KweeGridMag(K) = m(last);
    const double delta = rt::div(t(last) - t(first), K);
    for (int k = 1; k <= K - 1; ++k) {
        const double gridT = fin(t(first) + k * delta);
        s.KweeGridT(k) = gridT;
        long long j = count;
        while (t(j) > gridT)
            --j;
        s.KweeGridMag(k) = fin(m(j) + rt::div(fin((m(j + 1) - m(j)) * (gridT - t(j))), t(j + 1) - t(j)));
    }
}

namespace {

struct Sums {
    double minus = 0, zero = 0, plus = 0;
};

// The three reflection sums about c - s, c and c + s over the odd offsets k = 1, 3, 5 ... <= P
// (every second pair is skipped). Indexes are checked against the grid arrays only.
Sums reflectionSums(const rt::ObsArray& g, Integer c, Integer s, Integer P)
{
    Sums r;
    for (long long k = 1; k <= P; k += 2) {
        const double dm = g(c - s + k) - g(c - s - k);
        const double d0 = g(c + k) - g(c - k);
        const double dp = g(c + s + k) - g(c + s - k);
        r.minus = fin(r.minus + dm * dm);
        r.zero = fin(r.zero + d0 * d0);
        r.plus = fin(r.plus + dp * dp);
    }
    return r;
}

} // namespace

KweeResult KweeVanWoerden(KweeGrid& ses, const rt::ObsArray& t, const rt::ObsArray& m, Integer count, Integer first,
                          Integer last, Integer M, Integer s, double f)
{
    KweeInterpolate(ses, t, m, count, first, last, M);
    const Integer K = i16(2 * M);
    const rt::ObsArray& gridT = ses.KweeGridT;
    const rt::ObsArray& gridMag = ses.KweeGridMag;

    // Start at the first largest grid magnitude.
    KweeResult r;
    Integer c = 0;
    double largest = -99;
    for (int i = 0; i <= K; ++i) {
        if (gridMag(i) > largest) {
            largest = gridMag(i);
            c = i16(i);
        }
    }
    r.startIndex = c;

    int counter = 0;
    Sums sums;
    for (;;) {
        const Integer L = c >= M ? i16(K - c) : c;
        const Integer P = rt::CInt(L * f);
        sums = reflectionSums(gridMag, c, s, P);
        ++r.passes;
        if (counter > 7)
            break;
        if (sums.minus > sums.zero && sums.zero < sums.plus) {
            r.bracketed = true;
            break;
        }
        // Both shifts may happen in one pass, and then cancel.
        bool moved = false;
        if (sums.minus < sums.zero) {
            c = i16(c - 1);
            ++counter;
            moved = true;
        }
        if (sums.plus < sums.zero) {
            c = i16(c + 1);
            ++counter;
            moved = true;
        }
        // Tied sums that move nothing (all zero when P < 1, for one) would repeat the same pass
        // for ever: take the three times around this c, as when the counter runs out.
        if (!moved) {
            r.stalled = true;
            break;
        }
    }
    r.centre = c;
    r.shifts = counter;
    r.sMinus = sums.minus;
    r.sZero = sums.zero;
    r.sPlus = sums.plus;

    const double Tm = gridT(c - s);
    const double T0 = gridT(c);
    const double Tp = gridT(c + s);
    const double Sm = sums.minus;
    const double S0 = sums.zero;
    const double Sp = sums.plus;

    // S(T) = A T^2 + B T + C through the three points, as common-denominator numerators.
    const double A = fin(Sm * (T0 - Tp) + S0 * (Tp - Tm) + Sp * (Tm - T0));
    const double B = fin(Sm * (Tp * Tp - T0 * T0) + S0 * (Tm * Tm - Tp * Tp) + Sp * (T0 * T0 - Tm * Tm));
    const double C = fin(Sm * T0 * Tp * (T0 - Tp) + S0 * Tm * Tp * (Tp - Tm) + Sp * Tm * T0 * (Tm - T0));
    r.A = A;
    r.B = B;
    r.C = C;
    r.time = rt::div(-B, 2 * A);

    // sigma^2 = (4AC - B^2) / (4A^2 (Z - 1)), Z = N/4 with N the points of the range; the
    // absolute value of the numerator is taken.
    const double Z = (last - first + 1) / 4.0;
    const double q = std::abs(fin(4 * A * C - B * B));
    r.error = q > 0 ? rt::sqrt(rt::div(q, fin(4 * (A * A) * (Z - 1)))) : 0.0;
    r.completion = 1;
    return r;
}

} // namespace dip
