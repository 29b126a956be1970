// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#pragma once

// The handlers of the bisect-chords window (frmPlott3) as procedures on its FormPort: the
// four-click picking of a left and a right range on the session-wide ChordPick, the compute
// button and Undo. The window draws the light curve itself and calls these for the rest.

#include "methods/chords/BisectChords.h"
#include "plotting/FormPort.h"
#include "plotting/RangePicking.h"

#include <optional>

namespace dip {

// Form_Load: both stages and RangeSet back to 0, the first prompt.
void ChordsFormLoad(FormPort& form);

// After the light curve when shown again from the main window: if both ranges are complete,
// the four markers at the clicked times on the current scale.
void ChordsRedrawOverlays(FormPort& form);

// Form_MouseDown: only right-clicks inside the plot box count. The side is decided against
// OrigHJD(IdxMagMax), the full list read at an index of the edited list (a mix kept
// deliberately); each side takes its start, then its end, then ignores clicks until Undo.
void ChordsMouseDown(FormPort& form, const Click& click);

// "Bisect Chords" (Command1_Click): runs when RangeSet and Idx1 and Idx2 are non-zero, and
// returns the result; otherwise nothing happens.
std::optional<ChordsResult> ChordsBisectClick(FormPort& form);

// "Undo" (Command2_Click), apart from clearing and redrawing the plot. Indexes and times stay.
void ChordsUndoClick(FormPort& form);

} // namespace dip
