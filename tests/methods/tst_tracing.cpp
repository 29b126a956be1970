// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#include "methods/TracingCurves.h"
#include "methods/tracing/TracingPaper.h"
#include "methods/tracing/TracingPaperMemory.h"
#include "plotting/PlotBox.h"
#include "runtime/Text.h"
#include "session/LoadDataFile.h"
#include "session/MainForm.h"
#include "session/Procedures.h"
#include "session/Session.h"
#include "support/CanvasRecorder.h"
#include "support/TestSupport.h"

#include <cmath>
#include <memory>

using namespace dip;
using dip::test::tenPoints;

namespace {

// The window in memory, recording what is drawn.
using RecordingWindow = test::CanvasRecorderOn<TracingPaperMemory>;

// n points 0.01 apart with a ragged dip, deepest after the first point, for the running means.
QByteArray raggedPoints(int n)
{
    QByteArray out;
    const int centre = n / 2 + 1;
    for (int i = 1; i <= n; ++i) {
        const double m = 11.0 + 0.9 / (1.0 + 0.1 * (i - centre) * (i - centre)) + 0.07 * std::sin(2.9 * i);
        out += QByteArray::number(0.3 + 0.01 * i, 'g', 17) + "," + QByteArray::number(m, 'g', 17) + "\n";
    }
    return out;
}

// Mean of Mag(i - k .. i + k), summed a second way (from the right).
double mean(int i, int k)
{
    double sum = 0;
    for (int j = i + k; j >= i - k; --j)
        sum += S().Mag(j);
    return sum / (2 * k + 1);
}

bool near(double a, double b, double tolerance = 1e-6) { return std::abs(a - b) <= tolerance; }

} // namespace

class TracingPaperTest : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void init();
    void cleanup();
    void openingPublishesLoadFold();
    void windowBoxRightAligned_data();
    void windowBoxRightAligned();
    void typedFold_data();
    void typedFold();
    void errorAlwaysFixed_data();
    void errorAlwaysFixed();
    void scrollMovesFromFaintestPoint_data();
    void scrollMovesFromFaintestPoint();
    void scrollBeyondDataClamps_data();
    void scrollBeyondDataClamps();
    void barOutsideRangeRaises_data();
    void barOutsideRangeRaises();
    void smoothingTooFewPoints_data();
    void smoothingTooFewPoints();
    void fourPressesReachNine();
    void gradedEnds();
    void undoSmooth();
    void reopeningKeepsWidthAndLabel();
    void loadResetsWidthNotLabel();
    void foldBeforeFirstObservation();
    void foldAtOrAfterLast_data();
    void foldAtOrAfterLast();
    void foldInsideMirrorsLaterPoints();
    void scaleStopsShortOfFold();
    void foldShownClamps_data();
    void foldShownClamps();
    void gridOverFoldSpan();
    void faintestFirstGivesZeroSpan();
    void controlPositions_data();
    void controlPositions();

private:
    std::unique_ptr<RecordingWindow> m_window;
    void type(const QString& text);
};

void TracingPaperTest::init()
{
    test::freshSession();
    m_window = std::make_unique<RecordingWindow>();
}

void TracingPaperTest::cleanup() { m_window.reset(); }

void TracingPaperTest::type(const QString& text)
{
    m_window->setControlText(QStringLiteral("Text1"), text);
    UpdateFold(m_window->view());
}

void TracingPaperTest::openingPublishesLoadFold()
{
    QVERIFY(test::loadText(tenPoints()));
    const Session& s = S();
    QCOMPARE(m_window->caption(), tracingPaperCaption());
    QCOMPARE(m_window->controlText("Label8"), QStringLiteral("No averaging"));
    QCOMPARE(m_window->scrollValue(), ScrollCentre);
    OpenTracingPaper(m_window->view());
    QCOMPARE(m_window->shows(), 1);
    QCOMPARE(s.FoldHJD, RoundTo(s.HJD(6), 4));
    for (int i = 1; i <= 10; ++i)
        QCOMPARE(s.SmoothMag(i), s.Mag(i));
    QCOMPARE(m_window->controlText("Text1"), QStringLiteral("       0.45000"));
    QCOMPARE(mainForm().text(2), QStringLiteral("0.45000"));
    QCOMPARE(mainForm().text(8), QStringLiteral("0.0001"));
    QVERIFY(mainForm().checked(2));
}

