// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#pragma once

// The help pages as a reader sees them, each paragraph written out whole (not assembled from
// sentences as the program does), so that a lost blank or a dropped sentence shows up.

#include <QString>
#include <QStringList>

namespace dip::test {

inline const QString expectedIntroductionTitle = QStringLiteral("Help - Introduction");
inline const QString expectedInputFilesTitle = QStringLiteral("Help - Input files");

inline QStringList expectedIntroduction()
{
    return {
        QStringLiteral("This program determines accurate times of minima of eclipsing binary light curves.  It makes"
                       " use of the six different alorithms, all of which have their strengths and weaknesses."),
        QStringLiteral("These methods are:"),
        QStringLiteral("1. Parabolic fit  This algorithm (or routine) fits a parabola to the central part of the"
                       " curve.  For this, you need to select the end points of the range, left and right, using the"
                       " right mouse button."),
        QStringLiteral("2. Tracing paper  This routine reflects the data on itself about an adjustable axis of"
                       " reflection, which is the time of minimum.  Click the slider or type a number and <Update>"
                       " to change the reflection axis so that the two branches coincide."),
        QStringLiteral("3. Bisectors of chords  This algorithm draws lines across from each data point on the left,"
                       " interpolating for the intersection at the right, taking the midpoint of each.  It repeats"
                       " the procedure from the right and takes the mean of all the midpoints.  For this you need to"
                       " select two ranges, left and right - four points in all using the right mouse button."),
        QStringLiteral("4. Kwee and van Woerden  This widely-used method (see 1953BAN....12..327K) requires the end"
                       " points of the range, left and right, that covers most of the points."),
        QStringLiteral("5. Fourier fit  This algorithm fits a 5-term Fourier series (of cosine terms) to the data;"
                       " the time of minimum is one of the parameters.  For this, you need to select the end points"
                       " of the range, left and right, using the right mouse button.  Note that the"
                       " Levenberg-Marquart algorithm will occasionally produce a non-sensical time of minimum.  To"
                       " zero in on the correct minimum, enter the following values into the boxes:  ToM,Xo -"
                       " something close to the time of minimum, Const.C - the magnitude near the bottom of the"
                       " curve, A.Freq - 25-30, Const.A1-5 - positive values starting at 0.1 and decreasing by half"
                       " each time.  Then, select the range and click 'Update'.  Repeated adjustments should get you"
                       " close, then click 'Fit Fourier'."),
        QStringLiteral("6. Sliding integrations  This routine is based on the chapter on the epoch of minimum light"
                       " in \"Software for Photometric Astronomy\" by S. Ghedini (Willmann-Bell, 1982).  For this,"
                       " you don't need to do select a range - just tell it to go."),
        QStringLiteral("Note: The input data is intended to be HJD, magnitude (in the format comma separated"
                       " variables, or csv).  By magnitude, we mean magnitude on the usual magnitude scale, or"
                       " differential mags in the sense var-comp.  If your data is inverted, in the sense comp-var,"
                       " you can activate this button.  In any case, when you plot the data, you'll know if you have"
                       " it right!"),
    };
}

inline QStringList expectedInputFiles()
{
    return {
        QStringLiteral("This program reads text files in the 'comma-separated-variables' format.  These are easily"
                       " generated from Excel."),
        QStringLiteral("In order to do this, manipulate your data to include two contiguous columns: Heliocentric"
                       " Julian Date (HJD) and magnitude.  Then, use the clipboard to copy the data to a fresh"
                       " worksheet.  (Select the block of data by clicking and dragging with your mouse, press"
                       " Ctrl+C, then copy any formulas as values by Alt-E-S-V-<Rtn> in the new worksheet.)  Lastly,"
                       " save in .csv format.  Note that there may not be any blank lines."),
        QStringLiteral("The HJD should be 5 digits plus decimals (chop off the leading '24'), just the fractional"
                       " part, or anything in between.  The magnitudes may be the full magnitudes or differential"
                       " ones.  Therefore (as everyone knows) the dimmest points have the largest numerical"
                       " magnitudes.  If your data are inverted magnitudes (C-V), just activate the '-Mags"
                       " (inverted)' selection."),
        QStringLiteral("Note: In order to make data files compatable with other programs, there can be up to 4 extra"
                       " unused columns of data (also separated by commas).  In other words, each line could be"
                       " 'HJD, mag, unused, unused, unused, unused'.  However, note that each line must be of the"
                       " same format."),
        QString(),
    };
}

// Fails naming the first character where the two texts part.
inline QString firstDifference(const QString& actual, const QString& expected)
{
    const qsizetype common = std::min(actual.size(), expected.size());
    for (qsizetype i = 0; i < common; ++i)
        if (actual.at(i) != expected.at(i))
            return QStringLiteral("character %1: got \"%2\", expected \"%3\"")
                .arg(i)
                .arg(actual.mid(i, 30), expected.mid(i, 30));
    if (actual.size() != expected.size())
        return QStringLiteral("lengths %1 and %2 after \"%3\"")
            .arg(actual.size())
            .arg(expected.size())
            .arg(actual.right(30));
    return QString();
}

#define DIP_COMPARE_TEXT(actual, expected)                                                                             \
    do {                                                                                                               \
        const QString diff_ = dip::test::firstDifference((actual), (expected));                                        \
        if (!diff_.isEmpty())                                                                                          \
            QFAIL(qPrintable(diff_));                                                                                  \
    } while (false)

} // namespace dip::test
