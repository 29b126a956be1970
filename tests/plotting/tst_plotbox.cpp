// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#include "plotting/AxisLabels.h"
#include "plotting/PlotBox.h"
#include "session/Session.h"
#include "support/CanvasRecorder.h"
#include "support/TestSupport.h"

#include <cmath>

using namespace dip;

using LineRecorder = test::CanvasRecorder;

class PlotBoxTest : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void init() { test::freshSession(); }
    void gridStep_data();
    void gridStep();
    void transformAndInverse();
    void standardBox();
    void frameClockwise();
    void gridLineOnEdgesDrawn();
    void zeroRangeDivides();
    void axisNumber_data();
    void axisNumber();
    void gridDecimals_data();
    void gridDecimals();
    void labelDecimalsFollowDrift_data();
    void labelDecimalsFollowDrift();
    void labelStride_data();
    void labelStride();
    void magnitudeSteps();
    void axesFrameFirstThenGrid();
    void axesTextsBesideThePlot_data();
    void axesTextsBesideThePlot();
    void flatCurveHasNoMagnitudeNumbers();
};

void PlotBoxTest::gridStep_data()
{
    QTest::addColumn<double>("range");
    QTest::addColumn<int>("L");
    QTest::addColumn<double>("P");
    QTest::addColumn<double>("r");
    QTest::addColumn<int>("k");
    QTest::addColumn<double>("step");
    QTest::newRow("0.037") << 0.037 << -2 << 0.01 << 3.7 << 5 << 0.005;
    QTest::newRow("1.5") << 1.5 << 0 << 1.0 << 1.5 << 2 << 0.2;
    QTest::newRow("12") << 12.0 << 1 << 10.0 << 1.2 << 2 << 2.0;
    QTest::newRow("r above 5") << 0.7 << -1 << 0.1 << 7.0 << 10 << 0.1;
}

void PlotBoxTest::gridStep()
{
    QFETCH(double, range);
    QFETCH(int, L);
    QFETCH(double, P);
    QFETCH(double, r);
    QFETCH(int, k);
    QFETCH(double, step);
    const GridStep g = ComputeGridStep(range);
    QCOMPARE(g.L, L);
    QCOMPARE(g.P, float(P)); // single precision
    DIP_COMPARE_REL(g.r, r, 1e-6);
    QCOMPARE(g.k, k);
    QCOMPARE(g.step, float(step));
}

void PlotBoxTest::transformAndInverse()
{
    PlotTransform box;
    box.setBox(500, 8500, 242, 4242);
    const PlotScale scale{0.4, 0.2, 11.0, 1.0};
    QCOMPARE(PlotX(box, scale, 0.4), 500.0);
    QCOMPARE(PlotX(box, scale, 0.6), 8500.0);
    QCOMPARE(PlotY(box, scale, 11.0), 242.0);
    QCOMPARE(PlotY(box, scale, 12.0), 4242.0); // fainter is lower
    DIP_COMPARE_REL(PlotTimeAt(box, scale, PlotX(box, scale, 0.4567)), 0.4567, 1e-14);
    DIP_COMPARE_REL(PlotMagAt(box, scale, PlotY(box, scale, 11.37)), 11.37, 1e-14);
}

void PlotBoxTest::standardBox()
{
    FormMemory form;
    SetStandardPlotBox(form, 9600.4, 7200.6);
    const PlotTransform& box = form.transform();
    QCOMPARE(box.PlotLeft, 500.0);
    QCOMPARE(box.PlotRight, 9600.0 - 415);
    QCOMPARE(box.PlotTop, 242.0);
    QCOMPARE(box.PlotBottom, 7201.0 - 1850);
    QCOMPARE(box.PlotWidth, 9600.0 - 415 - 500);
    QCOMPARE(box.PlotHeight, 7201.0 - 1850 - 242);
    // The shared box describes the window drawn last.
    QCOMPARE(S().PlotLeft, box.PlotLeft);
    QCOMPARE(S().PlotRight, box.PlotRight);
    QCOMPARE(S().PlotTop, box.PlotTop);
    QCOMPARE(S().PlotBottom, box.PlotBottom);
    QCOMPARE(S().PlotWidth, box.PlotWidth);
    QCOMPARE(S().PlotHeight, box.PlotHeight);
}

