// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers

#include "analysis/Bootstrap.h"
#include "analysis/LocalSmoother.h"
#include "methods/chords/BisectChords.h"
#include "methods/parabola/FitParabola.h"
#include "support/SimulatedEclipse.h"
#include "support/TestSupport.h"

#include <QtTest>

#include <cmath>
#include <cstring>
#include <stdexcept>
#include <thread>

using namespace dip;
using dip::test::Dip;
using dip::test::DipShape;
using dip::test::standardDeviation;

namespace {

// The methods as the bootstrap calls them, on the range of the resampled curve.
std::optional<double> parabolaTime(const ResampledCurve& c)
{
    return FitParabola(c.t, c.m, c.count, c.first, c.last).time;
}

// The bisectors of chords with the left and right ranges the stretches below and above the
// curve's middle time, leaving out the faintest quarter of the range.
struct ChordsRanges {
    rt::Integer idx1, idx2, idx3, idx4;
};
ReplicateMethod chordsTime(ChordsRanges r)
{
    return [r](const ResampledCurve& c) -> std::optional<double> {
        return BisectChords(c.t, c.m, c.count, r.idx1, r.idx2, r.idx3, r.idx4).time;
    };
}

// A parabola-shaped dip m = depth - curvature (t - vertex)^2 at the given times.
std::vector<double> parabolaDip(const std::vector<double>& t, double vertex, double noise, std::mt19937_64& rng)
{
    std::normal_distribution<double> g(0, 1);
    std::vector<double> m;
    for (double x : t)
        m.push_back(0.5 - 800 * (x - vertex) * (x - vertex) + noise * g(rng));
    return m;
}

BootstrapSetup setupOf(const std::vector<double>& t, const std::vector<double>& m)
{
    BootstrapSetup s;
    s.t = t;
    s.m = m;
    s.first = 1;
    s.last = int(t.size());
    return s;
}

// The 41 points about the minimum at 0.5 of a curve of 401 over 0.4 .. 0.6, with the range's
// smoother folded about the minimum.
// The setup's light curve as a method sees it, with its range.
ResampledCurve curveOf(const BootstrapSetup& s)
{
    ResampledCurve c;
    c.count = rt::Integer(s.t.size());
    c.first = rt::Integer(s.first);
    c.last = rt::Integer(s.last);
    for (std::size_t i = 0; i < s.t.size(); ++i) {
        c.t(long(i) + 1) = s.t[i];
        c.m(long(i) + 1) = s.m[i];
    }
    return c;
}

BootstrapSetup centralSetupOf(const std::vector<double>& t, const std::vector<double>& m)
{
    BootstrapSetup s = setupOf(t, m);
    s.first = 181;
    s.last = 221;
    s.foldCentre = 0.5;
    return s;
}

bool sameDigits(const std::vector<double>& a, const std::vector<double>& b)
{
    return a.size() == b.size() && std::memcmp(a.data(), b.data(), a.size() * sizeof(double)) == 0;
}

// AR(1) noise of standard deviation sigma and lag-1 correlation rho.
std::vector<double> redNoise(int n, double sigma, double rho, std::mt19937_64& rng)
{
    std::normal_distribution<double> g(0, 1);
    std::vector<double> e(static_cast<std::size_t>(n));
    double x = sigma * g(rng);
    for (double& v : e) {
        v = x;
        x = rho * x + sigma * std::sqrt(1 - rho * rho) * g(rng);
    }
    return e;
}

} // namespace

