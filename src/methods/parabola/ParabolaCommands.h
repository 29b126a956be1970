// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#pragma once

// The handlers of the parabolic-fit window (frmPlott1) as procedures on its FormPort, so the
// window, the console tool and the tests run the same code. The window itself draws the light
// curve (on load, on resize, after Undo) and calls these for everything else.

#include "methods/parabola/FitParabola.h"
#include "plotting/FormPort.h"
#include "plotting/RangePicking.h"

#include <optional>

namespace dip {

// The picker of frmPlott1 on its module-level record.
RangePicker parabolaPicker(FormPort& form);

// Form_Load: the load prompt; the record is left as it was.
void ParabolaFormLoad(FormPort& form);

// What follows the light curve when the window is shown again from the main window or
// redrawn: the markers from the remembered times if a range is set, the curve if fitted.
void ParabolaRedrawOverlays(FormPort& form);

// Form_MouseDown.
void ParabolaMouseDown(FormPort& form, const Click& click);

// "Fit Parabola" (Command1_Click). Does nothing unless the range is ready; returns the fit when
// it ran. A failing fit raises the runtime error.
std::optional<ParabolaFitResult> ParabolaFitClick(FormPort& form);

// "Undo" (Command2_Click), apart from clearing and redrawing the plot: all four flags cleared,
// the main window's Text1, Text7 and Check1 and this window's Text1 emptied, the Undo prompt,
// empty index labels.
void ParabolaUndoClick(FormPort& form);

} // namespace dip
