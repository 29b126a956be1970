// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#pragma once

// The results written to a file by "Analysis" > "Export results…": a CSV table (ResultExport.h),
// report lines (ReportLine.h) or a JSON document:
//
//   {"star": "CM Dra", "filter": "TESS", "observer": "XYZ",
//    "ephemeris": {"t0": 2459000.3, "period": 1.268, "secondary": false},   (when one is given)
//    "results": [{"method": 4, "name": "KvW", "time": 2459000.51235, "error": 0.00016,
//                 "ticked": true, "system": "HJD_UTC", "cycle": 7024, "o_c": 0.00021,
//                 "bootstrap_error": 0.00019, "points": 61}, ...]}
//
// "cycle" and "o_c" only with an ephemeris, "bootstrap_error" and "points" only where known;
// numbers with 17 significant digits; one line, ended by "\n".

#include "analysis/Ephemeris.h"
#include "analysis/ReportLine.h"
#include "analysis/ResultRow.h"

#include <QString>

#include <optional>
#include <vector>

namespace dip {

enum class ExportFormat { Csv, Json, Report };

QString resultsJson(const std::vector<ExportRow>& rows, const ReportInfo& info,
                    const std::optional<Ephemeris>& ephemeris);

// The whole text of a file in format.
QString exportText(ExportFormat format, const std::vector<ExportRow>& rows, const ReportInfo& info,
                   const std::optional<Ephemeris>& ephemeris);

// Writes text to path as UTF-8, replacing what was there. False, with "Cannot write PATH: why"
// in *error, when the file cannot be written whole.
bool writeTextFile(const QString& path, const QString& text, QString* error);

} // namespace dip
