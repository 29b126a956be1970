// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#include "methods/gui/MethodEntries.h"
#include "methods/fourier/gui/frmPlott5.h"

namespace dip {

void StartFourier() { frmPlott5::form().start(); }

} // namespace dip
