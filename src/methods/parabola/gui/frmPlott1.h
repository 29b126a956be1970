// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#pragma once

// The parabolic-fit window: the light curve, a range picked with the right mouse button, and
// "Fit Parabola". Its handlers call the procedures of ParabolaCommands.

#include "plotting/gui/MethodWindow.h"

namespace dip {

class frmPlott1 : public MethodWindow {
    Q_OBJECT
public:
    frmPlott1();
    // The one window of the program, created on first use.
    static frmPlott1& form();

    void Command1_Click() override; // "Fit Parabola"
    void Command2_Click() override; // "Undo"

protected:
    void loadProcedure() override;
    void drawOverlays() override;
    void mouseDownProcedure(const Click& click) override;
};

} // namespace dip
