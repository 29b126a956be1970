// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#include "methods/chords/frmPlott3.h"

#include "methods/chords/ChordsCommands.h"
#include "plotting/MethodControls.h"
#include "plotting/MethodPlot.h"

namespace dip {

frmPlott3::frmPlott3() : PlotWindow(3)
{
    setCaption(QStringLiteral("Bisect Chords"));
    MethodControls c(*this);
    c.label(QStringLiteral("Label7"), QStringLiteral("Left index (1):"));
    c.label(QStringLiteral("Label8"), QString(), 540);
    c.label(QStringLiteral("Label9"), QStringLiteral("Left index (2):"));
    c.label(QStringLiteral("Label10"), QString(), 540);
    c.button(QStringLiteral("Command1"), QStringLiteral("Bisect Chords"), [this] { Command1_Click(); });
    c.label(QStringLiteral("Label11"), QStringLiteral("Right index (3):"), 1220);
    c.label(QStringLiteral("Label12"), QString(), 480);
    c.label(QStringLiteral("Label13"), QStringLiteral("Right index (4):"), 1220);
    c.label(QStringLiteral("Label14"), QString(), 480);
    c.button(QStringLiteral("Command2"), QStringLiteral("Undo"), [this] { Command2_Click(); });
    c.button(QStringLiteral("Command3"), QStringLiteral("Done"), [this] { Command3_Click(); });
}

frmPlott3& frmPlott3::form()
{
    // Lives until the program ends, like a form that is only ever hidden.
    static frmPlott3* window = new frmPlott3;
    return *window;
}

void frmPlott3::PlotBisectChords()
{
    DrawMethodPlot(*this);
    MethodControls c(*this);
    c.place(QStringLiteral("Label7"), 240, 1);
    c.place(QStringLiteral("Label8"), 1560, 1);
    c.place(QStringLiteral("Label9"), 240, 2);
    c.place(QStringLiteral("Label10"), 1560, 2);
    c.place(QStringLiteral("Command1"), 2140, 0);
    c.place(QStringLiteral("Label11"), 3960, 1);
    c.place(QStringLiteral("Label12"), 5200, 1);
    c.place(QStringLiteral("Label13"), 3960, 2);
    c.place(QStringLiteral("Label14"), 5200, 2);
    c.place(QStringLiteral("Command2"), 5700, 0);
    c.place(QStringLiteral("Command3"), 7200, 0);
}

void frmPlott3::redraw()
{
    PlotBisectChords();
    ChordsRedrawOverlays(*this);
}

void frmPlott3::Form_Load()
{
    restorePlacement();
    ChordsFormLoad(*this);
}

void frmPlott3::Form_Resize() { redraw(); }

void frmPlott3::Form_MouseDown(int button, int, double x, double y)
{
    ChordsMouseDown(*this, Click::atTwips(x, y, rt::Integer(button)));
}

void frmPlott3::Form_MouseMove(int, int, double x, double y) { setMousePointer(int(pointerAt(x, y))); }

void frmPlott3::Command1_Click() { ChordsBisectClick(*this); }

void frmPlott3::Command2_Click()
{
    ChordsUndoClick(*this);
    PlotBisectChords();
}

void frmPlott3::Command3_Click() { hide(); }

} // namespace dip
