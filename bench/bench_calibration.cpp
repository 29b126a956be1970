// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
// Are the error bars right? Simulated eclipses with known times of minimum are timed by every
// method with a fit, with ranges picked as an observer picks them, and for each error (the
// method's own, the bootstrap's, Deeg's for Kwee and van Woerden) the pulls
// (time - truth) / error are collected. An error that is right gives pulls of standard
// deviation 1; 2 means it is half what it should be. The bootstrap's error is the one the
// program advises (AdvisedBootstrapError: for the bisectors of chords with the replicates' shift
// from the time). Its pulls are also given for the eclipses without a gap alone and with half
// the width from its 16th to its 84th percentile as the error, and in a second table for curves
// of fewer points than BootstrapResult::fewPointsForTheNoise (all of them, and those whose noise
// was not found correlated) and of more; a third table splits the bisectors of chords by whether
// a chord's crossing is read across a gap (ChordGaps), each with the replicates' spread alone as
// the error and with their shift from the time added (BootstrapResult::errorWithShift), and
// gives every eclipse's pull with the spread alone.
//
// The eclipses: Gaussian-like and flat-bottomed dips of 0.1 to 1 magnitude, 30 to 1000 points
// (log-uniform) over 1.1 to 2.5 half-durations on each side, sampled evenly, with jitter or at
// random times, half of them with a gap on a branch; noise of 0.5 to 10 % of the depth, white
// in one family and correlated in the other (an AR(1) process in time with a correlation time of
// 2 to 8 median spacings, 1 to 2 times the white part). Everything is drawn from one seed.
//
// usage: bench_calibration [--eclipses N] [--replicates B] [--seed S] [--family white|correlated]
//                          [--noise found|correlated|known] [--study K] [--outliers X]
// --noise correlated runs the bootstrap as an observer who ticks "Correlated noise" does: the
// noise is taken as correlated whatever the test between white and correlated would say.
// --noise known gives the bootstrap each eclipse's own noise covariance, as no observer has it:
// what is left of the pulls then is not the noise's measurement on the curve but what the
// resampled noise cannot show (a method's bias on the eclipse).
// --study K prints, for the first K eclipses, each method's true bias and scatter over 200 noise
// draws beside what its errors say on the first draw. --outliers X prints every eclipse whose
// bootstrap pull is larger than X, with what the bootstrap found.
#include "analysis/BaselineNoise.h"
#include "analysis/MethodBootstrap.h"
#include "analysis/ReplicateRandom.h"
#include "methods/MethodRegistry.h"
#include "methods/chords/ChordGaps.h"
#include "methods/kwee/DeegKwee.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QStringList>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <map>
#include <vector>

namespace {

using namespace dip;

// How the bootstrap comes by the noise: found on the curve, taken as correlated (as "Correlated
// noise" ticked), or given as the simulation made it.
enum class NoiseGiven { Found, Correlated, Known };
NoiseGiven noiseGiven = NoiseGiven::Found;

constexpr double pi = 3.14159265358979323846;

// Uniform and normal numbers from one stream (Box-Muller), the same on every platform.
class Draw {
public:
    explicit Draw(std::uint64_t seed, std::uint64_t index) : m_random(seed, index) {}
    double uniform(double a, double b) { return a + (b - a) * m_random.uniform(); }
    double logUniform(double a, double b) { return a * std::exp(std::log(b / a) * m_random.uniform()); }
    bool chance(double p) { return m_random.uniform() < p; }
    double normal()
    {
        if (m_haveSpare) {
            m_haveSpare = false;
            return m_spare;
        }
        double u = 0;
        while (u <= 0)
            u = m_random.uniform();
        const double v = m_random.uniform();
        const double r = std::sqrt(-2 * std::log(u));
        m_spare = r * std::sin(2 * pi * v);
        m_haveSpare = true;
        return r * std::cos(2 * pi * v);
    }

private:
    ReplicateRandom m_random;
    bool m_haveSpare = false;
    double m_spare = 0;
};

enum class Family { White, Correlated };

struct Eclipse {
    std::vector<double> t, m;
    double truth = 0;
    double depth = 0;
    double halfDepthWidth = 0; // half-width at half depth
    double halfDuration = 0;   // from the minimum to the last contact
    bool flat = false;
    double sigma = 0, red = 0, tau = 0; // white and correlated noise, correlation time in spacings
    double tauTime = 0;                 // the correlation time in days
    int sampling = 0;                   // even, jittered, random
    bool gap = false;
    double width = 0; // w of the profile
    double base = 0;

