// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#pragma once

// A light curve as a value: the rows a file holds, before anything of the session is touched.
// The CSV reader makes one (readCsv), and so does every importer of other formats; one install
// step puts it into the session exactly as loading always has. A value can be read, checked,
// cut to a time window or handed to another thread without a window or a session.

#include <QString>

#include <cstddef>
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

    // Each time as written, in two parts where the reader keeps them: its whole days and the
    // rest, wholeDays[i] + dayFractions[i] being the time exactly (times[i] is that sum in one
    // double, which holds a full Julian date only to 40 microseconds). Subtracting whole days at
    // a load uses them, so that a full Julian date and the same time written as the fraction of
    // a day give the methods the very same numbers. Empty when a reader keeps only times.
    std::vector<double> wholeDays;
    std::vector<double> dayFractions;

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

    // Both parts are there for every row.
    bool hasTimeParts() const { return wholeDays.size() == times.size() && dayFractions.size() == times.size(); }

    // Appends a row, its time in two parts (whole + fraction exactly) or as one double.
    void addRow(double whole, double fraction, double mag)
    {
        times.push_back(whole + fraction);
        wholeDays.push_back(whole);
        dayFractions.push_back(fraction);
        mags.push_back(mag);
    }
    void addRow(double time, double mag)
    {
        times.push_back(time);
        mags.push_back(mag);
    }

    // The same light curve with only the rows at the given indexes (0-based), in that order;
    // rowCount becomes their number.
    LightCurve withRows(const std::vector<std::size_t>& rows) const
    {
        LightCurve out = *this;
        const bool parts = hasTimeParts();
        out.times.clear();
        out.mags.clear();
        out.wholeDays.clear();
        out.dayFractions.clear();
        for (const std::size_t i : rows) {
            if (parts)
                out.addRow(wholeDays[i], dayFractions[i], mags[i]);
            else
                out.addRow(times[i], mags[i]);
            out.times.back() = times[i];
        }
        out.rowCount = static_cast<int>(out.times.size());
        return out;
    }
};

} // namespace dip
