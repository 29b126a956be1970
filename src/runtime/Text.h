// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#pragma once

#include "runtime/Integer.h"

#include <QString>

namespace rt {

// The text of a number: at most 15 significant digits (C's %.15G), with the "0" before the
// point dropped (0.5 gives ".5", -0.5 gives "-.5"). Values below 1E-04 or from 1E+15 up come
// out in exponent form ("3E-05").
QString NumText(double x);

// Str: the text of a number with a leading blank in place of the sign when it is not negative
// (12 gives " 12").
QString Str(double x);

// Val: the number at the start of a text. Leading blanks and tabs are skipped and the longest
// numeric prefix is read (sign, digits, point, exponent); no prefix gives 0 ("abc" gives 0,
// "12abc" gives 12).
double Val(const QString& text);

// The runtime's implicit conversion of a whole text to a number: blanks around the number are
// allowed, anything else that is not a number raises "Type mismatch" (13); a number too large
// for a double raises "Overflow" (6).
double CDbl(const QString& text);

// The same conversion to a 16-bit integer, rounded halves to even; beyond 16 bits raises 6.
Integer CIntText(const QString& text);

// Tells whether the whole text (blanks around allowed) is a number, and gives it.
bool parseNumber(const QString& text, double* value);

// LTrim / Trim of blanks.
QString LTrim(const QString& s);
QString Trim(const QString& s);

} // namespace rt
