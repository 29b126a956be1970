// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#include "mainwindow/gui/frmSaveAs.h"

#include "mainwindow/gui/FileLists.h"
#include "session/Session.h"

#include <QLineEdit>

namespace dip {

frmSaveAs::frmSaveAs(QWidget* parent)
    : FileBrowserForm(parent, QStringLiteral("frmSaveAs"), QStringLiteral("Save As ..."), QStringLiteral("Save"),
                      QStringLiteral("*.dat"), QString())
{
    connect(Text1, &QLineEdit::textChanged, this, [this] { Text1_Change(); });
}

// Every edit of the name, also one the folder or file list makes, is DataName at once, so a
// name typed and then cancelled still replaces it (deliberate: that is how it has always been).
void frmSaveAs::Text1_Change() { S().DataName = Text1->text(); }

void frmSaveAs::Command1_Click()
{
    Session& s = S();
    s.DataDir = Dir1->path();
    s.DataName = Text1->text();
    hide();
}

} // namespace dip
