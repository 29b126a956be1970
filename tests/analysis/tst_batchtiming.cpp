// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers

#include "analysis/BatchInput.h"
#include "analysis/BatchMethods.h"
#include "analysis/BatchOutput.h"
#include "analysis/BatchTiming.h"
#include "analysis/InputError.h"
#include "analysis/OrderedPool.h"
#include "runtime/RuntimeError.h"
#include "support/DipCurves.h"
#include "support/TestSupport.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QtTest>

#include <atomic>
#include <chrono>
#include <cmath>
#include <random>
#include <stdexcept>
#include <thread>

using namespace dip;

namespace {

const double pi = 3.14159265358979323846;

// Deterministic scatter in [-1, 1].
double scatter(int i) { return std::sin(i * 12.9898 + 78.233) * 0.5 + std::sin(i * 4.1414) * 0.5; }

// Primaries (depth 0.5) and secondaries (0.2) of the ephemeris, each moved by shift(t), half-width
// 0.05 d, at a 2-minute cadence over `days` days.
LightCurve syntheticCurve(const Ephemeris& e, double days, double noise, double (*shift)(double))
{
    LightCurve c;
    const double first = std::floor(e.t0);
    for (int i = 0;; ++i) {
        const double t = first + i * 2.0 / 1440;
        if (t > first + days)
            break;
        double m = 10 + noise * scatter(i);
        for (const double phase : {0.0, 0.5}) {
            const double cycle = std::round((t - e.t0) / e.period - phase) + phase;
            double centre = e.t0 + cycle * e.period;
            centre += shift(centre);
            const double x = (t - centre) / 0.05;
            if (std::abs(x) < 1)
                m += (phase == 0 ? 0.5 : 0.2) * std::pow(1 - x * x, 1.5);
        }
        c.times.push_back(t);
        c.mags.push_back(m);
    }
    return c;
}

double noShift(double) { return 0; }

// The runner of the tests: the time of the deepest point of the range, its index as the count
// of points; method 3 fails with a runtime error, method 6 is not there.
MethodOutcome deepestPoint(const BatchWindow& w, int method, const BatchBootstrap&)
{
    if (method == 3)
        rt::raise(11);
    MethodOutcome out;
    if (method == 6) {
        out.note = QStringLiteral("absent");
        return out;
    }
    out.status = MethodOutcome::Status::Done;
    out.time = w.t[w.centre];
    out.error = 0.0001 * method;
    out.points = int(w.t.size());
    return out;
}

// A window of a Gaussian dip (width 30 spacings, depth 0.5) about its centre at point 60: 60
// points on each side at a spacing of 0.001 d, the right branch's from 31 on moved 10 spacings
// out when gap is set (a gap between 30 and 40 spacings from the centre, in the steep part the
// batch gives the chords, outside the middle half it skips).
BatchWindow gaussianWindow(bool gap, double noise = 0, unsigned seed = 0)
{
    std::mt19937_64 rng(seed);
    std::normal_distribution<double> g(0, 1);
    BatchWindow w;
    w.cycle = 7;
    w.centre = 60;
    for (int k = -60; k <= 60; ++k) {
        const double x = k > 30 && gap ? k + 10 : k;
        w.t.push_back(0.5 + 0.001 * x);
        w.m.push_back(test::gaussianMag(x, 0, 30, 0.5, 10) + noise * g(rng));
    }
    return w;
}

QString runToCsv(const LightCurve& curve, const BatchSettings& settings, const MethodRunner& runner,
                 FileTiming* timing = nullptr)
{
    QString out = batchCsvHeader();
    const FileTiming t = timeEveryEclipse(curve, QStringLiteral("synthetic.csv"), settings, runner,
                                          [&](const BatchRow& row) { out += batchCsvLine(row); });
    if (timing)
        *timing = t;
    return out;
}

} // namespace

class TestBatchTiming : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void poolDeliversInOrder_data();
    void poolDeliversInOrder();
    void poolKeepsFewResultsWaiting();
    void poolPassesOnAFailure();

    void rowsPerEclipseAndMethod();
    void resultsDoNotDependOnThreads();
    void halfWidthMeasuredWhenNotGiven();
    void noEclipseOnTheFoldedCurve();

    void csvRows_data();
    void csvRows();
    void jsonRowsParse();

    void parabolaRecoversTheTimingVariation();
    void everyMethodOnTheExampleLongLightCurve_data();
    void everyMethodOnTheExampleLongLightCurve();
    void defaultMethodsRecoverTheTimingVariation();

    void chordsAcrossAGapAreCautioned();
    void cautionFollowsTheMessages();
    void theShiftCountsTheBiasOfChordsAcrossAGap();
};

