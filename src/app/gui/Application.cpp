// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#include "app/gui/Application.h"

#include "runtime/MsgBox.h"
#include "runtime/RuntimeError.h"

#include <QMessageBox>

namespace dip {

Application::Application(int& argc, char** argv) : QApplication(argc, argv) {}

bool Application::notify(QObject* receiver, QEvent* event)
{
    try {
        return QApplication::notify(receiver, event);
    } catch (const rt::RuntimeError& error) {
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
}

} // namespace dip
