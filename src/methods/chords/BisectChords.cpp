// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#include "methods/chords/BisectChords.h"

#include "runtime/Numeric.h"

namespace dip {

using rt::fin;

long long LeftPartner(const rt::ObsArray& m, rt::Integer n, long long i)
{
    long long j = n;
    while (m(j) < m(i))
        --j;
    return j;
}

long long RightPartner(const rt::ObsArray& m, long long i)
{
    long long j = 1;
    while (m(j) < m(i))
        ++j;
    return j;
}

ChordsResult BisectChords(const rt::ObsArray& t, const rt::ObsArray& m, rt::Integer n, rt::Integer Idx1,
                          rt::Integer Idx2, rt::Integer Idx3, rt::Integer Idx4)
{
    int N = 0;
    double S = 0;
    double Q = 0;
    auto add = [&](double h) {
        S = fin(S + h);
        Q = fin(Q + h * h);
    };

    for (long long i = Idx1; i <= Idx2; ++i) {
        ++N;
        const long long j = LeftPartner(m, n, i);
        const double c = fin(t(j) + rt::div(fin((m(i) - m(j)) * (t(j + 1) - t(j))), m(j + 1) - m(j)));
        add((t(i) + c) / 2);
    }

    for (long long i = Idx3; i <= Idx4; ++i) {
        ++N;
        const long long j = RightPartner(m, i);
        const double c = fin(t(j - 1) + rt::div(fin((m(i) - m(j - 1)) * (t(j) - t(j - 1))), m(j) - m(j - 1)));
        add((t(i) + c) / 2);
    }

    ChordsResult r;
    r.midpoints = N;
    r.time = rt::div(S, N);
    r.error = rt::sqrt(rt::div(fin(Q - r.time * S), N - 1));
    return r;
}

} // namespace dip
