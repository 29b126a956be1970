// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers

#include "MethodTestData.h"

#include "methods/parabola/FitParabola.h"
#include "methods/parabola/ParabolaCommands.h"
#include "runtime/Text.h"
#include "session/MainForm.h"
#include "session/Procedures.h"
#include "session/Session.h"
#include "support/CanvasRecorder.h"
#include "support/TestSupport.h"

#include <QtTest>

#include <array>
#include <cmath>

using namespace dip;
using dip::test::CanvasRecorder;
using dip::test::Points;

namespace {

// Deterministic scatter in [-1, 1].
double scatter(int i) { return std::sin(i * 12.9898 + 78.233) * 0.5 + std::sin(i * 4.1414) * 0.5; }

Points parabolaPoints(double vertex, double depth, double curvature, double first, double step, int n, double noise = 0)
{
    Points p;
    for (int i = 0; i < n; ++i) {
        const double t = first + step * i;
        p.emplace_back(t, depth - curvature * (t - vertex) * (t - vertex) + noise * scatter(i));
    }
    return p;
}

// The least-squares parabola a second way: times centred on their mean, the 3x3 normal
// equations solved by Gauss-Jordan elimination in long double, and the inverse kept for the
// coefficients' errors.
struct Reference {
    double a0, b, c, time, rms, sigB, sigC;
};

Reference referenceFit(const Points& pts)
{
    const int n = static_cast<int>(pts.size());
    long double mean = 0;
    for (const auto& p : pts)
        mean += p.first;
    mean /= n;
    long double m[3][7] = {};
    for (const auto& p : pts) {
        const long double u = p.first - mean;
        const long double pw[3] = {1, u, u * u};
        for (int r = 0; r < 3; ++r) {
            for (int c = 0; c < 3; ++c)
                m[r][c] += pw[r] * pw[c];
            m[r][3] += pw[r] * p.second;
        }
    }
    for (int r = 0; r < 3; ++r)
        m[r][4 + r] = 1;
    for (int col = 0; col < 3; ++col) {
        const long double pivot = m[col][col];
        for (int c = 0; c < 7; ++c)
            m[col][c] /= pivot;
        for (int r = 0; r < 3; ++r) {
            if (r == col)
                continue;
            const long double f = m[r][col];
            for (int c = 0; c < 7; ++c)
                m[r][c] -= f * m[col][c];
        }
    }
    // Centred coefficients: y = p0 + p1 u + p2 u^2 with u = t - mean.
    const long double p0 = m[0][3], p1 = m[1][3], p2 = m[2][3];
    Reference r;
    r.c = double(p2);
    r.b = double(p1 - 2 * p2 * mean);
    r.a0 = double(p0 - p1 * mean + p2 * mean * mean);
    r.time = double(mean - p1 / (2 * p2));
    long double ssr = 0;
    for (const auto& p : pts) {
        const long double u = p.first - mean;
        const long double d = p0 + p1 * u + p2 * u * u - p.second;
        ssr += d * d;
    }
    const long double rms = std::sqrt(ssr / (n - 3));
    r.rms = double(rms);
    // Var(c) is the same in both parametrisations; b = p1 - 2 mean p2, so
    // Var(b) = Var(p1) - 4 mean Cov(p1, p2) + 4 mean^2 Var(p2).
    const long double vb = m[1][5] - 4 * mean * m[1][6] + 4 * mean * mean * m[2][6];
    r.sigB = double(rms * std::sqrt(vb));
    r.sigC = double(rms * std::sqrt(m[2][6]));
    return r;
}

// Loads the points and picks first..last (1-based) by clicking midway between neighbours.
void loadAndPick(const Points& pts, int first, int last, FormPort& form)
{
    QVERIFY(test::loadText(test::csv(pts)));
    test::setMethodBox();
    ParabolaFormLoad(form);
    const auto mid = [&](int i) { return (pts[std::size_t(i - 1)].first + pts[std::size_t(i)].first) / 2; };
    ParabolaMouseDown(form, Click::atTime(form.transform(), first > 1 ? mid(first - 1) : pts.front().first - 0.001));
    ParabolaMouseDown(form,
                      Click::atTime(form.transform(), last < int(pts.size()) ? mid(last) : pts.back().first + 0.001));
    QCOMPARE(S().ParabolaPick.LeftIdx, rt::Integer(first));
    QCOMPARE(S().ParabolaPick.RightIdx, rt::Integer(last));
}

} // namespace

