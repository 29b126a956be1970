// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#pragma once

// The bootstrap error of a time of minimum: the method is run again on B light curves resampled
// from the user's own, with the same picked range and parameters, and the error is the standard
// deviation of the B times (with their 16th and 84th percentiles).
//
// Resampling: a residual bootstrap about a smooth model of the picked range (Efron & Tibshirani
// 1993, ch. 9; Davison & Hinkley 1997, ch. 6). Over the range r_i = m_i - model(t_i), scaled to
// the variance of the noise (by 1 / sqrt(1 - h_ii) with the leverages of the default smoother,
// or by sqrt(n / (n - p)) for a model with p fitted parameters) and centred. The default
// smoother works on the times as given, or on |t - foldCentre| when a centre is given: a model
// symmetric about it. A replicate is
// model(t_i) + r*_i, with r* the residual series resampled in moving blocks (Kuensch 1989): blocks
// of L consecutive residuals starting at uniformly drawn points, laid end to end, so correlated
// noise keeps its correlation within a block. Points outside the range are kept as they are.
//
// Noise correlated over more points than the range's residuals show: a fitted curve or a
// smoother over a short range takes up part of the slow noise, so its residuals hold too little
// of it and look less correlated than the noise is. With a noise centre given (the method's
// time), the noise is also measured on all the used points, without a model: the differences
// between each point of one branch and the other branch reflected about the centre (read by
// quadratic interpolation), where the dip's symmetry cancels the light curve and leaves the
// noise. Near the centre a difference cancels most of the slow noise too, so the differences
// are fitted with the covariance they have under a model of the noise, white plus a part
// correlated over a time tau (NoiseCovariance.h), and where that model finds the noise
// correlated a replicate's residuals are drawn from it: the correlated part run through the
// range's times, white and correlated driven by the fit's whitened differences drawn with
// replacement. Where it finds the noise white, an autoregression is fitted to the differences
// (Burg's method, order by the AIC, its coefficients scaled to the persistence freed of its
// small-sample bias: Autoregression.h), and where its long-run variance (the slow part of the
// noise, which is what moves a time) is larger than the range's residuals' (taken as of an
// AR(1) with their lag-1 correlation), a replicate's residuals are that autoregression run on
// innovations drawn with replacement (the sieve bootstrap, Buehlmann 1997). Otherwise the
// range's residuals, which then hold what the model misses besides the noise, are resampled in
// blocks.
//
// Block length: from the lag-1 autocorrelation rho of the residuals. L = 1 (independent
// residuals) while rho <= 2 / sqrt(n), white noise within its own scatter; otherwise Carlstein's
// (1986) rule for an AR(1) series, L = (2 rho / (1 - rho^2))^(2/3) n^(1/3), at least 2 and at most
// n / 3.
//
// The replicates run one per task on all cores. Each draws from its own stream seeded by the
// seed and its index, and the statistics are formed in index order, so the digits do not depend
// on the number of threads or on their scheduling. A replicate whose method throws a runtime
// error, or gives no result, is counted as a failure (by error number) and never stops the
// others.

#include "methods/kwee/NoiseCovariance.h"
#include "runtime/Array.h"
#include "runtime/Integer.h"
#include "session/Curve.h"

#include <QString>

#include <atomic>
#include <cmath>
#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <vector>

namespace dip {

// One resampled light curve as the methods take it: points 1..count, the range first..last.
struct ResampledCurve {
    rt::ObsArray t;
    rt::ObsArray m;
    rt::Integer count = 0;
    rt::Integer first = 0;
    rt::Integer last = 0;
};

// The method on one resampled curve: its time of minimum, or nothing when it has no result (a
// search it gave up). A runtime error it throws is counted under its number. It runs on worker
// threads, several at once, so it must touch no shared state.
using ReplicateMethod = std::function<std::optional<double>(const ResampledCurve&)>;

// A smooth model of the range: magnitude at a time.
using BootstrapModel = std::function<double(double t)>;

struct BootstrapSetup {
    std::vector<double> t; // the used points, point i at index i - 1
    std::vector<double> m;
    int first = 1; // the picked range, 1-based and inclusive
    int last = 0;
    BootstrapModel model;    // empty: the local quadratic smoother (LocalSmoother)
    int modelParameters = 0; // p of a given model, for the residuals' scale; 0: none fitted
    // With no model given: the smoother is fitted to the points folded about this time
    // (magnitude against |t - foldCentre|), a model symmetric about it.
    std::optional<double> foldCentre;
    int replicates = 500;
    std::uint64_t seed = 1;
    int blockLength = 0; // 0: from the residuals' lag-1 autocorrelation
    // Noise correlated over more points than a block of the range can hold: with a centre
    // given, the noise is also measured on all the used points, as the differences between the
    // branches reflected about this time, and where it is found correlated the replicates'
    // residuals are drawn from its fitted covariance (or from an autoregression, the sieve)
    // instead of in blocks.
    std::optional<double> noiseCentre;
    // The noise is known to be correlated (the observer says so, or the baseline beside the dip
    // showed it): the differences' covariance is fitted among correlated models only
    // (fitNoiseCovariance's knownCorrelated).
    bool correlatedNoise = false;
    // The noise's covariance where it is known, as a simulation knows its own: the replicates'
    // noise is drawn from it, normal, in place of the noise measured on the curve. What the
    // errors come to then shows how much of their doubt is the noise's measurement.
    std::optional<NoiseCovariance> knownNoise;
    int threads = 0; // 0: all cores
    // The whole arrays (index 0..1000) every replicate starts from, so that what lies beyond
    // the used points stays as the methods read it (Kwee's entry just past them, the chords'
    // empty entry); it must hold t and m at 1..count. Null: t and m, zeros elsewhere.
    const Curve* arrays = nullptr;

