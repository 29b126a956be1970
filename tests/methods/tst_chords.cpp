// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers

#include "MethodTestData.h"

#include "methods/chords/BisectChords.h"
#include "methods/chords/ChordsCommands.h"
#include "runtime/Text.h"
#include "session/MainForm.h"
#include "session/Procedures.h"
#include "session/Session.h"
#include "support/CanvasRecorder.h"
#include "support/TestSupport.h"

#include <QtTest>

#include <cmath>

using namespace dip;
using dip::test::CanvasRecorder;
using dip::test::Points;

namespace {

// A dip at 5.0 with straight branches of slope 1 and three chords whose midpoints are 5.0000,
// 5.0001 and 5.0002: the left points A (4.4) and B (4.6) cross the right branch at Q (5.6) and
// at P, moved to 5.4002; the right point R, moved to 5.8004, crosses the left branch at 4.2.
Points threeChords()
{
    return {{4.0, 10.0},    {4.4, 10.4}, {4.6, 10.6},    {5.0, 11.0},
            {5.4002, 10.6}, {5.6, 10.4}, {5.8004, 10.2}, {6.0, 10.0}};
}

// A V of 21 points at 0.1-day steps with its tip at 1.0 and a shallower right branch.
Points vee()
{
    Points p;
    for (int i = 0; i <= 20; ++i)
        p.emplace_back(0.1 * i, i <= 10 ? 12 - (10 - i) * 0.1 : 12 - (i - 10) * 0.09);
    return p;
}

void open(const Points& pts, FormPort& form)
{
    QVERIFY(test::loadText(test::csv(pts)));
    test::setMethodBox();
    ChordsFormLoad(form);
}

void clickAll(FormPort& form, std::initializer_list<double> times)
{
    for (const double t : times)
        ChordsMouseDown(form, Click::atTime(form.transform(), t));
}

double xOf(double t)
{
    const Session& s = S();
    return s.PlotLeft + s.PlotWidth * (t - s.HJDMin) / s.HJDRange;
}

const QString loadPrompt = QStringLiteral("Bisect Chords - RIGHT-CLICK AT START (left end) OF LEFT RANGE.");

} // namespace

