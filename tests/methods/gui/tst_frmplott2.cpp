// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#include "methods/TracingCurves.h"
#include "methods/gui/MethodStarts.h"
#include "methods/tracing/gui/frmPlott2.h"
#include "plotting/PlotBox.h"
#include "session/MainForm.h"
#include "session/Procedures.h"
#include "session/Session.h"
#include "support/TestSupport.h"
#include "support/gui/PixelChecks.h"

#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QPushButton>
#include <QScrollBar>
#include <QStyle>
#include <QStyleOptionSlider>

#include <cmath>

using namespace dip;
using dip::test::colourNear;
using dip::test::countPixels;
using dip::test::isColour;
using dip::test::tenPoints;

namespace {

// Clicks a part of the scroll bar as the style lays it out.
void clickBar(QScrollBar* bar, QStyle::SubControl part)
{
    QStyleOptionSlider option;
    option.initFrom(bar);
    option.orientation = bar->orientation();
    option.minimum = bar->minimum();
    option.maximum = bar->maximum();
    option.sliderPosition = bar->sliderPosition();
    option.sliderValue = bar->value();
    option.singleStep = bar->singleStep();
    option.pageStep = bar->pageStep();
    option.upsideDown = bar->invertedAppearance();
    const QRect r = bar->style()->subControlRect(QStyle::CC_ScrollBar, &option, part, bar);
    QTest::mouseClick(bar, Qt::LeftButton, {}, r.center());
}

} // namespace

class FrmPlott2Test : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void init();
    void opensWithDesignAndPublishes();
    void arrowsAndPages_data();
    void arrowsAndPages();
    void keysMoveTheFold();
    void clampMovesBar_data();
    void clampMovesBar();
    void barOutsideRangeRaises();
    void typedFoldUpdate();
    void smoothingButtons();
    void branchColours();
    void foldAfterLastHasNoBlue();
    void foldBeforeFirstOnlyPointOneRed();
    void tinySpanDrawsFarPoints();
    void controlsFollowSize();
    void doneHidesAndReopenKeepsState();
    void placementLineTwo();

private:
    frmPlott2* m_form = nullptr;
    void open(const QByteArray& data);
    void typeFold(const QString& text);
};

void FrmPlott2Test::init()
{
    if (frmPlott2* form = frmPlott2::existing())
        form->close(); // unloaded: the next opening loads it afresh
    test::freshSession();
}

void FrmPlott2Test::open(const QByteArray& data)
{
    QVERIFY(test::loadText(data));
    PressMethodButton(2);
    m_form = frmPlott2::existing();
    QVERIFY(m_form);
    QVERIFY(m_form->isVisible());
}

void FrmPlott2Test::typeFold(const QString& text)
{
    auto* box = m_form->control<QLineEdit>(QStringLiteral("Text1"));
    box->clear();
    QTest::keyClicks(box, text);
    QTest::mouseClick(m_form->control<QPushButton>(QStringLiteral("Command1")), Qt::LeftButton);
}

void FrmPlott2Test::opensWithDesignAndPublishes()
{
    open(tenPoints());
    QCOMPARE(m_form->windowTitle(),
             QStringLiteral("Tracing Paper Method - CLICK LEFT ARROW TO DECREASE FOLD HJD, etc."));
    QCOMPARE(m_form->controlText("Label7"), QStringLiteral("Fold HJD:"));
    QCOMPARE(m_form->controlText("Label8"), QStringLiteral("No averaging"));
    QCOMPARE(m_form->controlText("Command1"), QStringLiteral("Update"));
    QCOMPARE(m_form->controlText("Command2"), QStringLiteral("Smooth"));
    QCOMPARE(m_form->controlText("Command3"), QStringLiteral("Undo smooth"));
    QCOMPARE(m_form->controlText("Command4"), QStringLiteral("Done"));
    QScrollBar* bar = m_form->HScroll1();
    QCOMPARE(bar->orientation(), Qt::Horizontal);
    QCOMPARE(bar->minimum(), 0);
    QCOMPARE(bar->maximum(), 32767);
    QCOMPARE(bar->singleStep(), 1);
    QCOMPARE(bar->pageStep(), 5);
    QCOMPARE(bar->value(), 16383);
    QCOMPARE(bar->size(), QSize(241, 17)); // 3615 x 255 twips: from "Fold HJD:" to the end of "Update"
    QCOMPARE(m_form->controlText("Text1"), QStringLiteral("       0.45000"));
    QCOMPARE(mainForm().text(2), QStringLiteral("0.45000"));
    QCOMPARE(mainForm().text(8), QStringLiteral("0.0001"));
    QVERIFY(mainForm().checked(2));
    const QList<QAction*> actions = m_form->findChild<QMenu*>(QStringLiteral("mFile"))->actions();
    QCOMPARE(actions.size(), 4);
}