void TestBatchTiming::poolDeliversInOrder_data()
{
    QTest::addColumn<int>("threads");
    QTest::newRow("one") << 1;
    QTest::newRow("two") << 2;
    QTest::newRow("five") << 5;
}

void TestBatchTiming::poolDeliversInOrder()
{
    QFETCH(int, threads);
    std::vector<std::size_t> order;
    std::vector<long long> values;
    runOrdered<long long>(
        200, threads,
        [](std::size_t i) {
            // Uneven work, so that later items often finish first.
            std::this_thread::sleep_for(std::chrono::microseconds((i * 7919) % 300));
            return static_cast<long long>(i * i);
        },
        [&](std::size_t i, long long&& v) {
            order.push_back(i);
            values.push_back(v);
        });
    QCOMPARE(order.size(), std::size_t(200));
    for (std::size_t i = 0; i < order.size(); ++i) {
        QCOMPARE(order[i], i);
        QCOMPARE(values[i], static_cast<long long>(i * i));
    }
}

void TestBatchTiming::poolKeepsFewResultsWaiting()
{
    // Item 0 is slow: the others may run ahead of the last delivered item by at most four items a
    // thread (counted when an item is delivered, so one more has been taken by then).
    const int threads = 3;
    std::atomic<std::size_t> started{0};
    std::size_t mostAhead = 0;
    runOrdered<int>(
        100, threads,
        [&](std::size_t i) {
            ++started;
            if (i == 0)
                std::this_thread::sleep_for(std::chrono::milliseconds(50));
            return 0;
        },
        [&](std::size_t i, int&&) { mostAhead = std::max(mostAhead, started.load() - i); });
    QVERIFY(mostAhead >= 2);
    QVERIFY2(mostAhead <= std::size_t(4 * threads + 1), qPrintable(QString::number(mostAhead)));
}

void TestBatchTiming::poolPassesOnAFailure()
{
    for (const int threads : {1, 4}) {
        bool thrown = false;
        std::size_t delivered = 0;
        try {
            runOrdered<int>(
                50, threads,
                [](std::size_t i) {
                    if (i == 20)
                        throw std::runtime_error("item 20");
                    return 1;
                },
                [&](std::size_t, int&&) { ++delivered; });
        } catch (const std::runtime_error& e) {
            thrown = QString::fromLatin1(e.what()) == QLatin1String("item 20");
        }
        QVERIFY(thrown);
        QVERIFY(delivered <= 20);
    }
}

void TestBatchTiming::rowsPerEclipseAndMethod()
{
    const Ephemeris e{2459000.3, 0.8, true};
    const LightCurve curve = syntheticCurve(e, 4, 0.002, noShift);
    BatchSettings s;
    s.eclipses.ephemeris = e;
    s.eclipses.secondaries = true;
    s.eclipses.halfWidth = 0.07;
    s.methods = {4, 3, 6};
    std::vector<BatchRow> rows;
    const FileTiming t = timeEveryEclipse(curve, QStringLiteral("a.csv"), s, deepestPoint,
                                          [&](const BatchRow& row) { rows.push_back(row); });
    // From 2459000.0 to 2459004.0: cycles -0.5 (2458999.9) is out, 0 ... 4.5 (2459003.9) in.
    QCOMPARE(t.eclipses, std::size_t(10));
    QCOMPARE(t.skipped, std::size_t(0));
    QCOMPARE(t.halfWidth, 0.07);
    QCOMPARE(rows.size(), std::size_t(30));
    for (std::size_t i = 0; i < rows.size(); ++i) {
        const BatchRow& r = rows[i];
        QCOMPARE(r.file, QStringLiteral("a.csv"));
        QCOMPARE(r.cycle, 0.5 * double(i / 3));
        QCOMPARE(r.method, s.methods[i % 3]);
        QCOMPARE(r.secondary(), (i / 3) % 2 == 1);
        if (r.method == 4) {
            QCOMPARE(r.status, QStringLiteral("ok"));
            QVERIFY(r.timed);
            // The deepest sample of an unshifted eclipse lies within a cadence of its prediction.
            const double predicted = e.t0 + r.cycle * e.period;
            QVERIFY(std::abs(r.time - predicted) < 2.0 / 1440);
            QCOMPARE(r.oc.cycle, r.cycle);
            QVERIFY(std::abs(r.oc.days - (r.time - predicted)) < 1e-9);
            QCOMPARE(r.error, 0.0004);
            QVERIFY(r.points > 50);
        } else if (r.method == 3) {
            QCOMPARE(r.status, QStringLiteral("failed: Division by zero (run-time error 11)"));
            QVERIFY(!r.timed);
        } else {
            QCOMPARE(r.status, QStringLiteral("failed: absent"));
            QVERIFY(!r.timed);
        }
    }
}

