// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers

// Method curves, markers and mirrored branches stay inside the plot box: whatever they would
// draw on the frame, the axes, their numbers or the room around them is clipped, on the screen
// and on a print alike, and the scale they are drawn with is unchanged.

#include "session/LoadDataFile.h"
#include "session/Points.h"
#include "session/Session.h"
#include "support/TestSupport.h"
#include "support/gui/PlotWindows.h"

#include <QDir>
#include <QLineEdit>
#include <QPainter>
#include <QPushButton>

#include <algorithm>
#include <cmath>

using namespace dip;
using namespace dip::test;

namespace {

// The pixels strictly between the frame's lines of a window's box, on its picture drawn at
// `scale` device pixels to a logical one: a one-pixel line at x falls on pixel floor(x).
QRect interiorOf(const PlotWindow& w, double scale)
{
    const PlotTransform& b = w.transform();
    auto pixel = [scale](double twips) { return int(std::floor(twips / TwipsPerPixel * scale)); };
    return QRect(QPoint(pixel(std::min(b.PlotLeft, b.PlotRight)) + 1, pixel(std::min(b.PlotTop, b.PlotBottom)) + 1),
                 QPoint(pixel(std::max(b.PlotLeft, b.PlotRight)) - 1, pixel(std::max(b.PlotTop, b.PlotBottom)) - 1));
}

// The first pixel outside the interior (and outside the masked rectangles) that differs between
// two pictures; empty when none does.
QString changedOutside(const QImage& before, const QImage& after, const QRect& interior,
                       const QList<QRect>& masked = {})
{
    if (before.size() != after.size())
        return QStringLiteral("the pictures differ in size");
    for (int y = 0; y < after.height(); ++y)
        for (int x = 0; x < after.width(); ++x) {
            const QPoint p(x, y);
            if (interior.contains(p) ||
                std::any_of(masked.begin(), masked.end(), [&p](const QRect& r) { return r.contains(p); }))
                continue;
            if (before.pixel(p) != after.pixel(p))
                return QStringLiteral("pixel (%1, %2) changed from %3 to %4 outside the box %5..%6, %7..%8")
                    .arg(x)
                    .arg(y)
                    .arg(QColor(before.pixel(p)).name(), QColor(after.pixel(p)).name())
                    .arg(interior.left())
                    .arg(interior.right())
                    .arg(interior.top())
                    .arg(interior.bottom());
        }
    return QString();
}

// Pixels of the colour inside and outside the interior.
struct ColourCount {
    int inside = 0;
    int outside = 0;
};
ColourCount countColour(const QImage& image, const QRect& interior, Rgb colour)
{
    ColourCount n;
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x)
            if (isColour(image.pixelColor(x, y), colour))
                ++(interior.contains(QPoint(x, y)) ? n.inside : n.outside);
    return n;
}

int changedInside(const QImage& before, const QImage& after, const QRect& interior)
{
    int n = 0;
    for (int y = interior.top(); y <= interior.bottom(); ++y)
        for (int x = interior.left(); x <= interior.right(); ++x)
            n += before.pixel(x, y) != after.pixel(x, y) ? 1 : 0;
    return n;
}

// The window's client area as "Print" draws it, on a page of `scale` times the screen's
// resolution.
constexpr int PrintScale = 4;
QImage printed(const PlotWindow& w)
{
    QImage page(w.clientSize() * PrintScale, QImage::Format_RGB32);
    page.fill(Qt::white);
    QPainter p(&page);
    p.scale(PrintScale, PrintScale);
    w.renderClientArea(p);
    return page;
}

// The controls of a window on its printed page: their texts change with what the user does.
QList<QRect> printedControls(const PlotWindow& w)
{
    QList<QRect> rects;
    for (QWidget* c : w.surface()->findChildren<QWidget*>(QString(), Qt::FindDirectChildrenOnly))
        rects << QRect(c->geometry().topLeft() * PrintScale, c->geometry().size() * PrintScale).adjusted(-1, -1, 1, 1);
    return rects;
}

} // namespace

class ClippingTest : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void init();
    void cleanup();
    void editorCrossStaysInTheBox();
    void parabolaStaysInTheBox();
    void mirroredBranchStaysInTheBox();
    void markersOffTheScaleAreNotDrawn();
    void fourierCurveAndMarkersStayInTheBox();
    void aCurveDrawnAgainIsClippedAgain();

private:
    // Window k opened; its picture and its print as the plot stands, before anything is drawn
    // over it.
    PlotWindow& open(int k);
    // The checks on the screen's picture and on the print: nothing outside the box changed, and
    // something inside did.
    void checkOnlyTheBoxChanged(const PlotWindow& w);

    QImage m_before;
    QImage m_printedBefore;
};