class TestBootstrap : public QObject {
    Q_OBJECT

private Q_SLOTS:
    // Without noise every replicate is the curve itself: the error is 0.
    void noiselessCurveGivesZero()
    {
        std::mt19937_64 rng(1);
        const std::vector<double> t = test::evenTimes(0.45, 0.55, 80);
        const std::vector<double> m = parabolaDip(t, 0.5012, 0, rng);

        BootstrapSetup given = setupOf(t, m);
        given.model = [](double x) { return 0.5 - 800 * (x - 0.5012) * (x - 0.5012); };
        given.replicates = 100;
        const BootstrapResult a = runBootstrap(given, parabolaTime);
        QVERIFY(a.valid());
        QCOMPARE(a.successes, 100);
        QCOMPARE(a.error, 0.0);
        QCOMPARE(a.p16, a.p84);

        // The local quadratic follows a parabola to the last digits.
        BootstrapSetup smoothed = setupOf(t, m);
        smoothed.replicates = 100;
        const BootstrapResult b = runBootstrap(smoothed, parabolaTime);
        QVERIFY(b.valid());
        QVERIFY2(b.error < 1e-12, qPrintable(QString::number(b.error)));
        QVERIFY(std::abs(b.mean - 0.5012) < 1e-9);

        // A smooth dip, noiseless, timed by the bisectors of chords: what is left is the
        // smoother's miss of the curve, far below any noise (10^-6 d is a tenth of a second).
        Dip g;
        std::vector<double> mg;
        for (double x : t)
            mg.push_back(g.magnitude(x));
        BootstrapSetup chords = setupOf(t, mg);
        chords.replicates = 50;
        const BootstrapResult c = runBootstrap(chords, chordsTime({10, 35, 46, 71}));
        QVERIFY(c.valid());
        QVERIFY2(c.error < 1e-6, qPrintable(QString::number(c.error)));
        QVERIFY2(c.residualRms < 1e-4, qPrintable(QString::number(c.residualRms)));
    }

    // On white noise the bootstrap error of one light curve matches the scatter of the times
    // over independent draws of the noise.
    void whiteNoiseMatchesTheScatter_data()
    {
        QTest::addColumn<int>("method");
        QTest::addColumn<double>("noise");
        QTest::newRow("parabola, default smoother") << 0 << 0.01;
        QTest::newRow("parabola, noisier") << 0 << 0.03;
        QTest::newRow("bisectors of chords, default smoother") << 1 << 0.01;
    }
    void whiteNoiseMatchesTheScatter()
    {
        QFETCH(int, method);
        QFETCH(double, noise);
        const std::vector<double> t = test::evenTimes(0.46, 0.54, 100);
        Dip dip;
        dip.centre = 0.5013;
        const ReplicateMethod timeOf = method == 0 ? ReplicateMethod(parabolaTime) : chordsTime({8, 40, 61, 93});
        auto curve = [&](std::mt19937_64& rng) {
            return method == 0 ? parabolaDip(t, dip.centre, noise, rng) : test::noisyMagnitudes(dip, t, noise, rng);
        };

        // The scatter over 400 independent draws.
        std::mt19937_64 rng(7);
        std::vector<double> times;
        for (int k = 0; k < 400; ++k) {
            BootstrapSetup s = setupOf(t, curve(rng));
            times.push_back(*timeOf(curveOf(s)));
        }
        const double scatter = standardDeviation(times);

        // The bootstrap on a few single curves.
        double sum = 0;
        const int curves = 6;
        for (int k = 0; k < curves; ++k) {
            BootstrapSetup s = setupOf(t, curve(rng));
            s.replicates = 300;
            s.seed = 100 + std::uint64_t(k);
            const BootstrapResult r = runBootstrap(s, timeOf);
            QVERIFY(r.valid());
            QCOMPARE(r.failures, 0);
            QCOMPARE(r.blockLength, 1);
            sum += r.error;
        }
        const double bootstrap = sum / curves;
        QVERIFY2(std::abs(bootstrap / scatter - 1) < 0.2,
                 qPrintable(QStringLiteral("bootstrap %1, scatter %2").arg(bootstrap).arg(scatter)));
    }

    // The 16th and 84th percentiles bracket the mean about one error either side.
    void percentiles()
    {
        std::mt19937_64 rng(3);
        const std::vector<double> t = test::evenTimes(0.46, 0.54, 100);
        BootstrapSetup s = setupOf(t, parabolaDip(t, 0.5, 0.01, rng));
        const BootstrapResult r = runBootstrap(s, parabolaTime);
        QVERIFY(r.valid());
        QCOMPARE(r.requested, 500);
        QCOMPARE(r.done, 500);
        QVERIFY(r.p16 < r.mean && r.mean < r.p84);
        QVERIFY(std::abs((r.p84 - r.p16) / 2 / r.error - 1) < 0.15);
        // Linear between order statistics: the 16th percentile of the sorted times.
        std::vector<double> sorted = r.times;
        std::sort(sorted.begin(), sorted.end());
        const double x = 0.16 * 499;
        const std::size_t i = std::size_t(x);
        QCOMPARE(r.p16, sorted[i] + (x - double(i)) * (sorted[i + 1] - sorted[i]));
    }

