// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#include "methods/sliding/SlidingIntegrations.h"
#include "session/MainForm.h"
#include "session/Procedures.h"
#include "session/Session.h"
#include "support/TestSupport.h"

#include <algorithm>
#include <cmath>
#include <vector>

using namespace dip;

namespace {

// The method written out a second way, on plain vectors indexed from 0: the even grid with a
// binary-search bracket, the window differences as two separate trapezoid sums, and the line
// fit through centred sums. slot0 and slotAfter stand for what SlideDiff holds at index 0 and
// k + 1, which a fit window at either end reaches.
struct Reference {
    int k = 0;
    double delta = 0;
    std::vector<double> gridT, gridM, diff; // diff[i] for start position i (1-based, [0] = slot0)
    int bestIdx = 0;
    int first = 0, last = 0;
    double T = 0, E = 0;
};

Reference reference(const std::vector<double>& t, const std::vector<double>& m, double slot0 = 0, double slotAfter = 0)
{
    Reference r;
    const int n = static_cast<int>(t.size());
    r.k = n / 3 + 1;
    const int count = 3 * r.k;
    r.delta = (t[n - 1] - t[0]) / count;
    for (int i = 0; i < count; ++i) {
        const double g = i == 0 ? t[0] : t[0] + r.delta * i;
        double v = m[0];
        if (i > 0) {
            const int j = static_cast<int>(std::upper_bound(t.begin(), t.end(), g) - t.begin()) - 1;
            v = m[j] + (m[j + 1] - m[j]) * (g - t[j]) / (t[j + 1] - t[j]);
        }
        r.gridT.push_back(g);
        r.gridM.push_back(v);
    }
    r.diff.assign(r.k + 2, 0.0);
    r.diff[0] = slot0;
    r.diff[r.k + 1] = slotAfter;
    double best = 99;
    for (int i = 1; i <= r.k; ++i) {
        double left = 0, right = 0;
        for (int j = 0; j < r.k; ++j) {
            left += r.delta * (r.gridM[i + j - 1] + r.gridM[i + j]) / 2;
            right += r.delta * (r.gridM[i + j + r.k - 1] + r.gridM[i + j + r.k]) / 2;
        }
        r.diff[i] = left - right;
        if (std::abs(r.diff[i]) < best) {
            best = std::abs(r.diff[i]);
            r.bestIdx = i;
        }
    }
    const int w = std::clamp(std::min(r.bestIdx - 1, r.k - r.bestIdx - 1), 1, 5);
    r.first = r.bestIdx - w;
    r.last = r.bestIdx + w;
    // Centred least squares; grid index 0 has time 0.
    std::vector<double> xs, ys;
    for (int i = r.first; i <= r.last; ++i) {
        xs.push_back(i == 0 ? 0.0 : r.gridT[i - 1]);
        ys.push_back(r.diff[i]);
    }
    const double N = static_cast<double>(xs.size());
    double mx = 0, my = 0;
    for (std::size_t i = 0; i < xs.size(); ++i) {
        mx += xs[i] / N;
        my += ys[i] / N;
    }
    double sxx = 0, sxy = 0;
    for (std::size_t i = 0; i < xs.size(); ++i) {
        sxx += (xs[i] - mx) * (xs[i] - mx);
        sxy += (xs[i] - mx) * (ys[i] - my);
    }
    const double b = sxy / sxx;
    const double a = my - b * mx;
    double ssr = 0;
    for (std::size_t i = 0; i < xs.size(); ++i)
        ssr += (a + b * xs[i] - ys[i]) * (a + b * xs[i] - ys[i]);
    r.T = -a / b + r.k * r.delta;
    r.E = std::sqrt(ssr / r.k);
    return r;
}

// A dip of depth 0.8 mag and width sigma about c on a base of 11.
double dipMag(double t, double c, double sigma) { return test::gaussianMag(t, c, sigma); }

void fill(rt::ObsArray& t, rt::ObsArray& m, const std::vector<double>& ts, const std::vector<double>& ms)
{
    for (std::size_t i = 0; i < ts.size(); ++i) {
        t(static_cast<long long>(i + 1)) = ts[i];
        m(static_cast<long long>(i + 1)) = ms[i];
    }
}

// n points at 0.3 + 0.01 i (slightly uneven), the deepest at index deepest.
std::vector<std::pair<double, double>> curveWithDeepestAt(int n, int deepest)
{
    std::vector<std::pair<double, double>> pts;
    for (int i = 1; i <= n; ++i) {
        const double t = 0.3 + 0.01 * i + 0.002 * std::sin(i * 1.7);
        pts.push_back({t, 12.0 + 0.6 / (1.0 + 0.05 * (i - deepest) * (i - deepest))});
    }
    return pts;
}

} // namespace

