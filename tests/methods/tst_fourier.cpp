// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#include "app/MeasureRun.h"
#include "methods/MethodRegistry.h"
#include "methods/fourier/FourierFit.h"
#include "methods/marquardt/Marquardt.h"
#include "methods/marquardt/MarquardtSolver.h"
#include "plotting/PlotBox.h"
#include "runtime/Numeric.h"
#include "runtime/Text.h"
#include "session/MainForm.h"
#include "session/Procedures.h"
#include "session/Session.h"
#include "support/CanvasRecorder.h"
#include "support/TestSupport.h"

#include <QJsonArray>
#include <QJsonObject>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <random>
#include <vector>

using namespace dip;
using namespace dip::test;

namespace {

// The strokes drawn in a colour (lines and lines from the pen), in order.
QList<CanvasRecorder::Call> strokesIn(const CanvasRecorder& form, Rgb colour)
{
    QList<CanvasRecorder::Call> found;
    for (const CanvasRecorder::Call& c : form.calls)
        if ((c.op == CanvasRecorder::Op::Line || c.op == CanvasRecorder::Op::LineTo) && c.colour == colour)
            found << c;
    return found;
}

// The Fourier window with a plot box of 8000 x 4000 twips; its plot drawing only clears.
struct Window {
    CanvasRecorder form;
    FourierView view{form, [this] { drawPlot(); }};
    int plots = 0;
    double right = 8600; // the box's right edge: the window's width

    void drawPlot()
    {
        form.cls();
        ++plots;
        SetPlotBox(form, 600, right, 400, 4400);
    }
    // "5. Fourier Fit" on the main window.
    void open()
    {
        QVERIFY(MethodButtonPrelude(MethodOfRow(5)));
        pressFourierButton(view);
    }
    double xOf(double t) const
    {
        const PlotTransform& b = form.transform();
        return b.PlotLeft + b.PlotWidth * (t - S().HJDMin) / S().HJDRange;
    }
    // A right-click exactly at time t, at its place across the plot.
    void pick(double t) { pickFourierEnd(view, Click::atTime(form.transform(), t)); }
    void type(const QStringList& texts)
    {
        for (int k = 1; k <= 8; ++k)
            form.setControlText(fourierText::boxName(k), texts.value(k - 1));
    }
    // Both ends picked, the texts typed and "Update" pressed.
    void pickAndUpdate(const QStringList& texts, double left = 2451234.51, double right = 2451234.63)
    {
        pick(left);
        pick(right);
        type(texts);
        updateFourier(view);
    }
    QString box(int k) const { return form.controlText(fourierText::boxName(k)); }
};

// Model parameters in box order: Xo, C, W, A1..A5.
struct Par {
    double v[9];
};

double model(double t, const Par& p) { return fourierMag(t, p.v[1], p.v[2], p.v[3], &p.v[4]); }

const Par truth = {{0, 2451234.5678, 12.5, 30, 0.3, 0.1, 0.04, 0.01, 0.003}};
const QStringList nearStart = {"2451234.566", "12.45", "29", ".25", ".12", ".05", ".012", ".002"};

Points dipCurve(const Par& p, int n, double t0, double t1, double noise, unsigned seed)
{
    return fourierDip(p.v[1], p.v[2], p.v[3], &p.v[4], n, t0, t1, noise, seed);
}

// 101 points over 0.14 day with 0.01 mag of scatter.
std::vector<std::pair<double, double>> noisyDip() { return dipCurve(truth, 101, 2451234.50, 2451234.64, 0.01, 3); }

bool load(const std::vector<std::pair<double, double>>& points) { return loadText(csv(points)); }

// The console tool's replay of "5. Fourier Fit": button, right-clicks, texts and "Update", fit.
ReplayResult replayFourier(const std::vector<double>& clicks, const std::optional<QStringList>& start)
{
    ReplayRequest request;
    request.clicks = clicks;
    request.fourierStart = start;
    return ReplayMethod(5, request);
}

// The solver stepped directly, without any stop rule: the start call and then all 501 loop
// calls, recording chi-square and the parameters after each. The test finds in this record
// where the fit had to stop.
struct Trace {
    std::vector<double> chisq; // [0] after the start call, [c] after loop call c
    std::vector<ParVector> a;  // the same
};

Trace traceSchedule(Integer first, Integer last, ParVector a)
{
    Session& s = S();
    FitArray x, y, sig;
    const Integer n = rt::i16(last - first + 1);
    for (int i = 1; i <= n; ++i) {
        x(i) = s.HJD(first + i - 1);
        y(i) = s.Mag(first + i - 1);
        sig(i) = 0.01;
    }
    ParList lista;
    for (int j = 1; j <= 8; ++j)
        lista(j) = static_cast<Integer>(j);
    ParMatrix covar, alpha;
    double chisq = 0, alamda = -1;
    FourierSolver solver;
    Trace t;
    for (int c = 0; c <= 501; ++c) {
        solver.step(x, y, sig, n, a, 8, lista, 8, covar, alpha, 8, chisq, alamda);
        t.chisq.push_back(chisq);
        t.a.push_back(a);
    }
    return t;
}

ParVector solverOrder(const QStringList& texts)
{
    rt::Array<double, 0, 8> par;
    for (int k = 1; k <= 8; ++k)
        par(k) = rt::Val(texts.value(k - 1));
    ParVector a;
    fourierParToSolver(par, a);
    return a;
}

} // namespace

