// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#include "plotting/PlotDataEntry.h"

namespace dip {

void ShowPlotData() {}
void ClearAndHidePlotData() {}

} // namespace dip
