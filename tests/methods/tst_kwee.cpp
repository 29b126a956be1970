// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers

#include "MethodTestData.h"

#include "methods/kwee/KweeCommands.h"
#include "methods/kwee/KweeVanWoerden.h"
#include "runtime/Numeric.h"
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
using dip::test::toCurve;

namespace {

// A dip symmetric about centre: times first, first + step, ...; depth falls off as |dt|^1.5.
Points symmetricDip(double centre, double first, double step, int n)
{
    Points p;
    for (int i = 0; i < n; ++i) {
        const double t = first + step * i;
        p.emplace_back(t, 12 - 40 * std::pow(std::abs(t - centre), 1.5));
    }
    return p;
}

// A total eclipse: a flat bottom of 21 points between two straight branches.
Points flatBottom()
{
    Points p;
    for (int i = 1; i <= 41; ++i)
        p.emplace_back(i, std::min(11.0, 10 + (20 - std::abs(i - 21)) * 0.1));
    return p;
}

// Ragged magnitudes whose first pass finds both neighbouring sums below the centre one.
Points ragged()
{
    const double mags[] = {0.7, 0.9, 0.7, 0.2, 1.0, 0.9, 0.7, 0.2, 0.2, 0.1, 0.8, 0.5, 1.0, 0.2, 0.4, 0.3};
    Points p;
    for (int i = 0; i < 16; ++i)
        p.emplace_back(i + 1, mags[i]);
    return p;
}

rt::Integer gridHalf(int n) { return rt::CInt(n * 0.9); }

KweeResult runOn(const Points& pts, rt::Integer s = 1, double f = 0.9)
{
    const CurveData c = toCurve(pts);
    return KweeVanWoerden(S(), c.t, c.m, c.n, 1, c.n, gridHalf(c.n), s, f);
}

struct Sums {
    double minus = 0, zero = 0, plus = 0;
};

// The reflection sums about c - 1, c, c + 1 over odd offsets, read from the grid the method built.
Sums sumsAt(int c, int P)
{
    const rt::ObsArray& g = S().KweeGridMag;
    Sums r;
    for (int k = 1; k <= P; k += 2) {
        r.minus += std::pow(g(c - 1 + k) - g(c - 1 - k), 2);
        r.zero += std::pow(g(c + k) - g(c - k), 2);
        r.plus += std::pow(g(c + 1 + k) - g(c + 1 - k), 2);
    }
    return r;
}

// The vertex of the parabola through three points, by Lagrange's form.
double vertexThrough(double x0, double y0, double x1, double y1, double x2, double y2)
{
    const double d0 = y0 / ((x0 - x1) * (x0 - x2));
    const double d1 = y1 / ((x1 - x0) * (x1 - x2));
    const double d2 = y2 / ((x2 - x0) * (x2 - x1));
    const double a = d0 + d1 + d2;
    const double b = -(d0 * (x1 + x2) + d1 * (x0 + x2) + d2 * (x0 + x1));
    return -b / (2 * a);
}

// Loads the points into a fresh session and opens the window on form, picking all points.
void openAndPickAll(const Points& pts, FormPort& form)
{
    QVERIFY(test::loadText(test::csv(pts)));
    test::setMethodBox();
    KweeDesignTexts(form);
    KweeFormLoad(form);
    KweeMouseDown(form, Click::atTime(form.transform(), pts.front().first - 0.001));
    KweeMouseDown(form, Click::atTime(form.transform(), pts.back().first + 0.001));
    QCOMPARE(S().KweePick.LeftIdx, rt::Integer(1));
    QCOMPARE(S().KweePick.RightIdx, rt::Integer(pts.size()));
}

} // namespace

