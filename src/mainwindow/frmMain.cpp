// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#include "mainwindow/frmMain.h"

namespace dip {

frmMain::frmMain(QWidget* parent) : QMainWindow(parent) { setWindowTitle(QStringLiteral("Dipscope")); }

} // namespace dip
