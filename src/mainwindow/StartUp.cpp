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
    s.FirstTime(1) = 0;
    s.FirstTime(3) = 0;
    s.FirstTime(4) = 0;
    s.FirstTime(5) = 0;
    s.AvgPoints = 1;
    s.ParabolaPick.clearFlags();
    s.KweePick.clearFlags();
    s.Fourier.Range.clearFlags();
    // "+Mags" is selected with no file loaded: of the sign handling only the sign shows.
    s.MagSign = 1;
}

} // namespace dip