void FrmPlott2Test::arrowsAndPages_data()
{
    QTest::addColumn<int>("part");
    QTest::addColumn<int>("units");
    QTest::newRow("right arrow") << int(QStyle::SC_ScrollBarAddLine) << 1;
    QTest::newRow("left arrow") << int(QStyle::SC_ScrollBarSubLine) << -1;
    QTest::newRow("trough right") << int(QStyle::SC_ScrollBarAddPage) << 5;
    QTest::newRow("trough left") << int(QStyle::SC_ScrollBarSubPage) << -5;
}

void FrmPlott2Test::arrowsAndPages()
{
    QFETCH(int, part);
    QFETCH(int, units);
    open(tenPoints());
    clickBar(m_form->HScroll1(), QStyle::SubControl(part));
    QCOMPARE(m_form->HScroll1()->value(), 16383 + units);
    const double fold = S().HJD(6) + 0.0001 * units;
    QCOMPARE(S().FoldHJD, fold);
    QCOMPARE(mainForm().text(2), FormatResult(fold));
    QCOMPARE(m_form->controlText("Text1"), FormatFixed(fold, 14, 5));
}

void FrmPlott2Test::keysMoveTheFold()
{
    open(tenPoints());
    QScrollBar* bar = m_form->HScroll1();
    QTest::keyClick(bar, Qt::Key_Right);
    QTest::keyClick(bar, Qt::Key_Right);
    QCOMPARE(bar->value(), 16385);
    QTest::keyClick(bar, Qt::Key_PageUp);
    QCOMPARE(bar->value(), 16380);
    QCOMPARE(S().FoldHJD, S().HJD(6) - 0.0003);
    QTest::keyClick(bar, Qt::Key_PageDown);
    QTest::keyClick(bar, Qt::Key_Left);
    QCOMPARE(bar->value(), 16384);
    QCOMPARE(S().FoldHJD, S().HJD(6) + 0.0001);
}

void FrmPlott2Test::clampMovesBar_data()
{
    QTest::addColumn<int>("value");
    QTest::addColumn<double>("fraction");
    QTest::newRow("dragged to the start: 5 %") << 0 << 0.05;
    QTest::newRow("dragged to the end: 95 %") << 32767 << 0.95;
}

void FrmPlott2Test::clampMovesBar()
{
    QFETCH(int, value);
    QFETCH(double, fraction);
    open(tenPoints());
    const Session& s = S();
    m_form->HScroll1()->setValue(value);
    const double clamped = s.HJDMin + fraction * s.HJDRange;
    const int expected = static_cast<int>(std::nearbyint(16383 + (clamped - s.HJD(6)) / 0.0001));
    QCOMPARE(m_form->HScroll1()->value(), expected);
    QCOMPARE(s.FoldHJD, s.HJD(6) + 0.0001 * (expected - 16383));
    QCOMPARE(mainForm().text(2), FormatResult(s.FoldHJD));
}

void FrmPlott2Test::barOutsideRangeRaises()
{
    // The faintest point near the start of a 100-day curve: 5 % of the range lies beyond what
    // the bar can express, and the bar rejects the position.
    open("0,11\n0.5,12\n5,11\n50,11.2\n100,11.1\n");
    DIP_EXPECT_RUNTIME_ERROR(m_form->HScroll1()->setValue(0), 380);
}

void FrmPlott2Test::typedFoldUpdate()
{
    open(tenPoints());
    QTest::keyClick(m_form->HScroll1(), Qt::Key_Left);
    typeFold(QStringLiteral("0.4437xyz"));
    QCOMPARE(S().FoldHJD, 0.4437);
    QCOMPARE(m_form->HScroll1()->value(), 16382); // the bar is not moved
    QCOMPARE(m_form->controlText("Text1"), QStringLiteral("       0.44370"));
    QCOMPARE(mainForm().text(2), QStringLiteral("0.44370"));
    QCOMPARE(mainForm().text(8), QStringLiteral("0.0001"));
}