class SlidingTest : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void init() { test::freshSession(); }
    void stretchChoice_data();
    void stretchChoice();
    void thirtyPointsGrid();
    void gridInterpolation_data();
    void gridInterpolation();
    void lineFitExactLine();
    void lineFitStandardErrors();
    void lineFitNoStandardErrorsWithoutPositiveD();
    void lineFitZeroDRaises();
    void symmetricDip();
    void matchesSecondComputation();
    void bestAtFirstPosition();
    void bestAtLastPositionReadsOldSlot();
    void thousandPointsTrapped_data();
    void thousandPointsTrapped();
    void trapWithoutTextShowsEmptyBox();
    void flatCurveTrappedAfterRangeSet();
    void deepestLastGivesEmptyStretch();
    void nothingWithoutFile();
};

void SlidingTest::stretchChoice_data()
{
    QTest::addColumn<int>("deepest");
    QTest::addColumn<int>("slideN");
    QTest::addColumn<int>("firstPoint");
    QTest::newRow("deepest at 15: all 30") << 15 << 30 << 1;
    QTest::newRow("deepest at 25: points 20 to 29") << 25 << 10 << 20;
    QTest::newRow("deepest at 4: points 1 to 8") << 4 << 8 << 1;
}

void SlidingTest::stretchChoice()
{
    QFETCH(int, deepest);
    QFETCH(int, slideN);
    QFETCH(int, firstPoint);
    QVERIFY(test::loadText(test::csv(curveWithDeepestAt(30, deepest))));
    const Session& s = S();
    QCOMPARE(int(s.IdxMagMax), deepest);
    // x = 30 / 2 * 0.9
    QCOMPARE(s.NumPts / 2.0 * 0.9, 13.5);
    test::MessageRecorder messages;
    RunSlidingIntegrations();
    QCOMPARE(int(s.SlideN), slideN);
    for (int i = 1; i <= slideN; ++i) {
        QCOMPARE(s.SlideHJD(i), s.HJD(firstPoint + i - 1));
        QCOMPARE(s.SlideMag(i), s.Mag(firstPoint + i - 1));
    }
    if (deepest == 25)
        QVERIFY(s.SlideHJD(slideN) != s.HJD(30)); // the last used point is left out
}

void SlidingTest::thirtyPointsGrid()
{
    QVERIFY(test::loadText(test::csv(curveWithDeepestAt(30, 15))));
    const Session& s = S();
    rt::Integer k = 0, count = 0;
    double delta = 0;
    ResampleEven(S(), s.HJD, s.Mag, 30, k, count, delta);
    QCOMPARE(int(k), 11);
    QCOMPARE(int(count), 33);
    QCOMPARE(delta, (s.HJD(30) - s.HJD(1)) / 33);
    QCOMPARE(s.GridHJD(1), s.HJD(1));
    QCOMPARE(s.GridMag(1), s.Mag(1));
    // The grid ends one step short of the last observation.
    DIP_COMPARE_REL(s.GridHJD(33), s.HJD(30) - delta, 1e-14);
    QCOMPARE(s.GridHJD(34), 0.0);
}

