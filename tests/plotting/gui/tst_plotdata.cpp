// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#include "plotting/PlotBox.h"
#include "plotting/gui/PlotDataEntry.h"
#include "plotting/gui/frmPlotData.h"
#include "runtime/Numeric.h"
#include "session/LoadDataFile.h"
#include "session/MainForm.h"
#include "session/Session.h"
#include "support/TestSupport.h"
#include "support/gui/PixelChecks.h"

#include <QLabel>
#include <QLineEdit>
#include <QPushButton>

#include <cmath>

using namespace dip;
using dip::test::colourNear;
using dip::test::isColour;
using dip::test::twelvePoints;

namespace {

using Points = std::vector<std::pair<double, double>>;

// 21 points from 10.002 to 11.998, bright (11.0) at both ends and faint (12.0) in the middle:
// the time extents are 10 .. 12 with the 0.002-day margin, so the grid step is 0.5 and the
// grid times 10 and 12 fall exactly on the box's left and right edges. The magnitude steps
// are 0.2 apart.
Points dipPoints()
{
    Points points;
    for (int i = 1; i <= 21; ++i) {
        const double u = (i - 11) / 10.0;
        points.push_back({10.002 + 1.996 * (i - 1) / 20, 11.0 + (1 - u * u)});
    }
    return points;
}

// Where the editor's own last drawing put a time or a magnitude.
double xAt(double t) { return PlotX(PlotDataWindow().transform(), FullScale(), t); }
double yAt(double m) { return PlotY(PlotDataWindow().transform(), FullScale(), m); }
double xOf(int i) { return xAt(S().OrigHJD(i)); }
double yOf(int i) { return yAt(S().OrigMag(i)); }

void click(Qt::MouseButton button, double x, double y)
{
    QTest::mouseClick(PlotDataWindow().surface(), button, {}, PlotWindow::toPixels(x, y).toPoint());
}

QString actionText(const QString& name) { return ActionWindow().findChild<QLineEdit*>(name)->text(); }

void press(const QString& button) { ActionWindow().findChild<QPushButton*>(button)->click(); }

// The main window as far as a load goes: it clears and hides the editor, as frmMain does.
class EditorBoxes : public MainBoxes {
public:
    void clearAndHidePlotData() override { ClearAndHidePlotData(); }
};

} // namespace

class PlotDataTest : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void init();
    void captionAndPlacement();
    void actionControls();
    void pixelsWhereTheTransformSays();
    void gridLinesOnTheEdges();
    void leftClickPicksAndMarks();
    void cancelRemovesTheCross();
    void deleteAndUndeleteFollowTheCount();
    void boxesShowTheCompactedArrays();
    void rightAndMiddleClicksDoNothing();
    void keepsItsScaleAfterADelete();
    void clickFarFromEveryPoint();
    void loadingClearsAndHides();

private:
    frmPlotData& open(const Points& points);
};

void PlotDataTest::init()
{
    // Start each case with the editor unloaded, as after closing it from its title bar.
    if (PlotDataWindow().isLoaded())
        PlotDataWindow().close();
    ActionWindow().hide();
}

frmPlotData& PlotDataTest::open(const Points& points)
{
    if (!test::loadText(test::csv(points)))
        qFatal("load failed");
    ShowPlotData();
    return PlotDataWindow();
}

