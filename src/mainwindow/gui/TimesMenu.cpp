// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#include "mainwindow/gui/ToolkitMenus.h"

#include <QMenu>

namespace dip {

void BuildTimesMenu(frmMain& /*main*/, QMenu& /*menu*/) {}

} // namespace dip
