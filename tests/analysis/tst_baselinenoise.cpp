// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
// The noise judged on the baseline beside a dip: which points are the baseline, what is counted,
// and how often white and correlated noise are called correlated.
#include "analysis/BaselineNoise.h"
#include "support/SimulatedEclipse.h"

#include <QtTest>

#include <cmath>
#include <random>
#include <vector>

using namespace dip;

namespace {

// n evenly spaced points over [0, 1]: a flat-bottomed dip of `depth` mag over [0.4, 0.6], white
// noise of 0.01, and for `red` above 0 a part correlated over 4.5 spacings (0.8 from point to
// point) of that size.
CurveData curveWith(int n, double red, std::uint64_t seed, double depth = 0.5)
{
    std::mt19937_64 rng(seed);
    test::Dip dip;
    dip.depth = depth;
    dip.width = 0.1 / 1.5; // the dip ends at 1.5 widths from its centre
    dip.shape = test::DipShape::FlatBottomed;
    const std::vector<double> t = test::evenTimes(0, 1, n);
    const std::vector<double> noise = test::correlatedNoise(n, 0.01, red, 4.5, rng);
    std::vector<double> m;
    for (std::size_t i = 0; i < t.size(); ++i)
        m.push_back(10 + dip.magnitude(t[i]) + noise[i]);
    return CurveData::from(t, m);
}

// A request that picked the points first..last.
MethodRequest picked(int first, int last)
{
    MethodRequest r;
    r.first = rt::Integer(first);
    r.last = rt::Integer(last);
    return r;
}

// The share of 400 curves whose baseline is called correlated.
double shareCalledCorrelated(int n, double red)
{
    int called = 0;
    for (std::uint64_t seed = 1; seed <= 400; ++seed) {
        const CurveData c = curveWith(n, red, seed);
        called += JudgeBaselineNoise(c.view(), 0.395, 0.605).correlated ? 1 : 0;
    }
    return called / 400.0;
}

} // namespace

class TestBaselineNoise : public QObject {
    Q_OBJECT

private Q_SLOTS:
    // White noise is called correlated on fewer curves than the 5 % level allows (the line's
    // share is given back only in part on a side of 21 points); noise correlated over a few
    // points (0.8 from point to point, twice the white part) on more than half of them.
    void whiteIsCalledCorrelatedWithinTheTestsLevel()
    {
        const double share = shareCalledCorrelated(101, 0);
        qInfo("white noise called correlated on %.3f", share);
        QVERIFY2(share < 0.05, qPrintable(QString::number(share)));
    }
    void correlatedNoiseIsFoundOnMostCurves()
    {
        const double share = shareCalledCorrelated(101, 0.02);
        qInfo("correlated noise found on %.3f", share);
        QVERIFY2(share > 0.5, qPrintable(QString::number(share)));
    }

    // The baseline is the points within the dip's width of each end: [0.185, 0.395) and
    // (0.605, 0.815] here, 21 points a side of 101, 20 pairs each. What lies in the dip or beyond that (another
    // eclipse, a drift far away) is not judged.
    void onlyTheBaselineBesideTheDipIsJudged()
    {
        const CurveData plain = curveWith(101, 0, 7);
        const BaselineNoise judged = JudgeBaselineNoise(plain.view(), 0.395, 0.605);
        QVERIFY(judged.judged);
        QCOMPARE(judged.pairs, 40);

        CurveData changed = curveWith(101, 0, 7, 3.0); // the same noise under a deeper dip
        for (int i = 1; i <= changed.n; ++i)
            if (changed.t(i) < 0.18 || changed.t(i) > 0.82)
                changed.m(i) += 2 * changed.t(i); // far from the dip: a drift
        const BaselineNoise same = JudgeBaselineNoise(changed.view(), 0.395, 0.605);
        QCOMPARE(same.pairs, judged.pairs);
        QCOMPARE(same.lag1, judged.lag1);
    }

    // A straight line under the baseline is fitted away: a slope is no correlated noise.
    void aSlopeIsNoCorrelatedNoise()
    {
        const CurveData plain = curveWith(101, 0, 3);
        CurveData sloped = plain;
        for (int i = 1; i <= sloped.n; ++i)
            sloped.m(i) += 0.1 * sloped.t(i);
        const BaselineNoise a = JudgeBaselineNoise(plain.view(), 0.395, 0.605);
        const BaselineNoise b = JudgeBaselineNoise(sloped.view(), 0.395, 0.605);
        QVERIFY(a.judged && !a.correlated);
        QCOMPARE(b.pairs, a.pairs);
        QCOMPARE(b.correlated, a.correlated);
        QVERIFY(std::abs(b.lag1 - a.lag1) < 1e-9);
    }

