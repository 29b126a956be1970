// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
// From starting the dipscope process to its main window shown (offscreen).
#include "BenchSupport.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QProcess>
#include <QTemporaryDir>

#include <algorithm>
#include <cstdio>
#include <vector>

namespace {

// Milliseconds from QProcess::start to the line the program prints once its window is up, or
// a negative number when it never comes.
double startOnce(const QString& folder)
{
    QProcess process;
    QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
    env.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("offscreen"));
    env.insert(QStringLiteral("DIPSCOPE_EXIT_WHEN_SHOWN"), QStringLiteral("1"));
    process.setProcessEnvironment(env);
    process.setWorkingDirectory(folder);
    process.setProcessChannelMode(QProcess::SeparateChannels);
    QElapsedTimer timer;
    timer.start();
    process.start(QStringLiteral(DIPSCOPE_BINARY), QStringList());
    QByteArray output;
    double shownAt = -1;
    while (shownAt < 0 && process.waitForReadyRead(30000)) {
        output += process.readAllStandardOutput();
        if (output.contains("dipscope: main window shown"))
            shownAt = static_cast<double>(timer.nsecsElapsed()) / 1e6;
    }
    process.waitForFinished(30000);
    return shownAt;
}

} // namespace

int main(int argc, char* argv[])
{
    QCoreApplication app(argc, argv);
    QTemporaryDir folder; // no settings file: the first run of a new user
    const int runs = 21;
    if (startOnce(folder.path()) < 0) {
        std::fprintf(stderr, "bench_startup: %s never showed its window\n", DIPSCOPE_BINARY);
        return 1;
    }
    std::vector<double> times;
    for (int i = 0; i < runs; ++i) {
        const double ms = startOnce(folder.path());
        if (ms < 0)
            return 1;
        times.push_back(ms);
    }
    std::sort(times.begin(), times.end());
    dip::bench::report(QStringLiteral("start-up to main window shown"), times[times.size() / 2], runs,
                       QStringLiteral("< 300 ms"));
    return 0;
}
