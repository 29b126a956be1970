// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#pragma once

// The Kwee & van Woerden window: the light curve, a range picked with the right mouse button,
// the parameters Stepp and Frac, and "Fit Kwee". Its handlers call the procedures of
// KweeCommands; the window only draws the plot and lays out its controls.

#include "plotting/PlotWindow.h"

namespace dip {

class frmPlott4 : public PlotWindow {
    Q_OBJECT
public:
    frmPlott4();
    // The one window of the program, created on first use.
    static frmPlott4& form();

    // The light curve with the markers at the remembered times; the controls placed.
    void redraw();

    void Command1_Click(); // "Fit Kwee"
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