    // A seed gives the same digits whatever the number of threads; another seed other digits.
    void seedGivesTheSameDigits()
    {
        std::mt19937_64 rng(5);
        const std::vector<double> t = test::evenTimes(0.46, 0.54, 120);
        BootstrapSetup s = setupOf(t, parabolaDip(t, 0.5, 0.01, rng));
        s.replicates = 200;
        s.seed = 42;
        s.threads = 1;
        const BootstrapResult one = runBootstrap(s, parabolaTime);
        for (int threads : {2, 3, 8}) {
            s.threads = threads;
            const BootstrapResult many = runBootstrap(s, parabolaTime);
            QVERIFY2(sameDigits(many.times, one.times), qPrintable(QStringLiteral("%1 threads").arg(threads)));
            QVERIFY(std::memcmp(&many.error, &one.error, sizeof(double)) == 0);
            QVERIFY(std::memcmp(&many.p16, &one.p16, sizeof(double)) == 0);
        }
        s.seed = 43;
        const BootstrapResult other = runBootstrap(s, parabolaTime);
        QVERIFY(!sameDigits(other.times, one.times));
    }

    // Points outside the range are never resampled; inside, only magnitudes change.
    void outsideTheRangeKept()
    {
        std::mt19937_64 rng(9);
        const std::vector<double> t = test::evenTimes(0.40, 0.60, 150);
        BootstrapSetup s = setupOf(t, parabolaDip(t, 0.5, 0.01, rng));
        s.first = 30;
        s.last = 120;
        s.replicates = 60;
        std::atomic<int> touched{0};
        std::atomic<int> changed{0};
        const BootstrapResult r = runBootstrap(s, [&](const ResampledCurve& c) -> std::optional<double> {
            bool differs = false;
            for (int i = 1; i <= c.count; ++i) {
                if (c.t(i) != s.t[std::size_t(i - 1)])
                    touched.fetch_add(1);
                const bool inside = i >= s.first && i <= s.last;
                if (!inside && c.m(i) != s.m[std::size_t(i - 1)])
                    touched.fetch_add(1);
                differs = differs || (inside && c.m(i) != s.m[std::size_t(i - 1)]);
            }
            if (differs)
                changed.fetch_add(1);
            return parabolaTime(c);
        });
        QCOMPARE(touched.load(), 0);
        QCOMPARE(changed.load(), 60);
        QCOMPARE(r.successes, 60);
    }

    // A replicate that fails is counted under its error number and never stops the others.
    void failuresCounted()
    {
        std::mt19937_64 rng(11);
        const std::vector<double> t = test::evenTimes(0.46, 0.54, 60);
        BootstrapSetup s = setupOf(t, parabolaDip(t, 0.5, 0.01, rng));
        s.replicates = 300;
        // Decided by the resampled residuals, so the same replicates fail on every run.
        const auto model = [](double x) { return 0.5 - 800 * (x - 0.5) * (x - 0.5); };
        s.model = model;
        const ReplicateMethod flaky = [model](const ResampledCurve& c) -> std::optional<double> {
            if (c.m(1) - model(c.t(1)) > 0.005)
                rt::raise(11);
            if (c.m(2) - model(c.t(2)) > 0.005)
                return std::nullopt;
            if (c.m(3) - model(c.t(3)) < -0.015)
                throw std::runtime_error("not a runtime error");
            return parabolaTime(c);
        };
        s.threads = 1;
        const BootstrapResult one = runBootstrap(s, flaky);
        s.threads = 4;
        const BootstrapResult r = runBootstrap(s, flaky);
        QVERIFY(r.problem.isEmpty());
        QCOMPARE(r.done, 300);
        QVERIFY(r.failuresByError.count(11) && r.failuresByError.at(11) > 20);
        QVERIFY(r.failuresByError.count(noResultFailure) && r.failuresByError.at(noResultFailure) > 10);
        QVERIFY(r.failuresByError.count(otherFailure) && r.failuresByError.at(otherFailure) >= 1);
        int counted = 0;
        for (const auto& [number, count] : r.failuresByError)
            counted += count;
        QCOMPARE(counted, r.failures);
        QCOMPARE(r.successes + r.failures, 300);
        int nan = 0;
        for (double x : r.times)
            nan += std::isnan(x) ? 1 : 0;
        QCOMPARE(nan, r.failures);
        QVERIFY(r.valid());
        QCOMPARE(r.failuresByError, one.failuresByError);
        QVERIFY(std::memcmp(&r.error, &one.error, sizeof(double)) == 0);

        // Every replicate failing: counted, no statistics, no crash.
        const BootstrapResult all =
            runBootstrap(s, [](const ResampledCurve&) -> std::optional<double> { rt::raise(6); });
        QCOMPARE(all.failures, 300);
        QCOMPARE(all.failuresByError.at(6), 300);
        QCOMPARE(all.successes, 0);
        QVERIFY(!all.valid());
    }

