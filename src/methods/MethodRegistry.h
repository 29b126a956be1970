// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#pragma once

// The one table of the timing methods (rows from Methods.def): for each, its row k in the main
// window, its title, its console option, whether its button picks a range, how the console
// tool replays it as a user drives it, and its computation as a function of values.
//
// The compute column is the same for every method:
//
//   MethodResult compute(const Curve& curve, const MethodRequest& request);
//
// It reads only its arguments and its own locals (a fresh workspace, solver and fit state on
// each call), touches no session, window or file, and is safe to call from several threads at
// once on different or the same curves. It never throws rt::RuntimeError and never ends the
// program: a runtime failure (division by zero 11, 0/0 6, subscript 9, square root of a
// negative number 5, overflow 6 ...) is reported in the result, ok = false and runtimeError
// its number; the message boxes the method would have shown ("Singular matrix 2" ...) are
// collected in messages and shown to no one. Only a failure to allocate memory escapes as
// std::bad_alloc. For the same curve and request it gives the same digits as the windows,
// except where the windows read what an earlier run left in the session's workspaces (Kwee's
// grid slots above 2M, SlideDiff beyond k): there a fresh workspace holds zeros.

#include "runtime/Integer.h"
#include "runtime/MsgBox.h"
#include "runtime/RuntimeError.h"
#include "session/Curve.h"
#include "session/ResultTable.h"

#include <QString>
#include <QStringList>

#include <array>
#include <optional>
#include <vector>

namespace dip {

// What a computation is asked to do, beyond the curve.
struct MethodRequest {
    // The resolved index ranges into the curve (1..n), as the windows' picking leaves them:
    // range 1 for the parabola, Kwee, Fourier and the chords' left range; range 2 for the
    // chords' right range. The sliding integrations pick their own stretch.
    rt::Integer first = 0;
    rt::Integer last = 0;
    rt::Integer first2 = 0;
    rt::Integer last2 = 0;
    // Kwee and van Woerden: the trial step s (grid steps) and the fraction f. M is
    // CInt(0.9 (last - first + 1)) as the window computes it.
    rt::Integer kweeStep = 1;
    double kweeFraction = 0.9;
    // The Fourier fit's start values in the order of its boxes: [1] Xo, [2] C, [3] W,
    // [4..8] A1..A5 ([0] unused). Every point's deviation is 0.01, the damping starts at -1.
    std::array<double, 9> fourierStart{};
    // The tracing paper's fold time.
    double fold = 0;
};

// What a computation found.
struct MethodResult {
    bool ok = false;      // time and error hold the method's result
    double time = 0;      // the time of minimum, without HJDOffset
    double error = 0;     // the method's estimated error
    int runtimeError = 0; // the runtime error that ended the computation; 0 when none
    QString runtimeErrorText;
    QStringList messages; // the message boxes it would have shown, in order

    // Extras a caller may want.
    // Parabola: magnitude = a0 + b t + c t^2, their standard errors and the RMS deviation.
    double parabolaA0 = 0, parabolaB = 0, parabolaC = 0, parabolaSigB = 0, parabolaSigC = 0, parabolaRms = 0;
    // Chords: the number of midpoints.
    int chordMidpoints = 0;
    // Kwee: the three reflection sums at the end, the parabola through them (A T^2 + B T + C
    // as numerators) and the centre grid index.
    double kweeSMinus = 0, kweeSZero = 0, kweeSPlus = 0, kweeA = 0, kweeB = 0, kweeC = 0;
    rt::Integer kweeCentre = 0;
    // Fourier: the fitted parameters in box order ([1] Xo .. [8] A5) and the solver calls made
    // in its iteration loop. The model is m(t) = C + sum_k A_k (cos(k W (t - Xo)) - 1).
    std::array<double, 9> fourierParameters{};
    int fourierLoopCalls = 0;
    // Sliding integrations: the stretch length and the fit window in grid indexes.
    rt::Integer slideN = 0;
    rt::Integer slideFirst = 0;
    rt::Integer slideLast = 0;
};

// What the console tool gives a replayed method: the right-clicks at exact times, in order,
// and the texts it types.
struct ReplayRequest {
    std::vector<double> clicks;
    QString text;                        // the tracing paper's fold box
    QString stepp = QStringLiteral("1"); // Kwee's boxes
    QString frac = QStringLiteral(".9");
    std::optional<QStringList> fourierStart; // eight texts typed into the Fourier boxes, then "Update"
};

// A replay's outcome: the method's result row as it left it (published false when it did not
// publish).
using ReplayResult = ResultRow;

struct MethodEntry {
    int row;
    const char* name;
    const char* title;
    const char* option;
    int optionArguments; // 0 none, -1 one text, n > 0 n comma-separated times
    bool picksRange;
    // The main-window button, the clicks and the compute button, without windows, into the
    // session and its result row.
    void (*replay)(const ReplayRequest&);
    MethodResult (*compute)(const Curve&, const MethodRequest&);
};

// Every method's functions.
#define DIPSCOPE_METHOD(row, Name, title, option, arguments, picksRange)                                               \
    void Replay##Name(const ReplayRequest& request);                                                                   \
    MethodResult Compute##Name(const Curve& curve, const MethodRequest& request);
#include "methods/Methods.def"
#undef DIPSCOPE_METHOD

// The rows by name, for the code that treats one method apart: ParabolaRow = 1, TracingPaperRow,
// ChordsRow, KweeRow, FourierRow, SlidingRow = 6.
enum MethodRow : int {
#define DIPSCOPE_METHOD(row, Name, title, option, arguments, picksRange) Name##Row = row,
#include "methods/Methods.def"
#undef DIPSCOPE_METHOD
};

// The table, in row order.
const std::vector<MethodEntry>& Methods();
// The entry of row k (1..6); any other k raises 9.
const MethodEntry& MethodOfRow(int row);

// What every method button of the main window does first: nothing (false) while no file is
// loaded; otherwise, for a method that picks a range, RangeFirst = 1 and RangeLast = NumPts.
bool MethodButtonPrelude(const MethodEntry& method);

// Replays a method (its prelude included) and returns its result row.
ReplayResult ReplayMethod(int row, const ReplayRequest& request);

// Runs a method's arithmetic with the contract above: arithmetic(result) fills the result;
// its messages are collected and a runtime error it raises is reported in the result.
template <class F>
MethodResult RunCompute(F&& arithmetic)
{
    MethodResult result;
    rt::MessageSink sink;
    try {
        arithmetic(result);
        result.ok = true;
    } catch (const rt::RuntimeError& e) {
        result.ok = false;
        result.runtimeError = e.number();
        result.runtimeErrorText = e.text();
    }
    result.messages = sink.messages();
    return result;
}

} // namespace dip
