// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#include "methods/gui/MethodStarts.h"

#include "methods/chords/gui/frmPlott3.h"

namespace dip {

void StartChords()
{
    frmPlott3& w = frmPlott3::form();
    w.showForm();
    w.redraw();
}

} // namespace dip
