// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#include "BenchSupport.h"

#include "session/LoadDataFile.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <vector>

namespace dip::bench {

double medianMs(int runs, const std::function<void()>& fn)
{
    fn();
    std::vector<double> times;
    for (int i = 0; i < runs; ++i) {
        QElapsedTimer timer;
        timer.start();
        fn();
        times.push_back(static_cast<double>(timer.nsecsElapsed()) / 1e6);
    }
    std::sort(times.begin(), times.end());
    return times[times.size() / 2];
}

void report(const QString& name, double medianMs, int runs, const QString& target)
{
    std::printf("%s: median %.3f ms over %d runs%s\n", qPrintable(name), medianMs, runs,
                target.isEmpty() ? "" : qPrintable(QStringLiteral(" (target %1)").arg(target)));
    std::fflush(stdout);
}

QByteArray syntheticCurve(int n)
{
    QByteArray out = "HJD,Mag\n";
    unsigned seed = 12345;
    for (int i = 0; i < n; ++i) {
        const double t = 0.3 + 0.4 * i / (n - 1);
        const double x = (t - 0.5) / 0.1;
        const double dip = std::abs(x) < 1 ? 0.8 * std::pow(1 - x * x, 1.5) : 0.0;
        seed = seed * 1103515245u + 12345u;
        const double noise = ((seed >> 16) % 1000) / 1000.0 * 0.01 - 0.005;
        out += QByteArray::number(t, 'f', 6) + ',' + QByteArray::number(1.2 + dip + noise, 'f', 4) + '\n';
    }
    return out;
}

bool openCurve(const QString& folder, const QByteArray& text)
{
    QFile f(QDir(folder).filePath(QStringLiteral("curve.csv")));
    if (!f.open(QIODevice::WriteOnly | QIODevice::Truncate))
        return false;
    f.write(text);
    f.close();
    return OpenDataFile(folder, QStringLiteral("curve.csv"));
}

} // namespace dip::bench
