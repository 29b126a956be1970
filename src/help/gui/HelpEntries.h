// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#pragma once

namespace dip {

void ShowHelpIntroduction(); // Help > "Help - Introduction"
void ShowHelpDataFiles();    // Help > "Help -Data files"
void ShowAbout();            // Help > "About"

} // namespace dip