class FourierTest : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void init();
    void startValuesShownAtFirstOpeningAfterLoad();
    void typedTextsKeptOnReopening();
    void prompts();
    void sideByEstimatedIndex_data();
    void sideByEstimatedIndex();
    void endsLieInsideTheClickedSpan();
    void mouseOutsideBoxOrOtherButton();
    void oldMarkerPaintedOverInWhite();
    void updateWithoutRange();
    void updateReadsBoxes_data();
    void updateReadsBoxes();
    void updateDrawsThickCurve();
    void redrawIsThin();
    void fitWithoutRange();
    void fitPublishesAndRewritesBoxes();
    void loopStopsAtFirstSmallGain();
    void cannotImproveRunsAll501();
    void zeroAmplitudesSingularOnEveryIteration();
    void secondFitClickChangesNothing();
    void undoRestoresAndRangeMustBePickedAgain();
    void displayedTimeAddsHJDOffset();
    void methodButtonRedrawsMarkersAndCurve();
    void undoCaptionIsTheOpeningPrompt_data();
    void undoCaptionIsTheOpeningPrompt();
    void everyRedrawKeepsThePickedEnds_data();
    void everyRedrawKeepsThePickedEnds();
    void markersFollowTheBox();
    void curvesAndMarkersClippedToTheBox();
    void parEditedFlags();
    void syntheticDipRecoversXo();
    void replayMatchesWindow();
    void replayWithoutStartUsesLoadValues();
    void consoleToolPrintsTheBoxes();
};

void FourierTest::init() { S().HJDOffset = 0; }

void FourierTest::startValuesShownAtFirstOpeningAfterLoad()
{
    const auto points = dipCurve(truth, 41, 2451234.50, 2451234.64, 0.004, 1);
    QVERIFY(load(points));
    // The start values come from the magnitudes as the reader holds them before "+Mags" is
    // selected, inverted: the time of the brightest point and its negated magnitude.
    std::size_t brightest = 0;
    for (std::size_t i = 1; i < points.size(); ++i)
        if (points[i].second < points[brightest].second)
            brightest = i;
    Window w;
    w.open();
    QCOMPARE(w.box(1), rt::NumText(points[brightest].first));
    QCOMPARE(w.box(2), rt::NumText(-points[brightest].second));
    const QStringList rest = {"25", ".2", ".1", ".05", ".01", ".005"};
    for (int k = 3; k <= 8; ++k)
        QCOMPARE(w.box(k), rest[k - 3]);
    QCOMPARE(w.plots, 1);
}

void FourierTest::typedTextsKeptOnReopening()
{
    QVERIFY(load(dipCurve(truth, 41, 2451234.50, 2451234.64, 0.004, 1)));
    Window w;
    w.open();
    w.form.setControlText(QStringLiteral("Text1_3"), QStringLiteral("31"));
    w.open();
    QCOMPARE(w.box(3), QStringLiteral("31"));
    // A new load puts its start values in again.
    QVERIFY(load(dipCurve(truth, 41, 2451234.50, 2451234.64, 0.004, 2)));
    w.open();
    QCOMPARE(w.box(3), QStringLiteral("25"));
}

void FourierTest::prompts()
{
    QVERIFY(load(dipCurve(truth, 41, 2451234.50, 2451234.64, 0.004, 1)));
    Window w;
    w.open();
    QCOMPARE(w.form.caption(), QStringLiteral("Fit Fourier - RIGHT-CLICK AT START (left end) OF RANGE."));
    w.pick(2451234.53);
    QCOMPARE(w.form.caption(), QStringLiteral("Fit Fourier - RIGHT-CLICK AT (right) END OF RANGE."));
    QCOMPARE(w.form.controlText(QStringLiteral("Label10")), rt::Str(S().Fourier.Range.LeftIdx));
    QCOMPARE(w.form.controlText(QStringLiteral("Label10")), QStringLiteral(" 10"));
    w.pick(2451234.61);
    QCOMPARE(w.form.caption(), QStringLiteral("Fit Fourier - CLICK 'Fit Fourier', OR 'Undo' TO START OVER."));
    QCOMPARE(w.form.controlText(QStringLiteral("Label8")), QStringLiteral(" 32"));
    QCOMPARE(fourierText::windowCaption(), QStringLiteral("Fourier Fit"));
}

void FourierTest::sideByEstimatedIndex_data()
{
    // Nine points, the deepest the fifth: the estimated index is 1 + 8 * fraction, rounded
    // halves to even.
    QTest::addColumn<double>("fraction");
    QTest::addColumn<bool>("right");
    QTest::newRow("4.5 rounds to 4: left") << 0.4375 << false;
    QTest::newRow("5.5 rounds to 6: right") << 0.5625 << true;
    QTest::newRow("exactly 5, the deepest: right") << 0.5 << true;
    QTest::newRow("4.49: left") << 0.43625 << false;
    QTest::newRow("first: left") << 0.0 << false;
    QTest::newRow("last: right") << 1.0 << true;
}

void FourierTest::sideByEstimatedIndex()
{
    QFETCH(double, fraction);
    QFETCH(bool, right);
    std::vector<std::pair<double, double>> points;
    const double mags[9] = {12.0, 12.1, 12.3, 12.6, 12.9, 12.7, 12.4, 12.2, 12.05};
    for (int i = 0; i < 9; ++i)
        points.push_back({100.0 + i, mags[i]});
    QVERIFY(load(points));
    QCOMPARE(S().IdxMagMax, Integer(5));
    Window w;
    w.open();
    // A click of the window, where (X - PlotLeft) / PlotWidth is the fraction exactly.
    fourierMouseDown(w.view, 2, S().PlotLeft + S().PlotWidth * fraction, (S().PlotTop + S().PlotBottom) / 2);
    const RangePick& r = S().Fourier.Range;
    QCOMPARE(r.RightSet == rt::True, right);
    QCOMPARE(r.LeftSet == rt::True, !right);
    QCOMPARE(r.RangeSet, rt::False);
}