void TracingPaperTest::windowBoxRightAligned_data()
{
    QTest::addColumn<QString>("typed");
    QTest::addColumn<QString>("box");
    QTest::addColumn<QString>("result");
    QTest::newRow("fraction of a day") << "0.4213"
                                       << "       0.42130"
                                       << "0.42130";
    QTest::newRow("full date") << "2459123.4213"
                               << " 2459123.42130"
                               << "2459123.42130";
    QTest::newRow("cut, not rounded") << "0.4213389"
                                      << "       0.42134"
                                      << "0.42134";
}

void TracingPaperTest::windowBoxRightAligned()
{
    QFETCH(QString, typed);
    QFETCH(QString, box);
    QFETCH(QString, result);
    QVERIFY(test::loadText(tenPoints()));
    OpenTracingPaper(m_window->view());
    type(typed);
    QCOMPARE(m_window->controlText("Text1"), box);
    QCOMPARE(m_window->controlText("Text1").size(), 14);
    QCOMPARE(mainForm().text(2), result);
}

void TracingPaperTest::typedFold_data()
{
    QTest::addColumn<QString>("typed");
    QTest::addColumn<double>("fold");
    QTest::newRow("number") << "0.4213" << 0.4213;
    QTest::newRow("leading blanks") << "   0.44" << 0.44;
    QTest::newRow("numeric prefix") << "0.43abc" << 0.43;
    QTest::newRow("no number: 0") << "abc" << 0.0;
    QTest::newRow("empty: 0") << "" << 0.0;
}

void TracingPaperTest::typedFold()
{
    QFETCH(QString, typed);
    QFETCH(double, fold);
    QVERIFY(test::loadText(tenPoints()));
    OpenTracingPaper(m_window->view());
    m_window->setScrollValue(ScrollCentre + 7);
    const int clearsBefore = m_window->clears;
    type(typed);
    QCOMPARE(S().FoldHJD, fold);
    QCOMPARE(m_window->scrollValue(), ScrollCentre + 7); // the bar is not moved
    QCOMPARE(m_window->clears, clearsBefore + 1);
    QCOMPARE(mainForm().text(2), FormatResult(fold));
    QCOMPARE(m_window->controlText("Text1"), FormatFixed(fold, 14, 5));
}

void TracingPaperTest::errorAlwaysFixed_data()
{
    QTest::addColumn<QByteArray>("data");
    QTest::addColumn<QString>("typed");
    QTest::newRow("short times, load fold") << tenPoints() << QString();
    QTest::newRow("short times, typed") << tenPoints() << "0.47";
    QTest::newRow("long curve, typed far off") << raggedPoints(200) << "7";
    QTest::newRow("full dates") << QByteArray("2459123.40,11\n2459123.41,12\n2459123.42,11.5\n") << "2459123.4123";
}

void TracingPaperTest::errorAlwaysFixed()
{
    QFETCH(QByteArray, data);
    QFETCH(QString, typed);
    QVERIFY(test::loadText(data));
    OpenTracingPaper(m_window->view());
    QCOMPARE(mainForm().text(8), QStringLiteral("0.0001"));
    if (!typed.isEmpty()) {
        type(typed);
        QCOMPARE(mainForm().text(8), QStringLiteral("0.0001"));
    }
    m_window->setScrollValue(ScrollCentre - 3);
    QCOMPARE(mainForm().text(8), QStringLiteral("0.0001"));
    SmoothFold(m_window->view());
    QCOMPARE(mainForm().text(8), QStringLiteral("0.0001"));
}

void TracingPaperTest::scrollMovesFromFaintestPoint_data()
{
    QTest::addColumn<int>("bar");
    QTest::newRow("one right") << ScrollCentre + 1;
    QTest::newRow("one left") << ScrollCentre - 1;
    QTest::newRow("a page right") << ScrollCentre + 5;
    QTest::newRow("400 left") << ScrollCentre - 400;
}

