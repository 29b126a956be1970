// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#include "plotting/LightCurve.h"
#include "plotting/PlotBox.h"
#include "session/MainForm.h"
#include "session/Procedures.h"
#include "session/Session.h"
#include "support/CanvasRecorder.h"
#include "support/TestSupport.h"

#include <algorithm>

using namespace dip;
using dip::test::twelvePoints;

namespace {

using Recorder = test::CanvasRecorder;

// The light-curve box and transform, computed here from the form size on their own.
double expectedX(double width, double t)
{
    const Session& s = S();
    return 500 + (width - 415 - 500) * (t - s.FullHJDMin) / s.FullHJDRange;
}
double expectedY(double height, double m)
{
    const Session& s = S();
    return 242 + (height - 1850 - 242) * (m - s.FullMagMin) / s.FullMagRange;
}

// A box of 8000 x 4000 twips at (500, 242) showing times 0 .. tr and magnitudes 0 .. mr.
PlotTransform setFullScale(double tr, double mr)
{
    Session& s = S();
    PlotTransform box;
    box.setBox(500, 8500, 242, 4242);
    s.FullHJDMin = 0;
    s.FullHJDRange = tr;
    s.FullMagMin = 0;
    s.FullMagRange = mr;
    return box;
}

// Deletes point i as the editor does.
void deletePoint(int i)
{
    S().PickIdx = rt::Integer(i);
    SetPickedDeleted(true);
}

} // namespace

class LightCurveTest : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void init() { QVERIFY(test::loadText(test::csv(twelvePoints()))); }
    void drawsDiscsAndCrossesWithFullExtents();
    void keepsItsScaleAfterADelete();
    void picksNearestInDataUnits();
    void equalPointsLowerIndexWins();
    void deletedPointsArePicked();
    void farClicksPickNothing_data();
    void farClicksPickNothing();
    void blueCrossOverThePick();
    void boxesReadTheCompactedArrays();
    void deleteAndUndeleteFollowTheCount();
};

void LightCurveTest::drawsDiscsAndCrossesWithFullExtents()
{
    deletePoint(2);
    Recorder rec;
    rec.setFormSize(9600, 6900);
    PlotLightCurve(rec);
    QCOMPARE(rec.clears, 1);
    QCOMPARE(rec.transform().PlotLeft, 500.0);
    QCOMPARE(rec.transform().PlotBottom, 6900.0 - 1850);
    QCOMPARE(S().PlotLeft, 500.0);
    QCOMPARE(S().PlotBottom, 6900.0 - 1850);

    // Eleven used points: fifteen red circles of radius 1 .. 15 each, at the transform.
    QCOMPARE(rec.circles.size(), 11 * 15);
    const auto points = twelvePoints();
    int c = 0;
    for (int i = 1; i <= 12; ++i) {
        if (i == 2)
            continue;
        for (int r = 1; r <= 15; ++r, ++c) {
            QVERIFY(rec.circles[c].colour == colours::red);
            QCOMPARE(rec.circles[c].r, double(r));
            DIP_COMPARE_REL(rec.circles[c].x, expectedX(9600, points[i - 1].first), 1e-12);
            DIP_COMPARE_REL(rec.circles[c].y, expectedY(6900, points[i - 1].second), 1e-12);
        }
    }
    // The deleted point: a red cross of two diagonal strokes, 100 twips each way.
    const QList<Recorder::Line> red = rec.linesIn(colours::red);
    QCOMPARE(red.size(), 2);
    const double x = expectedX(9600, points[1].first), y = expectedY(6900, points[1].second);
    QVERIFY(std::abs(red[0].x1 - (x - 100)) < 1e-6 && std::abs(red[0].y1 - (y - 100)) < 1e-6);
    QVERIFY(std::abs(red[0].x2 - (x + 100)) < 1e-6 && std::abs(red[0].y2 - (y + 100)) < 1e-6);
    QVERIFY(std::abs(red[1].x1 - (x - 100)) < 1e-6 && std::abs(red[1].y1 - (y + 100)) < 1e-6);
    QVERIFY(std::abs(red[1].x2 - (x + 100)) < 1e-6 && std::abs(red[1].y2 - (y - 100)) < 1e-6);
    // Frame and grid are there too, in black and grey.
    QVERIFY(rec.linesIn(colours::black).size() >= 4);
    QVERIFY(!rec.linesIn(colours::lightGrey).isEmpty());
}

void LightCurveTest::keepsItsScaleAfterADelete()
{
    Recorder before;
    PlotLightCurve(before);
    const double hjdMax = S().HJDMax, magMax = S().MagMax;
    deletePoint(12); // the last point
    deletePoint(6);  // and the faintest
    QVERIFY(S().HJDMax < hjdMax);
    QVERIFY(S().MagMax < magMax);
    Recorder after;
    PlotLightCurve(after);
    // Point 1 is where it was: the Full extents give the scale, not the used points'.
    QCOMPARE(after.circles.first().x, before.circles.first().x);
    QCOMPARE(after.circles.first().y, before.circles.first().y);
    QCOMPARE(after.circles.size(), before.circles.size() - 2 * 15);
}

