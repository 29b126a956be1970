// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#include "methods/chords/ChordsCommands.h"

#include "runtime/Text.h"
#include "session/MainForm.h"
#include "session/Results.h"
#include "session/Session.h"

#include <utility>

namespace dip {

namespace {

const QString startPrompt = QStringLiteral("Bisect Chords - RIGHT-CLICK AT START (left end) OF LEFT RANGE.");

// One side's part of the record and of the window.
struct Side {
    Integer& stage;
    Integer& startIdx;
    Integer& endIdx;
    double& startHJD;
    double& endHJD;
    const char* startLabel;
    const char* endLabel;
    const char* endPrompt;  // after the start of this side
    const char* donePrompt; // after the end of this side
};

void pickOnSide(FormPort& form, Side side, const Click& click, double t)
{
    if (side.stage == 0) {
        const Integer i = searchFirstAfter(t);
        if (i <= S().NumPts)
            side.startIdx = i;
        side.startHJD = t;
        form.setControlText(QLatin1String(side.startLabel), rt::Str(side.startIdx));
        drawMarker(form, click.X);
        side.stage = 1;
        form.setCaption(QLatin1String(side.endPrompt));
    } else if (side.stage == 1) {
        const Integer i = searchLastBefore(t);
        if (i >= 1)
            side.endIdx = i;
        side.endHJD = t;
        form.setControlText(QLatin1String(side.endLabel), rt::Str(side.endIdx));
        drawMarker(form, click.X);
        // An end left of its start swaps the indexes (not the times), so the loops run upwards.
        if (side.endIdx < side.startIdx) {
            std::swap(side.startIdx, side.endIdx);
            form.setControlText(QLatin1String(side.startLabel), rt::Str(side.startIdx));
            form.setControlText(QLatin1String(side.endLabel), rt::Str(side.endIdx));
        }
        side.stage = 2;
        form.setCaption(QLatin1String(side.donePrompt));
    }
}

} // namespace

void ChordsFormLoad(FormPort& form)
{
    ChordPick& p = S().Chords;
    p.LeftStage = 0;
    p.RightStage = 0;
    p.RangeSet = rt::False;
    form.setCaption(startPrompt);
}

void ChordsRedrawOverlays(FormPort& form)
{
    const ChordPick& p = S().Chords;
    if (p.RangeSet == 0)
        return;
    for (const double t : {p.HJD1, p.HJD2, p.HJD3, p.HJD4})
        drawMarker(form, markerX(form.transform(), t));
}

void ChordsMouseDown(FormPort& form, const Click& click)
{
    if (!clickInsideBox(form.transform(), click) || click.Button != RightButton)
        return;
    Session& s = S();
    ChordPick& p = s.Chords;
    const double t = clickTime(form.transform(), click, ClickTimeForm::LeftToRight);
    if (t < s.OrigHJD(s.IdxMagMax)) {
        pickOnSide(form,
                   Side{p.LeftStage, p.Idx1, p.Idx2, p.HJD1, p.HJD2, "Label8", "Label10",
                        "Bisect Chords - RIGHT-CLICK AT (right) END OF LEFT RANGE.",
                        "Bisect Chords - RIGHT-CLICK AT START (left end) OF RIGHT RANGE."},
                   click, t);
    } else {
        pickOnSide(form,
                   Side{p.RightStage, p.Idx3, p.Idx4, p.HJD3, p.HJD4, "Label12", "Label14",
                        "Bisect Chords - RIGHT-CLICK AT (right) END OF RIGHT RANGE.",
                        "Bisect Chords - CLICK 'Bisect Chords', OR 'Undo' TO START OVER."},
                   click, t);
    }
    p.RangeSet = (p.LeftStage == 2 && p.RightStage == 2) ? rt::True : rt::False;
}

std::optional<ChordsResult> ChordsBisectClick(FormPort& form)
{
    Session& s = S();
    ChordPick& p = s.Chords;
    if (p.RangeSet == 0 || p.Idx1 == 0 || p.Idx2 == 0)
        return std::nullopt;
    for (const double t : {p.HJD1, p.HJD2, p.HJD3, p.HJD4})
        drawMarker(form, markerX(form.transform(), t));
    const ChordsResult r = BisectChords(s.HJD, s.Mag, s.NumPts, p.Idx1, p.Idx2, p.Idx3, p.Idx4);
    p.Fitted = rt::True;
    PublishResult(3, r.time, r.error);
    form.setCaption(QStringLiteral("Bisect Chords - CLICK 'Done' TO EXIT, OR 'Undo' TO START OVER."));
    return r;
}

void ChordsUndoClick(FormPort& form)
{
    ChordPick& p = S().Chords;
    p.LeftStage = 0;
    p.RightStage = 0;
    p.RangeSet = rt::False;
    p.Fitted = rt::False;
    ClearResult(3, true);
    form.setCaption(startPrompt);
    for (const char* label : {"Label8", "Label10", "Label12", "Label14"})
        form.setControlText(QLatin1String(label), QString());
}

} // namespace dip
