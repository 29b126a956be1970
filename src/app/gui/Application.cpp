// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#include "app/gui/Application.h"

#include "mainwindow/Journal.h"
#include "mainwindow/gui/frmMain.h"
#include "runtime/MsgBox.h"
#include "runtime/RuntimeError.h"

#include <QMessageBox>

#include <cstdio>

namespace dip {

Application::Application(int& argc, char** argv) : QApplication(argc, argv) {}

bool Application::notify(QObject* receiver, QEvent* event)
{
    try {
        return QApplication::notify(receiver, event);
    } catch (const rt::RuntimeError& error) {
        // The session is kept for the next start before the report; the report and the end are
        // the runtime's, as they always were.
        SaveJournalAtEnd(&error);
        rt::reportFatal(error);
    }
    return false;
}

void installWindowMessageBoxes()
{
    rt::setMsgBoxHook([](const QString& text, const QString& title) {
        QMessageBox box(QMessageBox::NoIcon, title, text, QMessageBox::Ok, QApplication::activeWindow());
        box.exec();
    });
    rt::setQuestionHook([](const QString& text, const QString& title) {
        QMessageBox box(QMessageBox::Question, title, text, QMessageBox::Yes | QMessageBox::No,
                        QApplication::activeWindow());
        box.setDefaultButton(QMessageBox::Yes);
        return box.exec() == QMessageBox::Yes;
    });
}

void StartSession(frmMain& window, const QString& commandLineFile)
{
    const bool restored = OfferJournalRestore();
    if (commandLineFile.isEmpty())
        return;
    if (restored) {
        // The user chose the session of the journal; loading the named file would empty it again.
        std::fprintf(stderr, "dipscope: %s not loaded: the last session was restored instead\n",
                     qPrintable(commandLineFile));
        return;
    }
    window.openFromCommandLine(commandLineFile);
}

} // namespace dip
