// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#pragma once

// A Julian date carried in two parts, a whole number of days and the part of a day, as the
// time-scale routines take it. One double holds a full JD (2459123.51234) only to about
// 4.7e-10 d (40 microseconds); the part of a day alone is held to 1e-17 d, so conversions
// that must be right to a few microseconds keep the parts apart from the text a user typed to
// the text printed.

#include <QString>

namespace dip::times {

struct JulianDate {
    double day = 0;      // a whole number of days (the JD at noon)
    double fraction = 0; // the part of a day, in [0, 1) once normalised

    // Splits one double: day = floor(jd), fraction = the rest (exact in binary).
    static JulianDate fromDouble(double jd);

    // The date as one double (rounded to the resolution of a full JD).
    double value() const { return day + fraction; }

    // The same date with day whole and fraction in [0, 1).
    JulianDate normalized() const;

    // The date later by days (days small: a time correction, not a date).
    JulianDate plusDays(double days) const;
};

// The difference a - b in days, computed part by part so that nothing is lost.
double daysBetween(const JulianDate& a, const JulianDate& b);

// Reads a decimal date such as "2459123.5123456789": the digits before the point become the
// day and those after it the fraction, each read exactly, so every typed digit counts. An
// exponent form ("2.4591235E6") is read as one double. Blanks around the text are allowed; a
// sign, letters or an empty text are not. Returns false (and leaves *date alone) when the text
// is not such a number.
bool parseJulianDate(const QString& text, JulianDate* date);

// The date with the given number of decimals (0 to 15), rounded half away from zero, with the
// carry into the day ("2459123.9999999999" + a rounding up gives "2459124.0000000000").
QString formatJulianDate(const JulianDate& date, int decimals);

} // namespace dip::times
