// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#include "methods/MethodEntries.h"
#include "methods/fourier/frmPlott5.h"

namespace dip {

void StartFourier() { frmPlott5::form().start(); }

} // namespace dip
