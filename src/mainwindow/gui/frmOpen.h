// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#pragma once

#include "mainwindow/gui/FileBrowserForm.h"

namespace dip {

// "Open ": picks the light-curve file and hands it to the data-file reader.
class frmOpen : public FileBrowserForm {
    Q_OBJECT
public:
    explicit frmOpen(QWidget* parent = nullptr);

    // Opens file as a user does here: goes to its folder, types its name, presses Open.
    void openFile(const QString& file);

protected:
    void Command1_Click() override;
    void File1_MouseDown() override;
};

} // namespace dip