void PlotBoxTest::frameClockwise()
{
    LineRecorder rec;
    SetPlotBox(rec, 500, 8500, 242, 4242);
    DrawFrame(rec);
    QCOMPARE(rec.lines.size(), 4);
    QVERIFY(rec.lines[0].colour == colours::black);
    QCOMPARE((QVector<double>{rec.lines[0].x1, rec.lines[0].y1, rec.lines[0].x2, rec.lines[0].y2}),
             (QVector<double>{500, 242, 8500, 242}));
    QCOMPARE((QVector<double>{rec.lines[1].x1, rec.lines[1].y1, rec.lines[1].x2, rec.lines[1].y2}),
             (QVector<double>{8500, 242, 8500, 4242}));
    QCOMPARE((QVector<double>{rec.lines[2].x1, rec.lines[2].y1, rec.lines[2].x2, rec.lines[2].y2}),
             (QVector<double>{8500, 4242, 500, 4242}));
    QCOMPARE((QVector<double>{rec.lines[3].x1, rec.lines[3].y1, rec.lines[3].x2, rec.lines[3].y2}),
             (QVector<double>{500, 4242, 500, 242}));
}

void PlotBoxTest::gridLineOnEdgesDrawn()
{
    // A range of exactly 1.5 from 0 puts grid times 0 and 1.4 inside, and 0 maps onto the
    // left edge exactly; from 0.5 to 2 the right edge is at a grid time too.
    LineRecorder rec;
    SetPlotBox(rec, 500, 8500, 242, 4242);
    const PlotScale scale{0.0, 2.0, 0.0, 1.0};
    const std::vector<double> drawn = DrawTimeGrid(rec, scale, 2.0, 2.0);
    QVERIFY(!drawn.empty());
    QCOMPARE(drawn.front(), 0.0);
    QCOMPARE(rec.lines.front().x1, 500.0);
    QVERIFY(rec.lines.front().colour == colours::lightGrey);
    // step 0.5 for a range of 2 (r = 2, k = 5): 0, 0.5, 1, 1.5, 2 with 2 on the right edge.
    QCOMPARE(drawn.back(), 2.0);
    QCOMPARE(rec.lines.back().x1, 8500.0);
    QCOMPARE(int(drawn.size()), 5);
}

void PlotBoxTest::zeroRangeDivides()
{
    PlotTransform box;
    box.setBox(500, 8500, 242, 4242);
    DIP_EXPECT_RUNTIME_ERROR(PlotX(box, PlotScale{1.0, 0.0, 0.0, 1.0}, 1.5), 11);
}

void PlotBoxTest::axisNumber_data()
{
    QTest::addColumn<double>("value");
    QTest::addColumn<int>("decimals");
    QTest::addColumn<QString>("text");
    QTest::newRow("time") << 2454123.455 << 3 << QStringLiteral("2454123.455");
    QTest::newRow("zeros kept") << 0.2 << 2 << QStringLiteral("0.20");
    QTest::newRow("whole") << 12.0 << 0 << QStringLiteral("12");
    QTest::newRow("negative") << -11.25 << 2 << QStringLiteral("-11.25");
    QTest::newRow("no minus zero") << -0.0001 << 2 << QStringLiteral("0.00");
}

void PlotBoxTest::axisNumber()
{
    QFETCH(double, value);
    QFETCH(int, decimals);
    QFETCH(QString, text);
    QCOMPARE(AxisNumber(value, decimals), text);
}

void PlotBoxTest::gridDecimals_data()
{
    QTest::addColumn<double>("range");
    QTest::addColumn<int>("decimals");
    QTest::newRow("0.037 step 0.005") << 0.037 << 3;
    QTest::newRow("1.5 step 0.2") << 1.5 << 1;
    QTest::newRow("12 step 2") << 12.0 << 0;
    QTest::newRow("0.7 step 0.1") << 0.7 << 1;
    QTest::newRow("250 step 50") << 250.0 << 0;
}

