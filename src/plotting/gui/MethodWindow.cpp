// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#include "plotting/gui/MethodWindow.h"

#include "plotting/MethodPlot.h"
#include "plotting/gui/MethodControls.h"

#include <algorithm>

namespace dip {

MethodWindow::MethodWindow(int winPosLine, const QString& designCaption, std::vector<Control> controls)
    : PlotWindow(winPosLine), m_controls(std::move(controls))
{
    setCaption(designCaption);
    MethodControls c(*this);
    // The controls stand at fixed left edges in the rows below the plot: the window is at least
    // as wide as the rightmost of them needs and as high as the rows, the axes and a plot box of
    // the least room need.
    double right = 0;
    for (const Control& k : m_controls)
        right = std::max(right, k.left + MethodControls::width(k.kind == Control::Label     ? MethodControls::Label
                                                               : k.kind == Control::TextBox ? MethodControls::TextBox
                                                                                            : MethodControls::Button,
                                                               k.width));
    setMinimumFormSize(std::max(right + ControlMargin, StandardMinimumWidth), StandardMinimumHeight);
    for (const Control& k : m_controls) {
        const QString name = QLatin1String(k.name);
        const QString text = QLatin1String(k.text);
        switch (k.kind) {
        case Control::Label: c.label(name, text, MethodControls::width(MethodControls::Label, k.width)); break;
        case Control::TextBox: c.textBox(name, text, MethodControls::width(MethodControls::TextBox, k.width)); break;
        case Control::Button:
            c.button(name, text, [this, name] {
                if (name == QLatin1String("Command1"))
                    Command1_Click();
                else if (name == QLatin1String("Command2"))
                    Command2_Click();
                else
                    Command3_Click();
            });
            break;
        }
    }
}

void MethodWindow::drawPlot()
{
    DrawMethodPlot(*this);
    MethodControls c(*this);
    for (const Control& k : m_controls)
        c.place(QLatin1String(k.name), k.left, k.kind == Control::Button ? 0 : k.row);
}

void MethodWindow::redraw()
{
    drawPlot();
    drawOverlays();
}

void MethodWindow::Form_Load()
{
    restorePlacement();
    loadProcedure();
}

void MethodWindow::Form_Resize() { redraw(); }

void MethodWindow::Form_MouseDown(int button, int, double x, double y)
{
    mouseDownProcedure(Click::atTwips(x, y, rt::Integer(button)));
}

void MethodWindow::Form_MouseMove(int, int, double x, double y) { setMousePointer(int(pointerAt(transform(), x, y))); }

} // namespace dip