void FourierTest::endsLieInsideTheClickedSpan()
{
    std::vector<std::pair<double, double>> points;
    const double mags[9] = {12.0, 12.1, 12.3, 12.6, 12.9, 12.7, 12.4, 12.2, 12.05};
    for (int i = 0; i < 9; ++i)
        points.push_back({100.0 + i, mags[i]});
    QVERIFY(load(points));
    Window w;
    w.open();
    // A click exactly on a point's time leaves that point out.
    w.pick(101.0);
    QCOMPARE(S().Fourier.Range.LeftIdx, Integer(3));
    w.pick(107.0);
    QCOMPARE(S().Fourier.Range.RightIdx, Integer(7));
    QCOMPARE(S().Fourier.Range.RangeSet, rt::True);
    w.pick(101.5);
    QCOMPARE(S().Fourier.Range.LeftIdx, Integer(3));
    w.pick(106.5);
    QCOMPARE(S().Fourier.Range.RightIdx, Integer(7));
    QCOMPARE(S().Fourier.Range.LeftHJD, 101.5);
    QCOMPARE(S().Fourier.Range.RightHJD, 106.5);
}

void FourierTest::mouseOutsideBoxOrOtherButton()
{
    QVERIFY(load(dipCurve(truth, 41, 2451234.50, 2451234.64, 0.004, 1)));
    Window w;
    w.open();
    RangePick& r = S().Fourier.Range;
    const QString caption = w.form.caption();
    fourierMouseDown(w.view, 2, S().PlotLeft - 1, 2000);
    fourierMouseDown(w.view, 2, 3000, S().PlotBottom + 1);
    QCOMPARE(w.form.caption(), caption);
    QCOMPARE(r.LeftSet, rt::False);
    QCOMPARE(r.RightSet, rt::False);

    // On the edge counts as inside; the time comes from the place across the box.
    fourierMouseDown(w.view, 2, S().PlotLeft, S().PlotTop);
    QCOMPARE(r.LeftSet, rt::True);
    QCOMPARE(r.LeftHJD, S().HJDMin);
    QCOMPARE(r.LeftIdx, Integer(1));

    // Another button inside only works out whether the range is complete.
    r.RightSet = rt::True;
    QCOMPARE(r.RangeSet, rt::False);
    fourierMouseDown(w.view, 1, 4000, 2000);
    QCOMPARE(r.RangeSet, rt::True);
    QCOMPARE(r.LeftIdx, Integer(1));
    QCOMPARE(w.form.caption(), QStringLiteral("Fit Fourier - RIGHT-CLICK AT (right) END OF RANGE."));
    r.RightSet = rt::False;
    fourierMouseDown(w.view, 1, S().PlotRight + 1, 2000);
    QCOMPARE(r.RangeSet, rt::True);
}

void FourierTest::oldMarkerPaintedOverInWhite()
{
    QVERIFY(load(dipCurve(truth, 41, 2451234.50, 2451234.64, 0.004, 1)));
    Window w;
    w.open();
    w.form.calls.clear();
    w.pick(2451234.53);
    // Before any marker was drawn, the erasing line goes at x = 0.
    QCOMPARE(w.form.calls.size(), qsizetype(2));
    QCOMPARE(w.form.calls[0].colour, colours::white);
    QCOMPARE(w.form.calls[0].x1, 0.0);
    QCOMPARE(w.form.calls[1].colour, colours::purple);
    const double first = Click::atTime(w.form.transform(), 2451234.53).X;
    QCOMPARE(w.form.calls[1].x1, first);
    QCOMPARE(w.form.calls[1].y1, S().PlotTop);
    QCOMPARE(w.form.calls[1].y2, S().PlotBottom);
    w.pick(2451234.54);
    QCOMPARE(w.form.calls[2].colour, colours::white);
    QCOMPARE(w.form.calls[2].x1, first);
    QCOMPARE(w.form.calls[3].x1, Click::atTime(w.form.transform(), 2451234.54).X);
}

void FourierTest::updateWithoutRange()
{
    QVERIFY(load(dipCurve(truth, 41, 2451234.50, 2451234.64, 0.004, 1)));
    Window w;
    w.open();
    w.pick(2451234.53); // one end only
    const double before = S().Fourier.FourierPar(3);
    w.type({"1", "2", "3", "4", "5", "6", "7", "8"});
    MessageRecorder messages;
    updateFourier(w.view);
    QCOMPARE(messages.messages(), QStringList{QStringLiteral("Select range first")});
    QCOMPARE(S().Fourier.FourierPar(3), before);
    QCOMPARE(S().Fourier.ParEntered, rt::False);
    QCOMPARE(w.plots, 1);
}

void FourierTest::updateReadsBoxes_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<double>("value");
    QTest::newRow("not a number") << "abc" << 0.0;
    QTest::newRow("leading number") << "12abc" << 12.0;
    QTest::newRow("empty") << "" << 0.0;
    QTest::newRow("blanks before") << "  31.5" << 31.5;
    QTest::newRow("exponent") << "1E-3" << 0.001;
    QTest::newRow("no leading zero") << "-.25" << -0.25;
}

