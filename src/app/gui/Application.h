// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#pragma once

#include <QApplication>

namespace dip {

class frmMain;

// The one top-level handler: a runtime failure that no handler traps ends up here, is shown
// in the standard report ("Run-time error 'N':", a blank line, the text) and ends the program.
class Application : public QApplication {
public:
    Application(int& argc, char** argv);
    bool notify(QObject* receiver, QEvent* event) override;
};

// Shows message boxes as modal OK boxes and questions as modal Yes/No boxes (installed by the
// program; tests install their own).
void installWindowMessageBoxes();

// What the program does once its main window is up, from the event loop: offers the session of
// the recovery journal back when the last run ended on a run-time error, then loads the file named
// on the command line (if any) as File > Open does; when the session was restored the named file
// is not loaded, and standard error says so.
void StartSession(frmMain& window, const QString& commandLineFile);

} // namespace dip
