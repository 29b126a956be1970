// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#pragma once

// Reading a light curve from the files observers already have, whatever their kind: the kind
// is told by the content, never by the name.
//
//   FITS            the file starts with the FITS card "SIMPLE  =";
//   AAVSO extended  a "#TYPE=..." parameter line among the "#" lines at its top;
//   AstroImageJ     its first line that is not blank names a column BJD_TDB, HJD_UTC or
//                   JD_UTC (between tabs or commas);
//   comma-separated anything else: the program's own format, read by its own reader (which
//                   answers files of no known kind as it always has).
//
// A light curve is then made of the rows in two steps, so that a window can ask between them:
// readRows gives every usable row, sorted by time, with the filters present; selectRows takes
// one filter, a time window, and refuses more than 1000 observations. Nothing here touches
// the session: the LightCurve is handed to the same install step as the CSV reader's.

#include "import/ImportedRows.h"

#include <optional>

namespace dip::import {

// Throws ImportError when the file cannot be read.
FileFormat detectFormat(const QString& path);

// Every usable row of an AAVSO, AstroImageJ or FITS file (column: the brightness column to
// read, empty for the automatic choice). Throws ImportError; for a comma-separated file too,
// which is not an importer's to read.
ImportedRows readRows(const QString& path, FileFormat format, const QString& column = QString());

struct ImportOptions {
    QString filter;                   // empty: the most frequent (defaultFilter)
    std::optional<TimeWindow> window; // empty: every row
    QString column;                   // empty: the automatic brightness column
};

// The filter, then the window, then the 1000-observation limit. Throws ImportError: a filter
// the file does not have (naming those it has), a window with no observation, or more than
// 1000 observations (naming their count and time span). A filter asked of a file with no
// per-row filters must be the file's own (TESS), or empty.
LightCurve selectRows(const ImportedRows& rows, const ImportOptions& options);

// detectFormat, readRows and selectRows in one.
LightCurve importLightCurve(const QString& path, const ImportOptions& options = ImportOptions());

} // namespace dip::import