void SlidingTest::gridInterpolation_data()
{
    QTest::addColumn<QVector<double>>("times");
    QTest::addColumn<QVector<double>>("mags");
    QTest::newRow("uneven") << QVector<double>{0.1, 0.13, 0.17, 0.2, 0.26, 0.27, 0.33, 0.4}
                            << QVector<double>{11.0, 11.2, 11.5, 11.9, 11.6, 11.4, 11.1, 11.0};
    // 9 points: k = 4, delta = 0.8 / 12, and the grid time 0.1 + 3 delta = 0.3 equals an
    // observation time (to rounding): either neighbour gives the same value.
    QTest::newRow("grid time on an observation") << QVector<double>{0.1, 0.2, 0.3, 0.4, 0.5, 0.6, 0.7, 0.8, 0.9}
                                                 << QVector<double>{11, 11.3, 11.8, 12, 11.7, 11.2, 11.1, 11, 11};
}

void SlidingTest::gridInterpolation()
{
    QFETCH(QVector<double>, times);
    QFETCH(QVector<double>, mags);
    Session& s = S();
    const std::vector<double> t(times.begin(), times.end()), m(mags.begin(), mags.end());
    fill(s.SlideHJD, s.SlideMag, t, m);
    rt::Integer k = 0, count = 0;
    double delta = 0;
    ResampleEven(s, s.SlideHJD, s.SlideMag, rt::Integer(t.size()), k, count, delta);
    const Reference r = reference(t, m);
    QCOMPARE(int(k), r.k);
    QCOMPARE(int(count), 3 * r.k);
    for (int i = 1; i <= count; ++i) {
        DIP_COMPARE_REL(s.GridHJD(i), r.gridT[i - 1], 1e-15);
        DIP_COMPARE_REL(s.GridMag(i), r.gridM[i - 1], 1e-13);
        QVERIFY(s.GridHJD(i) < t.back());
    }
}

void SlidingTest::lineFitExactLine()
{
    rt::ObsArray x, y;
    for (int i = 1; i <= 7; ++i) {
        x(i) = 0.5 * i;
        y(i) = 2 + 3 * x(i);
    }
    double a = 0, b = 0, sa = -1, sb = -1, ssr = -1;
    LineFit(x, y, 2, 6, a, b, sa, sb, ssr);
    DIP_COMPARE_REL(a, 2.0, 1e-13);
    DIP_COMPARE_REL(b, 3.0, 1e-13);
    QVERIFY(ssr < 1e-25);
    QVERIFY(sa < 1e-10);
    QVERIFY(sb < 1e-10);
}

void SlidingTest::lineFitStandardErrors()
{
    rt::ObsArray x, y;
    const double noise[] = {0.3, -0.2, 0.5, -0.4, 0.1, 0.0, -0.3};
    for (int i = 1; i <= 7; ++i) {
        x(i) = i;
        y(i) = 1 - 0.5 * i + noise[i - 1];
    }
    double a = 0, b = 0, sa = 0, sb = 0, ssr = 0;
    LineFit(x, y, 1, 7, a, b, sa, sb, ssr);
    // Second way: centred sums. sigma_b = s / sqrt(Sxx_c), sigma_a = s sqrt(1/N + mean^2 / Sxx_c).
    double mx = 4, my = 0;
    for (int i = 1; i <= 7; ++i)
        my += y(i) / 7;
    double sxxc = 0, sxyc = 0;
    for (int i = 1; i <= 7; ++i) {
        sxxc += (x(i) - mx) * (x(i) - mx);
        sxyc += (x(i) - mx) * (y(i) - my);
    }
    const double bb = sxyc / sxxc, aa = my - bb * mx;
    double rss = 0;
    for (int i = 1; i <= 7; ++i)
        rss += (aa + bb * x(i) - y(i)) * (aa + bb * x(i) - y(i));
    const double s = std::sqrt(rss / 6);
    DIP_COMPARE_REL(a, aa, 1e-12);
    DIP_COMPARE_REL(b, bb, 1e-12);
    DIP_COMPARE_REL(ssr, rss, 1e-12);
    DIP_COMPARE_REL(sb, s / std::sqrt(sxxc), 1e-12);
    DIP_COMPARE_REL(sa, s * std::sqrt(1.0 / 7 + mx * mx / sxxc), 1e-12);
}

