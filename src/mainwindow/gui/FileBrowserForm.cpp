// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#include "mainwindow/gui/FileBrowserForm.h"

#include "mainwindow/gui/FileLists.h"
#include "mainwindow/gui/TwipsLayout.h"

#include <QDir>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QResizeEvent>

namespace dip {

namespace {

// Design size of the forms, in twips.
constexpr int designWidth = 6525;
constexpr int designHeight = 4320;

template <typename T>
T* named(T* widget, const char* name)
{
    widget->setObjectName(QLatin1String(name));
    return widget;
}

QLabel* label(QWidget* parent, const char* name, const QString& text)
{
    auto* l = named(new QLabel(text, parent), name);
    l->setTextFormat(Qt::PlainText); // a folder name is never markup
    return l;
}

} // namespace

FileBrowserForm::FileBrowserForm(QWidget* parent, const QString& name, const QString& caption,
                                 const QString& acceptCaption, const QString& comboText, const QString& nameText)
    : QDialog(parent)
{
    setObjectName(name);
    setWindowTitle(caption);
    setModal(false);
    setSizeGripEnabled(true);

    // Creation order is the tab order: name, files, filter, folders, drive, buttons.
    Label1 = label(this, "Label1", QStringLiteral("File Name:"));
    Text1 = named(new QLineEdit(nameText, this), "Text1");
    File1 = named(new FileList(this), "File1");
    Label2 = label(this, "Label2", QStringLiteral("List Files of Type:"));
    Combo1 = named(new QComboBox(this), "Combo1");
    Combo1->setPlaceholderText(comboText);
    Combo1->setCurrentIndex(-1);
    Label3 = label(this, "Label3", QStringLiteral("Directories:"));
    Label4 = label(this, "Label4", QString());
    Dir1 = named(new DirList(this), "Dir1");
    Label5 = label(this, "Label5", QStringLiteral("Drives:"));
    Drive1 = named(new DriveList(this), "Drive1");
    Command1 = named(new QPushButton(acceptCaption, this), "Command1");
    Command2 = named(new QPushButton(QStringLiteral("Cancel"), this), "Command2");
    Command1->setDefault(true);
    Command1->setAutoDefault(false);
    Command2->setAutoDefault(false);
    Label1->setBuddy(Text1);
    Label2->setBuddy(Combo1);
    Label3->setBuddy(Dir1);
    Label5->setBuddy(Drive1);

    // The lists start in the current folder, as a form does when it is loaded.
    const QString here = QDir::currentPath();
    Dir1->showPath(here);
    File1->setPath(here);
    Drive1->showDriveOf(here);

    connect(Combo1, QOverload<int>::of(&QComboBox::activated), this, [this] { Combo1_Click(); });
    connect(Drive1, &DriveList::changed, this, [this] { Drive1_Change(); });
    connect(Dir1, &DirList::changed, this, [this] { Dir1_Change(); });
    connect(File1, &FileList::mouseDown, this, [this] { File1_MouseDown(); });
    connect(File1, &FileList::entryClicked, this, [this](const QString& file) { File1_Click(file); });
    connect(File1, &FileList::entryDoubleClicked, this, [this](const QString& file) { File1_DblClick(file); });
    connect(Command1, &QPushButton::clicked, this, [this] { Command1_Click(); });
    connect(Command2, &QPushButton::clicked, this, [this] { Command2_Click(); });

    setMinimumSize(toPixels(minWidth), toPixels(minHeight));
    resize(toPixels(designWidth), toPixels(designHeight));
    Form_Resize();
}

void FileBrowserForm::prepare(const QString& pattern, int listIndex)
{
    Combo1->clear();
    Combo1->addItems({QStringLiteral("*.txt"), QStringLiteral("*.csv"), QStringLiteral("*.*")});
    Combo1->setCurrentIndex(-1);
    File1->setPattern(pattern);
    setListIndex(listIndex);
    showFolder();
}

void FileBrowserForm::showFolder()
{
    // The label may be too narrow for a long path; the whole of it is in its tooltip.
    Label4->setText(Dir1->path());
    Label4->setToolTip(Dir1->path());
}

void FileBrowserForm::setListIndex(int index)
{
    if (index == Combo1->currentIndex())
        return;
    Combo1->setCurrentIndex(index);
    Combo1_Click();
}

int FileBrowserForm::listIndex() const { return Combo1->currentIndex(); }

void FileBrowserForm::Combo1_Click()
{
    // The box shows the chosen entry, and the file list lists by it.
    File1->setPattern(Combo1->currentText());
}

void FileBrowserForm::Drive1_Change() { Dir1->setPath(Drive1->drive()); }

void FileBrowserForm::Dir1_Change()
{
    File1->setPath(Dir1->path());
    // The folder's first file becomes the name, so Open right after a folder change opens it.
    Text1->setText(File1->entry(0));
    showFolder();
}

void FileBrowserForm::File1_Click(const QString& name) { Text1->setText(name); }

void FileBrowserForm::File1_DblClick(const QString& name)
{
    Text1->setText(name);
    Command1_Click();
}

void FileBrowserForm::Command2_Click() { hide(); }

// Escape and the title bar's close button cancel, as "Cancel" does.
void FileBrowserForm::reject() { Command2_Click(); }

void FileBrowserForm::resizeEvent(QResizeEvent* event)
{
    QDialog::resizeEvent(event);
    Form_Resize();
}

void FileBrowserForm::Form_Resize()
{
    int width = toTwips(this->width());
    int height = toTwips(this->height());
    if (height < minHeight || width < minWidth) {
        height = std::max(height, minHeight);
        width = std::max(width, minWidth);
        resize(toPixels(width), toPixels(height));
    }
    // Two columns share the width beyond the smallest form: the name, files and filter on the
    // left, the folders and drive after the name box, then the buttons.
    const int extra = width - minWidth;
    const int leftWidth = 2895 + extra / 2;
    const int rightWidth = 1935 + (extra - extra / 2);
    const int listHeight = height - 2100;
    const int lowerLabel = listHeight + 990;

    // Each column: a caption, a box under it, the list, and below the list a caption and a box.
    auto column = [&](int left, int width, QWidget* caption, QWidget* box, int boxHeight, QWidget* list,
                      QWidget* lowerCaption, QWidget* lowerBox) {
        placeTwips(caption, left, 120, width, 255);
        placeTwips(box, left, 375, width, boxHeight);
        placeTwips(list, left, 720, width, listHeight);
        placeTwips(lowerCaption, left, lowerLabel, width, 255);
        placeTwips(lowerBox, left, lowerLabel + 255, width, 315);
    };
    const int left = 120;
    column(left, leftWidth, Label1, Text1, 315, File1, Label2, Combo1);
    const int right = left + leftWidth + 240;
    column(right, rightWidth, Label3, Label4, 255, Dir1, Label5, Drive1);

    const int buttons = right + rightWidth + 180;
    placeTwips(Command1, buttons, 375, 1035, 375);
    placeTwips(Command2, buttons, 840, 1035, 375);
}

} // namespace dip