    // Cancel stops the replicates not yet started and the result says so.
    void cancelStopsEarly()
    {
        std::mt19937_64 rng(13);
        const std::vector<double> t = test::evenTimes(0.46, 0.54, 60);
        BootstrapSetup s = setupOf(t, parabolaDip(t, 0.5, 0.01, rng));
        s.replicates = 500;
        s.threads = 2;
        std::atomic<bool> cancel{false};
        std::atomic<int> calls{0};
        const BootstrapResult r = runBootstrap(
            s,
            [&](const ResampledCurve& c) -> std::optional<double> {
                if (calls.fetch_add(1) == 40)
                    cancel.store(true);
                return parabolaTime(c);
            },
            {}, &cancel);
        QVERIFY(r.cancelled);
        QVERIFY(r.done >= 41);
        QVERIFY(r.done < 500);
        QCOMPARE(r.successes, r.done);
        QVERIFY(r.valid());
    }

    // Progress comes from the calling thread while the replicates run, and once at the end.
    void progressReported()
    {
        std::mt19937_64 rng(17);
        const std::vector<double> t = test::evenTimes(0.46, 0.54, 60);
        BootstrapSetup s = setupOf(t, parabolaDip(t, 0.5, 0.01, rng));
        s.replicates = 120;
        s.threads = 2;
        const std::thread::id caller = std::this_thread::get_id();
        std::vector<int> seen;
        bool otherThread = false;
        const BootstrapResult r = runBootstrap(
            s,
            [](const ResampledCurve& c) -> std::optional<double> {
                std::this_thread::sleep_for(std::chrono::milliseconds(2));
                return parabolaTime(c);
            },
            [&](int done, int requested) {
                otherThread = otherThread || std::this_thread::get_id() != caller;
                QCOMPARE(requested, 120);
                seen.push_back(done);
            });
        QVERIFY(!otherThread);
        QVERIFY(seen.size() >= 2);
        QCOMPARE(seen.back(), 120);
        QVERIFY(std::is_sorted(seen.begin(), seen.end()));
        QCOMPARE(r.done, 120);
    }

    // Progress does not wait for a replicate to end: while the only replicate under way is
    // held, the calling thread keeps reporting (done = 0) on its own clock, every
    // bootstrapProgressIntervalMs, within the 100 ms the windows need.
    void progressWhileAReplicateIsHeld()
    {
        QVERIFY(bootstrapProgressIntervalMs > 0 && bootstrapProgressIntervalMs <= 100);
        std::mt19937_64 rng(19);
        const std::vector<double> t = test::evenTimes(0.46, 0.54, 60);
        BootstrapSetup s = setupOf(t, parabolaDip(t, 0.5, 0.01, rng));
        s.replicates = 2;
        s.threads = 1;
        std::atomic<int> reportsWhileHeld{0};
        std::atomic<bool> holding{false};
        std::vector<int> seen;
        const BootstrapResult r = runBootstrap(
            s,
            [&](const ResampledCurve& c) -> std::optional<double> {
                // The first replicate is held until three reports came in meanwhile (a bound
                // of many seconds only keeps a broken build from hanging).
                if (!holding.exchange(true)) {
                    for (int i = 0; i < 20000 && reportsWhileHeld.load() < 3; ++i)
                        std::this_thread::sleep_for(std::chrono::milliseconds(1));
                }
                return parabolaTime(c);
            },
            [&](int done, int) {
                seen.push_back(done);
                if (holding.load() && done == 0)
                    reportsWhileHeld.fetch_add(1);
            });
        QVERIFY2(reportsWhileHeld.load() >= 3, qPrintable(QString::number(reportsWhileHeld.load())));
        QCOMPARE(seen.back(), 2);
        QCOMPARE(r.done, 2);
    }

