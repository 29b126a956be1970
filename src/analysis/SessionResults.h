// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#pragma once

// The session's published results as they leave the program (a CSV table, JSON, report lines,
// the O-C window): each row's time in the system the user reports in, with its E and O - C when
// an ephemeris is given and its bootstrap error where one was run.

#include "analysis/ReportLine.h"
#include "analysis/ResultRow.h"
#include "analysis/Toolkit.h"

#include <vector>

namespace dip {

// The system the results are reported in: the one asked for, else the file's own.
TimeSystem resultSystem(const ToolkitState& toolkit);

// Row k's result (k = 1..6) as exported; nothing when the method has published no time. The
// time is the converted one when the toolkit holds it, else the main window's (the method's
// time plus HJDOffset). A result counts as a primary or a secondary by the ephemeris: the
// nearest half cycle when it has secondaries at phase 0.5.
std::optional<ExportRow> sessionResult(int k, const ToolkitState& toolkit);

// The points method k's last run used, as its window's range says: the picked range of the
// parabola, Kwee and van Woerden and the Fourier fit, both chords' ranges, the sliding
// integrations' stretch; 0 for the tracing paper and whatever is not known.
int sessionPoints(int k);

// Every published row in the order 1..6; only the ticked ones when tickedOnly.
std::vector<ExportRow> sessionResults(const ToolkitState& toolkit, bool tickedOnly = false);

// Star name, filter and observer code as the toolkit holds them.
ReportInfo toolkitReportInfo(const ToolkitState& toolkit);

} // namespace dip
