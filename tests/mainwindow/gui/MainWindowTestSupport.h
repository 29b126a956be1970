// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#pragma once

// What the main-window and dialog tests share: a temporary current folder, the end of the
// program intercepted, and the main window started as the program starts it.

#include "mainwindow/gui/frmMain.h"
#include "runtime/RuntimeError.h"
#include "support/TestSupport.h"

#include <QList>
#include <QString>
#include <QTemporaryDir>

#include <memory>
#include <vector>

class QAction;

namespace dip::test {

// Records every end of the program instead of ending it.
class ExitRecorder {
public:
    ExitRecorder();
    ~ExitRecorder();
    const QList<int>& codes() const { return m_codes; }

private:
    QList<int> m_codes;
    rt::ExitHook m_previous;
};

// Makes a new empty folder the current one for as long as it lives, so that "zzzdip.ini" and
// the dialogs' lists start there.
class CurrentFolder {
public:
    CurrentFolder();
    ~CurrentFolder();
    QString path() const { return m_dir.path(); }
    // Writes content to the relative path (folders made as needed) and returns the full path.
    QString write(const QString& relative, const QByteArray& content) const;
    QString mkdir(const QString& relative) const;

private:
    QTemporaryDir m_dir;
    QString m_previous;
};

// What every window test runs in: its own current folder, the end of the program and every
// message box intercepted.
struct WindowTestScope {
    CurrentFolder folder;
    ExitRecorder exits;
    MessageRecorder messages;
};

// Once per test program: the C locale, and no quitting when a test closes the last window.
void prepareWindowTests();

// A fresh session and a main window started and shown.
std::unique_ptr<frmMain> startMainWindow();

// A light curve of n points around a dip at 0.5 with distinct magnitudes; point `brightest`
// (1-based) is the brightest one.
QByteArray dipCurve(int n, int brightest);

// File > Open, go to folder, type name, press "Open".
void openThroughDialog(frmMain& window, const QString& folder, const QString& name);

QAction* menuAction(const frmMain& window, const char* name);

// The control of the main window or a dialog by its name.
template <typename T>
T* control(const QObject& form, const QString& name)
{
    return form.findChild<T*>(name);
}

} // namespace dip::test
