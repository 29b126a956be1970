// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#pragma once

#include "runtime/Integer.h"

namespace rt {

// Floating arithmetic never yields inf or NaN: a division by zero raises "Division by zero" (11),
// 0/0 and any result too large for a double raise "Overflow" (6), and the square root of a
// negative number raises "Invalid procedure call or argument" (5).
double div(double a, double b);
double sqrt(double x);
// Checks a computed value: an infinite or undefined result raises "Overflow" (6).
double fin(double x);

// Int: the largest whole number not above x (-2.5 gives -3).
double Int(double x);
// Fix: x with its fraction cut off toward zero (-2.5 gives -2).
double Fix(double x);
// Sgn: -1, 0 or 1.
int Sgn(double x);
// The conversion of a number to a 16-bit integer: rounded to the nearest, halves to even
// (2.5 gives 2, 3.5 gives 4); out of range raises "Overflow" (6).
Integer CInt(double x);
// A value held in single precision, as mouse positions arrive: x rounded to the nearest float.
// Kept out of line and through a volatile so that no optimisation folds the round trip away.
double Single(double x);
// Powers as the runtime's ^ operator computes them.
double pow(double x, double y);

} // namespace rt
