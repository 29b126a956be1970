// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#pragma once

// The Kwee & van Woerden window: the light curve, a range picked with the right mouse button,
// the parameters Stepp and Frac, and "Fit Kwee". Its handlers call the procedures of
// KweeCommands.

#include "plotting/gui/MethodWindow.h"

namespace dip {

class frmPlott4 : public MethodWindow {
    Q_OBJECT
public:
    frmPlott4();
    // The one window of the program, created on first use.
    static frmPlott4& form();

    void Command1_Click() override; // "Fit Kwee"
    void Command2_Click() override; // "Undo"

protected:
    void loadProcedure() override;
    void drawOverlays() override;
    void mouseDownProcedure(const Click& click) override;
};

} // namespace dip
