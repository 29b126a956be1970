// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#include "analysis/PublishedBootstrap.h"

#include "analysis/Toolkit.h"
#include "methods/fourier/FourierFit.h"
#include "session/MainForm.h"
#include "session/Session.h"

#include <QStringList>

#include <cmath>

namespace dip {

MethodRequest PublishedRequest(int row)
{
    const Session& s = S();
    MethodRequest r;
    switch (row) {
    case ParabolaRow:
        r.first = s.ParabolaPick.LeftIdx;
        r.last = s.ParabolaPick.RightIdx;
        break;
    case TracingPaperRow: r.fold = s.FoldHJD; break;
    case ChordsRow:
        r.first = s.Chords.Idx1;
        r.last = s.Chords.Idx2;
        r.first2 = s.Chords.Idx3;
        r.last2 = s.Chords.Idx4;
        break;
    case KweeRow:
        r.first = s.KweePick.LeftIdx;
        r.last = s.KweePick.RightIdx;
        r.kweeStep = s.KweeStepUsed;
        r.kweeFraction = s.KweeFractionUsed;
        break;
    case FourierRow: {
        r.first = s.Fourier.Range.LeftIdx;
        r.last = s.Fourier.Range.RightIdx;
        // The values the published fit started from: the window keeps them for its Undo, while
        // its boxes show the fitted ones.
        rt::Array<double, 0, 8> start;
        fourierParFromSolver(s.Fourier.FitAUndo, start);
        for (int k = 1; k <= 8; ++k)
            r.fourierStart[std::size_t(k)] = start(k);
        break;
    }
    default: break;
    }
    return r;
}

PublishedJob PublishedRowsJob()
{
    const Session& s = S();
    PublishedJob job;
    job.curve.t = s.HJD;
    job.curve.m = s.Mag;
    job.curve.n = s.NumPts;
    for (int k = 1; k <= 6; ++k) {
        const ResultRow& published = s.Results(k);
        if (!published.published)
            continue;
        PublishedRowJob row;
        row.row = k;
        row.time = published.time;
        row.error = published.error;
        // "Use in Mean?" as the main window shows it now, as "Calc. Means" reads it.
        row.ticked = mainForm().checked(k);
        row.offset = s.HJDOffset;
        row.request = PublishedRequest(k);
        job.rows.push_back(row);
    }
    return job;
}

void StoreInToolkit(const PublishedErrors& errors)
{
    ToolkitState& toolkit = Toolkit();
    toolkit.deeg.reset();
    for (ToolkitRow& row : toolkit.rows)
        row.bootstrap.reset();
    for (const PublishedRowErrors& r : errors.rows) {
        if (r.hasBootstrap)
            toolkit.rows[std::size_t(r.row)].bootstrap = r.bootstrap;
        if (r.deeg)
            toolkit.deeg = r.deeg;
    }
}

WeightedMean BootstrapWeightedMean(const std::vector<PublishedRowErrors>& rows)
{
    std::vector<std::pair<double, double>> pairs;
    for (const PublishedRowErrors& r : rows) {
        if (!r.ticked)
            continue;
        if (r.hasBootstrap && !r.bootstrap.valid())
            return WeightedMean();
        pairs.emplace_back(r.time, r.hasBootstrap ? r.advisedError() : r.error);
    }
    return weightedMean(pairs);
}

int PublishedReplicates(const PublishedJob& job, int replicates)
{
    int withBootstrap = 0;
    for (const PublishedRowJob& r : job.rows)
        withBootstrap += HasBootstrap(r.row) ? 1 : 0;
    return withBootstrap * replicates;
}

PublishedErrors BootstrapPublished(const PublishedJob& job, const MethodBootstrapOptions& options,
                                   const std::function<void(int, int)>& progress, const std::atomic<bool>* cancel)
{
    PublishedErrors out;
    const int total = PublishedReplicates(job, options.replicates);
    int before = 0;
    const Curve curve = job.curve.view();
    // The dip reaches as far as any of its picked ranges; the baseline is beside that.
    std::vector<MethodRequest> requests;
    for (const PublishedRowJob& r : job.rows)
        requests.push_back(r.request);
    if (const std::optional<TimeSpan> dip = DipExtent(curve, requests))
        out.baseline = JudgeBaselineNoise(curve, dip->start, dip->end);
    MethodBootstrapOptions judged = options;
    judged.baselineCorrelated = out.baseline.correlated;
    for (const PublishedRowJob& r : job.rows) {
        PublishedRowErrors e;
        e.row = r.row;
        e.time = r.time;
        e.error = r.error;
        e.ticked = r.ticked;
        e.offset = r.offset;
        e.hasBootstrap = HasBootstrap(r.row);
        if (e.hasBootstrap) {
            if (cancel && cancel->load()) {
                out.cancelled = true;
                e.bootstrap.requested = options.replicates;
                e.bootstrap.cancelled = true;
            } else {
                e.fitted = MethodOfRow(r.row).compute(curve, r.request);
                e.bootstrap = BootstrapMethod(
                    r.row, curve, r.request, e.fitted, judged,
                    [&](int done, int) {
                        if (progress)
                            progress(before + done, total);
                    },
                    cancel);
                out.cancelled = out.cancelled || e.bootstrap.cancelled;
            }
            before += options.replicates;
        }
        if (r.row == KweeRow && r.request.first >= 1 && r.request.last <= curve.n)
            e.deeg = DeegKwee(curve.t, curve.m, curve.n, r.request.first, r.request.last);
        if (r.row == ChordsRow)
            e.chordGaps = FindChordGaps(curve.t, curve.m, curve.n, r.request.first, r.request.last, r.request.first2,
                                        r.request.last2);
        out.rows.push_back(e);
    }
    out.mean = BootstrapWeightedMean(out.rows);
    if (progress)
        progress(before, total);
    return out;
}

QString errorBarText(double error)
{
    return std::isfinite(error) ? QString::number(error, 'g', 3) : QStringLiteral("-");
}

QString signedErrorBarText(double offset)
{
    return std::isfinite(offset) ? (offset >= 0 ? QStringLiteral("+") : QString()) + errorBarText(offset)
                                 : QStringLiteral("-");
}

QString replicatesText(const BootstrapResult& b)
{
    return QStringLiteral("%1 of %2, %3 failed").arg(b.successes).arg(b.requested).arg(b.failures);
}

QString chordsCautionText(const ChordGaps& gaps, double advisedError)
{
    QStringList parts;
    if (gaps.any())
        parts << QStringLiteral("%1 of %2 chords across a gap").arg(gaps.acrossAGap).arg(gaps.chords);
    if (std::isfinite(advisedError))
        parts << QStringLiteral("error with the shift ") + errorBarText(advisedError);
    return parts.join(QStringLiteral("; "));
}

QString chordsCautionText(const PublishedRowErrors& row)
{
    return row.chordGaps ? chordsCautionText(*row.chordGaps, row.advisedError()) : QString();
}

double PublishedRowErrors::advisedError() const
{
    return hasBootstrap ? AdvisedBootstrapError(row, bootstrap, fitted.time) : std::numeric_limits<double>::quiet_NaN();
}

} // namespace dip
