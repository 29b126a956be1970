// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#include "analysis/BatchMethods.h"
#include "analysis/paint/OcPlotFile.h"
#include "app/Batch.h"

#include <QCoreApplication>
#include <QGuiApplication>

#include <cstdio>
#include <memory>

int main(int argc, char* argv[])
{
    QStringList arguments;
    for (int i = 1; i < argc; ++i)
        arguments << QString::fromLocal8Bit(argv[i]);
    // Text in a picture needs a QGuiApplication; a batch never opens a window, so it draws on
    // the offscreen platform whatever display there is.
    std::unique_ptr<QCoreApplication> app;
    if (dip::BatchWantsPlot(arguments)) {
        qputenv("QT_QPA_PLATFORM", "offscreen");
        app = std::make_unique<QGuiApplication>(argc, argv);
    } else {
        app = std::make_unique<QCoreApplication>(argc, argv);
    }
    return dip::RunBatch(arguments, stdout, stderr, dip::runBatchMethod, dip::saveOcDiagram);
}
