// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#include "analysis/gui/OcEntry.h"

#include <QMenu>

namespace dip {

void AddOcActions(QWidget& /*main*/, QMenu& /*menu*/) {}

} // namespace dip
