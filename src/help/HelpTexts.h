// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#pragma once

// The two built-in help pages. There is no help file: the texts live in the program. Each
// paragraph is its sentences joined directly, with nothing in between; a continuing sentence
// carries its own two leading blanks, and a heading such as "1. Parabolic fit" runs on into its
// first sentence in the same paragraph.

#include <QString>
#include <QStringList>

namespace dip {

struct HelpPage {
    QString title;
    QStringList paragraphs; // at most 10; the help window has labels for 9
};

// "Help - Introduction": 9 paragraphs.
const HelpPage& helpIntroductionPage();
// "Help - Input files": 5 paragraphs, the fifth empty.
const HelpPage& helpInputFilesPage();

} // namespace dip
