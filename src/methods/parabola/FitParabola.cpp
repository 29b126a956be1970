// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#include "methods/parabola/FitParabola.h"

#include "plotting/PlotBox.h"
#include "runtime/Numeric.h"
#include "session/Session.h"

namespace dip {

using rt::fin;
using rt::i16;

ParabolaFitResult FitParabola(const rt::ObsArray& t, const rt::ObsArray& y, rt::Integer /*count*/, rt::Integer first,
                              rt::Integer last)
{
    const rt::Integer n = i16(last - first + 1);

    // One pass of sums; the powers by repeated multiplication.
    double S1 = 0, S2 = 0, S3 = 0, S4 = 0, T0 = 0, T1 = 0, T2 = 0;
    for (long long i = first; i <= last; ++i) {
        const double ti = t(i);
        const double yi = y(i);
        const double t2 = ti * ti;
        const double t3 = t2 * ti;
        const double t4 = t3 * ti;
        S1 = fin(S1 + ti);
        S2 = fin(S2 + t2);
        S3 = fin(S3 + t3);
        S4 = fin(S4 + t4);
        T0 = fin(T0 + yi);
        T1 = fin(T1 + yi * ti);
        T2 = fin(T2 + yi * t2);
    }

    // Cofactors of [[n, S1, S2], [S1, S2, S3], [S2, S3, S4]].
    const double K1 = fin(S4 * S2 - S3 * S3);
    const double K2 = fin(S4 * S1 - S3 * S2);
    const double K3 = fin(S3 * S1 - S2 * S2);
    const double K4 = fin(n * S4 - S2 * S2);
    const double K5 = fin(n * S3 - S2 * S1);
    const double K6 = fin(n * S2 - S1 * S1);
    const double D = fin(n * K1 - S1 * K2 + S2 * K3);

    // Cramer's rule.
    ParabolaFitResult r;
    r.a0 = rt::div(fin(T0 * K1 - T1 * K2 + T2 * K3), D);
    r.b = rt::div(fin(-T0 * K2 + T1 * K4 - T2 * K5), D);
    r.c = rt::div(fin(T0 * K3 - K5 * T1 + K6 * T2), D);
    r.time = rt::div(-r.b, 2 * r.c);

    // Residuals and the squared weights of the y_i in the numerators of b and c.
    double SSR = 0, Q1 = 0, Q2 = 0;
    for (long long i = first; i <= last; ++i) {
        const double ti = t(i);
        const double t2 = ti * ti;
        const double d = fin(r.a0 + r.b * ti + r.c * t2 - y(i));
        const double w1 = fin(-K2 + K4 * ti - K5 * t2);
        const double w2 = fin(K3 - K5 * ti + K6 * t2);
        SSR = fin(SSR + d * d);
        Q1 = fin(Q1 + w1 * w1);
        Q2 = fin(Q2 + w2 * w2);
    }

    r.rms = rt::sqrt(rt::div(SSR, n - 3));
    r.sigB = rt::div(fin(r.rms * rt::sqrt(Q1)), D);
    r.sigC = rt::div(fin(r.rms * rt::sqrt(Q2)), D);
    return r;
}

double ParabolaError(const ParabolaFitResult& fit)
{
    const double rb = rt::div(fit.sigB, fit.b);
    const double rc = rt::div(fit.sigC, fit.c);
    return fin(fin(fit.time * rt::sqrt(fin(rb * rb + rc * rc))) * fit.rms);
}

void PlotParabolaFit(Canvas& canvas)
{
    Session& s = S();
    const double step = rt::div(s.HJDRange, 100);
    const PlotScale scale = CurrentScale();
    double x[101];
    double y[101];
    for (int k = 0; k <= 100; ++k) {
        const double t = fin(s.HJDMin + step * k);
        s.FitCurveT(k) = t;
        s.FitCurveMag(k) = fin((s.ParabC * t + s.ParabB) * t + s.ParabA0);
        x[k] = PlotX(canvas.transform(), scale, t);
        y[k] = PlotY(canvas.transform(), scale, s.FitCurveMag(k));
    }

    // The parabola runs over the whole time axis and leaves the magnitude scale on both sides:
    // it shows inside the plot box only.
    PlotBoxClip clip(canvas);
    // The pen starts at sample 0, set in whatever colour is current.
    canvas.pset(x[0], y[0]);
    const RangePick& pick = s.ParabolaPick;
    for (int k = 1; k <= 100; ++k) {
        const bool inside = pick.LeftHJD < s.FitCurveT(k) && s.FitCurveT(k) < pick.RightHJD;
        canvas.setForeColor(inside ? colours::blue : colours::curveGrey);
        // A slanted stroke to 10 twips above the sample, then a 20-twip vertical one through it.
        for (int j = -10; j <= 10; ++j)
            canvas.lineTo(x[k], y[k] + j);
    }
}

} // namespace dip
