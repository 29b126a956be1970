// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
// The bootstrap errors of the five methods with a fit, B = 500 each, on one 1000-point light
// curve with wide user-like ranges, on every core: the wall time of all five together (the
// target), each method's own, and the longest wait between two progress calls.
#include "BenchSupport.h"

#include "analysis/MethodBootstrap.h"
#include "methods/MethodRegistry.h"

#include <QElapsedTimer>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <random>
#include <thread>
#include <vector>

namespace {

using namespace dip;

// 1000 points over 0.3 .. 0.7 day with a Gaussian dip (sigma 0.04 day, 0.6 mag) at 0.47 and
// white noise of 0.01 mag: the deepest point lies before the middle, as the sliding
// integrations need on a full array.
CurveData benchCurve()
{
    std::mt19937_64 rng(20240601);
    std::normal_distribution<double> g(0, 0.01);
    std::vector<double> t, m;
    for (int i = 0; i < 1000; ++i) {
        const double x = 0.3 + 0.4 * i / 999;
        const double z = (x - 0.47) / 0.04;
        t.push_back(x);
        m.push_back(10 + 0.6 * std::exp(-0.5 * z * z) + g(rng));
    }
    return CurveData::from(t, m);
}

// The first index at or after time x.
rt::Integer indexAt(const CurveData& c, double x)
{
    for (int i = 1; i <= c.n; ++i)
        if (c.t(i) >= x)
            return rt::Integer(i);
    return c.n;
}

MethodRequest requestFor(int row, const CurveData& c)
{
    MethodRequest r;
    switch (row) {
    case 1:
        r.first = indexAt(c, 0.43);
        r.last = indexAt(c, 0.51);
        break;
    case 3:
        r.first = indexAt(c, 0.37);
        r.last = indexAt(c, 0.44);
        r.first2 = indexAt(c, 0.50);
        r.last2 = indexAt(c, 0.57);
        break;
    case 4:
        r.first = indexAt(c, 0.36);
        r.last = indexAt(c, 0.58);
        break;
    case 5:
        r.first = indexAt(c, 0.31);
        r.last = indexAt(c, 0.63);
        r.fourierStart = {0, 0.47, 10.6, 3.1416 / 0.16, 0.3, 0.15, 0.05, 0.01, 0.005};
        break;
    default: break;
    }
    return r;
}

} // namespace

int main()
{
    const CurveData curve = benchCurve();
    const int rows[] = {1, 3, 4, 5, 6};
    MethodBootstrapOptions options;
    options.replicates = 500;
    options.seed = 7;

    QElapsedTimer total;
    QElapsedTimer sinceProgress;
    double longestWait = 0;
    bool allRan = true;
    total.start();
    for (const int row : rows) {
        const MethodRequest request = requestFor(row, curve);
        QElapsedTimer timer;
        timer.start();
        const MethodResult fitted = MethodOfRow(row).compute(curve.view(), request);
        sinceProgress.start();
        const BootstrapResult b = BootstrapMethod(row, curve.view(), request, fitted, options, [&](int, int) {
            longestWait = std::max(longestWait, double(sinceProgress.nsecsElapsed()) / 1e6);
            sinceProgress.start();
        });
        const double ms = double(timer.nsecsElapsed()) / 1e6;
        std::printf("%-28s %8.1f ms  time %.6f, error %.3g day (p16 %+.3g, p84 %+.3g)  %d of %d, %d failed%s\n",
                    MethodOfRow(row).title, ms, fitted.time, b.error, b.p16 - fitted.time, b.p84 - fitted.time,
                    b.successes, b.requested, b.failures,
                    b.problem.isEmpty() ? "" : qPrintable(QStringLiteral(" (") + b.problem + QLatin1Char(')')));
        allRan = allRan && b.valid();
    }
    const double ms = double(total.nsecsElapsed()) / 1e6;
    std::printf("bootstrap B = 500, five methods, 1000 points, %u threads: %.1f ms (target 2000 ms)\n",
                std::thread::hardware_concurrency(), ms);
    std::printf("longest wait between progress calls: %.1f ms (target 100 ms)\n", longestWait);
    return allRan ? 0 : 1;
}