void SlidingTest::lineFitNoStandardErrorsWithoutPositiveD()
{
    // Three nearly equal large abscissas whose D = N Sxx - Sx^2 rounds to a negative number:
    // the fit still gives a and b, the standard errors stay 0 and nothing raises.
    rt::ObsArray x, y;
    bool found = false;
    for (int trial = 0; trial < 2000 && !found; ++trial) {
        const double base = 2459000.0 + trial * 0.37;
        x(1) = base;
        x(2) = base + 1e-9;
        x(3) = base + 3e-9;
        const double sx = x(1) + x(2) + x(3);
        const double sxx = x(1) * x(1) + x(2) * x(2) + x(3) * x(3);
        found = 3 * sxx - sx * sx < 0;
    }
    QVERIFY(found);
    y(1) = 1;
    y(2) = 2;
    y(3) = 4;
    double a = 0, b = 0, sa = -1, sb = -1, ssr = 0;
    LineFit(x, y, 1, 3, a, b, sa, sb, ssr);
    QCOMPARE(sa, 0.0);
    QCOMPARE(sb, 0.0);
}

void SlidingTest::lineFitZeroDRaises()
{
    rt::ObsArray x, y;
    x(1) = x(2) = x(3) = 0.5;
    y(1) = 1;
    y(2) = 2;
    y(3) = 3;
    double a, b, sa, sb, ssr;
    // Sxx Sy - Sx Sxy is 0 as well: the runtime calls 0 / 0 an overflow.
    DIP_EXPECT_RUNTIME_ERROR(LineFit(x, y, 1, 3, a, b, sa, sb, ssr), 6);
}

void SlidingTest::symmetricDip()
{
    // 41 points every 0.005 day, symmetric about point 21 at 0.4: k = 14, delta = 40 h / 42, and
    // the minimum falls on grid point 22, the centre of the window pair that starts at 8.
    std::vector<std::pair<double, double>> pts;
    for (int i = 1; i <= 41; ++i) {
        const double d = 0.005 * (i - 21);
        pts.push_back({0.4 + d, dipMag(0.4 + d, 0.4, 0.03)});
    }
    QVERIFY(test::loadText(test::csv(pts)));
    const Session& s = S();
    QCOMPARE(int(s.IdxMagMax), 21);
    test::MessageRecorder messages;
    const SlidingOutcome out = RunSlidingIntegrations();
    QVERIFY(messages.messages().isEmpty());
    QVERIFY(out.published);
    QCOMPARE(int(s.SlideN), 41);
    QVERIFY(s.SlideDiff(7) < 0);
    QVERIFY(s.SlideDiff(9) > 0);
    DIP_COMPARE_REL(s.SlideDiff(7), -s.SlideDiff(9), 1e-9);
    QVERIFY(std::abs(s.SlideDiff(8)) < 1e-14);
    QCOMPARE(int(s.RangeFirst), 3);
    QCOMPARE(int(s.RangeLast), 13);
    QVERIFY(std::abs(out.time - 0.4) < 1e-12);
    // Small beside the differences the line is fitted to (only their curvature is left).
    QVERIFY(out.error < 0.1 * std::abs(s.SlideDiff(13)));
    std::vector<double> t, m;
    for (const auto& [ti, mi] : pts) {
        t.push_back(ti);
        m.push_back(mi);
    }
    DIP_COMPARE_REL(out.error, reference(t, m).E, 1e-7);
    QCOMPARE(mainForm().text(6), FormatResult(out.time));
    QCOMPARE(mainForm().text(6), QStringLiteral("0.40000"));
    QCOMPARE(mainForm().text(12), FormatResult(out.error));
    QVERIFY(mainForm().checked(6));
}

void SlidingTest::matchesSecondComputation()
{
    // An asymmetric, unevenly sampled dip: the result agrees with the method written out
    // another way.
    std::vector<double> t, m;
    for (int i = 0; i < 57; ++i) {
        const double ti = 0.2 + 0.0043 * i + 0.0011 * std::sin(2.3 * i);
        t.push_back(ti);
        m.push_back(dipMag(ti, 0.318, 0.025) + 0.05 * (ti - 0.2) + 0.004 * std::cos(5.1 * i));
    }
    Session& s = S();
    fill(s.SlideHJD, s.SlideMag, t, m);
    double T = 0, E = 0;
    SlidingWindow window;
    SlidingIntegrations(s, s.SlideHJD, s.SlideMag, 57, T, E, window);
    s.RangeFirst = window.first;
    s.RangeLast = window.last;
    const Reference r = reference(t, m);
    QCOMPARE(int(s.RangeFirst), r.first);
    QCOMPARE(int(s.RangeLast), r.last);
    DIP_COMPARE_REL(T, r.T, 1e-12);
    DIP_COMPARE_REL(E, r.E, 1e-7);
    QVERIFY(std::abs(T - 0.318) < 0.002);
}

