// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#pragma once

// The tracing-paper method: the light curve folded onto itself about a movable vertical axis,
// the fold time FoldHJD. The part before the fold is drawn as it is (red), the part after it
// reflected about the fold (blue); when the two branches lie on top of each other the fold is
// the time of minimum. Every redraw publishes the fold as method 2's result.
//
// The procedures talk to their window (frmPlott2) through a FormPort for drawing and texts and
// TracingPaperControls for the rest, so they run the same with the real window and in memory.

#include "plotting/FormPort.h"

#include <QString>

namespace dip {

// One scroll-bar unit moves the fold by this many days; it is also the error reported.
constexpr double FoldStep = 0.0001;
// The bar's centre value: the fold at the time of the faintest point.
constexpr int ScrollCentre = 16383;
// The bar's range (the toolkit's default).
constexpr int ScrollMin = 0;
constexpr int ScrollMax = 32767;

// What the procedures need of the tracing-paper window beyond drawing and texts.
class TracingPaperControls {
public:
    virtual ~TracingPaperControls();
    // Shows the window, loading it first when it is not loaded.
    virtual void showForm() = 0;
    // Moves the named control to a twip position on the form.
    virtual void moveControl(const QString& name, double left, double top) = 0;
    // HScroll1's position.
    virtual int scrollValue() const = 0;
    // Moves HScroll1 to value (within ScrollMin..ScrollMax). When the value changes, the bar's
    // change event runs the fold handler, FoldFromScrollBar, before this returns.
    virtual void setScrollValue(int value) = 0;
};

// The tracing-paper window as its procedures see it: its form (drawing and texts) and its other
// controls, the same frmPlott2 (or TracingPaperMemory) seen twice.
struct TracingPaperView {
    FormPort& form;
    TracingPaperControls& controls;
};

// The window's fixed texts: the design caption and control captions, then the caption that
// loading the window sets.
QString tracingPaperCaption();
void SetTracingPaperDesignTexts(FormPort& form);

// The main window's second method button, once a file is loaded: SmoothMag = Mag for
// 1..NumPts (AvgPoints and Label8 keep their values), then PlotTracingPaper.
void OpenTracingPaper(const TracingPaperView& w);

// Shows the window, clears it, draws the folded curve (the mirrored branch clipped to the plot
// box), places the controls and publishes the fold: the window's Text1, and the main window's Text2, Text8 ("0.0001")
// and Check2.
void PlotTracingPaper(const TracingPaperView& w);

// HScroll1_Scroll: FoldHJD = HJD(IdxMagMax) + FoldStep (bar - ScrollCentre), clamped to 5 % or
// 95 % of the time range with the bar moved to match (which runs this handler again), then
// redraws. A bar position outside 0..32767 raises "Invalid property value" (380).
void FoldFromScrollBar(const TracingPaperView& w);

// Command1_Click ("Update"): FoldHJD = the numeric prefix of Text1 (0 when none), redraw. The
// bar does not move.
void UpdateFold(const TracingPaperView& w);

// Command2_Click ("Smooth"): the next running-mean width 3, 5, 7 or 9 over the unsmoothed Mag,
// then redraw. At width 9 only redraws.
void SmoothFold(const TracingPaperView& w);

// Command3_Click ("Undo smooth"): SmoothMag = Mag for 2..NumPts - 1, "No averaging", redraw.
void UndoSmoothFold(const TracingPaperView& w);

} // namespace dip
