// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#pragma once

// What the main window's method buttons start, once a file is loaded and (for methods 1, 3, 4
// and 5) RangeFirst and RangeLast have been set to 1 and NumPts. Each method's folder
// implements its own entry.

namespace dip {

void StartParabola();     // Command1: frmPlott1
void StartTracingPaper(); // Command2: frmPlott2
void StartChords();       // Command3: frmPlott3
void StartKwee();         // Command4: frmPlott4
void StartFourier();      // Command5: frmPlott5
void StartSliding();      // Command6: computed at once, no window

} // namespace dip
