// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers

#include "analysis/EclipseWindow.h"
#include "support/TestSupport.h"

#include <QRegularExpression>
#include <QtTest>

#include <cmath>

using namespace dip;

namespace {

const double pi = 3.14159265358979323846;

// Deterministic scatter in [-1, 1].
double scatter(int i) { return std::sin(i * 12.9898 + 78.233) * 0.5 + std::sin(i * 4.1414) * 0.5; }

// base + depth (1 - x^2)^1.5 inside |x| < 1, x = (t - centre) / halfWidth.
double dip(double t, double centre, double depth, double halfWidth)
{
    const double x = (t - centre) / halfWidth;
    return std::abs(x) < 1 ? depth * std::pow(1 - x * x, 1.5) : 0;
}

// A light curve from first to last at a regular cadence, primaries of the ephemeris with the
// given depth and half-width (secondaries half as deep), noise of the given size; times in
// [gapFrom, gapTo] left out.
LightCurve curveOf(const Ephemeris& e, double first, double last, double cadence, double depth, double halfWidth,
                   double noise, double gapFrom = 0, double gapTo = 0)
{
    LightCurve c;
    for (int i = 0;; ++i) {
        const double t = first + i * cadence;
        if (t > last)
            break;
        if (t >= gapFrom && t <= gapTo)
            continue;
        const double x = (t - e.t0) / e.period;
        const double primary = e.t0 + std::round(x) * e.period;
        const double secondary = e.t0 + (std::floor(x) + 0.5) * e.period;
        c.times.push_back(t);
        c.mags.push_back(10 + dip(t, primary, depth, halfWidth) + dip(t, secondary, depth / 2, halfWidth) +
                         noise * scatter(i));
    }
    return c;
}

EclipseSettings settingsOf(const Ephemeris& e, double halfWidth)
{
    EclipseSettings s;
    s.ephemeris = e;
    s.halfWidth = halfWidth;
    return s;
}

} // namespace

class TestEclipseWindow : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void schedule_data();
    void schedule();
    void cadence_data();
    void cadence();
    void halfWidthOfTheFoldedEclipse();
    void halfWidthNeedsAnEclipse();
    void rangeIsSymmetricAboutTheDeepestPoint();
    void skipReasons_data();
    void skipReasons();
    void widerWindowKeepsTheCentralPoints();
    void centralPart();
    void fourierStartFromTheModelItself();
};

void TestEclipseWindow::schedule_data()
{
    QTest::addColumn<bool>("secondaries");
    QTest::addColumn<double>("first");
    QTest::addColumn<double>("last");
    QTest::addColumn<QVector<double>>("cycles");
    // T0 = 10, P = 2.
    QTest::newRow("primaries, ends included") << false << 13.1 << 20.0 << QVector<double>{2, 3, 4, 5};
    QTest::newRow("with secondaries") << true << 13.1 << 20.0 << QVector<double>{2, 2.5, 3, 3.5, 4, 4.5, 5};
    QTest::newRow("before T0") << true << 6.5 << 9.5 << QVector<double>{-1.5, -1, -0.5};
    QTest::newRow("none inside") << false << 10.5 << 11.5 << QVector<double>{};
}

void TestEclipseWindow::schedule()
{
    QFETCH(bool, secondaries);
    QFETCH(double, first);
    QFETCH(double, last);
    QFETCH(QVector<double>, cycles);
    const Ephemeris e{10, 2, secondaries};
    const EclipseSchedule s(e, secondaries, first, last);
    QCOMPARE(s.size(), std::size_t(cycles.size()));
    for (int i = 0; i < cycles.size(); ++i) {
        QCOMPARE(s.cycle(std::size_t(i)), cycles[i]);
        QCOMPARE(s.predicted(std::size_t(i)), 10 + 2 * cycles[i]);
    }
}

void TestEclipseWindow::cadence_data()
{
    QTest::addColumn<QVector<double>>("times");
    QTest::addColumn<double>("cadence");
    QTest::newRow("odd count of steps") << QVector<double>{0, 1, 2, 4, 5} << 1.0; // 1 1 2 1
    QTest::newRow("even count") << QVector<double>{0, 1, 3} << 1.5;               // 1 2
    QTest::newRow("equal times do not count") << QVector<double>{0, 0, 0, 2, 2, 5} << 2.5;
    QTest::newRow("one point") << QVector<double>{7} << 0.0;
}

void TestEclipseWindow::cadence()
{
    QFETCH(QVector<double>, times);
    QFETCH(double, cadence);
    QCOMPARE(medianCadence(std::vector<double>(times.begin(), times.end())), cadence);
    QCOMPARE(gapLimit(cadence), 5 * cadence);
}

