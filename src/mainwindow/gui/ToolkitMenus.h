// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#pragma once

// The main window's menus of the observer's toolkit: "Times" (full-precision times, time
// systems, imported files) and "Analysis" (error bars, O-C, export of results). They sit beside
// the program's own menus and change nothing the program's windows show unless the user turns
// a toolkit item on.

class QMenu;

namespace dip {

class frmMain;

void BuildTimesMenu(frmMain& main, QMenu& menu);
void BuildAnalysisMenu(frmMain& main, QMenu& menu);

} // namespace dip