void ClippingTest::init()
{
    freshSession();
    const QString examples = QDir(qEnvironmentVariable("DIPSCOPE_SOURCE_DIR")).filePath(QStringLiteral("examples"));
    QVERIFY(OpenDataFile(examples, QStringLiteral("single-minimum.csv")));
}

void ClippingTest::cleanup()
{
    for (int k = 0; k <= 5; ++k)
        plotWindow(k).hide();
    ActionWindow().hide();
}

PlotWindow& ClippingTest::open(int k)
{
    PlotWindow& w = openWindow(k);
    QApplication::processEvents();
    m_before = w.picture();
    m_printedBefore = printed(w);
    return w;
}

void ClippingTest::checkOnlyTheBoxChanged(const PlotWindow& w)
{
    const QImage after = w.picture();
    const QRect interior = interiorOf(w, after.devicePixelRatio());
    QString problem = changedOutside(m_before, after, interior);
    QVERIFY2(problem.isEmpty(), qPrintable(QStringLiteral("on the screen: ") + problem));
    QVERIFY(changedInside(m_before, after, interior) > 0);

    const QImage page = printed(w);
    const QRect printedInterior = interiorOf(w, PrintScale);
    problem = changedOutside(m_printedBefore, page, printedInterior, printedControls(w));
    QVERIFY2(problem.isEmpty(), qPrintable(QStringLiteral("on the print: ") + problem));
    QVERIFY(changedInside(m_printedBefore, page, printedInterior) > 0);
}

// The blue cross of a picked point at the edge of the box reaches 200 twips past the point.
void ClippingTest::editorCrossStaysInTheBox()
{
    PlotWindow& w = open(0);
    const Session& s = S();
    int brightest = 1;
    for (int i = 2; i <= s.NumOrig; ++i)
        if (s.OrigMag(i) < s.OrigMag(brightest))
            brightest = i;
    for (const int i : {1, int(s.NumOrig), brightest}) {
        clickAtData(w, s.OrigHJD(i), s.OrigMag(i), Qt::LeftButton);
        QCOMPARE(int(s.PickIdx), i);
        // The cross would reach past the frame.
        const PlotTransform& b = w.transform();
        const QPoint p = pixelOf(w, s.OrigHJD(i), s.OrigMag(i));
        QVERIFY(p.x() * 15 - 200 < b.PlotLeft || p.x() * 15 + 200 > b.PlotRight || p.y() * 15 - 200 < b.PlotTop);
    }
    checkOnlyTheBoxChanged(w);
    QVERIFY(countColour(w.picture(), interiorOf(w, 1), colours::blue).inside > 3 * 20);
}

// A parabola fitted to a narrow range runs steeply off the magnitude scale on both sides.
void ClippingTest::parabolaStaysInTheBox()
{
    PlotWindow& w = open(1);
    clickAtData(w, 0.50, Qt::RightButton);
    clickAtData(w, 0.53, Qt::RightButton);
    w.findChild<QPushButton*>(QStringLiteral("Command1"))->click();
    const Session& s = S();
    QCOMPARE(s.ParabolaPick.Fitted, rt::True);
    auto offScale = [&s](double m) { return m < s.MagMin - s.MagRange || m > s.MagMax + s.MagRange; };
    QVERIFY(offScale(s.FitCurveMag(0)) && offScale(s.FitCurveMag(100)));
    checkOnlyTheBoxChanged(w);
    const QRect interior = interiorOf(w, 1);
    QVERIFY(countColour(w.picture(), interior, colours::blue).inside > 0);
    QVERIFY(countColour(w.picture(), interior, colours::curveGrey).inside > 0);
    // The scale is the plot's own: the vertex of the curve where the transform puts it.
    const PlotTransform& b = w.transform();
    const double vertex = -s.ParabB / (2 * s.ParabC);
    const double m = (s.ParabC * vertex + s.ParabB) * vertex + s.ParabA0;
    QVERIFY(colourNear(w, PlotX(b, b.scale, vertex), PlotY(b, b.scale, m), colours::blue));
}

