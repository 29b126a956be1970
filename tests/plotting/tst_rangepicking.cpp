// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers

#include "plotting/PlotBox.h"
#include "plotting/RangePicking.h"
#include "runtime/Numeric.h"
#include "session/LoadDataFile.h"
#include "session/Procedures.h"
#include "session/Session.h"
#include "support/CanvasRecorder.h"
#include "support/TestSupport.h"

#include <QFileInfo>
#include <QtTest>

using namespace dip;
using dip::test::CanvasRecorder;

Q_DECLARE_METATYPE(dip::MousePointer)

namespace {

// Eleven points 10.125, 10.25, ... 11.375 (exact in binary); the deepest is point 6 at 10.75.
std::vector<std::pair<double, double>> vCurve()
{
    std::vector<std::pair<double, double>> points;
    for (int i = 1; i <= 11; ++i)
        points.emplace_back(10 + 0.125 * i, 12 - 0.1 * std::abs(i - 6));
    return points;
}

double pointTime(int i) { return 10 + 0.125 * i; }

// The plot box of the method window the clicks fall on.
PlotTransform& theBox()
{
    static PlotTransform box;
    return box;
}

void loadCurve(const std::vector<std::pair<double, double>>& points)
{
    QVERIFY(test::loadText(test::csv(points)));
    FormMemory window;
    SetStandardPlotBox(window, 9000, 6000); // a method window's box: 500, 8585, 242, 4150
    theBox() = window.transform();
}

// A form drawn with that box.
void giveBox(Canvas& form) { form.transform() = theBox(); }

double xAt(double t)
{
    const Session& s = S();
    const PlotTransform& b = theBox();
    return b.PlotLeft + b.PlotWidth * (t - s.HJDMin) / s.HJDRange;
}

double yMid() { return (theBox().PlotTop + theBox().PlotBottom) / 2; }

const RangePickStyle& styleNamed(const QString& name)
{
    return name == QLatin1String("parabola") ? parabolaRangeStyle() : kweeRangeStyle();
}

RangePick& pickNamed(const QString& name)
{
    return name == QLatin1String("parabola") ? S().ParabolaPick : S().KweePick;
}

bool samePick(const RangePick& a, const RangePick& b)
{
    return a.LeftIdx == b.LeftIdx && a.RightIdx == b.RightIdx && a.LeftSet == b.LeftSet && a.RightSet == b.RightSet &&
           a.RangeSet == b.RangeSet && a.Fitted == b.Fitted && a.LeftMarkX == b.LeftMarkX &&
           a.RightMarkX == b.RightMarkX && a.LeftHJD == b.LeftHJD && a.RightHJD == b.RightHJD;
}

void addStyles()
{
    QTest::addColumn<QString>("style");
    QTest::newRow("frmPlott1") << QStringLiteral("parabola");
    QTest::newRow("frmPlott4") << QStringLiteral("kwee");
}

} // namespace