void FourierTest::updateReadsBoxes()
{
    QFETCH(QString, text);
    QFETCH(double, value);
    QVERIFY(load(dipCurve(truth, 41, 2451234.50, 2451234.64, 0.004, 1)));
    Window w;
    w.open();
    w.pick(2451234.53);
    w.pick(2451234.61);
    QStringList texts = nearStart;
    texts[4] = text; // A2
    w.type(texts);
    updateFourier(w.view);
    QCOMPARE(S().Fourier.FourierPar(5), value);
    QCOMPARE(S().Fourier.FourierPar(1), 2451234.566);
    QCOMPARE(S().Fourier.ParEntered, rt::True);
    QCOMPARE(S().Fourier.FourierFitDone, rt::False);
    QVERIFY(w.form.controlText(QStringLiteral("Text5")).isEmpty());
}

void FourierTest::updateDrawsThickCurve()
{
    QVERIFY(load(dipCurve(truth, 41, 2451234.50, 2451234.64, 0.004, 1)));
    Window w;
    w.open();
    w.pick(2451234.53);
    w.pick(2451234.61);
    w.type(nearStart);
    const int plots = w.plots;
    updateFourier(w.view);
    QCOMPARE(w.plots, plots + 1);

    const Session& s = S();
    const FourierState& f = s.Fourier;
    const Integer first = f.Range.LeftIdx, last = f.Range.RightIdx;
    const double step = (s.HJD(last) - s.HJD(first)) / 100;
    Par typed;
    for (int k = 1; k <= 8; ++k)
        typed.v[k] = rt::Val(nearStart[k - 1]);
    for (int i = 0; i <= 100; ++i) {
        QCOMPARE(f.CurveT(i), s.HJD(first) + i * step);
        DIP_COMPARE_REL(f.CurveM(i), model(f.CurveT(i), typed), 1e-13);
    }
    const auto blue = strokesIn(w.form, colours::blue);
    QCOMPARE(blue.size(), qsizetype(100 * 21));
    auto px = [&](double t) { return s.PlotLeft + s.PlotWidth * (t - s.HJDMin) / s.HJDRange; };
    auto py = [&](double m) { return s.PlotTop + s.PlotHeight * (m - s.MagMin) / s.MagRange; };
    for (int i = 1; i <= 100; ++i) {
        for (int d = -10; d <= 10; ++d) {
            const CanvasRecorder::Call& st = blue[(i - 1) * 21 + (d + 10)];
            DIP_COMPARE_REL(st.x1, px(f.CurveT(i - 1)), 1e-12);
            DIP_COMPARE_REL(st.x2, px(f.CurveT(i)), 1e-12);
            DIP_COMPARE_REL(st.y1, py(f.CurveM(i - 1)) + d, 1e-12);
            DIP_COMPARE_REL(st.y2, py(f.CurveM(i)) + d, 1e-12);
        }
    }
}

void FourierTest::redrawIsThin()
{
    QVERIFY(load(dipCurve(truth, 41, 2451234.50, 2451234.64, 0.004, 1)));
    Window w;
    w.open();
    w.pickAndUpdate(nearStart, 2451234.53, 2451234.61);
    const auto thick = strokesIn(w.form, colours::blue);
    redrawFourierWindow(w.view);
    const auto thin = strokesIn(w.form, colours::blue);
    QCOMPARE(thin.size(), qsizetype(100));
    for (int i = 1; i <= 100; ++i) {
        const CanvasRecorder::Call& a = thin[i - 1];
        const CanvasRecorder::Call& b = thick[(i - 1) * 21 + 10]; // the unshifted stroke
        QCOMPARE(a.x1, b.x1);
        QCOMPARE(a.y1, b.y1);
        QCOMPARE(a.x2, b.x2);
        QCOMPARE(a.y2, b.y2);
    }
}

void FourierTest::fitWithoutRange()
{
    QVERIFY(load(dipCurve(truth, 41, 2451234.50, 2451234.64, 0.004, 1)));
    Window w;
    w.open();
    w.pick(2451234.61); // the right end only
    MessageRecorder messages;
    const long long evaluations = fourierWindowSolver().counts().evaluations;
    const FourierFitOutcome outcome = fitFourier(w.view);
    QVERIFY(!outcome.fitted);
    QCOMPARE(messages.messages(), QStringList{QStringLiteral("Select range first")});
    QCOMPARE(fourierWindowSolver().counts().evaluations, evaluations);
    QVERIFY(mainForm().text(5).isEmpty());
    QVERIFY(!mainForm().checked(5));
    QCOMPARE(S().Fourier.FourierFitDone, rt::False);
}

void FourierTest::fitPublishesAndRewritesBoxes()
{
    QVERIFY(load(noisyDip()));
    Window w;
    w.open();
    w.pickAndUpdate(nearStart);
    MessageRecorder messages;
    const FourierFitOutcome outcome = fitFourier(w.view);
    QVERIFY(messages.messages().isEmpty());
    QVERIFY(outcome.fitted);

    const FourierState& f = S().Fourier;
    QCOMPARE(mainForm().text(5), rt::LTrim(FormatFixed(f.FourierPar(1), 14, 5)));
    QCOMPARE(mainForm().text(11), rt::LTrim(FormatFixed(std::sqrt(f.Covar(8, 8)), 14, 5)));
    QVERIFY(mainForm().checked(5));
    QCOMPARE(outcome.time, f.FourierPar(1));
    QCOMPARE(outcome.error, std::sqrt(f.Covar(8, 8)));
    QCOMPARE(w.form.caption(), QStringLiteral("Fourier fit - CLICK 'Done' TO EXIT, OR 'Undo' TO START OVER."));
    for (int k = 1; k <= 8; ++k) {
        QCOMPARE(w.box(k), FormatFixed(f.FourierPar(k), 9, 5));
        QCOMPARE(f.ParEdited(k), rt::False);
    }
    // Nine characters: a time of seven whole digits keeps one decimal only.
    QCOMPARE(w.box(1).size(), 9);
    QVERIFY(w.box(1).startsWith(QStringLiteral("2451234.")));
    QCOMPARE(f.ParEntered, rt::False);
    QCOMPARE(f.FourierFitDone, rt::True);
    // The solver's vector comes back into the boxes' order.
    QCOMPARE(f.FourierPar(1), f.FitA(8));
    QCOMPARE(f.FourierPar(2), f.FitA(6));
    QCOMPARE(f.FourierPar(3), f.FitA(7));
    for (int k = 4; k <= 8; ++k)
        QCOMPARE(f.FourierPar(k), f.FitA(k - 3));
    // The parameters from before the fit are kept for Undo, in the solver's order.
    const ParVector start = solverOrder(nearStart);
    for (int j = 1; j <= 8; ++j)
        QCOMPARE(f.FitAUndo(j), start(j));
    // The fit lands near the true time, and the thick fitted curve is drawn.
    QVERIFY(std::abs(f.FourierPar(1) - truth.v[1]) < 1e-3);
    QCOMPARE(strokesIn(w.form, colours::blue).size(), qsizetype(2 * 100 * 21));
}

