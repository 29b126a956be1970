// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#include "methods/gui/MethodStarts.h"

#include "methods/MethodRegistry.h"

namespace dip {

void PressMethodButton(int row)
{
    static void (*const starts[])() = {
#define DIPSCOPE_METHOD(row, Name, title, option, arguments, picksRange) Start##Name,
#include "methods/Methods.def"
#undef DIPSCOPE_METHOD
    };
    const MethodEntry& method = MethodOfRow(row);
    if (MethodButtonPrelude(method))
        starts[row - 1]();
}

} // namespace dip
