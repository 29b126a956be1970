// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
// Every eclipse of the long example light curve (19,406 points, 103 eclipses at a 2-minute
// cadence): the file read, the half-width measured on the folded curve, each eclipse cut and
// timed on two threads, the rows formatted as CSV. Methods 4 and 5 (the default) are the target's.
#include "BenchSupport.h"

#include "analysis/BatchInput.h"
#include "analysis/BatchMethods.h"
#include "analysis/BatchOutput.h"
#include "analysis/InputError.h"

#include <cstdio>

int main()
{
    using namespace dip;
    const QString path = QStringLiteral(DIPSCOPE_SOURCE_DIR "/examples/long-light-curve.csv");
    BatchSettings settings;
    settings.eclipses.ephemeris = {2459500.31250, 0.547231, true};
    settings.eclipses.secondaries = true;
    settings.threads = 2;
    bool ok = true;
    std::size_t rows = 0;
    auto run = [&](std::vector<int> methods) {
        settings.methods = std::move(methods);
        return bench::medianMs(21, [&] {
            try {
                const LightCurve curve = readBatchCurve(path).curve;
                QString out = batchCsvHeader();
                rows = 0;
                timeEveryEclipse(curve, path, settings, runBatchMethod, [&](const BatchRow& row) {
                    out += batchCsvLine(row);
                    ++rows;
                });
            } catch (const InputError& e) {
                std::fprintf(stderr, "%s\n", qPrintable(e.message()));
                ok = false;
            }
        });
    };
    double ms = run({4, 5});
    bench::report(QStringLiteral("batch, 19406 points, 103 eclipses, methods 4 and 5, 2 threads"), ms, 21,
                  QStringLiteral("1000 ms"));
    ok = ok && rows == 206;
    ms = run({1});
    bench::report(QStringLiteral("batch, 19406 points, 103 eclipses, parabola, 2 threads"), ms, 21);
    return ok && rows == 103 ? 0 : 1;
}
