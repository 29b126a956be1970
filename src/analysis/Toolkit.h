// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#pragma once

// The observer's toolkit's part of a session, beside the session the program itself keeps:
// what the user told the toolkit (the file's time system, the system results are reported in,
// the star and the observatory, the ephemeris, the names a report carries) and what it worked
// out for the published results (their times in the reporting system, their bootstrap errors,
// Deeg's error of row 4). The windows of the toolkit and the console tools read and write it;
// the program's own windows never do.

#include "analysis/Bootstrap.h"
#include "analysis/Ephemeris.h"
#include "methods/kwee/DeegKwee.h"
#include "session/LightCurveData.h"
#include "times/JulianDate.h"
#include "times/SkyPosition.h"

#include <QString>

#include <array>
#include <optional>

namespace dip {

// What the toolkit knows of one published result row k.
struct ToolkitRow {
    // The row's time of minimum (HJDOffset plus the method's time, carried in two parts) in
    // ToolkitState::reportSystem, when a conversion was asked for.
    std::optional<times::JulianDate> convertedTime;
    // The bootstrap of the row's method with the user's own range and parameters.
    std::optional<BootstrapResult> bootstrap;
};

struct ToolkitState {
    // The time system of the loaded file's times, as the user states it or an imported file
    // says; Unstated counts as HJD(UTC), the program's own name for its times.
    TimeSystem fileSystem = TimeSystem::Unstated;
    // The system the results are to be reported in; Unstated: the file's own.
    TimeSystem reportSystem = TimeSystem::Unstated;
    std::optional<times::Star> star;
    std::optional<times::Site> site;

    // For report lines: from the imported file where it carries them, else as the user types.
    QString starName;
    QString filter;
    QString observerCode;

    std::optional<Ephemeris> ephemeris;

    std::array<ToolkitRow, 7> rows; // 1..6
    std::optional<DeegKweeResult> deeg;
};

// The toolkit's state of this session.
ToolkitState& Toolkit();
// Back to nothing known (a fresh session; the console tool at the start of a run).
void resetToolkit();

} // namespace dip