void TestEclipseWindow::halfWidthOfTheFoldedEclipse()
{
    // The eclipse's tenth of depth lies at x = sqrt(1 - 0.1^(2/3)) of its half-width; the window
    // is 1.3 times that, within a bin of the folded curve.
    const Ephemeris e{2459000.3, 0.9, false};
    const double halfWidth = 0.05;
    const LightCurve c = curveOf(e, 2459000, 2459027, 2.0 / 1440, 0.5, halfWidth, 0.003);
    const WidthMeasure w = measureHalfWidth(c, e);
    QVERIFY2(w.problem.isEmpty(), qPrintable(w.problem));
    const double expected = 1.3 * halfWidth * std::sqrt(1 - std::pow(0.1, 2.0 / 3));
    const double bin = e.period / std::min<double>(2000, double(c.times.size()) / 10);
    QVERIFY2(std::abs(w.halfWidth - expected) <= 1.3 * bin + 1e-12,
             qPrintable(QStringLiteral("%1 against %2").arg(w.halfWidth).arg(expected)));
}

void TestEclipseWindow::halfWidthNeedsAnEclipse()
{
    const Ephemeris e{2459000.3, 0.9, false};
    QVERIFY(!measureHalfWidth(curveOf(e, 2459000, 2459010, 2.0 / 1440, 0, 0.05, 0.003), e).problem.isEmpty());
    // Too few points to fold.
    QVERIFY(!measureHalfWidth(curveOf(e, 2459000, 2459000.1, 2.0 / 1440, 0.5, 0.05, 0.003), e).problem.isEmpty());
    // No period to fold on.
    const LightCurve c = curveOf(e, 2459000, 2459010, 2.0 / 1440, 0.5, 0.05, 0.003);
    QVERIFY(measureHalfWidth(c, e).problem.isEmpty());
    QVERIFY(!measureHalfWidth(c, {e.t0, 0, false}).problem.isEmpty());
}

void TestEclipseWindow::rangeIsSymmetricAboutTheDeepestPoint()
{
    // A noiseless dip centred between two samples: the deepest sample is the later one (the
    // first of equals wins, and the sample before is a hair further away).
    const Ephemeris e{100.2, 1, false};
    const double cadence = 0.002;
    const LightCurve c = curveOf(e, 99.9, 100.5, cadence, 0.4, 0.05, 0);
    const WindowCut cut = cutWindow(c, settingsOf(e, 0.07), gapLimit(cadence), 0);
    QVERIFY2(cut.skipped.isEmpty(), qPrintable(cut.skipped));
    const BatchWindow& w = cut.window;
    QCOMPARE(w.offset, 100.0);
    QCOMPARE(w.predicted, 100.2);
    QCOMPARE(w.t.size(), 2 * w.centre + 1);
    QVERIFY(std::abs(w.t[w.centre] - 0.2) <= cadence / 2 + 1e-12);
    // Both branches reach to the window's edge on the shorter side: 0.07 d of points.
    QVERIFY(std::abs(double(w.centre) - 0.07 / cadence) <= 1);
    for (std::size_t i = 0; i < w.t.size(); ++i)
        QCOMPARE(w.m[i], c.mags[std::size_t(std::lround((w.t[i] + 100 - 99.9) / cadence))]);
    QVERIFY(!w.secondary());
}

void TestEclipseWindow::skipReasons_data()
{
    // The reason as a pattern: near an end of the window the smoothing narrows, so the deepest
    // point of a dip cut there may fall a sample or two off its centre.
    QTest::addColumn<int>("which");
    QTest::addColumn<QString>("reason");
    const auto exactly = [](const char* text) {
        return QStringLiteral("^%1$").arg(QRegularExpression::escape(QString::fromLatin1(text)));
    };
    QTest::newRow("no points") << 0 << exactly("no points within 0.07000 d of the predicted minimum");
    QTest::newRow("gap over the prediction") << 1 << exactly("a gap of 0.02200 d covers the predicted minimum");
    QTest::newRow("gap beside the minimum")
        << 2 << exactly("a gap of 0.03000 d covers the minimum (in the middle half of the range)");
    QTest::newRow("short left branch") << 3 << QStringLiteral("^short of points: [0-4] on the left branch, 5 needed$");
    QTest::newRow("both branches short")
        << 4 << exactly("short of points: 2 on the left branch, 2 on the right branch, 5 needed");
    QTest::newRow("no dip") << 5 << exactly("no dip: the deepest point is no fainter than the ends of the window");
}

