// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
// One redraw of the tracing paper with 1000 points.
#include "BenchSupport.h"

#include "mainwindow/StartUp.h"
#include "methods/tracing/TracingPaper.h"
#include "methods/tracing/TracingPaperMemory.h"
#include "session/LoadDataFile.h"
#include "session/Session.h"

#include <QFile>
#include <QTemporaryDir>

int main()
{
    QTemporaryDir dir;
    QFile f(dir.filePath(QStringLiteral("curve.csv")));
    if (!f.open(QIODevice::WriteOnly))
        return 1;
    f.write(dip::bench::syntheticCurve(1000));
    f.close();
    dip::StartUpSession();
    if (!dip::OpenDataFile(dir.path(), QStringLiteral("curve.csv")))
        return 1;

    dip::TracingPaperMemory window;
    dip::setTracingPaperWindow(&window, &window);
    dip::OpenTracingPaper();
    const int runs = 200;
    const double ms = dip::bench::medianMs(runs, [] { dip::PlotTracingPaper(); });
    dip::bench::report(QStringLiteral("tracing paper redraw, 1000 points, in memory"), ms, runs);
    dip::setTracingPaperWindow(nullptr, nullptr);
    return 0;
}
