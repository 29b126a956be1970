// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#pragma once

// The bisect-chords window: the light curve, four right-clicks for the two ranges, and
// "Bisect Chords". Its handlers call the procedures of ChordsCommands; the window only draws
// the plot and lays out its controls.

#include "plotting/PlotWindow.h"

namespace dip {

class frmPlott3 : public PlotWindow {
    Q_OBJECT
public:
    frmPlott3();
    // The one window of the program, created on first use.
    static frmPlott3& form();

    // Clears the window, draws every used point as a red dot over HJDMin .. HJDMax with the
    // axes, and lays out the controls along the bottom.
    void PlotBisectChords();
    // PlotBisectChords and, when both ranges are complete, the four markers.
    void redraw();

    void Command1_Click(); // "Bisect Chords"
    void Command2_Click(); // "Undo"
    void Command3_Click(); // "Done"

protected:
    void Form_Load() override;
    void Form_Resize() override;
    void Form_MouseDown(int button, int shift, double x, double y) override;
    void Form_MouseMove(int button, int shift, double x, double y) override;
};

} // namespace dip
