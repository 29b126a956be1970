// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers

// dipscope-screenshot OUTPUT.png [DATAFILE] [--windows FOLDER]: the pictures in the README.
// Starts the main window offscreen and loads the example light curve as File > Open does. With
// --windows it first drives every plot window as a user would (right-clicks on the plot, the
// compute buttons) and saves each into FOLDER; then it replays each method, presses "Calc.
// Means" and saves the main window as OUTPUT.png; with --windows, last, the toolkit's "Error
// bars…" (a full run) and "O–C…" windows on those results go into FOLDER too.

#include "analysis/Toolkit.h"
#include "analysis/gui/ErrorBarsWindow.h"
#include "analysis/gui/OcWindow.h"
#include "app/gui/Application.h"
#include "mainwindow/gui/frmMain.h"
#include "methods/MethodRegistry.h"
#include "methods/chords/gui/frmPlott3.h"
#include "methods/fourier/gui/frmPlott5.h"
#include "methods/kwee/gui/frmPlott4.h"
#include "methods/parabola/gui/frmPlott1.h"
#include "methods/tracing/gui/frmPlott2.h"
#include "plotting/PlotBox.h"
#include "plotting/gui/frmPlotData.h"
#include "runtime/RuntimeError.h"
#include "session/Session.h"

#include <QDir>
#include <QEventLoop>
#include <QLineEdit>
#include <QLocale>
#include <QMouseEvent>
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
// Start values typed into the Fourier boxes Xo, C, W, A1 .. A5 before "Update".
const QStringList fourierStart = {QStringLiteral("0.512"), QStringLiteral("2.03"), QStringLiteral("25"),
                                  QStringLiteral("0.4"),   QStringLiteral("0.2"),  QStringLiteral("0.1"),
                                  QStringLiteral("0.05"),  QStringLiteral("0.02")};

const char* const defaultDataFile = "examples/single-minimum.csv";

void click(QWidget* widget, const QString& name)
{
    widget->findChild<QPushButton*>(name)->click();
    QApplication::processEvents();
}

// A right-click on a plot window at time t of its plot, as the user makes it.
void rightClickAt(dip::PlotWindow& form, double t)
{
    const dip::PlotTransform& box = form.transform();
    const double x = dip::PlotX(box, dip::CurrentScale(), t);
    const QPointF at = dip::PlotWindow::toPixels(x, (box.PlotTop + box.PlotBottom) / 2);
    QMouseEvent press(QEvent::MouseButtonPress, at, form.surface()->mapToGlobal(at), Qt::RightButton, Qt::RightButton,
                      Qt::NoModifier);
    QApplication::sendEvent(form.surface(), &press);
    QMouseEvent release(QEvent::MouseButtonRelease, at, form.surface()->mapToGlobal(at), Qt::RightButton, Qt::NoButton,
                        Qt::NoModifier);
    QApplication::sendEvent(form.surface(), &release);
}

void save(QWidget& form, const QString& folder, const QString& name)
{
    QApplication::processEvents();
    form.grab().save(QDir(folder).filePath(name), "PNG");
    form.hide();
}

