// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
// One redraw of the tracing paper with 1000 points: the procedure alone (in memory) and on
// the real window's drawing surface.
#include "BenchSupport.h"

#include "mainwindow/StartUp.h"
#include "methods/MethodEntries.h"
#include "methods/tracing/TracingPaper.h"
#include "methods/tracing/TracingPaperMemory.h"
#include "session/LoadDataFile.h"
#include "session/Session.h"

#include <QApplication>
#include <QFile>
#include <QTemporaryDir>

int main(int argc, char** argv)
{
    // The offscreen platform's notes on every show (it cannot raise windows) are not results.
    qInstallMessageHandler([](QtMsgType, const QMessageLogContext&, const QString&) {});
    QApplication app(argc, argv);
    QTemporaryDir dir;
    QFile f(dir.filePath(QStringLiteral("curve.csv")));
    if (!f.open(QIODevice::WriteOnly))
        return 1;
    f.write(dip::bench::syntheticCurve(1000));
    f.close();
    dip::StartUpSession();
    if (!dip::OpenDataFile(dir.path(), QStringLiteral("curve.csv")))
        return 1;
    const int runs = 200;

    {
        dip::TracingPaperMemory memory;
        dip::setTracingPaperWindow(&memory, &memory);
        dip::OpenTracingPaper();
        const double ms = dip::bench::medianMs(runs, [] { dip::PlotTracingPaper(); });
        dip::bench::report(QStringLiteral("tracing paper redraw, 1000 points, in memory"), ms, runs);
    }

    dip::StartTracingPaper(); // the window, as the main window's button opens it
    const double ms = dip::bench::medianMs(runs, [] { dip::PlotTracingPaper(); });
    dip::bench::report(QStringLiteral("tracing paper redraw, 1000 points, on the window"), ms, runs);
    return 0;
}