    // Correlated noise: the residuals' lag-1 correlation chooses blocks, and the blocks carry
    // the correlation into the replicates, which independent residuals would lose.
    void blocksKeepCorrelation()
    {
        std::mt19937_64 rng(19);
        const std::vector<double> t = test::evenTimes(0.46, 0.54, 200);
        std::vector<double> m = parabolaDip(t, 0.5, 0, rng);
        const std::vector<double> e = redNoise(200, 0.01, 0.8, rng);
        for (std::size_t i = 0; i < m.size(); ++i)
            m[i] += e[i];
        BootstrapSetup s = setupOf(t, m);
        s.model = [](double x) { return 0.5 - 800 * (x - 0.5) * (x - 0.5); };
        s.modelParameters = 3;
        s.replicates = 300;
        const BootstrapResult blocks = runBootstrap(s, parabolaTime);
        QVERIFY(blocks.lag1 > 0.6);
        QCOMPARE(blocks.blockLength, bootstrapBlockLength(blocks.lag1, 200));
        QVERIFY(blocks.blockLength > 3);
        s.blockLength = 1;
        const BootstrapResult single = runBootstrap(s, parabolaTime);
        QVERIFY2(blocks.error > 1.5 * single.error,
                 qPrintable(QStringLiteral("%1 %2").arg(blocks.error).arg(single.error)));
    }

    // White noise measured on the whole curve stays white: the fitted covariance has no
    // correlated part, its white part is the noise's, and the range's residuals are resampled.
    void whiteNoiseOfTheWholeCurveNotModelled()
    {
        std::mt19937_64 rng(29);
        const std::vector<double> t = test::evenTimes(0.4, 0.6, 401);
        BootstrapSetup s = centralSetupOf(t, parabolaDip(t, 0.5, 0.01, rng));
        s.noiseCentre = 0.5;
        s.replicates = 50;
        const BootstrapResult r = runBootstrap(s, parabolaTime);
        QVERIFY(r.valid());
        QVERIFY(!r.modelled());
        QCOMPARE(r.noiseCovariance.red, 0.0);
        QVERIFY2(std::abs(std::sqrt(r.noiseCovariance.white) / 0.01 - 1) < 0.2,
                 qPrintable(QString::number(std::sqrt(r.noiseCovariance.white))));
    }

    // Noise correlated over about ten points, a range of 41 points in a curve of 401: the
    // residuals of the range about its smoother hold too little of the slow noise to resample;
    // measured on the whole curve, as the differences between its branches, the noise's
    // covariance is fitted and the replicates' noise drawn from it, and the error comes near
    // the scatter of the times over independent draws of the noise (0.90 times it with these
    // seeds), where blocks of the range's residuals stay well below it (0.58).
    void slowNoiseFromTheWholeCurve()
    {
        std::mt19937_64 rng(23);
        const std::vector<double> t = test::evenTimes(0.4, 0.6, 401);
        auto curve = [&](std::mt19937_64& r) {
            std::vector<double> m = parabolaDip(t, 0.5, 0, r);
            const std::vector<double> e = redNoise(401, 0.01, 0.9, r);
            for (std::size_t i = 0; i < m.size(); ++i)
                m[i] += e[i];
            return m;
        };
        auto setupFor = [&](const std::vector<double>& m) {
            BootstrapSetup s = centralSetupOf(t, m);
            s.replicates = 200;
            return s;
        };
        std::vector<double> times;
        for (int k = 0; k < 400; ++k) {
            const BootstrapSetup s = setupFor(curve(rng));
            times.push_back(*parabolaTime(curveOf(s)));
        }
        const double scatter = standardDeviation(times);

        double whole = 0, blocks = 0;
        int modelled = 0;
        const int curves = 8;
        for (int k = 0; k < curves; ++k) {
            BootstrapSetup s = setupFor(curve(rng));
            s.seed = 300 + std::uint64_t(k);
            const BootstrapResult b = runBootstrap(s, parabolaTime);
            s.noiseCentre = 0.5;
            const BootstrapResult r = runBootstrap(s, parabolaTime);
            QVERIFY(b.valid() && r.valid());
            QVERIFY(!b.sieve && !b.modelled());
            if (r.modelled())
                ++modelled;
            whole += r.error;
            blocks += b.error;
        }
        whole /= curves;
        blocks /= curves;
        const QString numbers = QStringLiteral("whole curve %1, blocks %2, scatter %3, modelled %4")
                                    .arg(whole)
                                    .arg(blocks)
                                    .arg(scatter)
                                    .arg(modelled);
        QVERIFY2(modelled >= curves / 2, qPrintable(numbers));
        QVERIFY2(std::abs(whole / scatter - 1) < 0.3, qPrintable(numbers));
        QVERIFY2(blocks < 0.8 * scatter, qPrintable(numbers));
    }