void PlotDataTest::captionAndPlacement()
{
    test::freshSession();
    Session& s = S();
    s.WinPos(7, 1) = 1500;
    s.WinPos(7, 2) = 1200;
    s.WinPos(7, 3) = 9000;
    s.WinPos(7, 4) = 6000;
    // What the loader does, without resetting the placements.
    test::DataFolder folder;
    folder.write(QStringLiteral("dip.csv"), test::csv(dipPoints()));
    QVERIFY(OpenDataFile(folder.path(), QStringLiteral("dip.csv")));
    ShowPlotData();
    frmPlotData& form = PlotDataWindow();
    QCOMPARE(form.windowTitle(), QStringLiteral("Light Curve - LEFT-CLICK TO DELETE (or undelete) A POINT."));
    QCOMPARE(form.size(), QSize(600, 400));
    QCOMPARE(int(s.WinPos(7, 3)), 9000); // restoring is not a resize of the user's
    // A resize stores the placement, clears and redraws at the new size.
    form.resize(660, 420);
    QCOMPARE(int(s.WinPos(7, 3)), 9900);
    QCOMPARE(int(s.WinPos(7, 4)), 6300);
    QCOMPARE(s.PlotRight, double(rt::CInt(form.formWidth())) - 415);
    QVERIFY(colourNear(form, xAt(11.75), s.PlotBottom, colours::black));
    QVERIFY(colourNear(form, xOf(21), yOf(21), colours::red));
}

void PlotDataTest::actionControls()
{
    frmAction& action = ActionWindow();
    QCOMPARE(action.windowTitle(), QStringLiteral("Action"));
    QCOMPARE(action.findChild<QLabel*>(QStringLiteral("Label1"))->text(), QStringLiteral("Index"));
    QCOMPARE(action.findChild<QLabel*>(QStringLiteral("Label2"))->text(), QStringLiteral("HJD"));
    QCOMPARE(action.findChild<QLabel*>(QStringLiteral("Label3"))->text(), QStringLiteral("Magn"));
    QCOMPARE(action.findChild<QPushButton*>(QStringLiteral("Command1"))->text(), QStringLiteral("Delete"));
    QCOMPARE(action.findChild<QPushButton*>(QStringLiteral("Command2"))->text(), QStringLiteral("Undelete"));
    QCOMPARE(action.findChild<QPushButton*>(QStringLiteral("Command3"))->text(), QStringLiteral("Cancel"));
    for (int k = 1; k <= 3; ++k)
        QVERIFY(action.findChild<QLineEdit*>(QStringLiteral("Text%1").arg(k)));
    QVERIFY(!action.isModal());
}

void PlotDataTest::pixelsWhereTheTransformSays()
{
    frmPlotData& form = open(dipPoints());
    const Session& s = S();
    // Used points: red discs at the transform.
    for (const int i : {1, 6, 11, 17, 21})
        QVERIFY2(colourNear(form, xOf(i), yOf(i), colours::red), qPrintable(QString::number(i)));
    // The frame: black on the top edge between two grid lines, and on the bottom edge.
    const double between = xAt(10.25);
    QVERIFY(colourNear(form, between, s.PlotTop, colours::black));
    QVERIFY(colourNear(form, between, s.PlotBottom, colours::black));
    // A grid line inside the box: light grey at time 11.5, half-way between two points.
    QVERIFY(colourNear(form, xAt(11.5), yAt(11.1), colours::lightGrey));
    // Inside the box away from everything: white.
    QVERIFY(isColour(form.pixelAt(xAt(10.75), yAt(11.1)), colours::white));

    // A deleted point: a red cross, its strokes 100 twips each way; its disc is gone.
    click(Qt::LeftButton, xOf(6), yOf(6));
    press(QStringLiteral("Command1"));
    const double x = xOf(6), y = yOf(6);
    for (const auto& [dx, dy] : std::vector<std::pair<double, double>>{{75, 75}, {-75, -75}, {75, -75}, {-75, 75}})
        QVERIFY(colourNear(form, x + dx, y + dy, colours::red));
    QVERIFY(!colourNear(form, x + 75, y, colours::red));
}

