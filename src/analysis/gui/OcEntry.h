// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#pragma once

// The "Analysis" menu's "O–C…" and "Export results…".

class QMenu;
class QWidget;

namespace dip {

void AddOcActions(QWidget& main, QMenu& menu);

} // namespace dip
