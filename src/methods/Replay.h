// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#pragma once

// The methods as a user drives them, without windows: the console tool replays a session
// through these, and each one runs the same procedures its window runs. Times of clicks are
// taken exactly: a right-click at time t has ClickHJD = t.

#include <QString>
#include <QStringList>

#include <optional>
#include <vector>

namespace dip {

struct ReplayResult {
    bool published = false; // the method wrote a result row
    double time = 0;        // HJDOffset plus the method's time of minimum
    double error = 0;
    int trappedError = 0; // an error caught by the method's own trap (sliding integrations)
    // The method window's parameter boxes as the compute button left them, where it rewrites
    // them (the Fourier fit's Text1(1..8): Xo, C, W, A1..A5).
    QStringList boxes;
};

// Method button 1, one right-click per time in order, then "Fit Parabola".
ReplayResult ReplayParabola(const std::vector<double>& clicks);
// Method button 2, foldText typed into the fold box, then "Update".
ReplayResult ReplayTracingPaper(const QString& foldText);
// Method button 3, four right-clicks, then "Bisect Chords".
ReplayResult ReplayChords(const std::vector<double>& clicks);
// Method button 4, right-clicks, the two parameter texts, then "Fit Kwee".
ReplayResult ReplayKwee(const std::vector<double>& clicks, const QString& stepp, const QString& frac);
// Method button 5, right-clicks, optionally eight texts typed into the boxes and "Update",
// then " Fit Fourier".
ReplayResult ReplayFourier(const std::vector<double>& clicks, const std::optional<QStringList>& start);
// Method button 6.
ReplayResult ReplaySliding();

} // namespace dip