void PlotDataTest::gridLinesOnTheEdges()
{
    frmPlotData& form = open(dipPoints());
    const Session& s = S();
    QCOMPARE(s.FullHJDMin, 10.0);
    QCOMPARE(s.FullHJDMax, 12.0);
    QCOMPARE(ComputeGridStep(s.FullHJDRange).step, 0.5f);
    QCOMPARE(xAt(10.0), s.PlotLeft);
    QCOMPARE(xAt(12.0), s.PlotRight);
    // Between two magnitude ticks, the left and right edges show the grid's grey, drawn over
    // the frame's black.
    const double y = yAt(11.1);
    for (const double x : {s.PlotLeft, s.PlotRight}) {
        QVERIFY(colourNear(form, x, y, colours::lightGrey));
        QVERIFY(!colourNear(form, x, y, colours::black));
    }
}

void PlotDataTest::leftClickPicksAndMarks()
{
    frmPlotData& form = open(dipPoints());
    QVERIFY(!ActionWindow().isVisible());
    click(Qt::LeftButton, xOf(7), yOf(7));
    QVERIFY(ActionWindow().isVisible());
    QCOMPARE(int(S().PickIdx), 7);
    QCOMPARE(actionText(QStringLiteral("Text1")), QStringLiteral("7"));
    // The blue cross: 200 twips left, right, up and down of the picked point.
    for (const auto& [dx, dy] : std::vector<std::pair<double, double>>{{150, 0}, {-150, 0}, {0, 150}, {0, -150}})
        QVERIFY(colourNear(form, xOf(7) + dx, yOf(7) + dy, colours::blue));
    QVERIFY(!colourNear(form, xOf(7) + 150, yOf(7) + 150, colours::blue));
}

void PlotDataTest::cancelRemovesTheCross()
{
    frmPlotData& form = open(dipPoints());
    click(Qt::LeftButton, xOf(4), yOf(4));
    QVERIFY(colourNear(form, xOf(4) + 150, yOf(4), colours::blue));
    press(QStringLiteral("Command3"));
    QVERIFY(!ActionWindow().isVisible());
    QVERIFY(!colourNear(form, xOf(4) + 150, yOf(4), colours::blue));
    QCOMPARE(mainForm().editedCountLabel(), QStringLiteral("21"));
    // Escape (or the dialog's close button) is a Cancel too.
    click(Qt::LeftButton, xOf(4), yOf(4));
    ActionWindow().reject();
    QVERIFY(!ActionWindow().isVisible());
    QVERIFY(!colourNear(form, xOf(4) + 150, yOf(4), colours::blue));
}

void PlotDataTest::deleteAndUndeleteFollowTheCount()
{
    frmPlotData& form = open(dipPoints());
    QCOMPARE(mainForm().editedCountLabel(), QStringLiteral("21"));
    click(Qt::LeftButton, xOf(5), yOf(5));
    press(QStringLiteral("Command1"));
    QVERIFY(!ActionWindow().isVisible());
    QCOMPARE(mainForm().editedCountLabel(), QStringLiteral("20"));
    QCOMPARE(int(S().NumPts), 20);
    QCOMPARE(S().Deleted(5), rt::True);
    QVERIFY(colourNear(form, xOf(5) + 75, yOf(5) + 75, colours::red));
    // Pressing Delete twice on the same pick is harmless.
    click(Qt::LeftButton, xOf(5), yOf(5));
    press(QStringLiteral("Command1"));
    QCOMPARE(mainForm().editedCountLabel(), QStringLiteral("20"));
    // Undelete restores the count and the disc.
    click(Qt::LeftButton, xOf(5), yOf(5));
    press(QStringLiteral("Command2"));
    QVERIFY(!ActionWindow().isVisible());
    QCOMPARE(mainForm().editedCountLabel(), QStringLiteral("21"));
    QVERIFY(!colourNear(form, xOf(5) + 75, yOf(5) + 75, colours::red));
    QVERIFY(colourNear(form, xOf(5), yOf(5), colours::red));
}

