// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#pragma once

// The AAVSO extended format, as observers submit to the AAVSO: parameter lines
//   #TYPE=EXTENDED  #OBSCODE=...  #SOFTWARE=...  #DELIM=,  #DATE=JD|HJD|BJD  #OBSTYPE=...
// then one observation a line, NAME,DATE,MAG,MERR,FILT,TRANS,MTYPE,CNAME,CMAG,KNAME,KMAG,
// AMASS,GROUP,CHART,NOTES (only the first five are read). Other lines starting with "#" are
// comments; blank lines are skipped. #DELIM is one character or the word "tab" or "comma"
// (a comma when not given). #DATE gives the time system: JD is JD(UTC), HJD is HJD(UTC),
// BJD is BJD_TDB; EXCEL dates are refused. A magnitude "<14.2" (fainter than) cannot be timed
// and is left out, counted in the notes. All rows must be of one star (NAME).

#include "import/ImportedRows.h"

namespace dip::import {

// Every observation of every filter, sorted by time; throws ImportError.
ImportedRows readAavsoExtended(const QString& path);

} // namespace dip::import
