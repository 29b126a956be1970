// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#pragma once

// The bootstrap errors of the results the user published, repeated exactly as measured: the
// same used points, the same picked indexes, Kwee's s and f as "Fit Kwee" last read them, the
// Fourier fit started from the parameters it found (every replicate starts there too, see
// MethodBootstrap.h). The job is taken from the session on the thread that owns it and runs on
// any thread; the session may change meanwhile.
//
// Beside each row's bootstrap: Deeg's error of row 4 on the same range, and the weighted mean
// of the rows ticked "Use in Mean?" with their bootstrap errors as weights (a row without a
// bootstrap, the tracing paper, brings its own error).

#include "analysis/BaselineNoise.h"
#include "analysis/MethodBootstrap.h"
#include "analysis/WeightedMean.h"
#include "methods/MethodRegistry.h"
#include "methods/chords/ChordGaps.h"
#include "methods/kwee/DeegKwee.h"
#include "session/Curve.h"

#include <atomic>
#include <functional>
#include <limits>
#include <optional>
#include <vector>

namespace dip {

// The request that reproduces published row k from what the session keeps of its window.
MethodRequest PublishedRequest(int row);

struct PublishedRowJob {
    int row = 0;
    double time = 0; // as published, with HJDOffset
    double error = 0;
    bool ticked = false;
    double offset = 0; // HJDOffset, to put the method's time where the published one is
    MethodRequest request;
};

struct PublishedJob {
    CurveData curve; // the used points
    std::vector<PublishedRowJob> rows;
};

// Every published row of the session, in row order.
PublishedJob PublishedRowsJob();

struct PublishedRowErrors {
    int row = 0;
    double time = 0;
    double error = 0; // the method's own
    bool ticked = false;
    double offset = 0; // HJDOffset: the bootstrap's times are the method's, without it
    bool hasBootstrap = false;
    MethodResult fitted; // the method on the points themselves
    BootstrapResult bootstrap;
    std::optional<DeegKweeResult> deeg; // row 4
    std::optional<ChordGaps> chordGaps; // row 3: chords read across a gap, a bias the spread cannot show

    // The bootstrap's error to believe (AdvisedBootstrapError: for the chords with the
    // replicates' shift from the time), NaN without a valid bootstrap.
    double advisedError() const;
    // The bootstrap's percentiles as offsets from the published time.
    double p16FromTime() const { return bootstrap.p16 + offset - time; }
    double p84FromTime() const { return bootstrap.p84 + offset - time; }
};

struct PublishedErrors {
    std::vector<PublishedRowErrors> rows;
    // Over the ticked rows, bootstrap errors (the advised ones) as weights; invalid when a ticked row has no
    // usable error.
    WeightedMean mean;
    // What the baseline beside the dip (as far as any row's range reaches) showed of the noise.
    BaselineNoise baseline;
    bool cancelled = false;
};

// The replicates a run of the job makes: B for each row with a bootstrap.
int PublishedReplicates(const PublishedJob& job, int replicates);

// Runs each row's bootstrap in turn, the noise judged on the baseline beside the rows' ranges
// first (options.baselineCorrelated is replaced by that); progress(done, total) counts the replicates of all rows.
PublishedErrors BootstrapPublished(const PublishedJob& job, const MethodBootstrapOptions& options,
                                   const std::function<void(int done, int total)>& progress = {},
                                   const std::atomic<bool>* cancel = nullptr);

// Puts what a run found into the toolkit's state (each row's bootstrap, Deeg's result), in
// place of what an earlier run left there.
void StoreInToolkit(const PublishedErrors& errors);

// The weighted mean over the ticked rows of errors.
WeightedMean BootstrapWeightedMean(const std::vector<PublishedRowErrors>& rows);

// The texts the Error bars window and the console tool show alike: an error to three
// significant digits, an offset with its sign ("-" for either when it is not a number), and
// the replicates run ("480 of 500, 20 failed"), and the chords' caution: the chords read across
// a gap ("5 of 9 chords across a gap"), and the error to believe where a bootstrap measured it
// ("error with the shift 0.000341"), joined by "; "; empty where neither is.
QString errorBarText(double error);
QString signedErrorBarText(double offset);
QString replicatesText(const BootstrapResult& b);
QString chordsCautionText(const ChordGaps& gaps, double advisedError);
// The caution of a published row of the chords: its chords across a gap and the error that counts
// their bias; empty for the other rows.
QString chordsCautionText(const PublishedRowErrors& row);

} // namespace dip
