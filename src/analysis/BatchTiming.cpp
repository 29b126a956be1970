// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#include "analysis/BatchTiming.h"

#include "analysis/InputError.h"
#include "analysis/OrderedPool.h"
#include "runtime/RuntimeError.h"

#include <cmath>

namespace dip {

namespace {

// "; Singular matrix 2 (12 times); Improper permutation in LISTA": what the message boxes
// said, each text once in the order it first came, with its count; "" when nothing was said.
QString messageSummary(const QStringList& messages)
{
    QStringList texts;
    std::vector<int> counts;
    for (const QString& m : messages) {
        const int at = static_cast<int>(texts.indexOf(m));
        if (at >= 0) {
            ++counts[static_cast<std::size_t>(at)];
        } else {
            texts << m;
            counts.push_back(1);
        }
    }
    QString out;
    for (int i = 0; i < texts.size(); ++i) {
        const int n = counts[static_cast<std::size_t>(i)];
        out += QStringLiteral("; ") + QString(texts[i]).replace(QLatin1Char('\n'), QLatin1Char(' '));
        if (n > 1)
            out += QStringLiteral(" (%1 times)").arg(n);
    }
    return out;
}

struct EclipseRows {
    std::vector<BatchRow> rows;
    bool skipped = false;
};

EclipseRows timeOne(const LightCurve& curve, const QString& file, const BatchSettings& settings, double gap,
                    double cycle, const MethodRunner& runner)
{
    const WindowCut cut = cutWindow(curve, settings.eclipses, gap, cycle);
    EclipseRows out;
    out.skipped = !cut.skipped.isEmpty();
    std::vector<BatchRow>& rows = out.rows;
    for (const int method : settings.methods) {
        BatchRow row;
        row.file = file;
        row.cycle = cycle;
        row.method = method;
        if (!cut.skipped.isEmpty()) {
            row.status = QStringLiteral("skipped: ") + cut.skipped;
            rows.push_back(row);
            continue;
        }
        MethodOutcome outcome;
        try {
            outcome = runner(cut.window, method, settings.bootstrap);
        } catch (const rt::RuntimeError& e) {
            outcome.status = MethodOutcome::Status::Failed;
            outcome.note = QStringLiteral("%1 (run-time error %2)").arg(e.text(), QString::number(e.number()));
        }
        const QString said = messageSummary(outcome.messages);
        switch (outcome.status) {
        case MethodOutcome::Status::Done: {
            const std::vector<double>& t = cut.window.t;
            if (!std::isfinite(outcome.time)) {
                row.status = QStringLiteral("failed: no time of minimum") + said;
                break;
            }
            // A fit may wander off (the Fourier fit's help warns of a non-sensical time now and
            // then): a time outside the points it was given is no time of this eclipse.
            if (outcome.time < t.front() || outcome.time > t.back()) {
                row.status = QStringLiteral("failed: the time of minimum %1 lies outside the window")
                                 .arg(QString::number(cut.window.offset + outcome.time, 'f', 5)) +
                             said;
                break;
            }
            row.status = QStringLiteral("ok") + said;
            if (!outcome.caution.isEmpty())
                row.status += QStringLiteral("; ") + outcome.caution;
            row.timed = true;
            row.time = cut.window.offset + outcome.time;
            row.error = outcome.error;
            row.points = outcome.points;
            row.oc = ocAtCycle(settings.eclipses.ephemeris, row.time, cycle);
            if (settings.bootstrap.replicates > 0) {
                row.bootstrapError = outcome.bootstrapError;
                if (!outcome.bootstrapError)
                    row.status += QStringLiteral("; no bootstrap error: ") + outcome.bootstrapNote;
            }
            break;
        }
        case MethodOutcome::Status::Failed: row.status = QStringLiteral("failed: ") + outcome.note + said; break;
        }
        rows.push_back(row);
    }
    return out;
}

} // namespace

bool BatchRow::secondary() const { return cycle != std::floor(cycle); }

FileTiming timeEveryEclipse(const LightCurve& curve, const QString& file, const BatchSettings& settings,
                            const MethodRunner& runner, const RowSink& sink, const ProgressSink& progress)
{
    FileTiming result;
    BatchSettings used = settings;
    if (!(used.eclipses.halfWidth > 0)) {
        const WidthMeasure measured = measureHalfWidth(curve, used.eclipses.ephemeris);
        if (!measured.problem.isEmpty())
            throw InputError(file, 0, measured.problem);
        // Never so wide that a window reaches the next eclipse.
        const double period = used.eclipses.ephemeris.period;
        used.eclipses.halfWidth = std::min(measured.halfWidth, (used.eclipses.secondaries ? 0.2 : 0.45) * period);
    }
    result.halfWidth = used.eclipses.halfWidth;
    if (curve.times.empty())
        return result;

    const double gap = gapLimit(medianCadence(curve.times));
    const EclipseSchedule schedule(used.eclipses.ephemeris, used.eclipses.secondaries, curve.times.front(),
                                   curve.times.back());
    result.eclipses = schedule.size();
    runOrdered<EclipseRows>(
        schedule.size(), used.threads,
        [&](std::size_t i) { return timeOne(curve, file, used, gap, schedule.cycle(i), runner); },
        [&](std::size_t i, EclipseRows&& eclipse) {
            if (eclipse.skipped)
                ++result.skipped;
            for (const BatchRow& row : eclipse.rows)
                sink(row);
            if (progress)
                progress(i + 1, schedule.size());
        });
    return result;
}

} // namespace dip