void TracingPaperTest::scrollMovesFromFaintestPoint()
{
    QFETCH(int, bar);
    // The faintest point at 0.45123: the load fold is rounded to 0.4512, the bar's origin is not.
    QVERIFY(test::loadText("0.40,11\n0.43,11.5\n0.45123,12\n0.47,11.4\n0.49,11\n"));
    OpenTracingPaper(m_window->view());
    QCOMPARE(S().FoldHJD, 0.4512);
    type(QStringLiteral("0.3")); // a typed fold is discarded by the bar
    m_window->setScrollValue(bar);
    const double expected = 0.45123 + 0.0001 * (bar - ScrollCentre);
    QCOMPARE(S().FoldHJD, expected);
    QCOMPARE(m_window->scrollValue(), bar);
    QCOMPARE(mainForm().text(2), FormatResult(expected));
}

void TracingPaperTest::scrollBeyondDataClamps_data()
{
    QTest::addColumn<int>("bar");
    QTest::addColumn<double>("fraction");
    QTest::newRow("left of the start: 5 %") << 0 << 0.05;
    QTest::newRow("right of the end: 95 %") << ScrollMax << 0.95;
}

void TracingPaperTest::scrollBeyondDataClamps()
{
    QFETCH(int, bar);
    QFETCH(double, fraction);
    QVERIFY(test::loadText(tenPoints()));
    const Session& s = S();
    OpenTracingPaper(m_window->view());
    m_window->setScrollValue(bar);
    const double clamped = s.HJDMin + fraction * s.HJDRange;
    const int expectedBar = static_cast<int>(std::nearbyint(ScrollCentre + (clamped - s.HJD(6)) / FoldStep));
    QCOMPARE(m_window->scrollValue(), expectedBar);
    // The bar's change event ran the handler again: the fold lies on the grid about HJD(6).
    QCOMPARE(s.FoldHJD, s.HJD(6) + FoldStep * (expectedBar - ScrollCentre));
    QVERIFY(near(s.FoldHJD, clamped, FoldStep / 2));
    QVERIFY(s.FoldHJD >= s.HJDMin && s.FoldHJD <= s.HJDMax);
    QCOMPARE(mainForm().text(2), FormatResult(s.FoldHJD));
}

void TracingPaperTest::barOutsideRangeRaises_data()
{
    QTest::addColumn<QByteArray>("data");
    QTest::addColumn<int>("bar");
    // 5 % of a 100-day curve lies 5 days after a faintest point at its start: beyond the bar.
    QTest::newRow("5 % too far right") << QByteArray("0,11\n0.5,12\n5,11\n50,11.2\n100,11.1\n") << 0;
    QTest::newRow("95 % too far left") << QByteArray("0,11.1\n50,11.2\n95,11\n99.5,12\n100,11\n") << ScrollMax;
}

void TracingPaperTest::barOutsideRangeRaises()
{
    QFETCH(QByteArray, data);
    QFETCH(int, bar);
    QVERIFY(test::loadText(data));
    OpenTracingPaper(m_window->view());
    DIP_EXPECT_RUNTIME_ERROR(m_window->setScrollValue(bar), 380);
}

void TracingPaperTest::smoothingTooFewPoints_data()
{
    QTest::addColumn<int>("points");
    QTest::addColumn<int>("presses");
    QTest::addColumn<QString>("label");
    QTest::newRow("2 points, 3-point") << 2 << 1 << "3-point averaging";
    QTest::newRow("4 points, 5-point") << 4 << 2 << "5-point averaging";
    QTest::newRow("6 points, 7-point") << 6 << 3 << "7-point averaging";
    QTest::newRow("8 points, 9-point") << 8 << 4 << "9-point averaging";
}

void TracingPaperTest::smoothingTooFewPoints()
{
    QFETCH(int, points);
    QFETCH(int, presses);
    QFETCH(QString, label);
    QVERIFY(test::loadText(raggedPoints(points)));
    const Session& s = S();
    OpenTracingPaper(m_window->view());
    for (int p = 1; p < presses; ++p)
        SmoothFold(m_window->view());
    std::vector<double> before;
    for (int i = 1; i <= points; ++i)
        before.push_back(s.SmoothMag(i));
    SmoothFold(m_window->view());
    for (int i = 1; i <= points; ++i)
        QCOMPARE(s.SmoothMag(i), before[static_cast<std::size_t>(i - 1)]);
    QCOMPARE(int(s.AvgPoints), 2 * presses + 1);
    QCOMPARE(m_window->controlText("Label8"), label);
}

