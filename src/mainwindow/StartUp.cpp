// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#include "mainwindow/StartUp.h"

#include "mainwindow/ErrorTable.h"
#include "session/Session.h"

namespace dip {

void StartUpSession()
{
    Session& s = S();
    FillErrorText();
    ResetMethodWindowFlags(s);
    // "+Mags" is selected with no file loaded: of the sign handling only the sign shows.
    s.MagSign = 1;
}

} // namespace dip
