// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#include "analysis/WeightedMean.h"

#include <cmath>

namespace dip {

WeightedMean weightedMean(const std::vector<std::pair<double, double>>& pairs)
{
    WeightedMean r;
    bool haveBase = false;
    double base = 0, sw = 0, swd = 0;
    for (const auto& [t, e] : pairs) {
        if (!std::isfinite(t) || !std::isfinite(e) || !(e > 0))
            continue;
        if (!haveBase) {
            base = t;
            haveBase = true;
        }
        const double w = 1 / (e * e);
        if (!std::isfinite(w))
            continue;
        sw += w;
        swd += w * (t - base);
        ++r.used;
    }
    if (r.used == 0 || !(sw > 0) || !std::isfinite(sw))
        return WeightedMean{};
    r.valid = true;
    const double offset = swd / sw;
    r.mean = base + offset;
    r.standardError = 1 / std::sqrt(sw);
    if (r.used > 1) {
        double chi2 = 0;
        for (const auto& [t, e] : pairs) {
            if (!std::isfinite(t) || !std::isfinite(e) || !(e > 0) || !std::isfinite(1 / (e * e)))
                continue;
            const double d = (t - base - offset) / e;
            chi2 += d * d;
        }
        r.reducedChiSquare = chi2 / (r.used - 1);
    }
    return r;
}

} // namespace dip