void TracingPaperTest::fourPressesReachNine()
{
    QVERIFY(test::loadText(raggedPoints(30)));
    const Session& s = S();
    OpenTracingPaper(m_window->view());
    const QStringList labels{"3-point averaging", "5-point averaging", "7-point averaging", "9-point averaging"};
    for (int p = 0; p < 4; ++p) {
        SmoothFold(m_window->view());
        QCOMPARE(m_window->controlText("Label8"), labels[p]);
        QCOMPARE(int(s.AvgPoints), 3 + 2 * p);
    }
    DIP_COMPARE_REL(s.SmoothMag(15), mean(15, 4), 1e-14);
    std::vector<double> before;
    for (int i = 1; i <= 30; ++i)
        before.push_back(s.SmoothMag(i));
    const int clears = m_window->clears;
    SmoothFold(m_window->view());
    QCOMPARE(m_window->clears, clears + 1); // redrawn
    QCOMPARE(int(s.AvgPoints), 9);
    QCOMPARE(m_window->controlText("Label8"), labels[3]);
    for (int i = 1; i <= 30; ++i)
        QCOMPARE(s.SmoothMag(i), before[static_cast<std::size_t>(i - 1)]);
}

void TracingPaperTest::gradedEnds()
{
    const int n = 20;
    QVERIFY(test::loadText(raggedPoints(n)));
    const Session& s = S();
    OpenTracingPaper(m_window->view());
    SmoothFold(m_window->view());
    SmoothFold(m_window->view());
    SmoothFold(m_window->view());
    QCOMPARE(s.SmoothMag(1), s.Mag(1));
    QCOMPARE(s.SmoothMag(n), s.Mag(n));
    DIP_COMPARE_REL(s.SmoothMag(2), mean(2, 1), 1e-14);
    DIP_COMPARE_REL(s.SmoothMag(n - 1), mean(n - 1, 1), 1e-14);
    DIP_COMPARE_REL(s.SmoothMag(3), mean(3, 2), 1e-14);
    DIP_COMPARE_REL(s.SmoothMag(n - 2), mean(n - 2, 2), 1e-14);
    // The means are over the raw magnitudes, never over an earlier smoothing.
    for (int i = 4; i <= n - 3; ++i)
        DIP_COMPARE_REL(s.SmoothMag(i), mean(i, 3), 1e-14);
    QVERIFY(std::abs(s.SmoothMag(10) - mean(10, 3)) < 1e-12);
    QVERIFY(std::abs(s.SmoothMag(10) - s.Mag(10)) > 1e-3);
}

void TracingPaperTest::undoSmooth()
{
    const int n = 25;
    QVERIFY(test::loadText(raggedPoints(n)));
    Session& s = S();
    OpenTracingPaper(m_window->view());
    SmoothFold(m_window->view());
    SmoothFold(m_window->view());
    // Entries 1 and n are never written by the means; mark them to see Undo leave them alone.
    s.SmoothMag(1) = 99;
    s.SmoothMag(n) = 98;
    UndoSmoothFold(m_window->view());
    for (int i = 2; i <= n - 1; ++i)
        QCOMPARE(s.SmoothMag(i), s.Mag(i));
    QCOMPARE(s.SmoothMag(1), 99.0);
    QCOMPARE(s.SmoothMag(n), 98.0);
    QCOMPARE(int(s.AvgPoints), 1);
    QCOMPARE(m_window->controlText("Label8"), QStringLiteral("No averaging"));
    SmoothFold(m_window->view());
    QCOMPARE(m_window->controlText("Label8"), QStringLiteral("3-point averaging"));
}