    // The session's form: t(1..count), m(1..count) and a range.
    static BootstrapSetup fromArrays(const rt::ObsArray& t, const rt::ObsArray& m, rt::Integer count, rt::Integer first,
                                     rt::Integer last);
};

// Failure counts by runtime error number; 0 counts the replicates without a result, -1 those
// that failed with anything else.
constexpr int noResultFailure = 0;
constexpr int otherFailure = -1;

struct BootstrapResult {
    QString problem; // why nothing ran (a range outside the points, ...); empty when it ran

    int requested = 0;
    int done = 0; // replicates run: requested, unless cancelled
    int successes = 0;
    int failures = 0;
    std::map<int, int> failuresByError;
    bool cancelled = false;

    double error = 0; // standard deviation of the times (divisor n - 1)
    double mean = 0;
    double p16 = 0; // percentiles of the times, linear between order statistics
    double p84 = 0;
    std::vector<double> times; // by replicate; NaN where it failed or did not run

    int blockLength = 0;
    double lag1 = 0;            // the residuals' lag-1 autocorrelation
    double residualRms = 0;     // of the scaled, centred residuals
    int smootherNeighbours = 0; // k of the default smoother; 0 when a model was given
    bool sieve = false;         // the residuals came from the autoregression, not in blocks
    // The noise's covariance fitted to the reflected differences (with a noise centre); the
    // residuals came from it where it is correlated.
    NoiseCovariance noiseCovariance;
    int arOrder = 0;              // order of the autoregression fitted to the reflected differences
    double noiseRms = 0;          // of the residuals of all the used points (with a noise centre)
    int points = 0;               // the used points the noise was judged on
    bool correlatedNoise = false; // the noise was taken as correlated (BootstrapSetup::correlatedNoise)
    // Because the baseline beside the dip showed it, not the observer (MethodBootstrap).
    bool correlatedByBaseline = false;
    bool noiseGiven = false; // the noise's covariance was given (BootstrapSetup::knownNoise), not measured

    bool valid() const { return problem.isEmpty() && successes >= 2; }
    // How far the replicates' mean lies from the time they were drawn about, and the error with
    // that shift added in quadrature. A method whose time is biased the same way on every curve
    // of this sampling (a chord's crossing read between two points, most of all across a gap)
    // repeats the bias on the replicates, drawn about a model centred on its time: their mean
    // moves off that time by about as much as the time is off the truth, which their spread
    // cannot show.
    double shift(double time) const { return mean - time; }
    double errorWithShift(double time) const
    {
        const double s = shift(time);
        return std::sqrt(error * error + s * s);
    }
    bool modelled() const { return noiseCovariance.correlated(); }
    // The bootstrap ran, and no correlated covariance was found for the noise (none was sought
    // where it was given), on a curve too short to tell: slow noise there is mostly taken up by
    // the fit and the time, and what is left looks white or nearly so. On simulated curves of
    // fewer points with correlated noise that was not found, the true errors were 1.3 to 2.3
    // times the bootstrap's; with white noise, 0.8 to 1.1 times.
    bool unmodelledOnFewPoints() const
    {
        return problem.isEmpty() && !noiseGiven && !modelled() && points < fewPointsForTheNoise;
    }
    static constexpr int fewPointsForTheNoise = 100;
};

// How long the calling thread waits for a replicate to end before it reports progress anyway:
// a slow replicate (a long Fourier fit) does not hold the progress bar still.
constexpr int bootstrapProgressIntervalMs = 50;

// progress(done, requested) is called from the calling thread at least every 100 ms while the
// replicates run, and once at the end. Setting *cancel stops the replicates not yet started;
// the result then says so and holds the statistics of those done.
BootstrapResult runBootstrap(const BootstrapSetup& setup, const ReplicateMethod& method,
                             const std::function<void(int done, int requested)>& progress = {},
                             const std::atomic<bool>* cancel = nullptr);

// The block length of the rule above for n residuals with lag-1 autocorrelation rho.
int bootstrapBlockLength(double rho, int n);

} // namespace dip
