// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#include "mainwindow/Settings.h"

#include "runtime/RuntimeError.h"
#include "runtime/Text.h"
#include "session/CsvInput.h"
#include "session/Session.h"

#include <QFile>

namespace dip {

QString settingsFileName() { return QStringLiteral("zzzdip.ini"); }

void ReadSettings(const QString& path)
{
    Session& s = S();
    try {
        CsvInput in(path);
        for (int line = 1; line <= 7; ++line) {
            for (int value = 1; value <= 4; ++value) {
                const CsvInput::Field field = in.input();
                // Each value is stored as soon as it is read, so a failure part-way through a
                // line keeps the values of that line read before it.
                s.WinPos(line, value) = field.text.isEmpty() ? rt::Integer(0) : rt::CIntText(field.text);
            }
        }
    } catch (const rt::RuntimeError&) {
        // A missing, short or damaged file is no reason not to start.
    }
}

void WriteSettings(const QString& path)
{
    const Session& s = S();
#ifdef Q_OS_WIN
    const char* const lineEnd = "\r\n";
#else
    const char* const lineEnd = "\n";
#endif
    QByteArray out;
    for (int line = 1; line <= 7; ++line) {
        for (int value = 1; value <= 4; ++value) {
            if (value > 1)
                out += ',';
            out += QByteArray::number(s.WinPos(line, value));
        }
        out += lineEnd;
    }
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate))
        rt::raise(75);
    if (file.write(out) != out.size() || !file.flush())
        rt::raise(57);
    file.close();
}

} // namespace dip