void PlotBoxTest::gridDecimals()
{
    QFETCH(double, range);
    QFETCH(int, decimals);
    const GridStep g = ComputeGridStep(range);
    QCOMPARE(GridDecimals(g), decimals);
    // Every multiple of the step is written exactly with these decimals.
    for (int j = 1; j <= 7; ++j) {
        const double exact = j * double(g.P) * g.k / 10;
        QCOMPARE(AxisNumber(exact, decimals).toDouble(), QString::number(exact, 'g', 6).toDouble());
    }
}

void PlotBoxTest::labelDecimalsFollowDrift_data()
{
    QTest::addColumn<double>("from");
    QTest::addColumn<double>("range");
    QTest::addColumn<bool>("drifts");
    QTest::newRow("reduced times") << 0.4 << 0.2 << false;
    QTest::newRow("full HJD") << 2454123.4 << 0.2 << true;
}

void PlotBoxTest::labelDecimalsFollowDrift()
{
    QFETCH(double, from);
    QFETCH(double, range);
    QFETCH(bool, drifts);
    const GridStep g = ComputeGridStep(range);
    const std::vector<double> times = GridTimes(g.step, from, from + range);
    const int d = LabelDecimals(times, g);
    QCOMPARE(d > GridDecimals(g), drifts);
    const double tolerance = 0.005 * double(g.step);
    for (const double t : times)
        QVERIFY(std::abs(AxisNumber(t, d).toDouble() - t) <= tolerance);
    // One decimal less would misplace at least one number.
    if (d > GridDecimals(g)) {
        bool misplaced = false;
        for (const double t : times)
            misplaced = misplaced || std::abs(AxisNumber(t, d - 1).toDouble() - t) > tolerance;
        QVERIFY(misplaced);
    }
}

void PlotBoxTest::labelStride_data()
{
    QTest::addColumn<double>("spacing");
    QTest::addColumn<qlonglong>("stride");
    QTest::newRow("room for all") << 1000.0 << 1LL;
    QTest::newRow("every 2nd") << 500.0 << 2LL;
    QTest::newRow("every 5th") << 200.0 << 5LL;
    QTest::newRow("every 10th") << 100.0 << 10LL;
    QTest::newRow("every 20th") << 50.0 << 20LL;
    QTest::newRow("mirrored box") << -500.0 << 2LL;
}

void PlotBoxTest::labelStride()
{
    QFETCH(double, spacing);
    QFETCH(qlonglong, stride);
    QCOMPARE(LabelStride(spacing, 800, 90), stride);
    QVERIFY(LabelStride(0, 800, 90) > 1000000);
}

void PlotBoxTest::magnitudeSteps()
{
    // mr = 0.6: L = -1, P = 0.1, r = 6, k = 10, step 0.1; the steps inside 11.03 .. 11.63.
    const PlotScale scale{0, 1, 11.03, 0.6};
    const GridStep g = ComputeGridStep(scale.mr);
    QCOMPARE(g.step, 0.1f);
    const std::vector<double> steps = MagnitudeSteps(scale, g);
    QCOMPARE(int(steps.size()), 6);
    for (int i = 0; i < 6; ++i)
        DIP_COMPARE_REL(steps[i], 11.1 + 0.1 * i, 1e-6);
    QVERIFY(MagnitudeSteps(PlotScale{0, 1, 11, 0}, g).empty());
}

void PlotBoxTest::axesFrameFirstThenGrid()
{
    LineRecorder rec;
    SetPlotBox(rec, 500, 8500, 242, 4242);
    DrawAxes(rec, PlotScale{0.0, 2.0, 11.0, 1.0}, 2.0, 2.0);
    QVERIFY(rec.lines.size() > 4);
    for (int i = 0; i < 4; ++i)
        QVERIFY(rec.lines[i].colour == colours::black);
    // The grid line on the left edge comes after the frame, so it shows over it.
    QVERIFY(rec.lines[4].colour == colours::lightGrey);
    QCOMPARE(rec.lines[4].x1, 500.0);
}

