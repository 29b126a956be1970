// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#include "plotting/PlotDataEntry.h"

#include "plotting/frmPlotData.h"

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
