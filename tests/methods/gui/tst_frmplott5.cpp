// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#include "methods/fourier/gui/frmPlott5.h"
#include "methods/gui/MethodStarts.h"
#include "plotting/PlotBox.h"
#include "runtime/Text.h"
#include "session/MainForm.h"
#include "session/Procedures.h"
#include "session/Session.h"
#include "support/TestSupport.h"
#include "support/gui/PixelChecks.h"

#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QPushButton>

#include <cmath>

using namespace dip;
using dip::test::colourNear;
using dip::test::countPixels;
using dip::test::isColour;

namespace {

// A dip of the model m(t) = C + sum A_k (cos(k W (t - Xo)) - 1) in 81 points over 0.16 day,
// with a little scatter; the deepest point lies near the middle.
std::vector<std::pair<double, double>> dipPoints()
{
    std::vector<std::pair<double, double>> points;
    const double xo = 2451234.5678, w = 30, c = 12.5, a[5] = {0.3, 0.1, 0.04, 0.01, 0.003};
    for (int i = 0; i < 81; ++i) {
        const double t = 2451234.49 + 0.002 * i;
        points.push_back({t, test::fourierMag(t, xo, c, w, a) + 0.004 * std::sin(37.0 * i)});
    }
    return points;
}

const QStringList nearStart = {"2451234.566", "12.45", "29", ".25", ".12", ".05", ".012", ".002"};

} // namespace

class FrmPlott5Test : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void init();
    void opensWithDesignAndStartValues();
    void placementLineFive();
    void rightClicksPickTheRange();
    void otherButtonsAndOutsideDoNotPick();
    void mousePointer();
    void updateWithoutRangeSaysSo();
    void updatePreviewsThickThenRedrawIsThin();
    void fitPublishesAndRewritesBoxes();
    void secondFitDoesNothing();
    void undoAndPickAgain();
    void resizeStoresPlacementAndRedrawsThin();
    void doneAndExitHide();
    void reopenRedrawsMarkersAndCurve();
    void focusChangesRedraw();
    void markersKeptThroughUpdateAndResize();
    void undoAsksForTheRangeAsAtOpening();

private:
    frmPlott5* m_form = nullptr;
    void open();
    void rightClick(double t);
    void type(const QStringList& texts);
    void click(QPushButton* button) { QTest::mouseClick(button, Qt::LeftButton); }
    // The window opened, the range picked around the dip, the start values typed.
    void openAndPick();
    double xOf(double t) const { return PlotX(m_form->transform(), CurrentScale(), t); }
    double yOf(double m) const { return PlotY(m_form->transform(), CurrentScale(), m); }
    // Point i of the stored model curve lies inside the plot box and is drawn in blue.
    bool curveDrawnAt(int i) const
    {
        const FourierState& f = S().Fourier;
        const PlotTransform& b = m_form->transform();
        const double x = xOf(f.CurveT(i)), y = yOf(f.CurveM(i));
        return x > b.PlotLeft + 30 && x < b.PlotRight - 30 && y > b.PlotTop + 30 && y < b.PlotBottom - 30 &&
               colourNear(*m_form, x, y, colours::blue);
    }
};

void FrmPlott5Test::init()
{
    if (frmPlott5* form = frmPlott5::existing())
        form->close(); // unloaded: the next opening loads it afresh
    test::freshSession();
}

void FrmPlott5Test::open()
{
    QVERIFY(test::loadText(test::csv(dipPoints())));
    S().RangeFirst = 1;
    S().RangeLast = S().NumPts;
    PressMethodButton(5);
    m_form = frmPlott5::existing();
    QVERIFY(m_form);
    QVERIFY(m_form->isVisible());
}

// A right-click at the pixel nearest to the time's place on the plot.
void FrmPlott5Test::rightClick(double t)
{
    const QPointF p = PlotWindow::toPixels(xOf(t), (S().PlotTop + S().PlotBottom) / 2);
    QTest::mouseClick(m_form->surface(), Qt::RightButton, {}, p.toPoint());
}

void FrmPlott5Test::type(const QStringList& texts)
{
    for (int k = 1; k <= 8; ++k) {
        QLineEdit* box = m_form->Text1(k);
        box->selectAll();
        QTest::keyClicks(box, texts[k - 1]);
    }
}

void FrmPlott5Test::openAndPick()
{
    open();
    rightClick(2451234.5205);
    rightClick(2451234.6105);
    type(nearStart);
}

