// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
// The Kwee & van Woerden window driven with real mouse presses and button clicks.

#include "MethodWindowTest.h"

#include "methods/gui/MethodStarts.h"
#include "methods/kwee/gui/frmPlott4.h"
#include "plotting/PlotBox.h"
#include "runtime/RuntimeError.h"
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

void openAndPick(frmPlott4& w)
{
    w.showForm();
    w.redraw();
    clickAt(w, 0.3777);
    clickAt(w, 0.5213);
}

} // namespace

class Plott4Test : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init() { QVERIFY(loadText(csv(dipCurve(0.45, 0)))); }

    void mainButtonOpensTheWindow()
    {
        QCOMPARE(checkOpenedWindow(4, QStringLiteral("Kwee & van Woerden - RIGHT-CLICK AT START (left end) OF RANGE."),
                                   {{"Label7", "Left index:"},
                                    {"Label9", "Right index:"},
                                    {"Label11", "Stepp"},
                                    {"Text1", "1"},
                                    {"Label12", "Frac"},
                                    {"Text2", ".9"},
                                    {"Command1", "Fit Kwee"},
                                    {"Command2", "Undo"},
                                    {"Command3", "Done"}}),
                 QString());
        frmPlott4& w = frmPlott4::form();
        const PlotScale scale = CurrentScale();
        QVERIFY(isColour(w.pixelAt(PlotX(w.transform(), scale, S().HJD(20)), PlotY(w.transform(), scale, S().Mag(20))),
                         colours::red));
        clickButton(w, "Command3");
        QVERIFY(w.isHidden());
    }

    void pickAndFit()
    {
        frmPlott4 w;
        openAndPick(w);
        QCOMPARE(w.caption(), QStringLiteral("Kwee & van Woerden - CLICK 'Fit Kwee'; OR 'Undo' TO START OVER."));
        const RangePick& pick = S().KweePick;
        QCOMPARE(w.controlText(QStringLiteral("Label8")), rt::Str(pick.LeftIdx));
        QCOMPARE(w.controlText(QStringLiteral("Label10")), rt::Str(pick.RightIdx));
        QVERIFY(w.controlText(QStringLiteral("Label10")).startsWith(QLatin1String(" 4")));
        // The remembered left time is the first point inside the range.
        QCOMPARE(pick.LeftHJD, S().HJD(pick.LeftIdx));
        QVERIFY(isColour(w.pixelAt(twipsX(0.3777), midY()), colours::purple));
        clickButton(w, "Command1");
        const MainForm& main = mainForm();
        QVERIFY(main.checked(4));
        QVERIFY(std::abs(rt::Val(main.text(4)) - 0.45) < 0.001);
        QVERIFY(!main.text(10).isEmpty() && !main.text(10).startsWith(QLatin1Char(' ')));
        QCOMPARE(w.caption(), QStringLiteral("Kwee & van Woerden - CLICK 'Done' TO EXIT, OR 'Undo' TO START OVER."));
    }

    void parametersAreReadFromTheBoxes()
    {
        frmPlott4 w;
        openAndPick(w);
        w.control<QLineEdit>(QStringLiteral("Text1"))->setText(QStringLiteral("abc"));
        DIP_EXPECT_RUNTIME_ERROR(w.Command1_Click(), 13);
        w.control<QLineEdit>(QStringLiteral("Text1"))->setText(QStringLiteral(" 2 "));
        w.control<QLineEdit>(QStringLiteral("Text2"))->setText(QStringLiteral(".8"));
        w.Command1_Click();
        QVERIFY(mainForm().checked(4));
    }

    void undoKeepsTheEndsPicked()
    {
        frmPlott4 w;
        openAndPick(w);
        clickButton(w, "Command1");
        clickButton(w, "Command2");
        QCOMPARE(mainForm().text(4), QString());
        QCOMPARE(mainForm().text(10), QString());
        QVERIFY(!mainForm().checked(4));
        QCOMPARE(w.caption(), QStringLiteral("Kwee & van Woerden - RIGHT-CLICK AT START OF RANGE."));
        QCOMPARE(w.controlText(QStringLiteral("Label8")), QString());
        clickButton(w, "Command1");
        QVERIFY(!mainForm().checked(4));
        // One new pick on either side and "Fit Kwee" works again.
        clickAt(w, 0.5113);
        clickButton(w, "Command1");
        QVERIFY(mainForm().checked(4));
    }

    void closingUnloadsAndTheNextOpeningStartsAfresh()
    {
        frmPlott4 w;
        openAndPick(w);
        w.close();
        w.showForm();
        w.redraw();
        QCOMPARE(S().KweePick.RangeSet, rt::False);
        QCOMPARE(S().KweePick.LeftSet, rt::False);
        QCOMPARE(w.caption(), QStringLiteral("Kwee & van Woerden - RIGHT-CLICK AT START (left end) OF RANGE."));
    }

    void reopeningShowsTheLeftMarkerAtTheFirstPointInside()
    {
        frmPlott4 w;
        openAndPick(w);
        clickButton(w, "Command3");
        w.showForm();
        w.redraw();
        QCOMPARE(S().KweePick.LeftMarkX,
                 S().PlotLeft + S().PlotWidth * (S().HJD(S().KweePick.LeftIdx) - S().HJDMin) / S().HJDRange);
        QVERIFY(colourNear(w, S().KweePick.LeftMarkX, S().PlotTop + 45, colours::purple));
        QVERIFY(!isColour(w.pixelAt(twipsX(0.3777), S().PlotTop + 45), colours::purple));
    }

    void placementFromWinPos()
    {
        S().WinPos(4, 3) = 9000;
        S().WinPos(4, 4) = 6600;
        frmPlott4 w;
        w.showForm();
        QCOMPARE(w.size(), QSize(600, 440));
    }
};

QTEST_MAIN(Plott4Test)
#include "tst_frmplott4.moc"
