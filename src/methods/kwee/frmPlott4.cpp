// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#include "methods/kwee/frmPlott4.h"

#include "methods/kwee/KweeCommands.h"
#include "plotting/MethodControls.h"
#include "plotting/MethodPlot.h"

namespace dip {

frmPlott4::frmPlott4() : PlotWindow(4)
{
    setCaption(QStringLiteral("Kwee & van Woerden"));
    MethodControls c(*this);
    c.label(QStringLiteral("Label7"), QStringLiteral("Left index:"));
    c.label(QStringLiteral("Label8"), QString(), 540);
    c.label(QStringLiteral("Label9"), QStringLiteral("Right index:"));
    c.label(QStringLiteral("Label10"), QString(), 540);
    c.button(QStringLiteral("Command1"), QStringLiteral("Fit Kwee"), [this] { Command1_Click(); });
    c.label(QStringLiteral("Label11"), QStringLiteral("Stepp"), 700);
    c.textBox(QStringLiteral("Text1"), QString(), 800);
    c.label(QStringLiteral("Label12"), QStringLiteral("Frac"), 700);
    c.textBox(QStringLiteral("Text2"), QString(), 800);
    c.button(QStringLiteral("Command2"), QStringLiteral("Undo"), [this] { Command2_Click(); });
    c.button(QStringLiteral("Command3"), QStringLiteral("Done"), [this] { Command3_Click(); });
    KweeDesignTexts(*this);
}

frmPlott4& frmPlott4::form()
{
    // Lives until the program ends, like a form that is only ever hidden.
    static frmPlott4* window = new frmPlott4;
    return *window;
}

void frmPlott4::drawPlot()
{
    DrawMethodPlot(*this);
    MethodControls c(*this);
    c.place(QStringLiteral("Label7"), 240, 1);
    c.place(QStringLiteral("Label8"), 1560, 1);
    c.place(QStringLiteral("Label9"), 240, 2);
    c.place(QStringLiteral("Label10"), 1560, 2);
    c.place(QStringLiteral("Command1"), 2140, 0);
    c.place(QStringLiteral("Label11"), 3960, 1);
    c.place(QStringLiteral("Text1"), 4700, 1);
    c.place(QStringLiteral("Label12"), 3960, 2);
    c.place(QStringLiteral("Text2"), 4700, 2);
    c.place(QStringLiteral("Command2"), 5700, 0);
    c.place(QStringLiteral("Command3"), 7200, 0);
}

void frmPlott4::redraw()
{
    drawPlot();
    KweeRedrawOverlays(*this);
}

void frmPlott4::Form_Load()
{
    restorePlacement();
    KweeFormLoad(*this);
}

void frmPlott4::Form_Resize() { redraw(); }

void frmPlott4::Form_MouseDown(int button, int, double x, double y)
{
    KweeMouseDown(*this, Click::atTwips(x, y, rt::Integer(button)));
}

void frmPlott4::Form_MouseMove(int, int, double x, double y) { setMousePointer(int(pointerAt(x, y))); }

void frmPlott4::Command1_Click() { KweeFitClick(*this); }

void frmPlott4::Command2_Click()
{
    KweeUndoClick(*this);
    drawPlot();
}

void frmPlott4::Command3_Click() { hide(); }

} // namespace dip
