// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#pragma once

// Times every predicted eclipse of a light curve with the chosen methods, one eclipse per task
// on a pool of threads, and hands the rows on in eclipse order as soon as they are ready.

#include "analysis/EclipseWindow.h"

#include <QString>
#include <QStringList>

#include <functional>
#include <limits>
#include <optional>
#include <vector>

namespace dip {

// What a method made of one window. The time is in the window's times (offset subtracted).
struct MethodOutcome {
    enum class Status { Done, Failed };
    Status status = Status::Failed;
    double time = 0;
    double error = std::numeric_limits<double>::quiet_NaN();
    int points = 0;
    QString note;         // why it failed or is not available
    QStringList messages; // the message boxes the method would have shown, in order
    // The bootstrap error, days, when one was asked for and could be formed; otherwise why not.
    std::optional<double> bootstrapError;
    QString bootstrapNote;
    // A bias of the time that the bootstrap's spread does not show ("5 of 9 chords across a
    // gap"), with a bootstrap followed by the error that counts it ("; error with the shift
    // 0.000341"); empty where there is none.
    QString caution;
};

// The bootstrap asked for: resamples (0 for none), and whether the noise is taken as correlated
// (the observer's word for ground-based photometry; MethodBootstrapOptions::correlatedNoise).
struct BatchBootstrap {
    int replicates = 0;
    bool correlatedNoise = false;
};

// Runs one method on one window, with a bootstrap when one is asked for. Called from several
// threads at once: it must keep no state of its own between calls. A runtime error it lets
// through becomes a "failed" row.
using MethodRunner =
    std::function<MethodOutcome(const BatchWindow& window, int method, const BatchBootstrap& bootstrap)>;

// One row of the output: one eclipse and one method.
struct BatchRow {
    QString file;
    double cycle = 0;
    int method = 0;
    // "ok"; "skipped: ..." (the eclipse) or "failed: ..." (the method). What the
    // method's message boxes said follows "ok" or the failure after "; ".
    QString status;
    bool timed = false; // time, error, oc and points hold the result
    double time = std::numeric_limits<double>::quiet_NaN();
    double error = std::numeric_limits<double>::quiet_NaN();
    std::optional<double> bootstrapError;
    OcValue oc;
    int points = 0;
    bool secondary() const;
};

struct BatchSettings {
    EclipseSettings eclipses; // halfWidth 0: measured on the folded light curve
    std::vector<int> methods = {4, 5};
    int threads = 1;
    BatchBootstrap bootstrap; // for the bootstrap errors; 0 resamples for none
};

struct FileTiming {
    std::size_t eclipses = 0; // predicted within the data
    std::size_t skipped = 0;  // of these, skipped with a reason
    double halfWidth = 0;     // the one used
};

using RowSink = std::function<void(const BatchRow& row)>;
using ProgressSink = std::function<void(std::size_t done, std::size_t total)>;

// Times every eclipse of curve (sorted by time) predicted between its first and last time. file
// names the curve in the rows. Throws InputError when the half-width is to be measured and the
// folded light curve shows no eclipse.
FileTiming timeEveryEclipse(const LightCurve& curve, const QString& file, const BatchSettings& settings,
                            const MethodRunner& runner, const RowSink& sink, const ProgressSink& progress = {});

} // namespace dip
