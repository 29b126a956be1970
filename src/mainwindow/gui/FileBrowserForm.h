// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#pragma once

// What the open and the save dialog share: the controls, their layout, and every handler but
// the accept button's. Both are shown modeless and only hidden between uses.

#include <QDialog>

class QComboBox;
class QLabel;
class QLineEdit;
class QPushButton;

namespace dip {

class DirList;
class DriveList;
class FileList;

class FileBrowserForm : public QDialog {
    Q_OBJECT
public:
    // Smallest size of the form, in twips.
    static constexpr int minWidth = 6525;
    static constexpr int minHeight = 3540;

    // Preparation at program start: the three filter entries, the file pattern, the list on
    // entry listIndex, and Label4 showing the folder list's path.
    void prepare(const QString& pattern, int listIndex);
    // Selects filter entry index; a change runs Combo1_Click, as a choice by the user does.
    void setListIndex(int index);
    int listIndex() const;

    // The controls, by the names the forms give them.
    DriveList* Drive1 = nullptr;
    DirList* Dir1 = nullptr;
    FileList* File1 = nullptr;
    QComboBox* Combo1 = nullptr;
    QLineEdit* Text1 = nullptr;
    QPushButton* Command1 = nullptr;
    QPushButton* Command2 = nullptr;
    QLabel* Label1 = nullptr;
    QLabel* Label2 = nullptr;
    QLabel* Label3 = nullptr;
    QLabel* Label4 = nullptr;
    QLabel* Label5 = nullptr;

protected:
    // The design of one form: its name, caption, the accept button's caption, and the texts
    // the filter box and the name box show before anything is chosen.
    FileBrowserForm(QWidget* parent, const QString& name, const QString& caption, const QString& acceptCaption,
                    const QString& comboText, const QString& nameText);

    virtual void Command1_Click() = 0;
    virtual void File1_MouseDown() {}

    void resizeEvent(QResizeEvent* event) override;
    void reject() override;

private:
    void Combo1_Click();
    void Drive1_Change();
    void Dir1_Change();
    void File1_Click(const QString& name);
    void File1_DblClick(const QString& name);
    void Command2_Click();
    void Form_Resize();
    void showFolder();
};

} // namespace dip