void SlidingTest::bestAtFirstPosition()
{
    // 30 points on 0..0.29: k = 11, delta = 0.29 / 33; the dip is centred just before the
    // centre of the first window pair (grid point 12), so bestIdx = 1 and the fit window,
    // clamped to w = 1, reaches grid index 0, which holds time 0 and difference 0.
    std::vector<double> t, m;
    const double delta = 0.29 / 33;
    const double centre = 11 * delta - 0.3 * delta;
    for (int i = 0; i < 30; ++i) {
        t.push_back(0.01 * i);
        m.push_back(dipMag(t.back(), centre, 0.02));
    }
    Session& s = S();
    fill(s.SlideHJD, s.SlideMag, t, m);
    double T = 0, E = 0;
    SlidingWindow window;
    SlidingIntegrations(s, s.SlideHJD, s.SlideMag, 30, T, E, window);
    s.RangeFirst = window.first;
    s.RangeLast = window.last;
    const Reference r = reference(t, m);
    QCOMPARE(r.bestIdx, 1);
    QCOMPARE(int(s.RangeFirst), 0);
    QCOMPARE(int(s.RangeLast), 2);
    QCOMPARE(s.GridHJD(0), 0.0);
    QCOMPARE(s.SlideDiff(0), 0.0);
    DIP_COMPARE_REL(T, r.T, 1e-9);
    DIP_COMPARE_REL(E, r.E, 1e-7);
}

void SlidingTest::bestAtLastPositionReadsOldSlot()
{
    Session& s = S();
    // An earlier, longer run leaves its differences in SlideDiff beyond k.
    std::vector<double> t0, m0;
    for (int i = 0; i < 60; ++i) {
        t0.push_back(0.005 * i);
        m0.push_back(dipMag(t0.back(), 0.15, 0.03));
    }
    fill(s.SlideHJD, s.SlideMag, t0, m0);
    double T = 0, E = 0;
    SlidingWindow window;
    SlidingIntegrations(s, s.SlideHJD, s.SlideMag, 60, T, E, window);
    s.RangeFirst = window.first;
    s.RangeLast = window.last;
    const double left = s.SlideDiff(12);
    QVERIFY(left != 0);

    // Now 30 points with the dip just after the centre of the last window pair (grid 2k = 22):
    // bestIdx = k = 11, and the fit window 10..12 takes SlideDiff(12) from the earlier run.
    std::vector<double> t, m;
    const double delta = 0.29 / 33;
    const double centre = 21 * delta + 0.3 * delta;
    for (int i = 0; i < 30; ++i) {
        t.push_back(0.01 * i);
        m.push_back(dipMag(t.back(), centre, 0.02));
    }
    fill(s.SlideHJD, s.SlideMag, t, m);
    window = SlidingWindow{};
    SlidingIntegrations(s, s.SlideHJD, s.SlideMag, 30, T, E, window);
    s.RangeFirst = window.first;
    s.RangeLast = window.last;
    const Reference r = reference(t, m, 0, left);
    QCOMPARE(r.bestIdx, 11);
    QCOMPARE(int(s.RangeFirst), 10);
    QCOMPARE(int(s.RangeLast), 12);
    QCOMPARE(s.SlideDiff(12), left);
    DIP_COMPARE_REL(T, r.T, 1e-9);
    DIP_COMPARE_REL(E, r.E, 1e-7);
}

void SlidingTest::thousandPointsTrapped_data()
{
    QTest::addColumn<int>("points");
    QTest::addColumn<int>("trapped");
    QTest::newRow("1000 points: grid of 1002") << 1000 << 9;
    QTest::newRow("999 points: grid of 1002") << 999 << 9;
    QTest::newRow("998 points: grid of 999") << 998 << 0;
}