void FrmPlott5Test::opensWithDesignAndStartValues()
{
    open();
    QCOMPARE(m_form->windowTitle(), QStringLiteral("Fit Fourier - RIGHT-CLICK AT START (left end) OF RANGE."));
    const QStringList captions = {"ToM, Xo",   "Const, C",  "A.Freq, W", "Const, A1",
                                  "Const, A2", "Const, A3", "Const, A4", "Const, A5"};
    for (int k = 1; k <= 8; ++k) {
        QCOMPARE(m_form->controlText(QStringLiteral("Label%1").arg(10 + k)), captions[k - 1]);
        QCOMPARE(m_form->Text1(k)->objectName(), QStringLiteral("Text1_%1").arg(k));
        QCOMPARE(m_form->Text1(k)->text(), rt::NumText(S().Fourier.FourierPar(k)));
        // The boxes sit right of the plot box.
        QVERIFY(m_form->Text1(k)->x() * TwipsPerPixel > S().PlotRight);
    }
    QCOMPARE(m_form->Text1(3)->text(), QStringLiteral("25"));
    QCOMPARE(m_form->Text1(4)->text(), QStringLiteral(".2"));
    QCOMPARE(m_form->controlText("Command1"), QStringLiteral("Update"));
    QCOMPARE(m_form->controlText("Command2"), QStringLiteral(" Fit Fourier"));
    QCOMPARE(m_form->controlText("Command3"), QStringLiteral("Undo"));
    QCOMPARE(m_form->controlText("Command4"), QStringLiteral("Done"));
    QCOMPARE(m_form->controlText("Label7"), QStringLiteral("Left index:"));
    QCOMPARE(m_form->controlText("Label9"), QStringLiteral("Right index:"));
    QVERIFY(m_form->controlText("Label8").isEmpty());
    QVERIFY(m_form->controlText("Label10").isEmpty());
    const QList<QAction*> actions = m_form->findChild<QMenu*>(QStringLiteral("mFile"))->actions();
    QCOMPARE(actions.size(), 4);
    // The light curve: red points in a framed box.
    const Session& s = S();
    QVERIFY(colourNear(*m_form, xOf(s.HJD(40)), PlotY(m_form->transform(), CurrentScale(), s.Mag(40)), colours::red));
    QVERIFY(isColour(m_form->pixelAt(s.PlotLeft, (s.PlotTop + s.PlotBottom) / 2), colours::black));
}

void FrmPlott5Test::placementLineFive()
{
    S().WinPos(5, 1) = 1500;
    S().WinPos(5, 2) = 1200;
    S().WinPos(5, 3) = 10500;
    S().WinPos(5, 4) = 7500;
    QVERIFY(test::loadText(test::csv(dipPoints())));
    S().WinPos(5, 3) = 10500;
    S().WinPos(5, 4) = 7500;
    S().RangeFirst = 1;
    S().RangeLast = S().NumPts;
    PressMethodButton(5);
    m_form = frmPlott5::existing();
    QCOMPARE(m_form->width(), 10500 / TwipsPerPixel);
    QCOMPARE(m_form->height(), 7500 / TwipsPerPixel);
    // Nothing stored back while it was being placed.
    QCOMPARE(S().WinPos(5, 3), rt::Integer(10500));
}

void FrmPlott5Test::rightClicksPickTheRange()
{
    open();
    const double leftT = 2451234.5205, rightT = 2451234.6105;
    rightClick(leftT);
    const RangePick& r = S().Fourier.Range;
    QCOMPARE(r.LeftSet, rt::True);
    QCOMPARE(m_form->windowTitle(), QStringLiteral("Fit Fourier - RIGHT-CLICK AT (right) END OF RANGE."));
    QCOMPARE(m_form->controlText("Label10"), rt::Str(r.LeftIdx));
    QCOMPARE(r.LeftIdx, rt::Integer(17)); // the first point after 2451234.5205
    QVERIFY(colourNear(*m_form, r.LeftMarkX, (S().PlotTop + S().PlotBottom) / 2, colours::purple));
    rightClick(rightT);
    QCOMPARE(r.RangeSet, rt::True);
    QCOMPARE(r.RightIdx, rt::Integer(61));
    QCOMPARE(m_form->controlText("Label8"), QStringLiteral(" 61"));
    QCOMPARE(m_form->windowTitle(), QStringLiteral("Fit Fourier - CLICK 'Fit Fourier', OR 'Undo' TO START OVER."));
    QVERIFY(colourNear(*m_form, r.RightMarkX, S().PlotTop + 300, colours::purple));
    // A second left pick paints the first marker over in white.
    const double oldX = r.LeftMarkX;
    rightClick(2451234.5305);
    QVERIFY(!colourNear(*m_form, oldX, S().PlotTop + 300, colours::purple));
    QCOMPARE(r.LeftIdx, rt::Integer(22));
}

