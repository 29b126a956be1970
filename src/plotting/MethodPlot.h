// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#pragma once

// The light-curve plot of a method window: the used points over the current extents.

#include "plotting/FormPort.h"

namespace dip {

// Sets the plot box from the form's size (left 500, right W - 415, top 242, bottom H - 1850);
// then, on a form that draws, clears it and draws the time grid and frame over HJDMin ..
// HJDMax and MagMin .. MagMax, and the used points 1..NumPts as red discs. A form that draws
// nothing (the console tool's) only gets its box, so a replayed click has its x.
void DrawMethodPlot(FormPort& form);

} // namespace dip
