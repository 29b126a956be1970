// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
// Every eclipse of the long example light curve (19,406 points, 103 eclipses at a 2-minute
// cadence): the file read, the half-width measured on the folded curve, each eclipse cut and
// timed on two threads, the rows formatted as CSV. Methods 4 and 5 (the default) are the target's.
#include "BenchSupport.h"

#include "analysis/BatchInput.h"
#include "analysis/BatchMethods.h"
#include "analysis/BatchOutput.h"
#include "analysis/Ephemeris.h"
#include "analysis/InputError.h"

#include <cmath>
#include <cstdio>
#include <random>

namespace {

// 20,000 points at a 2-minute cadence (27.8 days) holding exactly 100 eclipses, primaries and
// secondaries of a 0.554-day binary, with 0.003 mag of Gaussian noise from a fixed seed.
dip::LightCurve hundredEclipses(const dip::Ephemeris& e)
{
    dip::LightCurve c;
    std::mt19937_64 random(20000);
    std::normal_distribution<double> noise(0, 0.003);
    const double start = e.t0 - 0.1;
    for (int i = 0; i < 20000; ++i) {
        const double t = start + i * 2.0 / 1440;
        double m = 10 + noise(random);
        for (const double phase : {0.0, 0.5}) {
            const double cycle = std::round((t - e.t0) / e.period - phase) + phase;
            const double x = (t - (e.t0 + cycle * e.period)) / 0.05;
            if (std::abs(x) < 1)
                m += (phase == 0 ? 0.5 : 0.2) * std::pow(1 - x * x, 1.5);
        }
        c.times.push_back(t);
        c.mags.push_back(m);
    }
    c.rowCount = 20000;
    return c;
}

} // namespace

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
    // The same work on a synthetic curve of exactly 20,000 points and 100 eclipses, from memory.
    {
        BatchSettings synthetic;
        synthetic.eclipses.ephemeris = {2459000.4, 0.554, true};
        synthetic.eclipses.secondaries = true;
        synthetic.threads = 2;
        const LightCurve curve = hundredEclipses(synthetic.eclipses.ephemeris);
        std::size_t timed = 0, eclipses = 0;
        const double syntheticMs = bench::medianMs(21, [&] {
            QString out = batchCsvHeader();
            timed = 0;
            eclipses = timeEveryEclipse(curve, QStringLiteral("synthetic"), synthetic, runBatchMethod,
                                        [&](const BatchRow& row) {
                                            out += batchCsvLine(row);
                                            timed += row.timed ? 1 : 0;
                                        })
                           .eclipses;
        });
        bench::report(QStringLiteral("batch, 20000 points, 100 eclipses (synthetic), methods 4 and 5, 2 threads"),
                      syntheticMs, 21, QStringLiteral("1000 ms"));
        if (eclipses != 100 || timed != 200) {
            std::fprintf(stderr, "synthetic: %zu eclipses, %zu rows timed (100, 200 expected)\n", eclipses, timed);
            ok = false;
        }
    }
    ms = run({1});
    bench::report(QStringLiteral("batch, 19406 points, 103 eclipses, parabola, 2 threads"), ms, 21);
    return ok && rows == 103 ? 0 : 1;
}
