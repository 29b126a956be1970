// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#pragma once

// The Fourier fit (method 5): a five-term cosine series centred on the time of minimum,
// m(t) = C + sum_k A_k (cos(k W (t - Xo)) - 1), fitted by Levenberg-Marquardt to a range that
// the user picks with the right mouse button. These are the procedures behind frmPlott5's
// events; they talk to the window through its FormPort (caption, the boxes "Text1_1" ..
// "Text1_8", the index labels "Label10" (left) and "Label8" (right), drawing in twips), so the
// console tool runs exactly the same code with a FormMemory. The state is S().Fourier.

#include "methods/marquardt/MarquardtSolver.h"
#include "plotting/FormPort.h"
#include "plotting/RangePicking.h"
#include "runtime/Array.h"
#include "session/Curve.h"
#include "session/MethodWorkspaces.h"

#include <QString>

#include <functional>

namespace dip {

// The Fourier window as its procedures see it: the form, and the drawing of its light-curve
// plot (clears the form, sets the plot box, draws frame, grid and points).
struct FourierView {
    FormPort& form;
    std::function<void()> drawPlot;
};

namespace fourierText {
QString windowCaption();     // "Fourier Fit"
QString loadPrompt();        // "Fit Fourier - RIGHT-CLICK AT START (left end) OF RANGE."
QString leftPickedPrompt();  // "Fit Fourier - RIGHT-CLICK AT (right) END OF RANGE."
QString rightPickedPrompt(); // "Fit Fourier - CLICK 'Fit Fourier', OR 'Undo' TO START OVER."
QString fittedPrompt();      // "Fourier fit - CLICK 'Done' TO EXIT, OR 'Undo' TO START OVER."
QString selectRangeFirst();  // "Select range first"
QString boxName(int k);      // "Text1_1" .. "Text1_8"
QString leftIndexLabel();    // "Label10"
QString rightIndexLabel();   // "Label8"
} // namespace fourierText

// The parameters in box order (Xo, C, W, A1..A5) to the solver's order (A1..A5, C, W, Xo), which
// the model fixes, and back.
void fourierParToSolver(const rt::Array<double, 0, 8>& par, rt::Array<double, 0, 8>& fitA);
void fourierParFromSolver(const rt::Array<double, 0, 8>& fitA, rt::Array<double, 0, 8>& par);

// The fit itself, on any curve: state.FitA holds the start values (solver order) and becomes
// the fitted ones; FitAUndo keeps the start. Points first..last of the curve become FitX/FitY
// 1..n; one solver call with state.Alamda (-1 after a load or Undo), then calls until one
// lowers chi-square by less than ten per cent (a refused step leaves it unchanged and goes on),
// at most 501 of them, then the covariance call with a damping of its own (Alamda keeps its
// last value). Returns the number of calls in the loop. The solver's messages go to MsgBox.
int RunFourierFit(const Curve& curve, rt::Integer first, rt::Integer last, FourierFitState& state,
                  FourierSolver& solver);

// The solver of the Fourier window, kept from one fit to the next as the window's own.
FourierSolver& fourierWindowSolver();

// Form_Load: the load prompt in the caption.
void fourierFormLoad(FormPort& form);

// What the main window's "5. Fourier Fit" button does once RangeFirst and RangeLast are set:
// after a data-file load the boxes get the start values (FourierPar), then the plot is drawn,
// the marker of each picked end at its stored time, and the stored model curve if a fit has
// been made.
void showFourierWindow(FourierView& view);

// The main window's "5. Fourier Fit" button, after its prelude (MethodButtonPrelude: the
// range becomes all used points), on a window not loaded yet, as the console tool and the
// benchmark press it: Form_Load, then showFourierWindow.
void pressFourierButton(FourierView& view);

// Form_MouseDown: a right-click (button 2) inside the plot box picks an end of the range.
void fourierMouseDown(FourierView& view, int button, double x, double y);

// The pick itself: a click of the window (its position, single precision) or of the console
// tool (its exact time). The end is chosen by the point index estimated under the click,
// RangeFirst + (RangeLast - RangeFirst) * ((X - PlotLeft) / PlotWidth) rounded halves to even,
// against IdxMagMax: at or after the deepest point it is the right end.
void pickFourierEnd(FourierView& view, const Click& click);

// Text1_Change(index): the box has been edited.
void fourierParEdited(int index);

// Update: reads the eight boxes and previews the model curve they describe, over the plot with
// its range markers.
void updateFourier(FourierView& view);

// What a click on " Fit Fourier" did.
struct FourierFitOutcome {
    bool fitted = false; // the fit ran and published its result
    int loopCalls = 0;   // solver calls in the iteration loop (1..501)
    double time = 0;     // Xo (without HJDOffset)
    double error = 0;    // sqrt(Covar(8, 8))
};

// " Fit Fourier": one start call of the solver, the loop, the covariance call, then the
// result in the main window's Text5 / Text11 / Check5 and the fitted values in the boxes.
FourierFitOutcome fitFourier(FourierView& view);

// Undo: the parameters from before the last fit, the range to be picked again: no end is set,
// the plot has no markers and the caption is the prompt the window opens with.
void undoFourier(FourierView& view);

// Focus, resize and drag: the plot again with the marker of each picked end, and the stored
// model curve thin.
void redrawFourierWindow(FourierView& view);

// The margins of the window's plot box: the parameter boxes stand right of it, the index labels
// and the buttons below it.
constexpr double FourierPlotLeft = 500;
constexpr double FourierPlotTop = 242;
constexpr double FourierRightMargin = 2400;
constexpr double FourierBottomMargin = 1300;

// The window's light-curve plot: clears the form, sets the plot box from the form's size, and
// draws the time grid, the frame and the used points (red) with the current extents.
void PlotFourierLightCurve(FormPort& form);

// The model curve of FourierPar over the picked range: 101 points into CurveT / CurveM, drawn
// as a thick band (each segment 21 strokes shifted -10 .. +10 twips vertically), clipped to the
// plot box.
void DrawFourierCurve(FormPort& form);

// The stored model curve again, thin (one stroke per segment), without recomputing it; clipped to
// the plot box.
void RedrawFourierCurve(FormPort& form);

} // namespace dip
