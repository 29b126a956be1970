// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#include "mainwindow/gui/frmOpen.h"

#include "mainwindow/gui/FileLists.h"
#include "session/LoadDataFile.h"

#include <QFileInfo>
#include <QLabel>
#include <QLineEdit>

namespace dip {

frmOpen::frmOpen(QWidget* parent)
    : FileBrowserForm(parent, QStringLiteral("frmOpen"), QStringLiteral("Open "), QStringLiteral("Open"),
                      QStringLiteral("*.csv"), QStringLiteral("location.dat"))
{}

void frmOpen::openFile(const QString& file)
{
    const QFileInfo info(file);
    Dir1->setPath(info.absolutePath());
    Text1->setText(info.fileName());
    Command1_Click();
}

// Any button pressed on the file list first shows the list's first file; the click that
// follows puts the clicked name in its place, so a press briefly shows the first name.
void frmOpen::File1_MouseDown() { Text1->setText(File1->entry(0)); }

void frmOpen::Command1_Click()
{
    // The folder as the label shows it, the name as typed: no extension added, no check that
    // the file exists; the reader reports what it cannot use.
    OpenDataFile(Label4->text(), Text1->text());
    hide();
}

} // namespace dip
