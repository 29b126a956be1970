// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#include "plotting/Printing.h"

namespace dip {

void PrintForm(QWidget*) {}
void PrintSetup(QWidget*) {}

} // namespace dip