void TestEclipseWindow::skipReasons()
{
    QFETCH(int, which);
    QFETCH(QString, reason);
    const Ephemeris e{100.2, 1, false};
    const double cadence = 0.002;
    LightCurve c;
    EclipseSettings s = settingsOf(e, 0.07);
    switch (which) {
    case 0: c = curveOf(e, 99.9, 100.5, cadence, 0.4, 0.05, 0, 100.1, 100.3); break;
    case 1: c = curveOf(e, 99.9, 100.5, cadence, 0.4, 0.05, 0, 100.19, 100.21); break;
    case 2: c = curveOf(e, 99.9, 100.5, cadence, 0.4, 0.05, 0, 100.201, 100.229); break;
    case 3: c = curveOf(e, 100.194, 100.5, cadence, 0.4, 0.05, 0); break;
    case 4:
        c = curveOf(e, 100.196, 100.204, cadence, 0.4, 0.05, 0);
        c.times.insert(c.times.begin(), 99.9); // earlier points keep the cadence a cadence
        c.mags.insert(c.mags.begin(), 10);
        break;
    case 5: c = curveOf(e, 99.9, 100.5, cadence, 0, 0.05, 0); break;
    }
    const double gap = gapLimit(which == 4 ? cadence : medianCadence(c.times));
    const WindowCut cut = cutWindow(c, s, gap, 0);
    QVERIFY2(QRegularExpression(reason).match(cut.skipped).hasMatch(), qPrintable(cut.skipped));
}

void TestEclipseWindow::widerWindowKeepsTheCentralPoints()
{
    // 3000 points within the window: the range keeps the deepest and 499 on each side.
    const Ephemeris e{100.2, 1, false};
    const double cadence = 0.0001;
    const LightCurve c = curveOf(e, 100.04, 100.36, cadence, 0.4, 0.05, 0);
    const WindowCut cut = cutWindow(c, settingsOf(e, 0.15), gapLimit(cadence), 0);
    QVERIFY2(cut.skipped.isEmpty(), qPrintable(cut.skipped));
    QCOMPARE(cut.window.t.size(), std::size_t(999));
    QCOMPARE(cut.window.centre, std::size_t(499));
    QVERIFY(std::abs(cut.window.t[499] - 0.2) <= cadence);
}

void TestEclipseWindow::centralPart()
{
    BatchWindow w;
    for (int i = 0; i < 21; ++i) {
        w.t.push_back(i);
        w.m.push_back(100 + i);
    }
    w.centre = 10;
    const BatchWindow c = w.central(7);
    QCOMPARE(c.t.size(), std::size_t(7));
    QCOMPARE(c.centre, std::size_t(3));
    QCOMPARE(c.t.front(), 7.0);
    QCOMPARE(c.m.back(), 113.0);
    QCOMPARE(w.central(8).t.size(), std::size_t(7)); // an even count keeps the sides equal
    QCOMPARE(w.central(21).t.size(), std::size_t(21));
    QCOMPARE(w.central(100).t.size(), std::size_t(21));
}

void TestEclipseWindow::fourierStartFromTheModelItself()
{
    // Points of the Fourier model with halving amplitudes over W (t - Xo) in [-pi, pi]: the ends
    // are the baseline, the depth 2.625 A1, and the half-depth crossings where the series
    // reaches half its depth, so the start values are the model's own, up to the light
    // smoothing and the interpolation between samples.
    const double xo = 0.52, c = 11.3, w = 30, a1 = 0.12;
    auto model = [&](double t) {
        double m = c, a = a1;
        for (int k = 1; k <= 5; ++k, a /= 2)
            m += a * (std::cos(k * w * (t - xo)) - 1);
        return m;
    };
    std::vector<double> t, m;
    const int half = 200;
    for (int i = -half; i <= half; ++i) {
        t.push_back(xo + pi / w * i / half);
        m.push_back(model(t.back()));
    }
    const std::array<double, 8> s = fourierStartValues(t, m, std::size_t(half));
    QCOMPARE(s[0], xo);
    QCOMPARE(s[1], c);
    DIP_COMPARE_REL(s[2], w, 1e-4);
    DIP_COMPARE_REL(s[3], a1, 1e-12);
    DIP_COMPARE_REL(s[4], a1 / 2, 1e-12);
    DIP_COMPARE_REL(s[7], a1 / 16, 1e-12);
}

QTEST_APPLESS_MAIN(TestEclipseWindow)
#include "tst_eclipsewindow.moc"
