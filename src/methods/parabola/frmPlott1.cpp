// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#include "methods/parabola/frmPlott1.h"

#include "methods/parabola/ParabolaCommands.h"
#include "plotting/MethodControls.h"
#include "plotting/MethodPlot.h"

namespace dip {

frmPlott1::frmPlott1() : PlotWindow(1)
{
    setCaption(QStringLiteral("Fit Parabola"));
    MethodControls c(*this);
    c.label(QStringLiteral("Label7"), QStringLiteral("Left index:"));
    c.label(QStringLiteral("Label8"), QString(), 540);
    c.label(QStringLiteral("Label9"), QStringLiteral("Right index:"));
    c.label(QStringLiteral("Label10"), QString(), 540);
    c.label(QStringLiteral("Label11"), QStringLiteral("RMS dev'n:"));
    c.textBox(QStringLiteral("Text1"), QString());
    c.button(QStringLiteral("Command1"), QStringLiteral("Fit Parabola"), [this] { Command1_Click(); });
    c.button(QStringLiteral("Command2"), QStringLiteral("Undo"), [this] { Command2_Click(); });
    c.button(QStringLiteral("Command3"), QStringLiteral("Done"), [this] { Command3_Click(); });
}

frmPlott1& frmPlott1::form()
{
    // Lives until the program ends, like a form that is only ever hidden.
    static frmPlott1* window = new frmPlott1;
    return *window;
}

void frmPlott1::drawPlot()
{
    DrawMethodPlot(*this);
    MethodControls c(*this);
    c.place(QStringLiteral("Label7"), 240, 1);
    c.place(QStringLiteral("Label8"), 1560, 1);
    c.place(QStringLiteral("Label9"), 240, 2);
    c.place(QStringLiteral("Label10"), 1560, 2);
    c.place(QStringLiteral("Command1"), 2140, 0);
    c.place(QStringLiteral("Label11"), 3960, 1);
    c.place(QStringLiteral("Text1"), 3960, 2);
    c.place(QStringLiteral("Command2"), 5700, 0);
    c.place(QStringLiteral("Command3"), 7200, 0);
}

void frmPlott1::redraw()
{
    drawPlot();
    ParabolaRedrawOverlays(*this);
}

void frmPlott1::Form_Load()
{
    restorePlacement();
    ParabolaFormLoad(*this);
}

void frmPlott1::Form_Resize() { redraw(); }

void frmPlott1::Form_MouseDown(int button, int, double x, double y)
{
    ParabolaMouseDown(*this, Click::atTwips(x, y, rt::Integer(button)));
}

void frmPlott1::Form_MouseMove(int, int, double x, double y) { setMousePointer(int(pointerAt(x, y))); }

void frmPlott1::Command1_Click() { ParabolaFitClick(*this); }

void frmPlott1::Command2_Click()
{
    ParabolaUndoClick(*this);
    drawPlot();
}

void frmPlott1::Command3_Click() { hide(); }

} // namespace dip
