// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#pragma once

// The controls of a method window below its plot: labels, text boxes and command buttons in
// two rows near the bottom edge, whose tops follow the window's height as the plot box does
// (the box ends at H - 1850; row 1 starts at H - 1400, row 2 at H - 980, and the buttons
// stand across both rows).

#include <QString>

#include <functional>

class QLabel;
class QLineEdit;
class QPushButton;

namespace dip {

class PlotWindow;

class MethodControls {
public:
    explicit MethodControls(PlotWindow& form) : m_form(form) {}

    QLabel* label(const QString& name, const QString& text, double width = 1300);
    QLineEdit* textBox(const QString& name, const QString& text, double width = 1200);
    QPushButton* button(const QString& name, const QString& text, std::function<void()> onClick);

    // Row 1 or 2 for labels and boxes, 0 for a button across both rows.
    void place(const QString& name, double left, int row);

    static double rowTop(double formHeight, int row);

    enum Kind { Label, TextBox, Button };
    // A control's width in twips: the given one, or the kind's own when it is 0 (buttons always
    // have their own).
    static double width(Kind kind, double given);

private:
    PlotWindow& m_form;
};

} // namespace dip
