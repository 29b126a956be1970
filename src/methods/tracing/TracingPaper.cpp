// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#include "methods/tracing/TracingPaper.h"

#include "plotting/PlotBox.h"
#include "runtime/Numeric.h"
#include "runtime/Text.h"
#include "session/Formatting.h"
#include "session/MainForm.h"
#include "session/Results.h"
#include "session/Session.h"

#include <cmath>

namespace dip {

using rt::i16;

TracingPaperControls::~TracingPaperControls() = default;

QString tracingPaperCaption()
{
    return QStringLiteral("Tracing Paper Method - CLICK LEFT ARROW TO DECREASE FOLD HJD, etc.");
}

void SetTracingPaperDesignTexts(FormPort& form)
{
    form.setCaption(QStringLiteral("Tracing Paper Method"));
    form.setControlText(QStringLiteral("Label7"), QStringLiteral("Fold HJD:"));
    form.setControlText(QStringLiteral("Label8"), QStringLiteral("No averaging"));
    form.setControlText(QStringLiteral("Command1"), QStringLiteral("Update"));
    form.setControlText(QStringLiteral("Command2"), QStringLiteral("Smooth"));
    form.setControlText(QStringLiteral("Command3"), QStringLiteral("Undo smooth"));
    form.setControlText(QStringLiteral("Command4"), QStringLiteral("Done"));
}

void OpenTracingPaper(const TracingPaperView& w)
{
    Session& s = S();
    if (s.DataName.isEmpty())
        return;
    // Any earlier smoothing is discarded; AvgPoints and Label8 keep their values.
    for (int i = 1; i <= s.NumPts; ++i)
        s.SmoothMag(i) = s.Mag(i);
    PlotTracingPaper(w);
}

namespace {

// The red branch from point 1 while HJD(i) <= FoldHJD, every point dotted; returns the index of
// the first point after the fold.
int drawLeftBranch(Canvas& canvas, const PlotScale& scale)
{
    const Session& s = S();
    canvas.setForeColor(colours::red);
    double px = PlotX(canvas.transform(), scale, s.HJD(1));
    double py = PlotY(canvas.transform(), scale, s.SmoothMag(1));
    DrawPointDisc(canvas, px, py);
    int i = 2;
    while (i <= s.NumPts && s.HJD(i) <= s.FoldHJD) {
        const double x = PlotX(canvas.transform(), scale, s.HJD(i));
        const double y = PlotY(canvas.transform(), scale, s.SmoothMag(i));
        canvas.line(px, py, x, y);
        DrawPointDisc(canvas, x, y);
        px = x;
        py = y;
        ++i;
    }
    return i;
}

// The blue branch: points first..NumPts mirrored about the fold (2 FoldHJD - t). The line
// starts at the first mirrored point, which gets no dot.
void drawRightBranch(Canvas& canvas, const PlotScale& scale, int first)
{
    const Session& s = S();
    if (first > s.NumPts)
        return;
    canvas.setForeColor(colours::blue);
    double px = PlotX(canvas.transform(), scale, 2 * s.FoldHJD - s.HJD(first));
    double py = PlotY(canvas.transform(), scale, s.SmoothMag(first));
    for (int i = first + 1; i <= s.NumPts; ++i) {
        const double x = PlotX(canvas.transform(), scale, 2 * s.FoldHJD - s.HJD(i));
        const double y = PlotY(canvas.transform(), scale, s.SmoothMag(i));
        canvas.line(px, py, x, y);
        DrawPointDisc(canvas, x, y);
        px = x;
        py = y;
    }
}

void placeControls(TracingPaperControls& controls, double formHeight)
{
    const double buttons = formHeight - 1550;
    const double bar = formHeight - 1130;
    controls.moveControl(QStringLiteral("Label7"), 240, buttons);
    controls.moveControl(QStringLiteral("Text1"), 1320, buttons);
    controls.moveControl(QStringLiteral("Command1"), 2880, buttons);
    controls.moveControl(QStringLiteral("Command2"), 3960, buttons);
    controls.moveControl(QStringLiteral("Command3"), 4920, buttons);
    controls.moveControl(QStringLiteral("Command4"), 6600, buttons);
    controls.moveControl(QStringLiteral("HScroll1"), 240, bar);
    controls.moveControl(QStringLiteral("Label8"), 3960, bar);
}

} // namespace

void PlotTracingPaper(const TracingPaperView& w)
{
    Session& s = S();
    FormPort& form = w.form;
    TracingPaperControls& controls = w.controls;
    controls.showForm();
    form.cls();

    // The fold pulled inside the time range, for the scale only.
    s.FoldShown = s.FoldHJD;
    if (s.FoldShown < s.HJDMin)
        s.FoldShown = s.HJDMin + 0.05 * (s.HJDMax - s.HJDMin);
    if (s.FoldShown > s.HJDMax)
        s.FoldShown = s.HJDMax - 0.05 * (s.HJDMax - s.HJDMin);
    s.FoldSpan = s.FoldShown - s.HJD(1);

    // The horizontal scale covers FoldSpan from HJDMin, so its right edge falls short of the
    // fold by HJD(1) - HJDMin (normally the 0.002-day padding). It is kept so.
    const double W = form.formWidth();
    const double H = form.formHeight();
    SetPlotBox(form, 500, W - 415, 242, H - 2100);
    DrawFrame(form);
    const PlotScale scale{s.HJDMin, s.FoldSpan, s.MagMin, s.MagRange};
    form.transform().scale = scale;

    // The left branch is the curve as observed, drawn whole; the mirrored one reaches back past
    // the first observation and is drawn inside the box only.
    const int first = drawLeftBranch(form, scale);
    {
        PlotBoxClip clip(form);
        drawRightBranch(form, scale, first);
    }
    DrawAxes(form, scale, s.FoldSpan, s.FoldShown);
    placeControls(controls, H);

    // The fold is the result: published at the end of every redraw.
    form.setControlText(QStringLiteral("Text1"), FormatFixed(s.FoldHJD, 14, 5));
    // The error is one scroll step, whatever the data, shown as "0.0001".
    PublishResult(2, s.FoldHJD, FoldStep, QStringLiteral("0.0001"));
}

namespace {

// Moves the bar to the position of FoldHJD, rounded to a whole unit (halves to even). The bar
// refuses a position outside its range; a new position runs the fold handler again.
void setBarToFold(const TracingPaperView& w)
{
    const Session& s = S();
    const double position = std::nearbyint(ScrollCentre + rt::div(s.FoldHJD - s.HJD(s.IdxMagMax), FoldStep));
    if (position < ScrollMin || position > ScrollMax)
        rt::raise(380);
    w.controls.setScrollValue(static_cast<int>(position));
}

} // namespace

void FoldFromScrollBar(const TracingPaperView& w)
{
    Session& s = S();
    // From the faintest point itself, not from the rounded load-time fold; a typed fold is
    // discarded.
    s.FoldHJD = s.HJD(s.IdxMagMax) + FoldStep * i16(w.controls.scrollValue() - ScrollCentre);
    if (s.FoldHJD < s.HJDMin) {
        s.FoldHJD = s.HJDMin + 0.05 * s.HJDRange;
        setBarToFold(w);
    }
    if (s.FoldHJD > s.HJDMax) {
        s.FoldHJD = s.HJDMin + 0.95 * s.HJDRange;
        setBarToFold(w);
    }
    PlotTracingPaper(w);
}

void UpdateFold(const TracingPaperView& w)
{
    S().FoldHJD = rt::Val(w.form.controlText(QStringLiteral("Text1")));
    PlotTracingPaper(w);
}

void SmoothFold(const TracingPaperView& w)
{
    Session& s = S();
    int width = 0;
    switch (s.AvgPoints) {
    case 1: width = 3; break;
    case 3: width = 5; break;
    case 5: width = 7; break;
    case 7: width = 9; break;
    default: PlotTracingPaper(w); return;
    }
    // Running means over the unsmoothed Mag. Entries nearer than k to either end are not
    // written and keep the previous level's value: the graded ends are deliberate.
    const int k = (width - 1) / 2;
    for (int i = k + 1; i <= s.NumPts - k; ++i) {
        double sum = 0;
        for (int j = i - k; j <= i + k; ++j)
            sum = sum + s.Mag(j);
        s.SmoothMag(i) = rt::div(sum, width);
    }
    s.AvgPoints = i16(width);
    w.form.setControlText(QStringLiteral("Label8"), QStringLiteral("%1-point averaging").arg(width));
    PlotTracingPaper(w);
}

void UndoSmoothFold(const TracingPaperView& w)
{
    Session& s = S();
    for (int i = 2; i <= s.NumPts - 1; ++i)
        s.SmoothMag(i) = s.Mag(i);
    w.form.setControlText(QStringLiteral("Label8"), QStringLiteral("No averaging"));
    s.AvgPoints = 1;
    PlotTracingPaper(w);
}

} // namespace dip
