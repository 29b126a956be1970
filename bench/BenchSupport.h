// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#pragma once

#include <QByteArray>
#include <QString>

#include <functional>

namespace dip::bench {

// Runs fn `runs` times (after one warm-up run) and returns the median wall time in ms.
double medianMs(int runs, const std::function<void()>& fn);

// Prints "name: median X.XXX ms over N runs (target ...)".
void report(const QString& name, double medianMs, int runs, const QString& target = QString());

// A synthetic light curve of n points around a minimum at 0.5 (fraction of the day), CSV text.
QByteArray syntheticCurve(int n);

// Writes text as "curve.csv" into folder and opens it as the Open dialog does; false when the
// file cannot be written or the reader refuses it.
bool openCurve(const QString& folder, const QByteArray& text);

} // namespace dip::bench
