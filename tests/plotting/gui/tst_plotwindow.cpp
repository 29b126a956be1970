// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#include "plotting/gui/PlotWindow.h"
#include "session/Session.h"
#include "support/TestSupport.h"
#include "support/gui/PixelChecks.h"

#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QPushButton>

using namespace dip;

namespace {

// A plot window that records its events.
class TestForm : public PlotWindow {
public:
    TestForm() : PlotWindow(3) {}
    int loads = 0;
    int resizes = 0;
    int unloads = 0;
    QList<QVector<double>> downs;

protected:
    void Form_Load() override
    {
        ++loads;
        restorePlacement();
    }
    void Form_Resize() override { ++resizes; }
    void Form_Unload() override { ++unloads; }
    void Form_MouseDown(int button, int shift, double x, double y) override
    {
        downs << QVector<double>{double(button), double(shift), x, y};
    }
};

using test::isColour;

} // namespace

class PlotWindowTest : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void init() { test::freshSession(); }
    void linesStayAndWhiteErases();
    void clsClears();
    void circlesAndPen();
    void controlsByName();
    void mouseInTwips();
    void placementFromWinPos();
    void closeUnloadsAndShowLoadsAgain();
    void fileMenu();
};

void PlotWindowTest::linesStayAndWhiteErases()
{
    TestForm form;
    form.showForm();
    form.setForeColor(colours::purple);
    form.line(1500, 300, 1500, 3000);
    QVERIFY(isColour(form.pixelAt(1500, 1500), colours::purple));
    form.hide();
    form.showForm();
    form.repaint();
    QVERIFY(isColour(form.pixelAt(1500, 1500), colours::purple));
    form.setForeColor(colours::white);
    form.line(1500, 300, 1500, 3000);
    QVERIFY(isColour(form.pixelAt(1500, 1500), colours::white));
}

void PlotWindowTest::clsClears()
{
    TestForm form;
    form.showForm();
    form.setForeColor(colours::red);
    form.line(300, 600, 3000, 600);
    QVERIFY(isColour(form.pixelAt(1500, 600), colours::red));
    form.cls();
    QVERIFY(isColour(form.pixelAt(1500, 600), colours::white));
}

void PlotWindowTest::circlesAndPen()
{
    TestForm form;
    form.showForm();
    form.setForeColor(colours::blue);
    form.pset(3000, 3000);
    QVERIFY(isColour(form.pixelAt(3000, 3000), colours::blue));
    form.lineTo(3000, 4500);
    QVERIFY(isColour(form.pixelAt(3000, 3750), colours::blue));
    form.setForeColor(colours::red);
    for (int r = 1; r <= 15; ++r)
        form.circle(6000, 3000, r);
    QVERIFY(isColour(form.pixelAt(6000, 3000), colours::red) || isColour(form.pixelAt(6015, 3000), colours::red));
}

void PlotWindowTest::controlsByName()
{
    TestForm form;
    form.addControl(QStringLiteral("Label8"), new QLabel, 240, 5000);
    form.addControl(QStringLiteral("Text1"), new QLineEdit, 1320, 5000, 1200, 300);
    form.addControl(QStringLiteral("Command1"), new QPushButton(QStringLiteral("Update")), 2880, 5000, 1000, 300);
    form.setControlText(QStringLiteral("Label8"), QStringLiteral(" 12"));
    form.setControlText(QStringLiteral("Text1"), QStringLiteral("0.5"));
    QCOMPARE(form.controlText(QStringLiteral("Label8")), QStringLiteral(" 12"));
    QCOMPARE(form.control<QLineEdit>(QStringLiteral("Text1"))->text(), QStringLiteral("0.5"));
    QCOMPARE(form.controlText(QStringLiteral("Command1")), QStringLiteral("Update"));
    QCOMPARE(form.control<QLineEdit>(QStringLiteral("Text1"))->pos(), QPoint(88, 333));
    form.moveControl(QStringLiteral("Text1"), 150, 300);
    QCOMPARE(form.control<QLineEdit>(QStringLiteral("Text1"))->pos(), QPoint(10, 20));
    form.setCaption(QStringLiteral("Fit Parabola"));
    QCOMPARE(form.windowTitle(), QStringLiteral("Fit Parabola"));
}

void PlotWindowTest::mouseInTwips()
{
    TestForm form;
    form.showForm();
    QTest::mouseClick(form.surface(), Qt::RightButton, Qt::ShiftModifier, QPoint(100, 40));
    QCOMPARE(form.downs.size(), 1);
    QCOMPARE(form.downs[0], (QVector<double>{2, 1, 1500, 600}));
    QTest::mouseClick(form.surface(), Qt::LeftButton, {}, QPoint(10, 10));
    QCOMPARE(form.downs[1][0], 1.0);
}

void PlotWindowTest::placementFromWinPos()
{
    S().WinPos(3, 1) = 1500;
    S().WinPos(3, 2) = 1200;
    S().WinPos(3, 3) = 9000;
    S().WinPos(3, 4) = 6000;
    TestForm form;
    form.showForm();
    QCOMPARE(form.loads, 1);
    QCOMPARE(form.size(), QSize(600, 400));
    QCOMPARE(form.resizes, 0); // the placement on load is not a resize of the user's
    form.resize(660, 420);
    QCOMPARE(form.resizes, 1);
    QCOMPARE(int(S().WinPos(3, 3)), 9900);
    QCOMPARE(int(S().WinPos(3, 4)), 6300);
}

void PlotWindowTest::closeUnloadsAndShowLoadsAgain()
{
    TestForm form;
    form.showForm();
    form.hide(); // Done only hides
    form.showForm();
    QCOMPARE(form.loads, 1);
    form.close();
    QCOMPARE(form.unloads, 1);
    QVERIFY(!form.isLoaded());
    form.showForm();
    QCOMPARE(form.loads, 2);
}

void PlotWindowTest::fileMenu()
{
    TestForm form;
    form.showForm();
    const QStringList expected = {QStringLiteral("Print Setup ..."), QStringLiteral("Print"), QString(),
                                  QStringLiteral("Exit")};
    QStringList texts;
    const QList<QAction*> actions = form.findChild<QMenu*>(QStringLiteral("mFile"))->actions();
    for (QAction* a : actions)
        texts << a->text();
    QCOMPARE(texts, expected);
    form.findChild<QAction*>(QStringLiteral("mExit"))->trigger();
    QVERIFY(form.isHidden());
}

QTEST_MAIN(PlotWindowTest)
#include "tst_plotwindow.moc"
