// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#include "MainWindowTestSupport.h"

#include "mainwindow/gui/FileLists.h"
#include "mainwindow/gui/frmOpen.h"
#include "session/Session.h"

#include <QAction>
#include <QApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>

#include <cmath>

namespace dip::test {

ExitRecorder::ExitRecorder()
{
    m_previous = rt::setExitHook([this](int code) { m_codes << code; });
}

ExitRecorder::~ExitRecorder() { rt::setExitHook(m_previous); }

CurrentFolder::CurrentFolder() : m_previous(QDir::currentPath())
{
    Q_ASSERT(m_dir.isValid());
    QDir::setCurrent(m_dir.path());
}

CurrentFolder::~CurrentFolder() { QDir::setCurrent(m_previous); }

QString CurrentFolder::write(const QString& relative, const QByteArray& content) const
{
    const QString full = QDir(m_dir.path()).filePath(relative);
    QDir().mkpath(QFileInfo(full).absolutePath());
    QFile f(full);
    if (!f.open(QIODevice::WriteOnly | QIODevice::Truncate))
        qFatal("cannot write %s", qPrintable(full));
    f.write(content);
    return full;
}

QString CurrentFolder::mkdir(const QString& relative) const
{
    const QString full = QDir(m_dir.path()).filePath(relative);
    QDir().mkpath(full);
    return full;
}

void prepareWindowTests() { QApplication::setQuitOnLastWindowClosed(false); }

std::unique_ptr<frmMain> startMainWindow()
{
    resetSession();
    auto window = std::make_unique<frmMain>();
    window->show();
    return window;
}

QByteArray dipCurve(int n, int brightest)
{
    QByteArray out = "HJD,Mag\n";
    for (int i = 1; i <= n; ++i) {
        const double t = 0.4 + 0.005 * i;
        double m = gaussianMag(t, 0.5, 0.03, 0.6, 12.0) + 0.0001 * i;
        if (i == brightest)
            m = 11.5;
        out += QByteArray::number(t, 'f', 5) + ',' + QByteArray::number(m, 'f', 5) + '\n';
    }
    return out;
}

void openThroughDialog(frmMain& window, const QString& folder, const QString& name)
{
    control<QPushButton>(window, QStringLiteral("Command9"))->click();
    frmOpen* open = window.openForm();
    open->Dir1->setPath(folder);
    open->Text1->clear();
    QTest::keyClicks(open->Text1, name);
    open->Command1->click();
}

QAction* menuAction(const frmMain& window, const char* name) { return window.findChild<QAction*>(QLatin1String(name)); }

} // namespace dip::test