void FourierTest::loopStopsAtFirstSmallGain()
{
    QVERIFY(load(noisyDip()));
    // A start far enough off that the loop sees refused steps and large gains first.
    const QStringList farStart = {"2451234.56", "12.4", "22", ".2", ".1", ".05", ".01", ".005"};
    Window w;
    w.open();
    w.pick(2451234.51);
    w.pick(2451234.63);
    const Trace trace = traceSchedule(S().Fourier.Range.LeftIdx, S().Fourier.Range.RightIdx, solverOrder(farStart));
    w.type(farStart);
    updateFourier(w.view);
    const FourierFitOutcome outcome = fitFourier(w.view);

    // The first loop call of the record that lowered chi-square by less than ten per cent.
    int expected = 501;
    for (int c = 1; c <= 501; ++c) {
        const double old = trace.chisq[static_cast<std::size_t>(c - 1)];
        const double now = trace.chisq[static_cast<std::size_t>(c)];
        if (now < old && now > 0.9 * old) {
            expected = c;
            break;
        }
    }
    QVERIFY(expected < 501);
    QCOMPARE(outcome.loopCalls, expected);
    for (int j = 1; j <= 8; ++j)
        QCOMPARE(S().Fourier.FitA(j), trace.a[static_cast<std::size_t>(expected)](j));

    // Every earlier call either left chi-square as it was (refused, or equal) or lowered it by
    // ten per cent or more; the last one lowered it by less.
    int refused = 0, large = 0;
    for (int c = 1; c < expected; ++c) {
        const double old = trace.chisq[static_cast<std::size_t>(c - 1)];
        const double now = trace.chisq[static_cast<std::size_t>(c)];
        QVERIFY(now == old || now <= 0.9 * old);
        refused += now == old;
        large += now < old;
    }
    QVERIFY(refused > 0);
    QVERIFY(large > 0);
    const double old = trace.chisq[static_cast<std::size_t>(expected - 1)];
    const double last = trace.chisq[static_cast<std::size_t>(expected)];
    QVERIFY(last < old && last > 0.9 * old);
}

void FourierTest::cannotImproveRunsAll501()
{
    // Points exactly on the model of the typed values: chi-square is 0 and stays 0, so no
    // call can lower it and the loop runs to its end; the damping underflows to 0 on the way.
    const Par start = {{0, 2451234.5, 12, 25, 0.25, 0.125, 0.0625, 0.03125, 0.015625}};
    const QStringList texts = {"2451234.5", "12", "25", ".25", ".125", ".0625", ".03125", ".015625"};
    QVERIFY(load(dipCurve(start, 80, 2451234.42, 2451234.58, 0, 1)));
    Window w;
    w.open();
    w.pick(2451234.43);
    w.pick(2451234.57);
    w.type(texts);
    updateFourier(w.view);
    MessageRecorder messages;
    const FourierFitOutcome outcome = fitFourier(w.view);
    QCOMPARE(outcome.loopCalls, 501);
    QVERIFY(messages.messages().isEmpty());
    QCOMPARE(S().Fourier.Chisq, 0.0);
    QCOMPARE(S().Fourier.Alamda, 0.0);
    QCOMPARE(S().Fourier.FourierPar(1), 2451234.5);
    QCOMPARE(mainForm().text(5), QStringLiteral("2451234.50000"));
}

void FourierTest::zeroAmplitudesSingularOnEveryIteration()
{
    // With all amplitudes 0 the model no longer depends on W and Xo. The times are whole days
    // and W is 2 pi, so cos(k u) is exactly 1 and the amplitudes get no gradient either: they
    // stay 0, and every call of the solver meets the singular matrix.
    std::vector<std::pair<double, double>> points;
    for (int i = 1; i <= 20; ++i)
        points.push_back({double(i), 12.0 + 0.01 * ((i * 7) % 5) + (i == 10 ? 0.1 : 0.0)});
    QVERIFY(load(points));
    Window w;
    w.open();
    w.pick(1.5);
    w.pick(19.5);
    QCOMPARE(S().Fourier.Range.RangeSet, rt::True);
    w.type({"10", "12", "6.283185307179586", "0", "0", "0", "0", "0"});
    updateFourier(w.view);
    MessageRecorder messages;
    const FourierFitOutcome outcome = fitFourier(w.view);
    QVERIFY(outcome.fitted);
    QCOMPARE(messages.messages().size(), 1 + outcome.loopCalls + 1);
    QCOMPARE(messages.messages().count(QStringLiteral("Singular matrix 2")), messages.messages().size());
    for (int k = 4; k <= 8; ++k)
        QCOMPARE(S().Fourier.FourierPar(k), 0.0);
    // C has gone to the mean of the range; the result is shown whatever it is.
    QCOMPARE(mainForm().text(5), QStringLiteral("10.00000"));
    QVERIFY(mainForm().checked(5));
}

