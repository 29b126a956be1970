// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
// The bootstrap of each method through the table of methods: nothing to spread on a curve its
// model fits exactly, the spread of the times over independent noise on white noise, the same
// digits whatever the thread count, and the rows it refuses.
#include "analysis/MethodBootstrap.h"
#include "methods/MethodRegistry.h"
#include "support/TestSupport.h"

#include <QtTest>

#include <array>
#include <cmath>
#include <random>
#include <utility>

using namespace dip;
using dip::test::standardDeviation;

namespace {

constexpr double pi = 3.14159265358979323846;

// 201 points over 0.44 .. 0.56 (step 0.0006) of a Gaussian dip at 0.5 (width 0.02, 0.8 mag),
// plus normal noise of sigma.
CurveData gaussianCurve(double sigma, std::uint64_t seed)
{
    std::mt19937_64 rng(seed);
    std::normal_distribution<double> g(0, 1);
    std::vector<double> t, m;
    for (const auto& [x, y] : test::gaussianDip(201, 0.44, 0.0006, 0.5, 0.02)) {
        t.push_back(x);
        m.push_back(y + sigma * g(rng));
    }
    return CurveData::from(t, m);
}

// The same times, the noiseless shape each model holds exactly: a parabola (the fitted
// parabola, the local quadratic smoother), a cosine series (the Fourier fit).
CurveData exactCurve(int row)
{
    std::vector<double> t, m;
    const double a[5] = {0.4, 0.2, 0.05, 0.01, 0.005};
    for (int i = 0; i < 201; ++i) {
        const double x = 0.44 + 0.0006 * i;
        t.push_back(x);
        m.push_back(row == 5 ? test::fourierMag(x, 0.5, 11.6, pi / 0.07, a) : 11.8 - 200 * (x - 0.5) * (x - 0.5));
    }
    return CurveData::from(t, m);
}

// Index of the first point at or after time x (the points are 0.0006 apart from 0.44).
rt::Integer at(double x) { return rt::Integer(std::lround((x - 0.44) / 0.0006) + 1); }

MethodRequest requestFor(int row)
{
    MethodRequest r;
    switch (row) {
    case 1:
        r.first = at(0.488);
        r.last = at(0.512);
        break;
    case 3:
        r.first = at(0.470);
        r.last = at(0.488);
        r.first2 = at(0.512);
        r.last2 = at(0.530);
        break;
    case 4:
        r.first = at(0.455);
        r.last = at(0.545);
        break;
    case 5:
        r.first = at(0.44);
        r.last = at(0.56);
        r.fourierStart = {0, 0.5, 11.7, pi / 0.07, 0.4, 0.2, 0.05, 0.01, 0.005};
        break;
    default: break;
    }
    return r;
}

// A method's result on a curve, and its bootstrap of B replicates (seed 1).
struct Bootstrapped {
    MethodResult fitted;
    BootstrapResult bootstrap;
};
Bootstrapped fitAndBootstrap(int row, const CurveData& c, const MethodRequest& request, int replicates)
{
    Bootstrapped r;
    r.fitted = MethodOfRow(row).compute(c.view(), request);
    MethodBootstrapOptions o;
    o.replicates = replicates;
    r.bootstrap = BootstrapMethod(row, c.view(), request, r.fitted, o);
    return r;
}

void methodRows()
{
    QTest::addColumn<int>("row");
    QTest::newRow("parabola") << 1;
    QTest::newRow("chords") << 3;
    QTest::newRow("Kwee") << 4;
    QTest::newRow("Fourier") << 5;
    QTest::newRow("sliding") << 6;
}

// A published eclipse of CM Dra (times less offset) with its published minimum (reduced the
// same way) and error, and the ranges an observer picks on it: the parabola over the bottom,
// the chords on both branches at matching depths, Kwee and van Woerden symmetric about the
// bottom, the Fourier fit over every point.
struct PublishedEclipse {
    const char* file;
    double offset;
    double minimum;
    double error;
    std::array<rt::Integer, 4> parabola; // first, last
    std::array<rt::Integer, 4> chords;   // first, last, first2, last2
    std::array<rt::Integer, 4> kwee;     // first, last
};

CurveData readEclipse(const PublishedEclipse& e)
{
    const test::TimesAndMags c = test::readCmDraCurve(QLatin1String(e.file), e.offset);
    return CurveData::from(c.t, c.m);
}

MethodRequest publishedRequest(int row, const PublishedEclipse& e, const CurveData& c)
{
    MethodRequest r;
    const std::array<rt::Integer, 4> none{};
    const std::array<rt::Integer, 4>& range = row == 1 ? e.parabola : row == 3 ? e.chords : row == 4 ? e.kwee : none;
    r.first = range[0];
    r.last = range[1];
    r.first2 = range[2];
    r.last2 = range[3];
    if (row == 5) {
        // Every point, and start values read off the plot: the deepest point, about the depth,
        // a period that puts the range within one cycle.
        r.first = 1;
        r.last = c.n;
        const double halfRange = (c.t(c.n) - c.t(1)) / 2;
        r.fourierStart = {0, e.minimum, 0.7, pi / halfRange, 0.26, 0.064, 0.032, 0.0064, 0.0032};
    }
    return r;
}

} // namespace

class MethodBootstrapTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void noiselessGivesZero_data() { methodRows(); }
    void noiselessGivesZero()
    {
        QFETCH(int, row);
        const CurveData c = exactCurve(row);
        const auto [fitted, b] = fitAndBootstrap(row, c, requestFor(row), 50);
        QVERIFY(fitted.ok);
        QVERIFY2(b.valid(), qPrintable(b.problem));
        if (row == 3) {
            // Every chord of a noiseless symmetric dip has the same midpoint: the method's own
            // variance of the midpoints comes out a rounding error above or below zero, and
            // below zero its square root raises 5. Those replicates are counted, not fatal.
            QCOMPARE(b.successes + b.failures, 50);
            QCOMPARE(b.failuresByError.size(), std::size_t(b.failures > 0 ? 1 : 0));
            QCOMPARE(b.failures, b.failures > 0 ? b.failuresByError.at(5) : 0);
        } else {
            QCOMPARE(b.successes, 50);
        }
        // Rounding only, below a thousandth of a second.
        QVERIFY2(b.error < 1e-8, qPrintable(QString::number(b.error)));
    }

    // The bootstrap error of one curve against the spread of the times over independent noise
    // draws: within 20 %, the bootstrap errors averaged over a few curves.
    void whiteNoiseMatchesTheScatter_data() { methodRows(); }
    void whiteNoiseMatchesTheScatter()
    {
        QFETCH(int, row);
        const double sigma = 0.01;
        const MethodRequest request = requestFor(row);
        std::vector<double> times;
        for (int k = 0; k < 200; ++k) {
            const CurveData c = gaussianCurve(sigma, 1000 + std::uint64_t(k));
            const MethodResult r = MethodOfRow(row).compute(c.view(), request);
            QVERIFY(r.ok);
            times.push_back(r.time);
        }
        const double truth = standardDeviation(times);
        double sum = 0;
        const int curves = 8;
        for (int k = 0; k < curves; ++k) {
            const CurveData c = gaussianCurve(sigma, 1000 + std::uint64_t(k));
            const MethodResult fitted = MethodOfRow(row).compute(c.view(), request);
            MethodBootstrapOptions o;
            o.replicates = 150;
            o.seed = std::uint64_t(k) + 1;
            const BootstrapResult b = BootstrapMethod(row, c.view(), request, fitted, o);
            QVERIFY(b.valid());
            sum += b.error;
        }
        const double ratio = sum / curves / truth;
        qInfo("row %d: bootstrap %.3g, scatter %.3g, ratio %.3f", row, sum / curves, truth, ratio);
        QVERIFY2(ratio > 0.8 && ratio < 1.2, qPrintable(QString::number(ratio)));
    }

    void sameDigitsWhateverTheThreads_data() { methodRows(); }
    void sameDigitsWhateverTheThreads()
    {
        QFETCH(int, row);
        const CurveData c = gaussianCurve(0.01, 77);
        const MethodRequest request = requestFor(row);
        const MethodResult fitted = MethodOfRow(row).compute(c.view(), request);
        MethodBootstrapOptions o;
        o.replicates = 40;
        o.seed = 123;
        o.threads = 1;
        const BootstrapResult one = BootstrapMethod(row, c.view(), request, fitted, o);
        o.threads = 3;
        const BootstrapResult three = BootstrapMethod(row, c.view(), request, fitted, o);
        QVERIFY(one.valid());
        QCOMPARE(one.times.size(), three.times.size());
        for (std::size_t i = 0; i < one.times.size(); ++i)
            QCOMPARE(one.times[i], three.times[i]);
        o.seed = 124;
        QVERIFY(BootstrapMethod(row, c.view(), request, fitted, o).error != one.error);
    }

    // What the baseline showed takes the noise as correlated, the same way the observer's word
    // does (the same digits), but neither over the observer's word nor over a given noise.
    void aCorrelatedBaselineComesAfterTheObserverAndAGivenNoise()
    {
        const CurveData c = gaussianCurve(0.01, 5);
        const MethodRequest request = requestFor(4);
        const MethodResult fitted = MethodOfRow(4).compute(c.view(), request);
        MethodBootstrapOptions o;
        o.replicates = 30;
        o.threads = 1;
        const BootstrapResult plain = BootstrapMethod(4, c.view(), request, fitted, o);
        QVERIFY(!plain.correlatedNoise && !plain.correlatedByBaseline);

        o.baselineCorrelated = true;
        const BootstrapResult byBaseline = BootstrapMethod(4, c.view(), request, fitted, o);
        QVERIFY(byBaseline.correlatedNoise && byBaseline.correlatedByBaseline);

        o.correlatedNoise = true;
        const BootstrapResult told = BootstrapMethod(4, c.view(), request, fitted, o);
        QVERIFY(told.correlatedNoise && !told.correlatedByBaseline);
        QCOMPARE(told.times, byBaseline.times);

        o.correlatedNoise = false;
        NoiseCovariance known;
        known.white = 1e-4;
        o.knownNoise = known;
        const BootstrapResult given = BootstrapMethod(4, c.view(), request, fitted, o);
        QVERIFY(given.noiseGiven);
        QVERIFY(!given.correlatedNoise && !given.correlatedByBaseline);
    }

    // The error to believe: the chords' with the replicates' shift from the time added in
    // quadrature, every other method's the spread alone; none without a valid bootstrap.
    void theChordsAdviseTheErrorWithTheShift_data() { methodRows(); }
    void theChordsAdviseTheErrorWithTheShift()
    {
        QFETCH(int, row);
        const auto [fitted, b] = fitAndBootstrap(row, gaussianCurve(0.01, 5), requestFor(row), 60);
        QVERIFY(b.valid());
        const double shift = b.mean - fitted.time;
        QVERIFY(shift != 0);
        const double advised = AdvisedBootstrapError(row, b, fitted.time);
        if (row == ChordsRow) {
            QCOMPARE(advised, std::sqrt(b.error * b.error + shift * shift));
            QVERIFY(advised > b.error);
        } else {
            QCOMPARE(advised, b.error);
        }
        BootstrapResult none = b;
        none.successes = 1;
        QVERIFY(std::isnan(AdvisedBootstrapError(row, none, fitted.time)));
    }

    // Two TESS eclipses of CM Dra with published minima (Deeg 2021: complete, and with the
    // ingress cut): each method's time lies within three of its bootstrap error to believe and
    // the published one together of the published minimum, and that error is no absurd one (between
    // a quarter of the published error and ten times it; the parabola's own is days there).
    void publishedMinimaLieWithinTheErrors_data()
    {
        QTest::addColumn<int>("eclipse");
        QTest::addColumn<int>("row");
        for (int e = 0; e < 2; ++e)
            for (const auto& [name, row] : {std::pair{"parabola", 1}, std::pair{"chords", 3}, std::pair{"Kwee", 4},
                                            std::pair{"Fourier", 5}, std::pair{"sliding", 6}})
                QTest::addRow("%s %s", e == 0 ? "E7024" : "E7023", name) << e << row;
    }
    void publishedMinimaLieWithinTheErrors()
    {
        QFETCH(int, eclipse);
        QFETCH(int, row);
        static const PublishedEclipse eclipses[2] = {
            {"CMDra_E7024_TESS.csv", 58739.0, 0.9291169, 0.0000125, {13, 19}, {3, 11, 20, 28}, {1, 30}},
            {"CMDra_E7023_TESS_incomplete.csv", 58738.0, 0.6607358, 0.0000191, {5, 10}, {1, 4, 11, 14}, {1, 15}},
        };
        const PublishedEclipse& e = eclipses[eclipse];
        const CurveData c = readEclipse(e);
        const auto [fitted, b] = fitAndBootstrap(row, c, publishedRequest(row, e, c), 500);
        QVERIFY(fitted.ok);
        QVERIFY2(b.valid(), qPrintable(b.problem));
        QCOMPARE(b.failures, 0);
        // The error to believe: the chords' with the replicates' shift.
        const double error = AdvisedBootstrapError(row, b, fitted.time);
        const double off = fitted.time - e.minimum;
        const double pull = off / std::hypot(error, e.error);
        qInfo("time - published %+.3g, bootstrap %.3g, pull %+.2f", off, error, pull);
        QVERIFY2(std::abs(pull) < 3, qPrintable(QString::number(pull)));
        QVERIFY2(error > e.error / 4 && error < 10 * e.error, qPrintable(QString::number(error)));
    }

    void refused()
    {
        const CurveData c = gaussianCurve(0.01, 5);
        MethodRequest fold;
        fold.fold = 0.5;
        const MethodResult tracing = MethodOfRow(2).compute(c.view(), fold);
        const BootstrapResult none = BootstrapMethod(2, c.view(), fold, tracing, MethodBootstrapOptions());
        QVERIFY(!none.valid());
        QCOMPARE(none.problem, QStringLiteral("this method has no fit to repeat"));
        QVERIFY(!HasBootstrap(2));

        MethodResult failed;
        failed.ok = false;
        const BootstrapResult noFit = BootstrapMethod(1, c.view(), requestFor(1), failed, MethodBootstrapOptions());
        QCOMPARE(noFit.problem, QStringLiteral("the method gave no result to resample about"));
        QCOMPARE(noFit.done, 0);
    }

    // A range on one branch: the parabola through it has its vertex beyond the picked points,
    // where no resample can say how far off it is.
    void aTimeBeyondItsPointsHasNoError()
    {
        const CurveData c = gaussianCurve(0.002, 6);
        MethodRequest branch;
        branch.first = at(0.482);
        branch.last = at(0.494);
        const MethodResult fitted = MethodOfRow(1).compute(c.view(), branch);
        QVERIFY(fitted.ok);
        QVERIFY2(fitted.time > 0.494, qPrintable(QString::number(fitted.time)));
        const BootstrapResult b = BootstrapMethod(1, c.view(), branch, fitted, MethodBootstrapOptions());
        QVERIFY(!b.valid());
        QCOMPARE(b.problem, QStringLiteral("the time lies outside the points it was measured on"));
        QCOMPARE(b.done, 0);

        MethodRequest both = branch;
        both.last = at(0.512);
        const MethodResult inside = MethodOfRow(1).compute(c.view(), both);
        MethodBootstrapOptions few;
        few.replicates = 20;
        QVERIFY(BootstrapMethod(1, c.view(), both, inside, few).valid());
    }
};

QTEST_GUILESS_MAIN(MethodBootstrapTest)
#include "tst_methodbootstrap.moc"
