// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers

// Windows a user can work in: every plot window (the light curve and methods 1 to 5) has a
// least size at which all its controls are visible and clear of one another and of the plot
// box; with no placement stored it opens beside the main window, cascaded; Enter in a text box
// presses the window's action; the tracing paper's scroll bar is as long as its row allows and
// is reached with Tab.

#include "mainwindow/gui/MainWindowTestSupport.h"

#include "methods/chords/gui/frmPlott3.h"
#include "methods/fourier/gui/frmPlott5.h"
#include "methods/kwee/gui/frmPlott4.h"
#include "methods/parabola/gui/frmPlott1.h"
#include "methods/tracing/gui/frmPlott2.h"
#include "plotting/PlotBox.h"
#include "plotting/gui/frmPlotData.h"
#include "runtime/Text.h"
#include "session/Session.h"

#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QScreen>
#include <QScrollBar>

#include <cmath>

using namespace dip;
using namespace dip::test;

Q_DECLARE_METATYPE(QRect)

namespace {

// 0 the light-curve window, 1..5 the method windows.
PlotWindow& plotWindow(int window)
{
    switch (window) {
    case 0: return PlotDataWindow();
    case 1: return frmPlott1::form();
    case 2: return frmPlott2::form();
    case 3: return frmPlott3::form();
    case 4: return frmPlott4::form();
    default: return frmPlott5::form();
    }
}

int winPosLine(int window) { return window == 0 ? 7 : window; }

// The button of the main window that shows the window.
QString opener(int window)
{
    return window == 0 ? QStringLiteral("Command7") : QStringLiteral("Command%1").arg(window);
}

// The controls on the window's plot surface.
QList<QWidget*> controlsOf(const PlotWindow& form)
{
    QList<QWidget*> controls;
    for (QWidget* c : form.surface()->findChildren<QWidget*>(QString(), Qt::FindDirectChildrenOnly))
        if (c->isVisibleTo(form.surface()))
            controls << c;
    return controls;
}

// Every control inside the client area, none covering another or the plot box (as the window's
// own last drawing set it), and the plot box of positive size.
void checkNothingHiddenOrCovered(const PlotWindow& form)
{
    const QRect client(QPoint(0, 0), form.clientSize());
    const PlotTransform& b = form.transform();
    const QRectF box(PlotWindow::toPixels(b.PlotLeft, b.PlotTop), PlotWindow::toPixels(b.PlotRight, b.PlotBottom));
    QVERIFY2(box.width() > 0 && box.height() > 0, "the plot box has no room");
    const QList<QWidget*> controls = controlsOf(form);
    for (int i = 0; i < controls.size(); ++i) {
        const QRect g = controls[i]->geometry();
        QVERIFY2(client.contains(g), qPrintable(controls[i]->objectName() + QStringLiteral(" is cut off")));
        QVERIFY2(!box.intersects(QRectF(g)),
                 qPrintable(controls[i]->objectName() + QStringLiteral(" covers the plot")));
        for (int j = i + 1; j < controls.size(); ++j)
            QVERIFY2(!g.intersects(controls[j]->geometry()),
                     qPrintable(controls[i]->objectName() + QLatin1Char('/') + controls[j]->objectName()));
    }
}

} // namespace

class PlotLayoutTest : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void initTestCase() { prepareWindowTests(); }
    void init();
    void cleanup();

    void leastSizeShowsEveryControl_data();
    void leastSizeShowsEveryControl();
    void smallerStoredPlacementOpensAtTheLeastSize_data();
    void smallerStoredPlacementOpensAtTheLeastSize();
    void besideTheMainWindow_data();
    void besideTheMainWindow();
    void firstRunOpensBesideTheMainWindowCascaded();
    void enterInTheFoldBoxPressesUpdate();
    void enterInStepOrFracPressesFitKwee_data();
    void enterInStepOrFracPressesFitKwee();
    void enterInAFourierBoxPressesUpdate();
    void foldBarAsLongAsItsRowAndReachedWithTab();

private:
    // Shows the window through the main window, loading it afresh (so that its placement is
    // read from WinPos).
    PlotWindow& showAfresh(int window);

    std::unique_ptr<WindowTestScope> m_scope;
    std::unique_ptr<frmMain> m_main;
};