class TestParabola : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void exactParabolaGivesItsVertex_data()
    {
        QTest::addColumn<double>("vertex");
        QTest::addColumn<double>("curvature");
        QTest::addColumn<double>("first");
        QTest::addColumn<double>("step");
        QTest::addColumn<int>("n");
        QTest::newRow("deep narrow dip") << 0.40123 << 30.0 << 0.30 << 0.005 << 41;
        QTest::newRow("vertex off centre") << 0.2345678 << 20.0 << 0.1 << 0.01 << 31;
        QTest::newRow("few points") << 0.75 << 5.0 << 0.5 << 0.1 << 5;
        QTest::newRow("negative times") << -0.5 << 10.0 << -0.7 << 0.02 << 21;
        QTest::newRow("a maximum is reported the same way") << 0.6 << -3.0 << 0.4 << 0.02 << 21;
    }
    void exactParabolaGivesItsVertex()
    {
        QFETCH(double, vertex);
        QFETCH(double, curvature);
        QFETCH(double, first);
        QFETCH(double, step);
        QFETCH(int, n);
        const Points pts = parabolaPoints(vertex, 11, curvature, first, step, n);
        const test::Curve c = test::toCurve(pts);
        const ParabolaFitResult fit = FitParabola(c.t, c.m, c.n, 1, c.n);
        QVERIFY2(std::abs(fit.time - vertex) < 1e-9, qPrintable(QString::number(fit.time - vertex)));
        DIP_COMPARE_REL(fit.c, -curvature, 1e-7);
        DIP_COMPARE_REL(fit.b, 2 * curvature * vertex, 1e-7);
        QVERIFY(fit.rms < 1e-6);
    }

    void noisyFitAgreesWithASecondSolution_data()
    {
        QTest::addColumn<double>("vertex");
        QTest::addColumn<double>("noise");
        QTest::newRow("small scatter") << 0.40123 << 0.002;
        QTest::newRow("large scatter") << 0.3877 << 0.05;
    }
    void noisyFitAgreesWithASecondSolution()
    {
        QFETCH(double, vertex);
        QFETCH(double, noise);
        const Points pts = parabolaPoints(vertex, 11, 30, 0.30, 0.005, 41, noise);
        const test::Curve c = test::toCurve(pts);
        const ParabolaFitResult fit = FitParabola(c.t, c.m, c.n, 1, 41);
        const Reference ref = referenceFit(pts);
        DIP_COMPARE_REL(fit.a0, ref.a0, 1e-8);
        DIP_COMPARE_REL(fit.b, ref.b, 1e-8);
        DIP_COMPARE_REL(fit.c, ref.c, 1e-8);
        QVERIFY(std::abs(fit.time - ref.time) < 1e-9);
        DIP_COMPARE_REL(fit.rms, ref.rms, 1e-7);
        DIP_COMPARE_REL(fit.sigB, ref.sigB, 1e-6);
        DIP_COMPARE_REL(fit.sigC, ref.sigC, 1e-6);
        const double rb = ref.sigB / ref.b, rc = ref.sigC / ref.c;
        DIP_COMPARE_REL(ParabolaError(fit), ref.time * std::sqrt(rb * rb + rc * rc) * ref.rms, 1e-6);
    }

    void subRangeUsesOnlyThePickedPoints()
    {
        Points pts = parabolaPoints(0.4, 11, 30, 0.30, 0.005, 41, 0.003);
        const test::Curve c = test::toCurve(pts);
        const ParabolaFitResult part = FitParabola(c.t, c.m, c.n, 6, 35);
        const Points inside(pts.begin() + 5, pts.begin() + 35);
        QVERIFY(std::abs(part.time - referenceFit(inside).time) < 1e-9);
        DIP_COMPARE_REL(part.rms, referenceFit(inside).rms, 1e-7);
    }

    void errorEstimateCarriesTheRmsTwiceAndTheSignOfTheTime_data()
    {
        QTest::addColumn<double>("time");
        QTest::addColumn<double>("expected");
        QTest::newRow("positive time") << 2.0 << 1.0;
        QTest::newRow("negative time") << -2.0 << -1.0;
    }
    void errorEstimateCarriesTheRmsTwiceAndTheSignOfTheTime()
    {
        QFETCH(double, time);
        ParabolaFitResult fit;
        fit.time = time;
        fit.rms = 0.5;
        fit.b = 5;
        fit.sigB = 3; // relative 0.6
        fit.c = -10;
        fit.sigC = 8; // relative 0.8: sqrt(0.36 + 0.64) = 1
        QFETCH(double, expected);
        DIP_COMPARE_REL(ParabolaError(fit), expected, 1e-15);
        // The RMS factor of the display stands beside the one inside sigB and sigC.
        fit.rms = 0.25;
        DIP_COMPARE_REL(ParabolaError(fit), expected / 2, 1e-15);
    }

    void singularRangesFail_data()
    {
        QTest::addColumn<QList<double>>("times");
        QTest::addColumn<QList<double>>("mags");
        QTest::addColumn<int>("first");
        QTest::addColumn<int>("last");
        QTest::addColumn<int>("error");
        // Exact integer sums: 0/0 in Cramer's rule, or SSR / (n - 3) = 0/0.
        QTest::newRow("ends in the wrong order")
            << QList<double>{1, 2, 3, 4} << QList<double>{1, 4, 9, 16} << 3 << 2 << 6;
        QTest::newRow("two points") << QList<double>{1, 2} << QList<double>{1, 4} << 1 << 2 << 6;
        QTest::newRow("three points fit exactly") << QList<double>{0, 1, 2} << QList<double>{0, 1, 4} << 1 << 3 << 6;
        QTest::newRow("equal times") << QList<double>{2, 2, 2, 2} << QList<double>{1, 2, 3, 4} << 1 << 4 << 6;
    }
    void singularRangesFail()
    {
        QFETCH(QList<double>, times);
        QFETCH(QList<double>, mags);
        QFETCH(int, first);
        QFETCH(int, last);
        QFETCH(int, error);
        rt::ObsArray t, m;
        for (qsizetype i = 0; i < times.size(); ++i) {
            t(i + 1) = times[i];
            m(i + 1) = mags[i];
        }
        DIP_EXPECT_RUNTIME_ERROR(FitParabola(t, m, rt::Integer(times.size()), rt::Integer(first), rt::Integer(last)),
                                 error);
    }

    void fitButtonPublishes()
    {
        const Points pts = parabolaPoints(0.40123, 11, 30, 0.30, 0.005, 41, 0.01);
        CanvasRecorder form;
        test::setMethodBox(form);
        loadAndPick(pts, 8, 33, form);
        const std::optional<ParabolaFitResult> fit = ParabolaFitClick(form);
        QVERIFY(fit);
        const Reference ref = referenceFit(Points(pts.begin() + 7, pts.begin() + 33));
        QVERIFY(std::abs(fit->time - ref.time) < 1e-9);
        const MainForm& main = mainForm();
        QCOMPARE(main.text(1), QString::number(fit->time, 'f', 5));
        QCOMPARE(main.text(7), rt::LTrim(FormatFixed(ParabolaError(*fit), 14, 5)));
        QVERIFY(!main.text(7).startsWith(QLatin1Char(' ')));
        QVERIFY(main.checked(1));
        // This window's RMS box keeps its blanks: right-aligned in 8 characters.
        QVERIFY(std::llround(ref.rms * 1000) % 10 != 0); // a third decimal that the text keeps
        QCOMPARE(form.controlText(QStringLiteral("Text1")), QString::number(ref.rms, 'f', 3).rightJustified(8));
        QCOMPARE(form.caption(), QStringLiteral("Fit Parabola - CLICK 'Done' TO EXIT, OR 'Undo' TO START OVER."));
        QCOMPARE(S().ParabolaPick.Fitted, rt::True);
        QCOMPARE(S().ParabC, fit->c);
        QCOMPARE(S().ParabSigB, fit->sigB);
    }

    void fitButtonRedrawsTheMarkersFromTheRememberedTimes()
    {
        const Points pts = parabolaPoints(0.40123, 11, 30, 0.30, 0.005, 41, 0.01);
        CanvasRecorder form;
        test::setMethodBox(form);
        loadAndPick(pts, 8, 33, form);
        form.cls();
        S().ParabolaPick.LeftMarkX = 0;
        QVERIFY(ParabolaFitClick(form));
        const auto lines = form.verticalLines();
        QVERIFY(lines.size() >= 2);
        const Session& s = S();
        DIP_COMPARE_REL(lines[0].x1, s.PlotLeft + s.PlotWidth * (s.ParabolaPick.LeftHJD - s.HJDMin) / s.HJDRange,
                        1e-12);
        QVERIFY(lines[0].colour == colours::purple);
        QCOMPARE(s.ParabolaPick.LeftMarkX, lines[0].x1);
        QCOMPARE(s.ParabolaPick.RightMarkX, lines[1].x1);
    }

    void fitPressedBeforeARangeDoesNothing_data()
    {
        QTest::addColumn<int>("clicks");
        QTest::newRow("no end picked") << 0;
        QTest::newRow("only the left end") << 1;
        QTest::newRow("right end before every point") << 2;
    }
    void fitPressedBeforeARangeDoesNothing()
    {
        QFETCH(int, clicks);
        QVERIFY(test::loadText(test::csv({{1.0, 13.0}, {1.1, 12.5}, {1.2, 12.0}, {1.3, 11.5}, {1.4, 11.0}})));
        test::setMethodBox();
        CanvasRecorder form;
        test::setMethodBox(form);
        ParabolaFormLoad(form);
        if (clicks >= 1)
            ParabolaMouseDown(form, Click::atTime(form.transform(), 0.999));
        if (clicks >= 2)
            ParabolaMouseDown(form, Click::atTime(form.transform(), 1.0)); // a right end with no point before it
        const QString caption = form.caption();
        form.cls();
        QVERIFY(!ParabolaFitClick(form));
        QCOMPARE(form.caption(), caption);
        QVERIFY(form.calls.empty());
        QCOMPARE(mainForm().text(1), QString());
        QVERIFY(!mainForm().checked(1));
    }

    void wrongOrderFailsInTheFit()
    {
        const Points pts = parabolaPoints(0.4, 11, 30, 0.30, 0.005, 41, 0.01);
        CanvasRecorder form;
        test::setMethodBox(form);
        loadAndPick(pts, 8, 33, form);
        S().ParabolaPick.LeftIdx = 33;
        S().ParabolaPick.RightIdx = 8;
        DIP_EXPECT_RUNTIME_ERROR(ParabolaFitClick(form), 6);
    }

    void undoAfterAFit()
    {
        const Points pts = parabolaPoints(0.40123, 11, 30, 0.30, 0.005, 41, 0.01);
        CanvasRecorder form;
        test::setMethodBox(form);
        loadAndPick(pts, 8, 33, form);
        QVERIFY(ParabolaFitClick(form));
        ParabolaUndoClick(form);
        const MainForm& main = mainForm();
        QCOMPARE(main.text(1), QString());
        QCOMPARE(main.text(7), QString());
        QVERIFY(!main.checked(1));
        QCOMPARE(form.controlText(QStringLiteral("Text1")), QString());
        QCOMPARE(form.controlText(QStringLiteral("Label8")), QString());
        QCOMPARE(form.controlText(QStringLiteral("Label10")), QString());
        QCOMPARE(form.caption(), QStringLiteral("Fit Parabola - RIGHT-CLICK AT START OF RANGE."));
        const RangePick& pick = S().ParabolaPick;
        QCOMPARE(pick.Fitted, rt::False);
        QCOMPARE(pick.RangeSet, rt::False);
        QCOMPARE(pick.LeftSet, rt::False);
        QCOMPARE(pick.RightSet, rt::False);
        QCOMPARE(pick.LeftIdx, rt::Integer(8));
        QVERIFY(!ParabolaFitClick(form));
    }

    void curveIsBlueInsideThePickedTimesAndGreyOutside()
    {
        const Points pts = parabolaPoints(0.40123, 11, 30, 0.30, 0.005, 41, 0.01);
        CanvasRecorder form;
        test::setMethodBox(form);
        loadAndPick(pts, 8, 33, form);
        QVERIFY(ParabolaFitClick(form));
        Session& s = S();
        // Put the left time exactly on a sample: that sample is outside (strict comparison).
        s.ParabolaPick.LeftHJD = s.FitCurveT(20);
        form.cls();
        PlotParabolaFit(form);
        const auto& calls = form.calls;
        QCOMPARE(calls.size(), qsizetype(1 + 100 * 21));
        QVERIFY(calls[0].op == CanvasRecorder::Op::PSet);
        QVERIFY(calls[0].clipped);
        QCOMPARE(form.clips.size(), qsizetype(1));
        const double step = s.HJDRange / 100;
        for (int k = 0; k <= 100; ++k) {
            const double t = s.HJDMin + step * k;
            QCOMPARE(s.FitCurveT(k), t);
            const double m = (s.ParabC * t + s.ParabB) * t + s.ParabA0;
            const double x = s.PlotLeft + s.PlotWidth * (t - s.HJDMin) / s.HJDRange;
            const double y = s.PlotTop + s.PlotHeight * (m - s.MagMin) / s.MagRange;
            if (k == 0) {
                DIP_COMPARE_REL(calls[0].x1, x, 1e-12);
                DIP_COMPARE_REL(calls[0].y1, y, 1e-12);
                continue;
            }
            // The colours the curve is drawn in: blue RGB(0, 0, 255) inside, light grey
            // RGB(200, 200, 200) outside.
            const bool inside = s.ParabolaPick.LeftHJD < t && t < s.ParabolaPick.RightHJD;
            const Rgb expected = inside ? Rgb{0, 0, 255} : Rgb{200, 200, 200};
            for (int j = -10; j <= 10; ++j) {
                const auto& c = calls[qsizetype(1 + (k - 1) * 21 + (j + 10))];
                QVERIFY(c.op == CanvasRecorder::Op::LineTo);
                QVERIFY(c.colour == expected);
                // The curve runs over the whole time axis: inside the plot box only.
                QVERIFY(c.clipped);
                DIP_COMPARE_REL(c.x2, x, 1e-12);
                DIP_COMPARE_REL(c.y2, y + j, 1e-12);
            }
        }
        QVERIFY(calls[1 + 19 * 21].colour == (Rgb{200, 200, 200})); // sample 20
        QVERIFY(calls[1 + 20 * 21].colour == (Rgb{0, 0, 255}));     // sample 21
    }

    void reopeningRedrawsMarkersAndCurveAtTheNewScale()
    {
        const Points pts = parabolaPoints(0.40123, 11, 30, 0.30, 0.005, 41, 0.01);
        CanvasRecorder form;
        test::setMethodBox(form);
        loadAndPick(pts, 8, 33, form);
        QVERIFY(ParabolaFitClick(form));
        // A deletion at the end changes the scale.
        S().PickIdx = 41;
        SetPickedDeleted(true);
        form.cls();
        ParabolaRedrawOverlays(form);
        const Session& s = S();
        const auto lines = form.verticalLines();
        QCOMPARE(lines.size(), qsizetype(2));
        DIP_COMPARE_REL(lines[1].x1, s.PlotLeft + s.PlotWidth * (s.ParabolaPick.RightHJD - s.HJDMin) / s.HJDRange,
                        1e-12);
        QCOMPARE(form.calls.size(), qsizetype(2 + 1 + 100 * 21));
        QCOMPARE(s.FitCurveT(100), s.HJDMin + s.HJDRange / 100 * 100);

        // Without a fit only the markers come back.
        S().ParabolaPick.Fitted = rt::False;
        form.cls();
        ParabolaRedrawOverlays(form);
        QCOMPARE(form.calls.size(), qsizetype(2));
        // Without a range nothing.
        S().ParabolaPick.RangeSet = rt::False;
        form.cls();
        ParabolaRedrawOverlays(form);
        QVERIFY(form.calls.empty());
    }

    void aFormThatDrawsNothingComputesNoCurve()
    {
        const Points pts = parabolaPoints(0.40123, 11, 30, 0.30, 0.005, 41, 0.01);
        FormMemory form;
        test::setMethodBox(form);
        loadAndPick(pts, 8, 33, form);
        QVERIFY(ParabolaFitClick(form));
        QCOMPARE(S().FitCurveT(100), 0.0);
        QCOMPARE(form.controlText(QStringLiteral("Text1")).size(), 8);
    }
};

QTEST_GUILESS_MAIN(TestParabola)
#include "tst_parabola.moc"