void TestBatchTiming::resultsDoNotDependOnThreads()
{
    const Ephemeris e{2459000.3, 0.8, true};
    const LightCurve curve = syntheticCurve(e, 12, 0.004, [](double t) { return 0.001 * std::sin(t); });
    BatchSettings s;
    s.eclipses.ephemeris = e;
    s.eclipses.secondaries = true;
    s.methods = {1, 4};
    s.threads = 1;
    const QString one = runToCsv(curve, s, runBatchMethod);
    for (const int threads : {2, 3, 8}) {
        s.threads = threads;
        QCOMPARE(runToCsv(curve, s, runBatchMethod), one);
    }
    QCOMPARE(one.count(QLatin1Char('\n')), 1 + 2 * 30);
}

void TestBatchTiming::halfWidthMeasuredWhenNotGiven()
{
    const Ephemeris e{2459000.3, 0.8, false};
    const LightCurve curve = syntheticCurve(e, 10, 0.003, noShift);
    BatchSettings s;
    s.eclipses.ephemeris = e;
    s.methods = {4};
    FileTiming t;
    runToCsv(curve, s, deepestPoint, &t);
    // 1.3 times the tenth of the depth of a 0.05 d eclipse, within a bin of the folded curve.
    const double expected = 1.3 * 0.05 * std::sqrt(1 - std::pow(0.1, 2.0 / 3));
    QVERIFY2(std::abs(t.halfWidth - expected) < 0.8 / 700, qPrintable(QString::number(t.halfWidth)));
    QCOMPARE(t.eclipses, std::size_t(13));
}

void TestBatchTiming::noEclipseOnTheFoldedCurve()
{
    // The ephemeris puts phase 0 between the eclipses.
    const Ephemeris e{2459000.3, 0.8, false};
    const LightCurve curve = syntheticCurve(e, 10, 0.003, noShift);
    BatchSettings s;
    s.eclipses.ephemeris = {e.t0 + 0.25 * e.period, e.period, false};
    try {
        runToCsv(curve, s, deepestPoint);
        QFAIL("no error");
    } catch (const InputError& error) {
        QCOMPARE(error.message(),
                 QStringLiteral("synthetic.csv: no eclipse stands out near phase 0 of the folded light curve"));
    }
}

void TestBatchTiming::csvRows_data()
{
    QTest::addColumn<int>("which");
    QTest::addColumn<QString>("line");
    QTest::newRow("timed secondary") << 0
                                     << "curve.csv,12.5,s,4,2459010.51234000,0.00012000,,0.00781250,11.25000,97,ok\n";
    QTest::newRow("bootstrap")
        << 1 << "curve.csv,12.5,s,4,2459010.51234000,0.00012000,0.00020000,0.00781250,11.25000,97,ok\n";
    QTest::newRow("skipped, comma in the name")
        << 2 << "\"a,b.csv\",-3,p,5,,,,,,,\"skipped: short of points: 2 on the left branch, 5 needed\"\n";
    QTest::newRow("quote in the name") << 3 << "\"say \"\"hi\"\".csv\",-3,p,5,,,,,,,failed: x\n";
}