void PlotLayoutTest::init()
{
    m_scope = std::make_unique<WindowTestScope>();
    m_scope->folder.write(QStringLiteral("curve.csv"), dipCurve(60, 9));
    m_main = startMainWindow();
    m_main->openFromCommandLine(QStringLiteral("curve.csv"));
}

void PlotLayoutTest::cleanup()
{
    for (int w = 0; w <= 5; ++w)
        plotWindow(w).hide();
    m_main.reset();
    m_scope.reset();
}

PlotWindow& PlotLayoutTest::showAfresh(int window)
{
    PlotWindow& form = plotWindow(window);
    if (form.isLoaded()) {
        // Closing from the title bar unloads the window; its placement is stored then, so the
        // line is set again afterwards by the caller.
        form.show();
        form.close();
    }
    return form;
}

void PlotLayoutTest::leastSizeShowsEveryControl_data()
{
    QTest::addColumn<int>("window");
    QTest::newRow("frmPlotData light curve") << 0;
    QTest::newRow("frmPlott1 parabolic fit") << 1;
    QTest::newRow("frmPlott2 tracing paper") << 2;
    QTest::newRow("frmPlott3 bisectors of chords") << 3;
    QTest::newRow("frmPlott4 Kwee and van Woerden") << 4;
    QTest::newRow("frmPlott5 Fourier fit") << 5;
}

void PlotLayoutTest::leastSizeShowsEveryControl()
{
    QFETCH(int, window);
    control<QPushButton>(*m_main, opener(window))->click();
    PlotWindow& form = plotWindow(window);
    QVERIFY(form.isVisible());
    // As designed, then as small as the user can make it, then larger: nothing hidden.
    checkNothingHiddenOrCovered(form);
    form.resize(1, 1);
    const QSize least = form.size();
    QVERIFY(least.width() > 100 && least.height() > 100);
    QCOMPARE(form.clientSize(), form.surface()->minimumSize());
    QCOMPARE(form.size(), form.minimumSizeHint());
    checkNothingHiddenOrCovered(form);
    if (window == 5) {
        QVERIFY(control<QLineEdit>(form, QStringLiteral("Text1_8"))->isVisible());
        QVERIFY(control<QPushButton>(form, QStringLiteral("Command4"))->isVisible());
    }
    // The least size is a real limit: one dimension at a time.
    form.resize(least.width() - 40, least.height() + 60);
    QCOMPARE(form.width(), least.width());
    form.resize(least.width() + 60, least.height() - 40);
    QCOMPARE(form.height(), least.height());
    checkNothingHiddenOrCovered(form);
    form.resize(least.width() + 300, least.height() + 200);
    checkNothingHiddenOrCovered(form);
    // The user's resizes are stored as always.
    QCOMPARE(int(S().WinPos(winPosLine(window), 3)), (least.width() + 300) * 15);
}

void PlotLayoutTest::smallerStoredPlacementOpensAtTheLeastSize_data() { leastSizeShowsEveryControl_data(); }

void PlotLayoutTest::smallerStoredPlacementOpensAtTheLeastSize()
{
    QFETCH(int, window);
    PlotWindow& form = showAfresh(window);
    const int line = winPosLine(window);
    const QList<rt::Integer> stored = {1500, 1200, 3000, 2400}; // 200 x 160 pixels
    for (int v = 1; v <= 4; ++v)
        S().WinPos(line, v) = stored[v - 1];
    control<QPushButton>(*m_main, opener(window))->click();
    QVERIFY(form.isVisible());
    QCOMPARE(form.size(), form.minimumSizeHint());
    QVERIFY(form.width() > 200 && form.height() > 160);
    QCOMPARE(form.pos(), QPoint(100, 80));
    checkNothingHiddenOrCovered(form);
    // The line keeps what was saved until the user moves or resizes the window.
    for (int v = 1; v <= 4; ++v)
        QCOMPARE(S().WinPos(line, v), stored[v - 1]);
    form.resize(form.width() + 15, form.height());
    QCOMPARE(int(S().WinPos(line, 3)), form.width() * 15);
}