void SlidingTest::thousandPointsTrapped()
{
    QFETCH(int, points);
    QFETCH(int, trapped);
    std::vector<std::pair<double, double>> pts;
    for (int i = 1; i <= points; ++i) {
        const double t = 0.001 * i;
        pts.push_back({t, dipMag(t, 0.0005 * points, 0.05)});
    }
    QVERIFY(test::loadText(test::csv(pts)));
    QCOMPARE(int(S().SlideN), 0);
    test::MessageRecorder messages;
    const SlidingOutcome out = RunSlidingIntegrations();
    QCOMPARE(int(S().SlideN), points);
    QCOMPARE(out.trappedError, trapped);
    if (trapped) {
        QCOMPARE(messages.messages(), QStringList{QStringLiteral("Error 9: Subscript out of range.")});
        QCOMPARE(messages.titles(), QStringList{QStringLiteral("Dipscope")});
        QVERIFY(!out.published);
        QCOMPARE(mainForm().text(6), QString());
        QCOMPARE(mainForm().text(12), QString());
        QVERIFY(!mainForm().checked(6));
    } else {
        QVERIFY(messages.messages().isEmpty());
        QVERIFY(out.published);
        QVERIFY(mainForm().checked(6));
    }
}

void SlidingTest::trapWithoutTextShowsEmptyBox()
{
    std::vector<std::pair<double, double>> pts;
    for (int i = 1; i <= 1000; ++i)
        pts.push_back({0.001 * i, dipMag(0.001 * i, 0.5, 0.05)});
    QVERIFY(test::loadText(test::csv(pts)));
    S().ErrorText(9) = QString(); // an error number without an entry
    test::MessageRecorder messages;
    const SlidingOutcome out = RunSlidingIntegrations();
    QCOMPARE(out.trappedError, 9);
    QCOMPARE(messages.messages(), QStringList{QString()});
}

void SlidingTest::flatCurveTrappedAfterRangeSet()
{
    // Equal magnitudes: every difference is 0, bestIdx = 1, the line is flat (a = b = 0) and
    // -a / b is 0 / 0, an overflow. The fit window was already stored.
    std::vector<std::pair<double, double>> pts;
    for (int i = 1; i <= 20; ++i)
        pts.push_back({0.1 + 0.01 * i, 11.5});
    QVERIFY(test::loadText(test::csv(pts)));
    mainForm().setText(6, QStringLiteral("typed"));
    test::MessageRecorder messages;
    const SlidingOutcome out = RunSlidingIntegrations();
    QCOMPARE(out.trappedError, 6);
    QCOMPARE(messages.messages(), QStringList{QStringLiteral("Error 6: Overflow.")});
    QCOMPARE(int(S().RangeFirst), 0);
    QCOMPARE(int(S().RangeLast), 2);
    QCOMPARE(mainForm().text(6), QStringLiteral("typed"));
    QVERIFY(!mainForm().checked(6));
}

void SlidingTest::deepestLastGivesEmptyStretch()
{
    // No point follows the deepest: the stretch is empty, the grid spans the never-written
    // slot 0 and the interpolation divides 0 by 0. Trapped like any other failure.
    QVERIFY(test::loadText(test::csv(curveWithDeepestAt(30, 30))));
    QCOMPARE(int(S().IdxMagMax), 30);
    test::MessageRecorder messages;
    const SlidingOutcome out = RunSlidingIntegrations();
    QCOMPARE(int(S().SlideN), 0);
    QCOMPARE(out.trappedError, 6);
    QCOMPARE(messages.messages(), QStringList{QStringLiteral("Error 6: Overflow.")});
    QVERIFY(!mainForm().checked(6));
}

void SlidingTest::nothingWithoutFile()
{
    test::MessageRecorder messages;
    const SlidingOutcome out = RunSlidingIntegrations();
    QVERIFY(!out.published);
    QCOMPARE(out.trappedError, 0);
    QVERIFY(messages.messages().isEmpty());
    QCOMPARE(int(S().SlideN), 0);
}

QTEST_GUILESS_MAIN(SlidingTest)
#include "tst_sliding.moc"