class TestRangePicking : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init() { loadCurve(vCurve()); }

    void prompts_data()
    {
        QTest::addColumn<QString>("style");
        QTest::addColumn<QString>("load");
        QTest::addColumn<QString>("left");
        QTest::addColumn<QString>("right");
        QTest::addColumn<QString>("fitted");
        QTest::addColumn<QString>("undone");
        QTest::newRow("frmPlott1") << "parabola"
                                   << "Fit Parabola - RIGHT-CLICK AT START (left end) OF RANGE."
                                   << "Fit Parabola - RIGHT-CLICK AT (right) END OF RANGE."
                                   << "Fit Parabola - CLICK 'Fit Parabola', OR 'Undo' TO START OVER."
                                   << "Fit Parabola - CLICK 'Done' TO EXIT, OR 'Undo' TO START OVER."
                                   << "Fit Parabola - RIGHT-CLICK AT START OF RANGE.";
        QTest::newRow("frmPlott4") << "kwee"
                                   << "Kwee & van Woerden - RIGHT-CLICK AT START (left end) OF RANGE."
                                   << "Kwee & van Woerden - RIGHT-CLICK AT (right) END OF RANGE."
                                   << "Kwee & van Woerden - CLICK 'Fit Kwee'; OR 'Undo' TO START OVER."
                                   << "Kwee & van Woerden - CLICK 'Done' TO EXIT, OR 'Undo' TO START OVER."
                                   << "Kwee & van Woerden - RIGHT-CLICK AT START OF RANGE.";
    }
    void prompts()
    {
        QFETCH(QString, style);
        CanvasRecorder form;
        giveBox(form);
        RangePicker picker(pickNamed(style), form, styleNamed(style));
        picker.formLoad();
        QTEST(form.caption(), "load");
        picker.mouseDown(Click::atTwips(xAt(10.4), yMid(), 2));
        QTEST(form.caption(), "left");
        picker.mouseDown(Click::atTwips(xAt(11.1), yMid(), 2));
        QTEST(form.caption(), "right");
        picker.showFitted();
        QTEST(form.caption(), "fitted");
        picker.undo();
        QTEST(form.caption(), "undone");
    }

    void outsideBoxChangesNothing_data()
    {
        QTest::addColumn<double>("x");
        QTest::addColumn<double>("y");
        QTest::addColumn<int>("button");
        const double inX = 4000, inY = 2000;
        for (int button : {1, 2}) {
            const QByteArray b = button == 1 ? "left button" : "right button";
            QTest::newRow("left of the box, " + b) << 499.0 << inY << button;
            QTest::newRow("right of the box, " + b) << 8586.0 << inY << button;
            QTest::newRow("above the box, " + b) << inX << 241.0 << button;
            QTest::newRow("below the box, " + b) << inX << 4151.0 << button;
        }
    }
    void outsideBoxChangesNothing()
    {
        QFETCH(double, x);
        QFETCH(double, y);
        QFETCH(int, button);
        RangePick& pick = S().ParabolaPick;
        pick.LeftIdx = 3;
        pick.RightIdx = 9;
        pick.LeftSet = rt::True;
        pick.RightSet = rt::True;
        pick.RangeSet = rt::False; // inconsistent on purpose: only a click inside recomputes it
        pick.LeftMarkX = 1234;
        pick.RightMarkX = 5678;
        const RangePick before = pick;
        CanvasRecorder form;
        giveBox(form);
        form.setCaption(QStringLiteral("unchanged"));
        RangePicker(pick, form, parabolaRangeStyle()).mouseDown(Click::atTwips(x, y, rt::Integer(button)));
        QVERIFY(samePick(pick, before));
        QVERIFY(form.calls.empty());
        QCOMPARE(form.caption(), QStringLiteral("unchanged"));
    }

    void edgesCountAsInside_data()
    {
        QTest::addColumn<double>("x");
        QTest::addColumn<double>("y");
        QTest::newRow("left edge") << 500.0 << 2000.0;
        QTest::newRow("top edge") << xAt(10.4) << 242.0;
        QTest::newRow("bottom edge") << xAt(10.4) << 4150.0;
    }
    void edgesCountAsInside()
    {
        QFETCH(double, x);
        QFETCH(double, y);
        CanvasRecorder form;
        giveBox(form);
        RangePicker(S().ParabolaPick, form, parabolaRangeStyle()).mouseDown(Click::atTwips(x, y, 2));
        QCOMPARE(S().ParabolaPick.LeftSet, rt::True);
        QCOMPARE(S().ParabolaPick.LeftIdx, rt::Integer(x == 500 ? 1 : 4));
    }

    void rightEdgePicksRightEnd()
    {
        CanvasRecorder form;
        giveBox(form);
        RangePicker(S().ParabolaPick, form, parabolaRangeStyle()).mouseDown(Click::atTwips(8585, 2000, 2));
        QCOMPARE(S().ParabolaPick.RightSet, rt::True);
        QCOMPARE(S().ParabolaPick.RightIdx, rt::Integer(11));
    }

    void leftClickRecomputesRangeSet_data() { addStyles(); }
    void leftClickRecomputesRangeSet()
    {
        QFETCH(QString, style);
        RangePick& pick = pickNamed(style);
        pick.LeftIdx = 2;
        pick.RightIdx = 10;
        pick.LeftSet = rt::True;
        pick.RightSet = rt::True;
        pick.RangeSet = rt::False;
        CanvasRecorder form;
        giveBox(form);
        RangePicker picker(pick, form, styleNamed(style));
        picker.mouseDown(Click::atTwips(xAt(10.4), yMid(), 1));
        QCOMPARE(pick.RangeSet, rt::True);
        QCOMPARE(pick.LeftIdx, rt::Integer(2));
        QCOMPARE(pick.RightIdx, rt::Integer(10));
        QVERIFY(form.calls.empty());

        pick.RightSet = rt::False;
        picker.mouseDown(Click::atTwips(xAt(11.0), yMid(), 4));
        QCOMPARE(pick.RangeSet, rt::False);
    }

    void rightEndLeftOfEveryPointKeepsRightIdx_data() { addStyles(); }
    void rightEndLeftOfEveryPointKeepsRightIdx()
    {
        QFETCH(QString, style);
        // The deepest point is the first one, so a click at its time is a right end with no
        // point before it.
        loadCurve({{1.0, 13.0}, {1.1, 12.5}, {1.2, 12.0}, {1.3, 11.5}, {1.4, 11.0}});
        RangePick& pick = pickNamed(style);
        CanvasRecorder form;
        giveBox(form);
        RangePicker picker(pick, form, styleNamed(style));
        picker.mouseDown(Click::atTime(theBox(), 0.999));
        QCOMPARE(pick.LeftIdx, rt::Integer(1));
        picker.mouseDown(Click::atTime(theBox(), 1.0));
        QCOMPARE(pick.RightSet, rt::True);
        QCOMPARE(pick.RangeSet, rt::True);
        QCOMPARE(pick.RightIdx, rt::Integer(0));
        QVERIFY(!picker.ready());

        // An index set before stays as it was.
        picker.mouseDown(Click::atTime(theBox(), 1.25));
        QCOMPARE(pick.RightIdx, rt::Integer(3));
        picker.mouseDown(Click::atTime(theBox(), 1.0));
        QCOMPARE(pick.RightIdx, rt::Integer(3));
        QVERIFY(picker.ready());
    }

    void secondClickOnASideReplacesTheFirst_data() { addStyles(); }
    void secondClickOnASideReplacesTheFirst()
    {
        QFETCH(QString, style);
        RangePick& pick = pickNamed(style);
        CanvasRecorder form;
        giveBox(form);
        RangePicker picker(pick, form, styleNamed(style));
        // The mouse positions arrive in single precision, and the markers are drawn there.
        const double x1 = rt::Single(xAt(11.1)), x2 = rt::Single(xAt(11.3));
        picker.mouseDown(Click::atTwips(xAt(11.1), yMid(), 2));
        picker.mouseDown(Click::atTwips(xAt(11.3), yMid(), 2));
        QVERIFY(x1 != xAt(11.1));
        const auto lines = form.verticalLines();
        QCOMPARE(lines.size(), qsizetype(4));
        // The first erase paints at x = 0, where no marker was drawn yet.
        QCOMPARE(lines[0].x1, 0.0);
        QVERIFY(lines[0].colour == colours::white);
        QCOMPARE(lines[1].x1, x1);
        QVERIFY(lines[1].colour == colours::purple);
        QCOMPARE(lines[2].x1, x1);
        QVERIFY(lines[2].colour == colours::white);
        QCOMPARE(lines[3].x1, x2);
        QVERIFY(lines[3].colour == colours::purple);
        for (const auto& c : form.calls) {
            QCOMPARE(c.y1, theBox().PlotTop);
            QCOMPARE(c.y2, theBox().PlotBottom);
            // Markers and erase lines inside the box only: the first erase at x = 0 paints
            // nothing left of the box.
            QVERIFY(c.clipped);
        }
        QCOMPARE(form.clips.size(), qsizetype(4));
        QCOMPARE(pick.RightMarkX, x2);
        QCOMPARE(pick.RightIdx, rt::Integer(10)); // 11.25 is the last point before 11.3
        QCOMPARE(pick.LeftSet, rt::False);
        QCOMPARE(pick.RangeSet, rt::False);
    }

    void rightEndMayComeFirst()
    {
        CanvasRecorder form;
        giveBox(form);
        RangePicker picker(S().ParabolaPick, form, parabolaRangeStyle());
        picker.mouseDown(Click::atTime(theBox(), 11.1));
        QCOMPARE(S().ParabolaPick.RangeSet, rt::False);
        picker.mouseDown(Click::atTime(theBox(), 10.4));
        QCOMPARE(S().ParabolaPick.RangeSet, rt::True);
        QCOMPARE(form.caption(), parabolaRangeStyle().leftPickedPrompt);
        QVERIFY(picker.ready());
    }

    void clickAtReferenceTimeIsARightEnd()
    {
        CanvasRecorder form;
        giveBox(form);
        RangePicker picker(S().ParabolaPick, form, parabolaRangeStyle());
        const double ref = S().OrigHJD(S().FullIdxMagMax);
        QCOMPARE(ref, pointTime(6));
        picker.mouseDown(Click::atTime(theBox(), ref));
        QCOMPARE(S().ParabolaPick.RightSet, rt::True);
        QCOMPARE(S().ParabolaPick.LeftSet, rt::False);
        QCOMPARE(S().ParabolaPick.RightIdx, rt::Integer(5));
        picker.mouseDown(Click::atTime(theBox(), std::nextafter(ref, 0.0)));
        QCOMPARE(S().ParabolaPick.LeftSet, rt::True);
        QCOMPARE(S().ParabolaPick.LeftIdx, rt::Integer(6));
    }

    void sideRuleUsesTheFullListAfterDeletions()
    {
        // Delete the deepest point: the deepest used point is now point 5 (10.625), but the side
        // is still decided at the time of the point found at load, 10.75.
        Session& s = S();
        s.PickIdx = 6;
        SetPickedDeleted(true);
        QCOMPARE(s.HJD(s.IdxMagMax), pointTime(5));
        QCOMPARE(s.FullIdxMagMax, rt::Integer(6));
        CanvasRecorder form;
        giveBox(form);
        RangePicker picker(s.ParabolaPick, form, parabolaRangeStyle());
        picker.mouseDown(Click::atTime(theBox(), 10.7));
        QCOMPARE(s.ParabolaPick.LeftSet, rt::True);
        QCOMPARE(s.ParabolaPick.RightSet, rt::False);
        // Used index 6 is now the old point 7.
        QCOMPARE(s.ParabolaPick.LeftIdx, rt::Integer(6));
        QCOMPARE(s.HJD(6), pointTime(7));
    }

    void sideRuleFollowsAChangeOfSense()
    {
        Session& s = S();
        ApplyMagSense(1);
        // Inverted, the "deepest" point is the brightest: the first of the equal ends, point 1.
        QCOMPARE(s.FullIdxMagMax, rt::Integer(1));
        CanvasRecorder form;
        giveBox(form);
        RangePicker picker(s.ParabolaPick, form, parabolaRangeStyle());
        picker.mouseDown(Click::atTime(theBox(), 10.4));
        QCOMPARE(s.ParabolaPick.RightSet, rt::True);
        QCOMPARE(s.ParabolaPick.LeftSet, rt::False);
    }

    void clickAtAPointsTimeExcludesIt_data()
    {
        QTest::addColumn<QString>("style");
        QTest::addColumn<QString>("leftLabel");
        QTest::addColumn<QString>("rightLabel");
        QTest::newRow("frmPlott1") << "parabola"
                                   << " 4"
                                   << "   8";
        QTest::newRow("frmPlott4") << "kwee"
                                   << " 4"
                                   << " 8";
    }
    void clickAtAPointsTimeExcludesIt()
    {
        QFETCH(QString, style);
        RangePick& pick = pickNamed(style);
        CanvasRecorder form;
        giveBox(form);
        RangePicker picker(pick, form, styleNamed(style));
        picker.mouseDown(Click::atTime(theBox(), pointTime(3)));
        picker.mouseDown(Click::atTime(theBox(), pointTime(9)));
        QCOMPARE(pick.LeftIdx, rt::Integer(4));
        QCOMPARE(pick.RightIdx, rt::Integer(8));
        QTEST(form.controlText(QStringLiteral("Label8")), "leftLabel");
        QTEST(form.controlText(QStringLiteral("Label10")), "rightLabel");
    }

    void labelsOfTwoDigitIndexes_data()
    {
        QTest::addColumn<QString>("style");
        QTest::addColumn<QString>("rightLabel");
        QTest::newRow("frmPlott1 pads to 4") << "parabola"
                                             << "  12";
        QTest::newRow("frmPlott4 leaves the sign blank") << "kwee"
                                                         << " 12";
    }
    void labelsOfTwoDigitIndexes()
    {
        QFETCH(QString, style);
        std::vector<std::pair<double, double>> points;
        for (int i = 1; i <= 15; ++i)
            points.emplace_back(i, 10 - std::abs(i - 4) * 0.1);
        loadCurve(points);
        CanvasRecorder form;
        giveBox(form);
        RangePicker picker(pickNamed(style), form, styleNamed(style));
        picker.mouseDown(Click::atTime(theBox(), 2.5));
        picker.mouseDown(Click::atTime(theBox(), 12.5));
        QCOMPARE(form.controlText(QStringLiteral("Label8")), QStringLiteral(" 3"));
        QTEST(form.controlText(QStringLiteral("Label10")), "rightLabel");
    }

    void rememberedTimes()
    {
        CanvasRecorder form;
        giveBox(form);
        RangePicker parabola(S().ParabolaPick, form, parabolaRangeStyle());
        RangePicker kwee(S().KweePick, form, kweeRangeStyle());
        for (RangePicker* p : {&parabola, &kwee}) {
            p->mouseDown(Click::atTime(theBox(), 10.3));
            p->mouseDown(Click::atTime(theBox(), 11.1));
        }
        // frmPlott1 remembers the click, frmPlott4 the first point inside the range.
        QCOMPARE(S().ParabolaPick.LeftHJD, 10.3);
        QCOMPARE(S().KweePick.LeftHJD, pointTime(3));
        QCOMPARE(S().ParabolaPick.RightHJD, 11.1);
        QCOMPARE(S().KweePick.RightHJD, 11.1);
    }

    void kweeLeftTimeWithNoLaterPointIsTheSlotPastTheUsedPoints()
    {
        // The deepest point is the last; once it is deleted, a click after every used point but
        // before its time is a left end that finds no point.
        loadCurve({{1.0, 10.0}, {1.1, 10.5}, {1.2, 11.0}, {1.3, 11.5}, {1.4, 12.0}});
        Session& s = S();
        s.PickIdx = 5;
        SetPickedDeleted(true);
        QCOMPARE(s.NumPts, rt::Integer(4));
        CanvasRecorder form;
        giveBox(form);
        RangePicker picker(s.KweePick, form, kweeRangeStyle());
        picker.mouseDown(Click::atTime(theBox(), 1.15));
        QCOMPARE(s.KweePick.LeftIdx, rt::Integer(3));
        picker.mouseDown(Click::atTime(theBox(), 1.301));
        QCOMPARE(s.KweePick.LeftIdx, rt::Integer(3));
        QCOMPARE(s.KweePick.LeftSet, rt::True);
        // HJD(5) still holds the deleted point's time: entries above NumPts keep old values.
        QCOMPARE(s.KweePick.LeftHJD, 1.4);
    }

    void markerRedrawFollowsTheScale()
    {
        CanvasRecorder form;
        giveBox(form);
        RangePicker picker(S().ParabolaPick, form, parabolaRangeStyle());
        picker.mouseDown(Click::atTime(theBox(), 10.3));
        picker.mouseDown(Click::atTime(theBox(), 11.1));
        // Deleting the first point moves HJDMin, so the same times map elsewhere.
        S().PickIdx = 1;
        SetPickedDeleted(true);
        form.cls();
        picker.redrawMarkers();
        const double left = 500 + 8085 * (10.3 - S().HJDMin) / S().HJDRange;
        const double right = 500 + 8085 * (11.1 - S().HJDMin) / S().HJDRange;
        DIP_COMPARE_REL(S().ParabolaPick.LeftMarkX, left, 1e-12);
        DIP_COMPARE_REL(S().ParabolaPick.RightMarkX, right, 1e-12);
        const auto lines = form.verticalLines();
        QCOMPARE(lines.size(), qsizetype(2));
        QCOMPARE(lines[0].x1, S().ParabolaPick.LeftMarkX);
        QVERIFY(lines[0].colour == colours::purple);
        QCOMPARE(lines[1].x1, S().ParabolaPick.RightMarkX);
    }

    void kweeReopeningShowsTheLeftMarkerAtTheFirstPointInside()
    {
        CanvasRecorder form;
        giveBox(form);
        RangePicker picker(S().KweePick, form, kweeRangeStyle());
        const Click click = Click::atTwips(xAt(10.3), yMid(), 2);
        picker.mouseDown(click);
        picker.mouseDown(Click::atTwips(xAt(11.1), yMid(), 2));
        QCOMPARE(S().KweePick.LeftMarkX, click.X);
        picker.redrawMarkers();
        DIP_COMPARE_REL(S().KweePick.LeftMarkX, xAt(pointTime(3)), 1e-12);
        QVERIFY(std::abs(S().KweePick.LeftMarkX - click.X) > 100);
    }

    void storedMarkersAreNotRecomputed()
    {
        RangePick& pick = S().KweePick;
        pick.LeftMarkX = 1111;
        pick.RightMarkX = 7777;
        pick.LeftHJD = 10.5;
        CanvasRecorder form;
        giveBox(form);
        RangePicker(pick, form, kweeRangeStyle()).drawStoredMarkers();
        const auto lines = form.verticalLines();
        QCOMPARE(lines.size(), qsizetype(2));
        QCOMPARE(lines[0].x1, 1111.0);
        QCOMPARE(lines[1].x1, 7777.0);
        QVERIFY(lines[1].colour == colours::purple);
    }

    void undoParabolaClearsAllFlags()
    {
        RangePick& pick = S().ParabolaPick;
        CanvasRecorder form;
        giveBox(form);
        RangePicker picker(pick, form, parabolaRangeStyle());
        picker.mouseDown(Click::atTime(theBox(), 10.3));
        picker.mouseDown(Click::atTime(theBox(), 11.1));
        pick.Fitted = rt::True;
        const RangePick before = pick;
        picker.undo();
        QCOMPARE(pick.LeftSet, rt::False);
        QCOMPARE(pick.RightSet, rt::False);
        QCOMPARE(pick.RangeSet, rt::False);
        QCOMPARE(pick.Fitted, rt::False);
        QCOMPARE(pick.LeftIdx, before.LeftIdx);
        QCOMPARE(pick.RightIdx, before.RightIdx);
        QCOMPARE(pick.LeftMarkX, before.LeftMarkX);
        QCOMPARE(pick.RightHJD, before.RightHJD);
        QCOMPARE(form.controlText(QStringLiteral("Label8")), QString());
        QCOMPARE(form.controlText(QStringLiteral("Label10")), QString());
        // One new pick is not a range.
        picker.mouseDown(Click::atTime(theBox(), 10.4));
        QCOMPARE(pick.RangeSet, rt::False);
    }

    void undoKweeKeepsTheEndFlags()
    {
        RangePick& pick = S().KweePick;
        CanvasRecorder form;
        giveBox(form);
        RangePicker picker(pick, form, kweeRangeStyle());
        picker.mouseDown(Click::atTime(theBox(), 10.3));
        picker.mouseDown(Click::atTime(theBox(), 11.1));
        pick.Fitted = rt::True;
        picker.undo();
        QCOMPARE(pick.LeftSet, rt::True);
        QCOMPARE(pick.RightSet, rt::True);
        QCOMPARE(pick.RangeSet, rt::False);
        QCOMPARE(pick.Fitted, rt::False);
        QCOMPARE(form.controlText(QStringLiteral("Label8")), QString());
        // A single new pick on either side completes the range again.
        picker.mouseDown(Click::atTime(theBox(), 11.2));
        QCOMPARE(pick.RangeSet, rt::True);
        QVERIFY(picker.ready());
    }

    void firstPickAfterUndoErasesAtTheOldMarker_data() { addStyles(); }
    void firstPickAfterUndoErasesAtTheOldMarker()
    {
        QFETCH(QString, style);
        RangePick& pick = pickNamed(style);
        CanvasRecorder form;
        giveBox(form);
        RangePicker picker(pick, form, styleNamed(style));
        picker.mouseDown(Click::atTwips(xAt(10.3), yMid(), 2));
        const double oldX = pick.LeftMarkX;
        picker.undo();
        form.cls();
        picker.mouseDown(Click::atTwips(xAt(10.5), yMid(), 2));
        const auto lines = form.verticalLines();
        QCOMPARE(lines.size(), qsizetype(2));
        QCOMPARE(lines[0].x1, oldX);
        QVERIFY(lines[0].colour == colours::white);
    }

    void formLoad_data() { addStyles(); }
    void formLoad()
    {
        QFETCH(QString, style);
        RangePick& pick = pickNamed(style);
        pick.LeftIdx = 2;
        pick.RightIdx = 9;
        pick.LeftSet = pick.RightSet = pick.RangeSet = pick.Fitted = rt::True;
        CanvasRecorder form;
        giveBox(form);
        RangePicker(pick, form, styleNamed(style)).formLoad();
        const bool kwee = style == QLatin1String("kwee");
        // frmPlott4's load clears the end flags and RangeSet; frmPlott1's leaves the record.
        QCOMPARE(pick.LeftSet, kwee ? rt::False : rt::True);
        QCOMPARE(pick.RightSet, kwee ? rt::False : rt::True);
        QCOMPARE(pick.RangeSet, kwee ? rt::False : rt::True);
        QCOMPARE(pick.Fitted, rt::True);
        QCOMPARE(pick.LeftIdx, rt::Integer(2));
        QCOMPARE(pick.RightIdx, rt::Integer(9));
    }

    void loadingAFileClearsOnlyTheFlags()
    {
        CanvasRecorder form;
        giveBox(form);
        for (RangePick* pick : {&S().ParabolaPick, &S().KweePick}) {
            RangePicker picker(*pick, form, pick == &S().ParabolaPick ? parabolaRangeStyle() : kweeRangeStyle());
            picker.mouseDown(Click::atTime(theBox(), 10.3));
            picker.mouseDown(Click::atTime(theBox(), 11.1));
            pick->Fitted = rt::True;
        }
        const RangePick parabola = S().ParabolaPick;
        // Reload in place (the helper would reset the session).
        QVERIFY(OpenDataFile(QFileInfo(S().DataPath).absolutePath(), S().DataName));
        for (const RangePick* pick : {&S().ParabolaPick, &S().KweePick}) {
            QCOMPARE(pick->LeftSet, rt::False);
            QCOMPARE(pick->RightSet, rt::False);
            QCOMPARE(pick->RangeSet, rt::False);
            QCOMPARE(pick->Fitted, rt::False);
            QCOMPARE(pick->LeftIdx, rt::Integer(3));
            QCOMPARE(pick->RightIdx, rt::Integer(8));
        }
        QCOMPARE(S().ParabolaPick.LeftMarkX, parabola.LeftMarkX);
        QCOMPARE(S().ParabolaPick.LeftHJD, parabola.LeftHJD);
        QCOMPARE(S().ParabolaPick.RightHJD, parabola.RightHJD);
    }

    void readiness()
    {
        RangePick& pick = S().ParabolaPick;
        CanvasRecorder form;
        giveBox(form);
        RangePicker picker(pick, form, parabolaRangeStyle());
        pick.RangeSet = rt::True;
        pick.LeftIdx = 5;
        pick.RightIdx = 0;
        QVERIFY(!picker.ready());
        pick.RightIdx = 2; // no check that the ends are in order
        QVERIFY(picker.ready());
        pick.LeftIdx = 0;
        QVERIFY(!picker.ready());
        pick.LeftIdx = 5;
        pick.RangeSet = rt::False;
        QVERIFY(!picker.ready());
    }

    void pointer_data()
    {
        QTest::addColumn<double>("x");
        QTest::addColumn<double>("y");
        QTest::addColumn<MousePointer>("expected");
        QTest::newRow("inside") << 4000.0 << 2000.0 << MousePointer::Cross;
        QTest::newRow("just inside the left edge") << 501.0 << 2000.0 << MousePointer::Cross;
        QTest::newRow("on the left edge") << 500.0 << 2000.0 << MousePointer::Arrow;
        QTest::newRow("on the right edge") << 8585.0 << 2000.0 << MousePointer::Arrow;
        QTest::newRow("on the top edge") << 4000.0 << 242.0 << MousePointer::Arrow;
        QTest::newRow("on the bottom edge") << 4000.0 << 4150.0 << MousePointer::Arrow;
        QTest::newRow("outside") << 100.0 << 2000.0 << MousePointer::Arrow;
    }
    void pointer()
    {
        QFETCH(double, x);
        QFETCH(double, y);
        QFETCH(MousePointer, expected);
        QCOMPARE(pointerAt(theBox(), x, y), expected);
        QCOMPARE(int(pointerAt(theBox(), 4000, 2000)), 2);
        QCOMPARE(int(pointerAt(theBox(), 0, 0)), 1);
    }

    void clickTimeForms()
    {
        const Session& s = S();
        const PlotTransform& b = theBox();
        const double x = 3001;
        const Click click = Click::atTwips(x, 2000, 2);
        QCOMPARE(clickTime(b, click), s.HJDMin + s.HJDRange * ((x - b.PlotLeft) / b.PlotWidth));
        QCOMPARE(clickTime(b, click, ClickTimeForm::LeftToRight),
                 s.HJDMin + s.HJDRange * (x - b.PlotLeft) / b.PlotWidth);
        DIP_COMPARE_REL(clickTime(theBox(), click), clickTime(theBox(), click, ClickTimeForm::LeftToRight), 1e-14);
    }

    void replayedClicks()
    {
        const Session& s = S();
        const Click c = Click::atTime(theBox(), 10.6);
        QVERIFY(c.exactTime);
        QCOMPARE(c.Button, rt::Integer(2));
        QCOMPARE(clickTime(theBox(), c), 10.6);
        QCOMPARE(clickTime(theBox(), c, ClickTimeForm::LeftToRight), 10.6);
        DIP_COMPARE_REL((c.X - theBox().PlotLeft) / theBox().PlotWidth, (10.6 - s.HJDMin) / s.HJDRange, 1e-14);
        QVERIFY(clickInsideBox(theBox(), Click::atTime(theBox(), s.HJDMin)));
        QVERIFY(clickInsideBox(theBox(), Click::atTime(theBox(), s.HJDMin + s.HJDRange)));
        QVERIFY(!clickInsideBox(theBox(), Click::atTime(theBox(), std::nextafter(s.HJDMin, 0.0))));
        QVERIFY(!clickInsideBox(theBox(), Click::atTime(theBox(), s.HJDMin + s.HJDRange + 1e-9)));
    }

    void searches()
    {
        QCOMPARE(searchFirstAfter(9.0), rt::Integer(1));
        QCOMPARE(searchFirstAfter(pointTime(4)), rt::Integer(5));
        QCOMPARE(searchFirstAfter(12.0), rt::Integer(12)); // NumPts + 1: nothing later
        QCOMPARE(searchLastBefore(12.0), rt::Integer(11));
        QCOMPARE(searchLastBefore(pointTime(4)), rt::Integer(3));
        QCOMPARE(searchLastBefore(9.0), rt::Integer(0));
    }

    void onlyTheConsoleFormDrawsNothing()
    {
        FormMemory memory;
        CanvasRecorder recording;
        QVERIFY(!memory.drawsAnything());
        QVERIFY(recording.drawsAnything());
    }
};

QTEST_GUILESS_MAIN(TestRangePicking)
#include "tst_rangepicking.moc"
