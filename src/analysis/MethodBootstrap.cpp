// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#include "analysis/MethodBootstrap.h"

#include "runtime/RuntimeError.h"

#include <algorithm>
#include <cmath>
#include <exception>
#include <limits>
#include <new>

namespace dip {

namespace {

struct Span {
    int first = 0;
    int last = 0;
};

// The stretch the sliding integrations choose about the deepest point (ChooseSlidingStretch):
// 2 (n - deepest) points ending one before the last when the deepest lies near the end, the
// first 2 deepest near the start, otherwise all.
Span slidingSpan(const Curve& curve)
{
    const int n = curve.n;
    int deepest = 0;
    double largest = -99;
    for (int i = 1; i <= n; ++i) {
        if (curve.m(i) > largest) {
            deepest = i;
            largest = curve.m(i);
        }
    }
    const double x = n / 2.0 * 0.9;
    const int after = n - deepest;
    if (x > after) {
        const int count = 2 * after;
        return Span{n - count, n - 1};
    }
    if (x > deepest)
        return Span{1, 2 * deepest};
    return Span{1, n};
}

Span chordsSpan(const MethodRequest& r, int n)
{
    Span s{n + 1, 0};
    for (const rt::Integer i : {r.first, r.last, r.first2, r.last2}) {
        if (i < 1 || i > n)
            continue;
        s.first = std::min(s.first, int(i));
        s.last = std::max(s.last, int(i));
    }
    return s;
}

// The range a row's resamples vary.
Span resampledSpan(int row, const Curve& curve, const MethodRequest& request)
{
    switch (row) {
    case ChordsRow: return chordsSpan(request, curve.n);
    case SlidingRow: return slidingSpan(curve);
    default: return Span{request.first, request.last};
    }
}

// The least-squares parabola of the points first..last, as a function of time: the parabola
// the fit found, solved about the mean time of the range (3x3 normal equations by Cramer's
// rule on centred powers), so that days of seven digits do not cancel its coefficients.
BootstrapModel parabolaModel(const Curve& curve, int first, int last)
{
    double mean = 0;
    for (int i = first; i <= last; ++i)
        mean += curve.t(i);
    mean /= double(last - first + 1);
    double s0 = 0, s1 = 0, s2 = 0, s3 = 0, s4 = 0, y0 = 0, y1 = 0, y2 = 0;
    for (int i = first; i <= last; ++i) {
        const double x = curve.t(i) - mean;
        const double y = curve.m(i);
        s0 += 1;
        s1 += x;
        s2 += x * x;
        s3 += x * x * x;
        s4 += x * x * x * x;
        y0 += y;
        y1 += x * y;
        y2 += x * x * y;
    }
    auto det = [](double a, double b, double c, double d, double e, double f, double g, double h, double k) {
        return a * (e * k - f * h) - b * (d * k - f * g) + c * (d * h - e * g);
    };
    const double D = det(s0, s1, s2, s1, s2, s3, s2, s3, s4);
    if (!(std::abs(D) > 0))
        return {};
    const double a = det(y0, s1, s2, y1, s2, s3, y2, s3, s4) / D;
    const double b = det(s0, y0, s2, s1, y1, s3, s2, y2, s4) / D;
    const double c = det(s0, s1, y0, s1, s2, y1, s2, s3, y2) / D;
    return [a, b, c, mean](double t) {
        const double x = t - mean;
        return a + (b + c * x) * x;
    };
}

// The fitted cosine series m(t) = C + sum_k A_k (cos(k W (t - Xo)) - 1), parameters in box order.
BootstrapModel fourierModel(const MethodResult& fitted)
{
    const std::array<double, 9> p = fitted.fourierParameters;
    return [p](double t) {
        const double u = p[3] * (t - p[1]);
        double m = p[2];
        for (int k = 1; k <= 5; ++k)
            m += p[std::size_t(3 + k)] * (std::cos(k * u) - 1);
        return m;
    };
}

BootstrapResult refused(int replicates, const QString& problem)
{
    BootstrapResult r;
    r.requested = replicates;
    r.problem = problem;
    return r;
}

} // namespace

bool HasBootstrap(int row)
{
    return row == ParabolaRow || row == ChordsRow || row == KweeRow || row == FourierRow || row == SlidingRow;
}

double AdvisedBootstrapError(int row, const BootstrapResult& bootstrap, double time)
{
    if (!bootstrap.valid())
        return std::numeric_limits<double>::quiet_NaN();
    return row == ChordsRow ? bootstrap.errorWithShift(time) : bootstrap.error;
}

BootstrapResult BootstrapMethod(int row, const Curve& curve, const MethodRequest& request, const MethodResult& fitted,
                                const MethodBootstrapOptions& options, const std::function<void(int, int)>& progress,
                                const std::atomic<bool>* cancel)
{
    try {
        if (!HasBootstrap(row))
            return refused(options.replicates, QStringLiteral("this method has no fit to repeat"));
        if (!fitted.ok)
            return refused(options.replicates, QStringLiteral("the method gave no result to resample about"));
        if (curve.n < 3 || curve.n > rt::ObsArray::upper)
            return refused(options.replicates, QStringLiteral("the curve has %1 points").arg(curve.n));

        const Span span = resampledSpan(row, curve, request);
        // A time beyond the points it was measured on is no minimum the points show: resampling
        // about it only repeats the method's mistake with a small spread, an error bar that would
        // be believed. The method gave up in all but name; it gets no error.
        if (span.first >= 1 && span.last <= curve.n && span.first <= span.last) {
            double earliest = curve.t(span.first), latest = earliest;
            for (int i = span.first; i <= span.last; ++i) {
                earliest = std::min(earliest, double(curve.t(i)));
                latest = std::max(latest, double(curve.t(i)));
            }
            if (!(fitted.time >= earliest && fitted.time <= latest))
                return refused(options.replicates,
                               QStringLiteral("the time lies outside the points it was measured on"));
        }
        BootstrapSetup setup = BootstrapSetup::fromArrays(curve.t, curve.m, curve.n, span.first, span.last);
        setup.arrays = &curve;
        setup.replicates = options.replicates;
        setup.seed = options.seed;
        setup.threads = options.threads;
        // The observer's word and a given noise come before what the baseline showed.
        const bool byBaseline = options.baselineCorrelated && !options.correlatedNoise && !options.knownNoise;
        setup.correlatedNoise = options.correlatedNoise || byBaseline;
        setup.knownNoise = options.knownNoise;

        MethodRequest again = request;
        // Without a fitted curve: the smoother of the points folded about the method's time,
        // symmetric as an eclipse is. What the noise does to one branch and not to the other,
        // the part that moves a time of minimum, stays in the residuals to be resampled; a
        // smoother of the plain curve would follow correlated noise and take it out.
        setup.foldCentre = fitted.time;
        setup.noiseCentre = fitted.time;
        if (row == ParabolaRow && span.first >= 1 && span.last <= curve.n && span.last - span.first >= 2) {
            setup.foldCentre.reset();
            setup.model = parabolaModel(curve, span.first, span.last);
            setup.modelParameters = setup.model ? 3 : 0;
        } else if (row == FourierRow) {
            setup.foldCentre.reset();
            setup.model = fourierModel(fitted);
            setup.modelParameters = 8;
        }

        const MethodEntry& method = MethodOfRow(row);
        const ReplicateMethod run = [&method, again](const ResampledCurve& c) -> std::optional<double> {
            const MethodResult r = method.compute(Curve{c.t, c.m, c.count}, again);
            if (r.ok)
                return r.time;
            if (r.runtimeError != 0)
                throw rt::RuntimeError(r.runtimeError, r.runtimeErrorText);
            return std::nullopt;
        };
        BootstrapResult result = runBootstrap(setup, run, progress, cancel);
        result.correlatedByBaseline = byBaseline;
        return result;
    } catch (const std::bad_alloc&) {
        return refused(options.replicates, QStringLiteral("out of memory"));
    } catch (const std::exception& e) {
        return refused(options.replicates, QString::fromLocal8Bit(e.what()));
    }
}

} // namespace dip
