// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#pragma once

// TESS and Kepler light-curve files (FITS), read with CFITSIO: the first binary table that has
// a TIME column (TESS's and Kepler's "LIGHTCURVE").
//
// Time: TIME is BTJD or BKJD, days since BJDREFI + BJDREFF; the full BJD_TDB is
// BJDREFI + (BJDREFF + TIME). A table whose TIMESYS is not TDB, or without BJDREFI, is refused.
// Brightness: the column named by the caller, else PDCSAP_FLUX, else SAP_FLUX; the magnitude is
// -2.5 log10 of the flux as it stands (e-/s for TESS and Kepler: magnitudes near -10, a
// constant that no time of minimum depends on).
// Rows left out, counted in the notes: QUALITY other than 0, a time or flux that is NaN, a flux
// that is not positive.
// Star name from OBJECT (the table's header, else the primary one), filter from TELESCOP.
//
// CFITSIO is called under one lock, so readers on several threads take turns.

#include "import/ImportedRows.h"

namespace dip::import {

ImportedRows readFitsLightCurve(const QString& path, const QString& column = QString());

} // namespace dip::import