void TestBatchTiming::csvRows()
{
    QFETCH(int, which);
    QFETCH(QString, line);
    BatchRow r;
    r.file = QStringLiteral("curve.csv");
    r.cycle = 12.5;
    r.method = 4;
    r.status = QStringLiteral("ok");
    r.timed = true;
    r.time = 2459010.51234;
    r.error = 0.00012;
    r.oc = OcValue{12.5, 2459010.5045275, 0.0078125};
    r.points = 97;
    if (which == 1)
        r.bootstrapError = 0.0002;
    if (which >= 2) {
        r = BatchRow();
        r.file = which == 2 ? QStringLiteral("a,b.csv") : QStringLiteral("say \"hi\".csv");
        r.cycle = -3;
        r.method = 5;
        r.status = which == 2 ? QStringLiteral("skipped: short of points: 2 on the left branch, 5 needed")
                              : QStringLiteral("failed: x");
    }
    QCOMPARE(batchCsvLine(r), line);
    QCOMPARE(batchCsvHeader(),
             QStringLiteral("file,E,type,method,time,error,bootstrap_error,o_c,o_c_min,points,status\n"));
}

void TestBatchTiming::jsonRowsParse()
{
    BatchRow r;
    r.file = QStringLiteral("%1 \"x\".csv");
    r.cycle = 7024;
    r.method = 5;
    r.status = QStringLiteral("ok");
    r.timed = true;
    r.time = 2458739.9291169;
    r.error = 0.0000125;
    r.oc = OcValue{7024, 0, -0.00000855};
    r.points = 30;
    const QString line = batchJsonLine(r);
    QVERIFY(line.endsWith(QLatin1Char('\n')));
    QCOMPARE(line.count(QLatin1Char('\n')), 1);
    QJsonParseError error;
    const QJsonObject o = QJsonDocument::fromJson(line.toUtf8(), &error).object();
    QCOMPARE(error.error, QJsonParseError::NoError);
    QCOMPARE(o.value(QStringLiteral("file")).toString(), r.file);
    QCOMPARE(o.value(QStringLiteral("cycle")).toDouble(), 7024.0);
    QCOMPARE(o.value(QStringLiteral("type")).toString(), QStringLiteral("p"));
    QCOMPARE(o.value(QStringLiteral("method")).toInt(), 5);
    QCOMPARE(o.value(QStringLiteral("time")).toDouble(), 2458739.9291169);
    QCOMPARE(o.value(QStringLiteral("o_c")).toDouble(), -0.00000855);
    QCOMPARE(o.value(QStringLiteral("o_c_min")).toDouble(), -0.00000855 * 1440);
    QVERIFY(o.value(QStringLiteral("bootstrap_error")).isNull());
    QCOMPARE(o.value(QStringLiteral("points")).toInt(), 30);
    QCOMPARE(o.value(QStringLiteral("status")).toString(), QStringLiteral("ok"));
    QCOMPARE(o.keys().size(), 11);

    BatchRow skipped;
    skipped.file = QStringLiteral("b.csv");
    skipped.cycle = 3.5;
    skipped.method = 4;
    skipped.status = QStringLiteral("skipped: why");
    const QJsonObject s = QJsonDocument::fromJson(batchJsonLine(skipped).toUtf8()).object();
    QCOMPARE(s.value(QStringLiteral("type")).toString(), QStringLiteral("s"));
    for (const char* key : {"time", "error", "o_c", "o_c_min", "points"})
        QVERIFY2(s.value(QLatin1String(key)).isNull(), key);
}

void TestBatchTiming::parabolaRecoversTheTimingVariation()
{
    // A sinusoidal timing variation of 2 minutes over 9 days, noise 0.003 mag: the parabola's O - C
    // of the primaries and of the secondaries each follows it, to within a sixth of its amplitude
    // (the parabola's own scatter: its range is symmetric in points about the deepest sample,
    // which lies up to half a cadence off the centre).
    const Ephemeris e{2459000.3, 0.8, true};
    static double (*const variation)(double) = [](double t) { return 0.0014 * std::sin(2 * pi * (t - 2459000.3) / 9); };
    BatchSettings s;
    s.eclipses.ephemeris = e;
    s.eclipses.secondaries = true;
    s.methods = {1};
    s.threads = 2;
    double sum2[2] = {}, sxy = 0, sxx = 0, syy = 0;
    int n[2] = {};
    timeEveryEclipse(syntheticCurve(e, 27, 0.003, variation), QStringLiteral("etv"), s, runBatchMethod,
                     [&](const BatchRow& row) {
                         QVERIFY(row.timed);
                         const double expected = variation(e.t0 + row.cycle * e.period);
                         const int kind = row.secondary() ? 1 : 0;
                         sum2[kind] += (row.oc.days - expected) * (row.oc.days - expected);
                         ++n[kind];
                         sxy += row.oc.days * expected;
                         sxx += expected * expected;
                         syy += row.oc.days * row.oc.days;
                     });
    QCOMPARE(n[0], 34);
    QCOMPARE(n[1], 33);
    for (int kind = 0; kind < 2; ++kind) {
        const double rms = std::sqrt(sum2[kind] / n[kind]);
        QVERIFY2(rms < 0.0014 / 6, qPrintable(QStringLiteral("kind %1: %2").arg(kind).arg(rms)));
    }
    QVERIFY(sxy / std::sqrt(sxx * syy) > 0.97);
}

