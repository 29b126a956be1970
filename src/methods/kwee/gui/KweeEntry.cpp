// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#include "methods/gui/MethodStarts.h"

#include "methods/kwee/gui/frmPlott4.h"

namespace dip {

void StartKwee()
{
    frmPlott4& w = frmPlott4::form();
    w.showForm();
    w.redraw();
}

} // namespace dip
