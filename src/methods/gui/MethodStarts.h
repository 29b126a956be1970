// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#pragma once

// The start column of the method table: what the main window's method button k starts once
// MethodButtonPrelude has let it (a file is loaded; RangeFirst and RangeLast set for the
// methods that pick a range). Each method's gui/ folder defines its StartName.

namespace dip {

#define DIPSCOPE_METHOD(row, Name, title, option, arguments, picksRange) void Start##Name();
#include "methods/Methods.def"
#undef DIPSCOPE_METHOD

// Method button k (1..6): the prelude, then the method's start.
void PressMethodButton(int row);

} // namespace dip
