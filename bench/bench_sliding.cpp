// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
// The sixth method button on 999 used points.
#include "BenchSupport.h"

#include "mainwindow/StartUp.h"
#include "methods/sliding/SlidingIntegrations.h"
#include "runtime/MsgBox.h"
#include "session/Session.h"

#include <QTemporaryDir>

#include <cmath>

namespace {

// 999 points with the deepest at index `deepest`.
QByteArray curve(int deepest)
{
    QByteArray out = "HJD,Mag\n";
    for (int i = 1; i <= 999; ++i) {
        const double x = (i - deepest) / 120.0;
        out += QByteArray::number(0.3 + 0.0004 * i, 'f', 6) + ',' +
               QByteArray::number(1.2 + 0.8 * std::exp(-x * x), 'f', 5) + '\n';
    }
    return out;
}

} // namespace

int main()
{
    QTemporaryDir dir;
    rt::setMsgBoxHook([](const QString&, const QString&) {});
    dip::StartUpSession();
    const int runs = 200;

    // The deepest point at 449: the stretch is the first 898 points, a grid of 900 (the
    // largest stretch 999 used points can give without the grid overflowing its array).
    if (!dip::bench::openCurve(dir.path(), curve(449)) || dip::S().IdxMagMax != 449)
        return 1;
    bool published = true;
    double ms = dip::bench::medianMs(runs, [&] { published = dip::RunSlidingIntegrations().published && published; });
    dip::bench::report(QStringLiteral("sliding integrations, 999 used points (stretch of 898)"), ms, runs);

    // The deepest point in the middle: the stretch is all 999 points and the grid of 1002
    // points fails at index 1001, trapped.
    if (!dip::bench::openCurve(dir.path(), curve(500)))
        return 1;
    int trapped = 0;
    ms = dip::bench::medianMs(runs, [&] { trapped = dip::RunSlidingIntegrations().trappedError; });
    dip::bench::report(QStringLiteral("sliding integrations, 999 used points (stretch of 999, trapped)"), ms, runs);
    return published && trapped == 9 ? 0 : 1;
}
