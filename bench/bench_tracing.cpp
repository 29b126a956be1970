// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
// One redraw of the tracing paper with 1000 points: the procedure alone (in memory) and on
// the real window's drawing surface.
#include "BenchSupport.h"

#include "mainwindow/StartUp.h"
#include "methods/gui/MethodStarts.h"
#include "methods/tracing/TracingPaper.h"
#include "methods/tracing/TracingPaperMemory.h"
#include "methods/tracing/gui/frmPlott2.h"
#include "session/Session.h"

#include <QApplication>
#include <QTemporaryDir>

int main(int argc, char** argv)
{
    // The offscreen platform's notes on every show (it cannot raise windows) are not results.
    qInstallMessageHandler([](QtMsgType, const QMessageLogContext&, const QString&) {});
    QApplication app(argc, argv);
    QTemporaryDir dir;
    dip::StartUpSession();
    if (!dip::bench::openCurve(dir.path(), dip::bench::syntheticCurve(1000)))
        return 1;
    const int runs = 200;

    {
        dip::TracingPaperMemory memory;
        dip::OpenTracingPaper(memory.view());
        const double ms = dip::bench::medianMs(runs, [&] { dip::PlotTracingPaper(memory.view()); });
        dip::bench::report(QStringLiteral("tracing paper redraw, 1000 points, in memory"), ms, runs);
    }

    dip::PressMethodButton(2); // the window, as the main window's button opens it
    const double ms = dip::bench::medianMs(runs, [] { dip::PlotTracingPaper(dip::frmPlott2::form().view()); });
    dip::bench::report(QStringLiteral("tracing paper redraw, 1000 points, on the window"), ms, runs);
    return 0;
}
