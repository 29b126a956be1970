// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
// Drawing a 1000-point light curve (one point in twenty deleted) in frmPlotData at 1200 x 900
// pixels, as every resize, delete, undelete and cancel does. The target is one frame.
#include "BenchSupport.h"

#include "mainwindow/StartUp.h"
#include "plotting/gui/PlotDataEntry.h"
#include "plotting/gui/frmPlotData.h"
#include "session/Procedures.h"
#include "session/Session.h"

#include <QApplication>
#include <QTemporaryDir>

int main(int argc, char** argv)
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM") && qEnvironmentVariableIsEmpty("DISPLAY") &&
        qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    // The offscreen platform's notes on every show (it cannot raise windows) are not results.
    qInstallMessageHandler([](QtMsgType, const QMessageLogContext&, const QString&) {});
    QApplication app(argc, argv);
    QTemporaryDir dir;
    dip::StartUpSession();
    if (!dip::bench::openCurve(dir.path(), dip::bench::syntheticCurve(1000)))
        return 1;
    for (int i = 10; i <= 1000; i += 20) {
        dip::S().PickIdx = rt::Integer(i);
        dip::SetPickedDeleted(true);
    }

    dip::ShowPlotData();
    dip::frmPlotData& form = dip::PlotDataWindow();
    form.resize(1200, 900);
    QCoreApplication::processEvents();

    const int runs = 101;
    const double ms = dip::bench::medianMs(runs, [&] {
        form.PlotData();
        (void)form.picture(); // the picture complete
    });
    dip::bench::report(QStringLiteral("draw 1000-point light curve at %1 x %2").arg(form.width()).arg(form.height()),
                       ms, runs, QStringLiteral("16 ms"));
    return dip::S().NumOrig == 1000 ? 0 : 1;
}