void PlotDataTest::boxesShowTheCompactedArrays()
{
    frmPlotData& form = open(twelvePoints());
    click(Qt::LeftButton, xOf(3), yOf(3));
    press(QStringLiteral("Command1"));
    // Deliberately the 10th used point's values, which is point 11 of the file.
    click(Qt::LeftButton, xOf(10), yOf(10));
    QCOMPARE(actionText(QStringLiteral("Text1")), QStringLiteral("10"));
    QCOMPARE(actionText(QStringLiteral("Text2")), QStringLiteral(" 1000.210000"));
    QCOMPARE(actionText(QStringLiteral("Text3")), QStringLiteral("  11.110"));
    // The cross marks the point clicked.
    QVERIFY(colourNear(form, xOf(10) + 150, yOf(10), colours::blue));
}

void PlotDataTest::rightAndMiddleClicksDoNothing()
{
    frmPlotData& form = open(dipPoints());
    S().PickIdx = 0;
    const QImage before = form.picture();
    click(Qt::RightButton, xOf(8), yOf(8));
    click(Qt::MiddleButton, xOf(8), yOf(8));
    QVERIFY(!ActionWindow().isVisible());
    QCOMPARE(int(S().PickIdx), 0);
    QCOMPARE(form.picture(), before);
}

void PlotDataTest::keepsItsScaleAfterADelete()
{
    frmPlotData& form = open(dipPoints());
    const double x1 = xOf(1), y1 = yOf(1), x11 = xOf(11), y11 = yOf(11);
    // Delete the last point and the faintest: the used points' extents change, the plot's do not.
    click(Qt::LeftButton, xOf(21), yOf(21));
    press(QStringLiteral("Command1"));
    click(Qt::LeftButton, x11, y11);
    press(QStringLiteral("Command1"));
    QVERIFY(S().HJDMax < S().FullHJDMax);
    QVERIFY(S().MagMax < S().FullMagMax);
    QCOMPARE(xOf(1), x1);
    QCOMPARE(yOf(1), y1);
    QVERIFY(colourNear(form, x1, y1, colours::red));
    QVERIFY(colourNear(form, x11 + 75, y11 + 75, colours::red)); // the cross where the disc was
}

void PlotDataTest::clickFarFromEveryPoint()
{
    // 300 days across: a click in the middle is 150 days from both points.
    frmPlotData& form = open(Points{{0.002, 11.0}, {300.0, 11.5}});
    const double x = xAt(150.0);
    click(Qt::LeftButton, x, yOf(1));
    QVERIFY(ActionWindow().isVisible());
    QCOMPARE(int(S().PickIdx), 0);
    QCOMPARE(actionText(QStringLiteral("Text1")), QStringLiteral("0"));
    // Delete then flags element 0, which nothing reads.
    press(QStringLiteral("Command1"));
    QCOMPARE(mainForm().editedCountLabel(), QStringLiteral("2"));
    QVERIFY(colourNear(form, xOf(1), yOf(1), colours::red));
}

void PlotDataTest::loadingClearsAndHides()
{
    frmPlotData& form = open(dipPoints());
    QVERIFY(form.isVisible());
    const double x = xOf(11), y = yOf(11);
    QVERIFY(colourNear(form, x, y, colours::red));
    EditorBoxes boxes;
    MainForm* previous = setMainForm(&boxes);
    test::DataFolder folder;
    folder.write(QStringLiteral("other.csv"), test::csv(twelvePoints()));
    QVERIFY(OpenDataFile(folder.path(), QStringLiteral("other.csv")));
    setMainForm(previous);
    QVERIFY(!form.isVisible());
    QVERIFY(!colourNear(form, x, y, colours::red));
    QVERIFY(!colourNear(form, S().PlotLeft, y, colours::black));
    // "Plot/Edit Data" shows the new curve.
    ShowPlotData();
    QVERIFY(form.isVisible());
    QVERIFY(colourNear(form, xOf(1), yOf(1), colours::red));
}

QTEST_MAIN(PlotDataTest)
#include "tst_plotdata.moc"
