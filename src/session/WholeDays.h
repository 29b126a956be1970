// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#pragma once

// Full-precision times: the observer's toolkit's "Subtract whole days" switch (S().
// SubtractWholeDays; Times menu, dipscope-measure --reduce). A full Julian date leaves a fit only
// a few significant digits for the fraction of the day, so with the switch on a load sets
// HJDOffset to the whole day of the first data row and stores every time less it: the methods
// fit small times, and PublishResult adds HJDOffset back to every result. With the switch off a
// load is exactly what it always was.

#include "session/LightCurveData.h"

#include <QString>

#include <optional>
#include <vector>

namespace dip {

// A time in two parts, whole + fraction being the time exactly.
struct TimeParts {
    double whole = 0;
    double fraction = 0;
};

// The parts of a time as a file writes it: for a plain decimal ("2459123.38000", "-0.5",
// blanks around allowed) the digits before the point and those after it, each read on its own,
// so that "2459123.38000" gives 0.38000 as exactly as "0.38000" does; for anything else (an
// exponent form, a quoted text) the value's whole days toward zero and the rest.
TimeParts SplitTimeText(const QString& text, double value);
TimeParts SplitTimeValue(double value);

// Above this many days a time leaves the fits too few digits; the toolkit then suggests the
// switch.
constexpr double LargeTimeDays = 10;

// The whole day a load with the switch on sets apart: Int of the first data row's time (0 for
// a curve without rows).
double WholeDayOffset(const LightCurve& curve);

// The first of the times beyond LargeTimeDays (in magnitude), if any.
std::optional<double> FirstLargeTime(const std::vector<double>& times);

// The light curve in the session was loaded with the switch off and holds a time beyond
// LargeTimeDays (in magnitude): the toolkit's warning applies. The first such time of the file.
std::optional<double> LargeTimesWithoutOffset();

// The switch differs from what it was at the last load: a flip takes effect at the next load,
// the light curve in the session keeps its times. False while no file is loaded.
bool WholeDaysSwitchPending();

// The name of the time axis of the plots: the system the loaded file's times are in ("HJD",
// the program's own name, unless the file says "BJD" or "JD"), followed by the offset when one
// is set apart ("HJD − 2459123").
QString TimeAxisName();

// "HJD", "BJD", "JD": the short name of a time system (Unstated: "HJD").
QString TimeSystemShortName(TimeSystem system);

} // namespace dip
