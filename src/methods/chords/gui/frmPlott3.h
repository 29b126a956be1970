// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#pragma once

// The bisect-chords window: the light curve, four right-clicks for the two ranges, and
// "Bisect Chords". Its handlers call the procedures of ChordsCommands.

#include "plotting/gui/MethodWindow.h"

namespace dip {

class frmPlott3 : public MethodWindow {
    Q_OBJECT
public:
    frmPlott3();
    // The one window of the program, created on first use.
    static frmPlott3& form();

    // Clears the window, draws every used point as a red dot over HJDMin .. HJDMax with the
    // axes, and lays out the controls along the bottom.
    void PlotBisectChords() { drawPlot(); }

    void Command1_Click() override; // "Bisect Chords"
    void Command2_Click() override; // "Undo"

protected:
    void loadProcedure() override;
    void drawOverlays() override;
    void mouseDownProcedure(const Click& click) override;
};

} // namespace dip
