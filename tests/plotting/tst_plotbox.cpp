// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#include "plotting/PlotBox.h"
#include "session/Session.h"
#include "support/TestSupport.h"

#include <cmath>

using namespace dip;

namespace {

// Records the lines drawn, with their colours.
class LineRecorder : public FormMemory {
public:
    struct Line {
        Rgb colour;
        double x1, y1, x2, y2;
    };
    QList<Line> lines;
    void setForeColor(Rgb c) override { m_colour = c; }
    void line(double x1, double y1, double x2, double y2) override { lines << Line{m_colour, x1, y1, x2, y2}; }

private:
    Rgb m_colour;
};

} // namespace

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
    SetPlotBox(500, 8500, 242, 4242);
    const PlotScale scale{0.4, 0.2, 11.0, 1.0};
    QCOMPARE(PlotX(scale, 0.4), 500.0);
    QCOMPARE(PlotX(scale, 0.6), 8500.0);
    QCOMPARE(PlotY(scale, 11.0), 242.0);
    QCOMPARE(PlotY(scale, 12.0), 4242.0); // fainter is lower
    DIP_COMPARE_REL(PlotTimeAt(scale, PlotX(scale, 0.4567)), 0.4567, 1e-14);
    DIP_COMPARE_REL(PlotMagAt(scale, PlotY(scale, 11.37)), 11.37, 1e-14);
}

void PlotBoxTest::standardBox()
{
    SetStandardPlotBox(9600.4, 7200.6);
    QCOMPARE(S().PlotLeft, 500.0);
    QCOMPARE(S().PlotRight, 9600.0 - 415);
    QCOMPARE(S().PlotTop, 242.0);
    QCOMPARE(S().PlotBottom, 7201.0 - 1850);
    QCOMPARE(S().PlotWidth, 9600.0 - 415 - 500);
    QCOMPARE(S().PlotHeight, 7201.0 - 1850 - 242);
}

void PlotBoxTest::frameClockwise()
{
    SetPlotBox(500, 8500, 242, 4242);
    LineRecorder rec;
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
    SetPlotBox(500, 8500, 242, 4242);
    LineRecorder rec;
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
    SetPlotBox(500, 8500, 242, 4242);
    DIP_EXPECT_RUNTIME_ERROR(PlotX(PlotScale{1.0, 0.0, 0.0, 1.0}, 1.5), 11);
}

QTEST_GUILESS_MAIN(PlotBoxTest)
#include "tst_plotbox.moc"
