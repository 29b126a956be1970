// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#include "analysis/OcFit.h"

#include <cmath>

namespace dip {

std::optional<EphemerisFit> fitEphemeris(const Ephemeris& ephemeris, const std::vector<OcFitPoint>& points)
{
    const int n = static_cast<int>(points.size());
    if (n < 2)
        return std::nullopt;
    bool weighted = true;
    for (const OcFitPoint& p : points)
        weighted = weighted && std::isfinite(p.error) && p.error > 0;
    auto weight = [weighted](const OcFitPoint& p) { return weighted ? 1.0 / (p.error * p.error) : 1.0; };

    // Centred on the weighted mean cycle: the slope then comes from sums of small numbers, and
    // the intercept's variance splits into 1 / sum(w) and the slope's share.
    double sw = 0, swe = 0, swy = 0;
    for (const OcFitPoint& p : points) {
        const double w = weight(p);
        sw += w;
        swe += w * p.cycle;
        swy += w * p.oc;
    }
    const double meanE = swe / sw;
    const double meanY = swy / sw;
    double sxx = 0, sxy = 0;
    for (const OcFitPoint& p : points) {
        const double w = weight(p);
        const double u = p.cycle - meanE;
        sxx += w * u * u;
        sxy += w * u * (p.oc - meanY);
    }
    if (!(sxx > 0))
        return std::nullopt;

    EphemerisFit f;
    f.count = n;
    f.weighted = weighted;
    f.dof = n - 2;
    f.slope = sxy / sxx;
    f.intercept = meanY - f.slope * meanE;
    for (const OcFitPoint& p : points) {
        const double r = p.oc - f.ocAt(p.cycle);
        f.chi2 += weight(p) * r * r;
    }
    // var(b) = 1 / Sxx, var(a) = 1 / sum(w) + meanE^2 / Sxx, both times chi2 / dof.
    if (f.dof > 0) {
        const double scale = f.chi2 / f.dof;
        f.sigmaPeriod = std::sqrt(scale / sxx);
        f.sigmaT0 = std::sqrt(scale * (1.0 / sw + meanE * meanE / sxx));
    }
    f.t0 = ephemeris.t0 + f.intercept;
    f.period = ephemeris.period + f.slope;
    return f;
}

} // namespace dip
