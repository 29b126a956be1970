// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#include "app/gui/Application.h"
#include "mainwindow/gui/frmMain.h"

#include <QTimer>

#include <cstdio>
#include <functional>
#include <utility>

namespace {

// Runs done once, from the event loop, after the first paint event of the watched window.
class FirstPaintProbe : public QObject {
public:
    FirstPaintProbe(QObject* parent, std::function<void()> done) : QObject(parent), m_done(std::move(done)) {}

protected:
    bool eventFilter(QObject* watched, QEvent* event) override
    {
        if (event->type() == QEvent::Paint && m_done)
            QTimer::singleShot(0, this, std::exchange(m_done, nullptr));
        return QObject::eventFilter(watched, event);
    }

private:
    std::function<void()> m_done;
};

const char* const usageText = "usage: dipscope [FILE]\n"
                              "Starts Dipscope; with FILE, loads that light curve as File > Open does.\n";

} // namespace

int main(int argc, char* argv[])
{
    dip::Application app(argc, argv);
    QStringList arguments = QApplication::arguments();
    arguments.removeFirst();
    if (arguments.contains(QLatin1String("--help")) || arguments.contains(QLatin1String("-h"))) {
        std::fputs(usageText, stdout);
        return 0;
    }
    if (arguments.size() > 1) {
        std::fputs(usageText, stderr);
        return 2;
    }

    dip::installWindowMessageBoxes();
    dip::frmMain window;
    window.show();
    const QString file = arguments.isEmpty() ? QString() : arguments.first();
    if (qEnvironmentVariableIsSet("DIPSCOPE_EXIT_WHEN_SHOWN")) {
        // No question may wait for an answer here: the file alone, as always.
        if (!file.isEmpty())
            QTimer::singleShot(0, &window, [&window, file] { window.openFromCommandLine(file); });
    } else {
        // From the event loop, so that the window is up for any question or message and a
        // failure gets the standard report like any other handler's.
        QTimer::singleShot(0, &window, [&window, file] { dip::StartSession(window, file); });
    }
    if (qEnvironmentVariableIsSet("DIPSCOPE_EXIT_WHEN_SHOWN")) {
        // For the start-up benchmark and the tests: once the window has been painted for the
        // first time (and a file of the command line loaded), say so and leave without writing
        // the settings file.
        auto* probe = new FirstPaintProbe(&window, [&window] {
            std::printf("dipscope: main window shown: %s\n", qPrintable(window.windowTitle()));
            std::fflush(stdout);
            QCoreApplication::exit(0);
        });
        window.installEventFilter(probe);
    }
    return app.exec();
}