// O - C = a sin(phase) + b cos(phase) + c by least squares, and the RMS of the residuals.
struct SineFit {
    double a = 0, b = 0, c = 0, rms = 0;
    int count = 0;
};

SineFit fitSine(const std::vector<std::pair<double, double>>& points)
{
    double m[3][4] = {};
    for (const auto& [phase, oc] : points) {
        const double f[3] = {std::sin(phase), std::cos(phase), 1};
        for (int r = 0; r < 3; ++r) {
            for (int c = 0; c < 3; ++c)
                m[r][c] += f[r] * f[c];
            m[r][3] += f[r] * oc;
        }
    }
    for (int col = 0; col < 3; ++col) {
        for (int r = 0; r < 3; ++r) {
            if (r == col)
                continue;
            const double k = m[r][col] / m[col][col];
            for (int c = 0; c < 4; ++c)
                m[r][c] -= k * m[col][c];
        }
    }
    SineFit fit;
    fit.a = m[0][3] / m[0][0];
    fit.b = m[1][3] / m[1][1];
    fit.c = m[2][3] / m[2][2];
    double sum2 = 0;
    for (const auto& [phase, oc] : points)
        sum2 += std::pow(oc - (fit.a * std::sin(phase) + fit.b * std::cos(phase) + fit.c), 2);
    fit.count = int(points.size());
    fit.rms = std::sqrt(sum2 / double(points.size()));
    return fit;
}

void TestBatchTiming::everyMethodOnTheExampleLongLightCurve_data()
{
    QTest::addColumn<int>("method");
    QTest::addColumn<double>("rmsLimit");
    // The parabola's range runs over the whole window, far beyond the parabolic bottom of the
    // dip, so its scatter is twice the others'.
    QTest::newRow("parabola") << 1 << 0.0003;
    QTest::newRow("bisectors of chords") << 3 << 0.00015;
    QTest::newRow("Kwee and van Woerden") << 4 << 0.00015;
    QTest::newRow("Fourier fit") << 5 << 0.00015;
    QTest::newRow("sliding integrations") << 6 << 0.00015;
}

void TestBatchTiming::everyMethodOnTheExampleLongLightCurve()
{
    // examples/long-light-curve.csv, whose truths examples/README.md states: T0, P, and a timing
    // variation of 0.0020 d amplitude and 11.3 d period moving both minima; noise 0.004 mag.
    QFETCH(int, method);
    QFETCH(double, rmsLimit);
    const QString path = qEnvironmentVariable("DIPSCOPE_SOURCE_DIR") + QStringLiteral("/examples/long-light-curve.csv");
    LightCurve curve;
    try {
        curve = readBatchCurve(path).curve;
    } catch (const InputError& error) {
        QFAIL(qPrintable(error.message()));
    }
    QCOMPARE(curve.times.size(), std::size_t(19406));
    const Ephemeris e{2459500.31250, 0.547231, true};
    BatchSettings s;
    s.eclipses.ephemeris = e;
    s.eclipses.secondaries = true;
    s.methods = {method};
    s.threads = 2;
    std::vector<std::pair<double, double>> points;
    QStringList statuses;
    const FileTiming t = timeEveryEclipse(curve, path, s, runBatchMethod, [&](const BatchRow& row) {
        if (!row.timed) {
            statuses << row.status;
            return;
        }
        QVERIFY(row.error > 0);
        QVERIFY(row.points > 20);
        points.emplace_back(2 * pi * row.cycle * e.period / 11.3, row.oc.days);
    });
    // 103 eclipses from the first secondary to the last primary; the 1.05-day pause hides four.
    QCOMPARE(t.eclipses, std::size_t(103));
    QCOMPARE(t.skipped, std::size_t(4));
    QVERIFY2(points.size() == 99, qPrintable(statuses.join(QLatin1Char('|'))));
    // The injected variation is 0.0020 sin(phase): amplitude within 5 %, no cosine, no offset,
    // and the residuals a tenth of the amplitude or less.
    const SineFit f = fitSine(points);
    QVERIFY2(std::abs(f.a - 0.0020) < 0.0001, qPrintable(QString::number(f.a)));
    QVERIFY2(std::abs(f.b) < 0.0001, qPrintable(QString::number(f.b)));
    QVERIFY2(std::abs(f.c) < 0.00005, qPrintable(QString::number(f.c)));
    QVERIFY2(f.rms < rmsLimit, qPrintable(QString::number(f.rms)));
}