void PlotBoxTest::axesTextsBesideThePlot_data()
{
    QTest::addColumn<double>("t0");
    QTest::addColumn<double>("tr");
    QTest::addColumn<double>("m0");
    QTest::addColumn<double>("mr");
    QTest::addColumn<double>("width");
    QTest::addColumn<double>("height");
    QTest::newRow("HJD, small window") << 2454123.398 << 0.204 << 11.2 << 0.8 << 9600.0 << 6900.0;
    QTest::newRow("HJD, large window") << 2454123.398 << 0.204 << 11.2 << 0.8 << 18000.0 << 13500.0;
    QTest::newRow("reduced, inverted") << 0.398 << 1.504 << -12.31 << 1.37 << 9600.0 << 6900.0;
    QTest::newRow("0.037 days") << 54123.4 << 0.037 << 9.5 << 0.05 << 12000.0 << 9000.0;
}

void PlotBoxTest::axesTextsBesideThePlot()
{
    QFETCH(double, t0);
    QFETCH(double, tr);
    QFETCH(double, m0);
    QFETCH(double, mr);
    QFETCH(double, width);
    QFETCH(double, height);
    LineRecorder rec;
    rec.setFormSize(width, height);
    SetStandardPlotBox(rec, width, height);
    const PlotScale scale{t0, tr, m0, mr};
    DrawAxes(rec, scale, tr, t0 + tr);
    const PlotTransform& s = rec.transform();

    QStringList names;
    int timeNumbers = 0, magNumbers = 0;
    const GridStep g = ComputeGridStep(tr);
    const GridStep mg = ComputeGridStep(mr);
    for (const auto& t : rec.texts) {
        // On the form, and never over the plot box.
        QVERIFY2(t.left >= 0 && t.right <= width && t.top >= 0, qPrintable(t.text));
        const bool inside =
            t.left < s.PlotRight && t.right > s.PlotLeft && t.top < s.PlotBottom && t.bottom > s.PlotTop;
        QVERIFY2(!inside, qPrintable(t.text));
        bool isNumber = false;
        const double value = t.text.toDouble(&isNumber);
        if (!isNumber) {
            names << t.text;
        } else if (t.up) {
            // A magnitude: in the left margin, centred on its tick unless pushed inside the form.
            ++magNumbers;
            QVERIFY(t.right <= s.PlotLeft);
            const double y = PlotY(s, scale, value);
            QVERIFY(std::abs((t.top + t.bottom) / 2 - y) < 1 || t.top == 0 || t.bottom == s.PlotBottom);
            QVERIFY(std::abs(std::remainder(value, double(mg.step))) < 0.01 * double(mg.step));
        } else {
            // A time: under the box, centred on its grid line.
            ++timeNumbers;
            QVERIFY(t.top >= s.PlotBottom);
            const double x = PlotX(s, scale, value);
            QVERIFY(std::abs((t.left + t.right) / 2 - x) < 0.01 * double(g.step) / tr * s.PlotWidth + 1 ||
                    t.left == 0 || t.right == width);
        }
    }
    QCOMPARE(names, (QStringList{QStringLiteral("HJD"), QStringLiteral("Magnitude")}));
    QVERIFY(timeNumbers >= 2);
    QVERIFY(magNumbers >= 2);
    for (int i = 0; i < rec.texts.size(); ++i)
        for (int j = i + 1; j < rec.texts.size(); ++j)
            QVERIFY2(!rec.texts[i].overlaps(rec.texts[j]), qPrintable(rec.texts[i].text + " / " + rec.texts[j].text));
}

void PlotBoxTest::flatCurveHasNoMagnitudeNumbers()
{
    LineRecorder rec;
    SetPlotBox(rec, 500, 8500, 242, 4242);
    DrawAxes(rec, PlotScale{0.0, 2.0, 11.0, 0.0}, 2.0, 2.0);
    for (const auto& t : rec.texts)
        QVERIFY(!t.up);
}

QTEST_GUILESS_MAIN(PlotBoxTest)
#include "tst_plotbox.moc"
