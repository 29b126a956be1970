// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#pragma once

// The parabolic-fit window: the light curve, a range picked with the right mouse button, and
// "Fit Parabola". Its handlers call the procedures of ParabolaCommands; the window only draws
// the plot and lays out its controls.

#include "plotting/PlotWindow.h"

namespace dip {

class frmPlott1 : public PlotWindow {
    Q_OBJECT
public:
    frmPlott1();
    // The one window of the program, created on first use.
    static frmPlott1& form();

    // The light curve with the markers and, when fitted, the curve; the controls placed.
    void redraw();

    void Command1_Click(); // "Fit Parabola"
    void Command2_Click(); // "Undo"
    void Command3_Click(); // "Done"

protected:
    void Form_Load() override;
    void Form_Resize() override;
    void Form_MouseDown(int button, int shift, double x, double y) override;
    void Form_MouseMove(int button, int shift, double x, double y) override;

private:
    void drawPlot();
};

} // namespace dip
