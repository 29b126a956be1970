// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#pragma once

// The light-curve editor's procedures (frmPlotData and frmAction): the drawing of the whole
// curve as loaded, the left-click pick of the nearest observation and its blue cross, and the
// texts frmAction shows for it. Delete and Undelete are SetPickedDeleted (session/Pointss.h).

#include "plotting/FormPort.h"
#include "runtime/Integer.h"

#include <QString>

namespace dip {

// Clears the form and draws every loaded point with the Full extents into the light-curve
// box of the form's size (SetStandardPlotBox): frame, grid and axes, then in red a disc for a
// used point and a cross for a deleted one. Deletions do not rescale the plot.
void PlotLightCurve(Canvas& form);

// A left click at form position (x, y), taken in single precision: turns it into a time and
// a magnitude with the Full extents and the box of the editor's own last drawing, and picks the loaded
// point (deleted ones included) nearest in data units, D = (dMag)^2 + (dHJD)^2, a day weighing
// as much as a magnitude. The comparison is strict, so of equally near points the lowest
// index wins, and only D < 9999 picks; otherwise PickIdx stays 0. Sets and returns PickIdx.
rt::Integer PickNearestPoint(const PlotTransform& box, double x, double y);

// The blue cross over the picked point: 200 twips each way, level and upright, clipped to the
// plot box.
void MarkPick(Canvas& form);

// What frmAction shows for the pick: Text1 the index, Text2 the time (12 wide, 6 decimals),
// Text3 the magnitude (8 wide, 3 decimals). The two values come from the compacted HJD/Mag at
// the index of the full list; deliberately so: once points are deleted they are those of the
// PickIdx-th used point, while the cross marks the picked one.
struct PickTexts {
    QString index;
    QString time;
    QString magn;
};
PickTexts PickedPointTexts();

} // namespace dip
