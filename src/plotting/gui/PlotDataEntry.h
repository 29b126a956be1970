// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#pragma once

namespace dip {

// "Plot/Edit Data": shows frmPlotData and draws the light curve.
void ShowPlotData();
// A data-file load clears the light-curve editor's drawing and hides it.
void ClearAndHidePlotData();

} // namespace dip
