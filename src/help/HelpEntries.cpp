// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#include "help/HelpEntries.h"

#include "help/HelpTexts.h"
#include "help/frmAbout.h"
#include "help/frmHelp.h"

namespace dip {

void ShowHelpIntroduction() { frmHelp::load().showPage(helpIntroductionPage()); }

void ShowHelpDataFiles() { frmHelp::load().showPage(helpInputFilesPage()); }

void ShowAbout()
{
    frmAbout& box = frmAbout::load();
    box.show();
    box.raise();
    box.activateWindow();
}

} // namespace dip