void LightCurveTest::picksNearestInDataUnits()
{
    // A day weighs as much as a magnitude: with 10 days across and 0.1 magnitude down, B is
    // nearer on the screen but A is nearer in data units.
    Session& s = S();
    const PlotTransform box = setFullScale(10, 0.1);
    s.NumOrig = 2;
    s.OrigHJD(1) = 1.0, s.OrigMag(1) = 0.05;  // A
    s.OrigHJD(2) = 1.02, s.OrigMag(2) = 0.06; // B
    const PlotScale scale = FullScale();
    const double x = PlotX(box, scale, 1.0), y = PlotY(box, scale, 0.06);
    QVERIFY(std::hypot(PlotX(box, scale, 1.02) - x, 0) < std::hypot(0, PlotY(box, scale, 0.05) - y));
    QCOMPARE(int(PickNearestPoint(box, x, y)), 1);
    QCOMPARE(int(s.PickIdx), 1);
}

void LightCurveTest::equalPointsLowerIndexWins()
{
    Session& s = S();
    s.OrigHJD(9) = s.OrigHJD(4);
    s.OrigMag(9) = s.OrigMag(4);
    Recorder rec;
    PlotLightCurve(rec);
    const PlotScale scale = FullScale();
    const PlotTransform& box = rec.transform();
    QCOMPARE(int(PickNearestPoint(box, PlotX(box, scale, s.OrigHJD(9)), PlotY(box, scale, s.OrigMag(9)))), 4);
}

void LightCurveTest::deletedPointsArePicked()
{
    deletePoint(7);
    Recorder rec;
    PlotLightCurve(rec);
    const PlotScale scale = FullScale();
    const PlotTransform& box = rec.transform();
    QCOMPARE(int(PickNearestPoint(box, PlotX(box, scale, S().OrigHJD(7)), PlotY(box, scale, S().OrigMag(7)))), 7);
}

void LightCurveTest::farClicksPickNothing_data()
{
    // One twip is one day across and one magnitude down; the point sits at (500, 242).
    QTest::addColumn<double>("dx");
    QTest::addColumn<double>("dy");
    QTest::addColumn<int>("picked");
    QTest::newRow("D = 9900.25") << 99.5 << 0.0 << 1;
    QTest::newRow("D = 9990.5") << 99.5 << 9.5 << 1;
    QTest::newRow("D = 10000") << 100.0 << 0.0 << 0;
    QTest::newRow("D = 10000.25") << 99.5 << 10.0 << 0;
}

void LightCurveTest::farClicksPickNothing()
{
    QFETCH(double, dx);
    QFETCH(double, dy);
    QFETCH(int, picked);
    Session& s = S();
    const PlotTransform box = setFullScale(8000, 4000);
    s.NumOrig = 1;
    s.OrigHJD(1) = 0;
    s.OrigMag(1) = 0;
    s.PickIdx = 5;
    QCOMPARE(int(PickNearestPoint(box, 500 + dx, 242 + dy)), picked);
}

void LightCurveTest::blueCrossOverThePick()
{
    Recorder rec;
    PlotLightCurve(rec);
    // The curve itself, its frame and its axes are never clipped.
    QVERIFY(std::none_of(rec.calls.begin(), rec.calls.end(), [](const auto& c) { return c.clipped; }));
    QVERIFY(rec.clips.isEmpty());
    S().PickIdx = 3;
    rec.lines.clear();
    MarkPick(rec);
    const PlotScale scale = FullScale();
    const double x = PlotX(rec.transform(), scale, S().OrigHJD(3)), y = PlotY(rec.transform(), scale, S().OrigMag(3));
    QCOMPARE(rec.lines.size(), 2);
    for (const auto& l : rec.lines) {
        QVERIFY(l.colour == colours::blue);
        // A point at the edge of the box keeps its cross inside it.
        QVERIFY(l.clipped);
    }
    QCOMPARE((QVector<double>{rec.lines[0].x1, rec.lines[0].y1, rec.lines[0].x2, rec.lines[0].y2}),
             (QVector<double>{x - 200, y, x + 200, y}));
    QCOMPARE((QVector<double>{rec.lines[1].x1, rec.lines[1].y1, rec.lines[1].x2, rec.lines[1].y2}),
             (QVector<double>{x, y - 200, x, y + 200}));
}

void LightCurveTest::boxesReadTheCompactedArrays()
{
    S().PickIdx = 10;
    PickTexts texts = PickedPointTexts();
    QCOMPARE(texts.index, QStringLiteral("10"));
    QCOMPARE(texts.time, QStringLiteral(" 1000.200000"));
    QCOMPARE(texts.magn, QStringLiteral("  11.100"));
    // Deliberately: after deleting point 3, the 10th used point is point 11 of the file.
    deletePoint(3);
    S().PickIdx = 10;
    texts = PickedPointTexts();
    QCOMPARE(texts.index, QStringLiteral("10"));
    QCOMPARE(texts.time, QStringLiteral(" 1000.210000"));
    QCOMPARE(texts.magn, QStringLiteral("  11.110"));
}

void LightCurveTest::deleteAndUndeleteFollowTheCount()
{
    QCOMPARE(mainForm().editedCountLabel(), QStringLiteral("12"));
    deletePoint(5);
    QCOMPARE(mainForm().editedCountLabel(), QStringLiteral("11"));
    SetPickedDeleted(false);
    QCOMPARE(mainForm().editedCountLabel(), QStringLiteral("12"));
    // "Delete" with nothing picked flags element 0, which nothing reads.
    S().PickIdx = 0;
    SetPickedDeleted(true);
    QCOMPARE(mainForm().editedCountLabel(), QStringLiteral("12"));
}

QTEST_GUILESS_MAIN(LightCurveTest)
#include "tst_lightcurve.moc"
