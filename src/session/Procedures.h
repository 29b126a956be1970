// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#pragma once

#include "runtime/Integer.h"

#include <QString>

namespace dip {

// Rebuilds HJD/Mag/NumPts from the points not deleted, in file order, and shows NumPts in the
// main window's "Edited # data points" label. Entries above the new NumPts keep old values.
void CompactPoints();

// Extents of the used points: sentinels 99999999 / -99999999 / 99 / -99, strict comparisons
// (of equal values the first wins), then a 0.002-day margin on the time axis. The magnitude
// indexes are not reset: when no point beats a sentinel they keep their previous values.
void UpdateExtents();

// Copies the extents into their Full copies and sets FoldHJD = RoundTo(HJD(IdxMagMax), 4).
void SnapshotExtents();

// Sgn(x) * Fix(|x| * 10^n + 0.5) / 10^n: halves round away from zero.
double RoundTo(double x, rt::Integer n);

// The one number-to-text formatter of the program: value with the given number of decimals,
// right-aligned in width characters (see the steps in the implementation).
QString FormatFixed(double value, rt::Integer width, rt::Integer decimals);

// FormatFixed with the leading blanks removed, as the main window's result boxes show numbers.
QString FormatResult(double value);

// The magnitude convention: index 0 "+Mags", 1 "-Mags (inverted)". Sets MagSign, rebuilds
// OrigMag from ReadMag (deletions kept), then CompactPoints, UpdateExtents, SnapshotExtents.
void ApplyMagSense(rt::Integer index);

// Writes a method's result by the result-row convention: Text k the time (plus HJDOffset),
// Text k+6 the error, each FormatFixed(value, 14, 5) without leading blanks, and ticks Check k.
void PublishResult(int method, double time, double error);

} // namespace dip

namespace dip {

// The light-curve editor's Delete (deleted = true) and Undelete of the point PickIdx: sets its
// flag, then CompactPoints and UpdateExtents only (the Full extents, and so the plot's scale,
// stay as they were).
void SetPickedDeleted(bool deleted);

} // namespace dip