void TracingPaperTest::reopeningKeepsWidthAndLabel()
{
    const int n = 20;
    QVERIFY(test::loadText(raggedPoints(n)));
    const Session& s = S();
    OpenTracingPaper(m_window->view());
    SmoothFold(m_window->view());
    SmoothFold(m_window->view());
    OpenTracingPaper(m_window->view()); // the main window's button again: raw data, the old width and label
    for (int i = 1; i <= n; ++i)
        QCOMPARE(s.SmoothMag(i), s.Mag(i));
    QCOMPARE(int(s.AvgPoints), 5);
    QCOMPARE(m_window->controlText("Label8"), QStringLiteral("5-point averaging"));
    SmoothFold(m_window->view());
    QCOMPARE(int(s.AvgPoints), 7);
    QCOMPARE(m_window->controlText("Label8"), QStringLiteral("7-point averaging"));
    for (int i = 4; i <= n - 3; ++i)
        DIP_COMPARE_REL(s.SmoothMag(i), mean(i, 3), 1e-14);
    // The ends now keep raw magnitudes: the lower levels were discarded by the reopening.
    QCOMPARE(s.SmoothMag(2), s.Mag(2));
    QCOMPARE(s.SmoothMag(3), s.Mag(3));
}

void TracingPaperTest::loadResetsWidthNotLabel()
{
    QVERIFY(test::loadText(raggedPoints(20)));
    OpenTracingPaper(m_window->view());
    SmoothFold(m_window->view());
    SmoothFold(m_window->view());
    test::DataFolder folder;
    folder.write(QStringLiteral("other.csv"), raggedPoints(15));
    QVERIFY(OpenDataFile(folder.path(), QStringLiteral("other.csv")));
    QCOMPARE(int(S().AvgPoints), 1);
    QCOMPARE(m_window->controlText("Label8"), QStringLiteral("5-point averaging"));
    OpenTracingPaper(m_window->view());
    SmoothFold(m_window->view());
    QCOMPARE(m_window->controlText("Label8"), QStringLiteral("3-point averaging"));
}

void TracingPaperTest::foldBeforeFirstObservation()
{
    QVERIFY(test::loadText(tenPoints()));
    const Session& s = S();
    OpenTracingPaper(m_window->view());
    type(QStringLiteral("0.3"));
    const PlotScale scale{s.HJDMin, s.FoldSpan, s.MagMin, s.MagRange};
    const auto red = m_window->dotsIn(colours::red);
    QCOMPARE(red.size(), 1);
    QCOMPARE(red[0].x, PlotX(m_window->transform(), scale, 0.40));
    QCOMPARE(red[0].y, PlotY(m_window->transform(), scale, s.SmoothMag(1)));
    QCOMPARE(m_window->linesIn(colours::red).size(), 0);
    // Points 2..10 mirrored; the first of them has no dot.
    const auto blue = m_window->dotsIn(colours::blue);
    QCOMPARE(blue.size(), 8);
    for (int i = 3; i <= 10; ++i) {
        QCOMPARE(blue[i - 3].x, PlotX(m_window->transform(), scale, 2 * 0.3 - s.HJD(i)));
        QCOMPARE(blue[i - 3].y, PlotY(m_window->transform(), scale, s.SmoothMag(i)));
    }
    const auto blueLines = m_window->linesIn(colours::blue);
    QCOMPARE(blueLines.size(), 8);
    QCOMPARE(blueLines[0].x1, PlotX(m_window->transform(), scale, 2 * 0.3 - s.HJD(2)));
}

void TracingPaperTest::foldAtOrAfterLast_data()
{
    QTest::addColumn<QString>("typed");
    QTest::newRow("at the last observation") << "0.49";
    QTest::newRow("after it") << "0.6";
}

void TracingPaperTest::foldAtOrAfterLast()
{
    QFETCH(QString, typed);
    QVERIFY(test::loadText(tenPoints()));
    const Session& s = S();
    OpenTracingPaper(m_window->view());
    type(typed);
    const PlotScale scale{s.HJDMin, s.FoldSpan, s.MagMin, s.MagRange};
    const auto red = m_window->dotsIn(colours::red);
    QCOMPARE(red.size(), 10);
    for (int i = 1; i <= 10; ++i)
        QCOMPARE(red[i - 1].x, PlotX(m_window->transform(), scale, s.HJD(i)));
    QCOMPARE(m_window->linesIn(colours::red).size(), 9);
    QCOMPARE(m_window->dotsIn(colours::blue).size(), 0);
    QCOMPARE(m_window->linesIn(colours::blue).size(), 0);
}

