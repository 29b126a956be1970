// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#pragma once

// One method's time of minimum as it leaves the program: in a CSV table, a JSON object or a
// report line for a minima database. (The session keeps its own result rows, ResultTable.h.)

#include "analysis/Ephemeris.h"
#include "session/LightCurveData.h"

#include <QString>

#include <limits>
#include <optional>

namespace dip {

struct ExportRow {
    int method = 0;  // 1 parabolic fit ... 6 sliding integrations
    double time = 0; // time of minimum, days
    // The method's estimated error, days; NaN when it gave none.
    double error = std::numeric_limits<double>::quiet_NaN();
    bool ticked = false; // "Use in Mean?"
    TimeSystem system = TimeSystem::Unstated;
    std::optional<OcValue> oc;            // when an ephemeris is given
    std::optional<double> bootstrapError; // days, where a bootstrap was run
    int points = 0;                       // points the method used; 0 when not known
};

// The method's name in exports and report lines: "parabola", "tracing", "bisector", "KvW",
// "Fourier", "sliding"; "" outside 1..6.
QString methodName(int method);

// The time system in words: "JD_UTC", "HJD_UTC", "BJD_TDB", "unstated".
QString timeSystemWord(TimeSystem system);

} // namespace dip