void TestBatchTiming::defaultMethodsRecoverTheTimingVariation()
{
    // A synthetic light curve of 20,000 points (a 2-minute cadence over 27.8 days) with 69
    // eclipses, a sinusoidal timing variation of 2 minutes over 9 days and 0.003 mag of noise:
    // the O - C of Kwee and van Woerden and of the Fourier fit each follow it within the noise,
    // whose effect on a time is measured here by the two methods' difference.
    const Ephemeris e{2459000.3, 0.8, true};
    static double (*const variation)(double) = [](double t) { return 0.0014 * std::sin(2 * pi * (t - 2459000.3) / 9); };
    const LightCurve curve = syntheticCurve(e, 19999 * 2.0 / 1440, 0.003, variation);
    QCOMPARE(curve.times.size(), std::size_t(20000));
    BatchSettings s;
    s.eclipses.ephemeris = e;
    s.eclipses.secondaries = true;
    s.threads = 2;
    QCOMPARE(s.methods, (std::vector<int>{4, 5}));
    std::vector<std::pair<double, double>> points[2];
    std::vector<double> difference;
    double kwee = 0;
    timeEveryEclipse(curve, QStringLiteral("etv"), s, runBatchMethod, [&](const BatchRow& row) {
        QVERIFY2(row.timed, qPrintable(row.status));
        const double phase = 2 * pi * row.cycle * e.period / 9;
        points[row.method == 4 ? 0 : 1].emplace_back(phase, row.oc.days);
        if (row.method == 4)
            kwee = row.oc.days;
        else
            difference.push_back(row.oc.days - kwee);
    });
    QCOMPARE(points[0].size(), std::size_t(69));
    QCOMPARE(points[1].size(), std::size_t(69));
    double spread = 0;
    for (const double d : difference)
        spread += d * d;
    spread = std::sqrt(spread / double(difference.size()));
    for (int k = 0; k < 2; ++k) {
        const SineFit f = fitSine(points[k]);
        const QString what = QStringLiteral("method %1: a %2 b %3 c %4 rms %5 (spread %6)")
                                 .arg(k + 4)
                                 .arg(f.a)
                                 .arg(f.b)
                                 .arg(f.c)
                                 .arg(f.rms)
                                 .arg(spread);
        QVERIFY2(std::abs(f.a - 0.0014) < 0.00007, qPrintable(what));
        QVERIFY2(std::abs(f.b) < 0.00007, qPrintable(what));
        QVERIFY2(std::abs(f.c) < 0.00005, qPrintable(what));
        // What is left is noise: no more than the two methods differ by, with room for the
        // part of the noise they share.
        QVERIFY2(f.rms < 2 * spread + 0.00002, qPrintable(what));
    }
}

void TestBatchTiming::chordsAcrossAGapAreCautioned()
{
    const MethodOutcome plain = runBatchMethod(gaussianWindow(false), 3);
    QCOMPARE(plain.status, MethodOutcome::Status::Done);
    QVERIFY(std::abs(plain.time - 0.5) < 1e-6);
    QCOMPARE(plain.caution, QString());

    // The left stretch's chords from 31 spacings out are read across the gap on the right
    // branch: their crossings, and the time (by 0.05 spacings, 5e-5 d), are off.
    const MethodOutcome gap = runBatchMethod(gaussianWindow(true), 3);
    QCOMPARE(gap.status, MethodOutcome::Status::Done);
    QVERIFY(std::abs(gap.time - 0.5) > 3e-5);
    const QRegularExpressionMatch match =
        QRegularExpression(QStringLiteral("^(\\d+) of (\\d+) chords across a gap$")).match(gap.caution);
    QVERIFY2(match.hasMatch(), qPrintable(gap.caution));
    QVERIFY(match.captured(1).toInt() > 0);
    QVERIFY(match.captured(1).toInt() < match.captured(2).toInt());

    // The other methods carry no caution.
    QCOMPARE(runBatchMethod(gaussianWindow(true), 4).caution, QString());

    // With a bootstrap, the chords' caution gives the error to believe even with no chord
    // across a gap, and no other method's does.
    const BatchBootstrap bootstrap{60, false};
    const MethodOutcome noisy = runBatchMethod(gaussianWindow(false, 0.002, 1), 3, bootstrap);
    QVERIFY(noisy.bootstrapError);
    const QRegularExpressionMatch advised =
        QRegularExpression(QStringLiteral("^error with the shift (\\S+)$")).match(noisy.caution);
    QVERIFY2(advised.hasMatch(), qPrintable(noisy.caution));
    QVERIFY(advised.captured(1).toDouble() >= 0.995 * *noisy.bootstrapError); // three digits
    QCOMPARE(runBatchMethod(gaussianWindow(false, 0.002, 1), 4, bootstrap).caution, QString());
}

