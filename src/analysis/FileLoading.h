// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#pragma once

// A light-curve file of any kind into the session, the kind told by its content: the
// program's own comma-separated files through its own reader, AAVSO, AstroImageJ and FITS files
// through the importers, and every one of them into the session through the same install step.
// In three steps, so that a window can ask the user between them:
//
//   PrepareLightCurveFile  reads the file (every row, no limit; imports sorted by time);
//   ChooseLightCurveRows   takes one filter and a time window, and holds to 1000 observations;
//   InstallFileCurve       installs the rows as the Open dialog's load does.
//
// Every problem is an ImportError naming the file, the line where there is one, and what was
// wrong, thrown before anything of the session is touched; the reader's runtime errors are
// turned into such messages too, so this path never ends the program.

#include "import/Import.h"
#include "import/ImportError.h"
#include "import/ImportedRows.h"
#include "session/LightCurveData.h"

#include <QString>

#include <vector>

namespace dip {

struct PreparedFile {
    QString path;
    import::FileFormat format = import::FileFormat::Csv;
    // Every row: for a comma-separated file in the file's order, with no filters; for an
    // import sorted by time, with the filter of each row where the file has them.
    import::ImportedRows rows;
};

// Reads the file at path. Throws import::ImportError.
PreparedFile PrepareLightCurveFile(const QString& path);

// The filter (empty: the most frequent when there are several), then the window, then the
// 1000-observation limit. Throws import::ImportError.
LightCurve ChooseLightCurveRows(const PreparedFile& file, const import::ImportOptions& options);

// Checks that the session can hold the rows (finite times and magnitudes inside the bounds its
// extents assume) and installs them as loading does: DataDir, DataName and DataPath of the
// file, the install step, the result boxes emptied. Throws import::ImportError, before
// anything is changed, for rows the session cannot hold.
void InstallFileCurve(const PreparedFile& file, const LightCurve& curve);

// The times of the rows of one filter (empty: the most frequent; ignored when the rows carry
// no filters), for the time-window prompt. Throws import::ImportError for a filter the file
// does not have.
std::vector<double> FilterTimes(const PreparedFile& file, const QString& filter);

} // namespace dip
