// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#pragma once

// The light-curve editor: frmPlotData shows the whole curve as loaded, a left click picks the
// nearest observation, marks it with a blue cross and opens the small dialog frmAction, whose
// buttons delete it, undelete it or cancel.

#include "plotting/LightCurve.h"
#include "plotting/gui/PlotWindow.h"

#include <QDialog>

namespace dip {

class frmPlotData : public PlotWindow {
    Q_OBJECT
public:
    explicit frmPlotData(QWidget* parent = nullptr);

    // Clears the window and draws the light curve.
    void PlotData();

protected:
    void Form_Load() override;
    void Form_Resize() override;
    void Form_MouseDown(int button, int shift, double x, double y) override;
};

class frmAction : public QDialog {
    Q_OBJECT
public:
    explicit frmAction(QWidget* parent = nullptr);

    // Shows the dialog (modeless), beside the light-curve window the first time.
    void showForm();
    // Fills Text1 .. Text3.
    void showPick(const PickTexts& texts);

    void Command1_Click(); // "Delete"
    void Command2_Click(); // "Undelete"
    void Command3_Click(); // "Cancel"

    // Escape and the title bar's close button act as "Cancel".
    void reject() override;

private:
    bool m_placed = false;
};

// The one light-curve window and its dialog, created on first use.
frmPlotData& PlotDataWindow();
frmAction& ActionWindow();

} // namespace dip
