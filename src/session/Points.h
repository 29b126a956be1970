// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#pragma once

// The used points and their extents: the procedures that keep HJD/Mag/NumPts and the extents
// consistent with the loaded points, their deletion flags and the magnitude convention.

#include "runtime/Integer.h"

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

// The magnitude convention: index 0 "+Mags", 1 "-Mags (inverted)". Sets MagSign, rebuilds
// OrigMag from ReadMag (deletions kept), then CompactPoints, UpdateExtents, SnapshotExtents.
void ApplyMagSense(rt::Integer index);

// The light-curve editor's Delete (deleted = true) and Undelete of the point PickIdx: sets its
// flag, then CompactPoints and UpdateExtents only (the Full extents, and so the plot's scale,
// stay as they were).
void SetPickedDeleted(bool deleted);

} // namespace dip