    // The distance from the minimum at which the dip is the fraction f of its depth.
    double distanceAtDepth(double f) const
    {
        return flat ? width * (0.5 + std::pow(1 - f, 2.0 / 3)) : width * std::sqrt(-2 * std::log(f));
    }
};

// The dip's profile at x = |t - T0| / w.
double profile(bool flat, double x)
{
    if (!flat)
        return std::exp(-0.5 * x * x);
    if (x < 0.5)
        return 1;
    if (x < 1.5)
        return 1 - std::pow(x - 0.5, 1.5);
    return 0;
}

// The eclipse and its sampling from d, the noise from noise.
Eclipse simulate(Family family, Draw& d, Draw& noise)
{
    Eclipse e;
    e.flat = d.chance(0.5);
    const double w = d.uniform(0.01, 0.04);
    e.halfDuration = e.flat ? 1.5 * w : 2.5 * w;
    e.halfDepthWidth = e.flat ? (0.5 + std::pow(0.5, 2.0 / 3)) * w : std::sqrt(2 * std::log(2.0)) * w;
    e.truth = d.uniform(0.3, 0.7);
    e.depth = d.uniform(0.1, 1.0);
    const double base = d.uniform(8, 14);

    const double left = e.truth - d.uniform(1.1, 2.5) * e.halfDuration;
    const double right = e.truth + d.uniform(1.1, 2.5) * e.halfDuration;
    const int sampling = int(d.uniform(0, 3));
    const bool gap = d.chance(0.5);
    // The gap on one branch, clear of the bottom.
    const double gapWidth = d.uniform(0.1, 0.25) * (right - left);
    const bool gapLeft = d.chance(0.5);
    const double gapStart = gapLeft ? d.uniform(left, e.truth - 0.3 * e.halfDuration - gapWidth)
                                    : d.uniform(e.truth + 0.3 * e.halfDuration, right - gapWidth);

    for (;;) {
        const int n = int(std::lround(d.logUniform(30, 1000)));
        // Times over [left, right]: with gaps a few more are drawn, so n stays within 30..1000.
        const int drawn = gap ? std::min(1000, int(n / (1 - gapWidth / (right - left)))) : n;
        std::vector<double> t;
        for (int i = 0; i < drawn; ++i) {
            const double even = left + (right - left) * i / (drawn - 1);
            double x = even;
            if (sampling == 1)
                x += (d.uniform(-0.5, 0.5)) * (right - left) / (drawn - 1);
            else if (sampling == 2)
                x = d.uniform(left, right);
            if (gap && x >= gapStart && x < gapStart + gapWidth)
                continue;
            t.push_back(x);
        }
        std::sort(t.begin(), t.end());
        t.erase(std::unique(t.begin(), t.end()), t.end());
        if (t.size() < 30 || t.size() > 1000)
            continue;
        e.t = t;
        break;
    }

    const double sigma = e.depth * d.logUniform(0.005, 0.1);
    std::vector<double> spacing;
    for (std::size_t i = 1; i < e.t.size(); ++i)
        spacing.push_back(e.t[i] - e.t[i - 1]);
    std::nth_element(spacing.begin(), spacing.begin() + std::ptrdiff_t(spacing.size() / 2), spacing.end());
    const double medianSpacing = spacing[spacing.size() / 2];
    const double tau = d.uniform(2, 8) * medianSpacing;
    const double red = family == Family::Correlated ? sigma * d.uniform(1, 2) : 0;
    double ar = red * noise.normal();
    for (std::size_t i = 0; i < e.t.size(); ++i) {
        if (i > 0) {
            const double rho = std::exp(-(e.t[i] - e.t[i - 1]) / tau);
            ar = rho * ar + std::sqrt(1 - rho * rho) * red * noise.normal();
        }
        const double x = std::abs(e.t[i] - e.truth) / w;
        e.m.push_back(base + e.depth * profile(e.flat, x) + sigma * noise.normal() + ar);
    }
    e.sigma = sigma;
    e.base = base;
    e.width = w;
    e.red = red;
    e.tau = tau / medianSpacing;
    e.tauTime = tau;
    e.sampling = sampling;
    e.gap = gap;
    return e;
}

// The eclipse's own noise: white, and the AR(1) part as the exponential covariance it has.
NoiseCovariance covarianceOf(const Eclipse& e)
{
    NoiseCovariance c;
    c.white = e.sigma * e.sigma;
    c.red = e.red * e.red;
    c.tau = e.red > 0 ? e.tauTime : 0;
    return c;
}

// The bootstrap's options for eclipse e with B replicates, the noise as --noise says.
MethodBootstrapOptions bootstrapOptions(const Eclipse& e, int replicates)
{
    MethodBootstrapOptions o;
    o.replicates = replicates;
    o.correlatedNoise = noiseGiven == NoiseGiven::Correlated;
    if (noiseGiven == NoiseGiven::Known)
        o.knownNoise = covarianceOf(e);
    return o;
}

// The index range of the points within [a, b]; first > last when none.
std::pair<int, int> indexesWithin(const std::vector<double>& t, double a, double b)
{
    int first = 0, last = -1;
    for (int i = 0; i < int(t.size()); ++i) {
        if (t[std::size_t(i)] >= a && first == 0)
            first = i + 1;
        if (t[std::size_t(i)] <= b)
            last = i + 1;
    }
    return {first, last};
}

// The ranges an observer picks by eye: about where the minimum looks to be (a little off the
// truth), the ends a little uneven.
struct Picks {
    MethodRequest parabola, chords, kwee, fourier;
    bool ok = true;
};

Picks pickRanges(const Eclipse& e, Draw& d)
{
    Picks p;
    const double centre = e.truth + d.uniform(-0.05, 0.05) * e.halfDepthWidth;
    auto range = [&](double half, MethodRequest& r) {
        const double a = centre - half * d.uniform(0.9, 1.1);
        const double b = centre + half * d.uniform(0.9, 1.1);
        const auto [first, last] = indexesWithin(e.t, a, b);
        r.first = rt::Integer(first);
        r.last = rt::Integer(last);
        p.ok = p.ok && last - first >= 6;
    };
    range(e.halfDepthWidth * d.uniform(0.6, 1.0), p.parabola);

    // Kwee's grid holds 2M = 2 CInt(0.9 N) <= 1000 slots: at most 555 points.
    double half = e.halfDuration * d.uniform(0.9, 1.3);
    for (;;) {
        range(half, p.kwee);
        if (p.kwee.last - p.kwee.first + 1 <= 555)
            break;
        half *= 0.95;
        p.ok = true;
    }
    p.kwee.kweeStep = 1;
    p.kwee.kweeFraction = 0.9;

    range(e.halfDuration * d.uniform(0.9, 1.3), p.fourier);
    // Start values as the user types them after looking at the curve: the deepest point, the
    // depth, a period that puts the range within one cycle.
    int deepest = p.fourier.first;
    for (int i = p.fourier.first; i <= p.fourier.last; ++i)
        if (e.m[std::size_t(i - 1)] > e.m[std::size_t(deepest - 1)])
            deepest = i;
    const double halfRange = (e.t[std::size_t(p.fourier.last - 1)] - e.t[std::size_t(p.fourier.first - 1)]) / 2;
    p.fourier.fourierStart = {0,
                              e.t[std::size_t(deepest - 1)],
                              e.m[std::size_t(deepest - 1)],
                              pi / halfRange,
                              0.4 * e.depth,
                              0.1 * e.depth,
                              0.05 * e.depth,
                              0.01 * e.depth,
                              0.005 * e.depth};

    // Chords: a stretch of each branch between about a fifth and four fifths of the depth.
    const double inner = e.distanceAtDepth(d.uniform(0.7, 0.85));
    const double outer = e.distanceAtDepth(d.uniform(0.15, 0.3));
    const auto [l1, l2] = indexesWithin(e.t, centre - outer, centre - inner);
    const auto [r1, r2] = indexesWithin(e.t, centre + inner, centre + outer);
    p.chords.first = rt::Integer(l1);
    p.chords.last = rt::Integer(l2);
    p.chords.first2 = rt::Integer(r1);
    p.chords.last2 = rt::Integer(r2);
    p.ok = p.ok && l2 - l1 >= 2 && r2 - r1 >= 2;
    return p;
}

// Pulls of one error kind.
struct Pulls {
    std::vector<double> values;
    int missing = 0; // no error (none given, 0, or the method failed)