void TracingPaperTest::foldInsideMirrorsLaterPoints()
{
    QVERIFY(test::loadText(tenPoints()));
    Session& s = S();
    OpenTracingPaper(m_window->view());
    SmoothFold(m_window->view()); // both branches use SmoothMag
    type(QStringLiteral("0.445"));
    const PlotScale scale{s.HJDMin, s.FoldSpan, s.MagMin, s.MagRange};
    const auto red = m_window->dotsIn(colours::red);
    QCOMPARE(red.size(), 5);
    for (int i = 1; i <= 5; ++i)
        QCOMPARE(red[i - 1].y, PlotY(m_window->transform(), scale, s.SmoothMag(i)));
    QVERIFY(s.SmoothMag(2) != s.Mag(2));
    const auto blue = m_window->dotsIn(colours::blue);
    QCOMPARE(blue.size(), 4);
    for (int i = 7; i <= 10; ++i) {
        QCOMPARE(blue[i - 7].x, PlotX(m_window->transform(), scale, 2 * 0.445 - s.HJD(i)));
        QCOMPARE(blue[i - 7].y, PlotY(m_window->transform(), scale, s.SmoothMag(i)));
    }
    // The mirrored point 6 lands on 0.44 (point 5's time): reflected branches overlay.
    const auto blueLines = m_window->linesIn(colours::blue);
    QCOMPARE(blueLines.size(), 4);
    QVERIFY(near(blueLines[0].x1, PlotX(m_window->transform(), scale, 0.44)));
    // The mirrored branch inside the plot box only; the branch as observed, the frame, grid and
    // axes are not clipped.
    for (const auto& l : blueLines)
        QVERIFY(l.clipped);
    for (const auto& d : blue)
        QVERIFY(d.clipped);
    for (const auto& d : red)
        QVERIFY(!d.clipped);
    for (const auto& l :
         m_window->linesIn(colours::red) + m_window->linesIn(colours::black) + m_window->linesIn(colours::lightGrey))
        QVERIFY(!l.clipped);
    QCOMPARE(m_window->clips.size(), qsizetype(1));
}

void TracingPaperTest::scaleStopsShortOfFold()
{
    QVERIFY(test::loadText(tenPoints()));
    const Session& s = S();
    m_window->setFormSize(9000, 6000);
    OpenTracingPaper(m_window->view());
    type(QStringLiteral("0.445"));
    QCOMPARE(s.PlotLeft, 500.0);
    QCOMPARE(s.PlotRight, 9000.0 - 415);
    QCOMPARE(s.PlotTop, 242.0);
    QCOMPARE(s.PlotBottom, 6000.0 - 2100);
    QCOMPARE(s.PlotWidth, 9000.0 - 915);
    QCOMPARE(s.PlotHeight, 6000.0 - 2342);
    QCOMPARE(s.FoldShown, 0.445);
    QCOMPARE(s.FoldSpan, 0.445 - 0.40);
    // x = 500 + (W - 915) (t - HJDMin) / FoldSpan: the right edge is HJDMin + FoldSpan, 0.002
    // short of the fold.
    const auto red = m_window->dotsIn(colours::red);
    QCOMPARE(red[0].x, 500 + 8085 * (0.40 - s.HJDMin) / (0.445 - 0.40));
    QVERIFY(near(500 + 8085 * (s.HJDMin + s.FoldSpan - s.HJDMin) / s.FoldSpan, s.PlotRight));
    QVERIFY(near(s.HJDMin + s.FoldSpan, 0.443));
    // y = 242 + (H - 2342) (m - MagMin) / MagRange, fainter lower.
    QCOMPARE(red[0].y, 242 + 3658 * (s.SmoothMag(1) - s.MagMin) / s.MagRange);
    // The frame is black.
    QVERIFY(!m_window->linesIn(colours::black).isEmpty());
}

void TracingPaperTest::foldShownClamps_data()
{
    QTest::addColumn<QString>("typed");
    QTest::addColumn<double>("shownFraction");
    QTest::newRow("inside: the fold") << "0.46" << -1.0;
    QTest::newRow("below HJDMin: 5 % in") << "0.1" << 0.05;
    QTest::newRow("above HJDMax: 5 % short of the end") << "0.9" << 0.95;
}