class TestKwee : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init() { test::freshSession(); }

    void symmetricDipMakesNoShift_data()
    {
        QTest::addColumn<double>("centre");
        QTest::addColumn<double>("first");
        QTest::addColumn<double>("step");
        QTest::addColumn<int>("n");
        QTest::newRow("21 points") << 0.5 << 0.4 << 0.01 << 21;
        QTest::newRow("41 points") << 2.25 << 2.05 << 0.01 << 41;
        QTest::newRow("11 points, larger times") << 51.5 << 51.0 << 0.1 << 11;
    }
    void symmetricDipMakesNoShift()
    {
        QFETCH(double, centre);
        QFETCH(double, first);
        QFETCH(double, step);
        QFETCH(int, n);
        const KweeResult r = runOn(symmetricDip(centre, first, step, n));
        QCOMPARE(r.shifts, 0);
        QCOMPARE(r.passes, 1);
        QVERIFY(r.bracketed);
        QCOMPARE(r.centre, r.startIndex);
        QCOMPARE(int(r.centre), int(gridHalf(n)));
        QVERIFY(r.sMinus > r.sZero && r.sZero < r.sPlus);
        DIP_COMPARE_REL(r.sMinus, r.sPlus, 1e-6);
        QVERIFY2(std::abs(r.time - centre) < 1e-9, qPrintable(QString::number(r.time - centre)));
        QCOMPARE(r.completion, 1);
    }

    void bothShiftsInOnePassCancel()
    {
        const KweeResult r = runOn(ragged());
        // Four passes of two shifts each bring the counter past 7 with c where it started.
        QCOMPARE(r.centre, r.startIndex);
        QCOMPARE(r.shifts, 8);
        QCOMPARE(r.passes, 5);
        QVERIFY(!r.bracketed && !r.stalled);
        // A second look at the first pass from the grid itself.
        const int c = r.startIndex;
        const int K = 2 * gridHalf(16);
        const int L = c >= gridHalf(16) ? K - c : c;
        const Sums s = sumsAt(c, rt::CInt(L * 0.9));
        QVERIFY(s.minus < s.zero);
        QVERIFY(s.plus < s.zero);
        DIP_COMPARE_REL(r.sZero, s.zero, 1e-12);
        // The three times around the unchanged c.
        const rt::ObsArray& g = S().KweeGridT;
        DIP_COMPARE_REL(r.time, vertexThrough(g(c - 1), r.sMinus, g(c), r.sZero, g(c + 1), r.sPlus), 1e-9);
    }

    void counterLimitStopsADrift()
    {
        // The first largest grid magnitude is the left edge of the flat bottom; each pass moves
        // one step towards its middle until the counter passes 7.
        const KweeResult r = runOn(flatBottom());
        QCOMPARE(r.shifts, 8);
        QCOMPARE(r.passes, 9);
        QCOMPARE(int(r.centre), r.startIndex + 8);
        QVERIFY(!r.bracketed);
        const rt::ObsArray& g = S().KweeGridT;
        const int c = r.centre;
        DIP_COMPARE_REL(r.time, vertexThrough(g(c - 1), r.sMinus, g(c), r.sZero, g(c + 1), r.sPlus), 1e-9);
        // The grid start: the first of the equal largest magnitudes.
        const rt::ObsArray& gm = S().KweeGridMag;
        for (int i = 0; i < r.startIndex; ++i)
            QVERIFY(gm(i) < gm(r.startIndex));
        QCOMPARE(gm(r.startIndex), 11.0);
    }

    void searchThatCannotEndStopsAndFailsInTheArithmetic_data()
    {
        QTest::addColumn<int>("shape");
        QTest::addColumn<double>("frac");
        QTest::addColumn<int>("error");
        // c = K: the sums are all 0, the trial times around c give A = 0 and -B / (2A) = 0/0.
        QTest::newRow("deepest at the last grid point") << 0 << 0.9 << 6;
        // c = 0: the time c - s is outside the grid arrays.
        QTest::newRow("deepest at the first grid point") << 1 << 0.9 << 9;
        // P < 1 in the middle of the grid: all sums 0 again.
        QTest::newRow("Frac too small for one pair") << 2 << 0.01 << 6;
    }
    void searchThatCannotEndStopsAndFailsInTheArithmetic()
    {
        QFETCH(int, shape);
        QFETCH(double, frac);
        QFETCH(int, error);
        Points p;
        for (int i = 1; i <= 20; ++i) {
            const double m = shape == 0 ? 10 + 0.1 * i : shape == 1 ? 12 - 0.1 * i : 12 - 0.01 * (i - 10) * (i - 10);
            p.emplace_back(0.1 * i, m);
        }
        const CurveData c = toCurve(p);
        DIP_EXPECT_RUNTIME_ERROR(KweeVanWoerden(S(), c.t, c.m, c.n, 1, c.n, gridHalf(20), 1, frac), error);
    }

    void gridBracketsOverAllUsedPointsFromTheLast()
    {
        // Ten points in time order and an eleventh, out of order, at 4.5. The range is 1..10,
        // but the bracket search starts from point 11.
        Points p;
        for (int i = 1; i <= 10; ++i)
            p.emplace_back(i, 10 + 0.1 * i);
        p.emplace_back(4.5, 20);
        const CurveData c = toCurve(p);
        KweeInterpolate(S(), c.t, c.m, c.n, 1, 10, 9); // K = 18, step 0.5
        const rt::ObsArray& gt = S().KweeGridT;
        const rt::ObsArray& gm = S().KweeGridMag;
        QCOMPARE(gt(0), 1.0);
        QCOMPARE(gt(18), 10.0);
        QCOMPARE(gm(18), 11.0);
        QCOMPARE(gt(7), 4.5);
        // Grid times from 4.5 up bracket at point 11 and interpolate towards the empty slot 12.
        QCOMPARE(gm(7), 20.0);
        QCOMPARE(gm(8), 20 + (0 - 20) * (5.0 - 4.5) / (0 - 4.5));
        QCOMPARE(gm(17), 20 + (0 - 20) * (9.5 - 4.5) / (0 - 4.5));
        // Below 4.5 the ordinary neighbours.
        QCOMPARE(gm(1), 10.1 + (10.2 - 10.1) * (1.5 - 1) / (2 - 1));
        QCOMPARE(gm(6), 10.4 + (10.5 - 10.4) * (4.0 - 4) / (5 - 4));
    }

    void gridHalfSizeRoundsHalvesToEven_data()
    {
        QTest::addColumn<int>("n");
        QTest::addColumn<int>("K");
        QTest::newRow("5 points: 4.5 gives 4") << 5 << 8;
        QTest::newRow("15 points: 13.5 gives 14") << 15 << 28;
        QTest::newRow("21 points: 18.9 gives 19") << 21 << 38;
    }
    void gridHalfSizeRoundsHalvesToEven()
    {
        QFETCH(int, n);
        QFETCH(int, K);
        CanvasRecorder form;
        test::setMethodBox(form);
        const Points pts = symmetricDip(0.5 + 0.01 * (n - 1) / 2.0, 0.5, 0.01, n);
        openAndPickAll(pts, form);
        QVERIFY(KweeFitClick(form));
        const Session& s = S();
        QCOMPARE(s.KweeGridT(K), pts.back().first);
        const double delta = (pts.back().first - pts.front().first) / K;
        QCOMPARE(s.KweeGridT(K - 1), pts.front().first + (K - 1) * delta);
    }

    void errorFormula()
    {
        const int n = 41;
        Points pts = symmetricDip(2.2537, 2.05, 0.01, n);
        for (std::size_t i = 0; i < pts.size(); ++i)
            pts[i].second += 0.002 * std::sin(double(i) * 7.7);
        const KweeResult r = runOn(pts);
        QCOMPARE(r.time, -r.B / (2 * r.A));
        const double Z = n / 4.0;
        QCOMPARE(r.error, std::sqrt(std::abs(4 * r.A * r.C - r.B * r.B) / (4 * r.A * r.A * (Z - 1))));
        // A, B, C are the numerators of the parabola through the three sums.
        const rt::ObsArray& g = S().KweeGridT;
        const int c = r.centre;
        DIP_COMPARE_REL(r.time, vertexThrough(g(c - 1), r.sMinus, g(c), r.sZero, g(c + 1), r.sPlus), 1e-9);
        QVERIFY(std::abs(r.time - 2.2537) < 0.002);
    }

    void errorIsZeroWhenTheDiscriminantIs()
    {
        // A V on a grid of half-unit steps: every value and sum is exact, the sums are 0.5, 0,
        // 0.5 about the times 1.5, 2, 2.5, and 4AC - B^2 = 4 (-0.5)(-2) - 2^2 is exactly 0.
        const KweeResult r = runOn({{0, 10}, {1, 10.5}, {2, 11}, {3, 10.5}, {4, 10}});
        QCOMPARE(r.centre, rt::Integer(4));
        QCOMPARE(r.sMinus, 0.5);
        QCOMPARE(r.sZero, 0.0);
        QCOMPARE(r.sPlus, 0.5);
        QCOMPARE(r.A, -0.5);
        QCOMPARE(r.B, 2.0);
        QCOMPARE(r.C, -2.0);
        QCOMPARE(r.time, 2.0);
        QCOMPARE(r.error, 0.0);
    }

    void fewerThanFivePointsFail_data()
    {
        QTest::addColumn<int>("n");
        QTest::addColumn<int>("error");
        QTest::newRow("4 points: Z - 1 = 0") << 4 << 11;
        QTest::newRow("3 points: Z - 1 < 0") << 3 << 5;
    }
    void fewerThanFivePointsFail()
    {
        QFETCH(int, n);
        QFETCH(int, error);
        Points p;
        for (int i = 0; i < n; ++i)
            p.emplace_back(i, 10 + (i == 1 ? 1.0 : 0.3 * i));
        const CurveData c = toCurve(p);
        DIP_EXPECT_RUNTIME_ERROR(KweeVanWoerden(S(), c.t, c.m, c.n, 1, c.n, gridHalf(n), 1, 0.5), error);
    }

    void parameterTexts_data()
    {
        QTest::addColumn<QString>("stepp");
        QTest::addColumn<QString>("frac");
        QTest::addColumn<int>("s");
        QTest::addColumn<double>("f");
        QTest::addColumn<int>("error");
        QTest::newRow("design values") << "1"
                                       << ".9" << 1 << 0.9 << 0;
        QTest::newRow("blanks around") << " 2 "
                                       << " .9 " << 2 << 0.9 << 0;
        QTest::newRow("1.5 rounds to 2") << "1.5"
                                         << ".8" << 2 << 0.8 << 0;
        QTest::newRow("2.5 rounds to 2") << "2.5"
                                         << "0.7" << 2 << 0.7 << 0;
        QTest::newRow("Stepp not a number") << "abc"
                                            << ".9" << 0 << 0.0 << 13;
        QTest::newRow("Stepp with trailing text") << "1x"
                                                  << ".9" << 0 << 0.0 << 13;
        QTest::newRow("Stepp empty") << ""
                                     << ".9" << 0 << 0.0 << 13;
        QTest::newRow("Stepp beyond 16 bits") << "40000"
                                              << ".9" << 0 << 0.0 << 6;
        QTest::newRow("Frac not a number") << "1"
                                           << "ab" << 0 << 0.0 << 13;
    }
    void parameterTexts()
    {
        QFETCH(QString, stepp);
        QFETCH(QString, frac);
        QFETCH(int, s);
        QFETCH(double, f);
        QFETCH(int, error);
        const Points pts = symmetricDip(0.6037, 0.4, 0.01, 41);
        CanvasRecorder form;
        test::setMethodBox(form);
        openAndPickAll(pts, form);
        form.setControlText(QStringLiteral("Text1"), stepp);
        form.setControlText(QStringLiteral("Text2"), frac);
        if (error != 0) {
            DIP_EXPECT_RUNTIME_ERROR(KweeFitClick(form), error);
            QCOMPARE(mainForm().text(4), QString());
            return;
        }
        const std::optional<KweeResult> r = KweeFitClick(form);
        QVERIFY(r);
        const CurveData c = toCurve(pts);
        const KweeResult direct = KweeVanWoerden(S(), c.t, c.m, c.n, 1, c.n, gridHalf(41), rt::Integer(s), f);
        QCOMPARE(r->time, direct.time);
        QCOMPARE(r->error, direct.error);
    }

    void fitButtonPublishes()
    {
        const Points pts = symmetricDip(0.6, 0.4, 0.01, 41);
        CanvasRecorder form;
        test::setMethodBox(form);
        openAndPickAll(pts, form);
        S().KweePick.LeftMarkX = 1234; // the button draws at the stored positions
        S().KweePick.RightMarkX = 4321;
        form.cls();
        const std::optional<KweeResult> r = KweeFitClick(form);
        QVERIFY(r);
        const auto lines = form.verticalLines();
        QCOMPARE(lines.size(), qsizetype(2));
        QCOMPARE(lines[0].x1, 1234.0);
        QCOMPARE(lines[1].x1, 4321.0);
        QVERIFY(lines[0].colour == colours::purple);
        const MainForm& main = mainForm();
        QVERIFY(std::abs(r->time - 0.6) < 1e-9);
        // The shared formatter drops the zeros its rounding leaves.
        QCOMPARE(main.text(4), QStringLiteral("0.6"));
        QCOMPARE(main.text(10), FormatResult(r->error));
        QVERIFY(!main.text(10).startsWith(QLatin1Char(' ')));
        QVERIFY(main.checked(4));
        QCOMPARE(S().KweePick.Fitted, rt::True);
        QCOMPARE(form.caption(), QStringLiteral("Kwee & van Woerden - CLICK 'Done' TO EXIT, OR 'Undo' TO START OVER."));
    }

    void fitPressedBeforeARangeDoesNothing()
    {
        QVERIFY(test::loadText(test::csv(symmetricDip(0.6037, 0.4, 0.01, 41))));
        test::setMethodBox();
        CanvasRecorder form;
        test::setMethodBox(form);
        KweeDesignTexts(form);
        KweeFormLoad(form);
        KweeMouseDown(form, Click::atTime(form.transform(), 0.45));
        QVERIFY(!KweeFitClick(form));
        QCOMPARE(form.caption(), QStringLiteral("Kwee & van Woerden - RIGHT-CLICK AT (right) END OF RANGE."));
        QCOMPARE(mainForm().text(4), QString());
        QVERIFY(!mainForm().checked(4));
    }

    void undoAfterAFit()
    {
        CanvasRecorder form;
        test::setMethodBox(form);
        openAndPickAll(symmetricDip(0.6037, 0.4, 0.01, 41), form);
        QVERIFY(KweeFitClick(form));
        KweeUndoClick(form);
        const MainForm& main = mainForm();
        QCOMPARE(main.text(4), QString());
        QCOMPARE(main.text(10), QString());
        QVERIFY(!main.checked(4));
        QCOMPARE(form.caption(), QStringLiteral("Kwee & van Woerden - RIGHT-CLICK AT START OF RANGE."));
        QCOMPARE(form.controlText(QStringLiteral("Label8")), QString());
        QCOMPARE(S().KweePick.Fitted, rt::False);
        QCOMPARE(S().KweePick.RangeSet, rt::False);
        QCOMPARE(S().KweePick.LeftSet, rt::True);
        QVERIFY(!KweeFitClick(form));
        // One new pick, and the range is back.
        KweeMouseDown(form, Click::atTime(form.transform(), 0.75));
        QVERIFY(KweeFitClick(form));
    }

    void reopeningShowsTheLeftMarkerAtTheFirstPointInside()
    {
        const Points pts = symmetricDip(0.6037, 0.4, 0.01, 41);
        QVERIFY(test::loadText(test::csv(pts)));
        test::setMethodBox();
        CanvasRecorder form;
        test::setMethodBox(form);
        KweeFormLoad(form);
        KweeMouseDown(form, Click::atTime(form.transform(), 0.4523));
        KweeMouseDown(form, Click::atTime(form.transform(), 0.7551));
        form.cls();
        KweeRedrawOverlays(form);
        const Session& s = S();
        const auto lines = form.verticalLines();
        QCOMPARE(lines.size(), qsizetype(2));
        QCOMPARE(s.HJD(s.KweePick.LeftIdx), pts[6].first);
        DIP_COMPARE_REL(lines[0].x1, s.PlotLeft + s.PlotWidth * (pts[6].first - s.HJDMin) / s.HJDRange, 1e-12);
        DIP_COMPARE_REL(lines[1].x1, s.PlotLeft + s.PlotWidth * (0.7551 - s.HJDMin) / s.HJDRange, 1e-12);
        // The window's load starts the picking afresh but keeps Fitted.
        S().KweePick.Fitted = rt::True;
        KweeFormLoad(form);
        QCOMPARE(S().KweePick.RangeSet, rt::False);
        QCOMPARE(S().KweePick.Fitted, rt::True);
        form.cls();
        KweeRedrawOverlays(form);
        QVERIFY(form.calls.empty());
    }
};

QTEST_GUILESS_MAIN(TestKwee)
#include "tst_kwee.moc"
