// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#pragma once

#include <QApplication>

namespace dip {

// The one top-level handler: a runtime failure that no handler traps ends up here, is shown
// in the standard report ("Run-time error 'N':", a blank line, the text) and ends the program.
class Application : public QApplication {
public:
    Application(int& argc, char** argv);
    bool notify(QObject* receiver, QEvent* event) override;
};

// Shows message boxes as modal OK boxes (installed by the program; tests install their own).
void installWindowMessageBoxes();

} // namespace dip