void FourierTest::secondFitClickChangesNothing()
{
    QVERIFY(load(noisyDip()));
    Window w;
    w.open();
    w.pickAndUpdate(nearStart);
    fitFourier(w.view);
    const QString time = mainForm().text(5), error = mainForm().text(11);
    const auto par = S().Fourier.FourierPar;
    const int plots = w.plots;
    const qsizetype strokes = w.form.calls.size();
    w.type({"1", "2", "3", "4", "5", "6", "7", "8"});
    const long long evaluations = fourierWindowSolver().counts().evaluations;
    MessageRecorder messages;
    const FourierFitOutcome again = fitFourier(w.view);
    QVERIFY(!again.fitted);
    QVERIFY(messages.messages().isEmpty());
    QCOMPARE(fourierWindowSolver().counts().evaluations, evaluations);
    QCOMPARE(mainForm().text(5), time);
    QCOMPARE(mainForm().text(11), error);
    for (int k = 1; k <= 8; ++k)
        QCOMPARE(S().Fourier.FourierPar(k), par(k));
    QCOMPARE(w.box(1), QStringLiteral("1"));
    QCOMPARE(w.plots, plots);
    QCOMPARE(w.form.calls.size(), strokes);
}

void FourierTest::undoRestoresAndRangeMustBePickedAgain()
{
    QVERIFY(load(noisyDip()));
    Window w;
    w.open();
    w.pickAndUpdate(nearStart);
    const FourierFitOutcome first = fitFourier(w.view);
    QCOMPARE(w.form.caption(), QStringLiteral("Fourier fit - CLICK 'Done' TO EXIT, OR 'Undo' TO START OVER."));
    const int plots = w.plots;

    undoFourier(w.view);
    const FourierState& f = S().Fourier;
    for (int k = 1; k <= 8; ++k) {
        QCOMPARE(f.FourierPar(k), rt::Val(nearStart[k - 1]));
        QCOMPARE(w.box(k), FormatFixed(f.FourierPar(k), 8, 5));
    }
    QCOMPARE(w.box(1), QStringLiteral("2451234."));
    QCOMPARE(w.box(4), QStringLiteral(" 0.25000"));
    QCOMPARE(f.Alamda, -1.0);
    QCOMPARE(f.Range.LeftSet, rt::False);
    QCOMPARE(f.Range.RightSet, rt::False);
    QCOMPARE(f.Range.RangeSet, rt::False);
    QCOMPARE(f.FourierFitDone, rt::False);
    QVERIFY(w.form.controlText(QStringLiteral("Label8")).isEmpty());
    QVERIFY(w.form.controlText(QStringLiteral("Label10")).isEmpty());
    QCOMPARE(w.plots, plots + 1);
    QVERIFY(strokesIn(w.form, colours::blue).empty());
    QVERIFY(mainForm().text(5).isEmpty());
    QVERIFY(mainForm().text(11).isEmpty());
    QVERIFY(mainForm().checked(5));
    // No end is picked any more: the window asks for the range as when it opens.
    QCOMPARE(w.form.caption(), QStringLiteral("Fit Fourier - RIGHT-CLICK AT START (left end) OF RANGE."));
    QVERIFY(strokesIn(w.form, colours::purple).empty());

    MessageRecorder messages;
    QVERIFY(!fitFourier(w.view).fitted);
    QCOMPARE(messages.messages(), QStringList{QStringLiteral("Select range first")});

    // Picked again, the same range and start give the same fit (the boxes now hold the
    // truncated Xo, but they are read only after an Update).
    w.pick(2451234.51);
    w.pick(2451234.63);
    const FourierFitOutcome second = fitFourier(w.view);
    QVERIFY(second.fitted);
    QCOMPARE(second.time, first.time);
    QCOMPARE(second.error, first.error);
}

void FourierTest::displayedTimeAddsHJDOffset()
{
    QVERIFY(load(noisyDip()));
    S().HJDOffset = 2400000; // nothing in the program sets it; it is added all the same
    Window w;
    w.open();
    w.pickAndUpdate(nearStart);
    const FourierFitOutcome outcome = fitFourier(w.view);
    const double xo = S().Fourier.FourierPar(1);
    QCOMPARE(outcome.time, xo);
    QCOMPARE(mainForm().text(5), rt::LTrim(FormatFixed(2400000 + xo, 14, 5)));
    QCOMPARE(w.box(1), FormatFixed(xo, 9, 5));
    QVERIFY(mainForm().text(5).startsWith(QStringLiteral("4851234.")));
    S().HJDOffset = 0;
}

void FourierTest::methodButtonRedrawsMarkersAndCurve()
{
    QVERIFY(load(noisyDip()));
    Window w;
    w.open();
    QVERIFY(strokesIn(w.form, colours::purple).empty());
    w.pick(2451234.51);
    w.pick(2451234.63);
    w.open();
    auto purple = strokesIn(w.form, colours::purple);
    QCOMPARE(purple.size(), qsizetype(2));
    QCOMPARE(purple[0].x1, w.xOf(2451234.51));
    QCOMPARE(purple[1].x1, w.xOf(2451234.63));
    QCOMPARE(S().Fourier.Range.LeftMarkX, w.xOf(2451234.51));
    QVERIFY(strokesIn(w.form, colours::blue).empty());

    w.type(nearStart);
    updateFourier(w.view);
    fitFourier(w.view);
    w.open();
    QCOMPARE(strokesIn(w.form, colours::purple).size(), qsizetype(2));
    QCOMPARE(strokesIn(w.form, colours::blue).size(), qsizetype(100));
}

