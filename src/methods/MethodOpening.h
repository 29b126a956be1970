// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#pragma once

// The part of a replayed session that the range-picking methods share: the window's first
// opening after the main window's button (MethodButtonPrelude) and the right-clicks at the
// given times.

#include "plotting/FormPort.h"
#include "plotting/RangePicking.h"

#include <vector>

namespace dip {

struct MethodProcedures {
    void (*formLoad)(FormPort&);
    void (*redrawOverlays)(FormPort&);
    void (*mouseDown)(FormPort&, const Click&);
};

// The window's load, its plot (on a form that draws nothing: the plot box only) and what it
// redraws on it, then one right-click per time, in order.
void ReplayOpeningAndClicks(FormPort& form, const MethodProcedures& procedures, const std::vector<double>& clicks);

} // namespace dip
