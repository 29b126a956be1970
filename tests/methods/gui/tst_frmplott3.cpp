// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
// The bisect-chords window driven with real mouse presses and button clicks.

#include "MethodWindowTest.h"

#include "methods/chords/gui/frmPlott3.h"
#include "methods/gui/MethodStarts.h"
#include "plotting/PlotBox.h"
#include "runtime/Numeric.h"
#include "runtime/Text.h"
#include "session/MainForm.h"
#include "support/TestSupport.h"
#include "support/gui/PlotWindows.h"

#include <QMenu>
#include <QPushButton>

#include <cmath>

using namespace dip;
using namespace dip::test;

namespace {

const double picks[] = {0.3777, 0.4303, 0.4811, 0.5213};

void openAndPick(frmPlott3& w)
{
    w.showForm();
    w.redraw();
    for (double t : picks)
        clickAt(w, t);
}

} // namespace

class Plott3Test : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init() { QVERIFY(loadText(csv(dipCurve(0.4537, 0.002)))); }

    void mainButtonOpensTheWindow()
    {
        QCOMPARE(checkOpenedWindow(3, QStringLiteral("Bisect Chords - RIGHT-CLICK AT START (left end) OF LEFT RANGE."),
                                   {{"Label7", "Left index (1):"},
                                    {"Label9", "Left index (2):"},
                                    {"Label11", "Right index (3):"},
                                    {"Label13", "Right index (4):"},
                                    {"Command1", "Bisect Chords"},
                                    {"Command2", "Undo"},
                                    {"Command3", "Done"}}),
                 QString());
        frmPlott3& w = frmPlott3::form();
        QCOMPARE(S().PlotBottom, double(rt::CInt(w.formHeight())) - 1850);
        const std::vector<std::pair<const char*, int>> lefts = {
            {"Label9", 240},   {"Label10", 1560}, {"Command1", 2140}, {"Label11", 3960}, {"Label13", 3960},
            {"Label12", 5200}, {"Label14", 5200}, {"Command2", 5700}, {"Command3", 7200}};
        for (const auto& [name, left] : lefts)
            QCOMPARE(w.findChild<QWidget*>(QLatin1String(name))->x(), int(std::lround(left / 15.0)));
        QVERIFY(w.findChild<QMenu*>(QStringLiteral("mFile")));
        const PlotScale scale = CurrentScale();
        QVERIFY(isColour(w.pixelAt(PlotX(w.transform(), scale, S().HJD(20)), PlotY(w.transform(), scale, S().Mag(20))),
                         colours::red));
        clickButton(w, "Command3");
        QVERIFY(w.isHidden());
    }

    void fourClicksAndBisect()
    {
        frmPlott3 w;
        w.showForm();
        w.redraw();
        const QString prompts[] = {QStringLiteral("Bisect Chords - RIGHT-CLICK AT (right) END OF LEFT RANGE."),
                                   QStringLiteral("Bisect Chords - RIGHT-CLICK AT START (left end) OF RIGHT RANGE."),
                                   QStringLiteral("Bisect Chords - RIGHT-CLICK AT (right) END OF RIGHT RANGE."),
                                   QStringLiteral("Bisect Chords - CLICK 'Bisect Chords', OR 'Undo' TO START OVER.")};
        for (int i = 0; i < 4; ++i) {
            clickAt(w, picks[i]);
            QCOMPARE(w.caption(), prompts[i]);
            QVERIFY(isColour(w.pixelAt(twipsX(picks[i]), midY()), colours::purple));
        }
        const ChordPick& p = S().Chords;
        QCOMPARE(w.controlText(QStringLiteral("Label8")), rt::Str(p.Idx1));
        QCOMPARE(w.controlText(QStringLiteral("Label14")), rt::Str(p.Idx4));
        QCOMPARE(p.RangeSet, rt::True);
        // The click time multiplies before it divides.
        const double x = twipsX(picks[0]);
        QCOMPARE(p.HJD1, S().HJDMin + S().HJDRange * (x - S().PlotLeft) / S().PlotWidth);
        clickButton(w, "Command1");
        const MainForm& main = mainForm();
        QVERIFY(main.checked(3));
        QVERIFY(std::abs(rt::Val(main.text(3)) - 0.4537) < 0.001);
        QVERIFY(!main.text(9).startsWith(QLatin1Char(' ')));
        QCOMPARE(w.caption(), QStringLiteral("Bisect Chords - CLICK 'Done' TO EXIT, OR 'Undo' TO START OVER."));
    }

    void undo()
    {
        frmPlott3 w;
        openAndPick(w);
        clickButton(w, "Command1");
        clickButton(w, "Command2");
        QCOMPARE(mainForm().text(3), QString());
        QCOMPARE(mainForm().text(9), QString());
        QVERIFY(!mainForm().checked(3));
        QCOMPARE(w.caption(), QStringLiteral("Bisect Chords - RIGHT-CLICK AT START (left end) OF LEFT RANGE."));
        for (const char* label : {"Label8", "Label10", "Label12", "Label14"})
            QCOMPARE(w.controlText(QLatin1String(label)), QString());
        QVERIFY(!isColour(w.pixelAt(twipsX(picks[0]), midY()), colours::purple));
        clickButton(w, "Command1");
        QVERIFY(!mainForm().checked(3));
    }

    void reopeningRedrawsTheMarkersAndBisectsAtOnce()
    {
        frmPlott3 w;
        openAndPick(w);
        clickButton(w, "Command3");
        w.showForm();
        w.redraw();
        for (double t : picks)
            QVERIFY(colourNear(w, S().PlotLeft + S().PlotWidth * (t - S().HJDMin) / S().HJDRange, S().PlotTop + 45,
                               colours::purple));
        clickButton(w, "Command1");
        QVERIFY(mainForm().checked(3));
        // Closed from the title bar, it starts the picking afresh.
        w.close();
        w.showForm();
        w.redraw();
        QCOMPARE(S().Chords.RangeSet, rt::False);
        QCOMPARE(S().Chords.LeftStage, rt::Integer(0));
    }

    void placementFromWinPos()
    {
        S().WinPos(3, 3) = 10500;
        S().WinPos(3, 4) = 7200;
        frmPlott3 w;
        w.showForm();
        QCOMPARE(w.size(), QSize(700, 480));
    }
};

QTEST_MAIN(Plott3Test)
#include "tst_frmplott3.moc"