// A fold early in the eclipse mirrors the later points to before the first observation: the
// blue branch runs off the left of the box. (The red branch is the curve as observed, drawn
// whole.)
void ClippingTest::mirroredBranchStaysInTheBox()
{
    PlotWindow& w = openWindow(2);
    QApplication::processEvents();
    auto* fold = w.findChild<QLineEdit*>(QStringLiteral("Text1"));
    fold->setText(QStringLiteral("0.46"));
    w.findChild<QPushButton*>(QStringLiteral("Command1"))->click();
    const Session& s = S();
    QCOMPARE(s.FoldHJD, 0.46);
    QVERIFY(2 * s.FoldHJD - s.HJD(s.NumPts) < s.HJDMin);
    const QImage picture = w.picture();
    const QRect interior = interiorOf(w, picture.devicePixelRatio());
    const ColourCount blue = countColour(picture, interior, colours::blue);
    QCOMPARE(blue.outside, 0);
    QVERIFY(blue.inside > 100);
    const QImage page = printed(w);
    const QRect printedInterior = interiorOf(w, PrintScale);
    QCOMPARE(countColour(page, printedInterior, colours::blue).outside, 0);
    QVERIFY(countColour(page, printedInterior, colours::blue).inside > 100);
}

// Markers are redrawn at their remembered times; after the points before and after them are
// deleted those times lie off the scale, and the markers are not drawn at all.
void ClippingTest::markersOffTheScaleAreNotDrawn()
{
    PlotWindow& w = openWindow(4);
    QApplication::processEvents();
    clickAtData(w, 0.40, Qt::RightButton);
    clickAtData(w, 0.62, Qt::RightButton);
    QCOMPARE(S().KweePick.RangeSet, rt::True);
    Session& s = S();
    for (int i = 1; i <= s.NumOrig; ++i)
        if (s.OrigHJD(i) < 0.41 || s.OrigHJD(i) > 0.61) {
            s.PickIdx = rt::Integer(i);
            SetPickedDeleted(true);
        }
    PressMethodButton(4);
    QApplication::processEvents();
    const PlotTransform& b = w.transform();
    QVERIFY(s.KweePick.LeftMarkX < b.PlotLeft - 2 * TwipsPerPixel);
    QVERIFY(s.KweePick.RightMarkX > b.PlotRight + 2 * TwipsPerPixel);
    const QImage picture = w.picture();
    const ColourCount purple = countColour(picture, interiorOf(w, picture.devicePixelRatio()), colours::purple);
    QCOMPARE(purple.outside, 0);
    QCOMPARE(purple.inside, 0);
    // A marker inside the box is drawn as ever.
    clickAtData(w, 0.45, Qt::RightButton);
    QVERIFY(countColour(w.picture(), interiorOf(w, 1), colours::purple).inside > 50);
    QCOMPARE(countColour(w.picture(), interiorOf(w, 1), colours::purple).outside, 0);
}

// Start values far from the curve give a preview that leaves the box at top and bottom.
void ClippingTest::fourierCurveAndMarkersStayInTheBox()
{
    auto& w = static_cast<frmPlott5&>(open(5));
    clickAtData(w, 0.455, Qt::RightButton);
    clickAtData(w, 0.57, Qt::RightButton);
    QCOMPARE(S().Fourier.Range.RangeSet, rt::True);
    const QStringList start = {"0.514", "2.0", "25", "3", "0", "0", "0", "0"};
    for (int k = 1; k <= 8; ++k)
        w.Text1(k)->setText(start[k - 1]);
    w.Command1()->click();
    const FourierState& f = S().Fourier;
    QVERIFY(*std::min_element(&f.CurveM(0), &f.CurveM(0) + 101) < S().MagMin - S().MagRange);
    checkOnlyTheBoxChanged(w);
    QVERIFY(countColour(w.picture(), interiorOf(w, 1), colours::blue).inside > 100);
    QVERIFY(countColour(w.picture(), interiorOf(w, 1), colours::purple).inside > 50);
}

// The stored curve drawn again thin (focus, resize) is clipped like the first drawing.
void ClippingTest::aCurveDrawnAgainIsClippedAgain()
{
    auto& w = static_cast<frmPlott5&>(open(5));
    clickAtData(w, 0.455, Qt::RightButton);
    clickAtData(w, 0.57, Qt::RightButton);
    const QStringList start = {"0.514", "2.0", "25", "3", "0", "0", "0", "0"};
    for (int k = 1; k <= 8; ++k)
        w.Text1(k)->setText(start[k - 1]);
    w.Command1()->click();
    w.Form_LostFocus();
    checkOnlyTheBoxChanged(w);
    w.resize(w.width() + 60, w.height() + 45);
    QApplication::processEvents();
    const QImage picture = w.picture();
    const QRect interior = interiorOf(w, picture.devicePixelRatio());
    QCOMPARE(countColour(picture, interior, colours::blue).outside, 0);
    QVERIFY(countColour(picture, interior, colours::blue).inside > 20);
}

QTEST_MAIN(ClippingTest)
#include "tst_clipping.moc"
