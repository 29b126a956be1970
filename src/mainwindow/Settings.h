// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#pragma once

// The settings file "zzzdip.ini" in the current folder: seven lines of four 16-bit integers,
// the saved placements (left, top, width, height in twips) held in WinPos. Line 1 to 5 belong
// to frmPlott1..frmPlott5, line 6 to no window (read and written back unchanged), line 7 to
// frmPlotData.

#include <QString>

namespace dip {

// "zzzdip.ini": relative, so it lives in whatever folder the program was started in.
QString settingsFileName();

// Reads the seven lines into WinPos(1..7, 1..4), value by value, by the comma-separated input
// rules (an empty field reads as 0, a number is rounded to a 16-bit integer). Any failure - a
// missing file, a short file, a value that is not a number or does not fit - ends the reading
// silently; the values not read by then keep what they held (0 at start).
void ReadSettings(const QString& path = settingsFileName());

// Replaces path with the seven lines of WinPos, each "left,top,width,height" and a line break.
// Not protected: a file or folder that cannot be written raises "Path/File access error" (75),
// a failed write "Device I/O error" (57).
void WriteSettings(const QString& path = settingsFileName());

} // namespace dip