void PlotLayoutTest::besideTheMainWindow_data()
{
    QTest::addColumn<QRect>("anchor");
    QTest::addColumn<QSize>("frame");
    QTest::addColumn<QRect>("available");
    QTest::addColumn<int>("n");
    QTest::addColumn<QPoint>("expected");
    const QRect screen(0, 0, 1920, 1080);
    const QSize frame(650, 520);
    QTest::newRow("room on the right") << QRect(10, 20, 600, 450) << frame << screen << 0 << QPoint(618, 20);
    QTest::newRow("room on the right, third window")
        << QRect(10, 20, 600, 450) << frame << screen << 2 << QPoint(678, 80);
    QTest::newRow("room on the left only")
        << QRect(1200, 100, 600, 450) << frame << screen << 0 << QPoint(1200 - 8 - 650, 100);
    QTest::newRow("room on the left only, second window")
        << QRect(1200, 100, 600, 450) << frame << screen << 1 << QPoint(1200 - 8 - 650 - 30, 130);
    QTest::newRow("no room either side: as far right as the screen allows")
        << QRect(100, 0, 600, 450) << frame << QRect(0, 0, 1024, 768) << 1 << QPoint(1024 - 650, 30);
    QTest::newRow("near the bottom: kept on the screen")
        << QRect(10, 500, 600, 450) << frame << screen << 3 << QPoint(708, 1080 - 520);
    QTest::newRow("available area not at the origin")
        << QRect(1930, 40, 600, 450) << frame << QRect(1920, 30, 1920, 1050) << 0 << QPoint(2538, 40);
}

void PlotLayoutTest::besideTheMainWindow()
{
    QFETCH(QRect, anchor);
    QFETCH(QSize, frame);
    QFETCH(QRect, available);
    QFETCH(int, n);
    QFETCH(QPoint, expected);
    const QPoint at = PlotWindow::besideAnchor(anchor, frame, available, n, 30);
    QCOMPARE(at, expected);
    QVERIFY(available.contains(QRect(at, frame)) || frame.width() > available.width());
}

void PlotLayoutTest::firstRunOpensBesideTheMainWindowCascaded()
{
    // Nothing stored: every placement is zero.
    for (const int window : {0, 1, 5}) {
        showAfresh(window);
        for (int v = 1; v <= 4; ++v)
            S().WinPos(winPosLine(window), v) = 0;
    }
    const QRect anchor = m_main->frameGeometry();
    const QRect available = m_main->screen()->availableGeometry();
    const QSize decoration = m_main->frameGeometry().size() - m_main->size();
    QList<QPoint> places;
    for (const int window : {1, 5, 0}) {
        control<QPushButton>(*m_main, opener(window))->click();
        PlotWindow& form = plotWindow(window);
        QVERIFY(form.isVisible());
        places << form.pos();
    }
    // Each in the first free place of the cascade beside the main window: one step further down
    // than the one opened before.
    QCOMPARE(places[0], PlotWindow::besideAnchor(anchor, plotWindow(1).size() + decoration, available, 0, 30));
    QCOMPARE(places[1], PlotWindow::besideAnchor(anchor, plotWindow(5).size() + decoration, available, 1, 30));
    QCOMPARE(places[2], PlotWindow::besideAnchor(anchor, plotWindow(0).size() + decoration, available, 2, 30));
    QVERIFY(places[1].y() > places[0].y() && places[2].y() > places[1].y());
    // Closed and opened again, a window takes the first free place once more.
    plotWindow(1).close();
    showAfresh(1);
    for (int v = 1; v <= 4; ++v)
        S().WinPos(1, v) = 0;
    control<QPushButton>(*m_main, opener(1))->click();
    QCOMPARE(plotWindow(1).pos(), places[0]);
    // Where the screen has room beside it, no plot window covers the main window's buttons (the
    // left part of the main window, up to the time column).
    const QRect buttons(m_main->mapToGlobal(QPoint(0, 0)), QSize(3300 / 15, m_main->height()));
    for (const int window : {1, 5, 0}) {
        const QRect frame(plotWindow(window).pos(), plotWindow(window).size() + decoration);
        if (available.width() >= anchor.width() + frame.width() + 8)
            QVERIFY(!frame.intersects(buttons));
    }
}

void PlotLayoutTest::enterInTheFoldBoxPressesUpdate()
{
    control<QPushButton>(*m_main, QStringLiteral("Command2"))->click();
    frmPlott2& form = frmPlott2::form();
    auto* box = control<QLineEdit>(form, QStringLiteral("Text1"));
    box->clear();
    QTest::keyClicks(box, QStringLiteral("0.4567"));
    QVERIFY(S().FoldHJD != 0.4567);
    QTest::keyClick(box, Qt::Key_Return);
    QCOMPARE(S().FoldHJD, 0.4567);
    QCOMPARE(m_main->text(2), QStringLiteral("0.45670"));
    QCOMPARE(box->text(), QStringLiteral("       0.45670"));
    box->setText(QStringLiteral("0.4612"));
    QTest::keyClick(box, Qt::Key_Enter); // the keypad's Enter too
    QCOMPARE(S().FoldHJD, 0.4612);
}

