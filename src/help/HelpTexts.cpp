// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#include "help/HelpTexts.h"

#include <initializer_list>

namespace dip {

namespace {

// One paragraph from its sentences, joined with nothing in between.
QString paragraph(std::initializer_list<const char*> sentences)
{
    QString text;
    for (const char* sentence : sentences)
        text += QString::fromLatin1(sentence);
    return text;
}

// The spellings "alorithms", "Levenberg-Marquart" and "don't need to do select" are kept as the
// page has always read.
HelpPage makeIntroduction()
{
    HelpPage page;
    page.title = QStringLiteral("Help - Introduction");
    page.paragraphs = {
        paragraph({"This program determines accurate times of minima of eclipsing binary light curves.",
                   "  It makes use of the six different alorithms, all of which have their strengths and "
                   "weaknesses."}),
        paragraph({"These methods are:"}),
        paragraph({"1. Parabolic fit",
                   "  This algorithm (or routine) fits a parabola to the central part of the curve.",
                   "  For this, you need to select the end points of the range, left and right, using the right "
                   "mouse button."}),
        paragraph({"2. Tracing paper",
                   "  This routine reflects the data on itself about an adjustable axis of reflection, which is "
                   "the time of minimum.",
                   "  Click the slider or type a number and <Update> to change the reflection axis so that the "
                   "two branches coincide."}),
        paragraph({"3. Bisectors of chords",
                   "  This algorithm draws lines across from each data point on the left, interpolating for the "
                   "intersection at the right, taking the midpoint of each.",
                   "  It repeats the procedure from the right and takes the mean of all the midpoints.",
                   "  For this you need to select two ranges, left and right - four points in all using the "
                   "right mouse button."}),
        paragraph({"4. Kwee and van Woerden",
                   "  This widely-used method (see 1953BAN....12..327K) requires the end points of the range, "
                   "left and right, that covers most of the points."}),
        paragraph({"5. Fourier fit",
                   "  This algorithm fits a 5-term Fourier series (of cosine terms) to the data; the time of "
                   "minimum is one of the parameters.",
                   "  For this, you need to select the end points of the range, left and right, using the right "
                   "mouse button.",
                   "  Note that the Levenberg-Marquart algorithm will occasionally produce a non-sensical time "
                   "of minimum.",
                   "  To zero in on the correct minimum, enter the following values into the boxes:  ToM,Xo - "
                   "something close to the time of minimum, Const.C - the magnitude near the bottom of the "
                   "curve, A.Freq - 25-30, Const.A1-5 - positive values starting at 0.1 and decreasing by half "
                   "each time.",
                   "  Then, select the range and click 'Update'.",
                   "  Repeated adjustments should get you close, then click 'Fit Fourier'."}),
        paragraph({"6. Sliding integrations",
                   "  This routine is based on the chapter on the epoch of minimum light in \"Software for "
                   "Photometric Astronomy\" by S. Ghedini (Willmann-Bell, 1982).",
                   "  For this, you don't need to do select a range - just tell it to go."}),
        paragraph({"Note: The input data is intended to be HJD, magnitude (in the format comma separated "
                   "variables, or csv).",
                   "  By magnitude, we mean magnitude on the usual magnitude scale, or differential mags in the "
                   "sense var-comp.",
                   "  If your data is inverted, in the sense comp-var, you can activate this button.",
                   "  In any case, when you plot the data, you'll know if you have it right!"}),
    };
    return page;
}

// "compatable" is kept as the page has always read. The fifth paragraph is empty: the page
// lays out five paragraphs and shows four.
HelpPage makeInputFiles()
{
    HelpPage page;
    page.title = QStringLiteral("Help - Input files");
    page.paragraphs = {
        paragraph({"This program reads text files in the 'comma-separated-variables' format.",
                   "  These are easily generated from Excel."}),
        paragraph({"In order to do this, manipulate your data to include two contiguous columns: Heliocentric "
                   "Julian Date (HJD) and magnitude.",
                   "  Then, use the clipboard to copy the data to a fresh worksheet.",
                   "  (Select the block of data by clicking and dragging with your mouse, press Ctrl+C, then "
                   "copy any formulas as values by Alt-E-S-V-<Rtn> in the new worksheet.)",
                   "  Lastly, save in .csv format.", "  Note that there may not be any blank lines."}),
        paragraph({"The HJD should be 5 digits plus decimals (chop off the leading '24'), just the fractional "
                   "part, or anything in between.",
                   "  The magnitudes may be the full magnitudes or differential ones.",
                   "  Therefore (as everyone knows) the dimmest points have the largest numerical magnitudes.",
                   "  If your data are inverted magnitudes (C-V), just activate the '-Mags (inverted)' "
                   "selection."}),
        paragraph({"Note: In order to make data files compatable with other programs, there can be up to 4 extra "
                   "unused columns of data (also separated by commas).",
                   "  In other words, each line could be 'HJD, mag, unused, unused, unused, unused'.",
                   "  However, note that each line must be of the same format."}),
        QString(),
    };
    return page;
}

} // namespace

const HelpPage& helpIntroductionPage()
{
    static const HelpPage page = makeIntroduction();
    return page;
}

const HelpPage& helpInputFilesPage()
{
    static const HelpPage page = makeInputFiles();
    return page;
}

} // namespace dip
