// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#pragma once

#include "session/LightCurveData.h"

#include <QString>

namespace dip {

// The message a data file without a comma in its second line is answered with.
QString csvFormatMessage();

// The CSV reader as a value: the rows of the file at path, the comma count of its line 2, whether
// line 1 was skipped and the row count (-1 with six or more commas: no row is read). A line 2
// without a comma gives commas == 0 and no rows. Raises the reader's runtime errors at the
// moments it always has: 53 or 76 when the file cannot be opened, 62 for fewer than two lines
// or a row cut short by the end of the file, 13 for a time or magnitude that is not a number,
// 9 when row maxRows + 1 is met (maxRows < 0: no limit).
// When place is given and a runtime error is raised, *place says where the reader stood.
struct CsvPlace {
    int line = 0; // the file's line number (blank lines counted); 0 before any line was read
    // The field of the row being read: 1 the time, 2 the magnitude, 3 and on the further
    // columns; 0 while the first two lines are looked at, before any row.
    int column = 0;
    QString field; // that field's text
};
LightCurve readCsv(const QString& path, int maxRows = 1000, CsvPlace* place = nullptr);

// Puts a light curve into the session as loading does (the reader's steps after the rows are
// read): ReadHJD/ReadMag, NumOrig, NumPts, the sign, the extents and their Full copies, the
// title, the editor hidden, the ticks cleared, the methods' start state, the means emptied, the
// count labels, and "+Mags". More than 1000 rows raise 9 as the reader does.
void InstallLightCurve(const LightCurve& curve);

// Reads the light curve at DataPath into the session and resets everything that depended on
// the previous one. Returns false when the file was refused with csvFormatMessage() (the
// session is then untouched). Unusable files raise the runtime's errors: 53 or 76 when the
// file cannot be opened, 62 for fewer than two lines or a row cut short by the end of the
// file, 9 for more than 1000 rows, 13 for a time or magnitude that is not a number.
bool LoadDataFile();

// What the open dialog's Open does: DataDir, DataName, DataPath = DataDir + separator +
// DataName, the reader, then the main window's twelve result boxes emptied.
bool OpenDataFile(const QString& dir, const QString& name);

// DataDir joined with DataName by the platform's separator.
QString DataPathOf(const QString& dir, const QString& name);

} // namespace dip
