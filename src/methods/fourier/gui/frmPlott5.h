// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#pragma once

// The Fourier-fit window: the light curve with the picked range, the eight start parameters
// of the cosine series in Text1(1..8), "Update", " Fit Fourier", "Undo" and "Done". The
// handlers call the procedures of FourierFit.h, which draw on this window and publish the fit.

#include "methods/fourier/FourierFit.h"
#include "plotting/gui/PlotWindow.h"

#include <array>

class QLabel;
class QLineEdit;
class QPushButton;

namespace dip {

class frmPlott5 : public PlotWindow {
    Q_OBJECT
public:
    // The window, created on first use; it is only hidden between uses.
    static frmPlott5& form();
    // The window if it has been created, else nullptr.
    static frmPlott5* existing();

    ~frmPlott5() override;

    // What the main window's "5. Fourier Fit" button does once RangeFirst and RangeLast are set.
    void start();

    QLineEdit* Text1(int index) const { return m_text1[static_cast<std::size_t>(index)]; }
    QPushButton* Command1() const { return m_command1; }
    QPushButton* Command2() const { return m_command2; }
    QPushButton* Command3() const { return m_command3; }
    QPushButton* Command4() const { return m_command4; }

    // Handlers.
    void Text1_Change(int index);
    void Command1_Click();
    void Command2_Click();
    void Command3_Click();
    void Command4_Click();
    void Form_GotFocus();
    void Form_LostFocus();

protected:
    void Form_Load() override;
    void Form_Resize() override;
    void Form_MouseDown(int button, int shift, double x, double y) override;
    void Form_MouseMove(int button, int shift, double x, double y) override;
    void changeEvent(QEvent* event) override;
    void showEvent(QShowEvent* event) override;

private:
    frmPlott5();
    // The controls follow the form's size: the boxes right of the plot, the rest below it.
    // Every drawing of the plot places them.
    void placeControls();
    // The least form size, in twips, at which no control is hidden or covers another.
    static double minimumWidth();
    static double minimumHeight();

    FourierView m_view;
    // Text1_Change is suppressed while the window loads.
    bool m_suppressChange = false;
    // The next activation is the one that showing the window brings.
    bool m_activatedByShow = false;
    std::array<QLabel*, 9> m_captions{}; // Label11..Label18 at 1..8
    std::array<QLineEdit*, 9> m_text1{}; // Text1(1..8)
    QLabel* m_label7;
    QLabel* m_label8;
    QLabel* m_label9;
    QLabel* m_label10;
    QPushButton* m_command1;
    QPushButton* m_command2;
    QPushButton* m_command3;
    QPushButton* m_command4;
};

} // namespace dip
