// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#pragma once

// The published results in the time system a database asks for: each result row's time of
// minimum, carried in two parts (HJDOffset, a whole day, and the method's own time) so that no
// digit of either is lost, converted from the file's time system to the reporting system for
// the star (and the site) the user gave. Only the result times are converted: the light curve
// is fitted in its own system, which over one night differs from any other by a slowly varying
// shift.

#include "session/LightCurveData.h"
#include "times/JulianDate.h"
#include "times/TimeConversion.h"

#include <QString>

#include <vector>

namespace dip {

// Result row k's time of minimum (k = 1..6) as HJDOffset + the method's time, in two parts.
times::JulianDate PublishedTime(int method);

// What the user states the loaded file's times to be: Toolkit().fileSystem, and the session's
// own note of it (the plots' time axis is named after it).
void StateFileSystem(TimeSystem system);

// A star and a reporting system are set in Toolkit(): results can be converted.
bool ConversionSetUp();

// A time in the file's system (Unstated: HJD(UTC)) in Toolkit().reportSystem, with Toolkit()'s
// star and site. Needs ConversionSetUp().
times::Converted ConvertToReportSystem(const times::JulianDate& time);

struct RowConversion {
    int method = 0;
    times::Converted converted;
};

// Fills Toolkit().rows[k].convertedTime of the published rows (method 0: all six; a single k:
// that row) and empties it for rows that are not published or cannot be converted. Returns
// the conversion of each published row asked for, its error or warning included. Without
// ConversionSetUp() every convertedTime asked for is emptied and nothing is returned.
std::vector<RowConversion> ConvertPublishedResults(int method = 0);

} // namespace dip