void FrmPlott5Test::otherButtonsAndOutsideDoNotPick()
{
    open();
    const Session& s = S();
    QTest::mouseClick(m_form->surface(), Qt::LeftButton, {},
                      PlotWindow::toPixels(xOf(2451234.52), (s.PlotTop + s.PlotBottom) / 2).toPoint());
    QTest::mouseClick(m_form->surface(), Qt::RightButton, {},
                      PlotWindow::toPixels(s.PlotLeft - 60, (s.PlotTop + s.PlotBottom) / 2).toPoint());
    QCOMPARE(S().Fourier.Range.LeftSet, rt::False);
    QCOMPARE(S().Fourier.Range.RightSet, rt::False);
    QCOMPARE(m_form->windowTitle(), QStringLiteral("Fit Fourier - RIGHT-CLICK AT START (left end) OF RANGE."));
}

void FrmPlott5Test::mousePointer()
{
    open();
    const Session& s = S();
    QTest::mouseMove(m_form->surface(), PlotWindow::toPixels(s.PlotLeft + 600, s.PlotTop + 600).toPoint());
    QCOMPARE(m_form->mousePointer(), 2);
    QTest::mouseMove(m_form->surface(), PlotWindow::toPixels(s.PlotRight + 90, s.PlotTop + 600).toPoint());
    QCOMPARE(m_form->mousePointer(), 1);
}

void FrmPlott5Test::updateWithoutRangeSaysSo()
{
    open();
    test::MessageRecorder messages;
    click(m_form->Command1());
    click(m_form->Command2());
    QCOMPARE(messages.messages(),
             QStringList({QStringLiteral("Select range first"), QStringLiteral("Select range first")}));
    QCOMPARE(countPixels(m_form->picture(), colours::blue), 0);
}

void FrmPlott5Test::updatePreviewsThickThenRedrawIsThin()
{
    open();
    rightClick(2451234.5205);
    rightClick(2451234.6105);
    for (int k = 1; k <= 8; ++k)
        S().Fourier.ParEdited(k) = rt::False;
    type(nearStart);
    for (int k = 1; k <= 8; ++k)
        QCOMPARE(S().Fourier.ParEdited(k), rt::True);
    click(m_form->Command1());
    QCOMPARE(S().Fourier.FourierPar(3), 29.0);
    const FourierState& f = S().Fourier;
    for (int i = 0; i <= 100; i += 10)
        QVERIFY(colourNear(*m_form, xOf(f.CurveT(i)), PlotY(m_form->transform(), CurrentScale(), f.CurveM(i)),
                           colours::blue));
    const int thick = countPixels(m_form->picture(), colours::blue);
    // Focus redraws: the plot, then the same curve one stroke thin.
    m_form->Form_GotFocus();
    const int thin = countPixels(m_form->picture(), colours::blue);
    QVERIFY(thin > 0);
    QVERIFY2(thick > thin * 3 / 2, qPrintable(QStringLiteral("thick %1, thin %2").arg(thick).arg(thin)));
    for (int i = 0; i <= 100; i += 10)
        QVERIFY(colourNear(*m_form, xOf(f.CurveT(i)), PlotY(m_form->transform(), CurrentScale(), f.CurveM(i)),
                           colours::blue));
    m_form->Form_LostFocus();
    QCOMPARE(countPixels(m_form->picture(), colours::blue), thin);
}

void FrmPlott5Test::fitPublishesAndRewritesBoxes()
{
    openAndPick();
    click(m_form->Command1());
    click(m_form->Command2());
    const FourierState& f = S().Fourier;
    QCOMPARE(f.FourierFitDone, rt::True);
    QCOMPARE(mainForm().text(5), FormatResult(f.FourierPar(1)));
    QCOMPARE(mainForm().text(11), FormatResult(std::sqrt(f.Covar(8, 8))));
    QVERIFY(mainForm().checked(5));
    QVERIFY(std::abs(f.FourierPar(1) - 2451234.5678) < 1e-3);
    QCOMPARE(m_form->windowTitle(), QStringLiteral("Fourier fit - CLICK 'Done' TO EXIT, OR 'Undo' TO START OVER."));
    for (int k = 1; k <= 8; ++k)
        QCOMPARE(m_form->Text1(k)->text(), FormatFixed(f.FourierPar(k), 9, 5));
    // The fitted minimum lies a little below the faintest point, outside the box, where the curve
    // is clipped; its flanks are drawn.
    QVERIFY(yOf(f.CurveM(50)) > S().PlotBottom);
    QVERIFY(!colourNear(*m_form, xOf(f.CurveT(50)), S().PlotBottom + 2 * TwipsPerPixel, colours::blue));
    QVERIFY(curveDrawnAt(25));
    QVERIFY(curveDrawnAt(75));
}