    // A short curve (61 points) of white noise 0.004 and slow noise 0.01 correlated over 5
    // points: its few differences cannot pin the correlation time down. The replicates draw
    // their covariance from the plausible ones, so the error, averaged over 30 curves, is the
    // true scatter of the times over 400 noise draws within 20 % (from the best covariance
    // alone it came out at about 0.6 of it).
    void shortCurveCarriesTheDoubtOfItsNoise()
    {
        std::mt19937_64 rng(41);
        const std::vector<double> t = test::evenTimes(0.47, 0.53, 61);
        const double rho = std::exp(-1.0 / 5);
        auto curve = [&](std::mt19937_64& r) {
            std::vector<double> m = parabolaDip(t, 0.5, 0.004, r);
            const std::vector<double> e = redNoise(61, 0.01, rho, r);
            for (std::size_t i = 0; i < m.size(); ++i)
                m[i] += e[i];
            return m;
        };
        auto timeOf = [&](const std::vector<double>& m) { return *parabolaTime(curveOf(setupOf(t, m))); };
        std::vector<double> times;
        for (int k = 0; k < 400; ++k)
            times.push_back(timeOf(curve(rng)));
        const double scatter = standardDeviation(times);

        double error = 0;
        int modelled = 0;
        const int curves = 30;
        for (int k = 0; k < curves; ++k) {
            const std::vector<double> m = curve(rng);
            BootstrapSetup s = setupOf(t, m);
            s.replicates = 200;
            s.seed = 500 + std::uint64_t(k);
            s.noiseCentre = timeOf(m);
            const BootstrapResult r = runBootstrap(s, parabolaTime);
            QVERIFY(r.valid());
            if (r.modelled())
                ++modelled;
            error += r.error;
        }
        error /= curves;
        const QString numbers =
            QStringLiteral("error %1, scatter %2, modelled %3").arg(error).arg(scatter).arg(modelled);
        QVERIFY2(modelled >= curves / 2, qPrintable(numbers));
        QVERIFY2(std::abs(error / scatter - 1) < 0.2, qPrintable(numbers));
    }