void FourierTest::undoCaptionIsTheOpeningPrompt_data()
{
    QTest::addColumn<int>("stage");
    QTest::newRow("nothing picked") << 0;
    QTest::newRow("left end picked") << 1;
    QTest::newRow("range picked") << 2;
    QTest::newRow("previewed") << 3;
    QTest::newRow("fitted") << 4;
}

// Whatever state Undo is pressed in, it returns to a range with no end picked, and the caption
// is the one the window shows in that state: the prompt it opens with.
void FourierTest::undoCaptionIsTheOpeningPrompt()
{
    QFETCH(int, stage);
    QVERIFY(load(noisyDip()));
    Window w;
    w.open();
    const QString opening = w.form.caption();
    QCOMPARE(opening, fourierText::loadPrompt());
    if (stage >= 1)
        w.pick(2451234.51);
    if (stage >= 2)
        w.pick(2451234.63);
    if (stage >= 3) {
        w.type(nearStart);
        updateFourier(w.view);
    }
    if (stage >= 4)
        QVERIFY(fitFourier(w.view).fitted);
    undoFourier(w.view);
    QCOMPARE(w.form.caption(), opening);
    QCOMPARE(S().Fourier.Range.LeftSet, rt::False);
    QCOMPARE(S().Fourier.Range.RightSet, rt::False);
    // The first pick after it is prompted as at the start.
    w.pick(2451234.51);
    QCOMPARE(w.form.caption(), fourierText::leftPickedPrompt());
}

void FourierTest::everyRedrawKeepsThePickedEnds_data()
{
    QTest::addColumn<bool>("left");
    QTest::addColumn<bool>("right");
    QTest::newRow("left end") << true << false;
    QTest::newRow("right end") << false << true;
    QTest::newRow("both ends") << true << true;
}

// Focus, resize, the method button and (with a range) Update draw the plot again: each picked
// end gets its marker back, at its remembered time, and no other purple line is drawn.
void FourierTest::everyRedrawKeepsThePickedEnds()
{
    QFETCH(bool, left);
    QFETCH(bool, right);
    QVERIFY(load(noisyDip()));
    Window w;
    w.open();
    if (left)
        w.pick(2451234.51);
    if (right)
        w.pick(2451234.63);
    QList<double> expected;
    if (left)
        expected << w.xOf(2451234.51);
    if (right)
        expected << w.xOf(2451234.63);
    auto markers = [&w] {
        QList<double> xs;
        for (const CanvasRecorder::Call& c : strokesIn(w.form, colours::purple)) {
            const PlotTransform& b = w.form.transform();
            // Whole height of the box, upright.
            if (c.x1 != c.x2 || c.y1 != b.PlotTop || c.y2 != b.PlotBottom)
                return QList<double>{-1};
            xs << c.x1;
        }
        return xs;
    };

    redrawFourierWindow(w.view);
    QCOMPARE(markers(), expected);
    w.open();
    QCOMPARE(markers(), expected);
    if (left && right) {
        w.type(nearStart);
        updateFourier(w.view);
        QCOMPARE(markers(), expected);
        // The curve is drawn over the markers.
        const int firstBlue =
            int(std::find_if(w.form.calls.begin(), w.form.calls.end(),
                             [](const CanvasRecorder::Call& c) { return c.colour == colours::blue; }) -
                w.form.calls.begin());
        const int lastPurple =
            int(std::find_if(w.form.calls.rbegin(), w.form.calls.rend(),
                             [](const CanvasRecorder::Call& c) { return c.colour == colours::purple; })
                    .base() -
                w.form.calls.begin()) -
            1;
        QVERIFY(lastPurple < firstBlue);
        fitFourier(w.view);
        redrawFourierWindow(w.view);
        QCOMPARE(markers(), expected);
        QCOMPARE(strokesIn(w.form, colours::blue).size(), qsizetype(100));
    }
}

// A window made larger draws its markers where the remembered times fall on the new box, and
// the next pick on a side paints over the marker where it was last drawn.
void FourierTest::markersFollowTheBox()
{
    QVERIFY(load(noisyDip()));
    Window w;
    w.open();
    w.pick(2451234.51);
    w.pick(2451234.63);
    w.right = 12600;
    redrawFourierWindow(w.view);
    const double leftX = w.xOf(2451234.51);
    QVERIFY(std::abs(leftX - (600 + 12000 * (2451234.51 - S().HJDMin) / S().HJDRange)) < 1e-6);
    const auto purple = strokesIn(w.form, colours::purple);
    QCOMPARE(purple.size(), qsizetype(2));
    QCOMPARE(purple[0].x1, leftX);
    QCOMPARE(S().Fourier.Range.LeftMarkX, leftX);
    w.pick(2451234.52);
    const auto white = strokesIn(w.form, colours::white);
    QCOMPARE(white.size(), qsizetype(1));
    QCOMPARE(white[0].x1, leftX);
}

