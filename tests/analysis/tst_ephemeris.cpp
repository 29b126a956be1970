// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers

#include "analysis/Ephemeris.h"
#include "analysis/OcFit.h"
#include "support/TestSupport.h"

#include <QtTest>

#include <cmath>

using namespace dip;

namespace {

// The straight line through weighted points a second way: the uncentred 2 x 2 normal equations
// in long double, solved by Cramer's rule, their inverse for the errors.
struct ReferenceLine {
    long double a, b, sa, sb, chi2;
};

ReferenceLine referenceLine(const std::vector<OcFitPoint>& pts, bool weighted)
{
    long double s = 0, sx = 0, sxx = 0, sy = 0, sxy = 0;
    for (const OcFitPoint& p : pts) {
        const long double w = weighted ? 1.0L / ((long double)p.error * p.error) : 1.0L;
        s += w;
        sx += w * p.cycle;
        sxx += w * p.cycle * p.cycle;
        sy += w * p.oc;
        sxy += w * p.cycle * p.oc;
    }
    const long double det = s * sxx - sx * sx;
    ReferenceLine r;
    r.a = (sxx * sy - sx * sxy) / det;
    r.b = (s * sxy - sx * sy) / det;
    r.chi2 = 0;
    for (const OcFitPoint& p : pts) {
        const long double w = weighted ? 1.0L / ((long double)p.error * p.error) : 1.0L;
        const long double res = p.oc - r.a - r.b * p.cycle;
        r.chi2 += w * res * res;
    }
    const long double scale = r.chi2 / (long double)(pts.size() - 2);
    r.sa = std::sqrt(sxx / det * scale);
    r.sb = std::sqrt(s / det * scale);
    return r;
}

} // namespace

class TestEphemeris : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void cycleAndOc_data();
    void cycleAndOc();
    void halfWayGoesToTheLaterCycle();
    void cmDraPublishedMinima();
    void largeCyclesKeepTheirDigits();
    void usable();
    void secondaryFlag();

    void fitExactLine();
    void fitHandChecked();
    void fitWeightedAgainstNormalEquations();
    void fitUnweightedWhenAnErrorIsMissing();
    void fitNeedsTwoCycles();
    void fitTwoPointsHasNoErrors();
};

void TestEphemeris::cycleAndOc_data()
{
    QTest::addColumn<double>("time");
    QTest::addColumn<int>("kind");
    QTest::addColumn<bool>("secondaryAtHalf");
    QTest::addColumn<double>("cycle");
    QTest::addColumn<double>("computed");
    QTest::addColumn<double>("oc");

    // T0 = 2450000.5, P = 0.75: (T - T0) / P worked by hand.
    const int primary = int(MinimumKind::Primary), secondary = int(MinimumKind::Secondary),
              nearest = int(MinimumKind::Nearest);
    // 75.12 / 0.75 = 100.16
    QTest::newRow("primary late") << 2450075.62 << primary << false << 100.0 << 2450075.5 << 0.12;
    // 75.38 / 0.75 = 100.5067: a secondary 0.005 d late
    QTest::newRow("secondary") << 2450075.88 << secondary << false << 100.5 << 2450075.875 << 0.005;
    // -0.6 / 0.75 = -0.8
    QTest::newRow("primary before T0") << 2449999.9 << primary << false << -1.0 << 2449999.75 << 0.15;
    QTest::newRow("secondary before T0") << 2449999.9 << secondary << false << -0.5 << 2450000.125 << -0.225;
    // Nearest half cycle: 100.16 -> 100, 100.3 -> 100.5, 100.8 -> 101.
    QTest::newRow("nearest primary") << 2450075.62 << nearest << true << 100.0 << 2450075.5 << 0.12;
    QTest::newRow("nearest secondary") << 2450075.725 << nearest << true << 100.5 << 2450075.875 << -0.15;
    QTest::newRow("nearest next primary") << 2450076.1 << nearest << true << 101.0 << 2450076.25 << -0.15;
    // Without secondaries at phase 0.5, nearest is the nearest whole cycle.
    QTest::newRow("nearest, primaries only") << 2450075.725 << nearest << false << 100.0 << 2450075.5 << 0.225;
}

