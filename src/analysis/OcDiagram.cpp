// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#include "analysis/OcDiagram.h"

#include <QFileInfo>

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

std::optional<PlotFormat> plotFormatFor(const QString& path)
{
    const QString suffix = QFileInfo(path).suffix().toLower();
    if (suffix == QLatin1String("png"))
        return PlotFormat::Png;
    if (suffix == QLatin1String("svg"))
        return PlotFormat::Svg;
    if (suffix == QLatin1String("pdf"))
        return PlotFormat::Pdf;
    return std::nullopt;
}

} // namespace dip
