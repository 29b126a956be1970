// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#include "session/LoadDataFile.h"
#include "session/Session.h"
#include "support/TestSupport.h"
#include "support/gui/PlotWindows.h"

#include <QDir>

using namespace dip;
using namespace dip::test;

// Each plot window converts a click with its own last drawing, whichever window drew last.
class WindowClicksTest : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void init();
    void cleanup();
    void editorAfterAMethodWindow();
    void fourierWindowAfterTheEditor();
};

void WindowClicksTest::init()
{
    freshSession();
    const QString examples = QDir(qEnvironmentVariable("DIPSCOPE_SOURCE_DIR")).filePath(QStringLiteral("examples"));
    QVERIFY(OpenDataFile(examples, QStringLiteral("single-minimum.csv")));
}

void WindowClicksTest::cleanup()
{
    for (int k = 0; k <= 5; ++k)
        plotWindow(k).hide();
    ActionWindow().hide();
}

void WindowClicksTest::editorAfterAMethodWindow()
{
    PlotWindow& editor = openWindow(0);
    PlotWindow& parabola = openWindow(1);
    QApplication::processEvents();
    // The user makes the parabola window larger: it draws last, on a box of its own.
    parabola.resize(parabola.width() + 90, parabola.height() + 60);
    QApplication::processEvents();
    const PlotTransform editorBox = editor.transform();
    QCOMPARE(S().PlotRight, parabola.transform().PlotRight);
    QVERIFY(editorBox.PlotRight != parabola.transform().PlotRight ||
            editorBox.PlotBottom != parabola.transform().PlotBottom);

    // A left-click on points of the editor picks them.
    const Session& s = S();
    for (const int i : {5, 60, 150}) {
        clickAtData(editor, s.OrigHJD(i), s.OrigMag(i), Qt::LeftButton);
        QCOMPARE(int(s.PickIdx), i);
    }
}

void WindowClicksTest::fourierWindowAfterTheEditor()
{
    PlotWindow& fourier = openWindow(5);
    PlotWindow& editor = openWindow(0);
    QApplication::processEvents();
    // The user makes the editor larger: it draws last.
    editor.resize(editor.width() + 90, editor.height() + 60);
    QApplication::processEvents();
    QCOMPARE(S().PlotRight, editor.transform().PlotRight);
    QVERIFY(fourier.transform().PlotRight != editor.transform().PlotRight);

    // Right-clicks at 0.455 and 0.57 on the Fourier window pick the points just inside them:
    // point 48 (0.45539) is the first after 0.455, point 121 (0.56900) the last before 0.57.
    clickAtData(fourier, 0.455, Qt::RightButton);
    clickAtData(fourier, 0.57, Qt::RightButton);
    const RangePick& r = S().Fourier.Range;
    QCOMPARE(r.RangeSet, rt::True);
    QCOMPARE(int(r.LeftIdx), 48);
    QCOMPARE(int(r.RightIdx), 121);
    // Read with the editor's box, the same pixels stand for times far from the clicked ones.
    const Session& s = S();
    const PlotTransform& e = editor.transform();
    const double wrongLeft = s.HJDMin + s.HJDRange * ((r.LeftMarkX - e.PlotLeft) / e.PlotWidth);
    QVERIFY(std::abs(wrongLeft - 0.455) > 0.005);
    // The indexes, found from the click times by a plain scan.
    int left = 1;
    while (s.HJD(left) <= r.LeftHJD)
        ++left;
    int right = s.NumPts;
    while (s.HJD(right) >= r.RightHJD)
        --right;
    QCOMPARE(int(r.LeftIdx), left);
    QCOMPARE(int(r.RightIdx), right);
    QVERIFY(std::abs(r.LeftHJD - 0.455) < 0.001);
    QVERIFY(std::abs(r.RightHJD - 0.57) < 0.001);
}

QTEST_MAIN(WindowClicksTest)
#include "tst_windowclicks.moc"
