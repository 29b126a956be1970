// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#pragma once

// What the range-picking method windows (frmPlott1, frmPlott3, frmPlott4) have in common: the
// light-curve plot with the controls in two rows below it, the handlers of load, resize and
// the mouse, and "Done". Each window gives its controls and its procedures.

#include "plotting/gui/PlotWindow.h"
#include "plotting/RangePicking.h"

#include <vector>

namespace dip {

class MethodWindow : public PlotWindow {
    Q_OBJECT
public:
    // A control of the window: kind, name, design text, width in twips (0: the kind's own),
    // left edge in twips and row (1 or 2; buttons stand across both rows).
    struct Control {
        enum Kind { Label, TextBox, Button } kind;
        const char* name;
        const char* text;
        double width;
        double left;
        int row;
    };

    MethodWindow(int winPosLine, const QString& designCaption, std::vector<Control> controls);

    // The plot with the controls placed, then the window's overlays (markers, curve).
    void redraw();

    virtual void Command1_Click() = 0;
    virtual void Command2_Click() = 0;
    // "Done" only hides: the window keeps its state until the next load.
    void Command3_Click() { hide(); }

protected:
    // Clears the window, draws the light curve and places the controls.
    void drawPlot();

    // The window's procedures.
    virtual void loadProcedure() = 0;
    virtual void drawOverlays() = 0;
    virtual void mouseDownProcedure(const Click& click) = 0;

    void Form_Load() override;
    void Form_Resize() override;
    void Form_MouseDown(int button, int shift, double x, double y) override;
    void Form_MouseMove(int button, int shift, double x, double y) override;

private:
    std::vector<Control> m_controls;
};

} // namespace dip