void FrmPlott5Test::secondFitDoesNothing()
{
    openAndPick();
    click(m_form->Command1());
    click(m_form->Command2());
    const QString time = mainForm().text(5);
    const QImage before = m_form->picture();
    type({"1", "2", "3", "4", "5", "6", "7", "8"});
    test::MessageRecorder messages;
    click(m_form->Command2());
    QVERIFY(messages.messages().isEmpty());
    QCOMPARE(mainForm().text(5), time);
    QCOMPARE(m_form->picture(), before);
}

void FrmPlott5Test::undoAndPickAgain()
{
    openAndPick();
    click(m_form->Command1());
    click(m_form->Command2());
    const QString time = mainForm().text(5);
    click(m_form->Command3());
    for (int k = 1; k <= 8; ++k)
        QCOMPARE(m_form->Text1(k)->text(), FormatFixed(rt::Val(nearStart[k - 1]), 8, 5));
    QCOMPARE(m_form->Text1(1)->text(), QStringLiteral("2451234."));
    QVERIFY(m_form->controlText("Label8").isEmpty());
    QVERIFY(m_form->controlText("Label10").isEmpty());
    QVERIFY(mainForm().text(5).isEmpty());
    QVERIFY(mainForm().text(11).isEmpty());
    QVERIFY(mainForm().checked(5));
    QCOMPARE(countPixels(m_form->picture(), colours::blue), 0);
    QCOMPARE(S().Fourier.Alamda, -1.0);

    test::MessageRecorder messages;
    click(m_form->Command2());
    QCOMPARE(messages.messages(), QStringList{QStringLiteral("Select range first")});
    rightClick(2451234.5205);
    rightClick(2451234.6105);
    click(m_form->Command2());
    QCOMPARE(mainForm().text(5), time);
}

void FrmPlott5Test::resizeStoresPlacementAndRedrawsThin()
{
    openAndPick();
    click(m_form->Command1());
    const int thick = countPixels(m_form->picture(), colours::blue);
    m_form->resize(800, 560);
    QTRY_COMPARE(S().WinPos(5, 3), rt::Integer(800 * TwipsPerPixel));
    QCOMPARE(S().WinPos(5, 4), rt::Integer(560 * TwipsPerPixel));
    QCOMPARE(S().PlotRight, m_form->formWidth() - FourierRightMargin);
    const int thin = countPixels(m_form->picture(), colours::blue);
    QVERIFY(thin > 0 && thin < thick);
    // The controls follow the new size.
    QVERIFY(m_form->Text1(1)->x() * TwipsPerPixel > S().PlotRight);
    QVERIFY(m_form->Command1()->y() * TwipsPerPixel > S().PlotBottom);
}

void FrmPlott5Test::doneAndExitHide()
{
    openAndPick();
    click(m_form->Command2());
    const QString time = mainForm().text(5);
    QVERIFY(!time.isEmpty());
    click(m_form->Command4());
    QVERIFY(!m_form->isVisible());
    QCOMPARE(mainForm().text(5), time);
    PressMethodButton(5);
    QVERIFY(m_form->isVisible());
    m_form->mExit_Click();
    QVERIFY(!m_form->isVisible());
    QCOMPARE(mainForm().text(5), time);
}

void FrmPlott5Test::reopenRedrawsMarkersAndCurve()
{
    openAndPick();
    click(m_form->Command1());
    click(m_form->Command2());
    click(m_form->Command4());
    PressMethodButton(5);
    const RangePick& r = S().Fourier.Range;
    QVERIFY(colourNear(*m_form, xOf(r.LeftHJD), S().PlotTop + 300, colours::purple));
    QVERIFY(colourNear(*m_form, xOf(r.RightHJD), S().PlotTop + 300, colours::purple));
    const FourierState& f = S().Fourier;
    QVERIFY(curveDrawnAt(25));
    QVERIFY(curveDrawnAt(75));
    // The caption and the boxes stay as the fit left them.
    QCOMPARE(m_form->windowTitle(), QStringLiteral("Fourier fit - CLICK 'Done' TO EXIT, OR 'Undo' TO START OVER."));
    QCOMPARE(m_form->Text1(3)->text(), FormatFixed(f.FourierPar(3), 9, 5));
}