    // The noise given, not measured: the short curve of shortCurveCarriesTheDoubtOfItsNoise
    // with its own covariance (white 0.004, slow 0.01 over 5 spacings) gives each curve's error
    // within 15 % of the times' true scatter, whatever that curve's noise happened to look like.
    // White noise given stays white, is what the replicates draw (twice its size, with the
    // same seed, doubles the error within 5 %), and leaves no "(few points)" doubt of a noise
    // measured on a short curve.
    void knownNoiseIsDrawnFrom()
    {
        std::mt19937_64 rng(43);
        const std::vector<double> t = test::evenTimes(0.47, 0.53, 61);
        const double spacing = 0.001;
        auto curve = [&](std::mt19937_64& r) {
            std::vector<double> m = parabolaDip(t, 0.5, 0.004, r);
            const std::vector<double> e = redNoise(61, 0.01, std::exp(-1.0 / 5), r);
            for (std::size_t i = 0; i < m.size(); ++i)
                m[i] += e[i];
            return m;
        };
        std::vector<double> times;
        for (int k = 0; k < 400; ++k)
            times.push_back(*parabolaTime(curveOf(setupOf(t, curve(rng)))));
        const double scatter = standardDeviation(times);

        NoiseCovariance known;
        known.white = 0.004 * 0.004;
        known.red = 0.01 * 0.01;
        known.tau = 5 * spacing;
        for (int k = 0; k < 3; ++k) {
            BootstrapSetup s = setupOf(t, curve(rng));
            s.replicates = 400;
            s.seed = 700 + std::uint64_t(k);
            s.noiseCentre = 0.5;
            s.knownNoise = known;
            const BootstrapResult r = runBootstrap(s, parabolaTime);
            QVERIFY(r.valid());
            QVERIFY(r.modelled());
            QVERIFY(r.noiseGiven);
            QVERIFY(!r.sieve);
            QCOMPARE(r.noiseCovariance.red, known.red);
            QVERIFY2(std::abs(r.error / scatter - 1) < 0.15,
                     qPrintable(QStringLiteral("error %1, scatter %2").arg(r.error).arg(scatter)));
        }

        BootstrapSetup s = setupOf(t, parabolaDip(t, 0.5, 0.004, rng));
        s.replicates = 200;
        s.noiseCentre = 0.5;
        NoiseCovariance white;
        white.white = 0.004 * 0.004;
        s.knownNoise = white;
        const BootstrapResult r = runBootstrap(s, parabolaTime);
        QVERIFY(r.valid());
        QVERIFY(!r.modelled());
        QVERIFY(!r.sieve);
        QCOMPARE(r.arOrder, 0);
        QCOMPARE(r.noiseCovariance.white, white.white);
        // Given, not measured on these 61 points: no "(few points)" doubt about it.
        QVERIFY(r.noiseGiven);
        QVERIFY(!r.unmodelledOnFewPoints());
        white.white = 0.008 * 0.008;
        s.knownNoise = white;
        const BootstrapResult twice = runBootstrap(s, parabolaTime);
        QVERIFY2(std::abs(twice.error / r.error - 2) < 0.1,
                 qPrintable(QStringLiteral("%1 and %2").arg(r.error).arg(twice.error)));
    }

    void blockLengthRule_data()
    {
        QTest::addColumn<double>("rho");
        QTest::addColumn<int>("n");
        QTest::addColumn<int>("expected");
        QTest::newRow("white") << 0.0 << 100 << 1;
        QTest::newRow("within the scatter of white noise") << 0.19 << 100 << 1;
        QTest::newRow("negative") << -0.5 << 100 << 1;
        // (2 rho / (1 - rho^2))^(2/3) n^(1/3): 0.5, 100 gives 1.3333^(2/3) 4.6416 = 5.62.
        QTest::newRow("rho 0.5") << 0.5 << 100 << 6;
        QTest::newRow("rho 0.5, short") << 0.5 << 20 << 3;
        QTest::newRow("rho 0.95, capped at n/3") << 0.95 << 30 << 10;
    }
    void blockLengthRule()
    {
        QFETCH(double, rho);
        QFETCH(int, n);
        QFETCH(int, expected);
        QCOMPARE(bootstrapBlockLength(rho, n), expected);
    }

    // The warning about noise judged on too few points: below 100 used points, and only where
    // no correlated covariance was found and the bootstrap ran.
    void fewPointsWarnBelowAHundredUnlessTheNoiseWasModelled_data()
    {
        QTest::addColumn<int>("points");
        QTest::addColumn<bool>("correlated");
        QTest::addColumn<bool>("refused");
        QTest::addColumn<bool>("warns");
        QTest::newRow("99 points") << 99 << false << false << true;
        QTest::newRow("100 points") << 100 << false << false << false;
        QTest::newRow("99 points, correlated noise found") << 99 << true << false << false;
        QTest::newRow("99 points, refused") << 99 << false << true << false;
    }
    void fewPointsWarnBelowAHundredUnlessTheNoiseWasModelled()
    {
        QFETCH(int, points);
        QFETCH(bool, correlated);
        QFETCH(bool, refused);
        QFETCH(bool, warns);
        BootstrapResult b;
        b.points = points;
        if (correlated) {
            b.noiseCovariance.red = 1e-4;
            b.noiseCovariance.tau = 0.01;
        }
        if (refused)
            b.problem = QStringLiteral("no replicates asked for");
        QCOMPARE(BootstrapResult::fewPointsForTheNoise, 100);
        QCOMPARE(b.unmodelledOnFewPoints(), warns);
    }

