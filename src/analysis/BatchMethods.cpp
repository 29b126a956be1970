// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#include "analysis/BatchMethods.h"

#include "analysis/MethodBootstrap.h"
#include "analysis/PublishedBootstrap.h"
#include "methods/chords/ChordGaps.h"

#include <cmath>
#include <limits>

namespace dip {

namespace {

// The most points each method's arrays hold (see batchMethodCall).
const std::size_t kweePoints = 555;
const std::size_t slidingPoints = 998;

// Each eclipse's bootstrap draws from streams of its own, fixed by its cycle number, so that
// the rows do not depend on the order in which the eclipses run.
std::uint64_t bootstrapSeed(double cycle) { return 1 + static_cast<std::uint64_t>(std::llround(2 * cycle)); }

} // namespace

bool isBatchMethod(int method) { return method == ParabolaRow || (method >= ChordsRow && method <= SlidingRow); }

std::optional<BatchMethodCall> batchMethodCall(const BatchWindow& window, int method)
{
    if (!isBatchMethod(method))
        return std::nullopt;
    const BatchWindow w = method == KweeRow      ? window.central(kweePoints)
                          : method == SlidingRow ? window.central(slidingPoints)
                                                 : window;
    BatchMethodCall call;
    call.curve = CurveData::from(w.t, w.m);
    MethodRequest& r = call.request;
    r.first = 1;
    r.last = call.curve.n;
    call.points = call.curve.n;
    if (method == ChordsRow) {
        const ChordRanges c = chordRanges(w);
        if (!c.found()) {
            call.why = QStringLiteral("no chords: a branch has no points between a fifth and four fifths of the depth");
            return call;
        }
        r.first = rt::i16(c.first);
        r.last = rt::i16(c.last);
        r.first2 = rt::i16(c.first2);
        r.last2 = rt::i16(c.last2);
        call.points = c.points();
    } else if (method == FourierRow) {
        for (std::size_t k = 1; k <= 8; ++k)
            r.fourierStart[k] = w.fourierStart[k - 1];
    }
    return call;
}

MethodOutcome runBatchMethod(const BatchWindow& window, int method, const BatchBootstrap& bootstrap)
{
    MethodOutcome out;
    out.status = MethodOutcome::Status::Failed;
    const std::optional<BatchMethodCall> call = batchMethodCall(window, method);
    if (!call) {
        out.note = QStringLiteral("method %1 does not time eclipses in a batch").arg(method);
        return out;
    }
    const BatchMethodCall& c = *call;
    if (!c.why.isEmpty()) {
        out.note = c.why;
        return out;
    }
    const Curve curve = c.curve.view();
    const MethodResult r = MethodOfRow(method).compute(curve, c.request);
    out.messages = r.messages;
    if (!r.ok) {
        out.note = QStringLiteral("%1 (run-time error %2)").arg(r.runtimeErrorText, QString::number(r.runtimeError));
        return out;
    }
    out.status = MethodOutcome::Status::Done;
    out.time = r.time;
    out.error = std::abs(r.error);
    out.points = method == SlidingRow ? r.slideN : c.points;
    // The error to believe (for the chords with the replicates' shift), for the caution.
    double advised = std::numeric_limits<double>::quiet_NaN();
    if (bootstrap.replicates > 0) {
        MethodBootstrapOptions options;
        options.replicates = bootstrap.replicates;
        options.correlatedNoise = bootstrap.correlatedNoise;
        options.seed = bootstrapSeed(window.cycle);
        options.threads = 1; // the batch already runs one eclipse per thread
        const BootstrapResult b = BootstrapMethod(method, curve, c.request, r, options);
        if (b.valid()) {
            out.bootstrapError = b.error;
            advised = AdvisedBootstrapError(method, b, r.time);
        } else if (!b.problem.isEmpty())
            out.bootstrapNote = b.problem;
        else
            out.bootstrapNote = QStringLiteral("%1 of %2 resamples gave a time").arg(b.successes).arg(b.requested);
    }
    if (method == ChordsRow)
        out.caution = chordsCautionText(FindChordGaps(curve.t, curve.m, curve.n, c.request.first, c.request.last,
                                                      c.request.first2, c.request.last2),
                                        advised);
    return out;
}

} // namespace dip
