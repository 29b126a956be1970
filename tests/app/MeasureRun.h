// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#pragma once

// Runs a console tool in process and gives its exit code and both outputs.

#include "app/Measure.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QString>
#include <QStringList>

#include <cstdio>

namespace dip::test {

struct Run {
    int code = 0;
    QString out;
    QString err;
};

inline QString readAll(std::FILE* f)
{
    std::rewind(f);
    QByteArray bytes;
    char buffer[4096];
    std::size_t n = 0;
    while ((n = std::fread(buffer, 1, sizeof buffer, f)) > 0)
        bytes.append(buffer, static_cast<qsizetype>(n));
    std::fclose(f);
    return QString::fromUtf8(bytes);
}

// A tool's entry as its main calls it: the arguments, standard output and standard error.
using ToolEntry = int (*)(const QStringList& arguments, std::FILE* out, std::FILE* err);

inline Run runTool(ToolEntry tool, const QStringList& arguments)
{
    std::FILE* out = std::tmpfile();
    std::FILE* err = std::tmpfile();
    Run r;
    r.code = tool(arguments, out, err);
    r.out = readAll(out);
    r.err = readAll(err);
    return r;
}

inline Run measure(const QStringList& arguments) { return runTool(RunMeasure, arguments); }

// The sample light curve the README drives (true minimum 0.51234).
inline QString example()
{
    return qEnvironmentVariable("DIPSCOPE_SOURCE_DIR") + QStringLiteral("/examples/single-minimum.csv");
}

// Kwee and van Woerden and the Fourier fit on the example's minimum, as the README drives them.
inline QStringList kweeAndFourier()
{
    return {QStringLiteral("--kwee"),          QStringLiteral("0.47,0.55"),
            QStringLiteral("--fourier"),       QStringLiteral("0.46,0.56"),
            QStringLiteral("--fourier-start"), QStringLiteral("0.512,2.03,25,0.4,0.2,0.1,0.05,0.025")};
}

inline QJsonObject json(const Run& r)
{
    QJsonParseError e;
    const QJsonDocument doc = QJsonDocument::fromJson(r.out.toUtf8(), &e);
    if (e.error != QJsonParseError::NoError)
        qWarning("not JSON: %s", qPrintable(r.out));
    return doc.object();
}

} // namespace dip::test