    void refusedSetups_data()
    {
        QTest::addColumn<int>("first");
        QTest::addColumn<int>("last");
        QTest::addColumn<int>("replicates");
        QTest::newRow("first 0") << 0 << 20 << 10;
        QTest::newRow("last beyond the points") << 1 << 31 << 10;
        QTest::newRow("two points") << 5 << 6 << 10;
        QTest::newRow("reversed") << 20 << 5 << 10;
        QTest::newRow("no replicates") << 1 << 30 << 0;
    }
    void refusedSetups()
    {
        QFETCH(int, first);
        QFETCH(int, last);
        QFETCH(int, replicates);
        std::mt19937_64 rng(1);
        const std::vector<double> t = test::evenTimes(0.46, 0.54, 30);
        BootstrapSetup s = setupOf(t, parabolaDip(t, 0.5, 0.01, rng));
        s.first = first;
        s.last = last;
        s.replicates = replicates;
        bool called = false;
        const BootstrapResult r = runBootstrap(s, [&](const ResampledCurve&) -> std::optional<double> {
            called = true;
            return 0.0;
        });
        QVERIFY(!r.problem.isEmpty());
        QVERIFY(!called);
        QVERIFY(!r.valid());
        // A run that never started judged no noise: no warning about it.
        QVERIFY(!r.unmodelledOnFewPoints());
    }

    // The session's arrays.
    void fromArrays()
    {
        rt::ObsArray t;
        rt::ObsArray m;
        for (int i = 1; i <= 25; ++i) {
            t(i) = 0.01 * i;
            m(i) = i % 3;
        }
        const BootstrapSetup s = BootstrapSetup::fromArrays(t, m, 25, 4, 20);
        QCOMPARE(int(s.t.size()), 25);
        QCOMPARE(s.t[3], 0.04);
        QCOMPARE(s.m[4], 2.0);
        QCOMPARE(s.first, 4);
        QCOMPARE(s.last, 20);
    }

    // The local quadratic: exact on a quadratic, leverages between 0 and 1 summing to the
    // trace that GCV uses, continuous between the points.
    void localSmoother()
    {
        std::vector<double> t = test::evenTimes(0.0, 1.0, 41);
        std::mt19937_64 rng(23);
        std::uniform_real_distribution<double> u(-0.3, 0.3);
        for (std::size_t i = 1; i + 1 < t.size(); ++i)
            t[i] += u(rng) / 40;
        std::vector<double> m;
        for (double x : t)
            m.push_back(2 - 3 * x + 5 * x * x);
        for (int k : {3, 7, 15, 41}) {
            const LocalSmoother q(t, m, k);
            for (double x : {0.0, 0.123, 0.5, 0.987})
                QVERIFY(std::abs(q(x) - (2 - 3 * x + 5 * x * x)) < 1e-9);
        }
        std::normal_distribution<double> g(0, 0.1);
        std::vector<double> noisy = m;
        for (double& y : noisy)
            y += g(rng);
        const LocalSmoother chosen(t, noisy);
        QVERIFY(chosen.neighbours() >= 7);
        const std::vector<double> h = chosen.leverages();
        double trace = 0;
        for (double x : h) {
            QVERIFY(x > 0 && x <= 1);
            trace += x;
        }
        const std::vector<double> fit = chosen.fittedValues();
        double rss = 0;
        for (std::size_t i = 0; i < t.size(); ++i)
            rss += (noisy[i] - fit[i]) * (noisy[i] - fit[i]);
        const double n = double(t.size());
        DIP_COMPARE_REL(chosen.gcv(chosen.neighbours()), n * rss / ((n - trace) * (n - trace)), 1e-12);
        for (double x = 0.2; x < 0.3; x += 0.0001)
            QVERIFY(std::abs(chosen(x + 0.0001) - chosen(x)) < 0.01);
    }
};

QTEST_GUILESS_MAIN(TestBootstrap)
#include "tst_bootstrap.moc"
