// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#include "methods/chords/gui/frmPlott3.h"

#include "methods/chords/ChordsCommands.h"

namespace dip {

namespace {
using C = MethodWindow::Control;
} // namespace

frmPlott3::frmPlott3()
    : MethodWindow(3, QStringLiteral("Bisect Chords"),
                   {{C::Label, "Label7", "Left index (1):", 0, 240, 1},
                    {C::Label, "Label8", "", 540, 1560, 1},
                    {C::Label, "Label9", "Left index (2):", 0, 240, 2},
                    {C::Label, "Label10", "", 540, 1560, 2},
                    {C::Button, "Command1", "Bisect Chords", 0, 2140, 0},
                    {C::Label, "Label11", "Right index (3):", 1220, 3960, 1},
                    {C::Label, "Label12", "", 480, 5200, 1},
                    {C::Label, "Label13", "Right index (4):", 1220, 3960, 2},
                    {C::Label, "Label14", "", 480, 5200, 2},
                    {C::Button, "Command2", "Undo", 0, 5700, 0},
                    {C::Button, "Command3", "Done", 0, 7200, 0}})
{}

frmPlott3& frmPlott3::form()
{
    // Lives until the program ends, like a form that is only ever hidden.
    static frmPlott3* window = new frmPlott3;
    return *window;
}

void frmPlott3::loadProcedure() { ChordsFormLoad(*this); }

// When both ranges are complete, the four markers at the clicked times on the current scale.
void frmPlott3::drawOverlays() { ChordsRedrawOverlays(*this); }

void frmPlott3::mouseDownProcedure(const Click& click) { ChordsMouseDown(*this, click); }

void frmPlott3::Command1_Click() { ChordsBisectClick(*this); }

void frmPlott3::Command2_Click()
{
    ChordsUndoClick(*this);
    PlotBisectChords();
}

} // namespace dip
