// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#pragma once

// What an importer read from a file, and the choices that make a light curve of it: the
// filter (when the file holds several), the time window, and the 1000-observation limit.

#include "session/LightCurveData.h"

#include <QString>
#include <QStringList>

#include <vector>

namespace dip::import {

enum class FileFormat { Csv, AavsoExtended, AstroImageJ, Fits };

// "comma-separated (the program's own)", "AAVSO extended", "AstroImageJ", "FITS light curve".
QString formatName(FileFormat format);

// Every usable row of a file, sorted by time, before a filter or a window is chosen.
struct ImportedRows {
    FileFormat format = FileFormat::Csv;
    // The rows, sorted by time (stable: rows of equal time keep the file's order). Times are
    // full Julian dates in curve.timeSystem; magnitudes as read, or -2.5 log10 of a flux.
    // curve.filter is set when the file has one filter, empty when it has several.
    LightCurve curve;
    // The filter of each row (AAVSO), in the order of curve.times; empty for other formats.
    std::vector<QString> rowFilters;
    // The columns that were read ("BJD_TDB", "rel_flux_T1 as -2.5 log10"), and the rows left
    // out and why ("3 rows flagged by QUALITY"), for the user to see.
    QStringList notes;
    int droppedRows = 0;
};

struct FilterCount {
    QString filter;
    int count = 0;
};

// The filters of the rows in the order they first appear, with their counts; empty when the
// format carries no filter per row.
std::vector<FilterCount> filtersIn(const ImportedRows& rows);

// The filter to take when the user chose none: the most frequent, of equal counts the first to
// appear; empty when there are no per-row filters.
QString defaultFilter(const ImportedRows& rows);

// The rows of one filter (case ignored), curve.filter set to it. Throws ImportError naming the
// filters present when the file has none of that name.
ImportedRows withFilter(const ImportedRows& rows, const QString& filter);

// Puts the rows in order of time, stable, carrying the per-row filters along.
void sortByTime(ImportedRows& rows);

// A time window, both ends included, in the file's own times.
struct TimeWindow {
    double first = 0;
    double last = 0;
};

// How many observations of the curve lie in the window.
int countInWindow(const LightCurve& curve, const TimeWindow& window);

// The observations in the window, in their order; everything else of the curve is kept and
// rowCount is set to the number that remain.
LightCurve cutToWindow(const LightCurve& curve, const TimeWindow& window);

// A session holds at most this many observations.
constexpr int maxObservations = 1000;

// Throws ImportError (line 0) when the curve holds more observations than a session can: the
// message gives the count, the times they span and asks for a time window.
void checkObservationLimit(const LightCurve& curve);

} // namespace dip::import
