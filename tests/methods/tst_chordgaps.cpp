// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
// Chords whose crossing is read across a gap: found where the method finds its partners,
// counted, and shown to be what moves the time.

#include "methods/chords/BisectChords.h"
#include "methods/chords/ChordGaps.h"
#include "session/Curve.h"
#include "support/DipCurves.h"

#include <QtTest>

#include <cmath>

using namespace dip;
using dip::test::Points;

namespace {

constexpr double h = 1.0 / 64;
constexpr double centre = 30 * h;

// The test dip (one point every h, centred on point 30) less the points from..to.
CurveData dipWithout(int from, int to)
{
    std::vector<double> t, m;
    for (const auto& [x, y] : test::sixtyFourthsDip(from, to)) {
        t.push_back(x);
        m.push_back(y);
    }
    return CurveData::from(t, m);
}

// The index in c of the dip's point k.
rt::Integer indexOf(const CurveData& c, int k)
{
    for (rt::Integer i = 1; i <= c.n; ++i)
        if (c.t(i) == k * h)
            return i;
    return 0;
}

// The chords from points 22..26 (left) and 43..46 (right).
ChordGaps gapsOf(const CurveData& c)
{
    return FindChordGaps(c.t, c.m, c.n, indexOf(c, 22), indexOf(c, 26), indexOf(c, 43), indexOf(c, 46));
}

double timeOf(const CurveData& c)
{
    return BisectChords(c.t, c.m, c.n, indexOf(c, 22), indexOf(c, 26), indexOf(c, 43), indexOf(c, 46)).time;
}

} // namespace

class TestChordGaps : public QObject {
    Q_OBJECT

private Q_SLOTS:
    // Evenly sampled: every crossing lies between neighbours one spacing apart, and the chords
    // find the centre.
    void aCurveWithoutAGapHasNone()
    {
        const CurveData c = dipWithout(99, 99);
        const ChordGaps g = gapsOf(c);
        QCOMPARE(g.chords, 9);
        QCOMPARE(g.acrossAGap, 0);
        QVERIFY(!g.any());
        QCOMPARE(g.widest, 1.0);
        QVERIFY(std::abs(timeOf(c) - centre) < 1e-4);
    }

    // The right branch's points 34 to 42 missing: the chords of the five left points, whose
    // mirror images are points 34 to 38, end in the gap, read between points 33 and 43, ten
    // spacings apart; the four right points' do not. With no noise at all, the time moves by
    // more than twenty times what it was off without the gap.
    void aGapOnTheOtherBranchIsCountedAndMovesTheTime()
    {
        const CurveData c = dipWithout(34, 42);
        QCOMPARE(int(c.n), 52);
        const ChordGaps g = gapsOf(c);
        QCOMPARE(g.chords, 9);
        QCOMPARE(g.acrossAGap, 5);
        QVERIFY(g.any());
        QCOMPARE(g.widest, 10.0);

        const double without = std::abs(timeOf(dipWithout(99, 99)) - centre);
        const double with = std::abs(timeOf(c) - centre);
        QVERIFY2(with > 20 * without && with > 1e-3, qPrintable(QStringLiteral("%1 %2").arg(with).arg(without)));
    }

    // Eight spacings between the points about a crossing are not a gap; nine are.
    void theThresholdIsEightMedianSpacings_data()
    {
        QTest::addColumn<int>("lastMissing");
        QTest::addColumn<int>("across");
        QTest::newRow("eight spacings") << 39 << 0;
        QTest::newRow("nine spacings") << 40 << 5;
    }

    void theThresholdIsEightMedianSpacings()
    {
        QFETCH(int, lastMissing);
        QFETCH(int, across);
        const ChordGaps g = gapsOf(dipWithout(33, lastMissing));
        QCOMPARE(g.chords, 9);
        QCOMPARE(g.acrossAGap, across);
    }

    // A left point whose partner is the last point has no pair of points about its crossing:
    // it is not counted (the method reads the empty slot beyond the curve there).
    void aPartnerAtTheEndOfTheCurveIsNotCounted()
    {
        const CurveData c = CurveData::from({4.0, 4.4, 5.0, 5.6, 6.0}, {10.0, 10.4, 11.0, 10.4, 10.5});
        const ChordGaps g = FindChordGaps(c.t, c.m, c.n, 2, 2, 4, 4);
        QCOMPARE(g.chords, 1);
        QCOMPARE(g.acrossAGap, 0);
    }

    // Fewer than two distinct times: no spacing to measure a gap by, nothing counted.
    void aCurveWithoutSpacingsCountsNothing()
    {
        const CurveData c = CurveData::from({4.0, 4.0, 4.0}, {10.0, 11.0, 10.0});
        const ChordGaps g = FindChordGaps(c.t, c.m, c.n, 1, 1, 3, 3);
        QCOMPARE(g.chords, 0);
        QVERIFY(!g.any());
    }
};

QTEST_GUILESS_MAIN(TestChordGaps)
#include "tst_chordgaps.moc"
