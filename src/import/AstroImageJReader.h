// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#pragma once

// AstroImageJ measurement tables: a header row of column names, then one row a measurement,
// separated by tabs (as AstroImageJ saves them) or by commas.
//
// Time: the first of the columns BJD_TDB, HJD_UTC, JD_UTC that the table has (the time
// system follows the column's name).
// Brightness: the column named by the caller, or else the first of Source_AMag_T1 (the
// target's magnitude), a column named Mag or Magnitude (case ignored), rel_flux_T1 (the
// target's relative flux). A column whose name holds "flux" is a flux and becomes the
// magnitude -2.5 log10(flux) of the flux as it stands (no normalisation, so the magnitudes
// do not depend on which rows are taken); a flux that is not positive is an error of its line.
// A time or brightness "NaN" (a measurement that failed) leaves the row out, counted in the
// notes.

#include "import/ImportedRows.h"

namespace dip::import {

ImportedRows readAstroImageJ(const QString& path, const QString& column = QString());

// The time columns in the order they are preferred.
QStringList astroImageJTimeColumns();

} // namespace dip::import