    void add(double time, double truth, double error)
    {
        if (std::isfinite(time) && std::isfinite(error) && error > 0)
            values.push_back((time - truth) / error);
        else
            ++missing;
    }
    double sd() const
    {
        if (values.size() < 2)
            return NAN;
        double q = 0;
        for (double v : values)
            q += v * v;
        return std::sqrt(q / double(values.size()));
    }
    // 1.4826 times the median absolute pull: the standard deviation the core of the pulls has.
    double robust() const
    {
        if (values.empty())
            return NAN;
        std::vector<double> a;
        for (double v : values)
            a.push_back(std::abs(v));
        std::nth_element(a.begin(), a.begin() + std::ptrdiff_t(a.size() / 2), a.end());
        return 1.4826 * a[a.size() / 2];
    }
};

struct Row {
    Pulls own, bootstrap, deeg;
    Pulls bootstrapNoGap; // the eclipses without a gap on a branch
    // Half the distance from the bootstrap's 16th to its 84th percentile, taken as the error:
    // the standard deviation of the replicates' bulk, which their stray times do not widen.
    Pulls percentiles;
    // The bootstrap's pulls by the length of the curve: short curves, those of them whose noise
    // was not found correlated (BootstrapResult::unmodelledOnFewPoints), and the longer ones.
    Pulls bootstrapFew, bootstrapFewUnmodelled, bootstrapMany;
    // The bisectors of chords: eclipses with a chord whose crossing is read across a gap
    // (ChordGaps), and the others.
    Pulls bootstrapAcrossAGap, bootstrapNoneAcross;
    // The same with the replicates' shift from the time added to the error (the one advised),
    // and every eclipse with the spread alone.
    Pulls acrossAGapWithShift, noneAcrossWithShift, chordsSpread;
    int failures = 0;
};

QString cell(const Pulls& p)
{
    if (p.values.size() < 2)
        return QStringLiteral("      -      ");
    return QStringLiteral("%1 (%2)").arg(p.sd(), 6, 'f', 2).arg(p.robust(), 4, 'f', 2);
}

MethodRequest requestOf(int row, const Picks& picks)
{
    switch (row) {
    case 1: return picks.parabola;
    case 3: return picks.chords;
    case 4: return picks.kwee;
    case 5: return picks.fourier;
    default: return MethodRequest();
    }
}

// The noise as the baseline beside the picked ranges shows it, judged as the Error bars window
// judges it on the published rows' ranges.
BaselineNoise baselineOf(const Eclipse& e, const Picks& picks)
{
    const CurveData c = CurveData::from(e.t, e.m);
    const std::vector<MethodRequest> requests = {picks.parabola, picks.chords, picks.kwee, picks.fourier};
    const std::optional<TimeSpan> dip = DipExtent(c.view(), requests);
    return dip ? JudgeBaselineNoise(c.view(), dip->start, dip->end) : BaselineNoise();
}

// One eclipse under many noise draws: the true bias and scatter of each method's time, beside
// what the bootstrap and Deeg say from the first draw.
void studyEclipse(Family family, std::uint64_t seed, std::uint64_t index, const Eclipse& first, const Picks& picks,
                  int replicates)
{
    const int draws = 200;
    std::printf("eclipse %llu: %s, n %zu, sampling %d%s, noise %.3g + red %.3g (tau %.1f, %.3g d), depth %.3g, "
                "half-depth width %.4g\n",
                (unsigned long long)index, first.flat ? "flat" : "gauss", first.t.size(), first.sampling,
                first.gap ? " gap" : "", first.sigma, first.red, first.tau, first.tauTime, first.depth,
                first.halfDepthWidth);
    const int rows[] = {1, 3, 4, 5, 6, 7};
    for (const int row : rows) {
        std::vector<double> times;
        for (int j = 0; j < draws; ++j) {
            Draw d(seed, index);
            Draw noise(seed ^ 0xD1CE, std::uint64_t(j));
            const Eclipse e = simulate(family, d, noise);
            const CurveData c = CurveData::from(e.t, e.m);
            if (row == 7) {
                const DeegKweeResult g = DeegKwee(c.t, c.m, c.n, picks.kwee.first, picks.kwee.last);
                if (g.ok())
                    times.push_back(g.time - e.truth);
            } else {
                const MethodResult r = MethodOfRow(row).compute(c.view(), requestOf(row, picks));
                if (r.ok)
                    times.push_back(r.time - e.truth);
            }
        }
        double mean = 0, q = 0;
        for (double x : times)
            mean += x;
        mean /= double(times.size());
        for (double x : times)
            q += (x - mean) * (x - mean);
        const double sd = std::sqrt(q / double(times.size() - 1));
        const CurveData c = CurveData::from(first.t, first.m);
        double said = 0, off = 0;
        if (row == 7) {
            const DeegKweeResult g = DeegKwee(c.t, c.m, c.n, picks.kwee.first, picks.kwee.last);
            said = g.error;
            off = g.time - first.truth;
        } else {
            const MethodResult r = MethodOfRow(row).compute(c.view(), requestOf(row, picks));
            MethodBootstrapOptions o = bootstrapOptions(first, replicates);
            o.baselineCorrelated = baselineOf(first, picks).correlated;
            const BootstrapResult b = BootstrapMethod(row, c.view(), requestOf(row, picks), r, o);
            said = AdvisedBootstrapError(row, b, r.time);
            off = r.time - first.truth;
            std::printf("   %-26s bias %+.3g  sd %.3g  | this draw %+.3g, own %.3g, bootstrap %.3g (L %d, k %d, "
                        "model %.3g + %.3g (tau %.3g), mean %+.3g, rms/noise %.2f, lag1 %.2f, ar %d%s, noise rms/noise "
                        "%.2f, p84-p16 / 2 %.3g)\n",
                        MethodOfRow(row).title, mean, sd, off, r.error, said, b.blockLength, b.smootherNeighbours,
                        std::sqrt(b.noiseCovariance.white), std::sqrt(b.noiseCovariance.red), b.noiseCovariance.tau,
                        b.mean - r.time, b.residualRms / std::hypot(first.sigma, first.red), b.lag1, b.arOrder,
                        b.modelled() ? " modelled"
                        : b.sieve    ? " sieve"
                                     : "",
                        b.noiseRms / std::hypot(first.sigma, first.red), (b.p84 - b.p16) / 2);
            continue;
        }
        const DeegKweeResult g = DeegKwee(c.t, c.m, c.n, picks.kwee.first, picks.kwee.last);
        std::printf("   %-26s bias %+.3g  sd %.3g  | this draw %+.3g, Deeg %.3g (noise/white %.2f, red factor %.2f, "
                    "pairs %d)\n",
                    "Deeg", mean, sd, off, said, g.noise / first.sigma, g.redNoiseFactor, g.pairs);
    }
}

} // namespace

