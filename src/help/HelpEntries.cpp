// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#include "help/HelpEntries.h"

namespace dip {

void ShowHelpIntroduction() {}
void ShowHelpDataFiles() {}
void ShowAbout() {}

} // namespace dip
