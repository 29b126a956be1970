// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers

// Draws a light curve of 1000 points (one in twenty deleted) in frmPlotData at 1200 x 900
// pixels, as every resize, delete, undelete and cancel does, and prints the median time of
// a drawing. The target is one frame, 16 ms.

#include "plotting/PlotDataEntry.h"
#include "plotting/frmPlotData.h"
#include "session/LoadDataFile.h"
#include "session/Procedures.h"
#include "session/Session.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QTemporaryDir>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <vector>

int main(int argc, char** argv)
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM") && qEnvironmentVariableIsEmpty("DISPLAY") &&
        qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    QLocale::setDefault(QLocale::c());

    // An eclipse of 0.8 magnitude over 0.3 day, with some scatter.
    QTemporaryDir dir;
    QFile file(dir.filePath(QStringLiteral("bench.csv")));
    if (!file.open(QIODevice::WriteOnly))
        return 1;
    for (int i = 0; i < 1000; ++i) {
        const double t = 2454123.3 + 0.0003 * i;
        const double u = (i - 500) / 150.0;
        const double m = 11.2 + 0.8 * std::exp(-u * u) + 0.01 * std::sin(i * 1.7);
        file.write(QByteArray::number(t, 'f', 6) + ',' + QByteArray::number(m, 'f', 4) + '\n');
    }
    file.close();
    dip::S().MagSign = 1;
    if (!dip::OpenDataFile(dir.path(), QStringLiteral("bench.csv")))
        return 1;
    for (int i = 10; i <= 1000; i += 20) {
        dip::S().PickIdx = rt::Integer(i);
        dip::SetPickedDeleted(true);
    }

    dip::ShowPlotData();
    dip::frmPlotData& form = dip::PlotDataWindow();
    form.resize(1200, 900);
    QCoreApplication::processEvents();

    const int runs = argc > 1 ? std::max(1, std::atoi(argv[1])) : 101;
    std::vector<double> ms;
    for (int r = 0; r < runs; ++r) {
        QElapsedTimer timer;
        timer.start();
        form.PlotData();
        (void)form.picture(); // the picture complete
        ms.push_back(timer.nsecsElapsed() / 1e6);
    }
    std::sort(ms.begin(), ms.end());
    std::printf("bench_plotdata: 1000 points at %d x %d pixels: median %.3f ms over %d drawings (target 16 ms)\n",
                form.width(), form.height(), ms[ms.size() / 2], runs);
    return 0;
}