void TracingPaperTest::foldShownClamps()
{
    QFETCH(QString, typed);
    QFETCH(double, shownFraction);
    QVERIFY(test::loadText(tenPoints()));
    const Session& s = S();
    OpenTracingPaper(m_window->view());
    type(typed);
    if (shownFraction < 0)
        QCOMPARE(s.FoldShown, s.FoldHJD);
    else if (shownFraction < 0.5)
        QCOMPARE(s.FoldShown, s.HJDMin + 0.05 * (s.HJDMax - s.HJDMin));
    else
        QCOMPARE(s.FoldShown, s.HJDMax - 0.05 * (s.HJDMax - s.HJDMin));
    QCOMPARE(s.FoldSpan, s.FoldShown - s.HJD(1));
    QCOMPARE(s.FoldHJD, rt::Val(typed)); // the fold itself is never clamped here
}

void TracingPaperTest::gridOverFoldSpan()
{
    QVERIFY(test::loadText(tenPoints()));
    const Session& s = S();
    OpenTracingPaper(m_window->view());
    type(QStringLiteral("0.445"));
    // FoldSpan 0.045: L = -2, P = 0.01, r = 4.5, step 0.005 (single precision), lines from
    // Int(0.398 / step) to Int(0.445 / step) inside the box: 0.400, 0.405, ... 0.440.
    QCOMPARE(ComputeGridStep(s.FoldSpan).step, 0.005f);
    QList<double> times;
    const PlotScale scale{s.HJDMin, s.FoldSpan, s.MagMin, s.MagRange};
    for (const auto& l : m_window->linesIn(colours::lightGrey)) {
        QCOMPARE(l.x1, l.x2);
        QCOMPARE(l.y1, s.PlotTop);
        QCOMPARE(l.y2, s.PlotBottom);
        times << PlotTimeAt(m_window->transform(), scale, l.x1);
    }
    QCOMPARE(times.size(), 9);
    // Multiples of the single-precision step: 80 to 88 times 0.005f.
    for (int j = 0; j < 9; ++j)
        QVERIFY(near(times[j], static_cast<double>(0.005f) * (80 + j), 1e-12));
}

void TracingPaperTest::faintestFirstGivesZeroSpan()
{
    // The load fold on point 1 itself: FoldSpan is 0 and the scale divides by it. Not guarded,
    // like every plot of a zero time range.
    QVERIFY(test::loadText("0.5,12\n0.6,11\n0.7,11.2\n"));
    QCOMPARE(S().FoldHJD, 0.5);
    DIP_EXPECT_RUNTIME_ERROR(OpenTracingPaper(m_window->view()), 11);
}

void TracingPaperTest::controlPositions_data()
{
    QTest::addColumn<double>("width");
    QTest::addColumn<double>("height");
    QTest::newRow("9000 x 6000") << 9000.0 << 6000.0;
    QTest::newRow("12000 x 8100") << 12000.0 << 8100.0;
}

void TracingPaperTest::controlPositions()
{
    QFETCH(double, width);
    QFETCH(double, height);
    QVERIFY(test::loadText(tenPoints()));
    m_window->setFormSize(width, height);
    OpenTracingPaper(m_window->view());
    const double top = height - 1550, bar = height - 1130;
    QCOMPARE(m_window->controlPosition("Label7"), QPointF(240, top));
    QCOMPARE(m_window->controlPosition("Text1"), QPointF(1320, top));
    QCOMPARE(m_window->controlPosition("Command1"), QPointF(2880, top));
    QCOMPARE(m_window->controlPosition("Command2"), QPointF(3960, top));
    QCOMPARE(m_window->controlPosition("Command3"), QPointF(4920, top));
    QCOMPARE(m_window->controlPosition("Command4"), QPointF(6600, top));
    QCOMPARE(m_window->controlPosition("HScroll1"), QPointF(240, bar));
    QCOMPARE(m_window->controlPosition("Label8"), QPointF(3960, bar));
}

QTEST_GUILESS_MAIN(TracingPaperTest)
#include "tst_tracing.moc"