// Every plot window driven through its controls, as in the README's pictures.
void windowPictures(dip::frmMain& window, const QString& folder)
{
    QDir().mkpath(folder);
    click(&window, QStringLiteral("Command7"));
    save(dip::PlotDataWindow(), folder, QStringLiteral("light-curve.png"));

    click(&window, QStringLiteral("Command1"));
    dip::frmPlott1& parabola = dip::frmPlott1::form();
    for (const double t : parabolaClicks)
        rightClickAt(parabola, t);
    click(&parabola, QStringLiteral("Command1"));
    save(parabola, folder, QStringLiteral("parabolic-fit.png"));

    click(&window, QStringLiteral("Command2"));
    dip::frmPlott2& tracing = dip::frmPlott2::form();
    tracing.findChild<QLineEdit*>(QStringLiteral("Text1"))->setText(QString::fromLatin1(tracingFold));
    click(&tracing, QStringLiteral("Command1"));
    save(tracing, folder, QStringLiteral("tracing-paper.png"));

    click(&window, QStringLiteral("Command3"));
    dip::frmPlott3& chords = dip::frmPlott3::form();
    for (const double t : chordClicks)
        rightClickAt(chords, t);
    click(&chords, QStringLiteral("Command1"));
    save(chords, folder, QStringLiteral("bisectors-of-chords.png"));

    click(&window, QStringLiteral("Command4"));
    dip::frmPlott4& kwee = dip::frmPlott4::form();
    for (const double t : kweeClicks)
        rightClickAt(kwee, t);
    click(&kwee, QStringLiteral("Command1"));
    save(kwee, folder, QStringLiteral("kwee-van-woerden.png"));

    click(&window, QStringLiteral("Command5"));
    dip::frmPlott5& fourier = dip::frmPlott5::form();
    for (const double t : fourierClicks)
        rightClickAt(fourier, t);
    for (int k = 1; k <= 8; ++k)
        fourier.Text1(k)->setText(fourierStart[k - 1]);
    click(&fourier, QStringLiteral("Command1"));
    click(&fourier, QStringLiteral("Command2"));
    save(fourier, folder, QStringLiteral("fourier-fit.png"));
    // Undo, so that the replay below fits afresh: a window that has fitted does not fit again
    // until its range is picked anew.
    click(&fourier, QStringLiteral("Command3"));
}

// The toolkit's windows on the results of the main window: the bootstrap errors after a whole
// run, and O - C against an ephemeris through the example's minimum.
void toolkitPictures(const QString& folder)
{
    dip::ErrorBarsWindow errorBars;
    errorBars.resize(1240, 360);
    errorBars.show();
    QEventLoop wait;
    QObject::connect(&errorBars, &dip::ErrorBarsWindow::finished, &wait, &QEventLoop::quit);
    if (errorBars.start())
        wait.exec();
    save(errorBars, folder, QStringLiteral("error-bars.png"));

    dip::Toolkit().ephemeris = dip::Ephemeris{0.5122, 0.547231, false};
    dip::OcWindow oc;
    oc.resize(720, 360);
    oc.show();
    oc.refresh();
    save(oc, folder, QStringLiteral("o-c-window.png"));
}

} // namespace

int main(int argc, char* argv[])
{
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    dip::Application app(argc, argv);
    QLocale::setDefault(QLocale::c());
    QStringList arguments = QApplication::arguments();
    arguments.removeFirst();
    QString windowsFolder;
    bool usable = true;
    const qsizetype windowsOption = arguments.indexOf(QStringLiteral("--windows"));
    if (windowsOption >= 0) {
        usable = windowsOption + 1 < arguments.size();
        if (usable) {
            windowsFolder = arguments[windowsOption + 1];
            arguments.remove(windowsOption, 2);
        }
    }
    if (!usable || arguments.isEmpty() || arguments.size() > 2) {
        std::fputs("usage: dipscope-screenshot OUTPUT.png [DATAFILE] [--windows FOLDER]\n", stderr);
        return 2;
    }
    const QString output = arguments[0];
    const QString dataFile = arguments.size() > 1 ? arguments[1] : QString::fromLatin1(defaultDataFile);

    dip::frmMain window;
    window.show();
    try {
        window.openFromCommandLine(dataFile);
        if (!windowsFolder.isEmpty())
            windowPictures(window, windowsFolder);
        dip::ReplayRequest parabola, tracing, chords, kwee, fourier, sliding;
        parabola.clicks = parabolaClicks;
        tracing.text = QString::fromLatin1(tracingFold);
        chords.clicks = chordClicks;
        kwee.clicks = kweeClicks;
        kwee.stepp = QString::fromLatin1(kweeStepp);
        kwee.frac = QString::fromLatin1(kweeFrac);
        fourier.clicks = fourierClicks;
        fourier.fourierStart = fourierStart;
        int row = 0;
        for (const dip::ReplayRequest* request : {&parabola, &tracing, &chords, &kwee, &fourier, &sliding})
            dip::ReplayMethod(++row, *request);
        window.findChild<QPushButton*>(QStringLiteral("Command8"))->click();
        if (!windowsFolder.isEmpty())
            toolkitPictures(windowsFolder);
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
