// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
// The parabolic-fit window driven with real mouse presses and button clicks.

#include "MethodWindowTest.h"

#include "mainwindow/gui/frmMain.h"
#include "methods/gui/MethodStarts.h"
#include "methods/parabola/gui/frmPlott1.h"
#include "plotting/PlotBox.h"
#include "plotting/RangePicking.h"
#include "runtime/Numeric.h"
#include "runtime/Text.h"
#include "session/MainForm.h"
#include "session/Procedures.h"
#include "support/TestSupport.h"
#include "support/gui/PlotWindows.h"

#include <QLineEdit>
#include <QMenu>
#include <QPushButton>

#include <cmath>

using namespace dip;
using namespace dip::test;

namespace {

// A window opened as the main window's button opens it, with a range picked and fitted.
void openPickFit(frmPlott1& w)
{
    w.showForm();
    w.redraw();
    clickAt(w, 0.3777);
    clickAt(w, 0.5213);
    clickButton(w, "Command1");
}

} // namespace

class Plott1Test : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init() { QVERIFY(loadText(csv(dipCurve(0.4537, 0.002)))); }

    void mainButtonOpensTheWindow()
    {
        QCOMPARE(checkOpenedWindow(1, QStringLiteral("Fit Parabola - RIGHT-CLICK AT START (left end) OF RANGE."),
                                   {{"Label7", "Left index:"},
                                    {"Label9", "Right index:"},
                                    {"Label11", "RMS dev'n:"},
                                    {"Command1", "Fit Parabola"},
                                    {"Command2", "Undo"},
                                    {"Command3", "Done"}}),
                 QString());
        frmPlott1& w = frmPlott1::form();
        QCOMPARE(S().PlotLeft, 500.0);
        QCOMPARE(S().PlotRight, double(rt::CInt(w.formWidth())) - 415);
        QCOMPARE(S().PlotBottom, double(rt::CInt(w.formHeight())) - 1850);
        // The points in red on the current scale.
        const PlotScale scale = CurrentScale();
        QVERIFY(colourNear(w, PlotX(w.transform(), scale, S().HJD(30)), PlotY(w.transform(), scale, S().Mag(30)),
                           colours::red));
        clickButton(w, "Command3");
        QVERIFY(w.isHidden());
    }

    void rightClicksPickTheRange()
    {
        frmPlott1 w;
        w.showForm();
        w.redraw();
        clickAt(w, 0.3777);
        const RangePick& pick = S().ParabolaPick;
        QCOMPARE(w.caption(), QStringLiteral("Fit Parabola - RIGHT-CLICK AT (right) END OF RANGE."));
        QCOMPARE(pick.LeftHJD, timeAtTwips(twipsX(0.3777)));
        QCOMPARE(pick.LeftIdx, rt::Integer(searchFirstAfter(pick.LeftHJD)));
        QCOMPARE(w.controlText(QStringLiteral("Label8")), rt::Str(pick.LeftIdx));
        QVERIFY(isColour(w.pixelAt(twipsX(0.3777), midY()), colours::purple));
        clickAt(w, 0.5213);
        QCOMPARE(w.caption(), QStringLiteral("Fit Parabola - CLICK 'Fit Parabola', OR 'Undo' TO START OVER."));
        QCOMPARE(w.controlText(QStringLiteral("Label10")), QStringLiteral("  ") + QString::number(pick.RightIdx));
        QCOMPARE(pick.RangeSet, rt::True);
        QVERIFY(isColour(w.pixelAt(twipsX(0.5213), midY()), colours::purple));
        // A second right end overpaints the first marker in white.
        clickAt(w, 0.5513);
        QVERIFY(isColour(w.pixelAt(twipsX(0.5213), midY()), colours::white));
        QVERIFY(isColour(w.pixelAt(twipsX(0.5513), midY()), colours::purple));
        // A left click inside the box picks nothing.
        clickAt(w, 0.33, Qt::LeftButton);
        QVERIFY(isColour(w.pixelAt(twipsX(0.33), midY()), colours::white));
        QCOMPARE(pick.LeftHJD, timeAtTwips(twipsX(0.3777)));
    }

    void pointerFollowsTheBox()
    {
        frmPlott1 w;
        w.showForm();
        w.redraw();
        QTest::mouseMove(w.surface(), QPoint(pixelX(0.45), int(midY() / 15)));
        QCOMPARE(w.mousePointer(), 2);
        QTest::mouseMove(w.surface(), QPoint(5, 5));
        QCOMPARE(w.mousePointer(), 1);
    }

    void fitPublishesAndDrawsTheCurve()
    {
        frmPlott1 w;
        openPickFit(w);
        const MainForm& main = mainForm();
        QVERIFY(main.checked(1));
        QVERIFY(std::abs(rt::Val(main.text(1)) - 0.4537) < 0.002);
        QVERIFY(!main.text(7).isEmpty());
        QCOMPARE(w.controlText(QStringLiteral("Text1")).size(), 8);
        QVERIFY(w.controlText(QStringLiteral("Text1")).startsWith(QLatin1String("   0.0")));
        QCOMPARE(w.caption(), QStringLiteral("Fit Parabola - CLICK 'Done' TO EXIT, OR 'Undo' TO START OVER."));
        // Blue between the picked times, grey outside.
        const Session& s = S();
        const PlotScale scale = CurrentScale();
        int blue = 0, grey = 0;
        for (int k = 1; k <= 100; ++k) {
            const double t = s.FitCurveT(k);
            const double x = PlotX(w.transform(), scale, t);
            const double y = PlotY(w.transform(), scale, s.FitCurveMag(k));
            // The curve is clipped to the box: its samples on the frame are not drawn.
            if (x < s.PlotLeft + 30 || x > s.PlotRight - 30 || y < s.PlotTop + 30 || y > s.PlotBottom - 30 ||
                std::abs(t - s.ParabolaPick.LeftHJD) < 0.006 || std::abs(t - s.ParabolaPick.RightHJD) < 0.006)
                continue;
            const bool inside = s.ParabolaPick.LeftHJD < t && t < s.ParabolaPick.RightHJD;
            QVERIFY(colourNear(w, x, y, inside ? colours::blue : colours::curveGrey));
            (inside ? blue : grey)++;
        }
        QVERIFY(blue > 20);
        QVERIFY(grey > 2);
    }

    void fitBeforeARangeDoesNothing()
    {
        frmPlott1 w;
        w.showForm();
        w.redraw();
        clickAt(w, 0.3777);
        clickButton(w, "Command1");
        QCOMPARE(w.caption(), QStringLiteral("Fit Parabola - RIGHT-CLICK AT (right) END OF RANGE."));
        QCOMPARE(mainForm().text(1), QString());
    }

    void undo()
    {
        frmPlott1 w;
        openPickFit(w);
        const double markX = S().ParabolaPick.LeftMarkX;
        clickButton(w, "Command2");
        const MainForm& main = mainForm();
        QCOMPARE(main.text(1), QString());
        QCOMPARE(main.text(7), QString());
        QVERIFY(!main.checked(1));
        QCOMPARE(w.controlText(QStringLiteral("Text1")), QString());
        QCOMPARE(w.controlText(QStringLiteral("Label8")), QString());
        QCOMPARE(w.controlText(QStringLiteral("Label10")), QString());
        QCOMPARE(w.caption(), QStringLiteral("Fit Parabola - RIGHT-CLICK AT START OF RANGE."));
        QVERIFY(!isColour(w.pixelAt(markX, midY()), colours::purple));
        // The first new left pick erases at the old marker position, over the fresh plot.
        clickAt(w, 0.40);
        QVERIFY(isColour(w.pixelAt(markX, midY()), colours::white));
    }

    void reopeningShowsMarkersAndCurveAtTheNewScale()
    {
        frmPlott1 w;
        openPickFit(w);
        clickButton(w, "Command3");
        QVERIFY(w.isHidden());
        // Deleting the last point changes the scale.
        S().PickIdx = 61;
        SetPickedDeleted(true);
        w.showForm();
        w.redraw();
        QVERIFY(colourNear(w, S().ParabolaPick.RightMarkX, S().PlotTop + 45, colours::purple));
        QCOMPARE(S().ParabolaPick.RightMarkX,
                 S().PlotLeft + S().PlotWidth * (S().ParabolaPick.RightHJD - S().HJDMin) / S().HJDRange);
        const PlotScale scale = CurrentScale();
        QVERIFY(colourNear(w, PlotX(w.transform(), scale, S().FitCurveT(50)),
                           PlotY(w.transform(), scale, S().FitCurveMag(50)), colours::blue));
    }

    void resizeStoresThePlacementAndRedraws()
    {
        frmPlott1 w;
        openPickFit(w);
        w.resize(720, 540);
        QCOMPARE(int(S().WinPos(1, 3)), 720 * 15);
        QCOMPARE(int(S().WinPos(1, 4)), 540 * 15);
        QCOMPARE(S().PlotRight, double(rt::CInt(w.formWidth())) - 415);
        QVERIFY(colourNear(w, S().ParabolaPick.LeftMarkX, S().PlotTop + 45, colours::purple));
        QCOMPARE(S().ParabolaPick.LeftMarkX,
                 S().PlotLeft + S().PlotWidth * (S().ParabolaPick.LeftHJD - S().HJDMin) / S().HJDRange);
        // The controls follow the height.
        QCOMPARE(w.control<QPushButton>(QStringLiteral("Command1"))->y(),
                 int(std::lround((w.formHeight() - 1310) / 15)));
    }

    void resultsReachTheMainWindow()
    {
        DataFolder folder;
        const QString file = folder.write(QStringLiteral("dip.csv"), csv(dipCurve(0.4537, 0.002)));
        resetSession();
        frmMain main;
        main.show();
        main.openFromCommandLine(file);
        QCOMPARE(S().NumPts, rt::Integer(61));
        main.findChild<QPushButton*>(QStringLiteral("Command1"))->click();
        frmPlott1& w = frmPlott1::form();
        QVERIFY(w.isVisible());
        clickAt(w, 0.3777);
        clickAt(w, 0.5213);
        clickButton(w, "Command1");
        QVERIFY(main.checked(1));
        QVERIFY(std::abs(rt::Val(main.text(1)) - 0.4537) < 0.002);
        QVERIFY(!main.text(7).isEmpty());
        clickButton(w, "Command2");
        QCOMPARE(main.text(1), QString());
        QVERIFY(!main.checked(1));
        clickButton(w, "Command3");
    }

    void placementFromWinPos()
    {
        S().WinPos(1, 1) = 1500;
        S().WinPos(1, 2) = 1200;
        S().WinPos(1, 3) = 9900;
        S().WinPos(1, 4) = 7500;
        frmPlott1 w;
        w.showForm();
        QCOMPARE(w.size(), QSize(660, 500));
    }
};

QTEST_MAIN(Plott1Test)
#include "tst_frmplott1.moc"
