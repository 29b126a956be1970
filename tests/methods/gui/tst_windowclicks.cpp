// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#include "session/LoadDataFile.h"
#include "session/Session.h"
#include "support/TestSupport.h"
#include "support/gui/PlotWindows.h"

#include <QDir>

#include <algorithm>

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
    void everyPairPicksWhatIsClicked_data();
    void everyPairPicksWhatIsClicked();
};

namespace {

QString windowName(int k)
{
    static const char* const names[] = {"light curve",         "parabolic fit",        "tracing paper",
                                        "bisectors of chords", "Kwee and van Woerden", "Fourier fit"};
    return QLatin1String(names[k]);
}

// The time under a pixel of a window, read with that window's own box and scale, as the user
// means it: the pixel is where the user clicked.
double timeAtPixel(const PlotWindow& w, const QPoint& pixel)
{
    const PlotTransform& box = w.transform();
    return PlotTimeAt(box, box.scale, pixel.x() * TwipsPerPixel);
}

// The first used point later than t, and the last earlier than t, by a plain scan.
int firstAfter(double t)
{
    const Session& s = S();
    int i = 1;
    while (i <= s.NumPts && !(s.HJD(i) > t))
        ++i;
    return i;
}
int lastBefore(double t)
{
    const Session& s = S();
    int i = s.NumPts;
    while (i >= 1 && !(s.HJD(i) < t))
        --i;
    return i;
}

// The loaded point nearest to the data under a pixel of the editor, a day weighing as much as
// a magnitude; of equally near points the first.
int nearestLoadedPoint(const PlotWindow& editor, const QPoint& pixel)
{
    const Session& s = S();
    const PlotTransform& box = editor.transform();
    const double t = PlotTimeAt(box, box.scale, pixel.x() * TwipsPerPixel);
    const double m = PlotMagAt(box, box.scale, pixel.y() * TwipsPerPixel);
    int best = 0;
    double nearest = 0;
    for (int i = 1; i <= s.NumOrig; ++i) {
        const double d = (s.OrigHJD(i) - t) * (s.OrigHJD(i) - t) + (s.OrigMag(i) - m) * (s.OrigMag(i) - m);
        if (best == 0 || d < nearest) {
            best = i;
            nearest = d;
        }
    }
    return best;
}

// Clicks window k as a user picks with it, at pixels, and checks what it picked against what
// the clicked pixels mean on that window's own plot. Returns what was wrong, empty when nothing.
QString clickAndCheck(int k)
{
    PlotWindow& w = plotWindow(k);
    const Session& s = S();
    // One pixel's worth of time on the window: the clicks must land that close to the aim.
    const double pixelTime = std::abs(s.HJDRange * TwipsPerPixel / w.transform().PlotWidth);
    auto aimAt = [&](double t) {
        const PlotTransform& box = w.transform();
        return pixelOf(w, t, box.scale.m0 + box.scale.mr / 2);
    };
    auto meant = [&](double t, const QPoint& p) {
        const double clicked = timeAtPixel(w, p);
        return std::abs(clicked - t) <= pixelTime
                   ? QString()
                   : QStringLiteral("the pixel aimed at %1 reads %2").arg(t).arg(clicked);
    };
    switch (k) {
    case 0: {
        for (const int i : {5, 60, 150}) {
            const QPoint p = pixelOf(w, s.OrigHJD(i), s.OrigMag(i));
            QTest::mouseClick(w.surface(), Qt::LeftButton, {}, p);
            if (s.PickIdx != i || nearestLoadedPoint(w, p) != i)
                return QStringLiteral("a click on point %1 picked %2 (nearest to the pixel: %3)")
                    .arg(i)
                    .arg(s.PickIdx)
                    .arg(nearestLoadedPoint(w, p));
        }
        return QString();
    }
    case 1:
    case 4:
    case 5: {
        const QPoint left = aimAt(0.455), right = aimAt(0.57);
        for (const QString& problem : {meant(0.455, left), meant(0.57, right)})
            if (!problem.isEmpty())
                return problem;
        QTest::mouseClick(w.surface(), Qt::RightButton, {}, left);
        QTest::mouseClick(w.surface(), Qt::RightButton, {}, right);
        const RangePick& r = k == 1 ? s.ParabolaPick : k == 4 ? s.KweePick : s.Fourier.Range;
        const int expectLeft = firstAfter(timeAtPixel(w, left)), expectRight = lastBefore(timeAtPixel(w, right));
        if (r.RangeSet != rt::True || r.LeftIdx != expectLeft || r.RightIdx != expectRight)
            return QStringLiteral("picked %1..%2 (set %3), the clicked pixels hold %4..%5")
                .arg(r.LeftIdx)
                .arg(r.RightIdx)
                .arg(r.RangeSet)
                .arg(expectLeft)
                .arg(expectRight);
        // Near the points a user aims between.
        if (std::abs(expectLeft - firstAfter(0.455)) > 1 || std::abs(expectRight - lastBefore(0.57)) > 1)
            return QStringLiteral("the clicked pixels hold %1..%2").arg(expectLeft).arg(expectRight);
        return QString();
    }
    case 3: {
        const double times[4] = {0.42, 0.455, 0.545, 0.57};
        QPoint pixels[4];
        for (int n = 0; n < 4; ++n) {
            pixels[n] = aimAt(times[n]);
            if (const QString problem = meant(times[n], pixels[n]); !problem.isEmpty())
                return problem;
            QTest::mouseClick(w.surface(), Qt::RightButton, {}, pixels[n]);
        }
        const ChordPick& c = s.Chords;
        const int expected[4] = {firstAfter(timeAtPixel(w, pixels[0])), lastBefore(timeAtPixel(w, pixels[1])),
                                 firstAfter(timeAtPixel(w, pixels[2])), lastBefore(timeAtPixel(w, pixels[3]))};
        if (c.RangeSet != rt::True || c.Idx1 != expected[0] || c.Idx2 != expected[1] || c.Idx3 != expected[2] ||
            c.Idx4 != expected[3])
            return QStringLiteral("picked %1, %2, %3, %4 (set %5), the clicked pixels hold %6, %7, %8, %9")
                .arg(c.Idx1)
                .arg(c.Idx2)
                .arg(c.Idx3)
                .arg(c.Idx4)
                .arg(c.RangeSet)
                .arg(expected[0])
                .arg(expected[1])
                .arg(expected[2])
                .arg(expected[3]);
        return QString();
    }
    default: return QString(); // the tracing paper is moved with its scroll bar, not clicked
    }
}

bool sameBox(const PlotTransform& a, const PlotTransform& b)
{
    return a.PlotLeft == b.PlotLeft && a.PlotRight == b.PlotRight && a.PlotTop == b.PlotTop &&
           a.PlotBottom == b.PlotBottom;
}

} // namespace

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