void PlotLayoutTest::enterInStepOrFracPressesFitKwee_data()
{
    QTest::addColumn<QString>("box");
    QTest::newRow("Stepp") << "Text1";
    QTest::newRow("Frac") << "Text2";
}

void PlotLayoutTest::enterInStepOrFracPressesFitKwee()
{
    QFETCH(QString, box);
    control<QPushButton>(*m_main, QStringLiteral("Command4"))->click();
    frmPlott4& form = frmPlott4::form();
    // A range around the dip at 0.5, picked with the right mouse button on the window's own box.
    auto pickAroundTheDip = [&form] {
        for (const double t : {0.462, 0.538}) {
            const Session& s = S();
            const PlotTransform& b = form.transform();
            const double x = b.PlotLeft + b.PlotWidth * (t - s.HJDMin) / s.HJDRange;
            QTest::mouseClick(form.surface(), Qt::RightButton, {},
                              QPoint(int(std::lround(x / 15)), int(std::lround((b.PlotTop + b.PlotBottom) / 30))));
        }
    };
    pickAroundTheDip();
    QCOMPARE(m_main->text(4), QString());
    QTest::keyClick(control<QLineEdit>(form, box), Qt::Key_Return);
    QVERIFY(m_main->checked(4));
    QVERIFY2(std::abs(rt::Val(m_main->text(4)) - 0.5) < 0.003, qPrintable(m_main->text(4)));
    // The same result as the button gives.
    const QString byEnter = m_main->text(4);
    control<QPushButton>(form, QStringLiteral("Command2"))->click(); // Undo
    pickAroundTheDip();
    control<QPushButton>(form, QStringLiteral("Command1"))->click();
    QCOMPARE(m_main->text(4), byEnter);
}

void PlotLayoutTest::enterInAFourierBoxPressesUpdate()
{
    control<QPushButton>(*m_main, QStringLiteral("Command5"))->click();
    frmPlott5& form = frmPlott5::form();
    for (int k = 1; k <= 8; ++k) {
        m_scope->messages.clear();
        QTest::keyClick(form.Text1(k), Qt::Key_Return);
        // "Update" without a range says so.
        QCOMPARE(m_scope->messages.messages(), QStringList{QStringLiteral("Select range first")});
    }
}

void PlotLayoutTest::foldBarAsLongAsItsRowAndReachedWithTab()
{
    control<QPushButton>(*m_main, QStringLiteral("Command2"))->click();
    frmPlott2& form = frmPlott2::form();
    QScrollBar* bar = form.HScroll1();
    const QRect label7 = control<QLabel>(form, QStringLiteral("Label7"))->geometry();
    const QRect update = control<QPushButton>(form, QStringLiteral("Command1"))->geometry();
    QCOMPARE(bar->x(), label7.x());
    QVERIFY(std::abs(bar->geometry().right() - update.right()) <= 1);
    QVERIFY(bar->width() >= 3 * 1095 / 15);
    QVERIFY(!bar->geometry().intersects(control<QLabel>(form, QStringLiteral("Label8"))->geometry()));

    form.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&form));
    auto* box = control<QLineEdit>(form, QStringLiteral("Text1"));
    box->setFocus();
    QCOMPARE(QApplication::focusWidget(), box);
    QStringList path;
    for (int presses = 0; presses < 8 && QApplication::focusWidget() != bar; ++presses) {
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
        path << QApplication::focusWidget()->objectName();
    }
    QCOMPARE(path, (QStringList{"Command1", "Command2", "Command3", "Command4", "HScroll1"}));
    // And the keys move the fold there.
    const int value = bar->value();
    QTest::keyClick(bar, Qt::Key_Right);
    QCOMPARE(bar->value(), value + 1);
    QCOMPARE(S().FoldHJD, S().HJD(S().IdxMagMax) + 0.0001 * (value + 1 - 16383));
}

QTEST_MAIN(PlotLayoutTest)
#include "tst_plotlayout.moc"