class TestChords : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void threeMidpoints()
    {
        CanvasRecorder form;
        test::setMethodBox(form);
        open(threeChords(), form);
        clickAll(form, {4.3, 4.7, 5.7, 5.9});
        const ChordPick& p = S().Chords;
        QCOMPARE(p.Idx1, rt::Integer(2));
        QCOMPARE(p.Idx2, rt::Integer(3));
        QCOMPARE(p.Idx3, rt::Integer(7));
        QCOMPARE(p.Idx4, rt::Integer(7));
        const std::optional<ChordsResult> r = ChordsBisectClick(form);
        QVERIFY(r);
        QCOMPARE(r->midpoints, 3);
        DIP_COMPARE_REL(r->time, 5.0001, 1e-12);
        DIP_COMPARE_REL(r->error, 0.0001, 1e-7);
        // No leading blanks. The time has its 5 decimals; the error, a hair above 0.0001 after
        // the cancellation in Q - T S, is rounded by the shared formatter, which does not put
        // back the zeros its rounding drops.
        QCOMPARE(mainForm().text(3), QStringLiteral("5.00010"));
        QCOMPARE(mainForm().text(9), FormatResult(r->error));
        QVERIFY(mainForm().text(9).startsWith(QLatin1String("0.0001")));
        QVERIFY(mainForm().checked(3));
        QCOMPARE(S().Chords.Fitted, rt::True);
        QCOMPARE(form.caption(), QStringLiteral("Bisect Chords - CLICK 'Done' TO EXIT, OR 'Undo' TO START OVER."));
    }

    void errorIsTheScatterOfOneMidpoint()
    {
        // Midpoints of a V whose right branch is slightly steeper: each differs, and the error
        // is their sample standard deviation, not divided by sqrt(N).
        Points p;
        for (int i = 0; i <= 10; ++i)
            p.emplace_back(0.1 * i, 10 + 0.1 * i);
        for (int i = 1; i <= 10; ++i)
            p.emplace_back(1.0 + 0.08 * i, 11 - 0.1 * i);
        const auto [t, m, n] = test::toCurve(p);
        const ChordsResult r = BisectChords(t, m, n, 3, 8, 13, 18);
        // The left point at magnitude 10 + 0.1 k (time 0.1 k) meets the right branch at
        // 1 + 0.08 (10 - k); the right point at 1 + 0.08 k meets the left branch at 0.1 (10 - k).
        std::vector<double> h;
        for (int k = 2; k <= 7; ++k)
            h.push_back((0.1 * k + 1 + 0.08 * (10 - k)) / 2);
        for (int k = 2; k <= 7; ++k)
            h.push_back((1 + 0.08 * k + 0.1 * (10 - k)) / 2);
        double mean = 0;
        for (double x : h)
            mean += x;
        mean /= double(h.size());
        QCOMPARE(r.midpoints, 12);
        DIP_COMPARE_REL(r.time, mean, 1e-12);
        DIP_COMPARE_REL(r.error, test::standardDeviation(h), 1e-6);
    }

    void aPointInBothRangesCountsTwice()
    {
        const Points p = threeChords();
        const auto [t, m, n] = test::toCurve(p);
        // Point 2 (A) in both ranges: as a left point it crosses at Q (5.6), as a right point
        // the first point from the start at least as faint is A itself, crossing at 4.4.
        const ChordsResult r = BisectChords(t, m, n, 2, 3, 2, 2);
        QCOMPARE(r.midpoints, 3);
        const double h[] = {(4.4 + 5.6) / 2, (4.6 + 5.4002) / 2, (4.4 + 4.4) / 2};
        DIP_COMPARE_REL(r.time, (h[0] + h[1] + h[2]) / 3, 1e-12);
    }

    void fewerThanTwoMidpointsFail()
    {
        const Points p = threeChords();
        const auto [t, m, n] = test::toCurve(p);
        // One midpoint: (Q - T S) / (N - 1) is 0/0.
        DIP_EXPECT_RUNTIME_ERROR(BisectChords(t, m, n, 2, 2, 1, 0), 6);
        // None: T = S / N is 0/0.
        DIP_EXPECT_RUNTIME_ERROR(BisectChords(t, m, n, 3, 2, 1, 0), 6);
    }

    void partnerThatIsTheLastPointUsesTheEmptySlotBeyond()
    {
        // The last point is fainter than the left point: the search stops at once at j = n and
        // interpolates towards the empty entry n + 1 (time 0, magnitude 0).
        const Points p = {{1.0, 10.0}, {1.1, 10.5}, {1.2, 11.0}, {1.3, 10.8}};
        const auto [t, m, n] = test::toCurve(p);
        const ChordsResult r = BisectChords(t, m, n, 1, 2, 4, 4);
        const double c1 = 1.3 + (10.0 - 10.8) * (0 - 1.3) / (0 - 10.8);
        const double c2 = 1.3 + (10.5 - 10.8) * (0 - 1.3) / (0 - 10.8);
        const double c3 = 1.1 + (10.8 - 10.5) * (1.2 - 1.1) / (11.0 - 10.5);
        DIP_COMPARE_REL(r.time, ((1.0 + c1) / 2 + (1.1 + c2) / 2 + (1.3 + c3) / 2) / 3, 1e-12);
    }

    void prompts()
    {
        CanvasRecorder form;
        test::setMethodBox(form);
        open(vee(), form);
        QCOMPARE(form.caption(), loadPrompt);
        ChordsMouseDown(form, Click::atTime(form.transform(), 0.25));
        QCOMPARE(form.caption(), QStringLiteral("Bisect Chords - RIGHT-CLICK AT (right) END OF LEFT RANGE."));
        ChordsMouseDown(form, Click::atTime(form.transform(), 0.75));
        QCOMPARE(form.caption(), QStringLiteral("Bisect Chords - RIGHT-CLICK AT START (left end) OF RIGHT RANGE."));
        ChordsMouseDown(form, Click::atTime(form.transform(), 1.25));
        QCOMPARE(form.caption(), QStringLiteral("Bisect Chords - RIGHT-CLICK AT (right) END OF RIGHT RANGE."));
        QCOMPARE(S().Chords.RangeSet, rt::False);
        ChordsMouseDown(form, Click::atTime(form.transform(), 1.75));
        QCOMPARE(form.caption(), QStringLiteral("Bisect Chords - CLICK 'Bisect Chords', OR 'Undo' TO START OVER."));
        QCOMPARE(S().Chords.RangeSet, rt::True);
    }

    void rightRangeFirstPromptsWhateverTheOtherSide()
    {
        CanvasRecorder form;
        test::setMethodBox(form);
        open(vee(), form);
        clickAll(form, {1.25, 1.75});
        QCOMPARE(form.caption(), QStringLiteral("Bisect Chords - CLICK 'Bisect Chords', OR 'Undo' TO START OVER."));
        QCOMPARE(S().Chords.RangeSet, rt::False);
        QVERIFY(!ChordsBisectClick(form));
        clickAll(form, {0.25, 0.75});
        QCOMPARE(form.caption(), QStringLiteral("Bisect Chords - RIGHT-CLICK AT START (left end) OF RIGHT RANGE."));
        QCOMPARE(S().Chords.RangeSet, rt::True);
        QVERIFY(ChordsBisectClick(form));
    }

    void labelsAndMarkers()
    {
        CanvasRecorder form;
        test::setMethodBox(form);
        open(vee(), form);
        const std::vector<double> times = {0.25, 0.75, 1.25, 1.75};
        for (double t : times)
            ChordsMouseDown(form, Click::atTime(form.transform(), t));
        QCOMPARE(form.controlText(QStringLiteral("Label8")), QStringLiteral(" 4"));
        QCOMPARE(form.controlText(QStringLiteral("Label10")), QStringLiteral(" 8"));
        QCOMPARE(form.controlText(QStringLiteral("Label12")), QStringLiteral(" 14"));
        QCOMPARE(form.controlText(QStringLiteral("Label14")), QStringLiteral(" 18"));
        // One purple marker per click and no erasing.
        const auto lines = form.verticalLines();
        QCOMPARE(lines.size(), qsizetype(4));
        for (std::size_t i = 0; i < 4; ++i) {
            DIP_COMPARE_REL(lines[i].x1, xOf(times[i]), 1e-12);
            QVERIFY(lines[i].colour == colours::purple);
        }
        const ChordPick& p = S().Chords;
        QCOMPARE(p.HJD1, 0.25);
        QCOMPARE(p.HJD2, 0.75);
        QCOMPARE(p.HJD3, 1.25);
        QCOMPARE(p.HJD4, 1.75);
    }

    void endLeftOfStartSwaps_data()
    {
        QTest::addColumn<double>("start");
        QTest::addColumn<double>("end");
        QTest::addColumn<int>("first");
        QTest::addColumn<int>("last");
        QTest::newRow("left range picked backwards") << 0.75 << 0.25 << 3 << 9;
        QTest::newRow("right range picked backwards") << 1.75 << 1.25 << 13 << 19;
        // Two clicks between the same neighbours 5 and 6: start 6, end 5, swapped to 5 and 6.
        QTest::newRow("left clicks between the same neighbours") << 0.42 << 0.48 << 5 << 6;
        QTest::newRow("right clicks between the same neighbours") << 1.42 << 1.48 << 15 << 16;
    }
    void endLeftOfStartSwaps()
    {
        QFETCH(double, start);
        QFETCH(double, end);
        QFETCH(int, first);
        QFETCH(int, last);
        CanvasRecorder form;
        test::setMethodBox(form);
        open(vee(), form);
        clickAll(form, {start, end});
        const ChordPick& p = S().Chords;
        const bool left = start < 1.0;
        QCOMPARE(int(left ? p.Idx1 : p.Idx3), first);
        QCOMPARE(int(left ? p.Idx2 : p.Idx4), last);
        QCOMPARE(form.controlText(left ? QStringLiteral("Label8") : QStringLiteral("Label12")), rt::Str(first));
        QCOMPARE(form.controlText(left ? QStringLiteral("Label10") : QStringLiteral("Label14")), rt::Str(last));
        // The times stay as clicked.
        QCOMPARE(left ? p.HJD1 : p.HJD3, start);
        QCOMPARE(left ? p.HJD2 : p.HJD4, end);
    }

    void clickAtAPointsTimeExcludesIt()
    {
        CanvasRecorder form;
        test::setMethodBox(form);
        open(vee(), form);
        // Points 3 (0.2) and 9 (0.8): the start takes the first point strictly later, the end
        // the last strictly earlier.
        const Session& s = S();
        clickAll(form, {s.HJD(3), s.HJD(9), s.HJD(13), s.HJD(19)});
        const ChordPick& p = s.Chords;
        QCOMPARE(p.Idx1, rt::Integer(4));
        QCOMPARE(p.Idx2, rt::Integer(8));
        QCOMPARE(p.Idx3, rt::Integer(14));
        QCOMPARE(p.Idx4, rt::Integer(18));
    }

    void sideUsesTheFullListAtTheEditedIndex()
    {
        CanvasRecorder form;
        test::setMethodBox(form);
        open(vee(), form);
        // Delete point 3: the faintest used point is now at edited index 10, and OrigHJD(10) is
        // 0.9, one point before the faintest time 1.0.
        S().PickIdx = 3;
        SetPickedDeleted(true);
        QCOMPARE(S().IdxMagMax, rt::Integer(10));
        QCOMPARE(S().OrigHJD(S().IdxMagMax), 0.1 * 9);
        ChordsMouseDown(form, Click::atTime(form.transform(), 0.95));
        QCOMPARE(S().Chords.RightStage, rt::Integer(1));
        QCOMPARE(S().Chords.LeftStage, rt::Integer(0));
        ChordsMouseDown(form, Click::atTime(form.transform(), 0.85));
        QCOMPARE(S().Chords.LeftStage, rt::Integer(1));
    }

    void completeSideIgnoresClicks()
    {
        CanvasRecorder form;
        test::setMethodBox(form);
        open(vee(), form);
        clickAll(form, {0.25, 0.75});
        const QString caption = form.caption();
        form.cls();
        ChordsMouseDown(form, Click::atTime(form.transform(), 0.05));
        QCOMPARE(S().Chords.Idx1, rt::Integer(4));
        QCOMPARE(S().Chords.Idx2, rt::Integer(8));
        QCOMPARE(S().Chords.HJD1, 0.25);
        QCOMPARE(form.caption(), caption);
        QVERIFY(form.calls.empty());
    }

    void onlyRightClicksInsideTheBoxCount_data()
    {
        QTest::addColumn<double>("x");
        QTest::addColumn<int>("button");
        QTest::newRow("left button inside") << 2000.0 << 1;
        QTest::newRow("middle button inside") << 2000.0 << 4;
        QTest::newRow("right button left of the box") << 499.0 << 2;
        QTest::newRow("right button right of the box") << 8586.0 << 2;
    }
    void onlyRightClicksInsideTheBoxCount()
    {
        QFETCH(double, x);
        QFETCH(int, button);
        CanvasRecorder form;
        test::setMethodBox(form);
        open(vee(), form);
        S().Chords.LeftStage = 2;
        S().Chords.RightStage = 2; // RangeSet stays False: no handled click recomputes it
        ChordsMouseDown(form, Click::atTwips(x, 1000, rt::Integer(button)));
        QCOMPARE(S().Chords.RangeSet, rt::False);
        QCOMPARE(form.caption(), loadPrompt);
        QVERIFY(form.calls.empty());
    }

    void twipsClickTimeMultipliesFirst()
    {
        CanvasRecorder form;
        test::setMethodBox(form);
        open(vee(), form);
        const Session& s = S();
        const double x = 2001;
        ChordsMouseDown(form, Click::atTwips(x, 1000, 2));
        QCOMPARE(s.Chords.HJD1, s.HJDMin + s.HJDRange * (x - s.PlotLeft) / s.PlotWidth);
    }

    void bisectBeforeFourEndsDoesNothing()
    {
        CanvasRecorder form;
        test::setMethodBox(form);
        open(vee(), form);
        clickAll(form, {0.25, 0.75, 1.25});
        form.cls();
        QVERIFY(!ChordsBisectClick(form));
        QVERIFY(form.calls.empty());
        QCOMPARE(mainForm().text(3), QString());
        // A complete pick with Idx1 still 0 is not enough either.
        S().Chords.RangeSet = rt::True;
        S().Chords.Idx1 = 0;
        QVERIFY(!ChordsBisectClick(form));
    }

    void bisectRedrawsTheFourMarkersFromTheTimes()
    {
        CanvasRecorder form;
        test::setMethodBox(form);
        open(vee(), form);
        clickAll(form, {0.25, 0.75, 1.25, 1.75});
        form.cls();
        QVERIFY(ChordsBisectClick(form));
        const auto lines = form.verticalLines();
        QCOMPARE(lines.size(), qsizetype(4));
        DIP_COMPARE_REL(lines[3].x1, xOf(1.75), 1e-12);
        QCOMPARE(S().Chords.Fitted, rt::True);
    }

    void undo()
    {
        CanvasRecorder form;
        test::setMethodBox(form);
        open(vee(), form);
        clickAll(form, {0.25, 0.75, 1.25, 1.75});
        QVERIFY(ChordsBisectClick(form));
        ChordsUndoClick(form);
        const ChordPick& p = S().Chords;
        QCOMPARE(p.LeftStage, rt::Integer(0));
        QCOMPARE(p.RightStage, rt::Integer(0));
        QCOMPARE(p.RangeSet, rt::False);
        QCOMPARE(p.Fitted, rt::False);
        QCOMPARE(p.Idx1, rt::Integer(4));
        QCOMPARE(p.HJD4, 1.75);
        QCOMPARE(mainForm().text(3), QString());
        QCOMPARE(mainForm().text(9), QString());
        QVERIFY(!mainForm().checked(3));
        QCOMPARE(form.caption(), loadPrompt);
        for (const char* label : {"Label8", "Label10", "Label12", "Label14"})
            QCOMPARE(form.controlText(QLatin1String(label)), QString());
        QVERIFY(!ChordsBisectClick(form));
    }

    void reopeningRedrawsTheMarkersAndBisectWorksAtOnce()
    {
        CanvasRecorder form;
        test::setMethodBox(form);
        open(vee(), form);
        clickAll(form, {0.25, 0.75, 1.25, 1.75});
        // Hidden and shown again: the picking survives, and a load of another file too.
        S().PickIdx = 21;
        SetPickedDeleted(true);
        form.cls();
        ChordsRedrawOverlays(form);
        const auto lines = form.verticalLines();
        QCOMPARE(lines.size(), qsizetype(4));
        DIP_COMPARE_REL(lines[0].x1, xOf(0.25), 1e-12);
        QVERIFY(ChordsBisectClick(form));
        // The window's load starts afresh.
        ChordsFormLoad(form);
        QCOMPARE(S().Chords.RangeSet, rt::False);
        QCOMPARE(S().Chords.LeftStage, rt::Integer(0));
        form.cls();
        ChordsRedrawOverlays(form);
        QVERIFY(form.calls.empty());
    }
};

QTEST_GUILESS_MAIN(TestChords)
#include "tst_chords.moc"
