// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
// Loading a 1000-row light curve.
#include "BenchSupport.h"

#include "mainwindow/StartUp.h"
#include "session/LoadDataFile.h"
#include "session/Session.h"

#include <QFile>
#include <QTemporaryDir>

int main()
{
    QTemporaryDir dir;
    QFile f(dir.filePath(QStringLiteral("curve.csv")));
    if (!f.open(QIODevice::WriteOnly))
        return 1;
    f.write(dip::bench::syntheticCurve(1000));
    f.close();
    dip::StartUpSession();
    const int runs = 200;
    const double ms = dip::bench::medianMs(runs, [&] { dip::OpenDataFile(dir.path(), QStringLiteral("curve.csv")); });
    dip::bench::report(QStringLiteral("load 1000 rows"), ms, runs);
    return dip::S().NumOrig == 1000 ? 0 : 1;
}
