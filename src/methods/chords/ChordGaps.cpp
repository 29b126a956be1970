// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#include "methods/chords/ChordGaps.h"

#include "methods/chords/BisectChords.h"

#include <algorithm>
#include <vector>

namespace dip {

ChordGaps FindChordGaps(const rt::ObsArray& t, const rt::ObsArray& m, rt::Integer n, rt::Integer Idx1, rt::Integer Idx2,
                        rt::Integer Idx3, rt::Integer Idx4)
{
    ChordGaps g;
    const long long count = std::min<long long>(n, rt::ObsArray::upper);
    std::vector<double> spacing;
    for (long long i = 2; i <= count; ++i) {
        const double d = t(i) - t(i - 1);
        if (d > 0)
            spacing.push_back(d);
    }
    if (spacing.empty())
        return g;
    const auto middle = spacing.begin() + std::ptrdiff_t(spacing.size() / 2);
    std::nth_element(spacing.begin(), middle, spacing.end());
    const double median = *middle;

    // The two points a crossing is read between; a partner at an end of the curve has no
    // point beyond it (the method reads the empty slot there), and is not counted.
    auto crossing = [&](long long a, long long b) {
        if (a < 1 || b > count)
            return;
        ++g.chords;
        const double width = (t(b) - t(a)) / median;
        g.widest = std::max(g.widest, width);
        if (width > ChordGaps::gapSpacings)
            ++g.acrossAGap;
    };
    for (long long i = std::max<long long>(Idx1, 1); i <= std::min<long long>(Idx2, count); ++i) {
        const long long j = LeftPartner(m, rt::Integer(count), i);
        crossing(j, j + 1);
    }
    for (long long i = std::max<long long>(Idx3, 1); i <= std::min<long long>(Idx4, count); ++i) {
        const long long j = RightPartner(m, i);
        crossing(j - 1, j);
    }
    return g;
}

} // namespace dip