void FrmPlott5Test::focusChangesRedraw()
{
    openAndPick();
    click(m_form->Command1());
    click(m_form->Command4());
    PressMethodButton(5);
    // Being shown is no change of focus: the markers the button drew stay.
    m_form->activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(m_form));
    const RangePick& r = S().Fourier.Range;
    QVERIFY(colourNear(*m_form, r.LeftMarkX, S().PlotTop + 300, colours::purple));
    click(m_form->Command1());
    const int thick = countPixels(m_form->picture(), colours::blue);

    // Another window takes the focus: the plot, the range markers and the stored curve, thin.
    QWidget other;
    other.show();
    other.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&other));
    QTRY_VERIFY(countPixels(m_form->picture(), colours::blue) < thick);
    QVERIFY(countPixels(m_form->picture(), colours::blue) > 0);
    QVERIFY(colourNear(*m_form, xOf(r.LeftHJD), S().PlotTop + 300, colours::purple));
    QVERIFY(colourNear(*m_form, xOf(r.RightHJD), S().PlotTop + 300, colours::purple));
    // And gets it back: the same picture again.
    const QImage lost = m_form->picture();
    m_form->activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(m_form));
    QCOMPARE(m_form->picture(), lost);
}

// The markers of the picked ends are drawn again with every redraw, at the place their times
// take on the plot as it now is.
void FrmPlott5Test::markersKeptThroughUpdateAndResize()
{
    open();
    rightClick(2451234.5205);
    const RangePick& r = S().Fourier.Range;
    const double middle = (S().PlotTop + S().PlotBottom) / 2;
    // One end only: a resize keeps it.
    m_form->resize(m_form->width() + 90, m_form->height() + 45);
    QTRY_COMPARE(S().WinPos(5, 3), rt::Integer(m_form->width() * TwipsPerPixel));
    QCOMPARE(r.LeftMarkX, xOf(r.LeftHJD));
    QVERIFY(colourNear(*m_form, xOf(r.LeftHJD), middle, colours::purple));
    rightClick(2451234.6105);
    type(nearStart);
    click(m_form->Command1());
    QVERIFY(colourNear(*m_form, xOf(r.LeftHJD), S().PlotTop + 300, colours::purple));
    QVERIFY(colourNear(*m_form, xOf(r.RightHJD), S().PlotTop + 300, colours::purple));
    QVERIFY(curveDrawnAt(25));
    // Smaller: the markers move with the scale, and the places they had are clear.
    const double oldLeft = r.LeftMarkX;
    m_form->resize(m_form->width() - 150, m_form->height());
    QTRY_VERIFY(r.LeftMarkX != oldLeft);
    QCOMPARE(r.LeftMarkX, xOf(r.LeftHJD));
    QVERIFY(colourNear(*m_form, xOf(r.LeftHJD), S().PlotTop + 300, colours::purple));
    QVERIFY(colourNear(*m_form, xOf(r.RightHJD), S().PlotTop + 300, colours::purple));
    QVERIFY(!colourNear(*m_form, oldLeft, S().PlotTop + 300, colours::purple));
}

// After Undo no end is picked, whatever was done before it: the caption is the one the window
// opens with, and the markers are gone.
void FrmPlott5Test::undoAsksForTheRangeAsAtOpening()
{
    open();
    const QString opening = m_form->windowTitle();
    rightClick(2451234.5205);
    click(m_form->Command3());
    QCOMPARE(m_form->windowTitle(), opening);
    QCOMPARE(countPixels(m_form->picture(), colours::purple), 0);
    openAndPick();
    click(m_form->Command1());
    click(m_form->Command2());
    QCOMPARE(m_form->windowTitle(), QStringLiteral("Fourier fit - CLICK 'Done' TO EXIT, OR 'Undo' TO START OVER."));
    click(m_form->Command3());
    QCOMPARE(m_form->windowTitle(), QStringLiteral("Fit Fourier - RIGHT-CLICK AT START (left end) OF RANGE."));
    QCOMPARE(countPixels(m_form->picture(), colours::purple), 0);
    // A focus change does not bring markers back.
    m_form->Form_GotFocus();
    QCOMPARE(countPixels(m_form->picture(), colours::purple), 0);
    rightClick(2451234.6105);
    QCOMPARE(m_form->windowTitle(), QStringLiteral("Fit Fourier - CLICK 'Fit Fourier', OR 'Undo' TO START OVER."));
}

QTEST_MAIN(FrmPlott5Test)
#include "tst_frmplott5.moc"