// The bias of chords across a gap (the noiseless window's time is 5e-5 d late) is as large as
// the scatter of the time over the noise (0.002 mag) and the same in every draw: over 30 draws
// the bootstrap's spread alone leaves the pulls (time - truth) / error twice too wide, the error
// with the replicates' shift nearly right.
void TestBatchTiming::theShiftCountsTheBiasOfChordsAcrossAGap()
{
    double plain = 0, shifted = 0;
    const int draws = 30;
    const QRegularExpression caution(QStringLiteral("^\\d+ of \\d+ chords across a gap; error with the shift (\\S+)$"));
    for (int k = 1; k <= draws; ++k) {
        const MethodOutcome o = runBatchMethod(gaussianWindow(true, 0.002, unsigned(k)), 3, BatchBootstrap{200, false});
        QVERIFY(o.bootstrapError);
        const QRegularExpressionMatch match = caution.match(o.caution);
        QVERIFY2(match.hasMatch(), qPrintable(o.caution));
        const double withShift = match.captured(1).toDouble();
        QVERIFY(withShift >= 0.995 * *o.bootstrapError); // three digits
        const double offTheTruth = o.time - 0.5;
        plain += std::pow(offTheTruth / *o.bootstrapError, 2) / draws;
        shifted += std::pow(offTheTruth / withShift, 2) / draws;
    }
    plain = std::sqrt(plain);
    shifted = std::sqrt(shifted);
    const QString found = QStringLiteral("pulls: spread alone %1, with the shift %2").arg(plain).arg(shifted);
    QVERIFY2(plain > 1.8, qPrintable(found));
    QVERIFY2(shifted < 1.4, qPrintable(found));
}

void TestBatchTiming::cautionFollowsTheMessages()
{
    const Ephemeris e{2459000.3, 0.8, true};
    const LightCurve curve = syntheticCurve(e, 1, 0.002, noShift);
    BatchSettings s;
    s.eclipses.ephemeris = e;
    s.eclipses.halfWidth = 0.07;
    s.methods = {3};
    const MethodRunner cautioned = [](const BatchWindow& w, int, const BatchBootstrap&) {
        MethodOutcome out = deepestPoint(w, 4, {});
        out.messages = {QStringLiteral("Singular matrix 2")};
        out.caution = QStringLiteral("2 of 9 chords across a gap");
        out.bootstrapNote = QStringLiteral("1 of 10 resamples gave a time");
        return out;
    };
    std::vector<BatchRow> rows;
    timeEveryEclipse(curve, QStringLiteral("a.csv"), s, cautioned, [&](const BatchRow& row) { rows.push_back(row); });
    QCOMPARE(rows.size(), std::size_t(1));
    QCOMPARE(rows[0].status, QStringLiteral("ok; Singular matrix 2; 2 of 9 chords across a gap"));

    s.bootstrap.replicates = 10;
    rows.clear();
    timeEveryEclipse(curve, QStringLiteral("a.csv"), s, cautioned, [&](const BatchRow& row) { rows.push_back(row); });
    QCOMPARE(rows.size(), std::size_t(1));
    QCOMPARE(rows[0].status,
             QStringLiteral("ok; Singular matrix 2; 2 of 9 chords across a gap; no bootstrap error: 1 of 10 resamples "
                            "gave a time"));
}

QTEST_APPLESS_MAIN(TestBatchTiming)
#include "tst_batchtiming.moc"
