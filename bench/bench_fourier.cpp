// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
// The Fourier fit of a 1000-point range with all 503 solver calls (the start call, the 501
// calls of the loop, the covariance call), and the coefficient sums of 503 calls that each move
// W and Xo, which no real fit does 503 times over.
#include "BenchSupport.h"

#include "mainwindow/StartUp.h"
#include "methods/MethodRegistry.h"
#include "methods/fourier/FourierFit.h"
#include "methods/marquardt/Marquardt.h"
#include "session/LoadDataFile.h"
#include "session/Session.h"

#include <QElapsedTimer>
#include <QFile>
#include <QStringList>
#include <QTemporaryDir>

#include <algorithm>
#include <cstdio>
#include <vector>

namespace {

using namespace dip;

// The start values in the boxes' order Xo, C, W, A1..A5.
const QStringList startTexts = {"0.5", "1.2", "25", "0.25", "0.125", "0.0625", "0.03125", "0.015625"};

ParVector startParameters()
{
    rt::Array<double, 0, 8> par;
    for (int k = 1; k <= 8; ++k)
        par(k) = startTexts[k - 1].toDouble();
    ParVector a;
    fourierParToSolver(par, a);
    return a;
}

// 1000 points lying exactly on the model of the start values: no step can lower chi-square
// from 0, so the fit runs its loop to the end.
QByteArray curveOnModel()
{
    const ParVector a = startParameters();
    QByteArray out = "HJD,Mag\n";
    ParVector dyda;
    for (int i = 0; i < 1000; ++i) {
        const double t = 0.3 + 0.4 * i / 999;
        double m = 0;
        FourierModel(t, a, m, dyda, 8);
        out += QByteArray::number(t, 'g', 17) + ',' + QByteArray::number(m, 'g', 17) + '\n';
    }
    return out;
}

double median(std::vector<double> v)
{
    std::sort(v.begin(), v.end());
    return v[v.size() / 2];
}

} // namespace

int main()
{
    QTemporaryDir dir;
    QFile f(dir.filePath(QStringLiteral("curve.csv")));
    if (!f.open(QIODevice::WriteOnly))
        return 1;
    f.write(curveOnModel());
    f.close();
    StartUpSession();
    OpenDataFile(dir.path(), QStringLiteral("curve.csv"));
    Session& s = S();

    FormMemory form;
    FourierView view{form, [&form] { PlotFourierLightCurve(form); }};
    MethodButtonPrelude(MethodOfRow(5));
    pressFourierButton(view);

    // Each run: Undo, the whole range picked again, the start values typed, "Update", and the
    // timed " Fit Fourier".
    const int runs = 21;
    std::vector<double> times;
    FourierFitOutcome outcome;
    long long evaluations = 0, harmonics = 0;
    for (int run = 0; run <= runs; ++run) {
        undoFourier(view);
        pickFourierEnd(view, Click::atTime(form.transform(), s.HJDMin + 0.001));
        pickFourierEnd(view, Click::atTime(form.transform(), s.HJDMin + s.HJDRange - 0.001));
        for (int k = 1; k <= 8; ++k)
            form.setControlText(fourierText::boxName(k), startTexts[k - 1]);
        updateFourier(view);
        const MarquardtCounts before = fourierWindowSolver().counts();
        QElapsedTimer timer;
        timer.start();
        outcome = fitFourier(view);
        const double ms = static_cast<double>(timer.nsecsElapsed()) / 1e6;
        const MarquardtCounts after = fourierWindowSolver().counts();
        evaluations = after.evaluations - before.evaluations;
        harmonics = after.harmonicEvaluations - before.harmonicEvaluations;
        if (run > 0) // the first is the warm-up
            times.push_back(ms);
    }
    bench::report(QStringLiteral("Fourier fit of 1000 points, 503 solver calls"), median(times), runs,
                  QStringLiteral("20 ms"));
    std::printf("  %d loop calls, %lld coefficient evaluations, %lld of them with new cosines; %d points\n",
                outcome.loopCalls, evaluations, harmonics, S().Fourier.Range.RightIdx - S().Fourier.Range.LeftIdx + 1);

    // The sums alone, 503 times with W and Xo moved each time: every call computes its
    // 5 x 1000 cosines and sines afresh.
    const FourierState& fs = S().Fourier;
    ParList lista = fs.Lista;
    const int sumRuns = 11;
    FourierSolver solver;
    const double sumsMs = bench::medianMs(sumRuns, [&] {
        ParVector a = startParameters();
        ParMatrix alpha, beta;
        double chisq = 0;
        for (int call = 0; call < 503; ++call) {
            a(7) += 1e-6;
            a(8) += 1e-7;
            solver.coefficients(fs.FitX, fs.FitY, fs.FitSig, 1000, a, 8, lista, 8, alpha, beta, 8, chisq);
        }
    });
    bench::report(QStringLiteral("503 coefficient evaluations of 1000 points, each with new cosines"), sumsMs, sumRuns);
    return outcome.fitted && outcome.loopCalls == 501 ? 0 : 1;
}
