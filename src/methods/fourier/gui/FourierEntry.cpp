// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#include "methods/fourier/gui/frmPlott5.h"
#include "methods/gui/MethodStarts.h"

namespace dip {

void StartFourier() { frmPlott5::form().start(); }

} // namespace dip