void TestEphemeris::cycleAndOc()
{
    QFETCH(double, time);
    QFETCH(int, kind);
    QFETCH(bool, secondaryAtHalf);
    QFETCH(double, cycle);
    QFETCH(double, computed);
    QFETCH(double, oc);
    const Ephemeris e{2450000.5, 0.75, secondaryAtHalf};
    const OcValue v = ocFor(e, time, MinimumKind(kind));
    QCOMPARE(v.cycle, cycle);
    QCOMPARE(cycleFor(e, time, MinimumKind(kind)), cycle);
    QVERIFY(std::abs(v.computed - computed) < 1e-9);
    QVERIFY(std::abs(v.days - oc) < 1e-9);
    QVERIFY(std::abs(v.minutes() - oc * 1440) < 1e-6);
    QCOMPARE(v.secondary(), cycle != std::floor(cycle));
}

void TestEphemeris::halfWayGoesToTheLaterCycle()
{
    // T0 = 0, P = 2: every ratio below is exact.
    const Ephemeris e{0, 2, true};
    QCOMPARE(cycleFor(e, 201, MinimumKind::Primary), 101.0);   // 100.5
    QCOMPARE(cycleFor(e, -3, MinimumKind::Primary), -1.0);     // -1.5
    QCOMPARE(cycleFor(e, 200, MinimumKind::Secondary), 100.5); // 100
    QCOMPARE(cycleFor(e, 200.5, MinimumKind::Nearest), 100.5); // 100.25
    QCOMPARE(cycleFor(e, 201.5, MinimumKind::Nearest), 101.0); // 100.75
}

void TestEphemeris::cmDraPublishedMinima()
{
    // The two CM Dra minima of TESS sector 16 (BJD_TDB), against an ephemeris through the first
    // with a period of 1.26838965 d: the second is cycle 7024 and early by the difference between
    // the period and the interval of the two minima.
    const double first = 2458738.6607358, second = 2458739.9291169, period = 1.26838965;
    const Ephemeris e{first - 7023 * period, period, false};
    const OcValue v = ocFor(e, second, MinimumKind::Primary);
    QCOMPARE(v.cycle, 7024.0);
    QVERIFY(std::abs(v.days - ((second - first) - period)) < 2e-9);
    QVERIFY(std::abs(v.minutes() - (-0.00000855 * 1440)) < 1e-5);
}

void TestEphemeris::largeCyclesKeepTheirDigits()
{
    const Ephemeris e{2400000.123456, 0.123456789, false};
    const double cycle = 500000;
    const long double exactC = (long double)e.t0 + cycle * (long double)e.period;
    const double time = double(exactC + 0.0001L);
    const OcValue v = ocFor(e, time, MinimumKind::Primary);
    QCOMPARE(v.cycle, cycle);
    QVERIFY(std::abs((long double)v.days - ((long double)time - exactC)) < 1e-9L);
}

void TestEphemeris::usable()
{
    QVERIFY(isUsable({2450000, 1.5, false}));
    QVERIFY(!isUsable({2450000, 0, false}));
    QVERIFY(!isUsable({2450000, -1, false}));
    QVERIFY(!isUsable({std::nan(""), 1, false}));
    QVERIFY(!isUsable({0, INFINITY, false}));
}

void TestEphemeris::secondaryFlag()
{
    QVERIFY(!(OcValue{7024, 0, 0}.secondary()));
    QVERIFY((OcValue{7024.5, 0, 0}.secondary()));
    QVERIFY((OcValue{-0.5, 0, 0}.secondary()));
}

void TestEphemeris::fitExactLine()
{
    const Ephemeris e{2458000.25, 0.6, false};
    std::vector<OcFitPoint> pts;
    for (int k = -3; k <= 40; k += 3)
        pts.push_back({k * 1.0, 0.001 - 2e-6 * k, 0.0001});
    const auto fit = fitEphemeris(e, pts);
    QVERIFY(fit.has_value());
    QVERIFY(fit->weighted);
    QCOMPARE(fit->count, int(pts.size()));
    QCOMPARE(fit->dof, int(pts.size()) - 2);
    QVERIFY(std::abs(fit->intercept - 0.001) < 1e-15);
    QVERIFY(std::abs(fit->slope + 2e-6) < 1e-17);
    QVERIFY(std::abs(fit->t0 - (2458000.25 + 0.001)) < 1e-9);
    QVERIFY(std::abs(fit->period - (0.6 - 2e-6)) < 1e-15);
    QVERIFY(fit->chi2 < 1e-18);
    QVERIFY(fit->sigmaT0 < 1e-12);
    QVERIFY(std::abs(fit->ocAt(10) - (0.001 - 2e-5)) < 1e-15);
}

