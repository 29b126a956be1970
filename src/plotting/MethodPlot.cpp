// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#include "plotting/MethodPlot.h"

#include "plotting/PlotBox.h"
#include "plotting/RangePicking.h"
#include "session/Session.h"

namespace dip {

void DrawMethodPlot(FormPort& form)
{
    SetStandardPlotBox(form, form.formWidth(), form.formHeight());
    form.transform().scale = CurrentScale();
    if (!form.drawsAnything())
        return;
    form.cls();
    const PlotScale scale = CurrentScale();
    DrawAxes(form, scale, scale.tr, S().HJDMax);
    DrawUsedPoints(form, scale, colours::red);
}

} // namespace dip
