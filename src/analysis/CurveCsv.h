// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#pragma once

// A light curve of any length from a CSV file, for timing every eclipse of it. The rows are those
// the Open dialog reads (time, magnitude, further columns ignored, an optional header line), but
// there is no limit of 1000 rows and every fault is reported with its line.

#include "session/LightCurveData.h"

#include <QString>

namespace dip {

// Reads path. Line 1 is a header when it holds anything but blanks, digits, "+", "-", "." and
// ","; blank lines and lines starting with "#" are skipped. Each data line needs a time and a
// magnitude in its first two comma-separated fields. The rows come back sorted by time (a
// stable sort: equal times keep the file's order); source is set to path.
// Throws InputError naming the file and the line: a file that cannot be read, a line with one
// field, a field that is not a number, a file without data rows.
LightCurve readCurveCsv(const QString& path);

// The same from text already read; name stands for the file in messages.
LightCurve parseCurveCsv(const QByteArray& text, const QString& name);

} // namespace dip
