// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#pragma once

// A light curve as a value: the rows a file holds, before anything of the session is touched.
// The CSV reader makes one (readCsv), and so does every importer of other formats; one install
// step puts it into the session exactly as loading always has. A value can be read, checked,
// cut to a time window or handed to another thread without a window or a session.

#include <QString>

#include <vector>

namespace dip {

// The time system the times of a file are in. Unstated is what the CSV format says nothing
// about: the program calls its times HJD.
enum class TimeSystem { Unstated, JD_UTC, HJD_UTC, BJD_TDB };

struct LightCurve {
    // Column 1 and column 2 of every data row, in file order (the magnitudes as read, never
    // sign-changed). Importers sort their rows by time; the CSV reader keeps the file's order.
    std::vector<double> times;
    std::vector<double> mags;

    // How the CSV reader read the file: the number of commas of line 2 (c2), whether line 1 was
    // skipped (a header, or a line shaped unlike line 2), and the count of data rows it arrived
    // at, which is -1 when c2 is 6 or more (no row is read then). Importers set rowCount to the
    // number of rows and leave the rest.
    int commas = 0;
    bool firstLineSkipped = false;
    int rowCount = 0;

    // What an imported file says about itself, where it says it (empty or Unstated otherwise).
    // Importers give full Julian dates in the file's own time system (TESS's BTJD plus
    // BJDREFI + BJDREFF, for one).
    TimeSystem timeSystem = TimeSystem::Unstated;
    QString starName;
    QString filter;
    QString observerCode;
    QString source; // the file it came from, for messages
};

} // namespace dip
