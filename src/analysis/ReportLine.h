// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#pragma once

// The report line of a time of minimum, laid out in fixed columns in the manner of the lists of
// minima that observers' associations and bulletins publish (one minimum a line: star, time,
// error, cycle, O - C, filter, observer, method). Columns, counted from 1:
//
//    1-20  star name, left-aligned (a longer name is written whole and moves what follows)
//      21  blank
//   22-34  time of minimum, 5 decimals, right-aligned: the time as the results hold it, a full
//          Julian date when the light curve's times are ("2458739.92912")
//      35  blank
//   36-38  time system: "HJD" (heliocentric, UTC; also for times whose system the file did not
//          state, which the program calls HJD), "BJD" (barycentric, TDB), "JD " (geocentric)
//      39  blank
//   40-46  error, days, 5 decimals ("0.00013"); blank when the method gave none
//      47  blank
//   48-56  cycle number E, right-aligned: whole for a primary, ".5" for a secondary; blank
//          without an ephemeris
//      57  blank
//   58-65  O - C, days, signed, 5 decimals ("+0.00021", "-0.00105"); blank without an ephemeris
//      66  blank
//   67-72  filter ("V", "Ic", "TESS", "CV" for clear), left-aligned
//      73  blank
//   74-79  observer code, left-aligned
//      80  blank
//   81-88  method: "parabola", "tracing", "bisector", "KvW", "Fourier" or "sliding"
//      89  blank
//   90-94  number of points the method used, right-aligned; blank when not known
//
// A line is 94 characters (more only when a name, filter or code is longer than its column).
// No trailing blanks are cut, so every line has the same length.

#include "analysis/ResultRow.h"

#include <QString>

#include <vector>

namespace dip {

// What a report says about the observation beyond the result itself.
struct ReportInfo {
    QString star;
    QString filter;
    QString observer;
};

// "HJD", "BJD" or "JD " for the report's system column.
QString reportSystem(TimeSystem system);

// One line, without its line end.
QString reportLine(const ExportRow& row, const ReportInfo& info);

// One line per row, each ended by "\n".
QString reportLines(const std::vector<ExportRow>& rows, const ReportInfo& info);

} // namespace dip
