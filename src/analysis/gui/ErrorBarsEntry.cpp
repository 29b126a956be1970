// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#include "analysis/gui/ErrorBarsEntry.h"

#include <QMenu>

namespace dip {

void AddErrorBarsActions(QWidget& /*main*/, QMenu& /*menu*/) {}

} // namespace dip