    // Ranges that stop short of the baseline: beside them lie the dip's branches, whose lines
    // fall and rise by far more than a quarter of the dip's depth. They are no baseline, and their
    // curvature is no noise: nothing is judged. One side on a branch leaves the other to judge.
    void theDipsBranchesAreNoBaseline()
    {
        const CurveData c = curveWith(101, 0, 7);
        const BaselineNoise both = JudgeBaselineNoise(c.view(), 0.45, 0.55);
        QVERIFY(!both.judged);
        QCOMPARE(both.pairs, 0);
        // [0.395, 0.55]: the left side [0.24, 0.395) is baseline, 16 points and 15 pairs; the
        // right one (0.55, 0.705] runs down the branch.
        const BaselineNoise left = JudgeBaselineNoise(c.view(), 0.395, 0.55);
        QVERIFY(left.judged);
        QCOMPARE(left.pairs, 15);
    }

    // Fewer than eight pairs: nothing is judged. 21 points over [0, 1] with the dip over
    // [0.3, 0.7] leave [0, 0.3) and (0.7, 1], 6 points a side: 5 pairs each, judged; with the dip
    // over [0.25, 0.75], 5 points a side, 4 pairs each: 8, judged; over [0.2, 0.8], 4 points a
    // side, no line fitted.
    void tooFewPairsAreNotJudged_data()
    {
        QTest::addColumn<double>("start");
        QTest::addColumn<double>("end");
        QTest::addColumn<bool>("judged");
        QTest::addColumn<int>("pairs");
        QTest::newRow("6 a side") << 0.3 << 0.7 << true << 10;
        QTest::newRow("5 a side") << 0.25 << 0.75 << true << 8;
        QTest::newRow("4 a side") << 0.2 << 0.8 << false << 0;
    }
    void tooFewPairsAreNotJudged()
    {
        QFETCH(double, start);
        QFETCH(double, end);
        QFETCH(bool, judged);
        QFETCH(int, pairs);
        const CurveData c = curveWith(21, 0, 5);
        const BaselineNoise b = JudgeBaselineNoise(c.view(), start, end);
        QCOMPARE(b.judged, judged);
        QCOMPARE(b.pairs, pairs);
    }

    // Neighbours more than three median spacings apart are not a pair: a gap of four spacings
    // in one side's baseline takes one pair away.
    void pairsAcrossAGapAreNotCounted()
    {
        CurveData c = curveWith(101, 0, 9);
        const BaselineNoise before = JudgeBaselineNoise(c.view(), 0.395, 0.605);
        std::vector<double> t, m;
        for (int i = 1; i <= c.n; ++i) {
            if (i >= 27 && i <= 29) // t 0.26 to 0.28 left out: 0.25 to 0.29 is four spacings
                continue;
            t.push_back(c.t(i));
            m.push_back(c.m(i));
        }
        const CurveData gapped = CurveData::from(t, m);
        const BaselineNoise after = JudgeBaselineNoise(gapped.view(), 0.395, 0.605);
        QCOMPARE(before.pairs, 40);
        QCOMPARE(after.pairs, 40 - 3 - 1);
    }

    // The dip reaches from the earliest to the latest point any range picked, the chords'
    // second range too; ranges outside the points or empty count for nothing.
    void theDipIsWhereTheRangesReach()
    {
        const CurveData c = curveWith(101, 0, 1);
        const MethodRequest parabola = picked(45, 57);
        MethodRequest chords = picked(30, 40);
        chords.first2 = 62;
        chords.last2 = 75;
        const MethodRequest outside = picked(90, 102);
        const MethodRequest empty = picked(20, 19);
        const std::optional<TimeSpan> dip = DipExtent(c.view(), {parabola, chords, outside, empty, MethodRequest()});
        QVERIFY(dip.has_value());
        QCOMPARE(dip->start, 0.29);
        QCOMPARE(dip->end, 0.74);
        QVERIFY(!DipExtent(c.view(), {outside, empty}).has_value());
    }
};

QTEST_GUILESS_MAIN(TestBaselineNoise)
#include "tst_baselinenoise.moc"