void TestEphemeris::fitHandChecked()
{
    // E = 0, 1, 2 and O - C = 0, 1, 1, unweighted: slope 1/2, intercept 1/6, residuals -1/6,
    // 1/3, -1/6, chi2 = 1/6 with one degree of freedom, Sxx = 2: sigma_b = sqrt(1/12),
    // sigma_a = sqrt(1/6 (1/3 + 1/2)) = sqrt(5) / 6.
    const Ephemeris e{100, 3, false};
    const auto fit = fitEphemeris(e, {{0, 0, 0}, {1, 1, 0}, {2, 1, 0}});
    QVERIFY(fit.has_value());
    QVERIFY(!fit->weighted);
    DIP_COMPARE_REL(fit->slope, 0.5, 1e-15);
    DIP_COMPARE_REL(fit->intercept, 1.0 / 6, 1e-15);
    DIP_COMPARE_REL(fit->chi2, 1.0 / 6, 1e-14);
    DIP_COMPARE_REL(fit->sigmaPeriod, std::sqrt(1.0 / 12), 1e-14);
    DIP_COMPARE_REL(fit->sigmaT0, std::sqrt(5.0) / 6, 1e-14);
    DIP_COMPARE_REL(fit->t0, 100 + 1.0 / 6, 1e-15);
    DIP_COMPARE_REL(fit->period, 3.5, 1e-15);
}

void TestEphemeris::fitWeightedAgainstNormalEquations()
{
    // A scatter of minima over 300 cycles, primaries and secondaries, errors from 5 s to 40 s.
    std::vector<OcFitPoint> pts;
    for (int i = 0; i < 37; ++i) {
        const double cycle = 2000 + 8.5 * i;
        const double noise = 0.0003 * std::sin(i * 12.9898 + 78.233);
        pts.push_back(
            {cycle, 0.0021 + 3.1e-6 * (cycle - 2000) + noise, (5 + 35 * std::abs(std::sin(i * 4.1))) / 86400});
    }
    const Ephemeris e{2455000.1, 1.25, true};
    const auto fit = fitEphemeris(e, pts);
    QVERIFY(fit.has_value());
    QVERIFY(fit->weighted);
    const ReferenceLine r = referenceLine(pts, true);
    DIP_COMPARE_REL(fit->intercept, double(r.a), 1e-9);
    DIP_COMPARE_REL(fit->slope, double(r.b), 1e-9);
    DIP_COMPARE_REL(fit->chi2, double(r.chi2), 1e-9);
    DIP_COMPARE_REL(fit->sigmaT0, double(r.sa), 1e-7);
    DIP_COMPARE_REL(fit->sigmaPeriod, double(r.sb), 1e-9);
    DIP_COMPARE_REL(fit->t0, 2455000.1 + double(r.a), 1e-15);
}

void TestEphemeris::fitUnweightedWhenAnErrorIsMissing()
{
    std::vector<OcFitPoint> pts = {{0, 0.001, 0.0001}, {5, 0.0013, 0.0002}, {9, 0.0008, 0}, {14, 0.0016, 0.0001}};
    const auto fit = fitEphemeris({0, 1, false}, pts);
    QVERIFY(fit.has_value());
    QVERIFY(!fit->weighted);
    const ReferenceLine r = referenceLine(pts, false);
    DIP_COMPARE_REL(fit->slope, double(r.b), 1e-12);
    DIP_COMPARE_REL(fit->intercept, double(r.a), 1e-12);
    DIP_COMPARE_REL(fit->sigmaPeriod, double(r.sb), 1e-10);
    DIP_COMPARE_REL(fit->sigmaT0, double(r.sa), 1e-10);
}

void TestEphemeris::fitNeedsTwoCycles()
{
    QVERIFY(!fitEphemeris({0, 1, false}, {}).has_value());
    QVERIFY(!fitEphemeris({0, 1, false}, {{3, 0.1, 0.01}}).has_value());
    QVERIFY(!fitEphemeris({0, 1, false}, {{3, 0.1, 0.01}, {3, 0.2, 0.01}}).has_value());
}

void TestEphemeris::fitTwoPointsHasNoErrors()
{
    const auto fit = fitEphemeris({10, 2, false}, {{0, 0.01, 0.001}, {4, 0.03, 0.001}});
    QVERIFY(fit.has_value());
    QCOMPARE(fit->dof, 0);
    QCOMPARE(fit->sigmaT0, 0.0);
    QCOMPARE(fit->sigmaPeriod, 0.0);
    DIP_COMPARE_REL(fit->slope, 0.005, 1e-14);
    DIP_COMPARE_REL(fit->t0, 10.01, 1e-15);
    DIP_COMPARE_REL(fit->period, 2.005, 1e-15);
}

QTEST_APPLESS_MAIN(TestEphemeris)
#include "tst_ephemeris.moc"
