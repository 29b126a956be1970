// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#pragma once

// Numbers as the program shows them.

#include "runtime/Integer.h"

#include <QString>

namespace dip {

// Sgn(x) * Fix(|x| * 10^n + 0.5) / 10^n: halves round away from zero.
double RoundTo(double x, rt::Integer n);

// The one number-to-text formatter of the program: value with the given number of decimals,
// right-aligned in width characters (see the steps in the implementation).
QString FormatFixed(double value, rt::Integer width, rt::Integer decimals);

// FormatFixed with the leading blanks removed, as the main window's result boxes show numbers.
QString FormatResult(double value);

} // namespace dip
