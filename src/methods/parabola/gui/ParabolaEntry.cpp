// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#include "methods/gui/MethodStarts.h"

#include "methods/parabola/gui/frmPlott1.h"

namespace dip {

void StartParabola()
{
    frmPlott1& w = frmPlott1::form();
    w.showForm();
    w.redraw();
}

} // namespace dip
