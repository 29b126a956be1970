// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#pragma once

#include "mainwindow/gui/FileBrowserForm.h"

namespace dip {

// "Save As ...": records a folder and a file name in DataDir and DataName; writes no file.
class frmSaveAs : public FileBrowserForm {
    Q_OBJECT
public:
    explicit frmSaveAs(QWidget* parent = nullptr);

protected:
    void Command1_Click() override;

private:
    void Text1_Change();
};

} // namespace dip
