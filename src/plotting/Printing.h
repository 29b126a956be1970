// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#pragma once

class QWidget;

namespace dip {

// The File menu of every plot window: "Print" puts an image of the window's client area on one
// page of the program's current printer, ignoring every failure; "Print Setup ..." lets the
// user choose the printer and its settings.
void PrintForm(QWidget* form);
void PrintSetup(QWidget* form);

} // namespace dip