void WindowClicksTest::everyPairPicksWhatIsClicked_data()
{
    QTest::addColumn<int>("first");
    QTest::addColumn<int>("second");
    for (int first = 0; first <= 5; ++first)
        for (int second = 0; second <= 5; ++second)
            if (first != second)
                QTest::addRow("%s, then %s", qPrintable(windowName(first)), qPrintable(windowName(second)))
                    << first << second;
}

// Two windows opened one after the other, the second made larger than both by the user so that
// it draws last on a box of its own: each picks what the user clicks on it, the window drawn first as
// well as the one drawn last.
void WindowClicksTest::everyPairPicksWhatIsClicked()
{
    QFETCH(int, first);
    QFETCH(int, second);
    PlotWindow& a = openWindow(first);
    QApplication::processEvents();
    PlotWindow& b = openWindow(second);
    QApplication::processEvents();
    b.resize(std::max(a.width(), b.width()) + 135, std::max(a.height(), b.height()) + 90);
    QApplication::processEvents();
    QCOMPARE(S().PlotRight, b.transform().PlotRight);
    QCOMPARE(S().PlotBottom, b.transform().PlotBottom);
    QVERIFY2(!sameBox(a.transform(), b.transform()), "the two windows draw on the same box");

    // The window drawn first, then the one drawn last.
    QString problem = clickAndCheck(first);
    QVERIFY2(problem.isEmpty(), qPrintable(windowName(first) + QStringLiteral(": ") + problem));
    problem = clickAndCheck(second);
    QVERIFY2(problem.isEmpty(), qPrintable(windowName(second) + QStringLiteral(": ") + problem));
}

QTEST_MAIN(WindowClicksTest)
#include "tst_windowclicks.moc"
