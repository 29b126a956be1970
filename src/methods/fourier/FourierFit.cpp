// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#include "methods/fourier/FourierFit.h"

#include "methods/marquardt/Marquardt.h"
#include "plotting/PlotBox.h"
#include "runtime/MsgBox.h"
#include "runtime/Numeric.h"
#include "runtime/Text.h"
#include "session/Formatting.h"
#include "session/MainForm.h"
#include "session/Results.h"
#include "session/Session.h"

namespace dip {

namespace fourierText {
QString windowCaption() { return QStringLiteral("Fourier Fit"); }
QString loadPrompt() { return QStringLiteral("Fit Fourier - RIGHT-CLICK AT START (left end) OF RANGE."); }
QString leftPickedPrompt() { return QStringLiteral("Fit Fourier - RIGHT-CLICK AT (right) END OF RANGE."); }
QString rightPickedPrompt() { return QStringLiteral("Fit Fourier - CLICK 'Fit Fourier', OR 'Undo' TO START OVER."); }
// The small "f" of "fit" is the window's own.
QString fittedPrompt() { return QStringLiteral("Fourier fit - CLICK 'Done' TO EXIT, OR 'Undo' TO START OVER."); }
QString selectRangeFirst() { return QStringLiteral("Select range first"); }
QString boxName(int k) { return QStringLiteral("Text1_%1").arg(k); }
QString leftIndexLabel() { return QStringLiteral("Label10"); }
QString rightIndexLabel() { return QStringLiteral("Label8"); }
} // namespace fourierText

using namespace fourierText;

namespace {

constexpr Integer parameterCount = 8;

// A box reads as the number at its start; text that is not a number reads as 0.
void readBoxes(const FormPort& form)
{
    FourierState& f = S().Fourier;
    for (int k = 1; k <= 8; ++k)
        f.FourierPar(k) = rt::Val(form.controlText(boxName(k)));
}

void writeBoxes(FormPort& form, rt::Integer width)
{
    const FourierState& f = S().Fourier;
    for (int k = 1; k <= 8; ++k)
        form.setControlText(boxName(k), FormatFixed(f.FourierPar(k), width, 5));
}

// The marker of each picked end, wherever the window draws its plot again (the method button,
// Update, focus, resize), so that a pick is never lost from sight. The markers follow the scale
// of the plot they are drawn on: their x comes from the remembered end times, and is kept for
// the white line that erases the marker at the next pick on its side.
void redrawMarkers(FormPort& form)
{
    RangePick& r = S().Fourier.Range;
    if (r.LeftSet) {
        r.LeftMarkX = markerX(form.transform(), r.LeftHJD);
        drawMarker(form, r.LeftMarkX);
    }
    if (r.RightSet) {
        r.RightMarkX = markerX(form.transform(), r.RightHJD);
        drawMarker(form, r.RightMarkX);
    }
}

// The boxes are in the order Xo, C, W, A1..A5; the solver's vector in the order A1..A5, C, W, Xo.
int solverIndexOfBox(int k)
{
    static const int order[9] = {0, 8, 6, 7, 1, 2, 3, 4, 5};
    return order[k];
}

} // namespace

int RunFourierFit(const Curve& curve, Integer first, Integer last, FourierFitState& f, FourierSolver& solver)
{
    f.FitAUndo = f.FitA;
    const Integer n = rt::i16(last - first + 1);
    for (int i = 1; i <= n; ++i) {
        f.FitX(i) = curve.t(first + i - 1);
        f.FitY(i) = curve.m(first + i - 1);
    }

    // One start call, then steps until one lowers chi-square by less than ten per cent
    // (a refused step leaves it unchanged and goes on), at most 501 of them.
    solver.step(f.FitX, f.FitY, f.FitSig, n, f.FitA, parameterCount, f.Lista, parameterCount, f.Covar, f.Alpha,
                parameterCount, f.Chisq, f.Alamda);
    int c = 0;
    double old = 0;
    do {
        ++c;
        old = f.Chisq;
        solver.step(f.FitX, f.FitY, f.FitSig, n, f.FitA, parameterCount, f.Lista, parameterCount, f.Covar, f.Alpha,
                    parameterCount, f.Chisq, f.Alamda);
    } while (!((f.Chisq < old && f.Chisq > 0.9 * old) || c > 500));

    // The covariance call gets a damping of its own, so Alamda keeps its last value.
    double finish = 0;
    solver.step(f.FitX, f.FitY, f.FitSig, n, f.FitA, parameterCount, f.Lista, parameterCount, f.Covar, f.Alpha,
                parameterCount, f.Chisq, finish);
    return c;
}

FourierSolver& fourierWindowSolver()
{
    static FourierSolver solver;
    return solver;
}

void fourierParToSolver(const rt::Array<double, 0, 8>& par, rt::Array<double, 0, 8>& fitA)
{
    for (int k = 1; k <= 8; ++k)
        fitA(solverIndexOfBox(k)) = par(k);
}

void fourierParFromSolver(const rt::Array<double, 0, 8>& fitA, rt::Array<double, 0, 8>& par)
{
    for (int k = 1; k <= 8; ++k)
        par(k) = fitA(solverIndexOfBox(k));
}

void fourierFormLoad(FormPort& form) { form.setCaption(loadPrompt()); }

void showFourierWindow(FourierView& view)
{
    Session& s = S();
    FourierState& f = s.Fourier;
    // The first opening after a load shows the start values the load has set, in full.
    if (s.FirstTime(5) == 0) {
        for (int k = 1; k <= 8; ++k)
            view.form.setControlText(boxName(k), rt::NumText(f.FourierPar(k)));
        s.FirstTime(5) = 1;
    }
    view.drawPlot();
    redrawMarkers(view.form);
    if (f.FourierFitDone)
        RedrawFourierCurve(view.form);
}

void pressFourierButton(FourierView& view)
{
    fourierFormLoad(view.form);
    showFourierWindow(view);
}

void fourierParEdited(int index) { S().Fourier.ParEdited(index) = rt::True; }

void updateFourier(FourierView& view)
{
    FourierState& f = S().Fourier;
    if (!f.Range.RangeSet) {
        rt::MsgBox(selectRangeFirst());
        return;
    }
    f.ParEntered = rt::True;
    readBoxes(view.form);
    view.drawPlot();
    redrawMarkers(view.form);
    DrawFourierCurve(view.form);
}

FourierFitOutcome fitFourier(FourierView& view)
{
    Session& s = S();
    FourierState& f = s.Fourier;
    FourierFitOutcome outcome;
    if (!f.Range.RangeSet) {
        rt::MsgBox(selectRangeFirst());
        return outcome;
    }
    if (f.FourierFitDone)
        return outcome;

    if (f.ParEntered)
        readBoxes(view.form);
    fourierParToSolver(f.FourierPar, f.FitA);
    const int c = RunFourierFit(SessionCurve(), f.Range.LeftIdx, f.Range.RightIdx, f, fourierWindowSolver());

    f.FourierFitDone = rt::True;
    fourierParFromSolver(f.FitA, f.FourierPar);
    for (int k = 1; k <= 8; ++k)
        f.ParEdited(k) = rt::False;

    DrawFourierCurve(view.form);

    // The error is the formal one for 0.01-magnitude points, not scaled by the scatter.
    outcome.fitted = true;
    outcome.loopCalls = c;
    outcome.time = f.FourierPar(1);
    outcome.error = rt::sqrt(f.Covar(8, 8));
    PublishResult(5, outcome.time, outcome.error);

    view.form.setCaption(fittedPrompt());
    writeBoxes(view.form, 9);
    QStringList boxes;
    for (int k = 1; k <= 8; ++k)
        boxes << view.form.controlText(boxName(k));
    SetResultExtras(5, boxes);
    f.ParEntered = rt::False;
    return outcome;
}

void undoFourier(FourierView& view)
{
    FourierState& f = S().Fourier;
    f.FitA = f.FitAUndo;
    fourierParFromSolver(f.FitA, f.FourierPar);
    // Width 8 here, one less than after a fit: kept as the window has always shown them.
    writeBoxes(view.form, 8);

    f.Alamda = -1;
    f.Range.LeftSet = rt::False;
    f.Range.RightSet = rt::False;
    f.Range.RangeSet = rt::False;
    f.FourierFitDone = rt::False;

    view.form.setControlText(rightIndexLabel(), QString());
    view.form.setControlText(leftIndexLabel(), QString());
    // No end is picked any more: the window asks for the range as it does when it opens.
    view.form.setCaption(loadPrompt());
    view.drawPlot();

    // The "Use in Mean?" box keeps its state.
    ClearResult(5, false);
}

void redrawFourierWindow(FourierView& view)
{
    view.drawPlot();
    redrawMarkers(view.form);
    RedrawFourierCurve(view.form);
}

} // namespace dip