void FrmPlott2Test::smoothingButtons()
{
    open(tenPoints());
    auto* smooth = m_form->control<QPushButton>(QStringLiteral("Command2"));
    const QStringList labels{"3-point averaging", "5-point averaging", "7-point averaging", "9-point averaging",
                             "9-point averaging"};
    for (const QString& label : labels) {
        QTest::mouseClick(smooth, Qt::LeftButton);
        QCOMPARE(m_form->controlText("Label8"), label);
    }
    QCOMPARE(int(S().AvgPoints), 9);
    DIP_COMPARE_REL(S().SmoothMag(5),
                    (S().Mag(1) + S().Mag(2) + S().Mag(3) + S().Mag(4) + S().Mag(5) + S().Mag(6) + S().Mag(7) +
                     S().Mag(8) + S().Mag(9)) /
                        9,
                    1e-14);
    QTest::mouseClick(m_form->control<QPushButton>(QStringLiteral("Command3")), Qt::LeftButton);
    QCOMPARE(m_form->controlText("Label8"), QStringLiteral("No averaging"));
    for (int i = 1; i <= 10; ++i)
        QCOMPARE(S().SmoothMag(i), S().Mag(i));
}

void FrmPlott2Test::branchColours()
{
    open(tenPoints());
    // A fold a little early: the mirrored branch lies clear below the red one.
    typeFold(QStringLiteral("0.4425"));
    const Session& s = S();
    const PlotScale scale{s.HJDMin, s.FoldSpan, s.MagMin, s.MagRange};
    for (int i = 1; i <= 5; ++i)
        QVERIFY2(colourNear(*m_form, PlotX(m_form->transform(), scale, s.HJD(i)),
                            PlotY(m_form->transform(), scale, s.Mag(i)), colours::red),
                 qPrintable(QStringLiteral("red point %1").arg(i)));
    // Point 10 mirrors to 0.395, left of the form.
    for (int i = 6; i <= 9; ++i)
        QVERIFY2(colourNear(*m_form, PlotX(m_form->transform(), scale, 2 * 0.4425 - s.HJD(i)),
                            PlotY(m_form->transform(), scale, s.Mag(i)), colours::blue),
                 qPrintable(QStringLiteral("blue point %1").arg(i)));
    // Half-way along the red segment from point 2 to point 3, and the blue one from 7 to 8.
    const double rx = (PlotX(m_form->transform(), scale, s.HJD(2)) + PlotX(m_form->transform(), scale, s.HJD(3))) / 2;
    const double ry = (PlotY(m_form->transform(), scale, s.Mag(2)) + PlotY(m_form->transform(), scale, s.Mag(3))) / 2;
    QVERIFY(colourNear(*m_form, rx, ry, colours::red));
    const double bx = (PlotX(m_form->transform(), scale, 2 * 0.4425 - s.HJD(7)) +
                       PlotX(m_form->transform(), scale, 2 * 0.4425 - s.HJD(8))) /
                      2;
    const double by = (PlotY(m_form->transform(), scale, s.Mag(7)) + PlotY(m_form->transform(), scale, s.Mag(8))) / 2;
    QVERIFY(colourNear(*m_form, bx, by, colours::blue));
    // The frame: black on the box's left edge.
    QVERIFY(isColour(m_form->pixelAt(s.PlotLeft, (s.PlotTop + s.PlotBottom) / 2), colours::black));
}

void FrmPlott2Test::foldAfterLastHasNoBlue()
{
    open(tenPoints());
    typeFold(QStringLiteral("0.49"));
    const QImage picture = m_form->picture();
    QCOMPARE(countPixels(picture, colours::blue), 0);
    QVERIFY(countPixels(picture, colours::red) > 0);
    const Session& s = S();
    const PlotScale scale{s.HJDMin, s.FoldSpan, s.MagMin, s.MagRange};
    QVERIFY(colourNear(*m_form, PlotX(m_form->transform(), scale, s.HJD(10)),
                       PlotY(m_form->transform(), scale, s.Mag(10)), colours::red));
}

void FrmPlott2Test::foldBeforeFirstOnlyPointOneRed()
{
    open(tenPoints());
    typeFold(QStringLiteral("0.39"));
    const Session& s = S();
    const PlotScale scale{s.HJDMin, s.FoldSpan, s.MagMin, s.MagRange};
    const double x1 = PlotX(m_form->transform(), scale, s.HJD(1)), y1 = PlotY(m_form->transform(), scale, s.Mag(1));
    QVERIFY(colourNear(*m_form, x1, y1, colours::red));
    // Every red pixel belongs to point 1's disc.
    const QImage picture = m_form->picture();
    const qreal dpr = picture.devicePixelRatio();
    for (int y = 0; y < picture.height(); ++y)
        for (int x = 0; x < picture.width(); ++x)
            if (isColour(picture.pixelColor(x, y), colours::red)) {
                QVERIFY(std::abs(x / dpr * TwipsPerPixel - x1) <= 2 * TwipsPerPixel);
                QVERIFY(std::abs(y / dpr * TwipsPerPixel - y1) <= 2 * TwipsPerPixel);
            }
}

