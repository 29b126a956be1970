// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#include "help/gui/HelpEntries.h"

#include "help/HelpTexts.h"
#include "help/gui/frmAbout.h"
#include "help/gui/frmHelp.h"

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
