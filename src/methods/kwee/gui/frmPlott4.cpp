// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#include "methods/kwee/gui/frmPlott4.h"

#include "methods/kwee/KweeCommands.h"

namespace dip {

namespace {
using C = MethodWindow::Control;
} // namespace

frmPlott4::frmPlott4()
    : MethodWindow(4, QStringLiteral("Kwee & van Woerden"),
                   {{C::Label, "Label7", "Left index:", 0, 240, 1},
                    {C::Label, "Label8", "", 540, 1560, 1},
                    {C::Label, "Label9", "Right index:", 0, 240, 2},
                    {C::Label, "Label10", "", 540, 1560, 2},
                    {C::Button, "Command1", "Fit Kwee", 0, 2140, 0},
                    {C::Label, "Label11", "Stepp", 700, 3960, 1},
                    {C::TextBox, "Text1", "1", 800, 4700, 1},
                    {C::Label, "Label12", "Frac", 700, 3960, 2},
                    {C::TextBox, "Text2", ".9", 800, 4700, 2},
                    {C::Button, "Command2", "Undo", 0, 5700, 0},
                    {C::Button, "Command3", "Done", 0, 7200, 0}})
{
    // Enter in "Stepp" or "Frac" presses "Fit Kwee".
    pressOnEnter(QStringLiteral("Text1"), QStringLiteral("Command1"));
    pressOnEnter(QStringLiteral("Text2"), QStringLiteral("Command1"));
}

frmPlott4& frmPlott4::form()
{
    // Lives until the program ends, like a form that is only ever hidden.
    static frmPlott4* window = new frmPlott4;
    return *window;
}

void frmPlott4::loadProcedure() { KweeFormLoad(*this); }

void frmPlott4::drawOverlays() { KweeRedrawOverlays(*this); }

void frmPlott4::mouseDownProcedure(const Click& click) { KweeMouseDown(*this, click); }

void frmPlott4::Command1_Click() { KweeFitClick(*this); }

void frmPlott4::Command2_Click()
{
    KweeUndoClick(*this);
    drawPlot();
}

} // namespace dip
