// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#include "methods/parabola/gui/frmPlott1.h"

#include "methods/parabola/ParabolaCommands.h"

namespace dip {

namespace {
using C = MethodWindow::Control;
} // namespace

frmPlott1::frmPlott1()
    : MethodWindow(1, QStringLiteral("Fit Parabola"),
                   {{C::Label, "Label7", "Left index:", 0, 240, 1},
                    {C::Label, "Label8", "", 540, 1560, 1},
                    {C::Label, "Label9", "Right index:", 0, 240, 2},
                    {C::Label, "Label10", "", 540, 1560, 2},
                    {C::Button, "Command1", "Fit Parabola", 0, 2140, 0},
                    {C::Label, "Label11", "RMS dev'n:", 0, 3960, 1},
                    {C::TextBox, "Text1", "", 0, 3960, 2},
                    {C::Button, "Command2", "Undo", 0, 5700, 0},
                    {C::Button, "Command3", "Done", 0, 7200, 0}})
{}

frmPlott1& frmPlott1::form()
{
    // Lives until the program ends, like a form that is only ever hidden.
    static frmPlott1* window = new frmPlott1;
    return *window;
}

void frmPlott1::loadProcedure() { ParabolaFormLoad(*this); }

void frmPlott1::drawOverlays() { ParabolaRedrawOverlays(*this); }

void frmPlott1::mouseDownProcedure(const Click& click) { ParabolaMouseDown(*this, click); }

void frmPlott1::Command1_Click() { ParabolaFitClick(*this); }

void frmPlott1::Command2_Click()
{
    ParabolaUndoClick(*this);
    drawPlot();
}

} // namespace dip
