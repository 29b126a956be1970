// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#pragma once

// The tracing-paper window: the folded light curve, the fold time box with "Update", the
// smoothing buttons and the scroll bar that moves the fold. The handlers call the procedures
// of TracingPaper.h, which draw on this window and publish the fold.

#include "methods/tracing/TracingPaper.h"
#include "plotting/gui/PlotWindow.h"

class QLabel;
class QLineEdit;
class QPushButton;
class QScrollBar;

namespace dip {

class frmPlott2 : public PlotWindow, public TracingPaperControls {
    Q_OBJECT
public:
    // The window, created on first use; it is only hidden between uses.
    static frmPlott2& form();
    // The window if it has been created, else nullptr.
    static frmPlott2* existing();

    ~frmPlott2() override;

    // TracingPaperControls
    void showForm() override;
    void moveControl(const QString& name, double left, double top) override;
    int scrollValue() const override;
    void setScrollValue(int value) override;

    // The window as the procedures see it.
    TracingPaperView view() { return {*this, *this}; }

    QScrollBar* HScroll1() const { return m_scroll; }

    // Handlers.
    void HScroll1_Scroll();
    void HScroll1_Change();
    void Command1_Click();
    void Command2_Click();
    void Command3_Click();
    void Command4_Click();

protected:
    void Form_Load() override;
    void Form_Resize() override;

private:
    frmPlott2();

    QLabel* m_label7;
    QLabel* m_label8;
    QLineEdit* m_text1;
    QPushButton* m_command1;
    QPushButton* m_command2;
    QPushButton* m_command3;
    QPushButton* m_command4;
    QScrollBar* m_scroll;
};

} // namespace dip