void FrmPlott2Test::tinySpanDrawsFarPoints()
{
    // A fold just after point 1: the scale spans 0.00001 day from HJDMin, so every point lands
    // far off the form, up to millions of pixels away. They are drawn (clipped) without trouble.
    open(tenPoints());
    typeFold(QStringLiteral("0.40001"));
    const Session& s = S();
    QCOMPARE(s.FoldSpan, 0.40001 - 0.40);
    QCOMPARE(mainForm().text(2), QStringLiteral("0.40001"));
    const PlotScale scale{s.HJDMin, s.FoldSpan, s.MagMin, s.MagRange};
    QVERIFY(PlotX(m_form->transform(), scale, s.HJD(1)) > 1e6);
    QVERIFY(PlotX(m_form->transform(), scale, 2 * 0.40001 - s.HJD(10)) < -1e7);
    QVERIFY(isColour(m_form->pixelAt(s.PlotLeft, (s.PlotTop + s.PlotBottom) / 2), colours::black));
    QCOMPARE(countPixels(m_form->picture(), colours::red), 0);
}

void FrmPlott2Test::controlsFollowSize()
{
    open(tenPoints());
    m_form->resize(700, 520);
    QTRY_COMPARE(m_form->formWidth(), 700 * TwipsPerPixel);
    const double H = m_form->formHeight();
    const auto at = [&](const char* name) { return m_form->findChild<QWidget*>(QLatin1String(name))->pos(); };
    const auto px = [](double x, double y) { return PlotWindow::toPixels(x, y).toPoint(); };
    QCOMPARE(at("Label7"), px(240, H - 1550));
    QCOMPARE(at("Text1"), px(1320, H - 1550));
    QCOMPARE(at("Command1"), px(2880, H - 1550));
    QCOMPARE(at("Command2"), px(3960, H - 1550));
    QCOMPARE(at("Command3"), px(4920, H - 1550));
    QCOMPARE(at("Command4"), px(6600, H - 1550));
    QCOMPARE(at("HScroll1"), px(240, H - 1130));
    QCOMPARE(at("Label8"), px(3960, H - 1130));
    QCOMPARE(S().PlotRight, m_form->formWidth() - 415);
    QCOMPARE(S().PlotBottom, H - 2100);
}

void FrmPlott2Test::doneHidesAndReopenKeepsState()
{
    open(tenPoints());
    auto* smooth = m_form->control<QPushButton>(QStringLiteral("Command2"));
    QTest::mouseClick(smooth, Qt::LeftButton);
    QTest::mouseClick(smooth, Qt::LeftButton);
    QTest::keyClick(m_form->HScroll1(), Qt::Key_Right);
    QTest::mouseClick(m_form->control<QPushButton>(QStringLiteral("Command4")), Qt::LeftButton);
    QVERIFY(m_form->isHidden());
    QCOMPARE(mainForm().text(2), FormatResult(S().HJD(6) + 0.0001));
    PressMethodButton(2);
    QVERIFY(m_form->isVisible());
    QCOMPARE(m_form->HScroll1()->value(), 16384);
    QCOMPARE(m_form->controlText("Label8"), QStringLiteral("5-point averaging"));
    for (int i = 1; i <= 10; ++i)
        QCOMPARE(S().SmoothMag(i), S().Mag(i));
    QTest::mouseClick(smooth, Qt::LeftButton);
    QCOMPARE(m_form->controlText("Label8"), QStringLiteral("7-point averaging"));
}

void FrmPlott2Test::placementLineTwo()
{
    QVERIFY(test::loadText(tenPoints()));
    S().WinPos(2, 1) = 1500;
    S().WinPos(2, 2) = 1200;
    S().WinPos(2, 3) = 10500;
    S().WinPos(2, 4) = 7500;
    PressMethodButton(2);
    m_form = frmPlott2::existing();
    QCOMPARE(m_form->size(), QSize(700, 500));
    m_form->resize(760, 540);
    QCOMPARE(int(S().WinPos(2, 3)), 11400);
    QCOMPARE(int(S().WinPos(2, 4)), 8100);
}

QTEST_MAIN(FrmPlott2Test)
#include "tst_frmplott2.moc"
