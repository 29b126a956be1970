// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#include "plotting/gui/PlotDataEntry.h"

#include "plotting/gui/frmPlotData.h"

namespace dip {

void ShowPlotData()
{
    frmPlotData& form = PlotDataWindow();
    form.showForm();
    form.PlotData();
}

void ClearAndHidePlotData()
{
    frmPlotData& form = PlotDataWindow();
    form.cls();
    form.hide();
}

} // namespace dip
