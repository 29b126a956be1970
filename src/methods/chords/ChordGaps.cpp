// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#include "methods/chords/ChordGaps.h"

#include <algorithm>
#include <vector>

namespace dip {

ChordGaps FindChordGaps(const rt::ObsArray& t, const rt::ObsArray& m, rt::Integer n, rt::Integer Idx1, rt::Integer Idx2,
                        rt::Integer Idx3, rt::Integer Idx4)
{
    ChordGaps g;
    const long count = std::min<long>(n, rt::ObsArray::upper);
    std::vector<double> spacing;
    for (long i = 2; i <= count; ++i) {
        const double d = t(i) - t(i - 1);
        if (d > 0)
            spacing.push_back(d);
    }
    if (spacing.empty())
        return g;
    const auto middle = spacing.begin() + std::ptrdiff_t(spacing.size() / 2);
    std::nth_element(spacing.begin(), middle, spacing.end());
    const double median = *middle;

    auto crossing = [&](long a, long b) {
        if (a < 1 || b > count)
            return;
        ++g.chords;
        const double width = (t(b) - t(a)) / median;
        g.widest = std::max(g.widest, width);
        if (width > ChordGaps::gapSpacings)
            ++g.acrossAGap;
    };
    // A left point's partner: the first point from the end at least as faint; the crossing
    // lies between it and the point after it. A right point's: the first from the start, the
    // crossing between the point before it and it.
    for (long i = std::max<long>(Idx1, 1); i <= std::min<long>(Idx2, count); ++i) {
        long j = count;
        while (j >= 1 && m(j) < m(i))
            --j;
        crossing(j, j + 1);
    }
    for (long i = std::max<long>(Idx3, 1); i <= std::min<long>(Idx4, count); ++i) {
        long j = 1;
        while (j <= count && m(j) < m(i))
            ++j;
        crossing(j - 1, j);
    }
    return g;
}

} // namespace dip
