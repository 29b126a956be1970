// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#include "methods/sliding/SlidingIntegrations.h"

#include "runtime/MsgBox.h"
#include "runtime/Numeric.h"
#include "runtime/RuntimeError.h"
#include "session/Results.h"
#include "session/Session.h"

#include <cmath>

namespace dip {

using rt::i16;
using rt::Integer;
using rt::ObsArray;

void LineFit(const ObsArray& x, const ObsArray& y, Integer first, Integer last, double& a, double& b, double& sigmaA,
             double& sigmaB, double& ssr)
{
    const double n = i16(i16(last - first) + 1);
    double sx = 0, sxx = 0, sy = 0, sxy = 0;
    for (int i = first; i <= last; ++i) {
        sx = sx + x(i);
        sxx = sxx + x(i) * x(i);
        sy = sy + y(i);
        sxy = sxy + x(i) * y(i);
    }
    const double d = n * sxx - sx * sx;
    a = rt::div(sxx * sy - sx * sxy, d);
    b = rt::div(n * sxy - sy * sx, d);

    ssr = 0;
    for (int i = first; i <= last; ++i) {
        const double r = b * x(i) + a - y(i);
        ssr = ssr + r * r;
    }

    // Nothing shows these; they are computed only when D > 0 (which needs N >= 2), so they can
    // never raise.
    sigmaA = 0;
    sigmaB = 0;
    if (d > 0) {
        const double s = rt::sqrt(rt::div(ssr, n - 1));
        sigmaA = s * rt::sqrt(rt::div(sxx, d));
        sigmaB = s * rt::sqrt(rt::div(n, d));
    }
}

namespace {

// k = Int(n / 3) + 1 in doubles, stored as a 16-bit integer; delta = (t(n) - t(1)) / 3k.
void gridSize(const ObsArray& t, Integer n, Integer& k, Integer& gridCount, double& delta)
{
    k = rt::CInt(rt::Int(n / 3.0) + 1.0);
    gridCount = i16(3 * k);
    delta = rt::div(t(n) - t(1), gridCount);
}

} // namespace

void ResampleEven(SlidingWorkspace& s, const ObsArray& t, const ObsArray& m, Integer n, Integer& k, Integer& gridCount,
                  double& delta)
{
    gridSize(t, n, k, gridCount, delta);
    s.GridHJD(1) = t(1);
    s.GridMag(1) = m(1);
    for (int i = 2; i <= gridCount; ++i) {
        const double g = t(1) + delta * (i - 1);
        s.GridHJD(i) = g;
        // The last observation at or before g, searched from the end, and the next one. Of
        // several observations at one time the last is taken, so the bracket never has a
        // zero width on sorted times.
        Integer j = n;
        while (t(j) > g)
            j = i16(j - 1);
        const Integer next = i16(j + 1);
        s.GridMag(i) = m(j) + rt::div((m(next) - m(j)) * (g - t(j)), t(next) - t(j));
    }
}

void SlidingIntegrations(SlidingWorkspace& s, const ObsArray& t, const ObsArray& m, Integer n, double& T, double& E,
                         SlidingWindow& window)
{
    Integer k = 0;
    Integer gridCount = 0;
    double delta = 0;
    ResampleEven(s, t, m, n, k, gridCount, delta);
    gridSize(t, n, k, gridCount, delta);

    // SlideDiff(i): trapezoidal integral over the k grid steps from grid point i, minus the
    // integral over the next k steps. Strict comparison: of equal differences the first wins.
    double best = 99;
    Integer bestIdx = 99;
    for (int i = 1; i <= k; ++i) {
        s.SlideDiff(i) = 0;
        for (int j = 0; j <= k - 1; ++j) {
            s.SlideDiff(i) = s.SlideDiff(i) + rt::div(delta * (s.GridMag(i + j) + s.GridMag(i + j + 1)), 2);
            s.SlideDiff(i) = s.SlideDiff(i) - rt::div(delta * (s.GridMag(i + j + k) + s.GridMag(i + j + k + 1)), 2);
        }
        if (std::abs(s.SlideDiff(i)) < best) {
            bestIdx = i16(i);
            best = std::abs(s.SlideDiff(i));
        }
    }

    // Half-width of the fit window, 1 to 5 grid points. At bestIdx = 1 or k the window reaches
    // grid index 0 or k + 1 and fits whatever those slots hold.
    Integer w = 0;
    if (bestIdx < k - bestIdx)
        w = i16(bestIdx - 1);
    else
        w = i16(i16(k - bestIdx) - 1);
    if (w > 5)
        w = 5;
    if (w < 1)
        w = 1;
    window.first = i16(bestIdx - w);
    window.last = i16(bestIdx + w);
    window.set = true;

    double a = 0, b = 0, sigmaA = 0, sigmaB = 0, ssr = 0;
    LineFit(s.GridHJD, s.SlideDiff, window.first, window.last, a, b, sigmaA, sigmaB, ssr);

    // The fitted difference crosses zero at -a/b; a window pair starting there is balanced
    // about the point one window width later.
    T = rt::div(-a, b) + k * delta;
    // The divisor is the window width k, not the number of fitted points, on purpose.
    E = rt::sqrt(rt::div(ssr, k));
}

Integer DeepestPoint(const Curve& curve)
{
    Integer deepest = 0;
    double largest = -99;
    for (int i = 1; i <= curve.n; ++i) {
        if (curve.m(i) > largest) {
            deepest = i16(i);
            largest = curve.m(i);
        }
    }
    return deepest;
}

// 16-bit arithmetic, comparisons in doubles.
void ChooseSlidingStretch(SlidingWorkspace& s, const Curve& curve, Integer deepest)
{
    const Integer numPts = curve.n;
    const double x = numPts / 2.0 * 0.9;
    const Integer after = i16(numPts - deepest);
    if (x > after) {
        s.SlideN = i16(2 * after);
        // The stretch runs from n - SlideN to n - 1: the last used point is left out. This
        // one-off shift is kept deliberately.
        const Integer o = i16(i16(numPts - s.SlideN) - 1);
        for (int i = 1; i <= s.SlideN; ++i) {
            s.SlideHJD(i) = curve.t(i16(o + i));
            s.SlideMag(i) = curve.m(i16(o + i));
        }
    } else {
        if (x > deepest)
            s.SlideN = i16(2 * deepest);
        else
            s.SlideN = numPts;
        for (int i = 1; i <= s.SlideN; ++i) {
            s.SlideHJD(i) = curve.t(i);
            s.SlideMag(i) = curve.m(i);
        }
    }
}

SlidingOutcome RunSlidingIntegrations()
{
    Session& s = S();
    SlidingOutcome outcome;
    if (s.DataName.isEmpty())
        return outcome;
    int trapped = 0;
    SlidingWindow window;
    // The fit window overwrites RangeFirst and RangeLast as soon as it is known, and stays
    // there whatever follows.
    auto leaveWindow = [&] {
        if (window.set) {
            s.RangeFirst = window.first;
            s.RangeLast = window.last;
        }
    };
    try {
        ChooseSlidingStretch(s, SessionCurve(), s.IdxMagMax);
        double T = 0, E = 0;
        SlidingIntegrations(s, s.SlideHJD, s.SlideMag, s.SlideN, T, E, window);
        leaveWindow();
        PublishResult(6, T, E);
        outcome.published = true;
        outcome.time = s.Results(6).time;
        outcome.error = E;
    } catch (const rt::RuntimeError& e) {
        leaveWindow();
        trapped = e.number();
    }
    if (trapped != 0) {
        // Outside the trap: the table lookup is the handler's own code.
        outcome.trappedError = trapped;
        SetTrappedError(6, trapped);
        rt::MsgBox(s.ErrorText(trapped));
    }
    return outcome;
}

} // namespace dip
