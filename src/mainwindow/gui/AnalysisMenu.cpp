// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#include "mainwindow/gui/ToolkitMenus.h"

#include "mainwindow/gui/frmMain.h"

#include "analysis/gui/ErrorBarsEntry.h"
#include "analysis/gui/OcEntry.h"

#include <QMenu>

namespace dip {

void BuildAnalysisMenu(frmMain& main, QMenu& menu)
{
    AddErrorBarsActions(main, menu);
    AddOcActions(main, menu);
}

} // namespace dip