// The model curve, thick or thin, and the markers (and their erase lines) are drawn clipped to
// the plot box; the box is the window's own.
void FourierTest::curvesAndMarkersClippedToTheBox()
{
    QVERIFY(load(noisyDip()));
    Window w;
    w.open();
    w.pick(2451234.51);
    w.pick(2451234.63);
    w.type(nearStart);
    auto allClipped = [&w] {
        return std::all_of(w.form.calls.begin(), w.form.calls.end(),
                           [](const CanvasRecorder::Call& c) { return c.clipped; });
    };
    updateFourier(w.view);
    fitFourier(w.view);
    // Markers, the thick preview and the thick fitted curve.
    QCOMPARE(w.form.calls.size(), qsizetype(2 + 2 * 100 * 21));
    QVERIFY(allClipped());
    redrawFourierWindow(w.view);
    w.pick(2451234.52); // an erase line and a marker
    // Markers, the thin curve, and the pick.
    QCOMPARE(w.form.calls.size(), qsizetype(2 + 100 + 2));
    QVERIFY(allClipped());
    QVERIFY(!w.form.clips.isEmpty());
    for (const PlotTransform& box : w.form.clips) {
        QCOMPARE(box.PlotLeft, 600.0);
        QCOMPARE(box.PlotRight, w.right);
        QCOMPARE(box.PlotTop, 400.0);
        QCOMPARE(box.PlotBottom, 4400.0);
    }
}

void FourierTest::parEditedFlags()
{
    QVERIFY(load(noisyDip()));
    for (int k = 1; k <= 8; ++k)
        QCOMPARE(S().Fourier.ParEdited(k), rt::True);
    Window w;
    w.open();
    w.pickAndUpdate(nearStart);
    fitFourier(w.view);
    for (int k = 1; k <= 8; ++k)
        QCOMPARE(S().Fourier.ParEdited(k), rt::False);
    fourierParEdited(3);
    QCOMPARE(S().Fourier.ParEdited(3), rt::True);
    QCOMPARE(S().Fourier.ParEdited(2), rt::False);
}

void FourierTest::syntheticDipRecoversXo()
{
    // Points from the model itself with a known Xo, the fit started well away from it.
    QVERIFY(load(dipCurve(truth, 300, 2451234.47, 2451234.67, 0, 1)));
    Window w;
    w.open();
    w.pick(2451234.48);
    w.pick(2451234.66);
    w.type({"2451234.57", "12.4", "28", ".2", ".1", ".05", ".01", ".005"});
    updateFourier(w.view);
    const FourierFitOutcome outcome = fitFourier(w.view);
    QVERIFY(outcome.fitted);
    QVERIFY(std::abs(outcome.time - truth.v[1]) < 1e-8);
    QCOMPARE(mainForm().text(5), QStringLiteral("2451234.56780"));
    DIP_COMPARE_REL(S().Fourier.FourierPar(3), truth.v[3], 1e-6);
    DIP_COMPARE_REL(S().Fourier.FourierPar(2), truth.v[2], 1e-9);
}

void FourierTest::replayMatchesWindow()
{
    const auto points = noisyDip();
    QVERIFY(load(points));
    Window w;
    w.open();
    w.pickAndUpdate(nearStart);
    const FourierFitOutcome outcome = fitFourier(w.view);
    const QString time = mainForm().text(5), error = mainForm().text(11);

    QVERIFY(load(points));
    const ReplayResult r = replayFourier({2451234.51, 2451234.63}, nearStart);
    QVERIFY(r.published);
    QCOMPARE(r.time, outcome.time);
    QCOMPARE(r.error, outcome.error);
    QCOMPARE(mainForm().text(5), time);
    QCOMPARE(mainForm().text(11), error);
    QCOMPARE(r.extraTexts.size(), 8);
    for (int k = 1; k <= 8; ++k)
        QCOMPARE(r.extraTexts[k - 1], w.box(k));
    // Clicks outside the plotted times are not clicks on the plot.
    QVERIFY(load(points));
    MessageRecorder messages;
    QVERIFY(!replayFourier({2451234.0, 2451234.63}, nearStart).published);
    const QString select = QStringLiteral("Select range first");
    QCOMPARE(messages.messages(), QStringList({select, select}));
}

void FourierTest::replayWithoutStartUsesLoadValues()
{
    const auto points = noisyDip();
    QVERIFY(load(points));
    Window w;
    w.open();
    w.pick(2451234.51);
    w.pick(2451234.63);
    const FourierFitOutcome outcome = fitFourier(w.view);
    QVERIFY(outcome.fitted);

    QVERIFY(load(points));
    const ReplayResult r = replayFourier({2451234.63, 2451234.51}, std::nullopt);
    QVERIFY(r.published);
    QCOMPARE(r.time, outcome.time);
    QCOMPARE(r.error, outcome.error);
}

void FourierTest::consoleToolPrintsTheBoxes()
{
    DataFolder folder;
    const QString file = folder.write(QStringLiteral("dip.csv"), csv(noisyDip()));
    const Run run = measure({file, QStringLiteral("--json"), QStringLiteral("--fourier=2451234.51,2451234.63"),
                             QStringLiteral("--fourier-start=") + nearStart.join(QLatin1Char(','))});
    QCOMPARE(run.code, 0);
    const QJsonObject row = json(run).value(QStringLiteral("results")).toArray().at(0).toObject();
    QCOMPARE(row.value(QStringLiteral("method")).toInt(), 5);
    const QJsonArray boxes = row.value(QStringLiteral("boxes")).toArray();
    QCOMPARE(boxes.size(), 8);
    for (int k = 1; k <= 8; ++k)
        QCOMPARE(boxes.at(k - 1).toString(), FormatFixed(S().Fourier.FourierPar(k), 9, 5));
    QCOMPARE(row.value(QStringLiteral("time_text")).toString(), FormatResult(S().Fourier.FourierPar(1)));
}

QTEST_GUILESS_MAIN(FourierTest)
#include "tst_fourier.moc"
