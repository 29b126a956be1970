// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#include "methods/MethodEntries.h"

#include "methods/chords/frmPlott3.h"

namespace dip {

void StartChords()
{
    frmPlott3& w = frmPlott3::form();
    w.showForm();
    w.redraw();
}

} // namespace dip