int main(int argc, char** argv)
{
    QCoreApplication app(argc, argv);
    int eclipses = 300;
    int replicates = 200;
    std::uint64_t seed = 2024;
    int study = 0;
    double outliers = 0;
    std::vector<Family> families = {Family::White, Family::Correlated};
    const QStringList args = app.arguments();
    for (int i = 1; i + 1 < args.size(); i += 2) {
        if (args[i] == QLatin1String("--eclipses"))
            eclipses = args[i + 1].toInt();
        else if (args[i] == QLatin1String("--replicates"))
            replicates = args[i + 1].toInt();
        else if (args[i] == QLatin1String("--seed"))
            seed = args[i + 1].toULongLong();
        else if (args[i] == QLatin1String("--study"))
            study = args[i + 1].toInt();
        else if (args[i] == QLatin1String("--outliers"))
            outliers = args[i + 1].toDouble();
        else if (args[i] == QLatin1String("--family"))
            families = {args[i + 1] == QLatin1String("white") ? Family::White : Family::Correlated};
        else if (args[i] == QLatin1String("--noise") &&
                 (args[i + 1] == QLatin1String("found") || args[i + 1] == QLatin1String("correlated") ||
                  args[i + 1] == QLatin1String("known"))) {
            noiseGiven = args[i + 1] == QLatin1String("correlated") ? NoiseGiven::Correlated
                         : args[i + 1] == QLatin1String("known")    ? NoiseGiven::Known
                                                                    : NoiseGiven::Found;
        } else {
            std::fprintf(stderr, "usage: bench_calibration [--eclipses N] [--replicates B] [--seed S] "
                                 "[--family white|correlated] [--noise found|correlated|known] [--study K] "
                                 "[--outliers X]\n");
            return 64;
        }
    }

    const int rows[] = {1, 3, 4, 5, 6};
    QElapsedTimer timer;
    timer.start();
    std::printf("Pulls (time - truth) / error: standard deviation (and 1.4826 median |pull|), %d eclipses a family,"
                " B = %d%s\n",
                eclipses, replicates,
                noiseGiven == NoiseGiven::Correlated ? ", the noise taken as correlated"
                : noiseGiven == NoiseGiven::Known    ? ", the noise's own covariance given"
                                                     : "");
    std::printf("%-26s %-11s %-14s %-14s %-14s %-14s %-14s %s\n", "method", "noise", "own", "bootstrap", "Deeg",
                "boot., no gap", "p16 to p84", "fails / no boot. error (Deeg: no time)");
    std::vector<std::pair<const char*, std::map<int, Row>>> tables;
    QStringList baselineLines;
    for (const Family family : families) {
        std::map<int, Row> table;
        int baselineJudged = 0, baselineCorrelated = 0;
        // An eclipse whose picks hold too few points is drawn again from the next stream.
        std::uint64_t stream = 0;
        for (int k = 0; k < eclipses; ++k) {
            Eclipse e;
            Picks picks;
            std::uint64_t index = 0;
            do {
                index = stream++ * 2 + (family == Family::Correlated ? 1 : 0);
                Draw d(seed, index);
                Draw noise(seed ^ 0x5EED, index);
                e = simulate(family, d, noise);
                picks = pickRanges(e, d);
            } while (!picks.ok);
            if (study > 0 && k < study)
                studyEclipse(family, seed, index, e, picks, replicates);
            const CurveData curve = CurveData::from(e.t, e.m);
            const BaselineNoise baseline = baselineOf(e, picks);
            baselineJudged += baseline.judged ? 1 : 0;
            baselineCorrelated += baseline.correlated ? 1 : 0;
            for (const int row : rows) {
                const MethodRequest request = requestOf(row, picks);
                Row& r = table[row];
                const MethodResult fitted = MethodOfRow(row).compute(curve.view(), request);
                if (!fitted.ok) {
                    ++r.failures;
                    r.own.missing++;
                    r.bootstrap.missing++;
                    continue;
                }
                r.own.add(fitted.time, e.truth, fitted.error);
                MethodBootstrapOptions options = bootstrapOptions(e, replicates);
                options.baselineCorrelated = baseline.correlated;
                options.seed = seed + std::uint64_t(k);
                const BootstrapResult b = BootstrapMethod(row, curve.view(), request, fitted, options);
                // The error the program advises (for the chords with the replicates' shift); the
                // chords' plain spread goes to the third table.
                const double error = b.valid() ? AdvisedBootstrapError(row, b, fitted.time) : NAN;
                r.bootstrap.add(fitted.time, e.truth, error);
                r.percentiles.add(fitted.time, e.truth, b.valid() ? (b.p84 - b.p16) / 2 : NAN);
                if (!e.gap)
                    r.bootstrapNoGap.add(fitted.time, e.truth, error);
                const bool shortCurve = int(e.t.size()) < BootstrapResult::fewPointsForTheNoise;
                (shortCurve ? r.bootstrapFew : r.bootstrapMany).add(fitted.time, e.truth, error);
                if (b.unmodelledOnFewPoints())
                    r.bootstrapFewUnmodelled.add(fitted.time, e.truth, error);
                if (row == ChordsRow) {
                    const ChordGaps gaps = FindChordGaps(curve.t, curve.m, curve.n, request.first, request.last,
                                                         request.first2, request.last2);
                    const double spread = b.valid() ? b.error : NAN;
                    (gaps.any() ? r.bootstrapAcrossAGap : r.bootstrapNoneAcross).add(fitted.time, e.truth, spread);
                    (gaps.any() ? r.acrossAGapWithShift : r.noneAcrossWithShift).add(fitted.time, e.truth, error);
                    r.chordsSpread.add(fitted.time, e.truth, spread);
                }
                const double pull = (fitted.time - e.truth) / error;
                if (outliers > 0 && b.valid() && std::abs(pull) > outliers)
                    std::printf("  pull %+7.1f  row %d  eclipse %llu: %s, n %zu, sampling %d%s, noise %.3g + red %.3g "
                                "(tau %.1f), depth %.3g | bootstrap %.3g, shift %+.3g, L %d, ar %d, rms/noise %.2f, "
                                "noise rms/noise %.2f\n",
                                pull, row, (unsigned long long)index, e.flat ? "flat" : "gauss", e.t.size(), e.sampling,
                                e.gap ? " gap" : "", e.sigma, e.red, e.tau, e.depth, error, b.mean - fitted.time,
                                b.blockLength, b.arOrder, b.residualRms / std::hypot(e.sigma, e.red),
                                b.noiseRms / std::hypot(e.sigma, e.red));
                if (row == 4) {
                    const DeegKweeResult g =
                        DeegKwee(curve.t, curve.m, curve.n, picks.kwee.first, picks.kwee.last, DeegKweeParams());
                    r.deeg.add(g.time, e.truth, g.ok() ? g.error : NAN);
                    const double deegPull = (g.time - e.truth) / g.error;
                    if (outliers > 0 && g.ok() && std::abs(deegPull) > outliers)
                        std::printf(
                            "  pull %+7.1f  Deeg   eclipse %llu: %s, n %zu, sampling %d%s, noise %.3g + red %.3g "
                            "(tau %.1f), depth %.3g | error %.3g, noise/white %.2f, red factor %.2f, pairs %d, "
                            "Kwee's pull %+.1f\n",
                            deegPull, (unsigned long long)index, e.flat ? "flat" : "gauss", e.t.size(), e.sampling,
                            e.gap ? " gap" : "", e.sigma, e.red, e.tau, e.depth, g.error, g.noise / e.sigma,
                            g.redNoiseFactor, g.pairs, (fitted.time - e.truth) / error);
                }
            }
        }
        const char* name = family == Family::White ? "white" : "correlated";
        for (const int row : rows) {
            const Row& r = table[row];
            // Without a bootstrap error besides the failures: a time beyond the points it was
            // measured on, or too few replicates with a time.
            QString fails = QStringLiteral("%1 / %2").arg(r.failures).arg(r.bootstrap.missing - r.failures);
            if (row == 4)
                fails += QStringLiteral(" (%1)").arg(r.deeg.missing);
            std::printf("%-26s %-11s %-14s %-14s %-14s %-14s %-14s %s\n", MethodOfRow(row).title, name,
                        qPrintable(cell(r.own)), qPrintable(cell(r.bootstrap)), qPrintable(cell(r.deeg)),
                        qPrintable(cell(r.bootstrapNoGap)), qPrintable(cell(r.percentiles)), qPrintable(fails));
        }
        baselineLines.push_back(QStringLiteral("%1: the baseline beside the dip judged on %2 of %3 eclipses, "
                                               "correlated on %4")
                                    .arg(name)
                                    .arg(baselineJudged)
                                    .arg(eclipses)
                                    .arg(baselineCorrelated));
        tables.emplace_back(name, table);
        std::fflush(stdout);
    }
    for (const QString& line : baselineLines)
        std::printf("%s\n", qPrintable(line));
    std::printf("\nThe bootstrap's pulls by the curve's length: standard deviation (and number of eclipses)\n");
    const int few = BootstrapResult::fewPointsForTheNoise;
    std::printf("%-26s %-11s %-16s %-20s %s\n", "method", "noise", qPrintable(QStringLiteral("< %1 points").arg(few)),
                "of them not modelled", qPrintable(QStringLiteral(">= %1 points").arg(few)));
    // With fewer than two pulls there is no standard deviation: a dash, not "nan" (with the
    // noise given, no short curve is left unmodelled).
    auto counted = [](const Pulls& p) {
        const QString sd = p.values.size() < 2 ? QStringLiteral("-") : QString::number(p.sd(), 'f', 2);
        return QStringLiteral("%1 (%2)").arg(sd).arg(p.values.size());
    };
    for (const auto& [name, table] : tables)
        for (const int row : rows) {
            const Row& r = table.at(row);
            std::printf("%-26s %-11s %-16s %-20s %s\n", MethodOfRow(row).title, name,
                        qPrintable(counted(r.bootstrapFew)), qPrintable(counted(r.bootstrapFewUnmodelled)),
                        qPrintable(counted(r.bootstrapMany)));
        }
    std::printf("\nThe bisectors of chords' bootstrap pulls: with a chord read across a gap wider than %g median "
                "spacings, and without; the spread alone and with the shift\n",
                ChordGaps::gapSpacings);
    std::printf("%-26s %-11s %-16s %-16s %-16s %-16s %s\n", "method", "noise", "across a gap", "with the shift",
                "none across", "with the shift", "all, the spread alone");
    for (const auto& [name, table] : tables) {
        const Row& r = table.at(ChordsRow);
        std::printf("%-26s %-11s %-16s %-16s %-16s %-16s %s\n", MethodOfRow(ChordsRow).title, name,
                    qPrintable(counted(r.bootstrapAcrossAGap)), qPrintable(counted(r.acrossAGapWithShift)),
                    qPrintable(counted(r.bootstrapNoneAcross)), qPrintable(counted(r.noneAcrossWithShift)),
                    qPrintable(counted(r.chordsSpread)));
    }
    std::printf("(%.0f s)\n", double(timer.elapsed()) / 1000);
    return 0;
}
