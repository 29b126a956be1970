// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#pragma once

// The main window: the six method rows with their result boxes and "Use in Mean?" boxes, the
// means, the point counts, the magnitude convention, and the way in to the light-curve editor
// and the file dialogs. It is the session's main window for the computations (MainForm), and
// it owns start-up (the settings read) and shut-down (the settings write).

#include "session/MainForm.h"

#include <QMainWindow>

class QAction;
class QCheckBox;
class QLabel;
class QLineEdit;
class QPushButton;
class QRadioButton;

namespace dip {

class frmOpen;
class frmSaveAs;

class frmMain : public QMainWindow, public MainForm {
    Q_OBJECT
public:
    // Builds the window and runs its start-up, then makes it the session's main window.
    explicit frmMain(QWidget* parent = nullptr);
    ~frmMain() override;

    // MainForm.
    QString title() const override;
    void setTitle(const QString& title) override;
    QString text(int k) const override;
    void setText(int k, const QString& text) override;
    bool checked(int k) const override;
    void setChecked(int k, bool ticked) override;
    QString origCountLabel() const override;
    void setOrigCountLabel(const QString& text) override;
    QString editedCountLabel() const override;
    void setEditedCountLabel(const QString& text) override;
    int magOption() const override;
    void showMagOption(int index) override;
    void clearAndHidePlotData() override;

    frmOpen* openForm() const { return m_open; }
    frmSaveAs* saveAsForm() const { return m_saveAs; }

    // `dipscope FILE`: loads file as if it had been opened through the open dialog.
    void openFromCommandLine(const QString& file);

protected:
    void closeEvent(QCloseEvent* event) override;

private:
    void buildControls();
    void buildMenus();
    void Form_Load();
    void Form_Unload();

    void Option1_Click(int index);
    void CommandMethod_Click(int method);
    void Command7_Click();
    void Command8_Click();
    void Command9_Click();
    void mnuOpen_Click();
    void mnuSave_Click();
    void mnuExit_Click();
    // Writes the settings file and ends the program at once.
    void endProgram();

    QLineEdit* m_text[17] = {};
    QCheckBox* m_check[7] = {};
    QPushButton* m_method[7] = {};
    QRadioButton* m_option[2] = {};
    QLabel* m_origCount = nullptr;   // Label17
    QLabel* m_editedCount = nullptr; // Label18
    frmOpen* m_open = nullptr;
    frmSaveAs* m_saveAs = nullptr;
    bool m_ended = false;
};

} // namespace dip
