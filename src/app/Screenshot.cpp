// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers

// dipscope-screenshot OUTPUT.png [DATAFILE]: the picture of the main window in the README. Starts
// the main window offscreen, loads the example light curve as File > Open does, replays each
// method as a user would, presses "Calc. Means" and saves the window as a PNG.

#include "app/Application.h"
#include "app/Replay.h"
#include "mainwindow/frmMain.h"
#include "runtime/RuntimeError.h"

#include <QLocale>
#include <QPixmap>
#include <QPushButton>

#include <cstdio>
#include <optional>
#include <vector>

namespace {

// The right-clicks and typed values of the replay, for the example curve: an eclipse from about
// 0.43 to 0.60 (times in days) with its minimum near 0.512.
const std::vector<double> parabolaClicks = {0.49, 0.535};
const char* const tracingFold = "0.5123";
const std::vector<double> chordClicks = {0.45, 0.47, 0.555, 0.575};
const std::vector<double> kweeClicks = {0.46, 0.565};
const char* const kweeStepp = "1";
const char* const kweeFrac = ".9";
const std::vector<double> fourierClicks = {0.43, 0.595};

const char* const defaultDataFile = "examples/single-minimum.csv";

} // namespace

int main(int argc, char* argv[])
{
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    dip::Application app(argc, argv);
    QLocale::setDefault(QLocale::c());
    QStringList arguments = QApplication::arguments();
    arguments.removeFirst();
    if (arguments.isEmpty() || arguments.size() > 2) {
        std::fputs("usage: dipscope-screenshot OUTPUT.png [DATAFILE]\n", stderr);
        return 2;
    }
    const QString output = arguments[0];
    const QString dataFile = arguments.size() > 1 ? arguments[1] : QString::fromLatin1(defaultDataFile);

    dip::frmMain window;
    window.show();
    try {
        window.openFromCommandLine(dataFile);
        dip::ReplayParabola(parabolaClicks);
        dip::ReplayTracingPaper(QString::fromLatin1(tracingFold));
        dip::ReplayChords(chordClicks);
        dip::ReplayKwee(kweeClicks, QString::fromLatin1(kweeStepp), QString::fromLatin1(kweeFrac));
        dip::ReplayFourier(fourierClicks, std::nullopt);
        dip::ReplaySliding();
        window.findChild<QPushButton*>(QStringLiteral("Command8"))->click();
    } catch (const rt::RuntimeError& error) {
        std::fprintf(stderr, "%s\n", qPrintable(rt::reportText(error).replace(QLatin1Char('\n'), QLatin1Char(' '))));
        return 1;
    }
    QApplication::processEvents();
    if (!window.grab().save(output, "PNG")) {
        std::fprintf(stderr, "dipscope-screenshot: cannot write %s\n", qPrintable(output));
        return 1;
    }
    return 0;
}
