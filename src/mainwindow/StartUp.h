// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#pragma once

namespace dip {

// What the main window's start-up does to the session, the settings file aside: fills
// ErrorText, clears the method windows' first-time flags and range flags, sets the tracing
// paper's averaging width to 1 and MagSign to +1 ("+Mags" selected with no file loaded).
void StartUpSession();

} // namespace dip
