// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#pragma once

// A light curve of any length for timing every eclipse of it, whatever kind of file holds it:
// the kind is told by the content (import/Import.h). A comma-separated file is read by the
// program's own reader, without its limit of 1000 rows; an AAVSO, AstroImageJ or FITS file by
// its importer, every usable row, of the most frequent filter where the rows carry several.

#include "session/LightCurveData.h"

#include <QString>
#include <QStringList>

namespace dip {

struct BatchCurve {
    // Sorted by time (a stable sort: rows of equal time keep the file's order); source is the
    // path as given.
    LightCurve curve;
    QString format;    // "comma-separated (the program's own)", "AAVSO extended", ...
    QStringList notes; // what an importer says it read and left out; the filter it took
};

// Reads path. Throws InputError naming the file and, where one line is at fault, the line: a
// file that cannot be read, a time or magnitude that is not a number, a file that is not
// comma-separated, and whatever an importer refuses.
BatchCurve readBatchCurve(const QString& path);

} // namespace dip
