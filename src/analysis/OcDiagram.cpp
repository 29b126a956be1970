// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#include "analysis/OcDiagram.h"

#include <cmath>

namespace dip {

bool OcPoint::secondary() const { return cycle != std::floor(cycle); }

std::vector<OcFitPoint> ocFitPoints(const std::vector<OcPoint>& points)
{
    std::vector<OcFitPoint> out;
    out.reserve(points.size());
    for (const OcPoint& p : points)
        out.push_back({p.cycle, p.oc, p.error});
    return out;
}

void fitLine(OcDiagram& diagram) { diagram.fit = fitEphemeris(diagram.ephemeris, ocFitPoints(diagram.points)); }

} // namespace dip
