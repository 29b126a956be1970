// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#pragma once

// Picking a stretch of the light curve with the right mouse button: the pieces every picking
// window shares (the click, the inside-the-box test, the index searches, the markers, the
// mouse pointer) and the two-end picker of the parabolic-fit and Kwee windows. The windows
// feed it their mouse events in twips; the console tool feeds it clicks at exact times.

#include "plotting/FormPort.h"
#include "runtime/Integer.h"
#include "session/Session.h"

#include <QString>

namespace dip {

// A mouse-down on a plot window. A window's click carries its position; the time under it is
// then computed from the plot box. A replayed click carries its time exactly and its X is
// computed from that time (it is used only for the marker line and the remembered marker x).
struct Click {
    double X = 0;       // twips
    double Y = 0;       // twips
    Integer Button = 0; // 1 left, 2 right, 4 middle
    bool exactTime = false;
    double time = 0; // the clicked time when exactTime

    static Click atTwips(double x, double y, Integer button);
    // A click at time t on a window's plot box (Y in the middle of it).
    static Click atTime(const PlotTransform& box, double t, Integer button = 2);
};

constexpr Integer RightButton = 2;

// The form of ClickHJD: the parabola, Kwee and Fourier windows group the fraction,
// HJDMin + HJDRange * ((X - PlotLeft) / PlotWidth); the bisector window multiplies first,
// HJDMin + HJDRange * (X - PlotLeft) / PlotWidth. The two round differently, so both are kept.
enum class ClickTimeForm { GroupedFraction, LeftToRight };

// Inside the window's plot box, edges included. A replayed click is inside when
// HJDMin <= t <= HJDMin + HJDRange.
bool clickInsideBox(const PlotTransform& box, const Click& click);

// The time under the click on the window's box (the exact time of a replayed click).
double clickTime(const PlotTransform& box, const Click& click, ClickTimeForm form = ClickTimeForm::GroupedFraction);

// The index search of a range start: i = 1, 2, ... NumPts, the first i with HJD(i) > t
// (strictly). Returns the loop variable where the search ended: NumPts + 1 when no point is
// later (the caller then keeps its old index).
Integer searchFirstAfter(double t);
// The search of a range end: i = NumPts, NumPts - 1, ... 1, the first i with HJD(i) < t
// (strictly). Returns 0 when no point is earlier.
Integer searchLastBefore(double t);

// x of a time on a window's plot box: PlotLeft + PlotWidth * (t - HJDMin) / HJDRange.
double markerX(const PlotTransform& box, double t);

// A vertical line from the canvas' PlotTop to PlotBottom at x in the given colour: purple draws a range
// marker, white erases one by overpainting (and whatever else the line crosses). Clipped to the
// plot box: a line outside it, or on its frame, shows nothing.
void drawMarker(Canvas& canvas, double x, Rgb colour = colours::purple);

// The pointer shape while the mouse moves: the cross-hair strictly inside the plot box.
enum class MousePointer { Arrow = 1, Cross = 2 };
MousePointer pointerAt(const PlotTransform& box, double x, double y);

// What differs between the two-end pickers of frmPlott1 and frmPlott4.
struct RangePickStyle {
    QString loadPrompt;
    QString leftPickedPrompt;
    QString rightPickedPrompt;
    QString fittedPrompt;
    QString undoPrompt;
    // frmPlott4 remembers the time of the first point inside the range as the left time,
    // frmPlott1 the clicked time.
    bool leftTimeFromPoint;
    // frmPlott1 pads the right index to 4 characters ("  12"); frmPlott4 shows " 12".
    bool rightLabelPadded;
    // frmPlott4's load clears the end flags and its Undo keeps them.
    bool kweeFlags;
};

const RangePickStyle& parabolaRangeStyle();
const RangePickStyle& kweeRangeStyle();

// The two-end picker of one window: its RangePick record (module level, so it outlives the
// window), the window as a FormPort, and the window's style.
class RangePicker {
public:
    RangePicker(RangePick& pick, FormPort& form, const RangePickStyle& style);

    // Form_Load: the load prompt; frmPlott4 also clears LeftSet, RightSet and RangeSet.
    void formLoad();
    // Form_MouseDown.
    void mouseDown(const Click& click);
    // The compute button runs only when RangeSet and both indexes are non-zero. No check that
    // LeftIdx <= RightIdx.
    bool ready() const;
    // The markers at the remembered times on the current scale; the x positions are stored
    // back into LeftMarkX / RightMarkX.
    void redrawMarkers();
    // The markers at the stored x positions, not recomputed.
    void drawStoredMarkers();
    // Undo's effect on the record, the labels and the caption. frmPlott1 clears all four
    // flags; frmPlott4 only RangeSet and Fitted, so that one new pick completes a range again.
    // Indexes, marker positions and times stay. (The window clears and redraws its plot and
    // empties its result row itself.)
    void undo();
    // The caption after the method ran.
    void showFitted();

    RangePick& pick() { return m_pick; }

private:
    void pickLeft(const Click& click, double t);
    void pickRight(const Click& click, double t);

    RangePick& m_pick;
    FormPort& m_form;
    const RangePickStyle& m_style;
};

} // namespace dip
