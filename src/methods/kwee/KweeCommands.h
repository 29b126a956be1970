// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#pragma once

// The handlers of the Kwee & van Woerden window (frmPlott4) as procedures on its FormPort, so
// the window, the console tool and the tests run the same code. The window draws the light
// curve itself (on load, on resize, after Undo) and calls these for everything else.

#include "methods/kwee/KweeVanWoerden.h"
#include "plotting/FormPort.h"
#include "plotting/RangePicking.h"

#include <optional>

namespace dip {

// The picker of frmPlott4 on its module-level record.
RangePicker kweePicker(FormPort& form);

// The design texts of the parameter boxes: Text1 (Stepp) "1", Text2 (Frac) ".9".
void KweeDesignTexts(FormPort& form);

// Form_Load: clears LeftSet, RightSet and RangeSet (Fitted stays) and shows the load prompt.
void KweeFormLoad(FormPort& form);

// After the light curve when shown again from the main window: if a range is set, the markers
// at the remembered times on the current scale.
void KweeRedrawOverlays(FormPort& form);

// Form_MouseDown.
void KweeMouseDown(FormPort& form, const Click& click);

// "Fit Kwee" (Command1_Click). Does nothing unless the range is ready and returns the method's
// result when it ran. Stepp is the whole text of Text1 converted to a 16-bit integer (halves to
// even), Frac the whole text of Text2 as a number; a text that is not a number raises 13.
std::optional<KweeResult> KweeFitClick(FormPort& form);

// "Undo" (Command2_Click), apart from clearing and redrawing the plot: RangeSet and Fitted
// cleared (the end flags stay), the main window's Text4, Text10 and Check4 emptied, the Undo
// prompt, empty index labels.
void KweeUndoClick(FormPort& form);

} // namespace dip
