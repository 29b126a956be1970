// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#pragma once

// What an O - C diagram shows, apart from how it is drawn: the timed minima, the ephemeris they
// are compared with and the straight line fitted through them.

#include "analysis/OcFit.h"

#include <QString>

#include <optional>
#include <vector>

namespace dip {

struct OcPoint {
    double cycle = 0;
    double time = 0;  // time of minimum, days
    double oc = 0;    // days
    double error = 0; // days; zero or less when not known (no error bar)
    bool secondary() const;
};

enum class OcAxis { Cycle, Time };

struct OcDiagram {
    std::vector<OcPoint> points;
    Ephemeris ephemeris;
    OcAxis axis = OcAxis::Cycle;
    QString title;                            // the star, or the light curve's file
    QString timeName = QStringLiteral("BJD"); // the time axis says "Time (BJD)"
    std::optional<EphemerisFit> fit;
};

// The points as the fit takes them.
std::vector<OcFitPoint> ocFitPoints(const std::vector<OcPoint>& points);

// Fits the diagram's points and keeps the line in it (none when they cannot be fitted).
void fitLine(OcDiagram& diagram);

// The picture files a diagram is saved to (dipscope_paint draws them).
enum class PlotFormat { Png, Svg, Pdf };

// The format a file name asks for by its suffix (.png, .svg, .pdf, any case); none otherwise.
std::optional<PlotFormat> plotFormatFor(const QString& path);

} // namespace dip
