// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#pragma once

// The session: the one light curve that every window works on, its edited subset, the
// magnitude convention, the extents used for plotting and the working range, plus the
// module-level state that the method windows keep between uses. Every window and procedure
// reads and writes it directly; there is exactly one, reached through S().

#include "runtime/Array.h"
#include "runtime/Integer.h"
#include "session/LightCurveData.h"
#include "session/MethodWorkspaces.h"
#include "session/ResultTable.h"

#include <QString>

namespace dip {

using rt::Integer;
using rt::ObsArray;

// The record of a right-click range of one method window. The flags are cleared at start-up
// and at every load; indexes, marker positions and remembered times never are.
struct RangePick {
    Integer LeftIdx = 0;
    Integer RightIdx = 0;
    Integer LeftSet = rt::False;
    Integer RightSet = rt::False;
    Integer RangeSet = rt::False;
    Integer Fitted = rt::False;
    double LeftMarkX = 0;
    double RightMarkX = 0;
    double LeftHJD = 0;
    double RightHJD = 0;

    void clearFlags() { LeftSet = RightSet = RangeSet = Fitted = rt::False; }
};

// The four-point picking state of the bisectors of chords; a data-file load leaves it alone.
struct ChordPick {
    Integer Idx1 = 0, Idx2 = 0, Idx3 = 0, Idx4 = 0;
    Integer LeftStage = 0;
    Integer RightStage = 0;
    Integer RangeSet = rt::False;
    Integer Fitted = rt::False;
    double HJD1 = 0, HJD2 = 0, HJD3 = 0, HJD4 = 0;
};

// The Fourier window's parameters and bookkeeping, over the fit state it hands the solver.
struct FourierState : FourierFitState {
    rt::Array<double, 0, 8> FourierPar; // 1..8 in the order of the text boxes
    rt::Array<Integer, 0, 8> ParEdited; // per box: changed since the last fit
    Integer ParEntered = rt::False;
    Integer FourierFitDone = rt::False;
    RangePick Range; // the window's own copy of a picked range
    rt::Array<double, 0, 100> CurveT;
    rt::Array<double, 0, 100> CurveM;
};

// The session owns the workspaces of the methods its windows run (Kwee's grid, the sliding
// integrations' arrays), so their names stay the session's own: S().KweeGridT, S().SlideDiff.
struct Session : KweeGrid, SlidingWorkspace {
    // Files.
    QString DataDir;
    QString DataName;
    QString DataPath;

    // Observations.
    ObsArray ReadHJD;
    ObsArray ReadMag;
    ObsArray OrigHJD;
    ObsArray OrigMag;
    rt::Array<Integer, 0, 1000> Deleted; // 0 = used, True (-1) = deleted
    ObsArray HJD;
    ObsArray Mag;

    Integer NumOrig = 0;
    Integer NumPts = 0;
    Integer MagSign = 0;

    // Extents of the used points (time padded by 0.002 day, magnitude not).
    double HJDMin = 0, HJDMax = 0, HJDRange = 0;
    double MagMin = 0, MagMax = 0, MagRange = 0;
    Integer IdxMagMin = 0;
    Integer IdxMagMax = 0;

    // Copies taken after a load and after a change of sign only.
    double FullHJDMin = 0, FullHJDMax = 0, FullHJDRange = 0;
    double FullMagMin = 0, FullMagMax = 0, FullMagRange = 0;
    Integer FullIdxMagMin = 0;
    Integer FullIdxMagMax = 0;

    double FoldHJD = 0;
    Integer PickIdx = 0;
    Integer RangeFirst = 0;
    Integer RangeLast = 0;
    // Added to every method's time of minimum before it is shown. Only the toolkit's "Subtract
    // whole days" assigns it (at a load, see session/WholeDays.h); otherwise it stays 0.
    double HJDOffset = 0;
    // The toolkit's "Subtract whole days" switch, and whether it was on when the light curve in
    // the session was loaded (a flip takes effect at the next load).
    bool SubtractWholeDays = false;
    bool WholeDaysSubtracted = false;
    // The time system the loaded file's times are in: what an imported file says, or what the
    // user states; Unstated for the program's own files (their times are called HJD).
    TimeSystem TimesSystem = TimeSystem::Unstated;

    // Saved window placements: 7 lines of left, top, width, height (twips).
    rt::Matrix<Integer, 0, 7> WinPos;
    // Texts of runtime errors by number (filled at start).
    rt::Array<QString, 0, 1000> ErrorText;

    // The plot box of the window drawn last (twips).
    double PlotLeft = 0, PlotRight = 0, PlotTop = 0, PlotBottom = 0, PlotWidth = 0, PlotHeight = 0;

    // Method windows' module-level state.
    rt::Array<Integer, 0, 6> FirstTime; // per-window first-time flags (1, 3, 4, 5 used)
    RangePick ParabolaPick;             // frmPlott1
    RangePick KweePick;                 // frmPlott4
    // The step s and fraction f the last "Fit Kwee" computed with, as it read them from its
    // boxes (the boxes themselves belong to the window): what the bootstrap repeats.
    Integer KweeStepUsed = 1;
    double KweeFractionUsed = 0.9;
    // The parabolic fit's coefficients, kept for redrawing the curve, and its 101 samples.
    double ParabA0 = 0, ParabB = 0, ParabC = 0, ParabSigB = 0, ParabSigC = 0;
    rt::Array<double, 0, 100> FitCurveT;
    rt::Array<double, 0, 100> FitCurveMag;
    ChordPick Chords;     // frmPlott3
    FourierState Fourier; // frmPlott5
    ObsArray SmoothMag;   // tracing paper
    Integer AvgPoints = 0;
    double FoldShown = 0;
    double FoldSpan = 0;

    // The six result rows the methods publish into; the main window's boxes show them.
    ResultTable Results;
};

// What start-up and every load reset in the method windows: the first-time flags of the
// parabola, bisector, Kwee and Fourier windows, the range flags of the parabola, Kwee and
// Fourier windows and the tracing paper's averaging width (1).
void ResetMethodWindowFlags(Session& s);

// The session of this process.
Session& S();

// Puts the whole session back to its state before start-up (for tests and the console tool).
void resetSession();

} // namespace dip
