// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#include "methods/MethodOpening.h"

#include "plotting/MethodPlot.h"

namespace dip {

void ReplayOpeningAndClicks(FormPort& form, const MethodProcedures& procedures, const std::vector<double>& clicks)
{
    procedures.formLoad(form);
    DrawMethodPlot(form);
    procedures.redrawOverlays(form);
    for (const double t : clicks)
        procedures.mouseDown(form, Click::atTime(form.transform(), t));
}

} // namespace dip
