// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
// The parabolic fit, Kwee and van Woerden and the bisectors of chords on a 1000-point light
// curve, each replayed as the console tool does: method button, right-clicks, compute button.
#include "BenchSupport.h"

#include "mainwindow/StartUp.h"
#include "methods/MethodRegistry.h"
#include "session/LoadDataFile.h"
#include "session/MainForm.h"
#include "session/Session.h"

#include <QFile>
#include <QTemporaryDir>

int main()
{
    using namespace dip;
    QTemporaryDir dir;
    QFile f(dir.filePath(QStringLiteral("curve.csv")));
    if (!f.open(QIODevice::WriteOnly))
        return 1;
    f.write(bench::syntheticCurve(1000));
    f.close();
    MainBoxes boxes;
    setMainForm(&boxes);
    StartUpSession();
    if (!OpenDataFile(dir.path(), QStringLiteral("curve.csv")) || S().NumPts != 1000)
        return 1;

    const int runs = 51;
    bool ok = true;
    // Method button, right-clicks at these times, compute button; true when it published.
    auto replay = [](int row, std::vector<double> clicks) {
        ReplayRequest request;
        request.clicks = std::move(clicks);
        return ReplayMethod(row, request).published;
    };
    // The whole curve of 1000 points.
    double ms = bench::medianMs(runs, [&] { ok = ok && replay(1, {0.2995, 0.7005}); });
    bench::report(QStringLiteral("parabola, 1000 points"), ms, runs);
    // The dip, 0.4 to 0.6: 500 points, a grid of 900 (the grid must fit 0..1000).
    ms = bench::medianMs(runs, [&] { ok = ok && replay(4, {0.4, 0.6}); });
    bench::report(QStringLiteral("Kwee and van Woerden, 500 of 1000 points"), ms, runs);
    // Both branches inside the dip (the partners must be fainter than the baseline), 350
    // points, each partner searched over the whole curve.
    ms = bench::medianMs(runs, [&] { ok = ok && replay(3, {0.42, 0.49, 0.51, 0.58}); });
    bench::report(QStringLiteral("bisectors of chords, 350 of 1000 points"), ms, runs);
    return ok ? 0 : 1;
}
