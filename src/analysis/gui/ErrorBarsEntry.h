// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#pragma once

// The "Analysis" menu's "Error bars…": the bootstrap and Deeg errors of the published results.

class QMenu;
class QWidget;

namespace dip {

void AddErrorBarsActions(QWidget& main, QMenu& menu);

} // namespace dip
