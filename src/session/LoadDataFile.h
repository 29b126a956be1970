// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#pragma once

#include <QString>

namespace dip {

// The message a data file without a comma in its second line is answered with.
QString csvFormatMessage();

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
